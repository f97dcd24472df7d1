// FileArchiveLoad and FileArchiveSave: whole files as bytes or wide text.
#include "archive/file_archive_io.h"

#include "archive/safe_file_write.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "archive/regular_file.h"

namespace {

constexpr int kPathLimit = kFileArchivePathSize - 2;  // last index a name byte may reach, plus one
constexpr unsigned kTwoByteLimit = 2047;              // below: two bytes (0x7FF itself takes three)
constexpr unsigned kThreeByteLimit = 65535;           // below: three bytes (0xFFFF itself takes four)
constexpr size_t kDetectBytes = 8;                    // bytes looked at to tell the encoding
constexpr size_t kSlack = 10;                         // spare elements after every buffer
constexpr size_t kWriteChunkBytes = 64 * 1024;        // text is encoded and written this much at a time

// Closes the file when the reader leaves, whichever way.
struct FileCloser {
  void operator()(FILE* file) const { std::fclose(file); }
};

bool HasByteOrderPair(const unsigned char* bytes, size_t count) {
  for (size_t i = 0; i + 1 < count; ++i) {
    if ((bytes[i] == 0xFE && bytes[i + 1] == 0xFF) || (bytes[i] == 0xFF && bytes[i + 1] == 0xFE)) return true;
  }
  return false;
}

bool OddBytesAreZero(const unsigned char* bytes, size_t count) {
  if (count < 2) return false;
  for (size_t i = 1; i < count; i += 2) {
    if (bytes[i] != 0) return false;
  }
  return true;
}

bool IsUtf16(const unsigned char* bytes, size_t count) {
  const size_t head = count < kDetectBytes ? count : kDetectBytes;
  return HasByteOrderPair(bytes, head) || OddBytesAreZero(bytes, head);
}

bool IsContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Strict UTF-8. A four-byte sequence needs five bytes left: one more than it
// uses. That is intended (files have always been read this way), so a file
// ending in a four-byte character reads as 8-bit text.
bool IsStrictUtf8(const unsigned char* bytes, size_t count) {
  size_t i = 0;
  while (i < count) {
    const unsigned char lead = bytes[i];
    const size_t left = count - i;
    if (lead < 0x80) {
      i += 1;
    } else if ((lead & 0xE0) == 0xC0) {
      if (left < 2 || !IsContinuation(bytes[i + 1])) return false;
      const unsigned value = (lead & 0x1Fu) << 6 | (bytes[i + 1] & 0x3Fu);
      if (value < 0x80) return false;
      i += 2;
    } else if ((lead & 0xF0) == 0xE0) {
      if (left < 3 || !IsContinuation(bytes[i + 1]) || !IsContinuation(bytes[i + 2])) return false;
      const unsigned value = (lead & 0x0Fu) << 12 | (bytes[i + 1] & 0x3Fu) << 6 | (bytes[i + 2] & 0x3Fu);
      if (value < 0x800 || (value >= 0xD800 && value <= 0xDFFF)) return false;
      i += 3;
    } else if ((lead & 0xF8) == 0xF0) {
      if (left < 5 || !IsContinuation(bytes[i + 1]) || !IsContinuation(bytes[i + 2]) ||
          !IsContinuation(bytes[i + 3]))
        return false;
      const unsigned value = (lead & 0x07u) << 18 | (bytes[i + 1] & 0x3Fu) << 12 | (bytes[i + 2] & 0x3Fu) << 6 |
                             (bytes[i + 3] & 0x3Fu);
      if (value < 0x10000 || value > 0x10FFFF) return false;
      i += 4;
    } else {
      return false;
    }
  }
  return true;
}

wchar_t* AllocateWide(size_t count) { return static_cast<wchar_t*>(std::calloc(count, sizeof(wchar_t))); }

// count / 2 characters: the first unit is dropped as a byte-order mark (even
// when it is none: intended, files without a mark lose their first
// character), a zero unit ends the text, and the length stays count / 2.
HRESULT DecodeUtf16(const unsigned char* bytes, size_t count, void** data, unsigned int* length) {
  const size_t units = count / 2;
  wchar_t* text = AllocateWide(units + kSlack);
  if (!text) return E_OUTOFMEMORY;
  for (size_t unit = 1; unit < units; ++unit) {
    const wchar_t c = static_cast<wchar_t>(bytes[2 * unit] | bytes[2 * unit + 1] << 8);
    if (c == 0) break;
    text[unit - 1] = c;
  }
  *data = text;
  *length = static_cast<unsigned int>(units);
  return S_OK;
}

HRESULT DecodeEightBit(const unsigned char* bytes, size_t count, void** data, unsigned int* length) {
  wchar_t* text = AllocateWide(count + kSlack);
  if (!text) return E_OUTOFMEMORY;
  for (size_t i = 0; i < count; ++i) text[i] = static_cast<wchar_t>(bytes[i]);
  *data = text;
  *length = static_cast<unsigned int>(count);
  return S_OK;
}

// Lenient UTF-8: a lead byte with its two top bits set takes as many following
// bytes as its further top bits ask for (while data remains), six bits each;
// any other byte at or above 128 gives its low six bits. A zero ends the text.
HRESULT DecodeUtf8(const unsigned char* bytes, size_t count, void** data, unsigned int* length) {
  wchar_t* text = AllocateWide(count + kSlack);
  if (!text) return E_OUTOFMEMORY;
  size_t out = 0;
  size_t i = 0;
  while (i < count && bytes[i] != 0) {
    const unsigned char lead = bytes[i++];
    unsigned value = lead;
    if ((lead & 0xC0) == 0xC0) {
      unsigned marker = 0x40;
      unsigned payload = 0x3F;
      while ((lead & marker) && i < count) {
        value = (value << 6) | (bytes[i++] & 0x3Fu);
        marker >>= 1;
        payload = (payload << 5) | 0x1F;
      }
      value &= payload;
    } else if (lead >= 0x80) {
      value = lead & 0x3Fu;
    }
    text[out++] = static_cast<wchar_t>(value);
  }
  *data = text;
  *length = static_cast<unsigned int>(out);
  return S_FALSE;
}

HRESULT DecodeText(const unsigned char* bytes, size_t count, int16_t textMode, void** data, unsigned int* length) {
  if (IsUtf16(bytes, count)) return DecodeUtf16(bytes, count, data, length);
  if (textMode >= kFileLoadStrictText && !IsStrictUtf8(bytes, count)) return DecodeEightBit(bytes, count, data, length);
  return DecodeUtf8(bytes, count, data, length);
}

// Hands `write` the wide text at `text` (`characters` of them) as 16-bit
// little-endian units, each character cut to its low 16 bits, after a
// byte-order mark if asked; a chunk at a time, so that a large text needs no
// second buffer of its whole size. False as soon as `write` fails.
template <class Write>
bool WriteUtf16Units(const unsigned char* text, size_t characters, bool byteOrderMark, const Write& write) {
  unsigned char chunk[kWriteChunkBytes];
  size_t filled = 0;
  if (byteOrderMark) {
    chunk[filled++] = 0xFF;
    chunk[filled++] = 0xFE;
  }
  for (size_t i = 0; i < characters; ++i) {
    wchar_t c;
    std::memcpy(&c, text + i * sizeof(wchar_t), sizeof(c));  // the text need not be aligned
    chunk[filled++] = static_cast<unsigned char>(c & 0xFF);
    chunk[filled++] = static_cast<unsigned char>(c >> 8 & 0xFF);
    if (filled == kWriteChunkBytes) {
      if (!write(chunk, filled)) return false;
      filled = 0;
    }
  }
  return filled == 0 || write(chunk, filled);
}

size_t FileSize(FILE* file) {
  if (std::fseek(file, 0, SEEK_END) != 0) return 0;
  const long size = std::ftell(file);
  std::rewind(file);
  if (size <= 0 || size > INT32_MAX - static_cast<long>(kSlack)) return 0;
  return static_cast<size_t>(size);
}

}  // namespace

void FileArchivePath(tagREFString name, char (&path)[kFileArchivePathSize]) {
  std::memset(path, 0, sizeof(path));
  if (name.length <= 0 || !name.text) return;
  int at = 0;
  for (int32_t i = 0; i < name.length; ++i) {
    const unsigned c = static_cast<unsigned>(name.text[i]);
    const int size = c < 0x80 ? 1 : c < kTwoByteLimit ? 2 : c < kThreeByteLimit ? 3 : 4;
    if (at + size > kPathLimit) break;
    unsigned char* out = reinterpret_cast<unsigned char*>(path) + at;
    switch (size) {
      case 1:
        out[0] = static_cast<unsigned char>(c);
        break;
      case 2:
        out[0] = static_cast<unsigned char>(0xC0 | c >> 6);
        out[1] = static_cast<unsigned char>(0x80 | (c & 0x3F));
        break;
      case 3:
        out[0] = static_cast<unsigned char>(0xE0 | c >> 12);
        out[1] = static_cast<unsigned char>(0x80 | (c >> 6 & 0x3F));
        out[2] = static_cast<unsigned char>(0x80 | (c & 0x3F));
        break;
      default:
        out[0] = static_cast<unsigned char>(0xF0 | c >> 18);
        out[1] = static_cast<unsigned char>(0x80 | (c >> 12 & 0x3F));
        out[2] = static_cast<unsigned char>(0x80 | (c >> 6 & 0x3F));
        out[3] = static_cast<unsigned char>(0x80 | (c & 0x3F));
        break;
    }
    at += size;
  }
}

HRESULT FileArchiveLoad(tagREFString name, void** data, unsigned int* length, int16_t textMode, int32_t maxBytes) {
  if (!data || !length) return E_POINTER;
  *data = nullptr;
  *length = 0;
  char path[kFileArchivePathSize];
  FileArchivePath(name, path);

  // A directory, FIFO or device counts as a file that cannot be opened.
  std::unique_ptr<FILE, FileCloser> file(OpenRegularFile(path));
  if (!file) {
    std::fprintf(stderr, "file open err:\n%s\n", path);
    return E_FAIL;
  }
  const size_t size = FileSize(file.get());
  if (size == 0) return E_FAIL;
  unsigned char* bytes = static_cast<unsigned char*>(std::malloc(size + kSlack));
  if (!bytes) return E_OUTOFMEMORY;
  const size_t wanted = maxBytes > 0 && static_cast<size_t>(maxBytes) < size ? static_cast<size_t>(maxBytes) : size;
  const size_t count = std::fread(bytes, 1, wanted, file.get());
  file.reset();
  if (count == 0 || count > wanted) {
    std::free(bytes);
    return E_FAIL;
  }
  bytes[count] = 0;

  if (textMode == kFileLoadBytes) {
    *data = bytes;
    *length = static_cast<unsigned int>(count);
    return S_OK;
  }
  const HRESULT result = DecodeText(bytes, count, textMode, data, length);
  std::free(bytes);
  return result;
}

HRESULT FileArchiveSave(tagREFString name, const unsigned char* data, unsigned int length, int16_t asText,
                        int16_t append) {
  if (!data && length > 0) return E_POINTER;
  char path[kFileArchivePathSize];
  FileArchivePath(name, path);
  // Wide text of `length` bytes becomes one 16-bit unit per character, with a mark unless appending.
  const size_t characters = length / sizeof(wchar_t);
  const bool byteOrderMark = asText && !append;
  const size_t size = asText ? (byteOrderMark ? 2 : 0) + 2 * characters : length;

  if (!append) {
    if (size == 0) return E_FAIL;
    // Replacing goes through a temporary file, so a failed save never damages the old file.
    ReplacingFileWriter file(path);
    const auto write = [&file](const void* bytes, size_t count) { return file.Write(bytes, count); };
    if (asText) {
      WriteUtf16Units(data, characters, byteOrderMark, write);
    } else {
      write(data, size);
    }
    return file.Commit();
  }
  std::unique_ptr<FILE, FileCloser> file(std::fopen(path, "ab"));
  if (!file) return E_FAIL;
  const auto write = [&file](const void* bytes, size_t count) {
    return std::fwrite(bytes, 1, count, file.get()) == count;
  };
  const bool written =
      size > 0 && (asText ? WriteUtf16Units(data, characters, byteOrderMark, write) : write(data, size));
  if (std::fclose(file.release()) != 0) return E_FAIL;
  return written ? S_OK : E_FAIL;
}

void FileArchiveFree(void* data) { std::free(data); }
