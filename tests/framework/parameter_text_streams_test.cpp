// "CSVStream" and "INIStream" through the framework, with a real parameter set.
#include <gtest/gtest.h>

#include "parameters/persistence_test_support.h"

using namespace test_support;
using storage_test::ScratchFile;

namespace {

SmartPtr<IParameters> NewSet() { return CreateObjectAs<IParameters>(L"ParametersCreatable"); }

void AddTo(IParameters* set, const wchar_t* name, IUnknown* value) {
  ASSERT_EQ(set->Add(name ? MakeString(name).get() : nullptr, value, nullptr, 0), S_OK);
}

// "name=value;" for each parameter, values in DescribeValue's short form.
std::wstring DumpSet(IParameters* set) {
  std::wstring dump;
  for (const std::wstring& row : persistence_test::Describe(set)) dump += row.substr(0, row.rfind(L'/')) + L";";
  return dump;
}

// A stream of the given class ("CSVStream" or "INIStream") holding the set.
SmartPtr<IParameterTextStream> StreamFor(const std::wstring& className, IParameters* set) {
  IID iid = className == L"CSVStream" ? IID_ICSVStream : IID_IINIStream;
  auto* made = static_cast<IParameterTextStream*>(CreateObject(Ref(className), &iid));
  SmartPtr<IParameterTextStream> stream = SmartPtr<IParameterTextStream>::Adopt(made);
  if (stream) stream->put_Parameters(set);
  return stream;
}

}  // namespace

TEST(INIStream, WritesOneLinePerParameterAndReadsThemBack) {
  ScratchFile file("params-ini");
  SmartPtr<IParameters> set = NewSet();
  ASSERT_TRUE(set);
  AddTo(set.get(), L"count", MakeLong(-3).get());
  AddTo(set.get(), L"ratio", MakeDouble(0.1).get());
  AddTo(set.get(), L"Größe", MakeText(L"a, b = c \U0001F600").get());
  AddTo(set.get(), nullptr, MakeText(L"unnamed").get());
  AddTo(set.get(), L"object", MakeString(L"a string object").get());  // wrapped: its text is the value
  AddTo(set.get(), L"held", MakeHolding(CreateObjectAs<IUnknown>(L"FileInfo").get()).get());  // an object value: left out

  SmartPtr<IParameterTextStream> stream = StreamFor(L"INIStream", set.get());
  ASSERT_TRUE(QueryAs<IINIStream>(stream.get()));
  ASSERT_EQ(stream->Save(file.Name().get(), 0), S_OK);
  EXPECT_EQ(file.Read(),
            "count=-3\nratio=0.1\nGröße=a, b = c \xF0\x9F\x98\x80\nItem4=unnamed\nobject=a string object\n");

  SmartPtr<IParameters> read = NewSet();
  AddTo(read.get(), L"stale", MakeLong(1).get());
  ASSERT_EQ(StreamFor(L"INIStream", read.get())->Load(file.Name().get(), kLoadReplace), S_OK);
  EXPECT_EQ(DumpSet(read.get()),
            L"count=t'-3';ratio=t'0.1';Größe=t'a, b = c \U0001F600';Item4=t'unnamed';object=t'a string object';");
}

TEST(ParameterTextStreams, ReadingFollowsTheLineAndFieldRules) {
  struct Case {
    const wchar_t* stream;
    const char* file;
    int32_t flags;
    const wchar_t* expected;  // the set after loading into {a=1, b=2}
  };
  const Case cases[] = {
      {L"INIStream", "a=2\nb=3\n", 0, L"a=t'2';b=t'3';"},                // a known name is updated in place
      {L"INIStream", "[S]\nb = x\n[T]\nc=y\r\n", 0, L"a=i1;b=t'x';c=t'y';"},  // every section, blanks, CR trimmed
      {L"INIStream", "k=v=1\n", 0, L"a=i1;b=i2;k=t'v=1';"},             // a name ends at the first "="
      {L"INIStream", "; c=1\n# d=2\n[e=3]\nno sign\n=4\n", 0, L"a=i1;b=i2;"},  // comments, headers, nameless
      {L"CSVStream", "a=5,b=6\n", 0, L"a=t'5';b=t'6';"},
      {L"CSVStream", "7,8,9\n", 0, L"a=t'7';b=t'8';Item3=t'9';"},  // by position, beyond the set as Item<n>
      {L"CSVStream", "7,8\n", kLoadReplace, L"Item1=t'7';Item2=t'8';"},
      {L"CSVStream", "a=1,2\n", 0, L"a=t'1';b=t'2';"},  // a "," in a written value splits it into two fields
      {L"CSVStream", "c=x=y,\n", 0, L"a=i1;b=t'';c=t'x=y';"},  // first "=" splits; an empty field is positional
      {L"CSVStream", "a=3\r\n\nb=4\n", 0, L"a=t'3';b=t'4';"},   // several lines, blank lines skipped
  };
  for (const Case& c : cases) {
    ScratchFile file("params-text-read");
    file.Write(c.file);
    SmartPtr<IParameters> set = NewSet();
    AddTo(set.get(), L"a", MakeLong(1).get());
    AddTo(set.get(), L"b", MakeLong(2).get());
    EXPECT_EQ(StreamFor(c.stream, set.get())->Load(file.Name().get(), c.flags), S_OK) << c.file;
    EXPECT_EQ(DumpSet(set.get()), c.expected) << c.file;
  }
  ScratchFile file("params-text-edge"), missing("params-text-missing");
  file.Write("a=1\n");
  EXPECT_EQ(StreamFor(L"CSVStream", nullptr)->Load(file.Name().get(), 0), E_FAIL) << "no set to load into";
  EXPECT_EQ(StreamFor(L"CSVStream", NewSet().get())->Load(missing.Name().get(), 0), E_FAIL);
}
