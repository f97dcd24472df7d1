// Saving and loading expressions: text and value round trips through XML and
// folder streams, and objects that come back by class name.
#include "expression_test_support.h"

namespace {

using namespace expression_test;

SmartPtr<IExpression> ExpressionWith(const std::wstring& text, SmartPtr<IVariant> value) {
  SmartPtr<IExpression> expression = NewExpression();
  expression->put_Expression(Ref(text));
  expression->put_Value(value.get());
  return expression;
}

void ExpectSame(IExpression* loaded, const std::wstring& text, IVariant* value) {
  ASSERT_TRUE(loaded);
  SmartPtr<IString> loadedText;
  ASSERT_EQ(loaded->get_Expression(loadedText.Receive()), S_OK);
  EXPECT_EQ(TextOf(loadedText), text);
  SmartPtr<IVariant> loadedValue;
  loaded->get_Value(loadedValue.Receive());
  EXPECT_EQ(value ? DescribeValue(loadedValue.get()) : L"<null>", DescribeValue(value));
}

struct Stored { std::wstring text; SmartPtr<IVariant> value; };

std::vector<Stored> Samples() {
  return {{L"Max(a, b) * 2", MakeDouble(2.5)}, {L"1/3", MakeDouble(1.0 / 3)}, {L"x", MakeDouble(-1e300)},
          {L"0.1", MakeDouble(0.1)},         {L"7", MakeLong(7)},            {L"a<b & \"q\"", MakeText(L"a<b & \"q\"")},
          {L"12", MakeText(L"12")},           {L"", MakeText(L"")},            {L"no value", SmartPtr<IVariant>()}};
}

// An "Expression" written as an object element or folder entry comes back by its class name.
TEST(ExpressionPersistence, RoundTripsThroughXMLAndFolderStreams) {
  for (const Stored& sample : Samples()) {
    SCOPED_TRACE(testing::PrintToString(sample.text));
    SmartPtr<IExpression> original = ExpressionWith(sample.text, sample.value);
    SmartPtr<IXMLStream> xml = CreateObjectAs<IXMLStream>(L"XMLStream");
    ASSERT_EQ(xml->BeginObject(original.get(), 0, 0), S_OK);
    ASSERT_EQ(QueryAs<IDataPersist>(original.get())->Save(QueryAs<IDataStream>(xml.get()).get(), 0), S_OK);
    ASSERT_EQ(xml->EndElement(), S_OK);
    SmartPtr<IUnknown> object;
    ASSERT_EQ(xml->ReadObject(Ref(L"Expression"), object.Receive()), S_OK);
    ExpectSame(QueryAs<IExpression>(object.get()).get(), sample.text, sample.value.get());

    SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
    ASSERT_EQ(folder->WriteObject(Ref(L"formula"), original.get(), 0), S_OK);
    IID iid = IID_IExpression;
    SmartPtr<IExpression> loaded;
    ASSERT_EQ(folder->ReadObject(Ref(L"formula"), 0, &iid, loaded.ReceiveVoid()), S_OK);
    ExpectSame(loaded.get(), sample.text, sample.value.get());
  }
}

TEST(ExpressionPersistence, XMLLayout) {
  SmartPtr<IExpression> original = ExpressionWith(L"Max(a, b) * 2", MakeDouble(0.1));
  EXPECT_EQ(LeanXMLOf([&](IDataStream* xml) { QueryAs<IDataPersist>(original.get())->Save(xml, 0); }),
            L"<Formula>Max(a, b) * 2</Formula><Value>0.1</Value>");
}

// Loading replaces text and value, also by their absence; saving over an older save leaves nothing stale.
TEST(ExpressionPersistence, LoadReplacesAndBadStreamsAreRefused) {
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  SmartPtr<IExpression> first = ExpressionWith(L"1", MakeDouble(1));
  QueryAs<IDataPersist>(first.get())->Save(folder.get(), 0);
  SmartPtr<IExpression> second = NewExpression();
  QueryAs<IDataPersist>(second.get())->Save(folder.get(), 0);
  QueryAs<IDataPersist>(first.get())->Load(folder.get(), 0);
  SmartPtr<IString> text;
  SmartPtr<IVariant> value;
  first->get_Expression(text.Receive());
  EXPECT_FALSE(text);
  EXPECT_EQ(first->get_Value(value.Receive()), E_FAIL);

  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(first.get());
  EXPECT_EQ(persist->Save(nullptr, 0), E_POINTER);
  EXPECT_EQ(persist->Load(nullptr, 0), E_POINTER);
  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  EXPECT_EQ(persist->Save(bytes.get(), 0), E_INVALIDARG);
  EXPECT_EQ(persist->Load(bytes.get(), 0), E_INVALIDARG);
}

}  // namespace
