// Range functions over a spreadsheet: a test double that is a parameter set
// and a spreadsheet serving fixed ranges and one range whose cell is a formula
// over the same range; bound values read through the same double.
#include "expression_test_support.h"
#include "parameters/parameter_set.h"

namespace {

using namespace expression_test;

// A parameter set of the module's own kind that is also a spreadsheet. It
// does not answer IParameterLookup, so names are found through get_Index as in
// a host's own set.
class CSheet : public CObjectImpl<CSheet, IUISpreadSheet>, public IParametersImpl<CSheet, IParameters> {
 public:
  static constexpr wchar_t kObjectName[] = L"Sheet";
  static constexpr InterfaceEntry<CSheet> kInterfaces[] = {
      {&IID_IParameters, InterfaceOf<CSheet, IParameters>},
      {&IID_INamedCollection, InterfaceOf<CSheet, IParameters>},
      {&IID_IUISpreadSheet, InterfaceOf<CSheet, IUISpreadSheet>},
  };
  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  // "A1..A8" holds eight numbers, "E1..E1" nothing; the cell of "R..R" is the formula 1 + Sum(R..R).
  HRESULT GetRange(IString* rangeText, int32_t* first, int32_t* last) override {
    const std::wstring text = TextOf(rangeText);
    *first = *last = text == L"A1..A8" ? 1 : text == L"E1..E1" ? 2 : text == L"R..R" ? 3 : 0;
    return *first ? S_OK : E_FAIL;
  }
  HRESULT GetRangeValues(int32_t first, int32_t /*last*/, IDblVector** values) override {
    SmartPtr<IDblVector> list = CreateObjectAs<IDblVector>(L"DblBuffer");
    if (first == 1)
      for (double value : {2, 4, 4, 4, 5, 5, 7, 9}) list->Append(value, -1);
    if (first == 3) list->Append(Evaluate(L"1 + Sum(R..R)", this), -1);
    *values = list.Detach();
    return S_OK;
  }
};

SmartPtr<IParameters> NewSheet() { return QueryAs<IParameters>(NewObject<CSheet>()->GetUnknown()); }

TEST(RangeFunctions, ValuesOfASpreadSheetRange) {
  SmartPtr<IParameters> sheet = NewSheet();
  sheet->Add(MakeString(L"a").get(), MakeDouble(4).get(), nullptr, 0);
  const Case cases[] = {
      {L"Sum(A1..A8)", 40},       {L"Mean(A1..A8)", 5},     {L"Min(A1..A8)", 2},        {L"Max(A1..A8)", 9},
      {L"StdDev(A1..A8)", 2.138089935299395, 1e-12},        {L"Sum A1..A8", 40},        {L"Sum(A1..A8) + 1", 41},
      {L"SUM( A1..A8 )", 0},      {L"Sum(1, 2) + Sum(A1..A8)", 40},                     {L"Sum(1, 2)", 3},
      {L"Sum(B1..B2)", 0},        {L"Mean(E1..E1)", 0},     {L"a * Sum(A1..A8)", 160},  {L"Max(1, 2) + a", 6},
  };
  ExpectAll(cases, sheet.get());
  EXPECT_EQ(Evaluate(L"Sum(A1..A8)", SetOf({{L"a", MakeDouble(4)}}).get()), 0)
      << "a plain set has no ranges: the list form reads A1 as 0";
}

// A range whose cell evaluates the same range again: the fourth nested range gives 0, so the
// three levels give 1, 1 + 1 and 1 + 2; the depth count is back to 0 afterwards.
TEST(RangeFunctions, NestedRangesStopAtTheThirdLevel) {
  SmartPtr<IParameters> sheet = NewSheet();
  EXPECT_EQ(Evaluate(L"Sum(R..R)", sheet.get()), 3);
  EXPECT_EQ(Evaluate(L"Sum(R..R) * 10", sheet.get()), 30);
}

// A value bound through an input binding is the bound parameter's value, also
// when the set is read through get_Index instead of the module's own lookup.
TEST(RangeFunctions, InputBindingsGiveTheValue) {
  SmartPtr<IInputParameter> binding = CreateObjectAs<IInputParameter>(L"InputParameter");
  SmartPtr<IParametersCreatable> source = SetOf({{L"v", MakeLong(42)}});
  binding->put_Source(source.get());
  binding->put_Name(MakeString(L"v").get());
  SmartPtr<IParametersCreatable> own = NewParameters();
  SmartPtr<IParameters> foreign = NewSheet();
  for (IParameters* set : {static_cast<IParameters*>(own.get()), foreign.get()}) {
    set->Add(MakeString(L"bound").get(), MakeDouble(1).get(), binding.get(), 0);
    EXPECT_EQ(Evaluate(L"bound + 1", set), 43);
  }
}

}  // namespace
