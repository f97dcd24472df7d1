// The explanation of a formula: how the one-pass, left-to-right reading takes it apart.
//
// ExplainFormula evaluates the formula with the module's own scanner, watched
// through a FormulaTrace, and records every operand (with its nesting depth,
// its place in the text, its value and the chain's running value), every
// operator, every piece of text that was dropped or ignored, and warnings for
// the readings that surprise people (no operator precedence, an argument that
// is not a single operand, an unknown name, a division by zero, an exponent
// that is not read, nesting past the depth bound). It also evaluates the
// formula through an "Expression" object created by class name, so the
// explanation always states whether it agrees with what a host gets.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "runtime/smart_ptr.h"

// What a step of the reading is.
enum class StepKind {
  kNumber,       // a word read as a number
  kName,         // a parameter found by name
  kUnknownName,  // a name that is no parameter: 0
  kFunction,     // a function call with the arguments it read
  kGroup,        // a parenthesised chain
  kNegation,     // "-" before an operand
  kMissing,      // the text ended where an operand was due: 0
  kTooDeep,      // nested past the depth bound: 0
  kDropped,      // a word between operands that is no operator, skipped
  kIgnored,      // text after the point where reading stopped
  kComment,      // text from the first ";" on
};

// The readings that surprise people, each with its warning.
enum class PitfallKind {
  kArgumentNotSingleOperand,  // Max(1+5, 9): the argument list ends at "+"
  kNoPrecedence,              // 2+3*4 is (2+3)*4
  kUnknownName,               // a name that is no parameter counts as 0
  kDivisionByZero,            // x/0 and x%0 give 1000000000
  kExponentNotRead,           // 1.5e3 is 1.5
  kTooDeep,                   // an operand nested past the bound counts as 0
  kNotANumber,                // a word that is neither number nor name (a leading "+") counts as 0
  kTextNotRead,               // words dropped between operands, text after an unmatched ")"
  kUnclosedParenthesis,       // a "(" never closed: closed at the end
  kTextValue,                 // a parameter holding a text without digits counts as 0
};

struct ExplanationStep {
  StepKind kind;
  int depth = 0;                     // 0 for the outermost chain; one more inside each operand
  int parent = -1;                   // index of the enclosing operand step, -1 at the outermost level
  size_t begin = 0, end = 0;         // the piece's characters in the formula (operator included)
  size_t operandBegin = 0;           // where the operand itself begins (after its operator)
  wchar_t op = 0;                    // the operator before the operand ('+', '-', '*', '/', '%', '&' AND, '|' OR) or 0
  std::wstring word;                 // the function name, number or parameter name
  std::string origin;                // where a parameter's value came from ("" when not known)
  double value = 0;                  // the operand's value
  bool hasRunning = false;           // true for the operands of a chain
  double runningBefore = 0;          // the chain's value before this operand's operator applied
  double running = 0;                // the chain's value once this operand is applied
  int arguments = 0;                 // operands read as a function's arguments
};

struct ExplanationWarning {
  PitfallKind kind;
  size_t begin = 0, end = 0;  // the characters the warning is about
  std::string message;        // one or two sentences, UTF-8
};

struct FormulaExplanation {
  std::wstring formula;
  std::vector<ExplanationStep> steps;  // in reading order
  std::vector<ExplanationWarning> warnings;
  double value = 0;            // the value the traced reading gives
  bool moduleEvaluated = false;
  double moduleValue = 0;      // what an "Expression" object gives for the same formula and set
  bool agrees = false;         // both values are the same (or both NaN)
  bool drawsRandomNumbers = false;
};

// Where the value of a parameter came from ("" when not known). The name is
// the word as the formula writes it; parameters match it ignoring case.
using OriginOfName = std::function<std::string(const std::wstring&)>;

// Explains `formula` read against `set` (may be null). The tool's copy of the
// runtime must share the host's component collection (ReplaceGlobalComponents).
FormulaExplanation ExplainFormula(const std::wstring& formula, IParameters* set, const OriginOfName& originOf);

// The functions below are in explanation_output.cpp.

// A readable explanation: the formula, its value and the cross-check, a table
// of the pieces with each one underlined in the formula, then the warnings.
std::string ExplanationText(const FormulaExplanation& explanation);

// The same as one JSON object.
std::string ExplanationJson(const FormulaExplanation& explanation);

// The name of a step kind and of a pitfall as the JSON output spells them.
const char* StepKindName(StepKind kind);
const char* PitfallName(PitfallKind kind);
