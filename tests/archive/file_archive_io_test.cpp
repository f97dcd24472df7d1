// FileArchiveLoad and FileArchiveSave: encodings on disk, the file name
// conversion and the failures.
#include "archive/file_archive_io.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "../parameters/persistence_test_support.h"

namespace {

namespace fs = std::filesystem;
using namespace persistence_test;

// Each test's files in a scratch folder of its own.
class FileArchiveIOTest : public ::testing::Test {
 protected:
  std::wstring PathOf(const std::string& file) const { return Wide(m_Folder + "/" + file); }

  // The result and the `length` characters (bytes in byte mode) handed out.
  struct Loaded { HRESULT result; std::wstring text; };
  Loaded LoadText(const std::string& bytes, int16_t mode, unsigned int limit) const {
    WriteFile(m_Folder + "/in.txt", bytes);
    void* data = nullptr;
    unsigned int length = 0;
    Loaded loaded{FileArchiveLoad(Ref(PathOf("in.txt")), &data, &length, mode, limit), L""};
    if (data && mode == kFileLoadBytes) {
      const auto* read = static_cast<const unsigned char*>(data);
      loaded.text.assign(read, read + length);
      EXPECT_EQ(read[length], 0) << "a zero byte follows the data";
    } else if (data) {
      loaded.text.assign(static_cast<const wchar_t*>(data), length);
    }
    FileArchiveFree(data);
    return loaded;
  }

  const std::string m_Folder = ScratchFolder("io");
};

TEST_F(FileArchiveIOTest, TextEncodingsAreDetectedAndBytesRead) {
  struct Case { const char* what; std::string bytes; int16_t mode; HRESULT result; std::wstring text;
                unsigned int limit = 0; };
  const std::string smile = "\xF0\x9F\x98\x80";
  const Case cases[] = {
      // UTF-16: the first unit always goes, the length stays count / 2.
      {"UTF-16 with a mark", std::string("\xFF\xFE" "a\0b\0", 6), 1, S_OK, std::wstring(L"ab\0", 3)},
      {"UTF-16 without a mark loses its first unit", std::string("a\0b\0c\0", 6), 1, S_OK, std::wstring(L"bc\0", 3)},
      {"a zero unit ends the text", std::string("\xFF\xFE" "a\0\0\0b\0", 8), 1, S_OK, std::wstring(L"a\0\0\0", 4)},
      {"a mark pair anywhere in the first 8 bytes", std::string("xy\xFE\xFF" "ab", 6), 2, S_OK,
       std::wstring(L"\xFFFE\x6261\0", 3)},
      {"a mark pair after the first 8 bytes does not count", "abcdefgh\xFF\xFE", 2, S_OK,
       L"abcdefgh\u00FF\u00FE"},
      {"UTF-8", "a\xC3\xA9", 1, S_FALSE, L"a\u00E9"},
      {"strict UTF-8", "a\xC3\xA9" + smile + "b", 2, S_FALSE, L"a\u00E9\U0001F600b"},
      {"a four-byte character at the very end is 8-bit text when strict", "a" + smile, 2, S_OK,
       L"a\u00F0\u009F\u0098\u0080"},
      {"the same file read leniently", "a" + smile, 1, S_FALSE, L"a\U0001F600"},
      {"Latin-1 is 8-bit text when strict", "caf\xE9!", 2, S_OK, L"caf\u00E9!"},
      {"an overlong sequence is not strict UTF-8", "\xC0\x80x", 2, S_OK, L"\u00C0\u0080x"},
      {"a surrogate is not strict UTF-8", "\xED\xA0\x80x", 2, S_OK, L"\u00ED\u00A0\u0080x"},
      {"a zero byte ends UTF-8 text", std::string("ab\0c", 4), 1, S_FALSE, L"ab"},
      {"bytes", "ab\xE9\xFF", kFileLoadBytes, S_OK, L"ab\u00E9\u00FF"},
      {"bytes up to a limit", "abcdef", kFileLoadBytes, S_OK, L"abc", 3},
      {"an empty file", "", kFileLoadBytes, E_FAIL, L""},
  };
  for (const Case& c : cases) {
    const Loaded loaded = LoadText(c.bytes, c.mode, c.limit);
    EXPECT_EQ(loaded.result, c.result) << c.what;
    EXPECT_EQ(loaded.text, c.text) << c.what;
  }
}

TEST_F(FileArchiveIOTest, AFileThatCannotBeOpenedOrIsNoRegularFileIsReportedOnStderr) {
  struct Case { std::wstring name; std::string message; };
  const std::string missing = m_Folder + "/missing.xml";
  // Anything but a regular file is refused before a byte is read; a FIFO without writer does not block.
  const std::string fifo = m_Folder + "/fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const Case cases[] = {
      {PathOf("missing.xml"), "file open err:\n" + missing + "\n"}, {L"", "file open err:\n\n"},
      {L"/dev/zero", "file open err:\n/dev/zero\n"}, {PathOf("fifo"), "file open err:\n" + fifo + "\n"},
      {Wide(m_Folder), "file open err:\n" + m_Folder + "\n"},
  };
  for (const Case& c : cases) {
    void* data = nullptr;
    unsigned int length = 0;
    testing::internal::CaptureStderr();
    EXPECT_EQ(FileArchiveLoad(Ref(c.name), &data, &length, kFileLoadText, 0), E_FAIL);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), c.message);
  }
  WriteFile(m_Folder + "/raw.bin", "abc");
  unsigned int length = 0;
  EXPECT_EQ(FileArchiveLoad(Ref(PathOf("raw.bin")), nullptr, &length, kFileLoadBytes, 0), E_POINTER);
  testing::internal::CaptureStderr();
  const unsigned char byte = 'x';
  EXPECT_EQ(FileArchiveSave(Ref(PathOf("no/such/folder.xml")), &byte, 1, 0, 0), E_FAIL);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "saving prints nothing";
}

TEST_F(FileArchiveIOTest, TextIsSavedAsUtf16WithAMark) {
  const std::wstring text = L"a\u00E9\U0001F600";
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const unsigned int size = static_cast<unsigned int>(text.size() * sizeof(wchar_t));
  ASSERT_EQ(FileArchiveSave(Ref(PathOf("out.xml")), bytes, size, 1, 0), S_OK);
  // Each character is cut to its low 16 bits: U+1F600 becomes U+F600.
  EXPECT_EQ(FileBytes(m_Folder + "/out.xml"), std::string("\xFF\xFE" "a\0\xE9\0\x00\xF6", 8));
  ASSERT_EQ(FileArchiveSave(Ref(PathOf("out.xml")), bytes, sizeof(wchar_t), 1, 1), S_OK);
  EXPECT_EQ(FileBytes(m_Folder + "/out.xml"), std::string("\xFF\xFE" "a\0\xE9\0\x00\xF6" "a\0", 10))
      << "appending writes no mark";

  ASSERT_EQ(FileArchiveSave(Ref(PathOf("raw.bin")), bytes, 5, 0, 0), S_OK);
  EXPECT_EQ(FileBytes(m_Folder + "/raw.bin"), std::string(reinterpret_cast<const char*>(bytes), 5));
  EXPECT_EQ(FileArchiveSave(Ref(PathOf("none.bin")), bytes, 0, 0, 0), E_FAIL) << "nothing written";
  EXPECT_EQ(FileArchiveSave(Ref(PathOf("null.bin")), nullptr, 4, 0, 0), E_POINTER);
  EXPECT_FALSE(fs::exists(m_Folder + "/null.bin"));
  ASSERT_EQ(FileArchiveSave(Ref(PathOf("empty.xml")), bytes, 0, 1, 0), S_OK) << "the mark counts as written";
  EXPECT_EQ(FileBytes(m_Folder + "/empty.xml"), "\xFF\xFE");
}

// Text is encoded and written a piece at a time: a text of many pieces comes out
// whole, unit for unit, replacing and appending alike.
TEST_F(FileArchiveIOTest, LongTextIsWrittenWhole) {
  std::wstring text(100000, L'\0');
  for (size_t i = 0; i < text.size(); ++i) text[i] = static_cast<wchar_t>(i % 7 == 0 ? 0x10000 + i : 0x41 + i % 26);
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const unsigned int size = static_cast<unsigned int>(text.size() * sizeof(wchar_t));
  std::string units;
  for (wchar_t c : text) units += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8 & 0xFF)};
  ASSERT_EQ(FileArchiveSave(Ref(PathOf("long.xml")), bytes, size, 1, 0), S_OK);
  const std::string saved = FileBytes(m_Folder + "/long.xml");
  ASSERT_EQ(saved.size(), 200002u);
  EXPECT_EQ(saved, "\xFF\xFE" + units);
  // Characters 32766 ("G") and 32767 (U+17FFF, cut to U+7FFF) on either side of a 64 KB boundary.
  EXPECT_EQ(saved.substr(65534, 4), std::string("\x47\0\xFF\x7F", 4));
  ASSERT_EQ(FileArchiveSave(Ref(PathOf("long.xml")), bytes, size, 1, 1), S_OK);
  EXPECT_EQ(FileBytes(m_Folder + "/long.xml"), "\xFF\xFE" + units + units);
}

TEST_F(FileArchiveIOTest, FileNamesAreCutToFitIn256Bytes) {
  const auto repeat = [](const std::string& bytes, int count) {
    std::string text;
    while (count-- > 0) text += bytes;
    return text;
  };
  struct Case { std::wstring name; std::string path; };
  const Case cases[] = {
      {std::wstring(300, L'a'), std::string(254, 'a')},
      {std::wstring(200, L'\u00E9'), repeat("\xC3\xA9", 127)},
      {std::wstring(253, L'a') + L"\u00E9", std::string(253, 'a')},
      {std::wstring(100, L'\U0001F600'), repeat("\xF0\x9F\x98\x80", 63)},
      // 0x7FF takes three bytes and 0xFFFF four, as the framework always encoded them.
      {L"\u07FE\u07FF\uFFFE\uFFFF", "\xDF\xBE" "\xE0\x9F\xBF" "\xEF\xBF\xBE" "\xF0\x8F\xBF\xBF"}, {L"", ""},
  };
  for (const Case& c : cases) {
    char path[kFileArchivePathSize];
    FileArchivePath(Ref(c.name), path);
    EXPECT_EQ(std::string(path), c.path) << c.name.size() << " characters";
  }
  char path[kFileArchivePathSize];
  FileArchivePath({-1, L"abc"}, path);
  EXPECT_EQ(std::string(path), "");

  // A file saved under a long name lands under the cut name.
  const std::wstring folder = PathOf("");
  const std::wstring name = folder + std::wstring(300 - folder.size(), L'n');
  const unsigned char byte = 'x';
  ASSERT_EQ(FileArchiveSave(Ref(name), &byte, 1, 0, 0), S_OK);
  const std::string cut = std::string(folder.begin(), folder.end()) + std::string(254 - folder.size(), 'n');
  EXPECT_TRUE(fs::exists(cut));
}

}  // namespace
