// Loading sibling modules, the global component collection, creation by
// class name and the bootstrapping of strings and variants.
#include <gtest/gtest.h>

#include <string>

#include "runtime/framework_objects.h"
#include "runtime/module_loader.h"
#include "strings/ref_string.h"
#include "test_support.h"

namespace {

using test_support::MakeString;
using test_support::RefCountOf;
using test_support::TextOf;

std::wstring Repeat(wchar_t c, int n) { return std::wstring(static_cast<size_t>(n), c); }

tagREFString View(const std::wstring& text) { return {static_cast<int32_t>(text.size()), text.c_str()}; }

TEST(ModuleCreateFunction, MissingModulePrintsAndGivesNull) {
  testing::internal::CaptureStdout();
  CreationFunction create = MODULECreateFunction(RefOf(L"NoSuchModule"), RefOf(L"Variant"));
  std::string printed = testing::internal::GetCapturedStdout();
  EXPECT_EQ(create, nullptr);
  EXPECT_EQ(printed.rfind("Module not available ./_binlinux/NoSuchModule.so, error ", 0), 0u) << printed;
  EXPECT_EQ(printed.back(), '\n');
}

TEST(ModuleCreateFunction, ModuleWithoutTheClassGivesNullSilently) {
  testing::internal::CaptureStdout();
  CreationFunction create = MODULECreateFunction(RefOf(L"Collections"), RefOf(L"NoSuchClass"));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(create, nullptr);
}

TEST(ModuleCreateFunction, FindsTheClassInItsModule) {
  CreationFunction create = MODULECreateFunction(RefOf(L"Collections"), RefOf(L"Variant"));
  ASSERT_NE(create, nullptr);
  IID iid = IID_IVariant;
  SmartPtr<IVariant> variant;
  ASSERT_EQ(create(nullptr, &iid, variant.ReceiveVoid()), S_OK);
  variant->SetLong(5);
  EXPECT_EQ(variant->GetLong(), 5);
}

// The path is "./_binlinux/" (12) + one byte per character + ".so" (3); names over 240 are refused.
TEST(ModuleCreateFunction, PathLengthRule) {
  struct Case {
    int nameLength;
    bool attempted;
  } cases[] = {{1, true}, {100, true}, {240, true}, {241, false}, {100000, false}};
  for (const Case& c : cases) {
    std::wstring name = Repeat(L'm', c.nameLength);
    testing::internal::CaptureStdout();
    EXPECT_EQ(MODULECreateFunction(View(name), RefOf(L"Variant")), nullptr);
    std::string printed = testing::internal::GetCapturedStdout();
    if (!c.attempted) {
      EXPECT_EQ(printed, "") << c.nameLength;
      continue;
    }
    std::string prefix = "Module not available ";
    size_t pathEnd = printed.find(", error ");
    ASSERT_NE(pathEnd, std::string::npos) << printed;
    EXPECT_EQ(pathEnd - prefix.size(), static_cast<size_t>(12 + c.nameLength + 3)) << c.nameLength;
  }
}

TEST(ModuleCreateFunction, NameNeedNotBeTerminated) {
  const wchar_t text[] = L"CollectionsXYZ";
  CreationFunction create = MODULECreateFunction({11, text}, RefOf(L"Variant"));
  EXPECT_NE(create, nullptr);
}

TEST(InitializeModule, KeepsAndReleasesTheCollection) {
  SmartPtr<IComponentCollection> collection = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  ASSERT_TRUE(collection);
  uint32_t before = RefCountOf(collection.get());
  EXPECT_EQ(InitializeModule(nullptr, nullptr), 0);
  EXPECT_FALSE(gGlobalComponentCollection) << "null clears the global";
  EXPECT_EQ(RefCountOf(collection.get()), before - 1);
  EXPECT_EQ(InitializeModule(nullptr, collection.get()), 0);
  EXPECT_EQ(gGlobalComponentCollection.get(), collection.get());
  EXPECT_EQ(RefCountOf(collection.get()), before);
}

TEST(GlobalComponents, MadeOnceAndShared) {
  SmartPtr<IComponentCollection> first = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  SmartPtr<IComponentCollection> second = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  ASSERT_TRUE(first);
  EXPECT_EQ(first.get(), second.get());
}

TEST(CreateObject, ByClassName) {
  IID iid = IID_IVariant;
  SmartPtr<IVariant> variant = SmartPtr<IVariant>::Adopt(static_cast<IVariant*>(CreateObject(RefOf(L"Variant"), &iid)));
  ASSERT_TRUE(variant);
  EXPECT_EQ(RefCountOf(variant.get()), 1u);

  EXPECT_EQ(CreateObject(RefOf(L"NoSuchClass"), &iid), nullptr);
  EXPECT_EQ(CreateObject(RefOf(L"variant"), &iid), nullptr) << "class names are case-sensitive";
  iid = IID_IString;
  EXPECT_EQ(CreateObject(RefOf(L"Variant"), &iid), nullptr) << "a variant is not a string";
}

TEST(CreateObject, NullWithoutCollection) {
  InitializeModule(nullptr, nullptr);
  // GLOBALComponents makes the collection again on demand, so CreateObject still works...
  IID iid = IID_IVariant;
  SmartPtr<IVariant> variant = SmartPtr<IVariant>::Adopt(static_cast<IVariant*>(CreateObject(RefOf(L"Variant"), &iid)));
  EXPECT_TRUE(variant);
  EXPECT_TRUE(gGlobalComponentCollection) << "...by making it from CollectionsEx";
}

TEST(GetComponentString, DescribesTheClass) {
  SmartPtr<IComponentString> component =
      SmartPtr<IComponentString>::Adopt(GetComponentString(MakeString(L"CreatableString").get()));
  ASSERT_TRUE(component);
  SmartPtr<IString> module, name;
  ASSERT_EQ(component->GetProperty(kComponentModuleName, module.Receive()), S_OK);
  ASSERT_EQ(component->GetProperty(kComponentClassName, name.Receive()), S_OK);
  EXPECT_EQ(TextOf(module), L"Collections");
  EXPECT_EQ(TextOf(name), L"CreatableString");

  EXPECT_EQ(GetComponentString(MakeString(L"NoSuchClass").get()), nullptr);
}

TEST(Bootstrap, StringsAndVariantsWithoutACollection) {
  InitializeModule(nullptr, nullptr);
  SmartPtr<ICreatableString> text = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  ASSERT_TRUE(text);
  EXPECT_FALSE(gGlobalComponentCollection) << "the basic objects come straight from CollectionsEx";
  text->SetText(RefOf(L"abc"));
  text->Append(RefOf(L"de"));
  EXPECT_EQ(TextOf(text), L"abcde");
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  ASSERT_TRUE(value);
  EXPECT_EQ(value->GetType(), kVariantNotNumber);
}

TEST(Bootstrap, EachCallMakesANewObject) {
  SmartPtr<ICreatableString> a = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  SmartPtr<ICreatableString> b = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  ASSERT_TRUE(a && b);
  EXPECT_FALSE(a == b.get());
  EXPECT_EQ(RefCountOf(a.get()), 1u);
}

}  // namespace
