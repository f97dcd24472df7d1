// "XMLFile": whole-file loading into an object, as a parameter set's Load() uses it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "archive/file_archive_io.h"
#include "test_support.h"

namespace {

namespace fs = std::filesystem;
using test_support::MakeString;
using test_support::TextOf;

tagREFString Ref(const std::wstring& text) { return {static_cast<int32_t>(text.size()), text.c_str()}; }

// Records what it is asked to load: the flags and the children (name=text).
class CLoadProbe final : public CObjectImpl<CLoadProbe, IDataPersist> {
 public:
  static constexpr wchar_t kObjectName[] = L"LoadProbe";
  static constexpr InterfaceEntry<CLoadProbe> kInterfaces[] = {
      {&IID_IDataPersist, InterfaceOf<CLoadProbe, IDataPersist>},
  };
  HRESULT Save(IDataStream*, int32_t) override { return E_NOTIMPL; }
  HRESULT Load(IDataStream* stream, int32_t flags) override {
    m_Flags = flags;
    SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
    if (!xml) return E_NOINTERFACE;
    SmartPtr<IString> name;
    while (xml->NextChild(name.Receive()) >= 0) {
      SmartPtr<IString> text;
      xml->OpenChild(Ref(TextOf(name.get())), text.Receive(), nullptr, 1);
      m_Children.push_back(TextOf(name.get()) + L"=" + TextOf(text.get()));
    }
    return m_Result;
  }
  int32_t m_Flags = -1;
  std::vector<std::wstring> m_Children;
  HRESULT m_Result = S_OK;
};

const std::wstring kProlog = L"<?xml version=\"1.0\"?>\r\n<?xml-stylesheet href=\"generic.xsl\" type=\"text/xsl\"?>\r\n";
const std::wstring kDocument = kProlog + L"<ParametersCreatable>\r\n  <speed>3</speed>\r\n  <name>\u00FC &#x1F600;</name>\r\n</ParametersCreatable>\r\n";

class XMLFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_Folder = fs::temp_directory_path() / ("xml_file_" + std::to_string(getpid()));
    fs::create_directories(m_Folder);
    m_Probe = NewObject<CLoadProbe>();
    m_File = CreateObjectAs<IXMLFile>(L"XMLFile");
    ASSERT_TRUE(m_File);
    m_Archive = QueryAs<IFileArchive>(m_File.get());
    ASSERT_TRUE(m_Archive);
  }
  void TearDown() override { fs::remove_all(m_Folder); }

  std::wstring PathOf(const std::string& file) const { return (m_Folder / file).wstring(); }

  void SaveText(const std::string& file, const std::wstring& text) const {
    FileArchiveSave(Ref(PathOf(file)), reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<unsigned int>(text.size() * sizeof(wchar_t)), 1, 0);
  }

  // Gives the file the probe, the framework's options and the file name, then loads.
  HRESULT LoadInto(const std::string& file, int32_t options = kXMLFileReplace) {
    m_File->SetObject(static_cast<IDataPersist*>(m_Probe.get()));
    m_File->SetOptions(-1, options);
    m_Archive->put_Filename(MakeString(PathOf(file)).get());
    return m_Archive->Load();
  }

  fs::path m_Folder;
  SmartPtr<CLoadProbe> m_Probe;
  SmartPtr<IXMLFile> m_File;
  SmartPtr<IFileArchive> m_Archive;
};

TEST_F(XMLFileTest, LoadsTheFirstElementAfterTheProlog) {
  SaveText("params.xml", kDocument);
  ASSERT_EQ(LoadInto("params.xml"), S_OK);
  EXPECT_EQ(m_Probe->m_Flags, kLoadReplace);
  // The stream writes characters above U+FFFF as references, which survive the 16-bit file.
  EXPECT_EQ(m_Probe->m_Children, (std::vector<std::wstring>{L"speed=3", L"name=\u00FC \U0001F600"}));

  SmartPtr<IString> name;
  ASSERT_EQ(m_Archive->get_Filename(name.Receive()), S_OK);
  EXPECT_EQ(TextOf(name.get()), PathOf("params.xml"));
}

TEST_F(XMLFileTest, WithoutTheReplaceOptionTheObjectMerges) {
  SaveText("params.xml", kDocument);
  ASSERT_EQ(LoadInto("params.xml", 0), S_OK);
  EXPECT_EQ(m_Probe->m_Flags, 0);
}

TEST_F(XMLFileTest, ReadsTheBytesThatTheASCIIStreamWrites) {
  SmartPtr<IXMLStream> xml = CreateObjectAs<IXMLStream>(L"XMLStream");
  xml->WriteRawText(kProlog.c_str(), -1, 0);
  xml->BeginElement(RefOf(L"ParametersCreatable"), 0, 0);
  xml->WriteElement(RefOf(L"text"), 0, RefOf(L"\u00E9t\u00E9"), 0);
  xml->EndElement();
  SmartPtr<IStreamTransform> ascii = CreateObjectAs<IStreamTransform>(L"ASCIIStream");
  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  ASSERT_EQ(ascii->Transform(xml.get(), bytes.get()), S_OK);
  void* data = nullptr;
  int32_t size = 0;
  bytes->GetBuffer(&data, &size);
  ASSERT_EQ(FileArchiveSave(Ref(PathOf("utf8.xml")), static_cast<const unsigned char*>(data),
                            static_cast<unsigned int>(size), 0, 0),
            S_OK);
  ASSERT_EQ(LoadInto("utf8.xml"), S_OK);
  EXPECT_EQ(m_Probe->m_Children, std::vector<std::wstring>{L"text=\u00E9t\u00E9"});
}

TEST_F(XMLFileTest, Failures) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(LoadInto("missing.xml"), E_FAIL);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "file open err:\n" + (m_Folder / "missing.xml").string() + "\n");

  SaveText("broken.xml", kProlog + L"<ParametersCreatable><speed>3</ParametersCreatable>");
  EXPECT_EQ(LoadInto("broken.xml"), E_FAIL);
  EXPECT_EQ(m_Probe->m_Flags, -1) << "the object is not asked to load";

  SaveText("prolog-only.xml", kProlog);
  EXPECT_EQ(LoadInto("prolog-only.xml"), E_FAIL) << "no element to load";

  SaveText("params.xml", kDocument);
  m_Probe->m_Result = E_INVALIDARG;
  EXPECT_EQ(LoadInto("params.xml"), E_INVALIDARG) << "the object's own result";

  SmartPtr<IXMLFile> fresh = CreateObjectAs<IXMLFile>(L"XMLFile");
  SmartPtr<IFileArchive> archive = QueryAs<IFileArchive>(fresh.get());
  EXPECT_EQ(archive->Load(), E_FAIL) << "no file name";
  SmartPtr<IString> name;
  EXPECT_EQ(archive->get_Filename(name.Receive()), E_FAIL);
  EXPECT_FALSE(name);
  archive->put_Filename(MakeString(PathOf("params.xml")).get());
  EXPECT_EQ(archive->Load(), E_NOINTERFACE) << "no object to load into";
}

}  // namespace
