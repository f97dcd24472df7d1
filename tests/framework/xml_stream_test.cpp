// "XMLStream" and "XMLStreamEx" as a host uses them: writing, reading back,
// name escaping, layout, the prolog, malformed input and objects by class name.
#include <gtest/gtest.h>

#include <vector>

#include "runtime/reserved_slots.h"
#include "test_support.h"
#include "xml_probe.h"

namespace {

using test_support::Ref;
using test_support::TextOf;
using Names = std::vector<std::wstring>;

std::wstring BufferOf(IXMLStream* stream) {
  void* data = nullptr;
  int32_t bytes = 0;
  if (stream->GetTextBuffer(&data, &bytes) < 0) return L"<no buffer>";
  return std::wstring(static_cast<const wchar_t*>(data), static_cast<size_t>(bytes) / sizeof(wchar_t));
}

SmartPtr<IXMLStream> NewStream() { return CreateObjectAs<IXMLStream>(L"XMLStream"); }

SmartPtr<IXMLStream> StreamOn(const std::wstring& text, HRESULT* result = nullptr) {
  SmartPtr<IXMLStream> stream = NewStream();
  const HRESULT loaded = stream->LoadContent(text.c_str(), static_cast<int32_t>(text.size() * sizeof(wchar_t)), 0);
  if (result) *result = loaded;
  return stream;
}

SmartPtr<IXMLStream> XMLOf(IDataStream* stream) { return QueryAs<IXMLStream>(stream); }

// Names of the children, in order, read with NextChild.
Names ChildNames(IXMLStream* stream) {
  Names names;
  SmartPtr<IString> name;
  while (stream->NextChild(name.Receive()) >= 0) names.push_back(TextOf(name));
  return names;
}

// The sub-stream of the child of that name (an empty name: the current or next child).
SmartPtr<IXMLStream> ChildStream(IXMLStream* stream, const std::wstring& name) {
  SmartPtr<IDataStream> child;
  stream->OpenChild(Ref(name), nullptr, child.Receive(), 1);
  return XMLOf(child.get());
}

// Serves "XMLProbe" itself and hands every other class to the framework's collection.
class CProbeCollection final : public CObjectImpl<CProbeCollection, ComponentCollectionSlots> {
 public:
  static constexpr wchar_t kObjectName[] = L"ProbeCollection";
  static constexpr InterfaceEntry<CProbeCollection> kInterfaces[] = {
      {&IID_IComponentCollection, InterfaceOf<CProbeCollection, IComponentCollection>},
  };
  HRESULT get_Count(int32_t* count) override { return m_Real->get_Count(count); }
  HRESULT GetItem(int32_t handle, IUnknown** item) override { return m_Real->GetItem(handle, item); }
  HRESULT Find(IString* name, int32_t* handle) override { return m_Real->Find(name, handle); }
  HRESULT CreateByName(tagREFString name, IID* iid, void** object) override {
    if (std::wstring(name.text, static_cast<size_t>(name.length)) == CXMLProbe::kObjectName)
      return CObject<CXMLProbe>::_CreateInstance(nullptr, iid, object);
    return m_Real->CreateByName(name, iid, object);
  }
  SmartPtr<IComponentCollection> m_Real;
};

class XMLStreamTest : public ::testing::Test {
 protected:
  // Collections.so is loaded by the framework first, then handed the probe
  // collection, so that its streams create "XMLProbe" by name.
  static void SetUpTestSuite() {
    SmartPtr<IComponentCollection> real = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
    ASSERT_TRUE(real);
    ASSERT_TRUE(NewStream());
    SmartPtr<CProbeCollection> probes = NewObject<CProbeCollection>();
    probes->m_Real = real;
    gGlobalComponentCollection = SmartPtr<IComponentCollection>(static_cast<IComponentCollection*>(probes.get()));
    ASSERT_TRUE(MODULECreateFunction(RefOf(L"Collections"), RefOf(L"XMLStream")));
  }
};

TEST_F(XMLStreamTest, NamesAndTextsRoundTrip) {
  struct Case {
    std::wstring name;
    std::wstring text;
  };
  const Case cases[] = {
      {L"speed", L"3"},
      {L"alpha ", L"trailing blank in the name"},
      {L"1st", L"a<b & c>d"},
      {L"a<b", L"\"double\" and 'single'"},
      {L"&amp;", L"\u00E9 \u00FC \u4E2D"},
      {L"say \"hi\"", L"\U0001F600 beyond the 16-bit range"},
      {L"\U0001F600", L"cr\r\nlf\nlone cr\r tab\t"},
      {L"_x0041_", L"_x0041_"},
      {L"_x", L"x"},
      {L"", L""},
      {L"\u00FCber", L"   "},
      {L"a:b", L"]]> and \x01 control"},
      {L"x y.z-1\u00B7", L"&#38; stays text"},
      {L"?not a pi", L"?"},
  };
  SmartPtr<IXMLStream> writer = NewStream();
  writer->BeginElement(RefOf(L"root"), 0, 0);
  for (const Case& c : cases) ASSERT_EQ(writer->WriteElement(Ref(c.name), 0, Ref(c.text), 0), S_OK);
  writer->EndElement();
  const std::wstring written = BufferOf(writer.get());
  for (wchar_t c : written) ASSERT_LE(static_cast<unsigned>(c), 0xFFFFu) << "16-bit files keep the text";

  HRESULT loaded = E_FAIL;
  SmartPtr<IXMLStream> root = ChildStream(StreamOn(written, &loaded).get(), L"root");
  ASSERT_EQ(loaded, S_OK) << written;
  ASSERT_TRUE(root);
  Names expected;
  for (const Case& c : cases) expected.push_back(c.name + L"=" + c.text);
  SmartPtr<CXMLProbe> probe = NewObject<CXMLProbe>();
  probe->Load(QueryAs<IDataStream>(root.get()).get(), 0);
  EXPECT_EQ(probe->m_Children, expected);
}

TEST_F(XMLStreamTest, NamesAndTextsAreWrittenEscaped) {
  struct Case {
    std::wstring name;
    std::wstring tag;
  };
  const Case cases[] = {
      {L"speed", L"<speed>"},          {L"alpha ", L"<alpha_x0020_>"},      {L"1st", L"<_x0031_st>"},
      {L"_x", L"<_x005F_x>"},          {L"_a", L"<_a>"},                    {L"", L"<_x_>"},
      {L"\U0001F600", L"<_x1F600_>"},  {L"\u00E9t\u00E9", L"<\u00E9t\u00E9>"}, {L"a:b", L"<a_x003A_b>"},
      {L"a<b&c", L"<a_x003C_b_x0026_c>"}, {L"-x", L"<_x002D_x>"},           {L"x-1.2", L"<x-1.2>"},
  };
  for (const Case& c : cases) {
    SmartPtr<IXMLStream> stream = NewStream();
    stream->WriteElement(Ref(c.name), 0, RefOf(L"v"), 0);
    EXPECT_EQ(BufferOf(stream.get()).substr(0, c.tag.size()), c.tag) << testing::PrintToString(c.name);
  }
  SmartPtr<IXMLStream> stream = NewStream();
  stream->WriteElement(RefOf(L"a"), 0, Ref(std::wstring(L"x<&>\r\"\x01\U0001F600\0y", 10)), 0);
  EXPECT_EQ(BufferOf(stream.get()), L"<a>x&lt;&amp;&gt;&#13;\"&#1;&#x1F600;y</a>\r\n");
}

TEST_F(XMLStreamTest, LayoutIndentsUnlessLean) {
  auto write = [](IXMLStream* stream) {
    stream->BeginElement(RefOf(L"params"), 0, 0);
    stream->WriteElement(RefOf(L"a"), 0, RefOf(L"1"), 0);
    stream->BeginElement(RefOf(L"b"), 0, 0);
    stream->WriteElement(RefOf(L"Value"), 0, RefOf(L"2"), 0);
    stream->EndElement();
    stream->BeginElement(RefOf(L"empty"), 0, 0);
    stream->EndElement();
    EXPECT_EQ(stream->EndElement(), S_OK);
    EXPECT_LT(stream->EndElement(), 0) << "nothing left to end";
  };
  SmartPtr<IXMLStream> indented = NewStream();
  write(indented.get());
  EXPECT_EQ(BufferOf(indented.get()),
            L"<params>\r\n  <a>1</a>\r\n  <b>\r\n    <Value>2</Value>\r\n  </b>\r\n  <empty></empty>\r\n</params>\r\n");

  SmartPtr<IXMLStreamEx> lean = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  ASSERT_TRUE(lean);
  ASSERT_EQ(lean->SetOptions(-1, kXMLOptionLean), S_OK);
  write(lean.get());
  EXPECT_EQ(BufferOf(lean.get()), L"<params><a>1</a><b><Value>2</Value></b><empty></empty></params>");
  EXPECT_FALSE(QueryAs<IXMLStreamEx>(NewStream().get())) << "only XMLStreamEx has options";
}

TEST_F(XMLStreamTest, PrologIsKeptAndSteppedOver) {
  const std::wstring prolog = L"<?xml version=\"1.0\"?>\r\n<?xml-stylesheet href=\"generic.xsl\" type=\"text/xsl\"?>\r\n";
  SmartPtr<IXMLStream> writer = NewStream();
  ASSERT_EQ(writer->WriteRawText(prolog.c_str(), static_cast<int32_t>(prolog.size() * sizeof(wchar_t)), 0), S_OK);
  writer->BeginElement(RefOf(L"ParametersCreatable"), 0, 0);
  writer->WriteElement(RefOf(L"speed"), 0, RefOf(L"3"), 0);
  writer->EndElement();
  const std::wstring written = BufferOf(writer.get());
  EXPECT_EQ(written, prolog + L"<ParametersCreatable>\r\n  <speed>3</speed>\r\n</ParametersCreatable>\r\n");
  EXPECT_EQ(ChildNames(StreamOn(written).get()), (Names{L"?xml", L"?xml-stylesheet", L"ParametersCreatable"}));

  // Step over first, then open the first remaining child by an empty name.
  SmartPtr<IXMLStream> reader = StreamOn(written);
  EXPECT_EQ(reader->StepOver(), S_OK);
  EXPECT_EQ(reader->StepOver(), S_FALSE) << "nothing more to step over";
  EXPECT_EQ(ChildNames(ChildStream(reader.get(), L"").get()), Names{L"speed"});

  // Or: the next child is "?xml", step over the rest, and the next is the element.
  SmartPtr<IXMLStream> walker = StreamOn(written);
  SmartPtr<IString> name;
  walker->NextChild(name.Receive());
  EXPECT_EQ(TextOf(name), L"?xml");
  walker->StepOver();
  walker->NextChild(name.Receive());
  EXPECT_EQ(TextOf(name), L"ParametersCreatable");
}

TEST_F(XMLStreamTest, ChildrenKeepOrderAndNesting) {
  SmartPtr<IXMLStream> stream =
      StreamOn(L"<set><z>1</z><a><Value>2</Value><Flags>#000010</Flags></a><m>3</m><a>dup</a></set>");
  EXPECT_EQ(ChildNames(ChildStream(stream.get(), L"set").get()), (Names{L"z", L"a", L"m", L"a"}));

  // A named open finds the first child of that name and leaves the cursor alone.
  SmartPtr<IXMLStream> set = ChildStream(stream.get(), L"set");
  SmartPtr<IString> text;
  SmartPtr<IDataStream> full;
  ASSERT_EQ(set->OpenChild(RefOf(L"a"), text.Receive(), full.Receive(), 1), S_OK);
  EXPECT_EQ(TextOf(text), L"") << "an element holding elements has no text of its own";
  SmartPtr<CXMLProbe> probe = NewObject<CXMLProbe>();
  probe->Load(full.get(), 0);
  EXPECT_EQ(probe->m_Children, (Names{L"Value=2", L"Flags=#000010"}));
  SmartPtr<IString> first;
  set->NextChild(first.Receive());
  EXPECT_EQ(TextOf(first), L"z");
  EXPECT_EQ(set->OpenChild(RefOf(L"missing"), text.Receive(), nullptr, 1), E_ITEMNOTFOUND);
  EXPECT_FALSE(text);

  // Past the last child nothing is read.
  SmartPtr<IXMLStream> only = StreamOn(L"<only/>");
  EXPECT_EQ(only->NextChild(first.Receive()), S_OK);
  EXPECT_LT(only->NextChild(first.Receive()), 0);
  EXPECT_FALSE(first);
  EXPECT_LT(only->OpenChild({0, nullptr}, nullptr, nullptr, 1), 0) << "the cursor is past the end";
}

TEST_F(XMLStreamTest, LoadContentRefusesMalformedXMLWithItsOffset) {
  struct Case {
    std::wstring text;
    int32_t offset;
  };
  const Case cases[] = {
      {L"<a><b></a>", 8},
      {L"<a>", 2},
      {L"<a x=>", 5},
      {L"<>", 1},
      {L"<\u00E4\u00F6><b>\U0001F600</\u00E4\u00F6>", 10},  // characters (15 in UTF-8 bytes)
  };
  for (const Case& c : cases) {
    HRESULT loaded = S_OK;
    SmartPtr<IXMLStream> stream = StreamOn(c.text, &loaded);
    EXPECT_EQ(loaded, E_FAIL) << testing::PrintToString(c.text);
    int32_t offset = -2;
    EXPECT_EQ(stream->GetParseError(&offset), S_OK);
    EXPECT_EQ(offset, c.offset) << testing::PrintToString(c.text);
    EXPECT_EQ(ChildNames(stream.get()), Names{}) << "nothing to read";
    EXPECT_EQ(BufferOf(stream.get()), c.text) << "the text stays as given";
  }
  const wchar_t text[] = L"<a>1</a>\0<b>garbage";
  SmartPtr<IXMLStream> stream = NewStream();
  EXPECT_EQ(stream->LoadContent(text, static_cast<int32_t>(sizeof(text) - sizeof(wchar_t)), 0), S_OK);
  EXPECT_EQ(BufferOf(stream.get()), L"<a>1</a>") << "the text ends at its first zero";
  int32_t offset = 0;
  EXPECT_EQ(stream->GetParseError(&offset), S_FALSE);
  EXPECT_EQ(offset, -1);
  EXPECT_EQ(stream->LoadContent(nullptr, 4, 0), E_POINTER);
  EXPECT_EQ(stream->LoadContent(text, -4, 0), E_INVALIDARG);
  EXPECT_EQ(stream->LoadContent(nullptr, 0, 0), S_OK);
  EXPECT_EQ(ChildNames(stream.get()), Names{}) << "an empty document";
}

TEST_F(XMLStreamTest, WrittenTextIsReadFromTheSameStream) {
  SmartPtr<IXMLStream> stream = NewStream();
  stream->WriteElement(RefOf(L"a"), 0, RefOf(L"1"), 0);
  stream->WriteElement(RefOf(L"b"), 0, RefOf(L"2"), 0);
  EXPECT_EQ(ChildNames(stream.get()), (Names{L"a", L"b"}));
  stream->WriteElement(RefOf(L"c"), 0, RefOf(L"3"), 0);
  EXPECT_EQ(ChildNames(stream.get()), (Names{L"a", L"b", L"c"})) << "new text is read afresh from its start";
}

TEST_F(XMLStreamTest, ObjectsAreRecreatedByClassName) {
  SmartPtr<CXMLProbe> saved = NewObject<CXMLProbe>();
  saved->m_Children = {L"Payload=x < y"};
  SmartPtr<IXMLStream> writer = NewStream();
  writer->BeginElement(RefOf(L"item"), 0, 0);
  ASSERT_EQ(writer->BeginObject(static_cast<IDataPersist*>(saved.get()), 0, 0), S_OK);
  saved->Save(QueryAs<IDataStream>(writer.get()).get(), 0);
  writer->EndElement();
  writer->EndElement();
  EXPECT_EQ(BufferOf(writer.get()),
            L"<item>\r\n  <XMLProbe>\r\n    <Payload>x &lt; y</Payload>\r\n  </XMLProbe>\r\n</item>\r\n");

  SmartPtr<IUnknown> object;
  ASSERT_EQ(ChildStream(StreamOn(BufferOf(writer.get())).get(), L"item")->ReadObject({0, nullptr}, object.Receive()),
            S_OK);
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(object.get());
  ASSERT_TRUE(persist);
  const CXMLProbe* loaded = static_cast<CXMLProbe*>(persist.get());
  EXPECT_EQ(loaded->m_Flags, kLoadReplace);
  EXPECT_EQ(loaded->m_Children, Names{L"Payload=x < y"});

  SmartPtr<IXMLStream> stream = StreamOn(L"<NoSuchClass><a/></NoSuchClass><Variant/>");
  EXPECT_EQ(stream->ReadObject(RefOf(L"NoSuchClass"), object.Receive()), CO_E_CREATEFAILED);
  EXPECT_FALSE(object);
  EXPECT_EQ(stream->ReadObject(RefOf(L"Variant"), object.Receive()), S_FALSE) << "does not persist: as created";
  EXPECT_TRUE(QueryAs<IVariant>(object.get()));
  SmartPtr<CProbeCollection> nameless = NewObject<CProbeCollection>();
  EXPECT_EQ(writer->BeginObject(static_cast<IComponentCollection*>(nameless.get()), 0, 0), E_NOINTERFACE);
  EXPECT_EQ(writer->BeginObject(nullptr, 0, 0), E_POINTER);
}

TEST_F(XMLStreamTest, TheStreamIsAlsoADataStream) {
  SmartPtr<IXMLStream> stream = StreamOn(L"<a>1</a>");
  SmartPtr<IDataStream> bytes = QueryAs<IDataStream>(stream.get());
  ASSERT_TRUE(bytes);
  const std::wstring more = L"<b/>";
  EXPECT_EQ(bytes->Write(more.c_str(), static_cast<int32_t>(more.size() * sizeof(wchar_t))), S_OK);
  EXPECT_EQ(BufferOf(stream.get()), L"<a>1</a><b/>");
  wchar_t head[3] = {};
  int32_t read = 0;
  EXPECT_EQ(bytes->Read(head, static_cast<int32_t>(sizeof(head)), &read), S_OK);
  EXPECT_EQ(std::wstring(head, static_cast<size_t>(read) / sizeof(wchar_t)), L"<a>");
  EXPECT_EQ(bytes->Reset(), S_OK);
  EXPECT_EQ(BufferOf(stream.get()), L"");
}

}  // namespace
