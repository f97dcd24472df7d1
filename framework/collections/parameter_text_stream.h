// The common part of "CSVStream" and "INIStream": a held parameter set, a pending text and the file.
#pragma once

#include <mutex>
#include <string>

#include "runtime/object.h"
#include "text_file.h"

// T supplies WriteSet(IParameters*, flags), which fills m_Text from the set,
// and ReadSet(text, IParameters*), which puts a file's text into the set.
template <class T, class Interface>
class CParameterTextStream : public CObjectImpl<T, Interface> {
 public:
  // IDataStream: Write appends text (its count is twice the character count,
  // as for WriteText); GetBuffer shows the pending text with its true byte size.
  HRESULT Write(const void* data, int32_t byteCount) override {
    return WriteText(static_cast<const wchar_t*>(data), byteCount);
  }
  HRESULT Read(void* /*data*/, int32_t /*byteCount*/, int32_t* bytesRead) override {
    if (bytesRead) *bytesRead = 0;
    return E_NOTIMPL;
  }
  HRESULT GetBuffer(void** data, int32_t* byteCount) override {
    if (!data || !byteCount) return E_POINTER;
    std::lock_guard<std::recursive_mutex> hold(m_Mutex);
    *data = m_Text.data();
    *byteCount = static_cast<int32_t>(m_Text.size() * sizeof(wchar_t));
    return S_OK;
  }
  HRESULT Reset() override {
    std::lock_guard<std::recursive_mutex> hold(m_Mutex);
    m_Text.clear();
    return S_OK;
  }

  HRESULT put_Parameters(IParameters* parameters) override {
    std::lock_guard<std::recursive_mutex> hold(m_Mutex);
    m_Parameters = SmartPtr<IParameters>(parameters);
    return S_OK;
  }
  HRESULT get_Parameters(IParameters** parameters) override {
    if (!parameters) return E_POINTER;
    std::lock_guard<std::recursive_mutex> hold(m_Mutex);
    *parameters = nullptr;
    return m_Parameters ? m_Parameters.CopyTo(parameters) : E_FAIL;
  }

  HRESULT WriteText(const wchar_t* text, int32_t doubledLength) override {
    if (doubledLength < 0 || (!text && doubledLength > 1)) return E_INVALIDARG;
    return GuardedCall([&] {
      std::lock_guard<std::recursive_mutex> hold(m_Mutex);
      m_Text.append(text ? text : L"", static_cast<size_t>(doubledLength / 2));
      return S_OK;
    });
  }
  HRESULT GetText(const wchar_t** text, int32_t* length) override {
    if (!text || !length) return E_POINTER;
    std::lock_guard<std::recursive_mutex> hold(m_Mutex);
    *text = m_Text.c_str();
    *length = static_cast<int32_t>(m_Text.size());
    return S_OK;
  }

  HRESULT Save(IString* fileName, int32_t flags) override {
    return GuardedCall([&] {
      std::lock_guard<std::recursive_mutex> hold(m_Mutex);
      if (m_Parameters) {
        m_Text.clear();
        if (HRESULT result = static_cast<T*>(this)->WriteSet(m_Parameters.get(), flags); FAILED(result)) return result;
      }
      std::string bytes = EncodeUtf8(m_Text);
      if (bytes.empty() || bytes.back() != '\n') bytes.push_back('\n');
      return WriteWholeFile(PathOf(fileName), bytes);
    });
  }

  HRESULT Load(IString* fileName, int32_t flags) override {
    return GuardedCall([&] {
      std::lock_guard<std::recursive_mutex> hold(m_Mutex);
      if (!m_Parameters) return E_FAIL;
      std::wstring text;
      if (HRESULT result = ReadTextFile(PathOf(fileName), kMaxTextFileBytes, &text); FAILED(result)) return E_FAIL;
      IParameters* set = m_Parameters.get();
      set->CollectionLock();
      if (flags & kLoadReplace) set->RemoveAll();
      const HRESULT result = static_cast<T*>(this)->ReadSet(text, set);
      set->CollectionUnlock();
      return result;
    });
  }

 protected:
  // Largest file Load reads.
  static constexpr size_t kMaxTextFileBytes = size_t{64} << 20;

  std::recursive_mutex m_Mutex;
  std::wstring m_Text;
  SmartPtr<IParameters> m_Parameters;
};

// Update-or-add of a parameter whose value is the given text.
HRESULT SetParameterText(IParameters* set, std::wstring_view name, std::wstring_view value);
