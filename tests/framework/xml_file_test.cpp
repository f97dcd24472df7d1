// "XMLFile": whole-file loading into an object, as a parameter set's Load() uses it.
#include <gtest/gtest.h>

#include "storage_test_support.h"
#include "xml_test_support.h"

namespace {

using namespace test_support;
using storage_test::ScratchFile;

const std::wstring kDocument = kProlog + L"<ParametersCreatable>\r\n  <speed>3</speed>\r\n"
                                          L"  <name>\u00FC &#x1F600;</name>\r\n</ParametersCreatable>\r\n";

// Wide text as the file archive saves it: a byte-order mark, then the low 16 bits of each character.
std::string Utf16(const std::wstring& text) {
  std::string bytes = "\xFF\xFE";
  for (wchar_t c : text) bytes += {static_cast<char>(c & 0xFF), static_cast<char>((c >> 8) & 0xFF)};
  return bytes;
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

// Malformed files and other encodings are tested through the parameter set's file archive.
TEST_F(XMLFileTest, LoadsTheFirstElementAfterThePrologIntoTheObject) {
  ScratchFile file("xmlfile-params.xml"), missing("xmlfile-missing.xml");
  file.Write(Utf16(kDocument));
  ASSERT_EQ(LoadInto(file), S_OK);
  EXPECT_EQ(m_Probe->m_Flags, kLoadReplace);
  // The stream writes characters above U+FFFF as references, which survive the 16-bit file.
  EXPECT_EQ(m_Probe->m_Children, (Names{L"speed=3", L"name=\u00FC \U0001F600"}));
  ASSERT_EQ(LoadInto(file, 0), S_OK);
  EXPECT_EQ(m_Probe->m_Flags, 0) << "without the replace option the object merges";
  m_Probe->m_Result = E_INVALIDARG;
  EXPECT_EQ(LoadInto(file), E_INVALIDARG) << "the object's own result";

  EXPECT_EQ(LoadInto(missing), E_FAIL);
  SmartPtr<IFileArchive> fresh = QueryAs<IFileArchive>(CreateObjectAs<IXMLFile>(L"XMLFile").get());
  EXPECT_EQ(fresh->Load(), E_FAIL) << "no file name";
  fresh->put_Filename(file.Name().get());
  EXPECT_EQ(fresh->Load(), E_NOINTERFACE) << "no object to load into";
}

}  // namespace
