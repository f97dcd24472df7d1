// "DblBuffer": a vector of numbers, as the list form of StdDev fills it.
#include <gtest/gtest.h>

#include <vector>

#include "runtime/framework_objects.h"
#include "test_support.h"

namespace {

std::vector<double> NumbersOf(IDblVector* buffer) {
  std::vector<double> numbers;
  int32_t count = 0;
  buffer->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    double value = 0;
    buffer->get_Number(i, &value);
    numbers.push_back(value);
  }
  return numbers;
}

TEST(DblBufferTest, AppendsAndInsertsByPosition) {
  SmartPtr<IDblVector> buffer = SmartPtr<IDblVector>::Adopt(BASEObject::CreateDBLBuffer());
  ASSERT_TRUE(buffer);
  struct Case { double value; int32_t position; HRESULT result; std::vector<double> numbers; };
  const Case cases[] = {
      {1.5, -1, S_OK, {1.5}}, {2.5, -1, S_OK, {1.5, 2.5}}, {0.5, 0, S_OK, {0.5, 1.5, 2.5}},
      {3.5, 3, S_OK, {0.5, 1.5, 2.5, 3.5}}, {2.0, 2, S_OK, {0.5, 1.5, 2.0, 2.5, 3.5}},
      {9.0, 6, E_INVALIDARG, {0.5, 1.5, 2.0, 2.5, 3.5}}, {9.0, -2, E_INVALIDARG, {0.5, 1.5, 2.0, 2.5, 3.5}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.value << " at " << c.position);
    EXPECT_EQ(buffer->Append(c.value, c.position), c.result);
    EXPECT_EQ(NumbersOf(buffer.get()), c.numbers);
  }
  double value = -1;
  EXPECT_EQ(buffer->get_Number(5, &value), E_INVALIDARG);
  EXPECT_EQ(buffer->get_Number(-1, &value), E_INVALIDARG);
  EXPECT_EQ(value, -1);
  EXPECT_EQ(buffer->Reserve(-1), E_INVALIDARG);
  EXPECT_EQ(buffer->Reserve(INT32_MAX), S_OK) << "a hint, cut to a sane size";
  EXPECT_EQ(NumbersOf(buffer.get()).size(), 5u);
}

}  // namespace
