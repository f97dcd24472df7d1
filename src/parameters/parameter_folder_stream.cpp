// A parameter set as one CSV line and in the folder-stream layout, with the
// folder reader. File-name values are stored in mapped form.
#include <utility>
#include <vector>

#include "archive/file_names.h"
#include "parameters/parameter_flags.h"
#include "parameters/parameter_persistence.h"
#include "parameters/persist_text.h"

namespace {

constexpr tagREFString kValueEntry{5, L"Value"};
constexpr tagREFString kUnknownEntry{7, L"Unknown"};
constexpr tagREFString kFlagsEntry{5, L"Flags"};
constexpr tagREFString kDescriptorEntry{10, L"Descriptor"};
constexpr tagREFString kComma{1, L","};
constexpr tagREFString kEquals{1, L"="};

bool IsFileName(int32_t flags) { return (flags & (kParamFlagFileName | kParamFlagRelativeFileName)) != 0; }

void WriteCSVText(ICSVStream* csv, tagREFString text) {
  if (text.length > 0) csv->WriteText(text.text, 2 * text.length);  // the framework's doubled length
}

// A text variant holding the converted file name, or the value itself when the
// text is not a name that `convert` can change.
template <class Convert>
SmartPtr<IVariant> ConvertedFileName(IVariant* value, Convert convert) {
  SmartPtr<IString> text = ValueText(value);
  SmartPtr<IString> converted;
  if (!text || FAILED(convert(text.get(), converted.Receive())) || !converted) return SmartPtr<IVariant>(value);
  return SmartPtr<IVariant>::Adopt(IVCreate(converted.get()));
}

void WriteParameter(IParameters* set, IFolderStream* folder, int32_t index, int32_t saveFlags) {
  SmartPtr<IString> name;
  SmartPtr<IVariant> value;
  SmartPtr<IUnknown> descriptor;
  int32_t flags = 0;
  set->get_ItemName(index, name.Receive());
  set->get_ItemVariant(index, value.Receive());
  set->get_ItemDescriptor(index, descriptor.Receive());
  set->get_ItemFlags(index, &flags);
  if ((flags & kParamFlagNotStored) && !(saveFlags & kSaveLean)) return;
  const ItemNameText entry(name.get(), index);
  const bool valueIsObject = value && value->IsObject();
  if (flags == 0 && !descriptor && !valueIsObject) {
    if (value) folder->WriteValue(entry.view(), value.get());
    return;
  }
  SmartPtr<IFolderStream> sub;
  if (FAILED(folder->CreateFolder(entry.view(), sub.Receive())) || !sub) return;
  if (!valueIsObject) {
    if (value && IsFileName(flags))
      value = ConvertedFileName(value.get(), [](IString* n, IString** out) { return FILENAMEMap(n, out, 0); });
    if (value) sub->WriteValue(kValueEntry, value.get());
  } else if (!QueryAs<IInputParameter>(descriptor.get())) {
    SmartPtr<IUnknown> object;
    value->GetObject(object.Receive());
    sub->WriteObject(kUnknownEntry, object.get(), saveFlags);
  }
  if (flags) sub->WriteBinary(kFlagsEntry, &flags, sizeof(flags));
  if (descriptor) sub->WriteObject(kDescriptorEntry, descriptor.get(), saveFlags);
}

struct LoadedParameter {
  SmartPtr<IString> name;
  SmartPtr<IUnknown> value;
  SmartPtr<IUnknown> descriptor;
  int32_t flags = 0;
  bool fromFolder = false;  // a sub-folder states the flags in full
};

bool EntryExists(IFolderStream* folder, tagREFString name) {
  int32_t index = 0, kind = 0;
  return SUCCEEDED(folder->Find(name, &index, &kind));
}

// One sub-folder of the layout: "Value" or "Unknown", "Flags", "Descriptor".
void ReadParameterFolder(IFolderStream* sub, LoadedParameter* item) {
  sub->ReadBinary(kFlagsEntry, &item->flags, sizeof(item->flags), nullptr);
  if (EntryExists(sub, kValueEntry)) {
    SmartPtr<IVariant> value;
    sub->ReadValue(kValueEntry, value.Receive());
    if (value && IsFileName(item->flags) && value->IsString())
      value = ConvertedFileName(value.get(), FILENAMEUnmap);
    item->value = SmartPtr<IUnknown>(value.get());
  } else if (EntryExists(sub, kUnknownEntry)) {
    sub->ReadObject(kUnknownEntry, kLoadReplace, nullptr, item->value.ReceiveVoid());
  }
  if (EntryExists(sub, kDescriptorEntry))
    sub->ReadObject(kDescriptorEntry, kLoadReplace, nullptr, item->descriptor.ReceiveVoid());
}

}  // namespace

HRESULT ParamsSaveCSV(IParameters* set, IDataStream* stream, int32_t flags) {
  SmartPtr<ICSVStream> csv = QueryAs<ICSVStream>(stream);
  if (!set || !csv) return S_OK;
  int32_t count = 0;
  set->get_Count(&count);
  bool first = true;
  for (int32_t i = 0; i < count; ++i) {
    int32_t itemFlags = 0;
    set->get_ItemFlags(i, &itemFlags);
    if ((flags & kSaveLean) && (itemFlags & kParamFlagLeanHidden)) continue;
    if (!first) WriteCSVText(csv.get(), kComma);
    first = false;
    if (flags & kSaveNamedValues) {
      SmartPtr<IString> name;
      set->get_ItemName(i, name.Receive());
      WriteCSVText(csv.get(), TextView(name.get()));
      WriteCSVText(csv.get(), kEquals);
    }
    SmartPtr<IVariant> value;
    set->get_ItemVariant(i, value.Receive());
    // Nothing is quoted: a value holding "," or "=" is written as it stands (intended).
    WriteCSVText(csv.get(), TextView(ValueText(value.get()).get()));
  }
  return S_OK;
}

HRESULT ParamsSaveFolderStream(IParameters* set, IDataStream* stream, int32_t flags) {
  SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream);
  if (!set || !folder) return S_OK;
  int32_t count = 0;
  set->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) WriteParameter(set, folder.get(), i, flags);
  return S_OK;
}

HRESULT ParamsLoadFolderStream(IParameters* set, IDataStream* stream, int32_t flags) {
  SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream);
  SmartPtr<ISuperCollection> entries = QueryAs<ISuperCollection>(stream);
  if (!set || !folder || !entries) return S_OK;
  int32_t count = 0;
  entries->get_Count(&count);
  std::vector<LoadedParameter> loaded;
  loaded.reserve(static_cast<size_t>(count > 0 ? count : 0));
  for (int32_t i = 0; i < count; ++i) {
    LoadedParameter item;
    int32_t kind = 0;
    if (FAILED(entries->get_ItemName(i, item.name.Receive())) || FAILED(entries->get_ItemFlags(i, &kind))) continue;
    const CREFString name = TextView(item.name.get());
    if (kind == kFolderEntryValue) {
      SmartPtr<IVariant> value;
      folder->ReadValue(name, value.Receive());
      item.value = SmartPtr<IUnknown>(value.get());
    } else if (kind == kFolderEntryFolder) {
      SmartPtr<IFolderStream> sub;
      if (FAILED(folder->OpenFolder(name, sub.Receive())) || !sub) continue;
      ReadParameterFolder(sub.get(), &item);
      item.fromFolder = true;
    } else {
      continue;
    }
    loaded.push_back(std::move(item));
  }

  set->CollectionLock();
  if (flags & kLoadReplace) {
    set->RemoveAll();
    for (const LoadedParameter& item : loaded)
      set->AddNOLOCK(item.name.get(), item.value.get(), item.descriptor.get(), item.flags);
  } else {
    for (const LoadedParameter& item : loaded)
      set->Set(item.name.get(), item.value.get(), item.descriptor.get(), item.flags,
               item.fromFolder ? kSetWriteZeroFlags : 0);
  }
  set->CollectionUnlock();
  return S_OK;
}
