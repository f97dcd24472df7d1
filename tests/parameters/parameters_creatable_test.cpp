// Tests of "ParametersCreatable" as a component: the interfaces it answers and
// the references it holds.
#include "parameters/parameters_creatable.h"

#include <gtest/gtest.h>

#include "collection_test_support.h"

namespace {

using namespace collection_test;

TEST(ParametersCreatableTest, AnswersOneParameterSetUnderEachIdentity) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  ASSERT_TRUE(set);
  for (const IID* iid : {&IID_IParameters, &IID_INamedCollection}) {
    void* answer = nullptr;
    ASSERT_EQ(set->QueryInterface(*iid, &answer), S_OK);
    EXPECT_EQ(answer, static_cast<void*>(set.get()));
    static_cast<IUnknown*>(answer)->Release();
  }
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
