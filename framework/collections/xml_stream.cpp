// "XMLStream" and "XMLStreamEx".
#include "xml_stream.h"

#include <climits>
#include <cstring>
#include <cwchar>

#include "runtime/module_loader.h"
#include "string_result.h"
#include "utf8_text.h"

namespace {

bool IsValidView(tagREFString text) { return text.length >= 0 && (text.length == 0 || text.text); }

std::wstring TextOf(tagREFString text) {
  return text.length > 0 && text.text ? std::wstring(text.text, static_cast<size_t>(text.length)) : std::wstring();
}

// Characters in a byte count of wide text, cut at the first zero character.
size_t TerminatedLength(const wchar_t* text, int32_t byteCount) {
  const size_t limit = static_cast<size_t>(byteCount) / sizeof(wchar_t);
  const wchar_t* zero = text ? std::wmemchr(text, L'\0', limit) : nullptr;
  return zero ? static_cast<size_t>(zero - text) : limit;
}

// Objects being read inside one another on this thread. A document may nest
// objects without end; past kMaxObjectDepth ReadObject refuses (E_FAIL), so
// reading never runs out of stack. Folder-stream files have the same cap.
constexpr int32_t kMaxObjectDepth = 100;
thread_local int32_t tObjectDepth = 0;

class ObjectDepthScope {
 public:
  ObjectDepthScope() { ++tObjectDepth; }
  ~ObjectDepthScope() { --tObjectDepth; }
  ObjectDepthScope(const ObjectDepthScope&) = delete;
  ObjectDepthScope& operator=(const ObjectDepthScope&) = delete;
  bool TooDeep() const { return tObjectDepth > kMaxObjectDepth; }
};

}  // namespace

template <class Self>
HRESULT CXMLStreamBase<Self>::LoadContent(const void* data, int32_t byteCount, int32_t /*reserved*/) {
  if (byteCount < 0) return E_INVALIDARG;
  if (!data && byteCount > 0) return E_POINTER;
  return GuardedCall([&] {
    const wchar_t* text = static_cast<const wchar_t*>(data);
    const size_t length = TerminatedLength(text, byteCount);
    std::string utf8;
    if (AppendUtf8(utf8, text, length)) {
      m_Writer.AssignUtf8(utf8);  // the parser takes its own copy over (and changes it)
    } else {
      m_Writer.Assign(text, length);  // UTF-8 would not give this text back
    }
    m_ReadStale = false;
    m_ReadPosition = 0;
    std::shared_ptr<XMLParsedDocument> parsed;
    const HRESULT result = ParseXMLUtf8(std::move(utf8), &parsed, &m_ErrorOffset);
    if (parsed) {
      pugi::xml_node root = parsed->document;
      m_Reader.Reset(std::move(parsed), root);
    } else {
      m_Reader.Clear();
    }
    return result;
  }, [&] { m_Reader.Clear(); });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::GetParseError(int32_t* offset) {
  if (!offset) return E_POINTER;
  *offset = m_ErrorOffset;
  return m_ErrorOffset >= 0 ? S_OK : S_FALSE;
}

template <class Self>
HRESULT CXMLStreamBase<Self>::StepOver() {
  return GuardedCall([&] {
    PrepareReading();
    return m_Reader.StepOverProcessingInstructions() ? S_OK : S_FALSE;
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::GetTextBuffer(void** data, int32_t* byteCount) {
  if (!data || !byteCount) return E_POINTER;
  return GuardedCall([&] {
    const WideTextBuffer& text = m_Writer.Text();
    if (text.size() > static_cast<size_t>(INT32_MAX) / sizeof(wchar_t)) return E_FAIL;
    *data = const_cast<wchar_t*>(text.data());
    *byteCount = static_cast<int32_t>(text.size() * sizeof(wchar_t));
    return S_OK;
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::WriteRawText(const wchar_t* text, int32_t byteCount, int32_t /*reserved*/) {
  if (!text && byteCount != 0) return E_POINTER;
  return GuardedCall([&] {
    const size_t length = byteCount < 0 ? std::wcslen(text) : static_cast<size_t>(byteCount) / sizeof(wchar_t);
    m_Writer.AppendRaw(text, length);
    TextWritten();
    return S_OK;
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::BeginElement(tagREFString name, int32_t /*reserved1*/, int32_t /*reserved2*/) {
  if (!IsValidView(name)) return E_INVALIDARG;
  return GuardedCall([&] {
    m_Writer.Begin(name);
    TextWritten();
    return S_OK;
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::BeginObject(IUnknown* object, int32_t /*reserved1*/, int32_t /*reserved2*/) {
  if (!object) return E_POINTER;
  SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(object);
  if (!info) return E_NOINTERFACE;
  tagREFString className{0, nullptr};
  const HRESULT named = info->GetName(0, &className);
  if (FAILED(named)) return named;
  if (className.length <= 0 || !className.text) return E_FAIL;
  return BeginElement(className, 0, 0);
}

template <class Self>
HRESULT CXMLStreamBase<Self>::WriteElement(tagREFString name, int32_t /*reserved1*/, tagREFString text,
                                           int32_t /*reserved2*/) {
  if (!IsValidView(name) || !IsValidView(text)) return E_INVALIDARG;
  return GuardedCall([&] {
    m_Writer.TextElement(name, text);
    TextWritten();
    return S_OK;
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::EndElement() {
  return GuardedCall([&] {
    if (!m_Writer.End()) return E_FAIL;
    TextWritten();
    return S_OK;
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::NextChild(IString** name) {
  if (!name) return E_POINTER;
  *name = nullptr;
  return GuardedCall([&] {
    PrepareReading();
    pugi::xml_node child = m_Reader.Next();
    if (!child) return E_FAIL;
    const std::wstring childName = XMLChildName(child);
    return HandOutString(childName.data(), childName.size(), name);
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::OpenChild(tagREFString name, IString** text, IDataStream** child,
                                        int32_t /*reserved*/) {
  if (text) *text = nullptr;
  if (child) *child = nullptr;
  if (!IsValidView(name)) return E_INVALIDARG;
  return GuardedCall([&] {
    pugi::xml_node node;
    const HRESULT found = SelectChild(name, &node);
    if (FAILED(found)) return found;
    if (text) {
      const std::wstring childText = XMLChildText(node);
      const HRESULT made = HandOutString(childText.data(), childText.size(), text);
      if (FAILED(made)) return made;
    }
    if (child) {
      SmartPtr<Self> subStream = OpenSubStream(node);
      if (!subStream) return E_OUTOFMEMORY;
      *child = static_cast<IDataStream*>(subStream.Detach());
    }
    return S_OK;
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::ReadObject(tagREFString name, IUnknown** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (!IsValidView(name)) return E_INVALIDARG;
  return GuardedCall([&] {
    pugi::xml_node node;
    const HRESULT found = SelectChild(name, &node);
    if (FAILED(found)) return found;
    if (node.type() != pugi::node_element) return E_INVALIDARG;
    ObjectDepthScope depth;
    if (depth.TooDeep()) return E_FAIL;
    const std::wstring className = XMLChildName(node);
    IID unknown = IID_IUnknown;
    SmartPtr<IUnknown> created = SmartPtr<IUnknown>::Adopt(
        static_cast<IUnknown*>(CreateObject({static_cast<int32_t>(className.size()), className.c_str()}, &unknown)));
    if (!created) return CO_E_CREATEFAILED;
    SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(created.get());
    if (!persist) {
      *object = created.Detach();
      return S_FALSE;
    }
    SmartPtr<Self> subStream = OpenSubStream(node);
    if (!subStream) return E_OUTOFMEMORY;
    const HRESULT loaded = persist->Load(static_cast<IDataStream*>(subStream.get()), kLoadReplace);
    if (FAILED(loaded)) return loaded;
    *object = created.Detach();
    return S_OK;
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::SetOptions(int32_t mask, int32_t flags) {
  m_Options = (m_Options & ~mask) | (flags & mask);
  m_Writer.SetLean((m_Options & kXMLOptionLean) != 0);
  return S_OK;
}

template <class Self>
HRESULT CXMLStreamBase<Self>::Write(const void* data, int32_t byteCount) {
  if (byteCount < 0) return E_INVALIDARG;
  return WriteRawText(static_cast<const wchar_t*>(data), byteCount, 0);
}

template <class Self>
HRESULT CXMLStreamBase<Self>::Read(void* data, int32_t byteCount, int32_t* bytesRead) {
  if (!bytesRead) return E_POINTER;
  *bytesRead = 0;
  if (byteCount < 0) return E_INVALIDARG;
  if (!data && byteCount > 0) return E_POINTER;
  return GuardedCall([&] {
    const WideTextBuffer& text = m_Writer.Text();
    const size_t size = text.size() * sizeof(wchar_t);
    const size_t position = std::min(m_ReadPosition, size);
    const size_t count = std::min(static_cast<size_t>(byteCount), size - position);
    if (count > 0) std::memcpy(data, reinterpret_cast<const char*>(text.data()) + position, count);
    m_ReadPosition = position + count;
    *bytesRead = static_cast<int32_t>(count);
    return S_OK;
  });
}

template <class Self>
HRESULT CXMLStreamBase<Self>::GetBuffer(void** data, int32_t* byteCount) {
  return GetTextBuffer(data, byteCount);
}

template <class Self>
HRESULT CXMLStreamBase<Self>::Reset() {
  return LoadContent(nullptr, 0, 0);
}

template <class Self>
void CXMLStreamBase<Self>::PrepareReading() {
  if (!m_ReadStale) return;
  m_ReadStale = false;
  std::shared_ptr<XMLParsedDocument> parsed;
  const WideTextBuffer& text = m_Writer.Text();
  ParseXMLText(text.data(), text.size(), &parsed, &m_ErrorOffset);
  if (!parsed) {
    m_Reader.Clear();
    return;
  }
  pugi::xml_node root = parsed->document;
  m_Reader.Reset(std::move(parsed), root);
}

template <class Self>
HRESULT CXMLStreamBase<Self>::SelectChild(tagREFString name, pugi::xml_node* child) {
  PrepareReading();
  const std::wstring wanted = TextOf(name);
  *child = m_Reader.Select(wanted);
  if (*child) return S_OK;
  return wanted.empty() ? E_FAIL : E_ITEMNOTFOUND;
}

template <class Self>
SmartPtr<Self> CXMLStreamBase<Self>::OpenSubStream(pugi::xml_node node) {
  SmartPtr<Self> subStream = NewObject<Self>();
  if (subStream) static_cast<CXMLStreamBase*>(subStream.get())->m_Reader.Reset(m_Reader.Document(), node);
  return subStream;
}

template class CXMLStreamBase<CXMLStream>;
template class CXMLStreamBase<CXMLStreamEx>;
