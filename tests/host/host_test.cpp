// End to end: the built modules loaded with dlopen and used through their
// exported entry points, exactly as a host process does.
#include <gtest/gtest.h>

#include <string>

#include "host_support.h"
#include "test_support.h"

// The primary table of "ParametersCreatable" as a host declares it: the
// object model's four operations, then the class's own, Sort first. Declared
// outside the anonymous namespace so the compiler cannot assume that nothing
// implements it.
struct ParametersCreatablePrimaryTable : IUnknown {
  virtual HRESULT FinalConstruct() = 0;
  virtual void FinalRelease() = 0;
  virtual void Lock() = 0;
  virtual void Unlock() = 0;
  virtual HRESULT Sort(int32_t flags) = 0;
};

namespace {

// Class names match exactly: same length, every character equal, case-sensitive. The name crosses
// CreateFunction by value as a counted view, so only `length` characters count.
TEST(Host, CreateFunctionMatchesExactly) {
  const wchar_t longer[] = L"VariantXYZ";
  struct Case {
    const char* module;
    tagREFString name;
    bool found;
  } cases[] = {
      {"Collections.so", View(L"Variant"), true},     {"Collections.so", {7, longer}, true},
      {"Collections.so", View(L"variant"), false},    {"Collections.so", View(L"Variants"), false},
      {"Collections.so", View(L"Varian"), false},     {"Collections.so", View(L""), false},
      {"Collections.so", {0, longer}, false},         {"Collections.so", {-3, longer}, false},
      {"Collections.so", {7, nullptr}, false},        {"CollectionsEx.so", View(L"Variant"), false},
      {"CollectionsEx.so", {25, L"GlobalComponentCollection!"}, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.module << " " << c.name.length);
    LoadedModule module = Load(c.module);
    ASSERT_NE(module.createFunction, nullptr);
    void* out = reinterpret_cast<void*>(0x1);
    int32_t result = module.createFunction(c.name, &out);
    if (c.found) {
      EXPECT_EQ(result, S_OK);
      EXPECT_NE(out, reinterpret_cast<void*>(0x1));
    } else {
      EXPECT_EQ(result, E_FAIL);
      EXPECT_EQ(out, reinterpret_cast<void*>(0x1)) << "the out pointer is left untouched";
    }
  }
}

// Each of the module's nine names that is built creates an object that reports
// that very class name; a name not built yet is refused like an unknown one.
TEST(Host, ParameterModuleClassNames) {
  LoadedModule module = Load("Parameters.so");
  ASSERT_NE(module.createFunction, nullptr);
  const struct {
    const wchar_t* name;
    bool built;
  } classes[] = {
      {L"ConditionalExpression", true},  {L"Expression", true},       {L"ExpressionBuilder", true},
      {L"InputParameter", true},         {L"InputParameters", true}, {L"ParametersCreatable", true},
      {L"ParametersCreator", true},      {L"TextParser", true},       {L"ParamCollection", true},
  };
  for (const auto& c : classes) {
    SCOPED_TRACE(testing::PrintToString(std::wstring(c.name)));
    void* create = nullptr;
    ASSERT_EQ(module.createFunction(View(c.name), &create), c.built ? S_OK : E_FAIL);
    if (!c.built) continue;
    IID iid = IID_IObjectInfo;
    SmartPtr<IObjectInfo> info;
    ASSERT_EQ(reinterpret_cast<CreationFunction>(create)(nullptr, &iid, info.ReceiveVoid()), S_OK);
    tagREFString reported{};
    info->GetName(0, &reported);
    EXPECT_EQ(std::wstring(reported.text, static_cast<size_t>(reported.length)), c.name);
  }
  for (const wchar_t* wrong : {L"Expressions", L"expression", L"", L"PARAMETERSCREATABLE"}) {
    void* out = nullptr;
    EXPECT_EQ(module.createFunction(View(wrong), &out), E_FAIL);
    EXPECT_EQ(out, nullptr);
  }
}

// A host calls through a table type the object was not declared with; exempt
// from the dynamic type check, which would rightly see a different type.
__attribute__((no_sanitize("vptr"))) HRESULT SortThroughPrimaryTable(IUnknown* object, int32_t flags) {
  return reinterpret_cast<ParametersCreatablePrimaryTable*>(object)->Sort(flags);
}

TEST(Host, PrimaryTableFollowsTheClassSlotOrder) {
  SmartPtr<IParameters> set = CreateFromModule<IParameters>(Load("Parameters.so"), L"ParametersCreatable");
  ASSERT_TRUE(set);
  for (const wchar_t* name : {L"b", L"c", L"a"})
    set->Add(test_support::MakeString(name).get(), nullptr, nullptr, 0);
  SmartPtr<IUnknown> primary;
  ASSERT_EQ(set->QueryInterface(IID_IUnknown, primary.ReceiveVoid()), S_OK);
  EXPECT_EQ(SortThroughPrimaryTable(primary.get(), kSortDescending), S_OK);
  std::wstring order;
  for (int32_t i = 0; i < 3; ++i) {
    SmartPtr<IString> name;
    set->get_ItemName(i, name.Receive());
    order += test_support::TextOf(name);
  }
  EXPECT_EQ(order, L"cba");
}

// The host makes the collection, hands it to the modules, and creates by class name.
TEST(Host, SharedComponentCollection) {
  LoadedModule parameters = Load("Parameters.so");
  SmartPtr<IComponentCollection> collection =
      CreateFromModule<IComponentCollection>(Load("CollectionsEx.so"), L"GlobalComponentCollection");
  ASSERT_TRUE(collection);
  EXPECT_EQ(parameters.initialize(nullptr, collection.get()), 0);
  EXPECT_EQ(test_support::RefCountOf(collection.get()), 2u) << "the module keeps one reference";

  IID iid = IID_IVariant;
  SmartPtr<IVariant> value;
  ASSERT_EQ(collection->CreateByName(View(L"Variant"), &iid, value.ReceiveVoid()), S_OK);
  value->SetDouble(2.5);
  EXPECT_DOUBLE_EQ(value->GetDouble(), 2.5);

  SmartPtr<IComponentString> component;
  ASSERT_EQ(collection->CreateByName(View(L"Variant"), nullptr, component.ReceiveVoid()), S_OK)
      << "a null identity answers the class's component object";
  SmartPtr<IString> module;
  component->GetProperty(kComponentModuleName, module.Receive());
  EXPECT_EQ(test_support::TextOf(module), L"Collections");

  SmartPtr<IUnknown> nothing;
  EXPECT_LT(collection->CreateByName(View(L"NoSuchClass"), &iid, nothing.ReceiveVoid()), 0);
  EXPECT_FALSE(nothing);
  int32_t handle = 0;
  EXPECT_LT(collection->Find(test_support::MakeString(L"NoSuchClass").get(), &handle), 0);
  EXPECT_LT(handle, 0);
  EXPECT_EQ(collection->GetItem(100000, nothing.Receive()), E_INVALIDARG);
  EXPECT_EQ(collection->GetItem(-1, nothing.Receive()), E_INVALIDARG);

  // Modules the collection loaded while searching hold it too; the parameter module lets go of its reference.
  uint32_t before = test_support::RefCountOf(collection.get());
  EXPECT_EQ(parameters.initialize(nullptr, nullptr), 0);
  EXPECT_EQ(test_support::RefCountOf(collection.get()), before - 1) << "InitializeModule(null, null) releases it";
}

// A host's view of the creator's own table. The object does not derive from the
// declaration, so the sanitizer's dynamic-type check is off for these calls.
struct CreatorTable {
  ParametersCreatorObject* object;
  __attribute__((no_sanitize("vptr"))) HRESULT Create(IString* text, IString* separators,
                                                      IParametersCreatable* target) {
    return object->Create(text, separators, target);
  }
  __attribute__((no_sanitize("vptr"))) HRESULT Combine(IParametersCreatable* a, IParametersCreatable* target) {
    return object->Combine(a, a, target);
  }
  __attribute__((no_sanitize("vptr"))) HRESULT Find(IParametersCreatable* source, IParametersCreatable** found) {
    return object->Find(source, nullptr, 0, found);
  }
  __attribute__((no_sanitize("vptr"))) HRESULT SubSet(IParametersCreatable* source, int32_t first, int32_t count,
                                                      IParametersCreatable* target) {
    return object->SubSet(source, first, count, target);
  }
};

// The creator's own table (its IUnknown pointer) reaches every operation in the
// documented order, Combine and Find included; its text fills a template.
TEST(Host, CreatorTableAndTextParser) {
  LoadedModule module = Load("Parameters.so");
  ASSERT_NE(module.createFunction, nullptr);
  SmartPtr<IUnknown> creator = CreateFromModule<IUnknown>(module, L"ParametersCreator");
  SmartPtr<IParametersCreatable> set =
      CreateFromModule<IParametersCreatable>(module, L"ParametersCreatable");
  SmartPtr<IParametersCreatable> last =
      CreateFromModule<IParametersCreatable>(module, L"ParametersCreatable");
  SmartPtr<ITextParser> parser = CreateFromModule<ITextParser>(module, L"TextParser");
  ASSERT_TRUE(creator && set && last && parser);
  CreatorTable table{reinterpret_cast<ParametersCreatorObject*>(creator.get())};

  ASSERT_EQ(table.Create(test_support::MakeString(L"Speed=12.5\nUnit: m/s\n").get(),
                          test_support::MakeString(L"=:").get(), set.get()),
            S_OK);
  int32_t count = 0;
  EXPECT_EQ(table.Combine(set.get(), last.get()), S_OK);
  last->get_Count(&count);
  EXPECT_EQ(count, 0);
  IParametersCreatable* found = last.get();
  EXPECT_EQ(table.Find(set.get(), &found), E_NOTIMPL);
  EXPECT_EQ(found, last.get());
  EXPECT_EQ(table.SubSet(set.get(), -1, 1, last.get()), S_OK);
  last->get_Count(&count);
  EXPECT_EQ(count, 1);

  SmartPtr<IString> out;
  EXPECT_EQ(parser->ParseTags(test_support::MakeString(L"Speed __speed__ __UNIT__ \n__Unit__").get(), out.Receive(),
                              set.get(), 0),
            S_OK);
  EXPECT_EQ(test_support::TextOf(out), L"Speed 12.5 m/s\r\nm/s\r\n");
}

}  // namespace
