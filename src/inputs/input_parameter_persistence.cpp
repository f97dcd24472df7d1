// "InputParameter": saving and loading a binding in XML and folder streams.
//
// XML: the source (when it persists itself) as a nested element named by its
// class, then "Name" (always), then "Index" (when not 0); no IID. Folder:
// "Name" (when not empty), "Index" as 4 bytes (when not 0), "IID" as 16 bytes,
// "Source" as an object entry (except for running-object-table and workspace
// sources, which are process-wide and bound again by their owner).
#include "inputs/input_parameter.h"
#include "inputs/resolution_guard.h"
#include "parameters/folded_name.h"
#include "strings/conversions.h"

namespace {

constexpr tagREFString kNameEntry{4, L"Name"};
constexpr tagREFString kIndexEntry{5, L"Index"};
constexpr tagREFString kIIDEntry{3, L"IID"};
constexpr tagREFString kSourceEntry{6, L"Source"};

// Sources of these wanted interfaces are never written.
bool IsProcessWideSource(const IID& iid) { return iid == IID_IRunningObjectTableEx || iid == IID_IWorkspace; }

}  // namespace

HRESULT CInputParameter::Save(IDataStream* stream, int32_t flags) {
  if (SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream)) return SaveXML(stream, xml.get(), flags);
  if (SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream)) return SaveFolder(folder.get(), flags);
  return E_FAIL;
}

// Sources nested deeper than the resolution depth (a hostile file) are not read.
HRESULT CInputParameter::Load(IDataStream* stream, int32_t flags) {
  ResolutionGuard guard(this);
  if (SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream)) return LoadXML(xml.get(), guard.Entered());
  if (SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream))
    return LoadFolder(folder.get(), flags, guard.Entered());
  return E_FAIL;
}

HRESULT CInputParameter::SaveXML(IDataStream* stream, IXMLStream* xml, int32_t flags) {
  // A source that leads back to this binding (a cycle) is not written again.
  ResolutionGuard guard(this);
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(m_Source.get());
  if (persist && guard.Entered() && SUCCEEDED(xml->BeginObject(m_Source.get(), 0, 0))) {
    persist->Save(stream, flags);
    xml->EndElement();
  }
  xml->WriteElement(kNameEntry, 0, NameTextOf(m_Name.get()), 0);
  if (m_SourceIndex != 0) {
    SmartPtr<IString> index = SmartPtr<IString>::Adopt(ISCreate(m_SourceIndex));
    xml->WriteElement(kIndexEntry, 0, NameTextOf(index.get()), 0);
  }
  return S_OK;
}

HRESULT CInputParameter::SaveFolder(IFolderStream* folder, int32_t flags) {
  if (NameTextOf(m_Name.get()).length > 0) folder->WriteString(kNameEntry, m_Name.get());
  if (m_SourceIndex != 0) folder->WriteBinary(kIndexEntry, &m_SourceIndex, sizeof(m_SourceIndex));
  folder->WriteBinary(kIIDEntry, m_IID.bytes, sizeof(m_IID.bytes));
  ResolutionGuard guard(this);
  if (m_Source && !IsProcessWideSource(m_IID) && guard.Entered())
    folder->WriteObject(kSourceEntry, m_Source.get(), flags);
  return S_OK;
}

// Entry names are compared without regard to case; any entry other than
// Name, IID and Index is the nested source element.
HRESULT CInputParameter::LoadXML(IXMLStream* stream, bool readSource) {
  SmartPtr<IString> entry;
  while (stream->NextChild(entry.Receive()) >= 0 && entry) {
    const tagREFString name = NameTextOf(entry.get());
    if (MatchesWholeName(name, kIIDEntry)) continue;  // read, not applied: the IID stays as it was
    const bool isName = MatchesWholeName(name, kNameEntry);
    if (isName || MatchesWholeName(name, kIndexEntry)) {
      SmartPtr<IString> text;
      stream->OpenChild(name, text.Receive(), nullptr, 1);
      if (isName) {
        m_Name = text ? text : SmartPtr<IString>::Adopt(ISCreate(L""));
      } else {
        m_SourceIndex = _IS2Integer(CREFString(NameTextOf(text.get())), 10);
      }
      continue;
    }
    SmartPtr<IUnknown> source;
    if (readSource && SUCCEEDED(stream->ReadObject(name, source.Receive())) && source) put_Source(source.get());
  }
  return S_OK;
}

HRESULT CInputParameter::LoadFolder(IFolderStream* folder, int32_t flags, bool readSource) {
  SmartPtr<IString> name;
  if (FAILED(folder->ReadString(kNameEntry, name.Receive())) || !name) name = SmartPtr<IString>::Adopt(ISCreate(L""));
  m_Name = name;
  int32_t index = 0;
  m_SourceIndex = 0;
  if (folder->ReadBinary(kIndexEntry, &index, sizeof(index), nullptr) == S_OK) m_SourceIndex = index;
  SmartPtr<IUnknown> source;
  if (readSource) folder->ReadObject(kSourceEntry, flags, nullptr, source.ReceiveVoid());
  IID iid{};
  if (folder->ReadBinary(kIIDEntry, iid.bytes, sizeof(iid.bytes), nullptr) == S_OK) m_IID = iid;
  return put_Source(source.get());
}
