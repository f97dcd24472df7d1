// "Expression" and "ConditionalExpression" as objects: text, value, the
// class's own table and the interfaces answered.
#include "expression_test_support.h"

// The table of the pointer an "Expression" answers for IUnknown, as a host declares it. Declared
// outside the unnamed namespace, as in a host's header: the compiler must not assume it has no implementer.
struct ExpressionClassTable {
  virtual HRESULT QueryInterface(const IID& iid, void** out) = 0;
  virtual uint32_t AddRef() = 0;
  virtual uint32_t Release() = 0;
  virtual HRESULT FinalConstruct() = 0;
  virtual void FinalRelease() = 0;
  virtual void Lock() = 0;
  virtual void Unlock() = 0;
  virtual HRESULT get_Expression(IString** text) = 0;
  virtual HRESULT put_Expression(tagREFString text) = 0;
  virtual HRESULT Evaluate(IParameters* parameters) = 0;
  virtual HRESULT get_Value(IVariant** value) = 0;
  virtual HRESULT put_Value(IVariant* value) = 0;
  virtual HRESULT Save(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Load(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT GetBuffer(const wchar_t** text, int32_t* length) = 0;
};

namespace {

using namespace expression_test;

// Before evaluation there is no value; Evaluate stores a new variant holding a
// double (0 for no text); put_Value stores the given variant itself.
TEST(Expression, ValueBeforeAndAfterEvaluation) {
  SmartPtr<IExpression> expression = NewExpression();
  ASSERT_TRUE(expression);
  SmartPtr<IVariant> value = MakeDouble(1);
  EXPECT_EQ(expression->get_Value(value.Receive()), E_FAIL);
  EXPECT_FALSE(value);
  EXPECT_EQ(expression->get_Value(nullptr), E_POINTER);
  EXPECT_EQ(ValueAfter(expression.get(), L"", nullptr), 0);

  SmartPtr<IVariant> given = MakeText(L"kept");
  EXPECT_EQ(expression->put_Value(given.get()), S_OK);
  ASSERT_EQ(expression->get_Value(value.Receive()), S_OK);
  EXPECT_EQ(value.get(), given.get());
  EXPECT_EQ(ValueAfter(expression.get(), L"1+1", nullptr), 2);
  EXPECT_EQ(DescribeValue(given.get()), L"t'kept'") << "Evaluate makes a new variant";
  EXPECT_EQ(expression->put_Value(nullptr), S_OK);
  EXPECT_EQ(expression->get_Value(value.Receive()), E_FAIL);
}

// The text is kept exactly as given; the class's own table reaches GetBuffer.
TEST(Expression, TextAndTheClassTable) {
  SmartPtr<IExpression> expression = NewExpression();
  auto* table = reinterpret_cast<ExpressionClassTable*>(QueryAs<IUnknown>(expression.get()).get());
  const wchar_t* text = nullptr;
  int32_t length = -1;
  EXPECT_EQ(table->GetBuffer(&text, &length), E_FAIL) << "no text yet";
  SmartPtr<IString> stored;
  EXPECT_EQ(expression->get_Expression(stored.Receive()), S_OK);
  EXPECT_FALSE(stored);

  const std::wstring formula = L"  Max(a, B) ; note\t";
  ASSERT_EQ(table->put_Expression(Ref(formula)), S_OK);
  ASSERT_EQ(table->GetBuffer(&text, &length), S_OK);
  EXPECT_EQ(std::wstring(text, static_cast<size_t>(length)), formula);
  ASSERT_EQ(expression->get_Expression(stored.Receive()), S_OK);
  EXPECT_EQ(TextOf(stored), formula);
  EXPECT_EQ(table->Evaluate(SetOf({{L"a", MakeDouble(2)}, {L"b", MakeDouble(5)}}).get()), S_OK);
  SmartPtr<IVariant> value;
  ASSERT_EQ(table->get_Value(value.Receive()), S_OK);
  EXPECT_EQ(value->GetDouble(), 5);
}

// The conditional expression's value is made empty at creation and never
// computed; unlike the plain expression it does not persist (class names are
// checked in the host tests).
TEST(ConditionalExpression, EvaluateLeavesTheValueUntouched) {
  SmartPtr<IExpression> conditional = NewExpression(L"ConditionalExpression");
  ASSERT_TRUE(conditional);
  EXPECT_TRUE(QueryAs<IDataPersist>(NewExpression().get()));
  EXPECT_FALSE(QueryAs<IDataPersist>(conditional.get()));
  EXPECT_FALSE(QueryAs<IDataPersist>(NewExpression(L"ExpressionBuilder").get()));
  SmartPtr<IVariant> initial, value;
  ASSERT_EQ(conditional->get_Value(initial.Receive()), S_OK);
  EXPECT_EQ(DescribeValue(initial.get()), L"e");
  ASSERT_EQ(conditional->put_Expression(Ref(L"1+2")), S_OK);
  EXPECT_EQ(conditional->Evaluate(SetOf({{L"a", MakeDouble(1)}}).get()), S_OK);
  ASSERT_EQ(conditional->get_Value(value.Receive()), S_OK);
  EXPECT_EQ(value.get(), initial.get());
  EXPECT_EQ(DescribeValue(value.get()), L"e");
  SmartPtr<IString> text;
  ASSERT_EQ(conditional->get_Expression(text.Receive()), S_OK);
  EXPECT_EQ(TextOf(text), L"1+2");
  conditional->put_Value(nullptr);
  EXPECT_EQ(conditional->get_Value(value.Receive()), E_FAIL);
}

}  // namespace
