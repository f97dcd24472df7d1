// "FolderStream" through the framework: entries, round trips and refusal of corrupt images. (Objects saved and
// recreated by class name are exercised by the parameter and collection folder layouts.)
#include <gtest/gtest.h>

#include <malloc.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <limits>
#include <vector>

#include "storage_test_support.h"

using namespace test_support;
using storage_test::FolderDump;
using storage_test::ScratchFile;

namespace {

SmartPtr<IFolderStream> NewFolderStream() { return CreateObjectAs<IFolderStream>(L"FolderStream"); }

// Little-endian bytes of a 32-bit value.
std::string Le32(uint32_t n) {
  return {static_cast<char>(n), static_cast<char>(n >> 8), static_cast<char>(n >> 16), static_cast<char>(n >> 24)};
}

// The start of a folder-stream image.
std::string FolderImageHeader(uint32_t version = 1) { return "PFLD" + Le32(version); }

// A folder-stream image whose root folder holds `count` of the smallest entries of `kind` (empty values, or
// empty sub-folders), each named by one character of its own (1, 2, 3...).
std::string SmallestEntriesImage(uint32_t count, int32_t kind) {
  const std::string payload = kind == kFolderEntryFolder ? Le32(0) : std::string(1, '\0');
  std::string image = FolderImageHeader() + Le32(count);
  image.reserve(image.size() + size_t{count} * (9 + payload.size()));
  for (uint32_t i = 1; i <= count; ++i) image += static_cast<char>(kind) + Le32(1) + Le32(i) + payload;
  return image;
}

SmartPtr<IFileInfo> MakeFileInfo(const std::wstring& fileName, const std::wstring& objectClass, int32_t version) {
  SmartPtr<IFileInfo> info = CreateObjectAs<IFileInfo>(L"FileInfo");
  info->put_Filename(MakeString(fileName).get());
  info->put_ObjectClass(MakeString(objectClass).get());
  info->put_Version(version);
  return info;
}

// Writes one entry of every kind, names beyond ASCII and three levels of folders.
void FillSample(IFolderStream* root) {
  root->WriteValue(Ref(L"empty"), MakeVariant().get());
  root->WriteValue(Ref(L"min"), MakeLong(std::numeric_limits<int32_t>::min()).get());
  root->WriteValue(Ref(L"real"), MakeDouble(-1.5e300).get());
  root->WriteValue(Ref(L"negative zero"), MakeDouble(-0.0).get());
  root->WriteValue(Ref(L"Größe \U0001F600"), MakeText(L"ü = \U00010348, 😀").get());
  root->WriteValue(Ref(L"held object"), MakeHolding(MakeFileInfo(L"inner.xml", L"Inner", 3).get()).get());
  const unsigned char bytes[] = {0x00, 0xFF, 0x10, 0x00};
  root->WriteBinary(Ref(L"Flags"), bytes, sizeof(bytes));
  root->WriteBinary(Ref(L"nothing"), nullptr, 0);
  SmartPtr<IFolderStream> level1, level2;
  root->CreateFolder(Ref(L"日本"), level1.Receive());
  level1->WriteValue(Ref(L"Value"), MakeLong(7).get());
  level1->CreateFolder(Ref(L"deeper"), level2.Receive());
  level2->WriteObject(Ref(L"Descriptor"), MakeFileInfo(L"d.tab", L"ParametersCreatable", 2).get(), 0);
  root->WriteObject(Ref(L"plain string"), MakeString(L"not persisted").get(), 0);
}

const wchar_t kSampleDump[] =
    L"empty=e\nmin=i-2147483648\nreal=r-1.5000000000000001e+300\nnegative zero=r-0\n"
    L"Größe \U0001F600=t'ü = \U00010348, 😀'\nheld object=oFileInfo\nFlags=bytes 00 FF 10 00\nnothing=bytes\n"
    L"日本=folder\n  Value=i7\n  deeper=folder\n    Descriptor=object FileInfo\n      Filename=t'd.tab'\n"
    L"      ObjectClass=t'ParametersCreatable'\n      Version=bytes 02 00 00 00\nplain string=object CreatableString\n";

}  // namespace

TEST(FolderStream, EntriesAreFoundByNameKindAndPosition) {
  SmartPtr<IFolderStream> root = NewFolderStream();
  root->WriteValue(Ref(L"a"), MakeLong(1).get());
  root->WriteValue(Ref(L"b"), MakeLong(2).get());
  root->WriteValue(Ref(L"c"), MakeLong(3).get());
  root->WriteBinary(Ref(L"a"), "xy", 2);
  SmartPtr<IFolderStream> sub, sameSub;
  root->CreateFolder(Ref(L"b"), sub.Receive());
  sub->WriteValue(Ref(L"inner"), MakeText(L"first").get());
  root->CreateFolder(Ref(L"b"), sameSub.Receive());  // an existing folder is opened, not emptied
  root->WriteObject(Ref(L"d"), MakeString(L"s").get(), 0);
  // Rewriting a name replaces the entry in place.
  EXPECT_EQ(FolderDump(root.get()), L"a=bytes 78 79\nb=folder\n  inner=t'first'\nc=i3\nd=object CreatableString\n");
  int32_t index = -1, kind = 0;
  EXPECT_EQ(root->Find(Ref(L"c"), &index, &kind), S_OK);
  EXPECT_EQ(index, 2);
  EXPECT_EQ(kind, kFolderEntryValue);
  EXPECT_EQ(root->Find(Ref(L"C"), &index, &kind), E_ITEMNOTFOUND);  // names are case-sensitive

  struct ReadCase { const wchar_t* name; int32_t capacity; HRESULT expected; int32_t storedCount; const char* bytes; };
  const ReadCase reads[] = {
      {L"a", 2, S_OK, 2, "xy"}, {L"a", 1, S_FALSE, 2, "x"} /* a shorter buffer: the first byte */,
      {L"a", 3, S_FALSE, 2, "xy"}, {L"c", 2, E_FAIL, 0, ""}, {L"Missing", 2, E_ITEMNOTFOUND, 0, ""},
      {L"", 2, E_INVALIDARG, 0, ""},
  };
  for (const ReadCase& c : reads) {
    char buffer[4] = {};
    int32_t stored = -1;
    EXPECT_EQ(root->ReadBinary(Ref(c.name), buffer, c.capacity, &stored), c.expected) << c.name << " " << c.capacity;
    EXPECT_EQ(stored, c.storedCount) << c.name;
    EXPECT_EQ(std::string(buffer), c.bytes) << c.name << " " << c.capacity;
  }
  SmartPtr<IVariant> value;
  EXPECT_EQ(root->ReadValue(Ref(L"a"), value.Receive()), E_FAIL);
  EXPECT_EQ(root->OpenFolder(Ref(L"c"), sub.Receive()), E_FAIL);
  EXPECT_EQ(root->WriteValue(Ref(L""), MakeLong(1).get()), E_INVALIDARG);
  EXPECT_EQ(root->WriteObject(Ref(L"x"), nullptr, 0), E_POINTER);

  EXPECT_EQ(root->RemoveEntry(Ref(L"a")), S_OK);
  EXPECT_EQ(root->RemoveEntry(Ref(L"a")), E_ITEMNOTFOUND);
  EXPECT_EQ(FolderDump(root.get()), L"b=folder\n  inner=t'first'\nc=i3\nd=object CreatableString\n");
}

// --- refusal of corrupt images ---

namespace {

// A one-character name "n".
std::string NameN() { return Le32(1) + Le32(L'n'); }

// The image of `depth` folders nested in each other, each named "n".
std::string Nested(int depth) {
  std::string image = FolderImageHeader();
  for (int i = 0; i < depth; ++i) image += Le32(1) + "\x01" + NameN();
  return image + Le32(0);
}

}  // namespace

TEST(FolderStream, ImagesRoundTripThroughFilesAndTruncatedOnesAreRefused) {
  ScratchFile file("folder-roundtrip"), missing("folder-missing"), corrupt("folder-corrupt");
  SmartPtr<IFolderStream> source = NewFolderStream();
  FillSample(source.get());
  EXPECT_EQ(FolderDump(source.get()), kSampleDump);
  const std::string image = BytesOf(source.get());
  ASSERT_EQ(source->SaveToFile(file.Name().get()), S_OK);
  EXPECT_EQ(file.Read(), image);
  corrupt.Write(image.substr(0, image.size() - 1));

  SmartPtr<IFolderStream> target = NewFolderStream();
  target->WriteValue(Ref(L"kept"), MakeLong(1).get());
  for (size_t length = 0; length < image.size(); ++length)
    ASSERT_EQ(target->Write(image.data(), static_cast<int32_t>(length)), E_FAIL) << "length " << length;
  EXPECT_EQ(target->LoadFromFile(missing.Name().get()), E_FAIL);
  EXPECT_EQ(target->LoadFromFile(corrupt.Name().get()), E_FAIL);
  EXPECT_EQ(target->LoadFromFile(nullptr), E_FAIL);
  EXPECT_EQ(FolderDump(target.get()), L"kept=i1\n");  // a refused image leaves the content as it was
  ASSERT_EQ(target->LoadFromFile(file.Name().get()), S_OK);
  EXPECT_EQ(FolderDump(target.get()), kSampleDump);
  EXPECT_EQ(target->Write(image.data(), static_cast<int32_t>(image.size())), S_OK);
}

TEST(FolderStream, MalformedImagesAreRefusedAndNestingIsBounded) {
  const std::string emptyValue = std::string(1, '\x03') + NameN() + std::string(1, '\0');
  struct Case { const char* what; std::string image; HRESULT expected; };
  const Case cases[] = {
      {"valid single value", FolderImageHeader() + Le32(1) + emptyValue, S_OK},
      {"wrong magic", "PFLE" + Le32(1) + Le32(0), E_FAIL}, {"wrong version", FolderImageHeader(2) + Le32(0), E_FAIL},
      {"absurd entry count", FolderImageHeader() + Le32(0xFFFFFFFF) + emptyValue, E_FAIL},
      {"absurd name length", FolderImageHeader() + Le32(1) + "\x03" + Le32(0x40000000) + "abcd", E_FAIL},
      {"absurd binary length", FolderImageHeader() + Le32(1) + "\x02" + NameN() + Le32(0x7FFFFFFF) + "xy", E_FAIL},
      {"unknown entry kind", FolderImageHeader() + Le32(1) + "\x09" + NameN() + std::string(1, '\0'), E_FAIL},
      {"unknown value kind", FolderImageHeader() + Le32(1) + "\x03" + NameN() + "\x07", E_FAIL},
      {"empty name", FolderImageHeader() + Le32(1) + "\x03" + Le32(0) + std::string(2, '\0'), E_FAIL},
      {"repeated name", FolderImageHeader() + Le32(2) + emptyValue + emptyValue, E_FAIL},
      {"object without class", FolderImageHeader() + Le32(1) + "\x04" + NameN() + Le32(0) + Le32(0), E_FAIL},
      {"trailing byte", FolderImageHeader() + Le32(0) + "x", E_FAIL}, {"100 nested folders", Nested(100), S_OK},
      {"101 nested folders", Nested(101), E_FAIL},
  };
  for (const Case& c : cases) {
    SmartPtr<IFolderStream> target = NewFolderStream();
    EXPECT_EQ(target->Write(c.image.data(), static_cast<int32_t>(c.image.size())), c.expected) << c.what;
  }
  // Writing stops at the same depth.
  SmartPtr<IFolderStream> root = NewFolderStream(), folder = root;
  int32_t depth = 0;
  for (SmartPtr<IFolderStream> next; folder->CreateFolder(Ref(L"n"), next.Receive()) == S_OK; folder = next) ++depth;
  EXPECT_EQ(depth, 100);
  EXPECT_EQ(BytesOf(root.get()), Nested(100));
}

// Bounded memory for images of many entries, and caps on entries and folders.
TEST(FolderStream, ManySmallEntriesTakeFewBytesEachUpToTheCaps) {
  constexpr uint32_t kEntries = 200000;
  const std::string image = SmallestEntriesImage(kEntries, kFolderEntryValue);  // 10 bytes an entry
  SmartPtr<IFolderStream> stream = NewFolderStream();
  const size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
  ASSERT_EQ(stream->Write(image.data(), static_cast<int32_t>(image.size())), S_OK);
  const size_t held = mallinfo2().uordblks + mallinfo2().hblkhd - before;
  EXPECT_LE(held, size_t{kEntries} * 64) << held / kEntries << " bytes an entry";
  int32_t index = -1, kind = 0;
  const std::wstring last(1, static_cast<wchar_t>(kEntries));
  EXPECT_EQ(stream->Find(Ref(last), &index, &kind), S_OK);
  EXPECT_EQ(index, static_cast<int32_t>(kEntries) - 1);
  EXPECT_EQ(kind, kFolderEntryValue);
  struct Case { const char* what; std::string image; };
  const Case cases[] = {
      {"4194305 values", SmallestEntriesImage((1u << 22) + 1, kFolderEntryValue)},
      {"1048577 sub-folders", SmallestEntriesImage((1u << 20) + 1, kFolderEntryFolder)},
  };
  for (const Case& c : cases) {
    SmartPtr<IFolderStream> target = NewFolderStream();
    ASSERT_EQ(target->WriteString(Ref(L"kept"), MakeString(L"as before").get()), S_OK);
    EXPECT_EQ(target->Write(c.image.data(), static_cast<int32_t>(c.image.size())), E_FAIL) << c.what;
    EXPECT_EQ(FolderDump(target.get()), L"kept=t'as before'\n") << c.what;
  }
}

// Large folders find entries through an index; removals and renames must keep it right.
TEST(FolderStream, LargeFoldersFindEveryEntryAfterRemovalsAndRenames) {
  SmartPtr<IFolderStream> folder = NewFolderStream();
  std::vector<std::wstring> expected;  // names in order, as the rules say they end up
  for (int i = 0; i < 300; ++i) {
    expected.push_back(L"e" + std::to_wstring(i));
    ASSERT_EQ(folder->WriteValue(Ref(expected.back()), MakeLong(i).get()), S_OK);
  }
  for (int i = 297; i >= 0; i -= 3) {
    ASSERT_EQ(folder->RemoveEntry(Ref(expected[i])), S_OK);
    expected.erase(expected.begin() + i);
  }
  SmartPtr<ISuperCollection> entries = QueryAs<ISuperCollection>(folder.get());
  for (size_t i = 0; i < expected.size(); i += 5) {
    expected[i] = L"renamed" + std::to_wstring(i);
    ASSERT_EQ(entries->Rename(static_cast<int32_t>(i), MakeString(expected[i]).get()), S_OK);
  }
  EXPECT_EQ(entries->Rename(1, MakeString(expected[2]).get()), E_INVALIDARG);
  for (size_t i = 0; i < expected.size(); ++i) {
    int32_t index = -1, kind = 0;
    EXPECT_EQ(folder->Find(Ref(expected[i]), &index, &kind), S_OK) << i;
    EXPECT_EQ(index, static_cast<int32_t>(i));
  }
  EXPECT_EQ(folder->Find(Ref(L"e0"), nullptr, nullptr), E_ITEMNOTFOUND);  // removed
  EXPECT_EQ(folder->Find(Ref(L"e1"), nullptr, nullptr), E_ITEMNOTFOUND);  // renamed
}

// --- special files ---

// Loading refuses a device or FIFO before reading it: /dev/zero would otherwise fill 256 MiB of memory before
// the size limit stops it, and a FIFO without writer would block for ever.
TEST(FolderStream, DevicesAndFifosAreRefusedBeforeReading) {
  ScratchFile fifo("folder-stream-fifo");
  ASSERT_EQ(mkfifo(fifo.Path().c_str(), 0600), 0);
  struct rusage before {};
  getrusage(RUSAGE_SELF, &before);
  for (const std::wstring& path : {std::wstring(L"/dev/zero"), std::wstring(fifo.Path().begin(), fifo.Path().end())}) {
    SmartPtr<IFolderStream> target = NewFolderStream();
    ASSERT_EQ(target->WriteString(Ref(L"kept"), MakeString(L"as before").get()), S_OK);
    EXPECT_EQ(target->LoadFromFile(MakeString(path).get()), E_FAIL) << std::string(path.begin(), path.end());
    EXPECT_EQ(FolderDump(target.get()), L"kept=t'as before'\n");
  }
  struct rusage after {};
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 32 * 1024) << "kilobytes of peak memory added";
}
