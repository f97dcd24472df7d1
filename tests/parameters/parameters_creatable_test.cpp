// Tests of "ParametersCreatable" as a component: creation by name, the
// interfaces it answers and its own operations.
#include "parameters/parameters_creatable.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "collection_test_support.h"

namespace {

using collection_test::NamesOf;
using test_support::MakeLong;
using test_support::MakeString;

TEST(ParametersCreatableTest, AnswersOneParameterSetUnderThreeIdentities) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  ASSERT_TRUE(set);
  void* parameters = nullptr;
  void* named = nullptr;
  ASSERT_EQ(set->QueryInterface(IID_IParameters, &parameters), S_OK);
  ASSERT_EQ(set->QueryInterface(IID_INamedCollection, &named), S_OK);
  EXPECT_EQ(parameters, static_cast<void*>(set.get()));
  EXPECT_EQ(named, static_cast<void*>(set.get()));
  static_cast<IUnknown*>(parameters)->Release();
  static_cast<IUnknown*>(named)->Release();

  SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(set.get());
  ASSERT_TRUE(info);
  tagREFString name{0, nullptr};
  ASSERT_EQ(info->GetName(0, &name), S_OK);
  EXPECT_EQ(std::wstring(name.text, static_cast<size_t>(name.length)), L"ParametersCreatable");
  EXPECT_FALSE(QueryAs<ISuperCollection>(set.get()));
}

TEST(ParametersCreatableTest, SortAndLockGoThroughTheObject) {
  SmartPtr<CParametersCreatable> object = NewObject<CParametersCreatable>();
  ASSERT_TRUE(object);
  object->Add(MakeString(L"b").get(), MakeLong(1).get(), nullptr, 0);
  object->Add(MakeString(L"a").get(), MakeLong(2).get(), nullptr, 0);
  EXPECT_EQ(object->Sort(0), S_OK);
  EXPECT_EQ(NamesOf(static_cast<IParameters*>(object.get())), (std::vector<std::wstring>{L"a", L"b"}));
  // The set's lock is the object's recursive lock: another thread waits for it.
  object->CollectionLock();
  std::atomic<bool> entered{false};
  std::thread other([&] {
    object->Lock();
    entered = true;
    object->Unlock();
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(entered);
  object->CollectionUnlock();
  other.join();
  EXPECT_TRUE(entered);
}

TEST(ParametersCreatableTest, ReleasingTheSetReleasesItsValues) {
  SmartPtr<IVariant> value = MakeLong(1);
  SmartPtr<IParametersCreatable> descriptor = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  uint32_t valueRefs = test_support::RefCountOf(value.get());
  uint32_t descriptorRefs = test_support::RefCountOf(descriptor.get());
  {
    SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
    set->Add(MakeString(L"a").get(), value.get(), descriptor.get(), 0);
    EXPECT_EQ(test_support::RefCountOf(value.get()), valueRefs + 1);
  }
  EXPECT_EQ(test_support::RefCountOf(value.get()), valueRefs);
  EXPECT_EQ(test_support::RefCountOf(descriptor.get()), descriptorRefs);
}

}  // namespace
