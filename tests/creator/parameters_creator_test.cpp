// Tests of "ParametersCreator", created by class name as a host does.
#include <gtest/gtest.h>

#include <climits>

#include "../parameters/persistence_test_support.h"

namespace {

using namespace persistence_test;
using Items = std::vector<std::wstring>;

// A set holding `names`, item i holding the long i + 1, flags 0x40000 | i and a descriptor.
SmartPtr<IParametersCreatable> Numbered(const Items& names, IUnknown* descriptor = nullptr) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  for (size_t i = 0; i < names.size(); ++i)
    set->Add(MakeString(names[i]).get(), MakeLong(static_cast<int32_t>(i) + 1).get(), descriptor,
             kParameterNotStored | static_cast<int32_t>(i));
  return set;
}

// Items are described as "name=value/flags", with "+d" for a descriptor (see Describe).
class ParametersCreatorTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(creator && target); }
  SmartPtr<IParametersCreator> creator = CreateObjectAs<IParametersCreator>(L"ParametersCreator");
  SmartPtr<IParametersCreatable> target = NewParameters();
};

// Each line adds a text item with flags 0; continuation lines join the last value.
TEST_F(ParametersCreatorTest, CreateParsesLines) {
  struct Case { std::wstring text, separators; Items expected; HRESULT result = S_OK; } cases[] = {
      {L"alpha = 1", L"=", {L"alpha =t'1'/0"}}, {L"alpha = 1\nmore text", L"=", {L"alpha =t'1\r\nmore text'/0"}},
      {L"a=1\n\n  \nnext\nlast", L"=", {L"a=t'1\r\nnext\r\nlast'/0"}}, {L"orphan\n\nx=1", L"=", {L"x=t'1'/0"}},
      {L"a:b=c", L"=:", {L"a:b=t'c'/0"}}, {L"a:b=c", L":=", {L"a=t'b=c'/0"}},
      {L"a=b\u2192c", L"\u2192=", {L"a=b=t'c'/0"}},
      {L"\u00EF\u00FE \tkey=\u00FE  value\x7F \r", L"=", {L"key=t'value'/0"}},
      {L"a=1\r\nb=2\r\n", L"=", {L"a=t'1'/0", L"b=t'2'/0"}}, {L"a=1\na=2", L"=", {L"a=t'1'/0", L"a=t'2'/0"}},
      {L"=v\nempty=", L"=", {L"=t'v'/0", L"empty=t''/0"}}, {L"", L"=", {}}, {L"a=1", L"", {}, E_FAIL},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text) + " / " + testing::PrintToString(c.separators));
    SmartPtr<IParametersCreatable> set = NewParameters();
    EXPECT_EQ(creator->Create(MakeString(c.text).get(), MakeString(c.separators).get(), set.get()), c.result);
    EXPECT_EQ(Describe(set.get()), c.expected);
  }
  EXPECT_EQ(creator->Create(MakeString(L"a=1").get(), nullptr, target.get()), E_FAIL);
  EXPECT_EQ(creator->Create(MakeString(L"a=1").get(), MakeString(L"=").get(), nullptr), E_POINTER);
}

// 100,000 separators, in the separator set, in one line and in as many lines.
TEST_F(ParametersCreatorTest, CreateWithManySeparators) {
  const std::wstring many(100000, L'=');
  EXPECT_EQ(creator->Create(MakeString(L"k" + many).get(), MakeString(L"=").get(), target.get()), S_OK);
  EXPECT_EQ(Describe(target.get()), Items{L"k=t'" + many.substr(1) + L"'/0"});

  SmartPtr<IParametersCreatable> set = NewParameters();
  std::wstring lines;
  for (int i = 0; i < 100000; ++i) lines += L"p" + std::to_wstring(i) + L"=v\n";
  EXPECT_EQ(creator->Create(MakeString(lines).get(), MakeString(std::wstring(100000, L'#') + L":=").get(), set.get()),
            S_OK);
  const Items items = Describe(set.get());
  ASSERT_EQ(items.size(), 100000u);
  EXPECT_EQ(items[99999], L"p99999=t'v'/0");
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
  target->Add(MakeString(L"B").get(), MakeLong(99).get(), nullptr, 7);
  ASSERT_EQ(creator->SubSet(source.get(), 1, 3, target.get()), S_OK);
  EXPECT_EQ(Describe(target.get()), (Items{L"B=i2/1+d", L"c=i3/2+d", L"t=t'text'/0"}));
  SmartPtr<IUnknown> copied;
  target->get_ItemDescriptor(0, copied.Receive());
  EXPECT_TRUE(copied == descriptor.get());
  SmartPtr<IVariant> inTarget;
  target->get_ItemVariant(1, inTarget.Receive());
  inTarget->SetLong(42);
  EXPECT_EQ(Describe(source.get())[2], L"c=i3/40002+d");

  SmartPtr<ISuperCollection> objects = NewSuperCollection();
  SmartPtr<IParametersCreatable> object = NewParameters(), shared = NewParameters();
  objects->Add(MakeString(L"x").get(), object.get(), descriptor.get(), kParameterNotStored | 0x5);
  ASSERT_EQ(creator->SubSet(objects.get(), 0, 1, shared.get()), S_OK);
  SmartPtr<IUnknown> item;
  shared->get_Item(0, item.Receive());
  shared->get_ItemDescriptor(0, copied.Receive());
  EXPECT_TRUE(item == object.get() && copied == descriptor.get());
  EXPECT_EQ(Describe(shared.get()), Items{L"x=oParametersCreatable/5+d"});
}

// Items are added with flags 0 and no descriptor; a template gives the items,
// their order and values unless the source has one; C is dropped.
TEST_F(ParametersCreatorTest, Translate) {
  SmartPtr<IParametersCreatable> source = Numbered({L"a", L"b", L"c"});
  SmartPtr<IParametersCreatable> names = SetOf({{L"A", MakeText(L"alpha")}, {L"b", MakeLong(5)}});
  ASSERT_EQ(creator->Translate(source.get(), names.get(), nullptr, target.get()), S_OK);
  EXPECT_EQ(Describe(target.get()), (Items{L"alpha=i1/0", L"<null>=i2/0", L"c=i3/0"}));

  SmartPtr<IParametersCreatable> templ = SetOf(
      {{L"A", MakeText(L"x"), 5, AsUnknown(NewParameters())}, {L"B", MakeText(L"y")}, {L"gamma", MakeText(L"z")}});
  SmartPtr<IParametersCreatable> shaped = NewParameters(), renamed = NewParameters();
  ASSERT_EQ(creator->Translate(Numbered({L"x", L"B", L"C"}).get(), nullptr, templ.get(), shaped.get()), S_OK);
  EXPECT_EQ(Describe(shaped.get()), (Items{L"A=t'x'/0", L"B=i2/0", L"gamma=t'z'/0"}));
  names->Add(MakeString(L"c").get(), MakeText(L"GAMMA").get(), nullptr, 0);
  ASSERT_EQ(creator->Translate(source.get(), names.get(), templ.get(), renamed.get()), S_OK);
  EXPECT_EQ(Describe(renamed.get()), (Items{L"A=t'x'/0", L"B=t'y'/0", L"gamma=i3/0"}));
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
  ASSERT_EQ(creator->Copy(source.get(), MakeString(L"g*").get(), 0, target.get()), S_OK);
  EXPECT_EQ(Describe(target.get()), Items{L"gamma=i4/3"}) << "copied like SubSet, 0x40000 cleared";
  EXPECT_EQ(creator->Copy(source.get(), nullptr, 0, nullptr), E_POINTER);
}

// Existing items get the source's value (flags stay); added ones come with their flags, 0x40000 cleared.
TEST_F(ParametersCreatorTest, UpdateOverwritesByName) {
  struct Case { int16_t mode; Items sourceNames; HRESULT result; Items expected; } cases[] = {
      {0, {L"x", L"B", L"c"}, S_OK, {L"a=i10/0", L"b=i2/0", L"keep=i30/0"}},
      {kUpdateAddMissing, {L"x", L"B", L"c"}, S_OK, {L"a=i10/0", L"b=i2/0", L"keep=i30/0", L"x=i1/0", L"c=i3/2"}},
      {0, {L"x", L"y"}, S_FALSE, {L"a=i10/0", L"b=i20/0", L"keep=i30/0"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.mode << " " << c.sourceNames.size());
    SmartPtr<IParametersCreatable> set = SetOf({{L"a", MakeLong(10)}, {L"b", MakeLong(20)}, {L"keep", MakeLong(30)}});
    EXPECT_EQ(creator->Update(set.get(), Numbered(c.sourceNames).get(), c.mode), c.result);
    EXPECT_EQ(Describe(set.get()), c.expected);
  }
  SmartPtr<IParametersCreatable> source = Numbered({L"b"});
  ASSERT_EQ(creator->Update(target.get(), source.get(), kUpdateAddMissing), S_OK);
  SmartPtr<IVariant> updated;
  target->get_ItemVariant(0, updated.Receive());
  updated->SetLong(5);
  EXPECT_EQ(Describe(source.get()), Items{L"b=i1/40000"}) << "values are copies";
  EXPECT_EQ(creator->Update(target.get(), MakeLong(1).get(), 0), E_NOINTERFACE);
  EXPECT_EQ(creator->Update(nullptr, source.get(), 0), E_POINTER);
}

}  // namespace
