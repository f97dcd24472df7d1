// End to end: the built modules loaded with dlopen and used through their
// exported entry points, exactly as a host process does.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

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

using test_support::MakeDouble;
using test_support::MakeLong;
using test_support::MakeString;
using test_support::RefCountOf;
using test_support::TextOf;

// Class names match exactly: same length, every character equal, case-sensitive. The name crosses
// CreateFunction by value as a counted view, so only `length` characters count.
TEST(Host, CreateFunctionMatchesExactly) {
  const wchar_t longer[] = L"VariantXYZ";
  struct Case { const char* module; tagREFString name; bool found; } cases[] = {
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
    EXPECT_EQ(module.createFunction(c.name, &out), c.found ? S_OK : E_FAIL);
    EXPECT_EQ(out != reinterpret_cast<void*>(0x1), c.found) << "a refused name leaves the out pointer untouched";
  }
}

// Each of the module's nine classes creates an object that reports that very
// class name; a class that stops being creatable fails here.
TEST(Host, ParameterModuleClassNames) {
  LoadedModule module = Load("Parameters.so");
  ASSERT_NE(module.createFunction, nullptr);
  for (const wchar_t* name : {L"ConditionalExpression", L"Expression", L"ExpressionBuilder", L"InputParameter",
                              L"InputParameters", L"ParametersCreatable", L"ParametersCreator", L"TextParser",
                              L"ParamCollection"}) {
    SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
    SmartPtr<IObjectInfo> info = CreateFromModule<IObjectInfo>(module, name);
    ASSERT_TRUE(info);
    tagREFString reported{};
    info->GetName(0, &reported);
    EXPECT_EQ(std::wstring(reported.text, static_cast<size_t>(reported.length)), name);
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
    set->Add(MakeString(name).get(), nullptr, nullptr, 0);
  SmartPtr<IUnknown> primary;
  ASSERT_EQ(set->QueryInterface(IID_IUnknown, primary.ReceiveVoid()), S_OK);
  EXPECT_EQ(SortThroughPrimaryTable(primary.get(), kSortDescending), S_OK);
  std::wstring order;
  for (int32_t i = 0; i < 3; ++i) {
    SmartPtr<IString> name;
    set->get_ItemName(i, name.Receive());
    order += TextOf(name);
  }
  EXPECT_EQ(order, L"cba");
}

// The host makes the collection and hands it to the modules, which hold it while they need it. In
// between, threads make their own formulas through the module and evaluate them against one shared set.
TEST(Host, SharedComponentCollectionAndThreads) {
  LoadedModule parameters = Load("Parameters.so");
  SmartPtr<IComponentCollection> collection =
      CreateFromModule<IComponentCollection>(Load("CollectionsEx.so"), L"GlobalComponentCollection");
  ASSERT_TRUE(collection);
  EXPECT_EQ(parameters.initialize(nullptr, collection.get()), 0);
  EXPECT_EQ(RefCountOf(collection.get()), 2u) << "the module keeps one reference";
  SmartPtr<IParametersCreatable> set = CreateFromModule<IParametersCreatable>(parameters, L"ParametersCreatable");
  ASSERT_TRUE(set);
  set->Add(MakeString(L"width").get(), MakeDouble(2.5).get(), nullptr, 0);
  set->Add(MakeString(L"height").get(), MakeLong(4).get(), nullptr, 0);
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (int i = 0; i < 100; ++i) {
        SmartPtr<IExpression> expression = CreateFromModule<IExpression>(parameters, L"Expression");
        const std::wstring formula = L"width*height+" + std::to_wstring(t) + L"+" + std::to_wstring(i);
        SmartPtr<IVariant> value;
        if (!expression || expression->put_Expression(View(formula.c_str())) < 0 ||
            expression->Evaluate(set.get()) != S_OK || expression->get_Value(value.Receive()) != S_OK ||
            value->GetDouble() != 10.0 + t + i)
          ++wrong;
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  // Components the module made through the collection keep references of their own.
  const uint32_t held = RefCountOf(collection.get());
  EXPECT_EQ(parameters.initialize(nullptr, nullptr), 0);
  EXPECT_EQ(RefCountOf(collection.get()), held - 1) << "InitializeModule(null, null) releases the module's one";
}

// The creator's own table (its IUnknown pointer) reaches every operation in the
// documented order, Combine and Find included. The object does not derive from
// the host's declaration, so the sanitizer's dynamic-type check is off here.
__attribute__((no_sanitize("vptr"))) void CallCreatorTable(IUnknown* creator, IParametersCreatable* set,
                                                           IParametersCreatable* last) {
  auto* table = reinterpret_cast<ParametersCreatorObject*>(creator);
  ASSERT_EQ(table->Create(MakeString(L"Speed=12.5\nUnit: m/s\n").get(), MakeString(L"=:").get(), set), S_OK);
  EXPECT_EQ(table->Combine(set, set, last), S_OK);  // adds nothing
  IParametersCreatable* found = last;
  EXPECT_EQ(table->Find(set, nullptr, 0, &found), E_NOTIMPL);
  EXPECT_EQ(found, last);
  EXPECT_EQ(table->SubSet(set, -1, 1, last), S_OK);
  int32_t created = 0, combinedAndCut = 0;
  set->get_Count(&created);
  last->get_Count(&combinedAndCut);
  EXPECT_EQ(created * 10 + combinedAndCut, 21);
}

TEST(Host, CreatorTable) {
  LoadedModule module = Load("Parameters.so");
  SmartPtr<IUnknown> creator = CreateFromModule<IUnknown>(module, L"ParametersCreator");
  SmartPtr<IParametersCreatable> set = CreateFromModule<IParametersCreatable>(module, L"ParametersCreatable");
  SmartPtr<IParametersCreatable> last = CreateFromModule<IParametersCreatable>(module, L"ParametersCreatable");
  ASSERT_TRUE(creator && set && last);
  CallCreatorTable(creator.get(), set.get(), last.get());
}

}  // namespace
