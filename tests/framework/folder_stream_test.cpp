// "FolderStream" and "FileInfo" through the framework: round trips, order, objects, and refusal of corrupt images.
#include <gtest/gtest.h>

#include <limits>

#include "storage_test_support.h"

using namespace test_support;
using storage_test::ScratchFile;

namespace {

SmartPtr<IFolderStream> NewFolderStream() { return CreateObjectAs<IFolderStream>(L"FolderStream"); }

// The folder's entries through its collection view, one "name=value" line each, sub-folders indented.
std::wstring Dump(IUnknown* stream, const std::wstring& indent = L"") {
  SmartPtr<ISuperCollection> folder = QueryAs<ISuperCollection>(stream);
  if (!folder) return L"<not a collection>";
  int32_t count = 0;
  folder->get_Count(&count);
  std::wstring dump;
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IUnknown> item, attached;
    int32_t kind = 0;
    folder->get_ItemName(i, name.Receive());
    folder->get_ItemFlags(i, &kind);
    EXPECT_EQ(folder->get_Item(i, item.Receive()), S_OK) << i;
    dump += indent + TextOf(name) + L"=";
    if (kind == kFolderEntryValue) {
      dump += DescribeValue(QueryAs<IVariant>(item.get()).get()) + L"\n";
    } else if (kind == kFolderEntryBinary) {
      dump += L"bytes";
      for (unsigned char byte : BytesOf(QueryAs<IDataStream>(item.get()).get())) {
        wchar_t hex[4];
        swprintf(hex, 4, L" %02x", byte);
        dump += hex;
      }
      dump += L"\n";
    } else {
      folder->get_ItemAttached(i, attached.Receive());
      dump += (kind == kFolderEntryObject ? L"object " + TextOf(QueryAs<IString>(attached.get())) : L"folder") + L"\n";
      dump += Dump(item.get(), indent + L"  ");
    }
  }
  return dump;
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
  SmartPtr<IVariant> holder = MakeVariant();
  holder->Assign(MakeFileInfo(L"inner.xml", L"Inner", 3).get());
  root->WriteValue(Ref(L"held object"), holder.get());
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
    L"empty=e\n"
    L"min=i-2147483648\n"
    L"real=r-1.5000000000000001e+300\n"
    L"negative zero=r-0\n"
    L"Größe \U0001F600=t'ü = \U00010348, 😀'\n"
    L"held object=oFileInfo\n"
    L"Flags=bytes 00 ff 10 00\n"
    L"nothing=bytes\n"
    L"日本=folder\n"
    L"  Value=i7\n"
    L"  deeper=folder\n"
    L"    Descriptor=object FileInfo\n"
    L"      Filename=t'd.tab'\n"
    L"      ObjectClass=t'ParametersCreatable'\n"
    L"      Version=bytes 02 00 00 00\n"
    L"plain string=object CreatableString\n";

}  // namespace

TEST(FolderStream, FileRoundTripKeepsEveryKindOfEntryInOrder) {
  ScratchFile file("folder-roundtrip");
  SmartPtr<IFolderStream> written = NewFolderStream();
  ASSERT_TRUE(written);
  FillSample(written.get());
  EXPECT_EQ(Dump(written.get()), kSampleDump);
  ASSERT_EQ(written->SaveToFile(file.Name().get()), S_OK);
  EXPECT_EQ(file.Read(), BytesOf(written.get()));

  SmartPtr<IFolderStream> read = NewFolderStream();
  read->WriteValue(Ref(L"stale"), MakeLong(1).get());
  ASSERT_EQ(read->LoadFromFile(file.Name().get()), S_OK);
  EXPECT_EQ(Dump(read.get()), kSampleDump);

  // The object held by a value comes back with what it saved.
  SmartPtr<IVariant> held;
  ASSERT_EQ(read->ReadValue(Ref(L"held object"), held.Receive()), S_OK);
  SmartPtr<IUnknown> object;
  held->GetObject(object.Receive());
  SmartPtr<IFileInfo> info = QueryAs<IFileInfo>(object.get());
  ASSERT_TRUE(info);
  SmartPtr<IString> name;
  int32_t version = 0;
  info->get_Filename(name.Receive());
  info->get_Version(&version);
  EXPECT_EQ(TextOf(name) + L" " + std::to_wstring(version), L"inner.xml 3");
}

TEST(FolderStream, ObjectsAreRecreatedByClassName) {
  SmartPtr<IFolderStream> root = NewFolderStream();
  FillSample(root.get());
  SmartPtr<IFolderStream> level1, level2;
  ASSERT_EQ(root->OpenFolder(Ref(L"日本"), level1.Receive()), S_OK);
  ASSERT_EQ(level1->OpenFolder(Ref(L"deeper"), level2.Receive()), S_OK);
  IID iid = IID_IFileInfo;
  SmartPtr<IFileInfo> info, again;
  ASSERT_EQ(level2->ReadObject(Ref(L"Descriptor"), 0, &iid, info.ReceiveVoid()), S_OK);
  SmartPtr<IString> objectClass;
  info->get_ObjectClass(objectClass.Receive());
  EXPECT_EQ(TextOf(objectClass), L"ParametersCreatable");
  level2->ReadObject(Ref(L"Descriptor"), 0, &iid, again.ReceiveVoid());
  EXPECT_FALSE(SameObject(info.get(), again.get())) << "a new object each time";

  // An object that does not persist comes back as a new, empty object of its class.
  SmartPtr<IString> plain;
  iid = IID_IString;
  ASSERT_EQ(root->ReadObject(Ref(L"plain string"), 0, &iid, plain.ReceiveVoid()), S_OK);
  EXPECT_EQ(TextOf(plain), L"");
}

TEST(FolderStream, RewritingANameReplacesTheEntryInPlace) {
  SmartPtr<IFolderStream> root = NewFolderStream();
  root->WriteValue(Ref(L"a"), MakeLong(1).get());
  root->WriteValue(Ref(L"b"), MakeLong(2).get());
  root->WriteValue(Ref(L"c"), MakeLong(3).get());
  root->WriteBinary(Ref(L"a"), "xy", 2);
  SmartPtr<IFolderStream> sub, sameSub;
  root->CreateFolder(Ref(L"b"), sub.Receive());
  sub->WriteValue(Ref(L"inner"), MakeText(L"first").get());
  root->CreateFolder(Ref(L"b"), sameSub.Receive());  // an existing folder is opened, not emptied
  EXPECT_EQ(Dump(root.get()), L"a=bytes 78 79\nb=folder\n  inner=t'first'\nc=i3\n");

  EXPECT_EQ(root->RemoveEntry(Ref(L"a")), S_OK);
  int32_t index = -1, kind = 0;
  EXPECT_EQ(root->Find(Ref(L"c"), &index, &kind), S_OK);
  EXPECT_EQ(index, 1);
  EXPECT_EQ(kind, kFolderEntryValue);
  EXPECT_EQ(root->Find(Ref(L"a"), &index, &kind), E_ITEMNOTFOUND);
  EXPECT_EQ(root->Find(Ref(L"C"), &index, &kind), E_ITEMNOTFOUND);  // names are case-sensitive
}

TEST(FolderStream, ReadsReportMissingEntriesWrongKindsAndLengths) {
  SmartPtr<IFolderStream> root = NewFolderStream();
  const int32_t flags = 0x40004;
  root->WriteBinary(Ref(L"Flags"), &flags, 4);
  root->WriteValue(Ref(L"Value"), MakeLong(5).get());
  struct Case {
    const wchar_t* name;
    int32_t capacity;
    HRESULT expected;
    int32_t storedCount;
    unsigned char firstByte;
  };
  const Case cases[] = {
      {L"Flags", 4, S_OK, 4, 0x04},
      {L"Flags", 2, S_FALSE, 4, 0x04},  // shorter buffer: the first two bytes
      {L"Flags", 8, S_FALSE, 4, 0x04},
      {L"Value", 4, E_FAIL, 0, 0},
      {L"Missing", 4, E_ITEMNOTFOUND, 0, 0},
      {L"", 4, E_INVALIDARG, 0, 0},
  };
  for (const Case& c : cases) {
    unsigned char buffer[8] = {};
    int32_t stored = -1;
    EXPECT_EQ(root->ReadBinary(Ref(c.name), buffer, c.capacity, &stored), c.expected) << c.name << " " << c.capacity;
    EXPECT_EQ(stored, c.storedCount) << c.name;
    EXPECT_EQ(buffer[0], c.firstByte) << c.name << " " << c.capacity;
  }
  SmartPtr<IVariant> value;
  EXPECT_EQ(root->ReadValue(Ref(L"Flags"), value.Receive()), E_FAIL);
  SmartPtr<IFolderStream> folder;
  EXPECT_EQ(root->OpenFolder(Ref(L"Value"), folder.Receive()), E_FAIL);
  EXPECT_EQ(root->OpenFolder(Ref(L"none"), folder.Receive()), E_ITEMNOTFOUND);
  EXPECT_EQ(root->WriteValue(Ref(L""), MakeLong(1).get()), E_INVALIDARG);
  EXPECT_EQ(root->WriteObject(Ref(L"x"), nullptr, 0), E_POINTER);
}

TEST(FolderStream, CollectionViewServesTheReadersOfNamedCollections) {
  SmartPtr<IFolderStream> root = NewFolderStream();
  root->WriteObject(Ref(L"first"), MakeFileInfo(L"a", L"InputParameter", 1).get(), 0);
  root->WriteValue(Ref(L"value"), MakeLong(4).get());
  root->WriteObject(Ref(L"second"), MakeFileInfo(L"b", L"X", 2).get(), 0);
  SmartPtr<ISuperCollection> entries = QueryAs<ISuperCollection>(root.get());
  ASSERT_TRUE(entries);

  // The attached item of an object entry is its class name; other entries have none.
  std::wstring attachedNames;
  for (int32_t i = 0; i < 3; ++i) {
    SmartPtr<IUnknown> attached;
    const HRESULT result = entries->get_ItemAttached(i, attached.Receive());
    attachedNames += (result == E_FAIL ? L"E_FAIL" : TextOf(QueryAs<IString>(attached.get()))) + L";";
  }
  EXPECT_EQ(attachedNames, L"FileInfo;E_FAIL;FileInfo;");

  struct Case {
    SmartPtr<IUnknown> key;
    HRESULT expected;
    int32_t index;
  };
  const Case cases[] = {
      {SmartPtr<IUnknown>(MakeString(L"second").get()), S_OK, 2},
      {SmartPtr<IUnknown>(MakeString(L"Second").get()), E_FAIL, 65535},  // the named collections' unknown name
      {SmartPtr<IUnknown>(MakeLong(9).get()), S_OK, 9},                  // a number is the index itself
      {SmartPtr<IUnknown>(MakeText(L"value").get()), S_OK, 1},
  };
  for (const Case& c : cases) {
    int32_t index = -2;
    EXPECT_EQ(entries->get_Index(c.key.get(), &index), c.expected) << c.index;
    EXPECT_EQ(index, c.index);
  }

  EXPECT_EQ(entries->IsCollectionLocked(), 1);
  EXPECT_EQ(entries->CollectionLock(), S_OK);
  EXPECT_EQ(entries->IsCollectionLocked(), 0);
  EXPECT_EQ(entries->CollectionUnlock(), S_OK);
  EXPECT_EQ(entries->CollectionUnlock(), E_FAIL);

  EXPECT_EQ(entries->Rename(1, MakeString(L"first").get()), E_INVALIDARG);  // names stay unique
  EXPECT_EQ(entries->Rename(1, MakeString(L"renamed").get()), S_OK);
  EXPECT_EQ(entries->Add(nullptr, root.get(), nullptr, 0), E_NOTIMPL);
  EXPECT_EQ(entries->Remove(0), S_OK);
  EXPECT_EQ(Dump(root.get()), L"renamed=i4\nsecond=object FileInfo\n  Filename=t'b'\n  ObjectClass=t'X'\n  Version=bytes 02 00 00 00\n");
  SmartPtr<IUnknown> item;
  EXPECT_EQ(entries->get_Item(2, item.Receive()), E_INVALIDARG);
}

// --- refusal of corrupt images ---

namespace {

std::string Le32(uint32_t value) {
  std::string bytes(4, '\0');
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<char>(value >> (8 * i));
  return bytes;
}

std::string Header(uint32_t version = 1) { return "PFLD" + Le32(version); }

// A one-character name "n".
std::string NameN() { return Le32(1) + Le32(L'n'); }

}  // namespace

TEST(FolderStream, TruncatedImagesAndUnreadableFilesAreRefused) {
  SmartPtr<IFolderStream> source = NewFolderStream();
  FillSample(source.get());
  const std::string image = BytesOf(source.get());
  ASSERT_GT(image.size(), 100u);

  SmartPtr<IFolderStream> target = NewFolderStream();
  target->WriteValue(Ref(L"kept"), MakeLong(1).get());
  for (size_t length = 0; length < image.size(); ++length)
    ASSERT_EQ(target->Write(image.data(), static_cast<int32_t>(length)), E_FAIL) << "length " << length;
  ScratchFile missing("folder-missing");
  ScratchFile corrupt("folder-corrupt");
  corrupt.Write(image.substr(0, image.size() - 1));
  EXPECT_EQ(target->LoadFromFile(missing.Name().get()), E_FAIL);
  EXPECT_EQ(target->LoadFromFile(corrupt.Name().get()), E_FAIL);
  EXPECT_EQ(target->LoadFromFile(nullptr), E_FAIL);
  EXPECT_EQ(Dump(target.get()), L"kept=i1\n");  // a refused image leaves the content as it was
  EXPECT_EQ(target->Write(image.data(), static_cast<int32_t>(image.size())), S_OK);
  EXPECT_EQ(Dump(target.get()), kSampleDump);
}

TEST(FolderStream, MalformedImagesAreRefused) {
  const std::string emptyValue = std::string(1, '\x03') + NameN() + std::string(1, '\0');
  struct Case {
    const char* what;
    std::string image;
    HRESULT expected;
  };
  const Case cases[] = {
      {"valid empty folder", Header() + Le32(0), S_OK},
      {"valid single value", Header() + Le32(1) + emptyValue, S_OK},
      {"wrong magic", "PFLE" + Le32(1) + Le32(0), E_FAIL},
      {"wrong version", Header(2) + Le32(0), E_FAIL},
      {"version zero", Header(0) + Le32(0), E_FAIL},
      {"absurd entry count", Header() + Le32(0xFFFFFFFF) + emptyValue, E_FAIL},
      {"count beyond entries", Header() + Le32(2) + emptyValue, E_FAIL},
      {"absurd name length", Header() + Le32(1) + "\x03" + Le32(0x40000000) + "abcd", E_FAIL},
      {"absurd binary length", Header() + Le32(1) + "\x02" + NameN() + Le32(0x7FFFFFFF) + "xy", E_FAIL},
      {"absurd text length", Header() + Le32(1) + "\x03" + NameN() + "\x03" + Le32(0xFFFFFFFF), E_FAIL},
      {"unknown entry kind", Header() + Le32(1) + "\x09" + NameN() + std::string(1, '\0'), E_FAIL},
      {"unknown value kind", Header() + Le32(1) + "\x03" + NameN() + "\x07", E_FAIL},
      {"empty name", Header() + Le32(1) + "\x03" + Le32(0) + std::string(2, '\0'), E_FAIL},
      {"repeated name", Header() + Le32(2) + emptyValue + emptyValue, E_FAIL},
      {"object without class", Header() + Le32(1) + "\x04" + NameN() + Le32(0) + Le32(0), E_FAIL},
      {"trailing byte", Header() + Le32(0) + "x", E_FAIL},
  };
  for (const Case& c : cases) {
    SmartPtr<IFolderStream> target = NewFolderStream();
    EXPECT_EQ(target->Write(c.image.data(), static_cast<int32_t>(c.image.size())), c.expected) << c.what;
  }
}

TEST(FolderStream, NestingIsBoundedOnWritingAndReading) {
  SmartPtr<IFolderStream> folder = NewFolderStream();
  SmartPtr<IFolderStream> root = folder;
  int32_t depth = 0;
  for (SmartPtr<IFolderStream> next; folder->CreateFolder(Ref(L"f"), next.Receive()) == S_OK; folder = next) ++depth;
  EXPECT_EQ(depth, 100);
  std::string image = BytesOf(root.get());
  SmartPtr<IFolderStream> copy = NewFolderStream();
  EXPECT_EQ(copy->Write(image.data(), static_cast<int32_t>(image.size())), S_OK);

  // One level more than the limit, built by hand: 101 nested folders.
  std::string deep = Header();
  for (int i = 0; i < 101; ++i) deep += Le32(1) + "\x01" + NameN();
  deep += Le32(0);
  EXPECT_EQ(copy->Write(deep.data(), static_cast<int32_t>(deep.size())), E_FAIL);
}
