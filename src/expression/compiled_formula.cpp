// Recording a formula's program from the scanner, and running it.
#include "expression/compiled_formula.h"

#include <cwchar>
#include <memory>

#include "expression/formula_text.h"
#include "runtime/scoped_count.h"
#include "strings/conversions.h"

namespace {

// Only printable ASCII is classified the same in every locale; ".." may choose
// the range form of a list function, depending on the set.
bool CanCompile(tagREFString text) {
  if (text.length > FormulaProgram::kLongestCompiledText) return false;
  for (int32_t i = 0; i < text.length; ++i) {
    const wchar_t c = text.text[i];
    if (c < 0x20 || c > 0x7E) return false;
    if (c == L'.' && i + 1 < text.length && text.text[i + 1] == L'.') return false;
  }
  return true;
}

bool CanCompileFunction(int32_t code) {
  using namespace function_code;
  switch (code) {
    case kStrToNum: case kFind: case kStrLen: case kChr: case kNone: return false;
    default: return code < kRangeSum;
  }
}

}  // namespace

// Writes the program down while the scanner reads the text: operands in
// post-order and each operator after its right operand give postfix order.
class FormulaProgram::Recorder final : public FormulaTrace {
 public:
  explicit Recorder(FormulaProgram& program) : m_Program(program) { m_Operands.push_back(0); }

  bool Failed() const { return m_Failed; }

  void OperandBegin(const wchar_t* /*at*/) override { m_Operands.push_back(0); }

  void OperandEnd(OperandKind kind, const wchar_t* /*end*/, double value, CREFString word) override {
    const int32_t operands = m_Operands.back();
    m_Operands.pop_back();
    ++m_Operands.back();
    switch (kind) {
      case OperandKind::kMissing: case OperandKind::kTooDeep: case OperandKind::kNumber:
        Emit({Step::kNumber, FormulaOperator::kNone, 0, 0, value, {}}, 1);
        break;
      case OperandKind::kGroup: break;  // its chain is in the program already
      case OperandKind::kNegation: Emit({Step::kNegate, FormulaOperator::kNone, 0, 0, 0, {}}, 0); break;
      case OperandKind::kFunction: {
        const int32_t code = FunctionCodeOf(word);
        m_Failed = m_Failed || !CanCompileFunction(code);
        Emit({Step::kCall, FormulaOperator::kNone, code, operands, 0, {}}, 1 - operands);
        break;
      }
      case OperandKind::kName: case OperandKind::kUnknownName: {
        const int32_t offset = static_cast<int32_t>(word.text - m_Program.m_Text.data());
        Emit({Step::kName, FormulaOperator::kNone, offset, word.length, _IS2Double(word), {}}, 1);
        break;
      }
    }
  }

  void OperatorRead(FormulaOperator op, const wchar_t* /*begin*/, const wchar_t* /*end*/) override {
    if (op != FormulaOperator::kNone) m_Operators.push_back(op);
  }

  void Combined(double /*left*/, double /*right*/, double /*result*/) override {
    Emit({Step::kCombine, m_Operators.back(), 0, 0, 0, {}}, -1);
    m_Operators.pop_back();
  }

 private:
  void Emit(const Instruction& instruction, int32_t stackChange) {
    m_Program.m_Program.push_back(instruction);
    m_Depth += stackChange;
    if (m_Depth > m_Program.m_StackDepth) m_Program.m_StackDepth = m_Depth;
  }

  FormulaProgram& m_Program;
  std::vector<int32_t> m_Operands;  // operands read so far inside each operand being read
  std::vector<FormulaOperator> m_Operators;  // operators waiting for their right operand
  int32_t m_Depth = 0;
  bool m_Failed = false;
};

double FormulaProgram::Record(tagREFString text, const ParameterReader& parameters) {
  m_Text.assign(text.text ? text.text : L"", text.text ? static_cast<size_t>(std::max(0, text.length)) : 0);
  const tagREFString copy{static_cast<int32_t>(m_Text.size()), m_Text.c_str()};
  if (!CanCompile(copy)) return EvaluateFormulaText(copy, parameters);
  Recorder recorder(*this);
  const double value = EvaluateFormulaText(copy, parameters, &recorder);
  m_Compiled = !recorder.Failed();
  if (!m_Compiled) m_Program.clear();
  return value;
}

bool FormulaProgram::IsFor(tagREFString text) const {
  const int32_t length = text.text ? std::max(0, text.length) : 0;
  if (static_cast<size_t>(length) != m_Text.size()) return false;
  return length == 0 || wmemcmp(text.text, m_Text.data(), static_cast<size_t>(length)) == 0;
}

double FormulaProgram::Run(const ParameterReader& parameters) const {
  constexpr int32_t kInlineStack = 32;
  double inlineStack[kInlineStack];
  std::unique_ptr<double[]> largeStack;
  double* stack = inlineStack;
  if (m_StackDepth > kInlineStack) {
    largeStack = std::make_unique<double[]>(static_cast<size_t>(m_StackDepth));
    stack = largeStack.get();
  }
  int32_t top = 0;
  for (const Instruction& instruction : m_Program) {
    switch (instruction.step) {
      case Step::kNumber: stack[top++] = instruction.number; break;
      case Step::kName: {
        double value = instruction.number;
        if (parameters.Parameters())
          parameters.FindNumber({instruction.count, m_Text.data() + instruction.code}, &value, &instruction.hint);
        stack[top++] = value;
        break;
      }
      case Step::kNegate: stack[top - 1] = 0.0 - stack[top - 1]; break;
      case Step::kCombine:
        --top;
        stack[top - 1] = CombineOperands(instruction.op, stack[top - 1], stack[top]);
        break;
      case Step::kCall:
        top -= instruction.count;
        stack[top] = ApplyFunction(instruction.code, stack + top, instruction.count);
        ++top;
        break;
    }
  }
  return top > 0 ? stack[top - 1] : 0;
}

double CompiledFormula::Evaluate(IString* textObject, const ParameterReader& parameters) {
  const ScopedCount<int32_t> running(m_Running);
  const CREFString text = ViewOfString(textObject);
  // The program reads its own copy of the text: the object need not be held to run it.
  if (m_Program.IsFor(text) && m_Program.IsCompiled()) return m_Program.Run(parameters);
  // Held while the text is scanned: a callee may replace the expression's text meanwhile.
  const SmartPtr<IString> held(textObject);
  // A text that cannot be compiled, or a program in use further up this thread, is scanned.
  if (m_Program.IsFor(text) || m_Running > 1) return EvaluateFormulaText(text, parameters);
  FormulaProgram program;
  const double value = program.Record(text, parameters);
  m_Program = std::move(program);
  return value;
}
