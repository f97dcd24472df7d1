// Tests of "TextParser", created by class name as a host does.
#include <gtest/gtest.h>

#include "../parameters/persistence_test_support.h"

namespace {

using namespace persistence_test;

// A string that is also a file archive: its text is there only after Load.
class CArchiveText : public CObjectImpl<CArchiveText, IString, IFileArchive> {
 public:
  static constexpr wchar_t kObjectName[] = L"ArchiveText";
  static constexpr InterfaceEntry<CArchiveText> kInterfaces[] = {
      {&IID_IString, InterfaceOf<CArchiveText, IString>},
      {&IID_IFileArchive, InterfaceOf<CArchiveText, IFileArchive>},
  };
  int loads = 0;
  HRESULT GetBuffer(const wchar_t** text, int32_t* length) override {
    *text = m_Text.c_str();
    *length = static_cast<int32_t>(m_Text.size());
    return S_OK;
  }
  HRESULT Load() override {
    ++loads;
    m_Text = L"from file";
    return S_OK;
  }
  // Code 1 is the loaded marker.
  HRESULT Inquire(int32_t code, int32_t* value) override {
    *value = loads;
    return code == 1 ? S_ARCHIVE_STATE : E_INVALIDARG;
  }
  HRESULT get_Filename(IString**) override { return E_NOTIMPL; }
  HRESULT put_Filename(IString*) override { return E_NOTIMPL; }
  HRESULT get_Filter(IString**, int16_t) override { return E_NOTIMPL; }
  HRESULT get_Name(IString**) override { return E_NOTIMPL; }
  HRESULT Save() override { return E_NOTIMPL; }
  HRESULT Control(int32_t, int32_t) override { return E_NOTIMPL; }
  std::wstring m_Text;
};

struct Case { std::wstring text; int32_t dropUnknown; std::wstring expected; HRESULT result; };

class TextParserTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(parser && values); }

  void Check(const Case& c, INamedCollection* from = nullptr) {
    if (!from) from = values.get();
    SCOPED_TRACE(testing::PrintToString(c.text) + " drop " + std::to_string(c.dropUnknown));
    SmartPtr<IString> out;
    EXPECT_EQ(parser->ParseTags(MakeString(c.text).get(), out.Receive(), from, c.dropUnknown), c.result);
    EXPECT_EQ(TextOf(out), c.expected);
  }
  void SetTags(const std::wstring& opening, const std::wstring& closing) {
    ASSERT_EQ(parser->put_Tags(MakeString(opening).get(), MakeString(closing).get()), S_OK);
  }

  SmartPtr<ITextParser> parser = CreateObjectAs<ITextParser>(L"TextParser");
  SmartPtr<IParametersCreatable> values =
      SetOf({{L"Speed", MakeDouble(12.5)}, {L"x", MakeText(L"1")}, {L"n", MakeLong(3)}, {L"half", MakeDouble(2.5)},
             {L"third", MakeDouble(1.0 / 3)}, {L"name", MakeText(L"Bob")}, {L"pad", MakeText(L"pad  ")},
             {L"again", MakeText(L"__x__")}});
};

TEST_F(TextParserTest, DefaultTags) {
  const Case cases[] = {
      {L"Speed __Speed__ m/s", 0, L"Speed 12.5 m/s\r\n", S_OK}, {L"a __x__ b __y__", 0, L"a 1 b __y__\r\n", S_OK},
      {L"a __x__ b __y__", 1, L"a 1 b\r\n", S_OK}, {L"no tags", 0, L"no tags\r\n", S_FALSE},
      {L"abc   \t", 0, L"abc\r\n", S_FALSE}, {L"", 0, L"", S_FALSE},
      {L"__half__ __n__ __third__", 0, L"2.5 3 0.333333333\r\n", S_OK},
      {L"__X__|__ x__|__x __", 0, L"1|__ x__|__x __\r\n", S_OK}, {L"a __x\n__ b", 0, L"a __x\r\n__ b\r\n", S_FALSE},
      {L"__x__ and __x", 0, L"1 and __x\r\n", S_OK}, {L"__x____x__", 0, L"11\r\n", S_OK},
      {L"[____]", 1, L"[]\r\n", S_FALSE}, {L"__again__", 0, L"__x__\r\n", S_OK},
      {L"[__pad__]__pad__", 0, L"[pad  ]pad\r\n", S_OK},
      {L"a\r\nb\rc\n\nd __x__  ", 0, L"a\r\nb\r\nc\r\n\r\nd 1\r\n", S_OK},
  };
  for (const Case& c : cases) Check(c);
}

TEST_F(TextParserTest, OtherTagsAreFoundRegardlessOfCaseAndNotReadBack) {
  SetTags(L"[X", L"]");
  Check({L"[xname] [Xname] [[XNAME] [name]", 0, L"Bob Bob [Bob [name]\r\n", S_OK});
  // After a partial match the scan restarts at the same position, not earlier (intended).
  SetTags(L"aab", L"!");
  Check({L"aaabname!", 0, L"aaabname!\r\n", S_FALSE});
  Check({L"aabname!", 0, L"Bob\r\n", S_OK});
  SetTags(L"<<<<<<<<<<<<", L">");
  Check({L"<<name>", 0, L"<<name>\r\n", S_FALSE});
  // Empty delimiters are never found.
  ASSERT_EQ(parser->put_Tags(nullptr, nullptr), S_OK);
  Check({L"a __x__", 0, L"a __x__\r\n", S_FALSE});
  // The tags cannot be read back (intended: the out pointers are left alone); Translate is not offered.
  IString *opening = reinterpret_cast<IString*>(0x10), *closing = nullptr;
  EXPECT_EQ(parser->get_Tags(&opening, &closing), S_OK);
  EXPECT_EQ(opening, reinterpret_cast<IString*>(0x10));
  SmartPtr<IString> out;
  EXPECT_EQ(parser->Translate(MakeString(L"__x__").get(), out.Receive(), values.get()), E_FAIL);
  EXPECT_EQ(parser->ParseTags(MakeString(L"x").get(), out.Receive(), nullptr, 0), E_POINTER);
}

// Objects show their class name (none without IObjectInfo); a file archive's text is loaded on first use.
TEST_F(TextParserTest, ObjectsAndFileArchives) {
  SmartPtr<CArchiveText> archive = NewObject<CArchiveText>();
  SmartPtr<ISuperCollection> objects = NewSuperCollection();
  objects->Add(MakeString(L"obj").get(), MakeHolding(NewParameters().get()).get(), nullptr, 0);
  objects->Add(MakeString(L"bare").get(), MakeHolding(NewObject<CArchiveText>()->GetUnknown()).get(), nullptr, 0);
  objects->Add(MakeString(L"empty").get(), MakeVariant().get(), nullptr, 0);
  objects->Add(MakeString(L"other").get(), NewParameters().get(), nullptr, 0);
  Check({L"[__obj__][__bare__][__empty__][__other__]", 0, L"[ParametersCreatable][][][]\r\n", S_OK}, objects.get());
  values->Add(MakeString(L"file").get(), static_cast<IString*>(archive.get()), nullptr, 0);
  Check({L"<__file__>\n<__FILE__>", 0, L"<from file>\r\n<from file>\r\n", S_OK});
  EXPECT_EQ(archive->loads, 1);
}

// Large and malformed templates: every one gives the documented output.
TEST_F(TextParserTest, LargeTemplates) {
  std::wstring block(74, L'.');
  block += L"__x__ ";  // 80 characters, one tag
  std::wstring line, expected;
  const size_t blocks = 100 * 1000 * 1000 / sizeof(wchar_t) / block.size();  // 100 MB on one line
  for (size_t i = 0; i < blocks; ++i) {
    line += block;
    expected.append(74, L'.').append(L"1 ");
  }
  expected.pop_back();
  expected += L"\r\n";
  SmartPtr<IString> out;
  ASSERT_EQ(parser->ParseTags(MakeString(line).get(), out.Receive(), values.get(), 0), S_OK);
  EXPECT_TRUE(TextOf(out) == expected);

  const std::wstring open = L"a __" + std::wstring(1000000, L'x');
  ASSERT_EQ(parser->ParseTags(MakeString(open).get(), out.Receive(), values.get(), 0), S_FALSE);
  EXPECT_TRUE(TextOf(out) == open + L"\r\n") << "an unterminated tag is copied once";

  std::wstring unknown;
  for (int i = 0; i < 100000; ++i) unknown += L"__u__";
  ASSERT_EQ(parser->ParseTags(MakeString(unknown + L"\n").get(), out.Receive(), values.get(), 1), S_FALSE);
  EXPECT_EQ(TextOf(out), L"\r\n");
}

}  // namespace
