// Range functions over a spreadsheet: a test double that is a parameter set
// (forwarding to a real one, so names resolve through the public interface)
// and a spreadsheet serving fixed ranges and one range whose cell is a formula
// over the same range; bound values read through the same double.
#include "expression_test_support.h"

namespace {

using namespace expression_test;

class SpreadSheetSet : public IParameters, public IUISpreadSheet {
 public:
  explicit SpreadSheetSet(IParameters* inner) : m_Inner(inner) {}

  HRESULT QueryInterface(const IID& iid, void** out) override {
    *out = nullptr;
    if (iid == IID_IUnknown || iid == IID_IParameters || iid == IID_INamedCollection)
      *out = static_cast<IParameters*>(this);
    else if (iid == IID_IUISpreadSheet)
      *out = static_cast<IUISpreadSheet*>(this);
    if (!*out) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  uint32_t AddRef() override { return ++m_References; }
  uint32_t Release() override { return --m_References; }  // lives on the test's stack

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

  // IParameters, forwarded to the inner set.
  HRESULT get_Count(int32_t* count) override { return m_Inner->get_Count(count); }
  HRESULT get_Item(int32_t index, IUnknown** item) override { return m_Inner->get_Item(index, item); }
  HRESULT get_Index(IUnknown* key, int32_t* index) override { return m_Inner->get_Index(key, index); }
  HRESULT get_ItemName(int32_t i, IString** name) override { return m_Inner->get_ItemName(i, name); }
  HRESULT Rename(int32_t i, IString* name) override { return m_Inner->Rename(i, name); }
  HRESULT CollectionLock() override { return m_Inner->CollectionLock(); }
  HRESULT CollectionUnlock() override { return m_Inner->CollectionUnlock(); }
  HRESULT IsCollectionLocked() override { return m_Inner->IsCollectionLocked(); }
  HRESULT Iterate(int32_t i, IString** n, IVariant** v, IUnknown** d, int32_t* f) override {
    return m_Inner->Iterate(i, n, v, d, f);
  }
  HRESULT get_ItemVariant(int32_t i, IVariant** value) override { return m_Inner->get_ItemVariant(i, value); }
  HRESULT put_Item(int32_t i, IUnknown* value) override { return m_Inner->put_Item(i, value); }
  HRESULT get_ItemDescriptor(int32_t i, IUnknown** d) override { return m_Inner->get_ItemDescriptor(i, d); }
  HRESULT put_ItemDescriptor(int32_t i, IUnknown* d) override { return m_Inner->put_ItemDescriptor(i, d); }
  HRESULT get_ItemFlags(int32_t i, int32_t* flags) override { return m_Inner->get_ItemFlags(i, flags); }
  HRESULT put_ItemFlags(int32_t i, int32_t flags) override { return m_Inner->put_ItemFlags(i, flags); }
  HRESULT Add(IString* n, IUnknown* v, IUnknown* d, int32_t f) override { return m_Inner->Add(n, v, d, f); }
  HRESULT Remove(int32_t i) override { return m_Inner->Remove(i); }
  HRESULT RemoveAll() override { return m_Inner->RemoveAll(); }
  HRESULT Copy(IParameters* source) override { return m_Inner->Copy(source); }
  HRESULT Sort(int32_t flags) override { return m_Inner->Sort(flags); }
  HRESULT Set(IUnknown* k, IUnknown* v, IUnknown* d, int32_t f, int16_t m) override { return m_Inner->Set(k, v, d, f, m); }
  HRESULT AddNOLOCK(IString* n, IUnknown* v, IUnknown* d, int32_t f) override { return m_Inner->AddNOLOCK(n, v, d, f); }
  HRESULT get_ItemNOLOCK(int32_t i, IUnknown** item) override { return m_Inner->get_ItemNOLOCK(i, item); }
  HRESULT put_ItemNOLOCK(int32_t i, IUnknown* value) override { return m_Inner->put_ItemNOLOCK(i, value); }
  HRESULT get_ItemNameNOLOCK(int32_t i, IString** name) override { return m_Inner->get_ItemNameNOLOCK(i, name); }
  HRESULT Params_SaveCSV(IDataStream* s, int32_t f) override { return m_Inner->Params_SaveCSV(s, f); }
  HRESULT Params_SaveXML(IDataStream* s, int32_t f) override { return m_Inner->Params_SaveXML(s, f); }
  HRESULT Params_LoadXML(IDataStream* s, int32_t f, int32_t r) override { return m_Inner->Params_LoadXML(s, f, r); }
  HRESULT Params_SaveFolderStream(IDataStream* s, int32_t f) override { return m_Inner->Params_SaveFolderStream(s, f); }
  HRESULT Params_LoadFolderStream(IDataStream* s, int32_t f) override { return m_Inner->Params_LoadFolderStream(s, f); }
  HRESULT Params_SaveXMLUnk(IDataStream* s, int32_t f) override { return m_Inner->Params_SaveXMLUnk(s, f); }
  HRESULT Params_LoadXMLUnk(IDataStream* s, int32_t f) override { return m_Inner->Params_LoadXMLUnk(s, f); }
  HRESULT getParameter(PARAMETEROBJECT* r, IUnknown** v) override { return m_Inner->getParameter(r, v); }

 private:
  IParameters* m_Inner;
  uint32_t m_References = 1;
};

TEST(RangeFunctions, ValuesOfASpreadSheetRange) {
  SmartPtr<IParametersCreatable> inner = SetOf({{L"a", MakeDouble(4)}});
  SpreadSheetSet sheet(inner.get());
  const Case cases[] = {
      {L"Sum(A1..A8)", 40},       {L"Mean(A1..A8)", 5},     {L"Min(A1..A8)", 2},        {L"Max(A1..A8)", 9},
      {L"StdDev(A1..A8)", 2.138089935299395, 1e-12},        {L"Sum A1..A8", 40},        {L"Sum(A1..A8) + 1", 41},
      {L"SUM( A1..A8 )", 0},      {L"Sum(1, 2) + Sum(A1..A8)", 40},                     {L"Sum(1, 2)", 3},
      {L"Sum(B1..B2)", 0},        {L"Mean(E1..E1)", 0},     {L"a * Sum(A1..A8)", 160},  {L"Max(1, 2) + a", 6},
  };
  ExpectAll(cases, &sheet);
  EXPECT_EQ(Evaluate(L"Sum(A1..A8)", inner.get()), 0) << "a plain set has no ranges: the list form reads A1 as 0";
}

// A range whose cell evaluates the same range again: the fourth nested range gives 0, so the
// three levels give 1, 1 + 1 and 1 + 2; the depth count is back to 0 afterwards.
TEST(RangeFunctions, NestedRangesStopAtTheThirdLevel) {
  SmartPtr<IParametersCreatable> inner = SetOf({});
  SpreadSheetSet sheet(inner.get());
  EXPECT_EQ(Evaluate(L"Sum(R..R)", &sheet), 3);
  EXPECT_EQ(Evaluate(L"Sum(R..R) * 10", &sheet), 30);
}

// A value bound through an input binding is the bound parameter's value, also
// when the set is read through get_Index instead of the module's own lookup.
TEST(RangeFunctions, InputBindingsGiveTheValue) {
  SmartPtr<IInputParameter> binding = CreateObjectAs<IInputParameter>(L"InputParameter");
  SmartPtr<IParametersCreatable> source = SetOf({{L"v", MakeLong(42)}});
  binding->put_Source(source.get());
  binding->put_Name(MakeString(L"v").get());
  SmartPtr<IParametersCreatable> inner = NewParameters();
  inner->Add(MakeString(L"bound").get(), MakeDouble(1).get(), binding.get(), 0);
  SpreadSheetSet foreign(inner.get());
  EXPECT_EQ(Evaluate(L"bound + 1", inner.get()), 43);
  EXPECT_EQ(Evaluate(L"bound + 1", &foreign), 43);
}

}  // namespace
