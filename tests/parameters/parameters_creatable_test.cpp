// Tests of "ParametersCreatable" as a component: creation by name, the
// interfaces it answers and its own operations.
#include "parameters/parameters_creatable.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "collection_test_support.h"

namespace {

using namespace collection_test;

TEST(ParametersCreatableTest, AnswersOneParameterSetUnderThreeIdentities) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  ASSERT_TRUE(set);
  for (const IID* iid : {&IID_IParameters, &IID_INamedCollection}) {
    void* answer = nullptr;
    ASSERT_EQ(set->QueryInterface(*iid, &answer), S_OK);
    EXPECT_EQ(answer, static_cast<void*>(set.get()));
    static_cast<IUnknown*>(answer)->Release();
  }
  SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(set.get());
  ASSERT_TRUE(info);
  tagREFString name{0, nullptr};
  ASSERT_EQ(info->GetName(0, &name), S_OK);
  EXPECT_EQ(TextOf(name), L"ParametersCreatable");
}

TEST(ParametersCreatableTest, SortAndLockGoThroughTheObject) {
  SmartPtr<CParametersCreatable> object = NewObject<CParametersCreatable>();
  ASSERT_TRUE(object);
  AddNamed(object.get(), {L"b", L"a"}, MakeLong(1).get());
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
  SmartPtr<IParametersCreatable> descriptor = NewParameters();
  const uint32_t valueRefs = RefCountOf(value.get()), descriptorRefs = RefCountOf(descriptor.get());
  {
    SmartPtr<IParametersCreatable> set = NewParameters();
    set->Add(MakeString(L"a").get(), value.get(), descriptor.get(), 0);
    EXPECT_EQ(RefCountOf(value.get()), valueRefs + 1);
  }
  EXPECT_EQ(RefCountOf(value.get()), valueRefs);
  EXPECT_EQ(RefCountOf(descriptor.get()), descriptorRefs);
}

}  // namespace
