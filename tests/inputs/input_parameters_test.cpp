// The input collection as a host uses it: declaring and adding inputs,
// assigning to an input and reading it, and its own table. (Its whole-name
// lookup is checked with the other collections' in the name-index tests.)
#include <gtest/gtest.h>

#include "input_test_support.h"

// How a host sees the collection's own table.
struct InputParametersPrimaryTable : IUnknown {
  virtual HRESULT FinalConstruct() = 0;
  virtual void FinalRelease() = 0;
  virtual void Lock() = 0;
  virtual void Unlock() = 0;
  virtual HRESULT Create(IString* name, IID iid, int32_t flags) = 0;
  virtual HRESULT SetInput(int32_t index, IUnknown* input) = 0;
  virtual HRESULT GetInput(int32_t index, IUnknown** object) = 0;
  virtual HRESULT Add(IString* name, IInputParameter* parameter) = 0;
  virtual HRESULT VerifyInterface(IUnknown* object, IInputParameter** verified) = 0;
};

namespace {

using namespace input_test;

TEST(InputParameters, DeclaresAndAddsInputs) {
  SmartPtr<IInputParameters> inputs = NewInputs();
  ASSERT_TRUE(inputs);
  SmartPtr<IUnknown> unknown = QueryAs<IUnknown>(inputs.get());
  auto* table = reinterpret_cast<InputParametersPrimaryTable*>(unknown.get());
  ASSERT_EQ(table->Create(MakeString(L"speed").get(), IID_IDblVector, 3), S_OK);
  ASSERT_EQ(inputs->Create(MakeString(L"speed").get(), IID_NULL, 0), S_OK);
  SmartPtr<IInputParameter> existing = NewBinding();
  SmartPtr<IParametersCreatable> set = NewParameters();
  SmartPtr<IInputParameter> verified;
  // Add(name, binding); Add(name, null); VerifyInterface of null, of a set, into null; GetInput past the end.
  const HRESULT results[] = {
      table->Add(MakeString(L"torque").get(), existing.get()), inputs->Add(MakeString(L"x").get(), nullptr),
      table->VerifyInterface(nullptr, verified.Receive()), inputs->VerifyInterface(set.get(), verified.Receive()),
      inputs->VerifyInterface(existing.get(), nullptr), table->GetInput(3, unknown.Receive())};
  EXPECT_EQ(std::vector<HRESULT>(std::begin(results), std::end(results)),
            (std::vector<HRESULT>{S_OK, E_POINTER, E_FAIL, E_FAIL, E_POINTER, E_INVALIDARG}));
  unknown.Reset();
  EXPECT_EQ(NamesOf(inputs.get()), (std::vector<std::wstring>{L"speed", L"speed", L"torque"}));
  int32_t flags = 0;
  InputAt(inputs.get(), 0)->get_AssignmentFlags(&flags);
  EXPECT_EQ(flags, 3);
  EXPECT_EQ(NameOf(InputAt(inputs.get(), 0).get()), L"<unset>") << "the item name is not the binding's Name";
  EXPECT_TRUE(InputAt(inputs.get(), 2) == existing.get());

  ASSERT_EQ(inputs->VerifyInterface(existing.get(), verified.Receive()), S_OK);
  EXPECT_TRUE(verified == existing.get());
  verified.Reset();
  uint32_t held = RefCountOf(existing.get());
  inputs.Reset();
  EXPECT_EQ(RefCountOf(existing.get()), held - 1) << "releasing the collection releases its items";
}

// An ordinary object becomes the input's source (its Name stays and is looked
// up in the new source); a binding given to a slot declared as taking one is
// copied as it stands, without its flags.
TEST(InputParameters, SetInputAssignsSourcesOrCopiesBindings) {
  SmartPtr<IInputParameters> inputs = NewInputs();
  inputs->Create(MakeString(L"plain").get(), IID_NULL, 0);
  inputs->Create(MakeString(L"alias").get(), IID_IInputParameter, 9);
  InputAt(inputs.get(), 0)->put_Name(MakeString(L"speed").get());
  SmartPtr<IParametersCreatable> first = MakeSet({{L"a", MakeLong(1).get()}, {L"speed", MakeLong(10).get()}});
  SmartPtr<IParametersCreatable> second = MakeSet({{L"speed", MakeLong(20).get()}});
  SmartPtr<IInputParameter> other = MakeBinding(L"speed", 0, IID_IVariant, first.get());
  other->put_AssignmentFlags(4);

  struct Step { const char* what; int32_t index; IUnknown* input; std::wstring read; } steps[] = {
      {"a set as source", 0, first.get(), L"1:i10"}, {"another set as source", 0, second.get(), L"0:i20"},
      {"a binding copied into the alias slot", 1, other.get(), L"1:i10"},
      {"a binding as source of the plain slot", 0, other.get(), L"0:cInputParameter"},
  };
  for (const Step& step : steps) {
    EXPECT_EQ(inputs->SetInput(step.index, step.input), S_OK) << step.what;
    SmartPtr<IUnknown> value;
    const HRESULT result = inputs->GetInput(step.index, value.Receive());
    EXPECT_EQ(std::to_wstring(result) + L":" + Describe(value.get()), step.read) << step.what;
    EXPECT_EQ(NameOf(InputAt(inputs.get(), step.index).get()), L"speed") << step.what;
  }
  SmartPtr<IInputParameter> alias = InputAt(inputs.get(), 1);
  IID iid{};
  int32_t flags = 0;
  alias->get_IID(&iid);
  alias->get_AssignmentFlags(&flags);
  EXPECT_TRUE(iid == IID_IVariant && flags == 9) << "the IID is copied, the flags are not";
  other->put_Name(MakeString(L"a").get());
  EXPECT_EQ(NameOf(alias.get()), L"speed") << "the alias does not follow later changes";
}

}  // namespace
