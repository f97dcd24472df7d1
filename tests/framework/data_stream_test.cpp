// "DataStream" (a byte buffer) and "ASCIIStream" (XML text to UTF-8 bytes).
#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace {

using test_support::BytesOf;

TEST(DataStreamTest, WritesAppendAndBadArgumentsAreRefused) {
  SmartPtr<IDataStream> stream = CreateObjectAs<IDataStream>(L"DataStream");
  ASSERT_TRUE(stream);
  EXPECT_EQ(stream->Write("abc", 3), S_OK);
  EXPECT_EQ(stream->Write("de", 2), S_OK);
  EXPECT_EQ(stream->Write(nullptr, 0), S_OK);
  EXPECT_EQ(stream->Write("a", -1), E_INVALIDARG);
  EXPECT_EQ(stream->Write(nullptr, 1), E_POINTER);
  EXPECT_EQ(BytesOf(stream.get()), "abcde");
}

TEST(ASCIIStreamTest, XMLTextBecomesUtf8) {
  struct Case { std::wstring raw; std::string bytes; };
  const Case cases[] = {
      {L"<a>1</a>", "<a>1</a>"}, {L"\u00E9\u20AC", "\xC3\xA9\xE2\x82\xAC"}, {L"\U0001F600", "\xF0\x9F\x98\x80"},
      {std::wstring(1, static_cast<wchar_t>(0xD800)), "\xEF\xBF\xBD"},  // not a character: U+FFFD
  };
  SmartPtr<IStreamTransform> ascii = CreateObjectAs<IStreamTransform>(L"ASCIIStream");
  ASSERT_TRUE(ascii);
  for (const Case& c : cases) {
    SmartPtr<IXMLStream> xml = CreateObjectAs<IXMLStream>(L"XMLStream");
    xml->WriteRawText(c.raw.c_str(), static_cast<int32_t>(c.raw.size() * sizeof(wchar_t)), 0);
    SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
    bytes->Write("=", 1);
    EXPECT_EQ(ascii->Transform(xml.get(), bytes.get()), S_OK);
    EXPECT_EQ(BytesOf(bytes.get()), "=" + c.bytes) << "appended to what the target held";
  }
  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  EXPECT_EQ(ascii->Transform(bytes.get(), bytes.get()), E_NOINTERFACE) << "only XML streams are transformed";
  EXPECT_EQ(ascii->Transform(CreateObjectAs<IXMLStream>(L"XMLStream").get(), nullptr), E_POINTER);
}

}  // namespace
