// "XMLStream" as a host uses it: writing, reading back, name escaping, layout, the prolog, malformed input and
// objects by class name; and "ASCIIStream", which turns its text into UTF-8 bytes.
#include <gtest/gtest.h>

#include <vector>

#include "test_support.h"

namespace {

using test_support::Ref;
using test_support::TextOf;
using test_support::XMLStreamOn;
using test_support::XMLTextOf;

using Names = std::vector<std::wstring>;

const std::wstring kProlog =
    L"<?xml version=\"1.0\"?>\r\n<?xml-stylesheet href=\"generic.xsl\" type=\"text/xsl\"?>\r\n";

SmartPtr<IXMLStream> NewStream() { return CreateObjectAs<IXMLStream>(L"XMLStream"); }

// The children of an XML stream as "name=text", in document order.
Names ChildrenOf(IUnknown* stream) {
  SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
  Names children;
  SmartPtr<IString> name;
  while (xml && xml->NextChild(name.Receive()) >= 0) {
    SmartPtr<IString> text;
    xml->OpenChild(Ref(TextOf(name)), text.Receive(), nullptr, 1);
    children.push_back(TextOf(name) + L"=" + TextOf(text));
  }
  return children;
}

// Names of the children, in order, read with NextChild.
Names ChildNames(IXMLStream* stream) {
  if (!stream) return {L"<no stream>"};
  Names names;
  SmartPtr<IString> name;
  while (stream->NextChild(name.Receive()) >= 0) names.push_back(TextOf(name));
  return names;
}

// The sub-stream of the child of that name (an empty name: the current or next child).
SmartPtr<IXMLStream> ChildStream(IXMLStream* stream, const std::wstring& name) {
  SmartPtr<IDataStream> child;
  stream->OpenChild(Ref(name), nullptr, child.Receive(), 1);
  return QueryAs<IXMLStream>(child.get());
}

// Names and texts are written escaped (the written text begins as given) and read back as they were.
TEST(XMLStreamTest, NamesAndTextsAreEscapedAndRoundTrip) {
  struct Case { std::wstring name; std::wstring text; std::wstring written; };
  const Case cases[] = {
      {L"speed", L"3", L"<speed>3</speed>\r\n"}, {L"1st", L"a<b & c>d", L"<_x0031_st>a&lt;b &amp; c&gt;d<"},
      {L"a<b&c", L"\"double\" and 'single'", L"<a_x003C_b_x0026_c>\"double\" and 'single'<"},
      {L"a:b", L"]]> and \x01 control", L"<a_x003A_b>]]&gt; and &#1; control<"},
      {L"\U0001F600", L"cr\r\nlf\nlone cr\r tab\t", L"<_x1F600_>cr&#13;\nlf\nlone cr&#13; tab\t<"},
      {L"say \"hi\"", L"\U0001F600 beyond the 16-bit range", L"<say_x0020__x0022_hi_x0022_>&#x1F600; beyond"},
      {L"_x0041_", L"_x0041_", L"<_x005F_x0041_>_x0041_<"}, {L"_x", L"x", L"<_x005F_x>"}, {L"_a", L"", L"<_a>"},
      {L"", L"", L"<_x_>"}, {L"\u00E9t\u00E9", L"\u00E9 \u00FC \u4E2D", L"<\u00E9t\u00E9>\u00E9 \u00FC \u4E2D<"},
      {L"\u00FCber", L"   ", L"<\u00FCber>   <"},
      {L"&amp;", L"&#38; stays text", L"<_x0026_amp_x003B_>&amp;#38; stays text<"},
      {L"x y.z-1\u00B7", L"", L"<x_x0020_y.z-1\u00B7>"}, {L"-x", L"", L"<_x002D_x>"},
      {L"?not a pi", L"?", L"<_x003F_not_x0020_a_x0020_pi>"},
      {L"ab cd ", L"&x&", L"<ab_x0020_cd_x0020_>&amp;x&amp;<"},
      {L"a  b", L"<<>>", L"<a_x0020__x0020_b>&lt;&lt;&gt;&gt;<"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.name));
    SmartPtr<IXMLStream> writer = NewStream();
    ASSERT_EQ(writer->WriteElement(Ref(c.name), 0, Ref(c.text), 0), S_OK);
    const std::wstring written = XMLTextOf(writer.get());
    EXPECT_EQ(written.substr(0, c.written.size()), c.written);
    for (wchar_t ch : written) ASSERT_LE(static_cast<unsigned>(ch), 0xFFFFu) << "16-bit files keep the text";
    EXPECT_EQ(ChildrenOf(XMLStreamOn(written).get()), Names{c.name + L"=" + c.text});
  }
  SmartPtr<IXMLStream> stream = NewStream();
  stream->WriteElement(RefOf(L"a"), 0, Ref(std::wstring(L"x\0y", 3)), 0);
  EXPECT_EQ(XMLTextOf(stream.get()), L"<a>xy</a>\r\n") << "zero characters are left out";
}

// The end tag repeats the start tag's encoded name even when the text has been
// moved to a larger buffer in between (tens of thousands of children).
TEST(XMLStreamTest, AnElementClosedAfterManyChildrenKeepsItsName) {
  SmartPtr<IXMLStream> stream = NewStream();
  stream->BeginElement(RefOf(L"outer set"), 0, 0);
  constexpr int kChildren = 50000;
  for (int i = 0; i < kChildren; ++i) stream->WriteElement(RefOf(L"c"), 0, RefOf(L"1"), 0);
  ASSERT_EQ(stream->EndElement(), S_OK);
  const std::wstring written = XMLTextOf(stream.get());
  // "<outer_x0020_set>" 17, each child "\r\n  <c>1</c>" 12, "\r\n</outer_x0020_set>\r\n" 22.
  EXPECT_EQ(written.size(), 17u + 12u * kChildren + 22u);
  EXPECT_EQ(written.substr(written.size() - 22), L"\r\n</outer_x0020_set>\r\n");
  SmartPtr<IXMLStream> outer = ChildStream(XMLStreamOn(written).get(), L"outer set");
  ASSERT_TRUE(outer);
  EXPECT_EQ(ChildNames(outer.get()).size(), static_cast<size_t>(kChildren));
}

// A loaded text is handed back exactly, read as bytes and extended by raw
// text, whatever its characters: ASCII, beyond ASCII and beyond 16 bits, and
// characters no UTF-8 form holds (a lone surrogate, a code above U+10FFFF).
TEST(XMLStreamTest, LoadedTextIsHandedBackExactly) {
  const std::wstring cases[] = {
      L"", L"<a>plain</a>", L"<a>\u00E9 \u4E2D \U0001F600</a>",
      std::wstring(L"<a>x") + static_cast<wchar_t>(0xD800) + L"</a>",
      std::wstring(L"<a>") + static_cast<wchar_t>(0x110000) + L"</a>",
  };
  for (const std::wstring& text : cases) {
    SCOPED_TRACE(testing::PrintToString(text));
    HRESULT loaded = E_FAIL;
    SmartPtr<IXMLStream> stream = XMLStreamOn(text, &loaded);
    ASSERT_EQ(loaded, S_OK);
    std::wstring read(text.size() + 1, L'?');
    int32_t bytesRead = 0;
    const int32_t wanted = static_cast<int32_t>(read.size() * sizeof(wchar_t));
    ASSERT_EQ(QueryAs<IDataStream>(stream.get())->Read(read.data(), wanted, &bytesRead), S_OK);
    EXPECT_EQ(read.substr(0, static_cast<size_t>(bytesRead) / sizeof(wchar_t)), text);
    EXPECT_EQ(XMLTextOf(stream.get()), text);
    stream->WriteRawText(L"<!--z-->", -1, 0);
    EXPECT_EQ(XMLTextOf(stream.get()), text + L"<!--z-->");
  }
}

// Indentation stops at 32 levels, so deep nesting costs a bounded amount per element. For 10,000
// nested "e": each start tag is "<e>" after a line break (but the first) and min(depth, 32) * 2
// blanks; each end tag but the innermost adds a line break and the same blanks, the outermost a
// final line break. The blanks come to 2 * (528 + 32 * 9967) = 638,944 for the starts and 64 less
// for the ends: 30,000 + 19,998 + 638,944 + 40,000 + 19,998 + 638,880 + 2 characters.
TEST(XMLStreamTest, DeepNestingIsIndentedAtMostThirtyTwoLevels) {
  constexpr int kDepth = 10000;
  SmartPtr<IXMLStream> stream = NewStream();
  for (int i = 0; i < kDepth; ++i) ASSERT_EQ(stream->BeginElement(RefOf(L"e"), 0, 0), S_OK);
  for (int i = 0; i < kDepth; ++i) ASSERT_EQ(stream->EndElement(), S_OK);
  const std::wstring text = XMLTextOf(stream.get());
  EXPECT_EQ(text.size(), 1387822u);
  EXPECT_EQ(text.substr(0, 12), L"<e>\r\n  <e>\r\n");
  EXPECT_EQ(text.substr(text.size() - 6), L"</e>\r\n");
  EXPECT_NE(text.find(L"\r\n" + std::wstring(64, L' ') + L"<e></e>\r\n"), std::wstring::npos);
  EXPECT_EQ(text.find(std::wstring(65, L' ')), std::wstring::npos);
}

// Children in document order after the listed prolog; a named open finds the first child of that name and
// leaves the cursor alone; written text is read afresh from its start, and bytes written to it join the text.
TEST(XMLStreamTest, ChildrenPrologAndWrittenText) {
  const std::wstring written =
      kProlog + L"<set><z>1</z><a><Value>2</Value><Flags>#000010</Flags></a><m>3</m><a>dup</a></set>";
  EXPECT_EQ(ChildNames(XMLStreamOn(written).get()), (Names{L"?xml", L"?xml-stylesheet", L"set"}));
  SmartPtr<IXMLStream> reader = XMLStreamOn(written), other = XMLStreamOn(written);
  EXPECT_EQ(reader->StepOver(), S_OK);
  EXPECT_EQ(reader->StepOver(), S_FALSE) << "nothing more to step over";
  SmartPtr<IXMLStream> walked = ChildStream(reader.get(), L""), set = ChildStream(other.get(), L"set");
  EXPECT_EQ(ChildNames(walked.get()), (Names{L"z", L"a", L"m", L"a"}));
  EXPECT_LT(walked->OpenChild({0, nullptr}, nullptr, nullptr, 1), 0) << "the cursor is past the end";
  SmartPtr<IString> text, first;
  EXPECT_LT(walked->NextChild(first.Receive()), 0);
  EXPECT_FALSE(first) << "no name when no child is left";
  SmartPtr<IDataStream> full;
  ASSERT_EQ(set->OpenChild(RefOf(L"a"), text.Receive(), full.Receive(), 1), S_OK);
  EXPECT_EQ(TextOf(text), L"") << "an element holding elements has no text of its own";
  EXPECT_EQ(ChildrenOf(full.get()), (Names{L"Value=2", L"Flags=#000010"}));
  set->NextChild(first.Receive());
  EXPECT_EQ(TextOf(first), L"z");
  EXPECT_EQ(set->OpenChild(RefOf(L"missing"), text.Receive(), nullptr, 1), E_ITEMNOTFOUND);
  EXPECT_FALSE(text);

  SmartPtr<IXMLStream> stream = NewStream();
  stream->WriteElement(RefOf(L"a"), 0, RefOf(L"1"), 0);
  EXPECT_EQ(ChildNames(stream.get()), Names{L"a"});
  const std::wstring more = L"<b>2</b>";
  const int32_t bytes = static_cast<int32_t>(more.size() * sizeof(wchar_t));
  EXPECT_EQ(QueryAs<IDataStream>(stream.get())->Write(more.c_str(), bytes), S_OK);
  EXPECT_EQ(ChildrenOf(stream.get()), (Names{L"a=1", L"b=2"}));
  EXPECT_EQ(XMLTextOf(stream.get()), L"<a>1</a>\r\n<b>2</b>");
}

TEST(XMLStreamTest, LoadContentRefusesMalformedXMLWithItsOffset) {
  struct Case { std::wstring text; int32_t offset; };
  const Case cases[] = {
      {L"<a><b></a>", 8}, {L"<a>", 2}, {L"<a x=>", 5},
      {L"<\u00E4\u00F6><b>\U0001F600</\u00E4\u00F6>", 10},  // characters (15 in UTF-8 bytes)
  };
  for (const Case& c : cases) {
    HRESULT loaded = S_OK;
    SmartPtr<IXMLStream> stream = XMLStreamOn(c.text, &loaded);
    EXPECT_EQ(loaded, E_FAIL) << testing::PrintToString(c.text);
    int32_t offset = -2;
    EXPECT_EQ(stream->GetParseError(&offset), S_OK);
    EXPECT_EQ(offset, c.offset) << testing::PrintToString(c.text);
    EXPECT_EQ(ChildNames(stream.get()), Names{}) << "nothing to read";
    EXPECT_EQ(XMLTextOf(stream.get()), c.text) << "the text stays as given";
  }
  const wchar_t text[] = L"<a>1</a>\0<b>garbage";
  SmartPtr<IXMLStream> stream = NewStream();
  EXPECT_EQ(stream->LoadContent(text, static_cast<int32_t>(sizeof(text) - sizeof(wchar_t)), 0), S_OK);
  EXPECT_EQ(XMLTextOf(stream.get()), L"<a>1</a>") << "the text ends at its first zero";
  int32_t offset = 0;
  EXPECT_EQ(stream->GetParseError(&offset), S_FALSE);
  EXPECT_EQ(offset, -1);
  EXPECT_EQ(stream->LoadContent(nullptr, 4, 0), E_POINTER);
  EXPECT_EQ(stream->LoadContent(text, -4, 0), E_INVALIDARG);
  EXPECT_EQ(stream->LoadContent(nullptr, 0, 0), S_OK);
  EXPECT_EQ(ChildNames(stream.get()), Names{}) << "an empty document";
}

// An object is written under its class name and read back as a new object of that class (reading its content
// back is exercised by the parameter set's descriptors).
TEST(XMLStreamTest, ObjectsAreNamedByTheirClassAndRecreatedByIt) {
  SmartPtr<IXMLStream> writer = NewStream();
  ASSERT_EQ(writer->BeginObject(CreateObjectAs<IUnknown>(L"FileInfo").get(), 0, 0), S_OK);
  writer->EndElement();
  EXPECT_EQ(XMLTextOf(writer.get()), L"<FileInfo></FileInfo>\r\n");
  const SmartPtr<test_support::CAnonymousObject> anonymous = NewObject<test_support::CAnonymousObject>();
  EXPECT_EQ(writer->BeginObject(anonymous->GetUnknown(), 0, 0), E_NOINTERFACE) << "no class name";
  EXPECT_EQ(writer->BeginObject(nullptr, 0, 0), E_POINTER);

  SmartPtr<IUnknown> object;
  SmartPtr<IXMLStream> stream = XMLStreamOn(L"<NoSuchClass><a/></NoSuchClass><Variant/>");
  EXPECT_EQ(stream->ReadObject(RefOf(L"NoSuchClass"), object.Receive()), CO_E_CREATEFAILED);
  EXPECT_FALSE(object);
  EXPECT_EQ(stream->ReadObject(RefOf(L"Variant"), object.Receive()), S_FALSE) << "does not persist: as created";
  EXPECT_TRUE(QueryAs<IVariant>(object.get()));
}

// Appended to what the target "DataStream" held.
TEST(ASCIIStreamTest, XMLTextBecomesUtf8) {
  struct Case { std::wstring raw; std::string bytes; };
  const Case cases[] = {
      {L"<a>1</a>", "<a>1</a>"}, {L"\u00E9\u20AC", "\xC3\xA9\xE2\x82\xAC"}, {L"\U0001F600", "\xF0\x9F\x98\x80"},
      {std::wstring(1, static_cast<wchar_t>(0xD800)), "\xEF\xBF\xBD"},  // not a character: U+FFFD
  };
  SmartPtr<IStreamTransform> ascii = CreateObjectAs<IStreamTransform>(L"ASCIIStream");
  ASSERT_TRUE(ascii);
  for (const Case& c : cases) {
    SmartPtr<IXMLStream> xml = NewStream();
    xml->WriteRawText(c.raw.c_str(), static_cast<int32_t>(c.raw.size() * sizeof(wchar_t)), 0);
    SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
    bytes->Write("=", 1);
    EXPECT_EQ(ascii->Transform(xml.get(), bytes.get()), S_OK);
    EXPECT_EQ(test_support::BytesOf(bytes.get()), "=" + c.bytes);
  }
  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  EXPECT_EQ(bytes->Write("a", -1), E_INVALIDARG);
  EXPECT_EQ(bytes->Write(nullptr, 1), E_POINTER);
  EXPECT_EQ(ascii->Transform(bytes.get(), bytes.get()), E_NOINTERFACE) << "only XML streams are transformed";
  EXPECT_EQ(ascii->Transform(NewStream().get(), nullptr), E_POINTER);
}

}  // namespace
