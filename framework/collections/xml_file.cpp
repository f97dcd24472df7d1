// "XMLFile": whole-file XML loading.
#include "xml_file.h"

#include <climits>

#include "archive/file_archive_io.h"
#include "xml_stream.h"

HRESULT CXMLFile::SetOptions(int32_t mask, int32_t flags) {
  m_Options = (m_Options & ~mask) | (flags & mask);
  return S_OK;
}

HRESULT CXMLFile::SetObject(IUnknown* target) {
  m_Target = SmartPtr<IUnknown>(target);
  return S_OK;
}

HRESULT CXMLFile::get_Filename(IString** name) {
  if (!name) return E_POINTER;
  m_Filename.CopyTo(name);
  return m_Filename ? S_OK : E_FAIL;
}

HRESULT CXMLFile::put_Filename(IString* name) {
  m_Filename = SmartPtr<IString>(name);
  return S_OK;
}

HRESULT CXMLFile::Load() {
  if (!m_Filename) return E_FAIL;
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(m_Target.get());
  if (!persist) return E_NOINTERFACE;
  tagREFString name{0, nullptr};
  if (FAILED(m_Filename->GetBuffer(&name.text, &name.length))) return E_FAIL;

  return GuardedCall([&] {
    void* text = nullptr;
    unsigned int length = 0;
    const HRESULT read = FileArchiveLoad(name, &text, &length, kFileLoadText, 0);
    if (FAILED(read)) return read;
    SmartPtr<CXMLStream> stream = NewObject<CXMLStream>();
    HRESULT result = E_OUTOFMEMORY;
    if (stream && length <= static_cast<unsigned int>(INT32_MAX) / sizeof(wchar_t))
      result = stream->LoadContent(text, static_cast<int32_t>(length * sizeof(wchar_t)), 0);
    FileArchiveFree(text);
    if (FAILED(result)) return result;

    stream->StepOver();
    SmartPtr<IDataStream> content;
    result = stream->OpenChild({0, nullptr}, nullptr, content.Receive(), 0);
    if (FAILED(result)) return result;
    return persist->Load(content.get(), (m_Options & kXMLFileReplace) ? kLoadReplace : 0);
  });
}
