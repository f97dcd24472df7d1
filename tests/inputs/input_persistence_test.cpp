// Saving and loading bindings and their collection through the framework's
// XML and folder streams, as a parent object's persistence does it.
#include <gtest/gtest.h>

#include "input_test_support.h"

namespace {

using namespace input_test;

SmartPtr<IUnknown> MakeFileInfo(const std::wstring& fileName) {
  SmartPtr<IFileInfo> info = CreateObjectAs<IFileInfo>(L"FileInfo");
  info->put_Filename(MakeString(fileName).get());
  return AsUnknown(info);
}

// "name/index", then the source: a binding's own fields, a file's name, or its class.
std::wstring DescribeBinding(IInputParameter* binding) {
  if (!binding) return L"<none>";
  std::wstring text = NameOf(binding) + L"/" + std::to_wstring(SourceIndexOf(binding));
  SmartPtr<IUnknown> source = SourceOf(binding);
  if (SmartPtr<IInputParameter> inner = QueryAs<IInputParameter>(source.get()))
    return text + L" <" + DescribeBinding(inner.get()) + L">";
  if (SmartPtr<IFileInfo> file = QueryAs<IFileInfo>(source.get())) {
    SmartPtr<IString> fileName;
    file->get_Filename(fileName.Receive());
    return text + L" file " + TextOf(fileName);
  }
  return text + L" " + Describe(source.get());
}

// Written inside an element of its own, read back by class name from a fresh stream.
SmartPtr<IInputParameter> ThroughXML(IInputParameter* binding, std::wstring* text) {
  SmartPtr<IXMLStream> written = CreateObjectAs<IXMLStream>(L"XMLStream");
  written->BeginObject(binding, 0, 0);
  EXPECT_EQ(QueryAs<IDataPersist>(binding)->Save(QueryAs<IDataStream>(written.get()).get(), 0), S_OK);
  written->EndElement();
  *text = XMLTextOf(written.get());
  SmartPtr<IUnknown> loaded;
  XMLStreamOn(*text)->ReadObject(Ref(L""), loaded.Receive());
  return QueryAs<IInputParameter>(loaded.get());
}

// Written as an object entry, read back from the folder's encoded image.
SmartPtr<IInputParameter> ThroughFolder(IInputParameter* binding) {
  SmartPtr<IFolderStream> written = CreateObjectAs<IFolderStream>(L"FolderStream");
  EXPECT_EQ(written->WriteObject(Ref(L"b"), binding, 0), S_OK);
  void* image = nullptr;
  int32_t bytes = 0;
  written->GetBuffer(&image, &bytes);
  SmartPtr<IFolderStream> read = CreateObjectAs<IFolderStream>(L"FolderStream");
  read->Write(image, bytes);
  IID iid = IID_IInputParameter;
  SmartPtr<IInputParameter> loaded;
  read->ReadObject(Ref(L"b"), 0, &iid, loaded.ReceiveVoid());
  return loaded;
}

TEST(InputPersistence, OneBindingRoundTripsInBothForms) {
  SmartPtr<IInputParameter> inner = MakeBinding(L"inner", 7, IID_NULL, nullptr);
  SmartPtr<IUnknown> file = MakeFileInfo(L"a.txt");
  // XML carries no IID (the loaded one stays null); the folder form keeps it.
  struct Case { const char* what; bool xml; const wchar_t* name; int32_t sourceIndex; IID iid; IUnknown* source;
                std::wstring loaded; } cases[] = {
      {"xml: no index entry, no IID", true, L"speed", 0, IID_IDblVector, nullptr, L"speed/0 <none>"},
      {"xml: nested source", true, L"speed", -3, IID_NULL, inner.get(), L"speed/-3 <inner/7 <none>>"},
      {"xml: unset name", true, nullptr, 2, IID_NULL, nullptr, L"/2 <none>"},
      {"folder: every field", false, L"speed", 2, IID_IDblVector, file.get(), L"speed/2 file a.txt"},
      {"folder: nested binding", false, L"v", INT32_MIN, IID_NULL, inner.get(), L"v/-2147483648 <inner/7 <none>>"},
      {"folder: workspace source", false, L"w", 0, IID_IWorkspace, file.get(), L"w/0 <none>"},
      {"folder: unset name", false, nullptr, 0, IID_NULL, nullptr, L"/0 <none>"},
  };
  for (const Case& c : cases) {
    SmartPtr<IInputParameter> binding = MakeBinding(c.name, c.sourceIndex, c.iid, c.source);
    std::wstring text;
    SmartPtr<IInputParameter> loaded = c.xml ? ThroughXML(binding.get(), &text) : ThroughFolder(binding.get());
    ASSERT_TRUE(loaded) << c.what;
    EXPECT_EQ(DescribeBinding(loaded.get()), c.loaded) << c.what;
    IID iid{};
    loaded->get_IID(&iid);
    EXPECT_TRUE(iid == (c.xml ? IID_NULL : c.iid)) << c.what;
    if (c.xml && c.sourceIndex == 0) {
      EXPECT_EQ(text.find(L"Index"), std::wstring::npos) << c.what;
    }
  }
}

// Entry names are matched without regard to case; "IID" is read and not applied.
TEST(InputPersistence, XMLEntriesAreMatchedIgnoringCase) {
  const std::wstring text = L"<InputParameter><NAME>v</NAME><iid>x</iid><INDEX>-12abc</INDEX></InputParameter>";
  SmartPtr<IXMLStream> stream = XMLStreamOn(text);
  SmartPtr<IDataStream> element;
  ASSERT_EQ(stream->OpenChild(Ref(L""), nullptr, element.Receive(), 1), S_OK);
  SmartPtr<IInputParameter> binding = MakeBinding(L"old", 0, IID_IDblVector, nullptr);
  EXPECT_EQ(QueryAs<IDataPersist>(binding.get())->Load(element.get(), 0), S_OK);
  EXPECT_EQ(DescribeBinding(binding.get()), L"v/-12 <none>");
  IID iid{};
  binding->get_IID(&iid);
  EXPECT_TRUE(iid == IID_IDblVector) << "XML carries no IID";
}

// A hostile file nesting bindings 40 deep: the 17th has no source (nesting is cut at 16).
TEST(InputPersistence, DeeplyNestedSourcesAreCut) {
  std::wstring text;
  for (int i = 0; i < 40; ++i) text += L"<InputParameter>";
  for (int i = 39; i >= 0; --i) text += L"<Name>" + std::to_wstring(i) + L"</Name></InputParameter>";
  HRESULT parsed = E_FAIL;
  SmartPtr<IXMLStream> stream = XMLStreamOn(text, &parsed);
  ASSERT_EQ(parsed, S_OK);
  SmartPtr<IUnknown> loaded;
  stream->ReadObject(Ref(L""), loaded.Receive());
  std::wstring names;
  for (SmartPtr<IInputParameter> level = QueryAs<IInputParameter>(loaded.get()); level;
       level = QueryAs<IInputParameter>(SourceOf(level.get()).get()))
    names += NameOf(level.get()) + L" ";
  EXPECT_EQ(names, L"0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 ");
}

// A binding refuses plain byte streams; the collection writes nothing to XML and does not load from it.
TEST(InputPersistence, OtherStreamKinds) {
  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  SmartPtr<IDataStream> xml = QueryAs<IDataStream>(CreateObjectAs<IXMLStream>(L"XMLStream").get());
  SmartPtr<IDataPersist> binding = QueryAs<IDataPersist>(NewBinding().get());
  SmartPtr<IInputParameters> inputs = NewInputs();
  inputs->Create(MakeString(L"a").get(), IID_NULL, 0);
  const HRESULT results[] = {binding->Save(bytes.get(), 0), binding->Load(bytes.get(), 0), inputs->Save(xml.get(), 0),
                             inputs->Load(xml.get(), 0)};
  EXPECT_EQ(std::vector<HRESULT>(std::begin(results), std::end(results)),
            (std::vector<HRESULT>{E_FAIL, E_FAIL, S_OK, E_NOTIMPL}));
  EXPECT_EQ(BytesOf(xml.get()), "");
  EXPECT_EQ(NamesOf(inputs.get()), std::vector<std::wstring>{L"a"}) << "a refused load leaves the collection as it was";
}

// One object entry per input, keyed by its item name; loading empties the
// collection first and takes only entries of bindings.
TEST(InputPersistence, CollectionRoundTripsThroughAFolder) {
  SmartPtr<IInputParameters> inputs = NewInputs();
  inputs->Create(MakeString(L"speed").get(), IID_IDblVector, 3);
  inputs->Create(MakeString(L"mode").get(), IID_NULL, 0);
  SmartPtr<IInputParameter> speed = InputAt(inputs.get(), 0);
  speed->put_Name(MakeString(L"v").get());
  speed->put_SourceIndex(2);
  inputs->SetInput(1, MakeFileInfo(L"m.ini").get());

  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  folder->WriteObject(Ref(L"info"), MakeFileInfo(L"x").get(), 0);
  folder->WriteString(Ref(L"note"), MakeString(L"text").get());
  ASSERT_EQ(QueryAs<IDataPersist>(inputs.get())->Save(folder.get(), 0), S_OK);

  SmartPtr<IInputParameters> loaded = NewInputs();
  loaded->Create(MakeString(L"stale").get(), IID_NULL, 0);
  ASSERT_EQ(loaded->Load(folder.get(), 0), S_OK);
  std::vector<std::wstring> described = NamesOf(loaded.get());
  for (size_t i = 0; i < described.size(); ++i)
    described[i] += L": " + DescribeBinding(InputAt(loaded.get(), static_cast<int32_t>(i)).get());
  EXPECT_EQ(described, (std::vector<std::wstring>{L"speed: v/2 <none>", L"mode: /0 file m.ini"}));
  IID iid{};
  int32_t flags = -1;
  InputAt(loaded.get(), 0)->get_IID(&iid);
  InputAt(loaded.get(), 0)->get_AssignmentFlags(&flags);
  EXPECT_TRUE(iid == IID_IDblVector && flags == 0) << "the IID is stored, the assignment flags are not";
}

}  // namespace
