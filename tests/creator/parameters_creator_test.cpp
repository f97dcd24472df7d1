// Tests of "ParametersCreator", created by class name as a host does.
#include <gtest/gtest.h>

#include <climits>

#include "../parameters/collection_test_support.h"

namespace {

using namespace collection_test;
using Items = std::vector<std::wstring>;

SmartPtr<IParametersCreator> NewCreator() { return CreateObjectAs<IParametersCreator>(L"ParametersCreator"); }

// Each parameter as "name=value" (value in DescribeValue's short form), "<null>" for no name.
Items ItemsOf(IParameters* set) {
  Items items = NamesOf(set);
  for (int32_t i = 0; i < static_cast<int32_t>(items.size()); ++i) {
    SmartPtr<IVariant> value;
    set->get_ItemVariant(i, value.Receive());
    items[static_cast<size_t>(i)] += L"=" + DescribeValue(value.get());
  }
  return items;
}

int32_t FlagsAt(IParameters* set, int32_t index) {
  int32_t flags = -1;
  set->get_ItemFlags(index, &flags);
  return flags;
}

// A set holding `names`, item i holding the long i + 1, flags 0x40000 | i and a descriptor.
SmartPtr<IParametersCreatable> Numbered(const Items& names, IUnknown* descriptor = nullptr) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  for (size_t i = 0; i < names.size(); ++i)
    set->Add(MakeString(names[i]).get(), MakeLong(static_cast<int32_t>(i) + 1).get(), descriptor,
             kParameterNotStored | static_cast<int32_t>(i));
  return set;
}

class ParametersCreatorTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(creator && target); }
  SmartPtr<IParametersCreator> creator = NewCreator();
  SmartPtr<IParametersCreatable> target = NewParameters();
};

TEST_F(ParametersCreatorTest, CreateParsesLines) {
  struct Case { std::wstring text, separators; Items expected; HRESULT result = S_OK; } cases[] = {
      {L"alpha = 1", L"=", {L"alpha =t'1'"}}, {L"alpha = 1\nmore text", L"=", {L"alpha =t'1\r\nmore text'"}},
      {L"a=1\n\n  \nnext\nlast", L"=", {L"a=t'1\r\nnext\r\nlast'"}}, {L"orphan\n\nx=1", L"=", {L"x=t'1'"}},
      {L"a:b=c", L"=:", {L"a:b=t'c'"}}, {L"a:b=c", L":=", {L"a=t'b=c'"}}, {L"a=b\u2192c", L"\u2192=", {L"a=b=t'c'"}},
      {L"\u00EF\u00FE \tkey=\u00FE  value\x7F \r", L"=", {L"key=t'value'"}},
      {L"a=1\r\nb=2\r\n", L"=", {L"a=t'1'", L"b=t'2'"}}, {L"a=1\na=2", L"=", {L"a=t'1'", L"a=t'2'"}},
      {L"=v\nempty=", L"=", {L"=t'v'", L"empty=t''"}}, {L"", L"=", {}}, {L"a=1", L"", {}, E_FAIL},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text) + " / " + testing::PrintToString(c.separators));
    SmartPtr<IParametersCreatable> set = NewParameters();
    EXPECT_EQ(creator->Create(MakeString(c.text).get(), MakeString(c.separators).get(), set.get()), c.result);
    EXPECT_EQ(ItemsOf(set.get()), c.expected);
    for (int32_t i = 0; i < static_cast<int32_t>(c.expected.size()); ++i) EXPECT_EQ(FlagsAt(set.get(), i), 0);
  }
  EXPECT_EQ(creator->Create(MakeString(L"a=1").get(), nullptr, target.get()), E_FAIL);
  EXPECT_EQ(creator->Create(MakeString(L"a=1").get(), MakeString(L"=").get(), nullptr), E_POINTER);
}

// 100,000 separators, in the separator set, in one line and in as many lines.
TEST_F(ParametersCreatorTest, CreateWithManySeparators) {
  const std::wstring many(100000, L'=');
  EXPECT_EQ(creator->Create(MakeString(L"k" + many).get(), MakeString(L"=").get(), target.get()), S_OK);
  EXPECT_EQ(ItemsOf(target.get()), Items{L"k=t'" + many.substr(1) + L"'"});

  SmartPtr<IParametersCreatable> set = NewParameters();
  std::wstring lines;
  for (int i = 0; i < 100000; ++i) lines += L"p" + std::to_wstring(i) + L"=v\n";
  std::wstring separators(100000, L'#');
  separators += L":=";
  EXPECT_EQ(creator->Create(MakeString(lines).get(), MakeString(separators).get(), set.get()), S_OK);
  const Items items = ItemsOf(set.get());
  ASSERT_EQ(items.size(), 100000u);
  EXPECT_EQ(items[99999], L"p99999=t'v'");
}

TEST_F(ParametersCreatorTest, SubSetClampsTheRange) {
  struct Case { int32_t first, count; Items expected; } cases[] = {
      {-2, 10, {L"d", L"e"}},   {0, 2, {L"a", L"b"}},  {3, 10, {L"d", L"e"}},
      {7, 3, {L"e"}},           {-9, 2, {L"a", L"b"}}, {1, 0, {}},
      {1, -3, {}},              {INT_MIN, INT_MAX, {L"a", L"b", L"c", L"d", L"e"}}, {INT_MAX, INT_MAX, {L"e"}},
  };
  SmartPtr<IParametersCreatable> source = Numbered({L"a", L"b", L"c", L"d", L"e"});
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.first << ", " << c.count);
    SmartPtr<IParametersCreatable> set = NewParameters();
    EXPECT_EQ(creator->SubSet(source.get(), c.first, c.count, set.get()), S_OK);
    EXPECT_EQ(NamesOf(set.get()), c.expected);
  }
  EXPECT_EQ(creator->SubSet(nullptr, 0, 5, target.get()), E_POINTER);
}

// From a parameter set values are copies, descriptors and flags go along with
// 0x40000 cleared, and an item of the same name is overwritten, descriptor
// included; from a named collection the objects themselves are shared.
TEST_F(ParametersCreatorTest, SubSetCopiesValuesAndSharesObjects) {
  SmartPtr<IParametersCreatable> descriptor = NewParameters();
  SmartPtr<IParametersCreatable> source = Numbered({L"a", L"b", L"c"}, descriptor.get());
  source->Add(MakeString(L"t").get(), MakeText(L"text").get(), nullptr, 0);
  target->Add(MakeString(L"B").get(), MakeLong(99).get(), NewParameters().get(), 7);
  ASSERT_EQ(creator->SubSet(source.get(), 1, 3, target.get()), S_OK);
  EXPECT_EQ(ItemsOf(target.get()), (Items{L"B=i2", L"c=i3", L"t=t'text'"}));
  EXPECT_EQ(FlagsAt(target.get(), 0), 1);
  EXPECT_EQ(FlagsAt(target.get(), 1), 2);
  SmartPtr<IUnknown> copied;
  ASSERT_EQ(target->get_ItemDescriptor(0, copied.Receive()), S_OK);
  EXPECT_TRUE(copied == descriptor.get());

  SmartPtr<IVariant> inTarget;
  target->get_ItemVariant(1, inTarget.Receive());
  inTarget->SetLong(42);
  EXPECT_EQ(ItemsOf(source.get())[2], L"c=i3");

  SmartPtr<ISuperCollection> objects = NewSuperCollection();
  SmartPtr<IParametersCreatable> object = NewParameters(), shared = NewParameters();
  objects->Add(MakeString(L"x").get(), object.get(), descriptor.get(), kParameterNotStored | 0x5);
  ASSERT_EQ(creator->SubSet(objects.get(), 0, 1, shared.get()), S_OK);
  SmartPtr<IUnknown> item;
  shared->get_Item(0, item.Receive());
  shared->get_ItemDescriptor(0, copied.Receive());
  EXPECT_TRUE(item == object.get() && copied == descriptor.get());
  EXPECT_EQ(FlagsAt(shared.get(), 0), 0x5);
}

TEST_F(ParametersCreatorTest, Translate) {
  SmartPtr<IParametersCreatable> source = Numbered({L"a", L"b", L"c"});
  SmartPtr<IParametersCreatable> names = NewParameters();
  names->Add(MakeString(L"A").get(), MakeText(L"alpha").get(), nullptr, 0);
  names->Add(MakeString(L"b").get(), MakeLong(5).get(), nullptr, 0);
  ASSERT_EQ(creator->Translate(source.get(), names.get(), nullptr, target.get()), S_OK);
  EXPECT_EQ(ItemsOf(target.get()), (Items{L"alpha=i1", L"<null>=i2", L"c=i3"}));
  EXPECT_EQ(FlagsAt(target.get(), 0), 0);

  // With a template: its items, in its order, with its values unless the source has one; C is dropped.
  SmartPtr<IParametersCreatable> templ = NewParameters();
  templ->Add(MakeString(L"A").get(), MakeText(L"x").get(), NewParameters().get(), 5);
  templ->Add(MakeString(L"B").get(), MakeText(L"y").get(), nullptr, 0);
  templ->Add(MakeString(L"gamma").get(), MakeText(L"z").get(), nullptr, 0);
  SmartPtr<IParametersCreatable> shaped = NewParameters(), renamed = NewParameters();
  SmartPtr<IParametersCreatable> bc = Numbered({L"x", L"B", L"C"});
  ASSERT_EQ(creator->Translate(bc.get(), nullptr, templ.get(), shaped.get()), S_OK);
  EXPECT_EQ(ItemsOf(shaped.get()), (Items{L"A=t'x'", L"B=i2", L"gamma=t'z'"}));
  EXPECT_EQ(FlagsAt(shaped.get(), 0), 0);
  SmartPtr<IUnknown> descriptor;
  EXPECT_EQ(shaped->get_ItemDescriptor(0, descriptor.Receive()), E_FAIL);
  names->Add(MakeString(L"c").get(), MakeText(L"GAMMA").get(), nullptr, 0);
  ASSERT_EQ(creator->Translate(source.get(), names.get(), templ.get(), renamed.get()), S_OK);
  EXPECT_EQ(ItemsOf(renamed.get()), (Items{L"A=t'x'", L"B=t'y'", L"gamma=i3"}));
}

TEST_F(ParametersCreatorTest, CopyTakesTheItemsWhoseNamesMatch) {
  struct Case { std::wstring pattern; int32_t flags; HRESULT result; Items expected; } cases[] = {
      {L"al*", 0, S_OK, {L"alpha", L"Alpine"}}, {L"?eta", 0, S_OK, {L"beta"}},
      {L"", 0, S_OK, {L"alpha", L"beta", L"Alpine", L"gamma"}}, {L"*m*a", 0, S_OK, {L"gamma"}},
      {L"al*", kCopyNonMatching, S_OK, {L"beta", L"gamma"}}, {L"delta", 0, S_FALSE, {}}, {L"alph", 0, S_FALSE, {}},
  };
  SmartPtr<IParametersCreatable> source = Numbered({L"alpha", L"beta", L"Alpine", L"gamma"});
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.pattern));
    SmartPtr<IParametersCreatable> set = NewParameters();
    EXPECT_EQ(creator->Copy(source.get(), MakeString(c.pattern).get(), c.flags, set.get()), c.result);
    EXPECT_EQ(NamesOf(set.get()), c.expected);
  }
  ASSERT_EQ(creator->Copy(source.get(), nullptr, 0, target.get()), S_OK);
  EXPECT_EQ(FlagsAt(target.get(), 3), 3) << "copied like SubSet, 0x40000 cleared";
  EXPECT_EQ(creator->Copy(source.get(), nullptr, 0, nullptr), E_POINTER);
}

TEST_F(ParametersCreatorTest, UpdateOverwritesByName) {
  struct Case { int16_t mode; Items sourceNames; HRESULT result; Items expected; } cases[] = {
      {0, {L"x", L"B", L"c"}, S_OK, {L"a=i10", L"b=i2", L"keep=i30"}},
      {kUpdateAddMissing, {L"x", L"B", L"c"}, S_OK, {L"a=i10", L"b=i2", L"keep=i30", L"x=i1", L"c=i3"}},
      {0, {L"x", L"y"}, S_FALSE, {L"a=i10", L"b=i20", L"keep=i30"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.mode << " " << c.sourceNames.size());
    SmartPtr<IParametersCreatable> set = NewParameters();
    set->Add(MakeString(L"a").get(), MakeLong(10).get(), nullptr, 0);
    set->Add(MakeString(L"b").get(), MakeLong(20).get(), nullptr, 0);
    set->Add(MakeString(L"keep").get(), MakeLong(30).get(), nullptr, 0);
    SmartPtr<IParametersCreatable> source = Numbered(c.sourceNames);
    EXPECT_EQ(creator->Update(set.get(), source.get(), c.mode), c.result);
    EXPECT_EQ(ItemsOf(set.get()), c.expected);
  }
  SmartPtr<IParametersCreatable> source = Numbered({L"b"});
  ASSERT_EQ(creator->Update(target.get(), source.get(), kUpdateAddMissing), S_OK);
  SmartPtr<IVariant> updated;
  target->get_ItemVariant(0, updated.Receive());
  updated->SetLong(5);
  EXPECT_EQ(ItemsOf(source.get()), Items{L"b=i1"}) << "values are copies";
  EXPECT_EQ(creator->Update(target.get(), MakeLong(1).get(), 0), E_NOINTERFACE);
  EXPECT_EQ(creator->Update(nullptr, source.get(), 0), E_POINTER);
}

}  // namespace
