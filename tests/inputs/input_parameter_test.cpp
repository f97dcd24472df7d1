// The input binding as a host uses it: accessors, the choice of item in
// SetSource, the three paths of get_Object with element selection and
// interface resolution, values read through parameter sets and cycles of
// bindings.
#include <gtest/gtest.h>

#include <climits>

#include "input_test_support.h"

// How a host sees the binding's own table (outside the anonymous namespace so
// that the compiler cannot assume it has no implementations).
struct InputParameterPrimaryTable : IUnknown {
  virtual HRESULT FinalConstruct() = 0;
  virtual void FinalRelease() = 0;
  virtual void Lock() = 0;
  virtual void Unlock() = 0;
  virtual HRESULT get_Name(IString** name) = 0;
  virtual HRESULT put_Name(IString* name) = 0;
  virtual HRESULT get_Source(IUnknown** source) = 0;
  virtual HRESULT put_Source(IUnknown* source) = 0;
  virtual HRESULT get_SourceIndex(int32_t* index) = 0;
  virtual HRESULT put_SourceIndex(int32_t index) = 0;
  virtual HRESULT get_IID(IID* iid) = 0;
  virtual HRESULT put_IID(IID iid) = 0;
  virtual HRESULT get_AssignmentFlags(int32_t* flags) = 0;
  virtual HRESULT put_AssignmentFlags(int32_t flags) = 0;
  virtual HRESULT SetSource(IUnknown* source, int32_t checkType) = 0;
  virtual HRESULT get_Object(IUnknown** object) = 0;
};

namespace {

using namespace input_test;

// Null out pointers and unset fields are refused; the name string is held, not copied.
TEST(InputParameter, AccessorsReportNullPointersAndUnsetFields) {
  SmartPtr<IInputParameter> binding = NewBinding();
  ASSERT_TRUE(binding);
  IInputParameter* b = binding.get();
  SmartPtr<IUnknown> source(b);
  const HRESULT results[] = {b->get_Name(nullptr), b->get_IID(nullptr), b->get_Object(nullptr),
                             b->get_Source(source.Receive()), b->get_Object(source.Receive()), b->put_Source(b)};
  EXPECT_EQ(std::vector<HRESULT>(std::begin(results), std::end(results)),
            (std::vector<HRESULT>{E_POINTER, E_POINTER, E_INVALIDARG, E_FAIL, E_INVALIDARG, E_INVALIDARG}));
  EXPECT_FALSE(source) << "an unset source hands out null";
  EXPECT_EQ(NameOf(b), L"<unset>");
  SmartPtr<ICreatableString> held = MakeString(L"speed");
  b->put_Name(held.get());
  held->SetText(Ref(L"torque"));
  EXPECT_EQ(NameOf(b), L"torque");
}

// INamedCollection is answered with the primary pointer (intended), whose
// table is the class's own: accessors first, then SetSource and get_Object.
TEST(InputParameter, AnswersItsIdentitiesAndKeepsItsOwnTableOrder) {
  SmartPtr<IInputParameter> binding = NewBinding();
  SmartPtr<IUnknown> unknown = QueryAs<IUnknown>(binding.get());
  EXPECT_EQ(static_cast<void*>(QueryAs<INamedCollection>(binding.get()).get()), static_cast<void*>(unknown.get()));
  EXPECT_TRUE(QueryAs<IDataPersist>(binding.get()) && !QueryAs<IParameters>(binding.get()));

  auto* table = reinterpret_cast<InputParameterPrimaryTable*>(unknown.get());
  EXPECT_EQ(table->put_SourceIndex(12), S_OK);
  EXPECT_EQ(table->put_AssignmentFlags(5), S_OK);
  int32_t flags = 0;
  binding->get_AssignmentFlags(&flags);
  EXPECT_EQ(SourceIndexOf(binding.get()) * 10 + flags, 125);
  EXPECT_EQ(table->get_Object(nullptr), E_INVALIDARG);
}

// A binding that was bound before: name "old", element 4.
SmartPtr<IInputParameter> BoundBefore(const IID& iid) { return MakeBinding(L"old", 4, iid, nullptr); }

// Untyped (IID_NULL): the first item holding a number, else item 0; an empty
// set or a source that is no set keeps the name and element. Typed: the source
// itself when it answers; else the first object-valued item decides; a set
// without objects and any collection are searched item by item.
TEST(InputParameter, SetSourceChoosesTheItem) {
  SmartPtr<IVariant> text = MakeText(L"x"), number = MakeLong(5);
  SmartPtr<IParametersCreatable> object = NewParameters();
  SmartPtr<IDblVector> numbers = MakeNumbers({1, 2});
  auto set = [](const Items& items) { return AsUnknown(MakeSet(items)); };
  auto collection = [](const Items& items) { return AsUnknown(MakeCollection(items)); };
  struct Case { const char* what; IID iid; int32_t checkType; SmartPtr<IUnknown> source; HRESULT result;
                std::wstring name; } cases[] = {
      {"untyped: text, then numbers", IID_NULL, 1,
       set({{L"a", text.get()}, {L"b", number.get()}, {L"c", number.get()}}), S_OK, L"b"},
      {"untyped: text only", IID_NULL, 1, set({{L"t", text.get()}}), S_OK, L"t"},
      {"untyped: empty set", IID_NULL, 1, set({}), S_OK, L"old"},
      {"untyped: no set", IID_NULL, 1, AsUnknown(numbers), S_OK, L"old"},
      {"first object has the wrong type", IID_IDblVector, 1,
       set({{L"n", number.get()}, {L"s", object.get()}, {L"v", numbers.get()}}), S_OK, L"old"},
      {"unchecked: the first object", IID_IDblVector, 0,
       set({{L"n", number.get()}, {L"s", object.get()}, {L"v", numbers.get()}}), S_OK, L"s"},
      {"first object qualifies", IID_IDblVector, 1, set({{L"n", number.get()}, {L"v", numbers.get()}}), S_OK, L"v"},
      {"a plain value is wanted", IID_IVariant, 1, set({{L"t", text.get()}, {L"n", number.get()}}), S_OK, L"t"},
      {"no object, checked", IID_IDblVector, 1, set({{L"n", number.get()}}), E_FAIL, L"old"},
      {"no object, unchecked: item 0", IID_IDblVector, 0, set({{L"n", number.get()}}), S_OK, L"n"},
      {"the source itself answers", IID_IParameters, 1, set({{L"n", number.get()}}), S_OK, L"<unset>"},
      {"collection, checked", IID_IDblVector, 1, collection({{L"a", object.get()}, {L"b", numbers.get()}}), S_OK, L"b"},
      {"collection, unchecked", IID_IDblVector, 0, collection({{L"a", object.get()}, {L"b", numbers.get()}}), S_OK,
       L"a"},
      {"collection, none qualifies", IID_IExpression, 1, collection({{L"a", object.get()}}), E_FAIL, L"old"},
      {"null source", IID_IDblVector, 1, SmartPtr<IUnknown>(), E_FAIL, L"old"},
      {"answers none of the interfaces", IID_IDblVector, 1, MakeStandIn(0, nullptr), E_FAIL, L"old"},
      {"answers through its container", IID_IDblVector, 1, MakeStandIn(CDouble::kMoniker, numbers.get()), S_OK,
       L"<unset>"},
  };
  for (const Case& c : cases) {
    SmartPtr<IInputParameter> binding = BoundBefore(c.iid);
    EXPECT_EQ(binding->SetSource(c.source.get(), c.checkType), c.result) << c.what;
    EXPECT_EQ(NameOf(binding.get()), c.name) << c.what;
    EXPECT_EQ(SourceIndexOf(binding.get()), c.name == L"old" ? 4 : 0) << c.what;
    if (c.iid == IID_NULL) {
      EXPECT_TRUE(SourceOf(binding.get()) == c.source.get()) << c.what;
    }
  }
  SmartPtr<IInputParameter> binding = BoundBefore(IID_NULL);
  binding->SetSource(numbers.get(), 0);
  EXPECT_EQ(binding->SetSource(nullptr, 0), S_OK);
  EXPECT_FALSE(SourceOf(binding.get())) << "a null source clears the old one";
  EXPECT_EQ(binding->SetSource(binding.get(), 0), E_INVALIDARG) << "a binding never holds itself";
}

// A binding named `name` (null: unset) fetching from a source: the result and what it handed out.
struct FetchCase { const wchar_t* name; int32_t sourceIndex; IID iid; HRESULT result; std::wstring value; };

void ExpectFetches(IUnknown* source, const std::vector<FetchCase>& cases) {
  for (const FetchCase& c : cases) {
    SCOPED_TRACE(testing::Message() << (c.name ? c.name : L"<unset>") << " [" << c.sourceIndex << "]");
    SmartPtr<IUnknown> object;
    EXPECT_EQ(MakeBinding(c.name, c.sourceIndex, c.iid, source)->get_Object(object.Receive()), c.result);
    EXPECT_EQ(Describe(object.get()), c.value);
  }
}

// From a parameter set: the item's value, whose success code is its position.
TEST(InputParameter, FetchesFromAParameterSet) {
  SmartPtr<IDblVector> fives = MakeNumbers({10, 20, 30, 40, 50});
  SmartPtr<IDblVector> pair = MakeNumbers({6, 7});
  SmartPtr<ISuperCollection> list =
      MakeCollection({{L"e1", MakeLong(7).get()}, {L"e2", MakeLong(8).get()}, {L"e3", MakeLong(9).get()}});
  SmartPtr<IUnknown> node = MakeStandIn(CDouble::kNode, pair.get());
  SmartPtr<IUnknown> host = MakeStandIn(CDouble::kHost, pair.get());
  SmartPtr<IParametersCreatable> set = MakeSet({{L"a", MakeLong(1).get()}, {L"b", MakeDouble(2.5).get()},
                                                {L"c", MakeText(L"x").get()}, {L"vec", fives.get()},
                                                {L"list", list.get()}, {L"node", node.get()},
                                                {L"host", host.get()}, {L"other", NewParameters().get()}});
  ExpectFetches(set.get(), {
      {L"a", 0, IID_NULL, 0, L"i1"}, {L"B", 0, IID_NULL, 1, L"r2.5"}, {L"vec", 0, IID_NULL, 3, L"cDblBuffer"},
      {L"list", 0, IID_NULL, 4, L"cSuperCollection"}, {L"vec", 2, IID_NULL, 0, L"r20"},
      {L"vec", 5, IID_NULL, 0, L"r50"},
      {L"vec", -1, IID_NULL, E_INVALIDARG, L"<none>"},  // count - (-1) = 6: past the end (intended)
      {L"vec", INT32_MIN, IID_NULL, E_INVALIDARG, L"<none>"}, {L"list", 1, IID_NULL, 0, L"i7"},
      {L"list", -1, IID_NULL, 0, L"i9"}, {L"list", -4, IID_NULL, E_INVALIDARG, L"<none>"},
      {L"other", 0, IID_IParameters, 0, L"cParametersCreatable"},
      {L"list", 0, IID_IExpression, 0, L"cSuperCollection"},  // nothing answers: unconverted
      {L"node", 0, IID_IDblVector, 0, L"cDblBuffer"},          // the node's object
      {L"node", 2, IID_IDblVector, 0, L"cDblBuffer"},          // a node is no vector: no selection first
      {L"node", 2, IID_IExpression, 0, L"r7"},                 // the node's object as a vector, element 2
      {L"host", 0, IID_IDblVector, 0, L"cDblBuffer"},          // the host window's object
      {L"missing", 0, IID_NULL, 0, L"cParametersCreatable"},   // not in the set: the source itself
      {L"missing", 0, IID_IDblVector, E_ITEMNOTFOUND, L"<none>"}, {nullptr, 0, IID_NULL, E_ITEMNOTFOUND, L"<none>"},
  });
}

// From a named collection (item by name) and from a plain source (the source itself).
TEST(InputParameter, FetchesFromACollectionOrThePlainSource) {
  SmartPtr<IDblVector> numbers = MakeNumbers({1, 2, 3});
  SmartPtr<ISuperCollection> list = MakeCollection({{L"e1", MakeLong(7).get()}, {L"e2", MakeLong(8).get()}});
  SmartPtr<ISuperCollection> collection =
      MakeCollection({{L"x", NewParameters().get()}, {L"yield", numbers.get()}, {L"list", list.get()}});
  ExpectFetches(collection.get(), {
      {L"yield", 0, IID_NULL, 0, L"cDblBuffer"},
      {L"YI", 0, IID_NULL, 0, L"cDblBuffer"},  // the collection finds names by prefix
      {L"list", -1, IID_NULL, 0, L"i8"},       {L"list", -3, IID_NULL, E_INVALIDARG, L"<none>"},
      {L"x", 0, IID_IDblVector, 0, L"cParametersCreatable"},  // unconverted
      {L"zz", 0, IID_NULL, 0, L"cSuperCollection"},  {L"zz", 0, IID_IDblVector, E_ITEMNOTFOUND, L"<none>"},
      {nullptr, 0, IID_NULL, E_ITEMNOTFOUND, L"<none>"},
  });
  ExpectFetches(numbers.get(), {
      {L"a", 0, IID_NULL, 0, L"cDblBuffer"},
      {L"a", 2, IID_NULL, 0, L"cDblBuffer"},  // no element of a plain source
      {L"a", 0, IID_IParameters, E_ITEMNOTFOUND, L"<none>"},
  });
  // What a container yields for IUnknown; a container that is itself a host window gives what the host
  // hosts; a host hosting nothing and an object answering nothing give nothing.
  ExpectFetches(MakeStandIn(CDouble::kMoniker, numbers.get()).get(), {{L"a", 0, IID_NULL, 0, L"cDblBuffer"}});
  ExpectFetches(MakeStandIn(CDouble::kMoniker, MakeStandIn(CDouble::kHost, numbers.get()).get()).get(),
                {{L"a", 0, IID_IDblVector, 0, L"cDblBuffer"}});
  ExpectFetches(MakeStandIn(CDouble::kHost, nullptr).get(), {{L"a", 0, IID_IDblVector, E_ITEMNOTFOUND, L"<none>"}});
  ExpectFetches(MakeStandIn(0, nullptr).get(),
                {{L"a", 0, IID_NULL, 0, L"cDouble"}, {L"a", 0, IID_IDblVector, E_ITEMNOTFOUND, L"<none>"}});
  // Another binding is never taken for a collection, though it answers INamedCollection.
  ExpectFetches(NewBinding().get(), {{L"a", 0, IID_NULL, 0, L"cInputParameter"}});
}

// A set whose item has a binding as descriptor reads the bound item's current
// value (result 1), also after the caller let go of the source.
TEST(InputParameter, ParameterSetsReadTheBoundValue) {
  SmartPtr<IParametersCreatable> source = MakeSet({{L"text", MakeText(L"t").get()}, {L"speed", MakeLong(10).get()}});
  SmartPtr<IInputParameter> binding = NewBinding();
  ASSERT_EQ(binding->SetSource(source.get(), 0), S_OK);
  EXPECT_EQ(NameOf(binding.get()), L"speed");
  SmartPtr<IParametersCreatable> reader = NewParameters();
  reader->Add(MakeString(L"v").get(), MakeLong(-1).get(), binding.get(), 0);
  SmartPtr<IVariant> value;
  EXPECT_EQ(reader->get_ItemVariant(0, value.Receive()), S_FALSE);
  EXPECT_EQ(DescribeValue(value.get()), L"i10");
  source->put_Item(1, MakeLong(25).get());
  source.Reset();  // the binding holds its own reference
  SmartPtr<IUnknown> item;
  EXPECT_EQ(reader->get_Item(0, item.Receive()), S_OK);
  EXPECT_EQ(Describe(item.get()), L"i25");
}

// A binding whose resolution leads back to itself is refused inside the
// cycle, so the set that asked falls back to its stored value; a chain
// deeper than 16 bindings is cut the same way.
TEST(InputParameter, CyclesOfBindingsEndWithAStoredValue) {
  auto bindTo = [](IParameters* reader, int32_t index, IParameters* source, const wchar_t* name) {
    reader->put_ItemDescriptor(index, MakeBinding(name, 0, IID_NULL, source).get());
  };
  auto read = [](IParameters* set) {
    SmartPtr<IVariant> value;
    HRESULT result = set->get_ItemVariant(0, value.Receive());
    return std::to_wstring(result) + L":" + DescribeValue(value.get());
  };
  SmartPtr<IParametersCreatable> self = MakeSet({{L"x", MakeLong(5).get()}});
  bindTo(self.get(), 0, self.get(), L"x");
  std::vector<SmartPtr<IParametersCreatable>> chain;
  for (int32_t i = 0; i < 20; ++i) chain.push_back(MakeSet({{L"v", MakeLong(i).get()}}));
  for (int32_t i = 0; i + 1 < 20; ++i) bindTo(chain[i].get(), 0, chain[i + 1].get(), L"v");

  struct Case { const char* what; IParameters* set; std::wstring read; } cases[] = {
      {"bound to itself", self.get(), L"1:i5"},  // two sets bound to each other: see the concurrency tests
      {"a chain of 20 from the start: cut after 16", chain[0].get(), L"1:i16"},
      {"14 links: to the end", chain[5].get(), L"1:i19"},
  };
  for (const Case& c : cases) EXPECT_EQ(read(c.set), c.read) << c.what;

  // The set and its binding hold each other: break the reference cycle.
  self->put_ItemDescriptor(0, nullptr);
}

}  // namespace
