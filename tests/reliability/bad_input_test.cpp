// Absurd arguments on every indexed operation of every collection class, null
// out-pointers and names of 100,000 characters: each gives its documented
// result code (0x80070057 for an index, 0x80004003 for a null out-pointer).
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <vector>

#include "test_support.h"

namespace {

using namespace test_support;

// A class as a host creates it, holding two items.
struct CollectionClass {
  const wchar_t* name;
  std::function<SmartPtr<INamedCollection>()> make;
};

SmartPtr<INamedCollection> ParametersWithTwo() {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  set->Add(MakeString(L"a").get(), MakeLong(1).get(), nullptr, 0);
  set->Add(MakeString(L"b").get(), MakeLong(2).get(), nullptr, 0);
  return QueryAs<INamedCollection>(set.get());
}

SmartPtr<INamedCollection> SuperWithTwo(const wchar_t* className) {
  SmartPtr<ISuperCollection> collection = CreateObjectAs<ISuperCollection>(className);
  for (const wchar_t* name : {L"a", L"b"}) collection->Add(MakeString(name).get(), nullptr, nullptr, 0);
  return QueryAs<INamedCollection>(collection.get());
}

SmartPtr<INamedCollection> InputsWithTwo() {
  SmartPtr<IInputParameters> inputs = CreateObjectAs<IInputParameters>(L"InputParameters");
  for (const wchar_t* name : {L"a", L"b"}) inputs->Create(MakeString(name).get(), IID_NULL, 0);
  return QueryAs<INamedCollection>(inputs.get());
}

const CollectionClass kClasses[] = {
    {L"ParametersCreatable", ParametersWithTwo},
    {L"ParamCollection", [] { return SuperWithTwo(L"ParamCollection"); }},
    {L"InputParameters", InputsWithTwo},
};

// An operation at `index` with real out-pointers, or null ones when `nullOut`.
struct Operation {
  const char* name;
  std::function<HRESULT(INamedCollection*, int32_t index, bool nullOut)> call;
};

template <class I>
SmartPtr<I> As(INamedCollection* collection) {
  return QueryAs<I>(collection);
}

const Operation kNamedOperations[] = {
    {"get_Item", [](INamedCollection* c, int32_t i, bool n) {
       SmartPtr<IUnknown> out;
       return c->get_Item(i, n ? nullptr : out.Receive());
     }},
    {"get_ItemName", [](INamedCollection* c, int32_t i, bool n) {
       SmartPtr<IString> out;
       return c->get_ItemName(i, n ? nullptr : out.Receive());
     }},
};

const Operation kSuperOperations[] = {
    {"get_ItemAttached", [](INamedCollection* c, int32_t i, bool n) {
       SmartPtr<IUnknown> out;
       return As<ISuperCollection>(c)->get_ItemAttached(i, n ? nullptr : out.Receive());
     }},
    {"get_ItemFlags", [](INamedCollection* c, int32_t i, bool n) {
       int32_t flags = 0;
       return As<ISuperCollection>(c)->get_ItemFlags(i, n ? nullptr : &flags);
     }},
    {"put_ItemAttached", [](INamedCollection* c, int32_t i, bool) {
       return As<ISuperCollection>(c)->put_ItemAttached(i, nullptr);
     }},
    {"put_ItemFlags", [](INamedCollection* c, int32_t i, bool) { return As<ISuperCollection>(c)->put_ItemFlags(i, 1); }},
};

const Operation kParameterOperations[] = {
    {"get_ItemVariant", [](INamedCollection* c, int32_t i, bool n) {
       SmartPtr<IVariant> out;
       return As<IParameters>(c)->get_ItemVariant(i, n ? nullptr : out.Receive());
     }},
    {"get_ItemDescriptor", [](INamedCollection* c, int32_t i, bool n) {
       SmartPtr<IUnknown> out;
       return As<IParameters>(c)->get_ItemDescriptor(i, n ? nullptr : out.Receive());
     }},
    {"get_ItemFlags", [](INamedCollection* c, int32_t i, bool n) {
       int32_t flags = 0;
       return As<IParameters>(c)->get_ItemFlags(i, n ? nullptr : &flags);
     }},
    {"get_ItemNOLOCK", [](INamedCollection* c, int32_t i, bool n) {
       SmartPtr<IUnknown> out;
       return As<IParameters>(c)->get_ItemNOLOCK(i, n ? nullptr : out.Receive());
     }},
    {"get_ItemNameNOLOCK", [](INamedCollection* c, int32_t i, bool n) {
       SmartPtr<IString> out;
       return As<IParameters>(c)->get_ItemNameNOLOCK(i, n ? nullptr : out.Receive());
     }},
    {"put_Item", [](INamedCollection* c, int32_t i, bool) { return As<IParameters>(c)->put_Item(i, MakeLong(5).get()); }},
    {"put_ItemNOLOCK",
     [](INamedCollection* c, int32_t i, bool) { return As<IParameters>(c)->put_ItemNOLOCK(i, MakeLong(5).get()); }},
    {"put_ItemDescriptor",
     [](INamedCollection* c, int32_t i, bool) { return As<IParameters>(c)->put_ItemDescriptor(i, nullptr); }},
    {"put_ItemFlags", [](INamedCollection* c, int32_t i, bool) { return As<IParameters>(c)->put_ItemFlags(i, 1); }},
    {"Rename", [](INamedCollection* c, int32_t i, bool) { return As<IParameters>(c)->Rename(i, MakeString(L"r").get()); }},
    {"Remove", [](INamedCollection* c, int32_t i, bool) { return As<IParameters>(c)->Remove(i); }},
    {"Iterate", [](INamedCollection* c, int32_t i, bool) {
       return As<IParameters>(c)->Iterate(i, nullptr, nullptr, nullptr, nullptr);
     }},
};

// The operations the collection's interfaces offer.
std::vector<const Operation*> OperationsOf(INamedCollection* collection) {
  std::vector<const Operation*> operations;
  for (const Operation& op : kNamedOperations) operations.push_back(&op);
  if (As<ISuperCollection>(collection))
    for (const Operation& op : kSuperOperations) operations.push_back(&op);
  if (As<IParameters>(collection))
    for (const Operation& op : kParameterOperations) operations.push_back(&op);
  return operations;
}

// Every operation that applies to the class, at every absurd index: refused,
// and the collection keeps its two items.
TEST(BadInput, AbsurdIndicesOnEveryIndexedOperation) {
  const int32_t indices[] = {INT32_MIN, -1, 2, INT32_MAX};
  for (const CollectionClass& cls : kClasses) {
    SmartPtr<INamedCollection> collection = cls.make();
    ASSERT_TRUE(collection) << testing::PrintToString(cls.name);
    for (const Operation* op : OperationsOf(collection.get()))
      for (int32_t index : indices)
        EXPECT_EQ(op->call(collection.get(), index, false), E_INVALIDARG)
            << testing::PrintToString(cls.name) << " " << op->name << "(" << index << ")";
    int32_t count = 0;
    collection->get_Count(&count);
    EXPECT_EQ(count, 2) << testing::PrintToString(cls.name);
  }
}

// Every get_ operation, given a null out-pointer at a valid index.
TEST(BadInput, NullOutPointers) {
  for (const CollectionClass& cls : kClasses) {
    SmartPtr<INamedCollection> collection = cls.make();
    for (const Operation* op : OperationsOf(collection.get())) {
      if (std::string(op->name).rfind("get_", 0) != 0) continue;
      EXPECT_EQ(op->call(collection.get(), 0, true), E_POINTER) << testing::PrintToString(cls.name) << " " << op->name;
    }
    int32_t* noCount = nullptr;
    EXPECT_EQ(collection->get_Count(noCount), E_POINTER) << testing::PrintToString(cls.name);
    EXPECT_EQ(collection->get_Index(MakeString(L"a").get(), nullptr), E_POINTER) << testing::PrintToString(cls.name);
  }
}

// A name of 100,000 characters is kept whole, found, and survives an XML round trip.
TEST(BadInput, NamesOfAHundredThousandCharacters) {
  const std::wstring longName(100000, L'n');
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  ASSERT_EQ(set->Add(MakeString(longName).get(), MakeLong(3).get(), nullptr, 0), S_OK);
  int32_t index = -1;
  EXPECT_EQ(set->get_Index(MakeString(longName).get(), &index), S_OK);
  EXPECT_EQ(index, 0);
  EXPECT_LT(set->get_Index(MakeString(longName.substr(1)).get(), &index), 0);

  SmartPtr<IXMLStreamEx> xml = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  xml->SetOptions(-1, kXMLOptionLean);
  set->Params_SaveXML(QueryAs<IDataStream>(xml.get()).get(), 0);
  void* text = nullptr;
  int32_t size = 0;
  xml->GetTextBuffer(&text, &size);
  std::wstring saved = L"<r>" + std::wstring(static_cast<const wchar_t*>(text), static_cast<size_t>(size) / sizeof(wchar_t)) + L"</r>";
  EXPECT_EQ(saved, L"<r><" + longName + L">3</" + longName + L"></r>");
  SmartPtr<IXMLStream> reading = CreateObjectAs<IXMLStream>(L"XMLStream");
  ASSERT_EQ(reading->LoadContent(saved.c_str(), static_cast<int32_t>(saved.size() * sizeof(wchar_t)), 0), S_OK);
  SmartPtr<IDataStream> element;
  reading->OpenChild({0, nullptr}, nullptr, element.Receive(), 0);
  SmartPtr<IParametersCreatable> loaded = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  ASSERT_EQ(loaded->Params_LoadXML(element.get(), kLoadReplace, 0), S_OK);
  SmartPtr<IString> name;
  loaded->get_ItemName(0, name.Receive());
  EXPECT_EQ(TextOf(name), longName);
}

}  // namespace
