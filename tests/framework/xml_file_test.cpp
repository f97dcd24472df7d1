// "XMLFile": whole-file loading into an object, as a parameter set's Load() uses it.
#include <gtest/gtest.h>

#include "archive/file_archive_io.h"
#include "storage_test_support.h"
#include "xml_probe.h"

namespace {

using namespace test_support;
using storage_test::ScratchFile;
using Names = std::vector<std::wstring>;

const std::wstring kProlog = L"<?xml version=\"1.0\"?>\r\n<?xml-stylesheet href=\"generic.xsl\" type=\"text/xsl\"?>\r\n";
const std::wstring kDocument =
    kProlog + L"<ParametersCreatable>\r\n  <speed>3</speed>\r\n  <name>\u00FC &#x1F600;</name>\r\n</ParametersCreatable>\r\n";

std::wstring WideName(const ScratchFile& file) { return std::wstring(file.Path().begin(), file.Path().end()); }

// Writes bytes, or wide text as UTF-16 with a byte-order mark, as the file archive does.
void Save(const ScratchFile& file, const void* data, size_t size, int16_t asText) {
  ASSERT_EQ(FileArchiveSave(Ref(WideName(file)), static_cast<const unsigned char*>(data),
                            static_cast<unsigned int>(size), asText, 0),
            S_OK);
}
void SaveText(const ScratchFile& file, const std::wstring& text) {
  Save(file, text.data(), text.size() * sizeof(wchar_t), 1);
}

class XMLFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_File = CreateObjectAs<IXMLFile>(L"XMLFile");
    ASSERT_TRUE(m_File);
    m_Archive = QueryAs<IFileArchive>(m_File.get());
    ASSERT_TRUE(m_Archive);
  }
  // Gives the file the probe, the framework's options and the file name, then loads.
  HRESULT LoadInto(const ScratchFile& file, int32_t options = kXMLFileReplace) {
    m_File->SetObject(static_cast<IDataPersist*>(m_Probe.get()));
    m_File->SetOptions(-1, options);
    m_Archive->put_Filename(file.Name().get());
    return m_Archive->Load();
  }
  SmartPtr<CXMLProbe> m_Probe = NewObject<CXMLProbe>();
  SmartPtr<IXMLFile> m_File;
  SmartPtr<IFileArchive> m_Archive;
};

TEST_F(XMLFileTest, LoadsTheFirstElementAfterTheProlog) {
  ScratchFile file("xmlfile-params.xml");
  SaveText(file, kDocument);
  ASSERT_EQ(LoadInto(file), S_OK);
  EXPECT_EQ(m_Probe->m_Flags, kLoadReplace);
  // The stream writes characters above U+FFFF as references, which survive the 16-bit file.
  EXPECT_EQ(m_Probe->m_Children, (Names{L"speed=3", L"name=\u00FC \U0001F600"}));
  SmartPtr<IString> name;
  ASSERT_EQ(m_Archive->get_Filename(name.Receive()), S_OK);
  EXPECT_EQ(TextOf(name), WideName(file));

  ASSERT_EQ(LoadInto(file, 0), S_OK);
  EXPECT_EQ(m_Probe->m_Flags, 0) << "without the replace option the object merges";
}

TEST_F(XMLFileTest, ReadsTheBytesThatTheASCIIStreamWrites) {
  SmartPtr<IXMLStream> xml = CreateObjectAs<IXMLStream>(L"XMLStream");
  xml->WriteRawText(kProlog.c_str(), -1, 0);
  xml->BeginElement(RefOf(L"ParametersCreatable"), 0, 0);
  xml->WriteElement(RefOf(L"text"), 0, RefOf(L"\u00E9t\u00E9"), 0);
  xml->EndElement();
  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  ASSERT_EQ(CreateObjectAs<IStreamTransform>(L"ASCIIStream")->Transform(xml.get(), bytes.get()), S_OK);
  ScratchFile file("xmlfile-utf8.xml");
  const std::string utf8 = BytesOf(bytes.get());
  Save(file, utf8.data(), utf8.size(), 0);
  ASSERT_EQ(LoadInto(file), S_OK);
  EXPECT_EQ(m_Probe->m_Children, Names{L"text=\u00E9t\u00E9"});
}

TEST_F(XMLFileTest, Failures) {
  ScratchFile missing("xmlfile-missing.xml"), broken("xmlfile-broken.xml"), prologOnly("xmlfile-prolog.xml"),
      good("xmlfile-good.xml");
  testing::internal::CaptureStderr();
  EXPECT_EQ(LoadInto(missing), E_FAIL);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "file open err:\n" + missing.Path() + "\n");

  SaveText(broken, kProlog + L"<ParametersCreatable><speed>3</ParametersCreatable>");
  EXPECT_EQ(LoadInto(broken), E_FAIL);
  EXPECT_EQ(m_Probe->m_Flags, -1) << "the object is not asked to load";
  SaveText(prologOnly, kProlog);
  EXPECT_EQ(LoadInto(prologOnly), E_FAIL) << "no element to load";
  SaveText(good, kDocument);
  m_Probe->m_Result = E_INVALIDARG;
  EXPECT_EQ(LoadInto(good), E_INVALIDARG) << "the object's own result";

  SmartPtr<IFileArchive> fresh = QueryAs<IFileArchive>(CreateObjectAs<IXMLFile>(L"XMLFile").get());
  EXPECT_EQ(fresh->Load(), E_FAIL) << "no file name";
  SmartPtr<IString> name;
  EXPECT_EQ(fresh->get_Filename(name.Receive()), E_FAIL);
  EXPECT_FALSE(name);
  fresh->put_Filename(good.Name().get());
  EXPECT_EQ(fresh->Load(), E_NOINTERFACE) << "no object to load into";
}

}  // namespace
