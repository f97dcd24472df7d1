// End to end: the built modules loaded with dlopen and used through their
// exported entry points, exactly as a host process does.
#include <gtest/gtest.h>

#include <string>

#include "host_support.h"
#include "test_support.h"

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

// Each of the module's nine names either is not available yet or creates an
// object that reports that very class name.
TEST(Host, ParameterModuleClassNames) {
  LoadedModule module = Load("Parameters.so");
  ASSERT_NE(module.createFunction, nullptr);
  for (const wchar_t* name : {L"ConditionalExpression", L"Expression", L"ExpressionBuilder", L"InputParameter",
                              L"InputParameters", L"ParametersCreatable", L"ParametersCreator", L"TextParser",
                              L"ParamCollection"}) {
    void* create = nullptr;
    int32_t result = module.createFunction(View(name), &create);
    if (result == E_FAIL) continue;
    ASSERT_EQ(result, S_OK) << testing::PrintToString(std::wstring(name));
    IID iid = IID_IObjectInfo;
    SmartPtr<IObjectInfo> info;
    ASSERT_EQ(reinterpret_cast<CreationFunction>(create)(nullptr, &iid, info.ReceiveVoid()), S_OK);
    tagREFString reported{};
    info->GetName(0, &reported);
    EXPECT_EQ(std::wstring(reported.text, static_cast<size_t>(reported.length)), name);
  }
  for (const wchar_t* wrong : {L"Expressions", L"expression", L"", L"PARAMETERSCREATABLE"}) {
    void* out = nullptr;
    EXPECT_EQ(module.createFunction(View(wrong), &out), E_FAIL);
    EXPECT_EQ(out, nullptr);
  }
}

// The host makes the collection, hands it to the modules, and creates by class name.
TEST(Host, SharedComponentCollection) {
  LoadedModule registry = Load("CollectionsEx.so");
  LoadedModule parameters = Load("Parameters.so");
  ASSERT_NE(registry.createFunction, nullptr);
  void* create = nullptr;
  ASSERT_EQ(registry.createFunction(View(L"GlobalComponentCollection"), &create), S_OK);
  IID iid = IID_IComponentCollection;
  SmartPtr<IComponentCollection> collection;
  ASSERT_EQ(reinterpret_cast<CreationFunction>(create)(nullptr, &iid, collection.ReceiveVoid()), S_OK);
  EXPECT_EQ(parameters.initialize(nullptr, collection.get()), 0);
  EXPECT_EQ(test_support::RefCountOf(collection.get()), 2u) << "the module keeps one reference";

  iid = IID_IVariant;
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

}  // namespace
