// CompiledFormula: a formula text taken apart once into a postfix program, so
// that evaluating the same text again reads no characters.
//
// The program is recorded from the scanner itself: the first evaluation of a
// text runs the scanner with a FormulaTrace that writes down every operand and
// operator in reading order, so a program does exactly what the scanner does.
// What the scanner reads depends on the characters alone, except for the range
// forms of the list functions (chosen by the type of the set), the string
// functions (which read names as text) and the classes of characters beyond
// ASCII (which follow the process locale). A text with any of these, or longer
// than kLongestCompiledText, is scanned at every evaluation instead. Parameter
// values are looked up by name at every run, in the scanner's order.
#pragma once

#include <string>
#include <vector>

#include "expression/formula_scanner.h"

class FormulaProgram {
 public:
  // Texts longer than this are scanned every time rather than kept twice.
  static constexpr int32_t kLongestCompiledText = 65536;

  // Evaluates `text` as EvaluateFormulaText does and, on a new program,
  // records the program when the text can be compiled.
  double Record(tagREFString text, const ParameterReader& parameters);
  // True when the program was recorded from exactly `text`.
  bool IsFor(tagREFString text) const;
  // False when the recorded text could not be compiled.
  bool IsCompiled() const { return m_Compiled; }
  // Evaluates the recorded program against `parameters`.
  double Run(const ParameterReader& parameters) const;

 private:
  class Recorder;

  enum class Step : uint8_t { kNumber, kName, kNegate, kCombine, kCall };
  struct Instruction {
    Step step;
    FormulaOperator op;  // kCombine
    int32_t code;        // kCall: the function code; kName: the name's offset in m_Text
    int32_t count;       // kCall: the operands it takes; kName: the name's length
    double number;       // kNumber: the value; kName: the value when no parameter has the name
    mutable NameLookupHint hint;  // kName: the last lookup of the name
  };

  std::wstring m_Text;
  std::vector<Instruction> m_Program;
  int32_t m_StackDepth = 0;  // the most values the program holds at once
  bool m_Compiled = false;
};

// The formula of one expression object: recorded at its first evaluation and
// again whenever its text changes.
class CompiledFormula {
 public:
  // The value of the text of `text` (may be null) against `parameters`.
  double Evaluate(IString* text, const ParameterReader& parameters);

 private:
  FormulaProgram m_Program;
  // Evaluations in progress on this thread: a parameter's input binding may
  // evaluate this very formula again while its program runs.
  int32_t m_Running = 0;
};
