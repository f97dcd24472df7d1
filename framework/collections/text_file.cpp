// UTF-8 conversion and whole-file input and output for the storage classes.
#include "text_file.h"

#include <sys/stat.h>

#include <cstdio>
#include <memory>

#include "archive/file_archive_io.h"
#include "archive/regular_file.h"
#include "archive/safe_file_write.h"
#include "value_objects.h"

namespace {

constexpr wchar_t kReplacementCharacter = 0xFFFD;

bool IsScalarValue(uint32_t c) { return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF); }

void AppendUtf8(uint32_t c, std::string* out) {
  if (!IsScalarValue(c)) c = kReplacementCharacter;
  if (c < 0x80) {
    out->push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out->push_back(static_cast<char>(0xC0 | (c >> 6)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else if (c < 0x10000) {
    out->push_back(static_cast<char>(0xE0 | (c >> 12)));
    out->push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {
    out->push_back(static_cast<char>(0xF0 | (c >> 18)));
    out->push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

// Length of the valid sequence at bytes[i] and its value, or 0 when it is not one.
size_t DecodeSequence(std::string_view bytes, size_t i, uint32_t* value) {
  const auto byteAt = [&](size_t k) { return static_cast<unsigned char>(bytes[k]); };
  const unsigned char lead = byteAt(i);
  size_t length = 0;
  uint32_t c = 0;
  uint32_t minimum = 0;
  if (lead < 0x80) {
    *value = lead;
    return 1;
  } else if ((lead & 0xE0) == 0xC0) {
    length = 2, c = lead & 0x1F, minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3, c = lead & 0x0F, minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4, c = lead & 0x07, minimum = 0x10000;
  } else {
    return 0;
  }
  if (i + length > bytes.size()) return 0;
  for (size_t k = 1; k < length; ++k) {
    if ((byteAt(i + k) & 0xC0) != 0x80) return 0;
    c = (c << 6) | (byteAt(i + k) & 0x3F);
  }
  if (c < minimum || !IsScalarValue(c)) return 0;
  *value = c;
  return length;
}

struct FileCloser {
  void operator()(FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<FILE, FileCloser>;

}  // namespace

std::string EncodeUtf8(std::wstring_view text) {
  std::string result;
  result.reserve(text.size());
  for (wchar_t c : text) AppendUtf8(static_cast<uint32_t>(c), &result);
  return result;
}

std::wstring DecodeUtf8(std::string_view bytes) {
  if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  std::wstring result;
  result.reserve(bytes.size());
  for (size_t i = 0; i < bytes.size();) {
    uint32_t c = 0;
    const size_t length = DecodeSequence(bytes, i, &c);
    if (length == 0) {
      result.push_back(static_cast<wchar_t>(static_cast<unsigned char>(bytes[i])));
      ++i;
    } else {
      result.push_back(static_cast<wchar_t>(c));
      i += length;
    }
  }
  return result;
}

HRESULT ReadWholeFile(const std::string& path, size_t maxBytes, std::string* bytes) {
  bytes->clear();
  if (path.empty()) return E_FAIL;
  uint64_t size = 0;
  FileHandle file(OpenRegularFile(path.c_str(), &size));
  if (!file) return E_FAIL;
  if (size > maxBytes) return E_OUTOFMEMORY;
  bytes->reserve(static_cast<size_t>(size));
  char chunk[65536];
  for (;;) {
    const size_t got = std::fread(chunk, 1, sizeof(chunk), file.get());
    if (got == 0) break;
    if (got > maxBytes - bytes->size()) return E_OUTOFMEMORY;
    bytes->append(chunk, got);
  }
  return std::ferror(file.get()) ? E_FAIL : S_OK;
}

HRESULT WriteWholeFile(const std::string& path, std::string_view bytes) {
  if (path.empty()) return E_FAIL;
  return WriteFileReplacing(path.c_str(), bytes.data(), bytes.size());
}

HRESULT ReadTextFile(const std::string& path, size_t maxBytes, std::wstring* text) {
  text->clear();
  struct stat status {};
  if (path.empty() || stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return E_FAIL;
  if (static_cast<uint64_t>(status.st_size) > maxBytes) return E_OUTOFMEMORY;
  if (status.st_size == 0) return S_OK;
  const std::wstring name = DecodeUtf8(path);
  void* data = nullptr;
  unsigned int length = 0;
  const HRESULT read = FileArchiveLoad({static_cast<int32_t>(name.size()), name.c_str()}, &data, &length,
                                       kFileLoadStrictText, 0);
  if (FAILED(read)) return read;
  std::unique_ptr<void, decltype(&FileArchiveFree)> owned(data, FileArchiveFree);
  const wchar_t* characters = static_cast<const wchar_t*>(data);
  std::wstring_view decoded(characters, length);
  decoded = decoded.substr(0, decoded.find(L'\0'));
  if (!decoded.empty() && decoded.front() == 0xFEFF) decoded.remove_prefix(1);  // a UTF-8 byte-order mark
  text->assign(decoded);
  return S_OK;
}

std::string PathOf(IString* fileName) { return EncodeUtf8(ViewOf(fileName)); }
