// Absurd arguments on every indexed operation of every collection class, null
// out-pointers and names of 100,000 characters: each gives its documented
// result code (0x80070057 for an index, 0x80004003 for a null out-pointer).
// XML nested 100,000 levels is read in bounded time and stack, with a defined
// result. (A template line of 100 MB is read in the text parser's tests.)
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <type_traits>

#include "parameters/persistence_test_support.h"

namespace {

using namespace persistence_test;

// Answered by an operation of an interface the class does not offer.
constexpr HRESULT kNotOffered = 0x7FFFFFFF;

// An operation at `index`; getters hand out into a null pointer when `nullOut`.
struct Operation { const char* name; bool getter; std::function<HRESULT(INamedCollection*, int32_t, bool)> call; };

template <class I, class Owner, class Out>
Operation Get(const char* name, HRESULT (Owner::*get)(int32_t, Out*)) {
  return {name, true, [get](INamedCollection* collection, int32_t index, bool nullOut) {
            SmartPtr<I> object = QueryAs<I>(collection);
            if (!object) return kNotOffered;
            Out out{};
            const HRESULT result = (static_cast<Owner*>(object.get())->*get)(index, nullOut ? nullptr : &out);
            if constexpr (std::is_pointer_v<Out>) {
              if (out) out->Release();
            }
            return result;
          }};
}

template <class I>
Operation Put(const char* name, HRESULT (*put)(I*, int32_t)) {
  return {name, false, [put](INamedCollection* collection, int32_t index, bool) {
            SmartPtr<I> object = QueryAs<I>(collection);
            return object ? put(object.get(), index) : kNotOffered;
          }};
}

std::vector<Operation> Operations() {
  using C = INamedCollection;
  using S = ISuperCollection;
  using P = IParameters;
  using I = IInputParameters;
  return {
      Get<C>("get_Item", &C::get_Item), Get<C>("get_ItemName", &C::get_ItemName),
      Put<C>("Rename", [](C* c, int32_t i) { return c->Rename(i, MakeString(L"r").get()); }),
      Get<S>("get_ItemAttached", &S::get_ItemAttached), Get<S>("get_ItemFlags", &S::get_ItemFlags),
      Put<S>("put_ItemAttached", [](S* c, int32_t i) { return c->put_ItemAttached(i, nullptr); }),
      Put<S>("put_ItemFlags", [](S* c, int32_t i) { return c->put_ItemFlags(i, 1); }),
      Get<P>("get_ItemVariant", &P::get_ItemVariant), Get<P>("get_ItemDescriptor", &P::get_ItemDescriptor),
      Get<P>("get_ItemFlags", &P::get_ItemFlags), Get<P>("get_ItemNOLOCK", &P::get_ItemNOLOCK),
      Get<P>("get_ItemNameNOLOCK", &P::get_ItemNameNOLOCK),
      Put<P>("put_Item", [](P* p, int32_t i) { return p->put_Item(i, MakeLong(5).get()); }),
      Put<P>("put_ItemNOLOCK", [](P* p, int32_t i) { return p->put_ItemNOLOCK(i, MakeLong(5).get()); }),
      Put<P>("put_ItemDescriptor", [](P* p, int32_t i) { return p->put_ItemDescriptor(i, nullptr); }),
      Put<P>("put_ItemFlags", [](P* p, int32_t i) { return p->put_ItemFlags(i, 1); }),
      Put<P>("Remove", [](P* p, int32_t i) { return p->Remove(i); }),
      Put<P>("Iterate", [](P* p, int32_t i) { return p->Iterate(i, nullptr, nullptr, nullptr, nullptr); }),
      Put<I>("SetInput", [](I* c, int32_t i) { return c->SetInput(i, c); }),
      Put<I>("Remove", [](I* c, int32_t i) { return c->Remove(i); }),
  };
}

// Each collection class as a host creates it, holding the items "a" and "b".
std::vector<SmartPtr<INamedCollection>> CollectionsWithTwo() {
  SmartPtr<IParametersCreatable> set = SetOf({{L"a", MakeLong(1)}, {L"b", MakeLong(2)}});
  SmartPtr<ISuperCollection> collection = CreateObjectAs<ISuperCollection>(L"ParamCollection");
  SmartPtr<IInputParameters> inputs = CreateObjectAs<IInputParameters>(L"InputParameters");
  for (const wchar_t* name : {L"a", L"b"}) {
    collection->Add(MakeString(name).get(), nullptr, nullptr, 0);
    inputs->Create(MakeString(name).get(), IID_NULL, 0);
  }
  return {QueryAs<INamedCollection>(set.get()), QueryAs<INamedCollection>(collection.get()),
          QueryAs<INamedCollection>(inputs.get())};
}

// At every absurd index each operation is refused and the two items stay; a
// getter given a null out-pointer at a valid index is refused too.
TEST(BadInput, AbsurdIndicesAndNullOutPointers) {
  const std::vector<Operation> operations = Operations();
  const char* const classes[] = {"ParametersCreatable", "ParamCollection", "InputParameters"};
  const std::vector<SmartPtr<INamedCollection>> collections = CollectionsWithTwo();
  for (size_t c = 0; c < collections.size(); ++c) {
    INamedCollection* collection = collections[c].get();
    ASSERT_TRUE(collection) << classes[c];
    SCOPED_TRACE(classes[c]);
    for (const Operation& op : operations) {
      for (int32_t index : {INT32_MIN, -1, 2, INT32_MAX}) {
        const HRESULT result = op.call(collection, index, false);
        if (result != kNotOffered) {
          EXPECT_EQ(result, E_INVALIDARG) << op.name << "(" << index << ")";
        }
      }
      const HRESULT result = op.getter ? op.call(collection, 0, true) : kNotOffered;
      if (result != kNotOffered) {
        EXPECT_EQ(result, E_POINTER) << op.name << "(0, null)";
      }
    }
    EXPECT_EQ(NamesOf(collection), (std::vector<std::wstring>{L"a", L"b"}));
    EXPECT_EQ(collection->get_Count(nullptr), E_POINTER);
    EXPECT_EQ(collection->get_Index(MakeString(L"a").get(), nullptr), E_POINTER);
  }
}

// A name of 100,000 characters is kept whole, found, and survives an XML round trip.
TEST(BadInput, NamesOfAHundredThousandCharacters) {
  const std::wstring longName(100000, L'n');
  SmartPtr<IParametersCreatable> set = SetOf({{longName.c_str(), MakeLong(3)}});
  EXPECT_EQ(IndexOfName(set.get(), longName), 0);
  int32_t index = -1;
  EXPECT_LT(set->get_Index(MakeString(longName.substr(1)).get(), &index), 0);
  const std::wstring saved = L"<r>" + SavedXML(set.get(), 0) + L"</r>";
  EXPECT_EQ(saved, L"<r><" + longName + L">3</" + longName + L"></r>");
  SmartPtr<IParametersCreatable> loaded = NewParameters();
  ASSERT_EQ(loaded->Params_LoadXML(XMLReading(saved, true).get(), kLoadReplace, 0), S_OK);
  EXPECT_EQ(NamesOf(loaded.get()), std::vector<std::wstring>{longName});
}

constexpr int kLevels = 100000;

std::wstring Repeat(const std::wstring& piece, int count) {
  std::wstring text;
  text.reserve(piece.size() * static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

// In replace mode child elements are not interpreted, so the deepest document
// still gives one parameter holding empty text.
TEST(DeepInput, XMLNestedAHundredThousandLevelsAsAParameterSet) {
  const std::wstring text = L"<r><first>1</first>" + Repeat(L"<a>", kLevels) + Repeat(L"</a>", kLevels) + L"</r>";
  SmartPtr<IParametersCreatable> set = NewParameters();
  EXPECT_EQ(set->Params_LoadXML(XMLReading(text, true).get(), kLoadReplace, 0), S_OK);
  EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{L"first=i1/0", L"a=t''/0"}));
}

// Descriptor objects nested 50,000 deep (100,000 elements) in merge mode: the
// descriptor loads itself in replace mode, which does not interpret children,
// so the nesting ends at its first level.
TEST(DeepInput, XMLNestedAHundredThousandLevelsAsObjects) {
  const std::wstring text = L"<r>" + Repeat(L"<a><ParametersCreatable>", kLevels / 2) +
                            Repeat(L"</ParametersCreatable></a>", kLevels / 2) + L"</r>";
  SmartPtr<IParametersCreatable> set = SetOf({{L"a", MakeLong(7)}});
  EXPECT_EQ(set->Params_LoadXML(XMLReading(text, true).get(), 0, 0), S_OK);
  EXPECT_EQ(Describe(set.get()), std::vector<std::wstring>{L"a=i7/0+d"});
  SmartPtr<IUnknown> descriptor;
  ASSERT_EQ(set->get_ItemDescriptor(0, descriptor.Receive()), S_OK);
  EXPECT_EQ(Describe(QueryAs<IParameters>(descriptor.get()).get()), std::vector<std::wstring>{L"a=t''/0"});
}

}  // namespace
