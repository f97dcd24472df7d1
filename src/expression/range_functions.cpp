// Functions over a spreadsheet range: Sum, Mean, Min, Max and StdDev of the
// values a spreadsheet (IUISpreadSheet) gives for a range text such as A1..B2.
#include <atomic>

#include "expression/formula_scanner.h"
#include "expression/formula_text.h"
#include "runtime/scoped_count.h"
#include "strings/conversions.h"

namespace {

using namespace function_code;

// Range evaluations in progress in the whole process. A spreadsheet whose
// cells hold formulas over ranges evaluates ranges again; past this depth a
// range function gives 0, which ends such a cycle.
std::atomic<int32_t> gSpreadSheetDepth{0};
constexpr int32_t kMaxSpreadSheetDepth = 3;

// The range text: inside the parentheses that follow, or the whole rest of the text.
CREFString TakeRangeText(CREFString& rest) {
  CREFString range;
  if (ConsumeChar(rest, L'(')) {
    range = CREFString(rest.text, 0);
    while (range.length < rest.length && rest.text[range.length] != L')') ++range.length;
    rest.text += range.length;
    rest.length -= range.length;
    ConsumeChar(rest, L')');
    return range;
  }
  range = rest;
  rest.text += rest.length;
  rest.length = 0;
  return range;
}

}  // namespace

double FormulaScanner::RangeFunction(int32_t code, CREFString& rest) {
  SmartPtr<IUISpreadSheet> sheet = QueryAs<IUISpreadSheet>(m_Parameters.Parameters());
  if (!sheet) return ListFunction(kSum, rest);
  if (gSpreadSheetDepth.load() >= kMaxSpreadSheetDepth) return 0;
  const ScopedCount<std::atomic<int32_t>> depth(gSpreadSheetDepth);
  SmartPtr<IString> rangeText = SmartPtr<IString>::Adopt(ISCreate(TakeRangeText(rest)));
  int32_t first = 0, last = 0;
  if (!rangeText || FAILED(sheet->GetRange(rangeText.get(), &first, &last))) return 0;
  SmartPtr<IDblVector> list;
  int32_t count = 0;
  if (FAILED(sheet->GetRangeValues(first, last, list.Receive())) || !list || FAILED(list->get_Count(&count))) return 0;
  ValueStatistics values;
  for (int32_t i = 0; i < count; ++i) {
    double value = 0;
    if (SUCCEEDED(list->get_Number(i, &value))) values.Add(value);
  }
  if (values.count == 0) return 0;
  switch (code) {
    case kRangeSum: return values.sum;
    case kRangeMean: return values.sum / values.count;
    case kRangeMin: return values.minimum;
    case kRangeMax: return values.maximum;
    default: return values.StandardDeviation();
  }
}
