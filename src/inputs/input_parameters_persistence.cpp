// "InputParameters": the collection in a folder stream, one object entry per input.
#include "inputs/input_parameters.h"

#include "parameters/folded_name.h"

namespace {

// The type name of the entries that hold input parameters (matched case-sensitively).
constexpr wchar_t kEntryType[] = L"InputParameter";

bool IsInputParameterEntry(ISuperCollection* entries, int32_t index) {
  SmartPtr<IUnknown> attached;
  if (FAILED(entries->get_ItemAttached(index, attached.Receive()))) return false;
  const tagREFString type = NameTextOf(QueryAs<IString>(attached.get()).get());
  constexpr int32_t length = static_cast<int32_t>(sizeof(kEntryType) / sizeof(wchar_t) - 1);
  return type.length == length && wmemcmp(type.text, kEntryType, length) == 0;
}

}  // namespace

// Other stream kinds are accepted and nothing is written. Two inputs of the
// same name share one entry (the later one is kept), as folder names are unique.
HRESULT CInputParameters::Save(IDataStream* stream, int32_t flags) {
  SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream);
  if (!folder) return S_OK;
  for (int32_t i = 0;; ++i) {
    SmartPtr<IUnknown> parameter;
    if (FAILED(get_Item(i, parameter.Receive()))) return S_OK;
    SmartPtr<IString> name;
    get_ItemName(i, name.Receive());
    folder->WriteObject(NameTextOf(name.get()), parameter.get(), flags);  // an unnamed input is refused
  }
}

HRESULT CInputParameters::Load(IDataStream* stream, int32_t flags) {
  SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream);
  SmartPtr<ISuperCollection> entries = QueryAs<ISuperCollection>(stream);
  if (!folder || !entries) return E_NOTIMPL;
  CollectionClear();
  int32_t count = 0;
  entries->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    if (!IsInputParameterEntry(entries.get(), i)) continue;
    SmartPtr<IString> key;
    if (FAILED(entries->get_ItemName(i, key.Receive()))) continue;
    IID iid = IID_IInputParameter;
    SmartPtr<IInputParameter> parameter;
    if (FAILED(folder->ReadObject(NameTextOf(key.get()), flags, &iid, parameter.ReceiveVoid())) || !parameter)
      continue;
    Add(key.get(), parameter.get());
  }
  return S_OK;
}
