// End to end: input bindings made by class name from the loaded module, bound
// to a parameter set of the same module, read through the input collection.
#include <gtest/gtest.h>

#include "host_support.h"
#include "test_support.h"

namespace {

using test_support::DescribeValue;
using test_support::MakeString;

TEST(HostInputs, BindingsReadAParameterSetByClassName) {
  LoadedModule parameters = Load("Parameters.so");
  LoadedModule collections = Load("Collections.so");
  SmartPtr<IInputParameters> inputs = CreateFromModule<IInputParameters>(parameters, L"InputParameters");
  SmartPtr<IInputParameter> binding = CreateFromModule<IInputParameter>(parameters, L"InputParameter");
  SmartPtr<IParameters> set = CreateFromModule<IParameters>(parameters, L"ParametersCreatable");
  SmartPtr<IVariant> value = CreateFromModule<IVariant>(collections, L"Variant");
  ASSERT_TRUE(inputs && binding && set && value);
  value->SetDouble(4.5);
  set->Add(MakeString(L"gain").get(), value.get(), nullptr, 0);

  ASSERT_EQ(inputs->Create(MakeString(L"in").get(), IID_NULL, 0), S_OK);
  ASSERT_EQ(inputs->Add(MakeString(L"copy").get(), binding.get()), S_OK);
  ASSERT_EQ(inputs->SetInput(0, set.get()), S_OK);
  SmartPtr<IUnknown> read;
  EXPECT_EQ(inputs->GetInput(0, read.Receive()), E_ITEMNOTFOUND) << "no item chosen yet";

  ASSERT_EQ(binding->SetSource(set.get(), 0), S_OK);
  value->SetDouble(6.25);
  EXPECT_EQ(inputs->GetInput(1, read.Receive()), S_OK) << "the item's position, 0";
  EXPECT_EQ(DescribeValue(QueryAs<IVariant>(read.get()).get()), L"r6.25");
}

}  // namespace
