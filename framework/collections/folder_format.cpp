// Encoding and strict decoding of folder-stream images (little-endian throughout).
#include "folder_format.h"

#include <algorithm>
#include <cstring>

namespace {

// The fewest bytes one entry can take: kind, name length, a one-character
// name, and the smallest payload (the kind byte of an empty value).
constexpr size_t kSmallestEntryBytes = 1 + 4 + 4 + 1;

const FolderNode kEmptyFolder;

class ImageWriter {
 public:
  explicit ImageWriter(std::string* out) : m_Out(out) {}

  void Byte(uint8_t value) { m_Out->push_back(static_cast<char>(value)); }
  void U32(uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) Byte(static_cast<uint8_t>(value >> shift));
  }
  void U64(uint64_t value) {
    for (int shift = 0; shift < 64; shift += 8) Byte(static_cast<uint8_t>(value >> shift));
  }
  void Text(std::wstring_view text) {
    U32(static_cast<uint32_t>(text.size()));
    for (wchar_t c : text) U32(static_cast<uint32_t>(c));
  }
  void Bytes(std::string_view bytes) {
    U32(static_cast<uint32_t>(bytes.size()));
    m_Out->append(bytes);
  }

  bool Folder(const FolderNode& folder, int32_t depth) {
    if (depth > kMaxFolderDepth || folder.Count() > m_EntriesLeft) return false;
    m_EntriesLeft -= folder.Count();
    U32(static_cast<uint32_t>(folder.Count()));
    for (size_t i = 0; i < folder.Count(); ++i)
      if (!Entry(folder.At(i), depth)) return false;
    return true;
  }

 private:
  bool Content(const FolderEntryView& entry, int32_t depth) {
    Text(entry.text);
    return SubFolder(entry, depth);
  }

  bool SubFolder(const FolderEntryView& entry, int32_t depth) {
    if (m_FoldersLeft == 0) return false;
    --m_FoldersLeft;
    return Folder(entry.folder ? *entry.folder : kEmptyFolder, depth + 1);
  }

  bool Entry(const FolderEntryView& entry, int32_t depth) {
    Byte(static_cast<uint8_t>(entry.kind));
    Text(entry.name);
    switch (entry.kind) {
      case kFolderEntryFolder: return SubFolder(entry, depth);
      case kFolderEntryBinary: Bytes(entry.bytes); return true;
      case kFolderEntryObject: return Content(entry, depth);
      default: break;
    }
    Byte(static_cast<uint8_t>(entry.valueKind));
    switch (entry.valueKind) {
      case FolderValueKind::kInteger: U32(static_cast<uint32_t>(entry.integer)); return true;
      case FolderValueKind::kReal: {
        uint64_t bits = 0;
        std::memcpy(&bits, &entry.real, sizeof(bits));
        U64(bits);
        return true;
      }
      case FolderValueKind::kText: Text(entry.text); return true;
      case FolderValueKind::kObject: return Content(entry, depth);
      case FolderValueKind::kEmpty: return true;
    }
    return false;
  }

  std::string* m_Out;
  size_t m_EntriesLeft = kMaxFolderImageEntries;
  size_t m_FoldersLeft = kMaxFolderImageFolders;
};

// Every read checks the bytes left first, so no length read from the image
// can make it allocate or read beyond the image itself.
class ImageReader {
 public:
  explicit ImageReader(std::string_view image)
      : m_Image(image), m_EntriesLeft(std::min(image.size() / kSmallestEntryBytes, kMaxFolderImageEntries)) {}

  bool AtEnd() const { return m_Position == m_Image.size(); }
  size_t Left() const { return m_Image.size() - m_Position; }

  bool Byte(uint8_t* value) {
    if (Left() < 1) return false;
    *value = static_cast<uint8_t>(m_Image[m_Position++]);
    return true;
  }
  bool U32(uint32_t* value) {
    if (Left() < 4) return false;
    uint32_t result = 0;
    for (int i = 0; i < 4; ++i) result |= static_cast<uint32_t>(static_cast<uint8_t>(m_Image[m_Position + i])) << (8 * i);
    m_Position += 4;
    *value = result;
    return true;
  }
  bool U64(uint64_t* value) {
    uint32_t low = 0, high = 0;
    if (!U32(&low) || !U32(&high)) return false;
    *value = (static_cast<uint64_t>(high) << 32) | low;
    return true;
  }
  bool Text(std::wstring* text) {
    uint32_t count = 0;
    if (!U32(&count) || count > Left() / 4) return false;
    text->resize(count);
    for (uint32_t i = 0; i < count; ++i) {
      uint32_t c = 0;
      U32(&c);
      (*text)[i] = static_cast<wchar_t>(c);
    }
    return true;
  }
  bool Bytes(std::string* bytes) {
    uint32_t count = 0;
    if (!U32(&count) || count > Left()) return false;
    bytes->assign(m_Image.substr(m_Position, count));
    m_Position += count;
    return true;
  }
  bool Magic() {
    if (Left() < sizeof(kFolderImageMagic) || std::memcmp(m_Image.data(), kFolderImageMagic, sizeof(kFolderImageMagic)) != 0)
      return false;
    m_Position += sizeof(kFolderImageMagic);
    return true;
  }

  bool Folder(FolderNode* folder, int32_t depth) {
    uint32_t count = 0;
    if (depth > kMaxFolderDepth || !U32(&count) || count > Left() / kSmallestEntryBytes || count > m_EntriesLeft)
      return false;
    m_EntriesLeft -= count;
    folder->Reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
      FolderEntry entry;
      if (!Entry(&entry, depth) || entry.name.empty() || folder->IndexOf(entry.name) >= 0) return false;
      folder->Put(std::move(entry));
    }
    return true;
  }

 private:
  bool SubFolder(FolderEntry* entry, int32_t depth) {
    if (m_FoldersLeft == 0) return false;
    --m_FoldersLeft;
    entry->folder = std::make_shared<FolderNode>();
    return Folder(entry->folder.get(), depth + 1);
  }

  bool Entry(FolderEntry* entry, int32_t depth) {
    uint8_t kind = 0;
    if (!Byte(&kind) || !Text(&entry->name)) return false;
    entry->kind = kind;
    switch (kind) {
      case kFolderEntryFolder: return SubFolder(entry, depth);
      case kFolderEntryBinary: return Bytes(&entry->bytes);
      case kFolderEntryObject: return Text(&entry->text) && !entry->text.empty() && SubFolder(entry, depth);
      case kFolderEntryValue: break;
      default: return false;
    }
    uint8_t valueKind = 0;
    if (!Byte(&valueKind)) return false;
    entry->valueKind = static_cast<FolderValueKind>(valueKind);
    switch (entry->valueKind) {
      case FolderValueKind::kEmpty: return true;
      case FolderValueKind::kInteger: {
        uint32_t value = 0;
        if (!U32(&value)) return false;
        entry->integer = static_cast<int32_t>(value);
        return true;
      }
      case FolderValueKind::kReal: {
        uint64_t bits = 0;
        if (!U64(&bits)) return false;
        std::memcpy(&entry->real, &bits, sizeof(bits));
        return true;
      }
      case FolderValueKind::kText: return Text(&entry->text);
      case FolderValueKind::kObject: return Text(&entry->text) && !entry->text.empty() && SubFolder(entry, depth);
    }
    return false;
  }

  std::string_view m_Image;
  size_t m_Position = 0;
  // What the image may still declare. Every entry takes at least
  // kSmallestEntryBytes of its own, so all counts of a valid image add up to
  // at most its size over that; the budget makes Reserve safe.
  size_t m_EntriesLeft;
  size_t m_FoldersLeft = kMaxFolderImageFolders;
};

}  // namespace

HRESULT EncodeFolderImage(const FolderNode& folder, std::string* image) {
  image->clear();
  image->append(kFolderImageMagic, sizeof(kFolderImageMagic));
  ImageWriter writer(image);
  writer.U32(kFolderImageVersion);
  if (writer.Folder(folder, 0)) return S_OK;
  image->clear();
  return E_FAIL;
}

HRESULT DecodeFolderImage(std::string_view image, FolderNode* folder) {
  if (image.size() > kMaxFolderImageBytes) return E_FAIL;
  ImageReader reader(image);
  uint32_t version = 0;
  if (!reader.Magic() || !reader.U32(&version) || version != kFolderImageVersion) return E_FAIL;
  FolderNode decoded;
  if (!reader.Folder(&decoded, 0) || !reader.AtEnd()) return E_FAIL;
  *folder = std::move(decoded);
  return S_OK;
}
