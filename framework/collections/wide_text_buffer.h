// WideTextBuffer: a wide text that grows at its end, kept in one block that
// realloc enlarges in place where it can; always terminated.
//
// A large document's text runs to tens of megabytes. std::wstring grows by
// allocating twice its size and copying, so every page of the text is copied
// and touched fresh several times over; realloc enlarges a large block by
// remapping its pages, so each page is touched once. Growth that cannot be
// met throws std::bad_alloc before anything changes.
#pragma once

#include <algorithm>
#include <cstddef>

class WideTextBuffer {
 public:
  WideTextBuffer() = default;
  ~WideTextBuffer();
  WideTextBuffer(const WideTextBuffer&) = delete;
  WideTextBuffer& operator=(const WideTextBuffer&) = delete;

  // The text, terminated by a zero character.
  const wchar_t* data() const { return m_Data ? m_Data : L""; }
  size_t size() const { return m_Size; }
  bool empty() const { return m_Size == 0; }
  wchar_t back() const { return m_Data[m_Size - 1]; }

  void clear();
  // Keeps the first `length` characters (no more than there are).
  void Truncate(size_t length);
  void Append(const wchar_t* text, size_t length) { std::copy_n(text, length, Extend(length)); }
  void Append(wchar_t c) { *Extend(1) = c; }
  void AppendRepeated(size_t count, wchar_t c) { std::fill_n(Extend(count), count, c); }
  // Appends `length` characters of this text itself, from `start`.
  void AppendOwn(size_t start, size_t length);
  // Adds `count` characters at the end, for the caller to write, and returns where they begin.
  wchar_t* Extend(size_t count);

 private:

  wchar_t* m_Data = nullptr;
  size_t m_Size = 0;
  size_t m_Capacity = 0;  // characters, the terminating zero included
};
