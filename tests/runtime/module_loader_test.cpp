// Loading sibling modules, creation by class name through the global component collection and the bootstrapping
// of strings and variants. (Keeping and releasing the collection in InitializeModule is counted in the host
// tests; making it once, in the first-use test.)
#include <gtest/gtest.h>

#include <string>

#include "runtime/framework_objects.h"
#include "runtime/module_loader.h"
#include "test_support.h"

namespace {

using test_support::MakeString;
using test_support::RefCountOf;
using test_support::TextOf;

// The path is "./_binlinux/" + one byte per character of the name + ".so"; names over 240 are refused unprinted.
TEST(ModuleCreateFunction, FindsTheClassOrReportsAMissingModule) {
  auto missing = [](const std::string& name) { return "Module not available ./_binlinux/" + name + ".so, error "; };
  struct Case {
    std::wstring module;
    int32_t length;
    const wchar_t* className;
    bool found;
    std::string printed;  // what standard output begins with; empty: nothing printed
  };
  const Case cases[] = {
      {L"Collections", 11, L"Variant", true, ""},
      {L"CollectionsXYZ", 11, L"Variant", true, ""},  // the name need not be terminated
      {L"Collections", 11, L"NoSuchClass", false, ""},  // a module without the class: null, silently
      {L"NoSuchModule", 12, L"Variant", false, missing("NoSuchModule")},
      {std::wstring(240, L'm'), 240, L"Variant", false, missing(std::string(240, 'm'))},
      {std::wstring(241, L'm'), 241, L"Variant", false, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.module.substr(0, 20) << "/" << c.length);
    testing::internal::CaptureStdout();
    CreationFunction create = MODULECreateFunction({c.length, c.module.c_str()}, RefOf(c.className));
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(printed.substr(0, c.printed.size()), c.printed);
    EXPECT_EQ(c.printed.empty(), printed.empty()) << printed;
    EXPECT_EQ(printed.empty() ? '\n' : printed.back(), '\n');
    IID iid = IID_IVariant;
    SmartPtr<IVariant> variant;
    EXPECT_EQ(create ? create(nullptr, &iid, variant.ReceiveVoid()) : E_FAIL, c.found ? S_OK : E_FAIL);
  }
}

// Without a kept collection, the first creation makes it afresh from CollectionsEx.
TEST(CreateObject, ByClassNameThroughTheCollection) {
  InitializeModule(nullptr, nullptr);
  struct Case { const wchar_t* className; const IID* iid; bool created; } cases[] = {
      {L"Variant", &IID_IVariant, true}, {L"NoSuchClass", &IID_IVariant, false},
      {L"Variant", &IID_IString, false},   // a variant is not a string
  };
  for (const Case& c : cases) {
    IID iid = *c.iid;
    auto object = SmartPtr<IUnknown>::Adopt(static_cast<IUnknown*>(CreateObject(RefOf(c.className), &iid)));
    ASSERT_EQ(static_cast<bool>(object), c.created) << testing::PrintToString(std::wstring(c.className));
    EXPECT_EQ(object ? RefCountOf(object.get()) : 1u, 1u) << "one reference for the caller";
  }
  EXPECT_TRUE(gGlobalComponentCollection);
}

// Strings and variants are made straight from CollectionsEx when no collection is kept, a new object on each
// call; a component describes its class. A number buffer is made by class name.
TEST(Components, MakeStringsAndVariantsWithoutACollectionAndDescribeTheirClass) {
  InitializeModule(nullptr, nullptr);
  SmartPtr<ICreatableString> text = MakeString(L""), other = MakeString(L"");
  ASSERT_TRUE(text && other && test_support::MakeVariant());
  EXPECT_FALSE(gGlobalComponentCollection);
  EXPECT_FALSE(text == other.get());
  EXPECT_EQ(RefCountOf(text.get()), 1u);

  SmartPtr<IComponentString> component =
      SmartPtr<IComponentString>::Adopt(GetComponentString(MakeString(L"CreatableString").get()));
  ASSERT_TRUE(component);
  SmartPtr<IString> module, name;
  component->GetProperty(kComponentModuleName, module.Receive());
  component->GetProperty(kComponentClassName, name.Receive());
  EXPECT_EQ(TextOf(module) + L" " + TextOf(name), L"Collections CreatableString");
  EXPECT_EQ(GetComponentString(MakeString(L"NoSuchClass").get()), nullptr);
  EXPECT_TRUE(SmartPtr<IDblVector>::Adopt(BASEObject::CreateDBLBuffer()));
}

}  // namespace
