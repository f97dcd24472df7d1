// FormulaTrace: an observer that watches the formula scanner take a formula apart.
//
// The scanner reads a formula once, left to right, evaluating every operand
// and operator as it goes. A FormulaTrace handed to it is told, in reading
// order, where each operand begins and what it turned out to be, each
// operator (or dropped word) it read, and the running value after each
// operator. Explanations of a formula are built from these calls, so they show
// exactly what evaluation does. Without a trace (the default) the scanner only
// tests a null pointer at each callback site.
//
// Positions are pointers into the text being scanned; a callback must not keep
// them beyond the evaluation.
#pragma once

#include <cstdint>

#include "strings/ref_string.h"

// The binary operators of the formula language; kNone is a word that is no
// operator, which the chain drops.
enum class FormulaOperator { kNone, kAdd, kSubtract, kMultiply, kDivide, kRemainder, kAnd, kOr };

// What one operand turned out to be.
enum class OperandKind {
  kMissing,      // the text ended where an operand was due: 0
  kTooDeep,      // nested past the depth bound: 0, nothing consumed
  kGroup,        // "(" chain ")"
  kNegation,     // "-" operand
  kFunction,     // a function name and the arguments it read
  kNumber,       // a word read as a number (a word without digits is 0)
  kName,         // a parameter found by name
  kUnknownName,  // a word that begins with a letter but names no parameter: 0
};

class FormulaTrace {
 public:
  // An operand begins at `at` (blanks before it already skipped). Every
  // OperandBegin is matched by one OperandEnd; operands read inside it
  // (group contents, negated operands, function arguments) come in between.
  virtual void OperandBegin(const wchar_t* at) = 0;
  // The operand that began last ends before `end` with `value`. `word` is the
  // function name, number or name word (empty for the other kinds).
  virtual void OperandEnd(OperandKind kind, const wchar_t* end, double value, CREFString word) = 0;
  // An operator (or, as kNone, a dropped word) was read from `begin` to `end`;
  // for an operator the operand after it follows.
  virtual void OperatorRead(FormulaOperator op, const wchar_t* begin, const wchar_t* end) = 0;
  // The operator read last combined `left` and `right` into `result`, the chain's new running value.
  virtual void Combined(double left, double right, double result) = 0;

 protected:
  ~FormulaTrace() = default;
};
