// A formula explanation as aligned text for people and as JSON for programs.
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>

#include "formula_explanation.h"
#include "param_host.h"

namespace {

// Formulas up to this width are drawn with each piece underlined beneath them.
constexpr size_t kWidestDrawnFormula = 72;
// Warnings are wrapped at this many bytes.
constexpr size_t kWrapWidth = 90;
// Longer pieces are cut in the table.
constexpr size_t kWidestPiece = 26;

std::string Number(double value) {
  char buffer[40];
  std::snprintf(buffer, sizeof(buffer), "%.15g", value);
  return buffer;
}

// The formula as it is drawn: one column per character, control characters shown as blanks.
std::wstring Drawable(std::wstring_view text) {
  std::wstring shown(text);
  for (wchar_t& c : shown)
    if (static_cast<uint32_t>(c) < 0x20 || c == 0x7F) c = L' ';
  return shown;
}

std::wstring Padded(std::wstring text, size_t width) {
  if (text.size() < width) text.append(width - text.size(), L' ');
  return text;
}

// A number as the table shows it (ASCII only, so widening is exact).
std::wstring WideNumber(double value) {
  const std::string text = Number(value);
  return std::wstring(text.begin(), text.end());
}

std::wstring RightAligned(const std::wstring& text, size_t width) {
  return text.size() < width ? std::wstring(width - text.size(), L' ') + text : text;
}

// "^~~~" under the characters begin..end of a line of `width` columns.
std::wstring Underline(size_t begin, size_t end, size_t width) {
  std::wstring line(width, L' ');
  if (begin >= width) return line;
  line[begin] = L'^';
  for (size_t i = begin + 1; i < end && i < width; ++i) line[i] = L'~';
  return line;
}

std::wstring OperatorText(wchar_t op) {
  if (op == L'&') return L"AND";
  if (op == L'|') return L"OR";
  return std::wstring(1, op);
}

// The piece a step covers as the table shows it: operator and operand, indented by depth, cut when long.
std::wstring PieceText(const FormulaExplanation& e, const ExplanationStep& step) {
  std::wstring piece = Drawable(std::wstring_view(e.formula).substr(step.operandBegin, step.end - step.operandBegin));
  if (step.op) piece = OperatorText(step.op) + L" " + piece;
  if (piece.size() > kWidestPiece) piece = piece.substr(0, kWidestPiece - 3) + L"...";
  return std::wstring(static_cast<size_t>(step.depth) * 2, L' ') + piece;
}

std::wstring Reading(const ExplanationStep& step) {
  const std::wstring plural = step.arguments == 1 ? L"" : L"s";
  switch (step.kind) {
    case StepKind::kNumber: return !step.word.empty() && step.word[0] == L'#' ? L"hexadecimal number" : L"number";
    case StepKind::kName:
      return L"parameter " + step.word + (step.origin.empty() ? L"" : L", from " + paramhost::FromUtf8(step.origin));
    case StepKind::kUnknownName: return L"unknown name: 0";
    case StepKind::kFunction:
      return L"function " + step.word +
             (step.arguments ? L", " + std::to_wstring(step.arguments) + L" argument" + plural + L" read" : L"");
    case StepKind::kGroup: return L"parentheses";
    case StepKind::kNegation: return L"negation: 0 - operand";
    case StepKind::kMissing: return L"missing operand: 0";
    case StepKind::kTooDeep: return L"nested too deep: 0";
    case StepKind::kDropped: return L"skipped: no operator";
    case StepKind::kIgnored: return L"ignored: after a \")\" that closes nothing";
    case StepKind::kComment: return L"comment";
  }
  return L"";
}

bool IsOperand(StepKind kind) {
  return kind != StepKind::kDropped && kind != StepKind::kIgnored && kind != StepKind::kComment;
}

void AppendLine(std::string& out, const std::wstring& line) {
  size_t end = line.size();
  while (end > 0 && line[end - 1] == L' ') --end;
  out += paramhost::ToUtf8(std::wstring_view(line).substr(0, end));
  out += '\n';
}

void AppendCheck(std::string& out, const FormulaExplanation& e) {
  if (!e.moduleEvaluated) {
    out += "Check     no cross-check: the module's \"Expression\" object could not be created\n";
  } else if (e.agrees) {
    out += "Check     the module's \"Expression\" object gives " + Number(e.moduleValue) + " too\n";
  } else {
    out += "\n!!! MISMATCH: the reading explained below gives " + Number(e.value) +
           ", but the module's \"Expression\" object gives " + Number(e.moduleValue) + ".\n";
    out += e.drawsRandomNumbers
               ? "!!! The formula draws random numbers, and the tool and the module draw from generators of their"
                 " own.\n"
               : "!!! This explanation does not describe what the module computes: please report this formula.\n";
  }
}

void AppendSteps(std::string& out, const FormulaExplanation& e) {
  const std::wstring formula = Drawable(e.formula);
  const bool drawn = formula.size() <= kWidestDrawnFormula;
  std::vector<std::wstring> pieces, readings, values, runnings;
  size_t pieceWidth = 5, readingWidth = 7, valueWidth = 5, runningWidth = 7;
  for (const ExplanationStep& step : e.steps) {
    pieces.push_back(PieceText(e, step));
    readings.push_back(Reading(step));
    values.push_back(IsOperand(step.kind) ? WideNumber(step.value) : L"");
    runnings.push_back(step.hasRunning ? WideNumber(step.running) : L"");
    pieceWidth = std::max(pieceWidth, pieces.back().size());
    readingWidth = std::max(readingWidth, readings.back().size());
    valueWidth = std::max(valueWidth, values.back().size());
    runningWidth = std::max(runningWidth, runnings.back().size());
  }
  const std::wstring gap = L"   ";
  // Without the drawing, a column gives where each piece begins.
  const size_t atWidth = 4 + std::to_wstring(formula.size()).size();
  const std::wstring lead = drawn ? L"  " + formula + gap : L"  " + Padded(L"at", atWidth) + gap;
  out += "Read once, left to right; every operator applies at once, so there is no precedence:\n\n";
  AppendLine(out, lead + Padded(L"piece", pieceWidth) + gap + Padded(L"reading", readingWidth) + gap +
                      RightAligned(L"value", valueWidth) + gap + RightAligned(L"running", runningWidth));
  for (size_t i = 0; i < e.steps.size(); ++i) {
    const ExplanationStep& step = e.steps[i];
    const std::wstring where = drawn ? L"  " + Underline(step.begin, step.end, formula.size()) + gap
                                     : L"  " + Padded(L"col " + std::to_wstring(step.begin + 1), atWidth) + gap;
    AppendLine(out, where + Padded(pieces[i], pieceWidth) + gap + Padded(readings[i], readingWidth) + gap +
                        RightAligned(values[i], valueWidth) + gap + RightAligned(runnings[i], runningWidth));
  }
}

// `text` in lines of at most kWrapWidth bytes (longer words stay whole), each after `indent`.
void AppendWrapped(std::string& out, const std::string& text, const std::string& indent) {
  size_t lineStart = 0;
  while (text.size() - lineStart > kWrapWidth) {
    size_t cut = text.rfind(' ', lineStart + kWrapWidth);
    if (cut == std::string::npos || cut <= lineStart) cut = text.find(' ', lineStart + kWrapWidth);
    if (cut == std::string::npos) break;
    out += indent + text.substr(lineStart, cut - lineStart) + "\n";
    lineStart = cut + 1;
  }
  out += indent + text.substr(lineStart) + "\n";
}

void AppendWarnings(std::string& out, const FormulaExplanation& e) {
  if (e.warnings.empty()) {
    out += "\nNo pitfalls found.\n";
    return;
  }
  const std::wstring formula = Drawable(e.formula);
  out += "\nWarnings\n";
  for (size_t i = 0; i < e.warnings.size(); ++i) {
    const ExplanationWarning& warning = e.warnings[i];
    out += "\n  " + std::to_string(i + 1) + ". " + PitfallName(warning.kind) + "\n";
    if (formula.size() <= kWidestDrawnFormula) {
      AppendLine(out, L"     " + formula);
      AppendLine(out, L"     " + Underline(warning.begin, std::max(warning.end, warning.begin + 1), formula.size()));
    } else {
      out += "     at column " + std::to_string(warning.begin + 1) + "\n";
    }
    AppendWrapped(out, warning.message, "     ");
  }
}

std::string OperatorName(wchar_t op) { return paramhost::ToUtf8(OperatorText(op)); }

nlohmann::ordered_json Span(const FormulaExplanation& e, const char* kind, size_t begin, size_t end) {
  nlohmann::ordered_json span;
  span["kind"] = kind;
  span["begin"] = begin;
  span["end"] = end;
  span["text"] = paramhost::ToUtf8(std::wstring_view(e.formula).substr(begin, end - begin));
  return span;
}

}  // namespace

std::string ExplanationText(const FormulaExplanation& e) {
  std::string out;
  out += "Formula   " + paramhost::ToUtf8(Drawable(e.formula)) + "\n";
  out += "Value     " + Number(e.value) + "\n";
  AppendCheck(out, e);
  out += "\n";
  if (e.steps.empty()) {
    out += "The formula is empty (or only blanks): it gives 0.\n";
    return out;
  }
  AppendSteps(out, e);
  AppendWarnings(out, e);
  return out;
}

std::string ExplanationJson(const FormulaExplanation& e) {
  nlohmann::ordered_json json;
  json["formula"] = paramhost::ToUtf8(e.formula);
  json["value"] = e.value;
  json["module_value"] = e.moduleEvaluated ? nlohmann::ordered_json(e.moduleValue) : nlohmann::ordered_json();
  json["agrees"] = e.agrees;
  json["draws_random_numbers"] = e.drawsRandomNumbers;
  nlohmann::ordered_json steps = nlohmann::ordered_json::array(), skipped = nlohmann::ordered_json::array();
  for (const ExplanationStep& step : e.steps) {
    nlohmann::ordered_json item = Span(e, StepKindName(step.kind), step.begin, step.end);
    if (!IsOperand(step.kind)) skipped.push_back(item);
    item["depth"] = step.depth;
    item["parent"] = step.parent;
    if (step.op) item["operator"] = OperatorName(step.op);
    if (!step.word.empty()) item["word"] = paramhost::ToUtf8(step.word);
    if (!step.origin.empty()) item["origin"] = step.origin;
    if (step.kind == StepKind::kFunction) item["arguments"] = step.arguments;
    if (IsOperand(step.kind)) item["value"] = step.value;
    if (step.hasRunning) item["running"] = step.running;
    steps.push_back(std::move(item));
  }
  json["steps"] = std::move(steps);
  json["skipped"] = std::move(skipped);
  nlohmann::ordered_json warnings = nlohmann::ordered_json::array();
  for (const ExplanationWarning& warning : e.warnings) {
    nlohmann::ordered_json item = Span(e, PitfallName(warning.kind), warning.begin, warning.end);
    item["message"] = warning.message;
    warnings.push_back(std::move(item));
  }
  json["warnings"] = std::move(warnings);
  // Text that is not valid UTF-8 cannot occur (ToUtf8 replaces it); replace rather than throw all the same.
  return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}
