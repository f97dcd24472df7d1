// Stream persistence of a named collection: the XML frame ("Flags" in
// decimal, the item's object element, "AttachedItem") and the folder layout
// (one sub-folder per item with "Flags", "Item" and "ItemAttached"). Items
// persist themselves; the collection writes only the frame around them.
//
// Templates over the collection interface (ISuperCollection, IInputParameters),
// used through that interface alone. Readers read the whole stream before
// they clear the collection.
#pragma once

#include <utility>
#include <vector>

#include "parameters/persist_text.h"

namespace collection_persistence {

constexpr tagREFString kNoName{0, nullptr};
constexpr tagREFString kFlagsName{5, L"Flags"};
constexpr tagREFString kAttachedElement{12, L"AttachedItem"};
constexpr tagREFString kItemEntry{4, L"Item"};
constexpr tagREFString kAttachedEntry{12, L"ItemAttached"};

struct LoadedItem {
  SmartPtr<IString> name;
  SmartPtr<IUnknown> object;
  SmartPtr<IUnknown> attached;
  int32_t flags = 0;
};

// The sub-stream of the child the cursor stands on.
inline SmartPtr<IXMLStream> OpenCurrent(IXMLStream* xml, IString** text = nullptr) {
  SmartPtr<IDataStream> child;
  if (FAILED(xml->OpenChild(kNoName, text, child.Receive(), 0))) return SmartPtr<IXMLStream>();
  return QueryAs<IXMLStream>(child.get());
}

// True when `object` reports no class name or the name `element`.
inline bool ClassNameAgrees(IUnknown* object, tagREFString element) {
  SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(object);
  tagREFString name{0, nullptr};
  if (!info || FAILED(info->GetName(0, &name))) return true;
  return name.length == element.length && (name.length == 0 || !wmemcmp(name.text, element.text, name.length));
}

template <class Collection>
void SaveXML(Collection* collection, IXMLStream* xml, IDataStream* stream, int32_t flags) {
  int32_t count = 0;
  collection->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IUnknown> object, attached;
    SmartPtr<IString> name;
    int32_t itemFlags = 0;
    collection->get_Item(i, object.Receive());
    SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(object.get());
    if (!persist) continue;  // items that do not persist are left out of XML
    collection->get_ItemName(i, name.Receive());
    collection->get_ItemAttached(i, attached.Receive());
    collection->get_ItemFlags(i, &itemFlags);
    const ItemNameText element(name.get(), i);
    xml->BeginElement(element.view(), 0, 0);
    // Decimal here, unlike the parameter set's hexadecimal flags (intended: stored files depend on it).
    if (itemFlags)
      xml->WriteElement(kFlagsName, 0, TextView(SmartPtr<IString>::Adopt(ISCreate(itemFlags)).get()), 0);
    const SaveNesting nesting;
    if (!nesting.TooDeep() && SUCCEEDED(xml->BeginObject(object.get(), 0, 0))) {
      persist->Save(stream, flags);
      xml->EndElement();
    }
    if (SmartPtr<IDataPersist> attachedPersist = QueryAs<IDataPersist>(attached.get())) {
      xml->BeginElement(kAttachedElement, 0, 0);
      if (SUCCEEDED(xml->BeginObject(attached.get(), 0, 0))) {
        attachedPersist->Save(stream, flags);
        xml->EndElement();
      }
      xml->EndElement();
    }
    xml->EndElement();
  }
}

template <class Collection>
void SaveFolder(Collection* collection, IFolderStream* folder, int32_t flags) {
  int32_t count = 0;
  collection->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IUnknown> object, attached;
    SmartPtr<IString> name;
    int32_t itemFlags = 0;
    collection->get_Item(i, object.Receive());
    collection->get_ItemName(i, name.Receive());
    collection->get_ItemAttached(i, attached.Receive());
    collection->get_ItemFlags(i, &itemFlags);
    const ItemNameText entry(name.get(), i);
    SmartPtr<IFolderStream> sub;
    if (FAILED(folder->CreateFolder(entry.view(), sub.Receive())) || !sub) continue;
    if (itemFlags) sub->WriteBinary(kFlagsName, &itemFlags, sizeof(itemFlags));
    if (object) sub->WriteObject(kItemEntry, object.get(), flags);
    if (attached) sub->WriteObject(kAttachedEntry, attached.get(), 0);
  }
}

// One item element: its flags, attached object and object. In merge mode an
// object the collection already holds under the name reloads itself.
template <class Collection>
LoadedItem ReadXMLItem(Collection* collection, IXMLStream* element, IString* name, int32_t flags) {
  LoadedItem item;
  item.name = SmartPtr<IString>(name);
  SmartPtr<IUnknown> existing;
  if (!(flags & kLoadReplace)) {
    int32_t index = -1;
    if (SUCCEEDED(collection->get_Index(name, &index))) collection->get_Item(index, existing.Receive());
  }
  SmartPtr<IString> childName;
  while (SUCCEEDED(element->NextChild(childName.Receive()))) {
    const CREFString child = TextView(childName.get());
    if (EqualsIgnoringCase(child, L"Flags")) {
      SmartPtr<IString> text;
      OpenCurrent(element, text.Receive());
      item.flags = _IS2Integer(TextView(text.get()), 10);
    } else if (EqualsIgnoringCase(child, L"AttachedItem")) {
      if (SmartPtr<IXMLStream> holder = OpenCurrent(element)) holder->ReadObject(kNoName, item.attached.Receive());
    } else if (SmartPtr<IDataPersist> reload = QueryAs<IDataPersist>(existing.get());
               reload && ClassNameAgrees(existing.get(), child)) {
      SmartPtr<IXMLStream> content = OpenCurrent(element);
      if (content && SUCCEEDED(reload->Load(QueryAs<IDataStream>(content.get()).get(), flags))) item.object = existing;
    } else {
      element->ReadObject(kNoName, item.object.Receive());
    }
  }
  return item;
}

template <class Collection>
void LoadXML(Collection* collection, IXMLStream* xml, int32_t flags) {
  std::vector<LoadedItem> loaded;
  SmartPtr<IString> name;
  while (SUCCEEDED(xml->NextChild(name.Receive()))) {
    SmartPtr<IXMLStream> element = OpenCurrent(xml);
    if (element) loaded.push_back(ReadXMLItem(collection, element.get(), name.get(), flags));
  }
  if (flags & kLoadReplace) {
    collection->CollectionClear();
    for (const LoadedItem& item : loaded)
      if (!TextView(item.name.get()).IsEmpty() && item.object)
        collection->Add(item.name.get(), item.object.get(), item.attached.get(), item.flags);
    return;
  }
  for (const LoadedItem& item : loaded) {
    int32_t index = -1;
    if (FAILED(collection->get_Index(item.name.get(), &index))) continue;  // unknown names are ignored
    if (item.object) collection->put_Item(index, item.object.get());
    collection->put_ItemFlags(index, item.flags);
    collection->put_ItemAttached(index, item.attached.get());
  }
}

template <class Collection>
void LoadFolder(Collection* collection, IFolderStream* folder) {
  SmartPtr<ISuperCollection> entries = QueryAs<ISuperCollection>(folder);
  if (!entries) return;
  int32_t count = 0;
  entries->get_Count(&count);
  std::vector<LoadedItem> loaded;
  for (int32_t i = 0; i < count; ++i) {
    LoadedItem item;
    int32_t kind = 0;
    if (FAILED(entries->get_ItemFlags(i, &kind)) || kind != kFolderEntryFolder) continue;
    entries->get_ItemName(i, item.name.Receive());
    SmartPtr<IFolderStream> sub;
    if (FAILED(folder->OpenFolder(TextView(item.name.get()), sub.Receive())) || !sub) continue;
    sub->ReadBinary(kFlagsName, &item.flags, sizeof(item.flags), nullptr);
    sub->ReadObject(kItemEntry, kLoadReplace, nullptr, item.object.ReceiveVoid());
    int32_t index = 0, entryKind = 0;
    if (SUCCEEDED(sub->Find(kAttachedEntry, &index, &entryKind)))
      sub->ReadObject(kAttachedEntry, kLoadReplace, nullptr, item.attached.ReceiveVoid());
    loaded.push_back(std::move(item));
  }
  collection->CollectionClear();
  for (const LoadedItem& item : loaded)
    collection->Add(item.name.get(), item.object.get(), item.attached.get(), item.flags);
}

}  // namespace collection_persistence

// Save and Load of a named collection: XML or folder stream by what the stream answers; 0 always.
template <class Collection>
HRESULT NamedCollectionSave(Collection* collection, IDataStream* stream, int32_t flags) {
  if (SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream))
    collection_persistence::SaveXML(collection, xml.get(), stream, flags);
  else if (SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream))
    collection_persistence::SaveFolder(collection, folder.get(), flags);
  return S_OK;
}

template <class Collection>
HRESULT NamedCollectionLoad(Collection* collection, IDataStream* stream, int32_t flags) {
  if (SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream))
    collection_persistence::LoadXML(collection, xml.get(), flags);
  else if (SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream))
    collection_persistence::LoadFolder(collection, folder.get());
  return S_OK;
}
