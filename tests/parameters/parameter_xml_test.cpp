// Tests of a parameter set's XML: element shapes, lean output and its flag
// adjustments, replace and merge reading, the object layout.
#include <gtest/gtest.h>

#include "persistence_test_support.h"

namespace {

using namespace persistence_test;

SmartPtr<IUnknown> DescriptorWithMin() {
  return AsUnknown(SetOf({{L"min", MakeLong(1)}}));
}

TEST(ParameterXMLTest, ShapesFlagsAndLeanAdjustments) {
  struct Case {
    const char* label;
    SmartPtr<IVariant> value;
    int32_t flags;
    bool descriptor;
    int32_t saveFlags;
    std::wstring expected;
  };
  const Case cases[] = {
      {"simple", MakeLong(3), 0, false, 0, L"<speed>3</speed>"},
      {"flags give the full shape", MakeLong(3), 0x10, false, 0,
       L"<speed><Value>3</Value><Flags>#000010</Flags></speed>"},
      {"colour in lean output", MakeLong(0x00332211), 0x23, false, kSaveLean, L"<speed>#112233</speed>"},
      {"colour outside lean output", MakeLong(0x00332211), 0x23, false, 0,
       L"<speed><Value>3351057</Value><Flags>#000023</Flags></speed>"},
      {"kind 5 dropped in lean", MakeLong(3), 5, false, kSaveLean, L"<speed>3</speed>"},
      {"kind 5 kept outside lean", MakeLong(3), 5, false, 0, L"<speed><Value>3</Value><Flags>#000005</Flags></speed>"},
      {"exactly 9 dropped in lean", MakeLong(3), 9, false, kSaveLean, L"<speed>3</speed>"},
      {"0x19 kept in lean", MakeLong(3), 0x19, false, kSaveLean,
       L"<speed><Value>3</Value><Flags>#000019</Flags></speed>"},
      {"0x8000000 never written", MakeLong(3), 0x8000001, false, 0,
       L"<speed><Value>3</Value><Flags>#000001</Flags></speed>"},
      {"wide flags", MakeLong(3), 0x1000010, false, 0, L"<speed><Value>3</Value><Flags>#1000010</Flags></speed>"},
      {"descriptor written by itself", MakeLong(3), 0, true, 0,
       L"<speed><Value>3</Value><ParametersCreatable><min>1</min></ParametersCreatable></speed>"},
      {"0x40 drops bit and descriptor in lean", MakeLong(3), 0x40, true, kSaveLean, L"<speed>3</speed>"},
      {"0x40 kept outside lean", MakeLong(3), 0x40, true, 0,
       L"<speed><Value>3</Value><Flags>#000040</Flags><ParametersCreatable><min>1</min></ParametersCreatable></speed>"},
      {"0x40000 drops only the descriptor in lean", MakeLong(3), 0x40000, true, kSaveLean,
       L"<speed><Value>3</Value><Flags>#040000</Flags></speed>"},
      {"colour with a descriptor: kind 3 flags dropped", MakeLong(1), 0x23, true, kSaveLean,
       L"<speed><Value>1</Value><ParametersCreatable><min>1</min></ParametersCreatable></speed>"},
      {"text colour is not a colour", MakeText(L"red"), 0x23, false, kSaveLean, L"<speed>red</speed>"},
  };
  for (const Case& c : cases) {
    SmartPtr<IParametersCreatable> set =
        SetOf({{L"speed", c.value, c.flags, c.descriptor ? DescriptorWithMin() : SmartPtr<IUnknown>()}});
    EXPECT_EQ(SavedXML(set.get(), c.saveFlags), c.expected) << c.label;
  }
}

TEST(ParameterXMLTest, ReplaceModeReadsElementTextInDocumentOrder) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"old", MakeLong(1)}});
  SmartPtr<IDataStream> stream =
      XMLReading(L"<r><b>2.5</b><a>x y</a><c><Value>7</Value><Flags>#000010</Flags></c></r>", true);
  EXPECT_EQ(set->Params_LoadXML(stream.get(), kLoadReplace, 0), S_OK);
  // Child elements are not interpreted in replace mode: c gets its own (empty) text.
  EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{L"b=r2.5/0", L"a=t'x y'/0", L"c=t''/0"}));
}

TEST(ParameterXMLTest, MergeModeUpdatesKnownNamesOnly) {
  SmartPtr<IParametersCreatable> set =
      SetOf({{L"a", MakeLong(1), 4}, {L"b", MakeLong(2)}, {L"c", MakeLong(3), 0x10}});
  SmartPtr<IDataStream> stream = XMLReading(
      L"<r><a><value>5</value><FLAGS>#000023</FLAGS></a><zz>9</zz><b>7</b>"
      L"<c><Flags>12</Flags><ParametersCreatable><min>4</min></ParametersCreatable></c></r>",
      true);
  EXPECT_EQ(set->Params_LoadXML(stream.get(), 0, 0), S_OK);
  EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{L"a=i5/23", L"b=i7/0", L"c=i3/C+d"}));
  SmartPtr<IUnknown> descriptor;
  set->get_ItemDescriptor(2, descriptor.Receive());
  SmartPtr<IParameters> loaded = QueryAs<IParameters>(descriptor.get());
  ASSERT_TRUE(loaded) << "the descriptor is read back as a ParametersCreatable by class name";
  EXPECT_EQ(Describe(loaded.get()), (std::vector<std::wstring>{L"min=i4/0"}));
}

TEST(ParameterXMLTest, SavedFullShapeMergesBackWithFlagsAndDescriptor) {
  SmartPtr<IParametersCreatable> saved =
      SetOf({{L"n", MakeLong(-4), 0x10}, {L"r", MakeDouble(0.25)}, {L"t", MakeText(L"a<b&c")},
             {L"e", MakeText(L"")}, {L"d", MakeLong(1), 0x1000, DescriptorWithMin()}});
  const std::wstring text = L"<r>" + SavedXML(saved.get(), 0) + L"</r>";
  SmartPtr<IParametersCreatable> target =
      SetOf({{L"n", MakeLong(0)}, {L"r", MakeLong(0)}, {L"t", MakeLong(0)}, {L"e", MakeLong(0)}, {L"d", MakeLong(0)}});
  target->Params_LoadXML(XMLReading(text, true).get(), 0, 0);
  EXPECT_EQ(Describe(target.get()), Describe(saved.get()));
}

TEST(ParameterXMLTest, WrongStreamKindIsIgnored) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"a", MakeLong(1)}});
  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  EXPECT_EQ(set->Params_SaveXML(bytes.get(), 0), S_OK);
  EXPECT_EQ(BytesOf(bytes.get()), "");
  EXPECT_EQ(set->Params_LoadXML(bytes.get(), kLoadReplace, 0), S_OK);
  EXPECT_EQ(set->Params_LoadXML(nullptr, kLoadReplace, 0), S_OK);
  EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{L"a=i1/0"}));
}

TEST(ParameterXMLTest, ObjectLayoutRoundTrips) {
  SmartPtr<IParametersCreatable> inner = SetOf({{L"k", MakeLong(9)}});
  SmartPtr<IVariant> object = MakeVariant();
  object->Assign(inner.get());
  SmartPtr<IParametersCreatable> saved = NewParameters();
  saved->Add(MakeString(L"first").get(), object.get(), DescriptorWithMin().get(), 0x23);
  saved->Add(MakeString(L"plain").get(), MakeLong(1).get(), nullptr, 0);  // does not persist: left out
  saved->Add(nullptr, object.get(), nullptr, 0);

  SmartPtr<IXMLStreamEx> xml = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  xml->SetOptions(-1, kXMLOptionLean);
  saved->Params_SaveXMLUnk(QueryAs<IDataStream>(xml.get()).get(), 0);
  void* text = nullptr;
  int32_t size = 0;
  xml->GetTextBuffer(&text, &size);
  const std::wstring written(static_cast<const wchar_t*>(text), static_cast<size_t>(size) / sizeof(wchar_t));
  EXPECT_EQ(written,
            L"<first><Flags>#000023</Flags><ParametersCreatable><k>9</k></ParametersCreatable>"
            L"<ItemDescriptor><ParametersCreatable><min>1</min></ParametersCreatable></ItemDescriptor></first>"
            L"<Item3><ParametersCreatable><k>9</k></ParametersCreatable></Item3>");

  SmartPtr<IParametersCreatable> loaded = SetOf({{L"stale", MakeLong(0)}});
  loaded->Params_LoadXMLUnk(XMLReading(L"<r>" + written + L"</r>", true).get(), kLoadReplace);
  EXPECT_EQ(Describe(loaded.get()),
            (std::vector<std::wstring>{L"first=oParametersCreatable/23+d", L"Item3=oParametersCreatable/0"}));
}

}  // namespace

namespace {

TEST(ParameterXMLTest, SetHoldingItselfSavesWithoutEndlessRecursion) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"a", MakeLong(1)}});
  set->put_ItemDescriptor(0, set.get());
  const std::wstring text = SavedXML(set.get(), 0);
  EXPECT_EQ(text.substr(0, 40), L"<a><Value>1</Value><ParametersCreatable>");
  set->put_ItemDescriptor(0, nullptr);  // breaks the cycle so the set can be released
}

}  // namespace
