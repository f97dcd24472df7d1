// The framework's storage interfaces: folder streams (a tree of named
// entries kept as one binary file), the file-details object stored with
// them, the CSV and INI streams of parameter sets, settings files and the
// settings store.
//
// Every stream here also answers IDataStream (it derives from it), so a
// stream can be handed to IDataPersist::Save/Load directly and asked for its
// kind with QueryInterface. Entry and value names are passed as tagREFString
// views (the caller keeps the text alive for the call); file names as the
// IString objects that hold them. Slots are in table order; docs/storage-api.md
// describes each operation.
#pragma once

#include "framework_streams.h"
#include "module_interfaces.h"

// Kinds of folder-stream entries, as ISuperCollection::get_ItemFlags and
// IFolderStream::Find report them.
constexpr int32_t kFolderEntryFolder = 1;  // a sub-folder
constexpr int32_t kFolderEntryBinary = 2;  // a named run of bytes
constexpr int32_t kFolderEntryValue = 3;   // a named variant
constexpr int32_t kFolderEntryObject = 4;  // an object: its class name and a sub-folder it saved itself into

// A tree of named entries. The IDataStream operations work on the folder's
// serialized image: GetBuffer encodes the folder (valid until the next call),
// Write replaces the folder's content by a whole image (refused, content kept,
// when the image is corrupt), Reset empties the folder, Read is not supported.
// Writing a name that exists replaces that entry in place, so names are unique
// within a folder and entries keep the order in which their names first came.
struct IFolderStream : IDataStream {
  // Opens the sub-folder `name`, making it (or replacing a non-folder entry) when needed.
  virtual HRESULT CreateFolder(tagREFString name, IFolderStream** folder) = 0;
  // Opens an existing sub-folder; E_ITEMNOTFOUND when absent, E_FAIL for another kind.
  virtual HRESULT OpenFolder(tagREFString name, IFolderStream** folder) = 0;
  virtual HRESULT WriteBinary(tagREFString name, const void* data, int32_t byteCount) = 0;
  // Copies min(byteCount, stored) bytes; S_FALSE when the stored length differs.
  // *storedCount (may be null) receives the stored length.
  virtual HRESULT ReadBinary(tagREFString name, void* data, int32_t byteCount, int32_t* storedCount) = 0;
  // Stores the variant's value (empty, integer, real, text, or an object written as by WriteObject).
  virtual HRESULT WriteValue(tagREFString name, IVariant* value) = 0;
  // A new variant holding the stored value.
  virtual HRESULT ReadValue(tagREFString name, IVariant** value) = 0;
  // A value entry holding text (readable with ReadValue as well).
  virtual HRESULT WriteString(tagREFString name, IString* text) = 0;
  virtual HRESULT ReadString(tagREFString name, IString** text) = 0;
  // Records the object's class name (IObjectInfo) and lets it save itself
  // (IDataPersist::Save with `flags`) into the entry's sub-folder. An object
  // that does not persist is recorded by class name only.
  virtual HRESULT WriteObject(tagREFString name, IUnknown* object, int32_t flags) = 0;
  // Creates the recorded class by name, lets it load itself (IDataPersist::Load
  // with `flags`) from the entry's sub-folder and answers `iid` (null: IUnknown).
  virtual HRESULT ReadObject(tagREFString name, int32_t flags, IID* iid, void** object) = 0;
  // Position and kind of an entry; E_ITEMNOTFOUND when absent.
  virtual HRESULT Find(tagREFString name, int32_t* index, int32_t* kind) = 0;
  virtual HRESULT RemoveEntry(tagREFString name) = 0;
  // The whole tree below this folder to or from one file (docs/formats.md).
  virtual HRESULT SaveToFile(IString* fileName) = 0;
  virtual HRESULT LoadFromFile(IString* fileName) = 0;
};

// Details of a stored file ("FileInfo"), kept with the content of a folder-stream file.
struct IFileInfo : IUnknown {
  virtual HRESULT get_Filename(IString** name) = 0;
  virtual HRESULT put_Filename(IString* name) = 0;
  // The class name of the object whose content the file holds.
  virtual HRESULT get_ObjectClass(IString** name) = 0;
  virtual HRESULT put_ObjectClass(IString* name) = 0;
  // The content's own format version, chosen by the object that saves it.
  virtual HRESULT get_Version(int32_t* version) = 0;
  virtual HRESULT put_Version(int32_t version) = 0;
};

// A parameter set as a text file. The stream holds a set and a pending text.
// WriteText (and IDataStream::Write) append to the pending text; their length
// is twice the character count, the framework's convention for text writes.
struct IParameterTextStream : IDataStream {
  virtual HRESULT put_Parameters(IParameters* parameters) = 0;
  virtual HRESULT get_Parameters(IParameters** parameters) = 0;
  virtual HRESULT WriteText(const wchar_t* text, int32_t doubledLength) = 0;
  virtual HRESULT GetText(const wchar_t** text, int32_t* length) = 0;
  // Writes the held set (or, without one, the pending text) to the file as UTF-8.
  virtual HRESULT Save(IString* fileName, int32_t flags) = 0;
  // Reads the file into the held set; kLoadReplace in `flags` empties the set first.
  virtual HRESULT Load(IString* fileName, int32_t flags) = 0;
};

// "CSVStream": the set as comma-separated values (the set writes itself with Params_SaveCSV).
struct ICSVStream : IParameterTextStream {};

// "INIStream": the set as name=value lines.
struct IINIStream : IParameterTextStream {};

// "INIFileEx": a settings file of [section] headers and name=value lines.
// Section and value names are matched without regard to case; changes stay
// in memory until Save.
struct IINIFileEx : IUnknown {
  // Reads the file (a missing file gives empty settings) and remembers its name.
  virtual HRESULT Open(IString* fileName) = 0;
  // Writes the settings to the remembered file.
  virtual HRESULT Save() = 0;
  virtual HRESULT GetString(tagREFString section, tagREFString name, IString** value) = 0;
  virtual HRESULT SetString(tagREFString section, tagREFString name, tagREFString value) = 0;
  virtual HRESULT RemoveValue(tagREFString section, tagREFString name) = 0;
  // The lines of a section, in file order.
  virtual HRESULT get_SectionCount(tagREFString section, int32_t* count) = 0;
  virtual HRESULT get_SectionName(tagREFString section, int32_t index, IString** name) = 0;
  virtual HRESULT get_SectionValue(tagREFString section, int32_t index, IString** value) = 0;
};

// "Registry": the settings store (docs/formats.md, the settings file).
struct IRegistry : IUnknown {
  // A new string with the value; E_ITEMNOTFOUND when the value is not set.
  virtual HRESULT GetString(tagREFString section, tagREFString name, IString** value) = 0;
  // The named list of a section, in file order: count, entry value (a variant
  // holding the text) and entry name.
  virtual HRESULT get_ListCount(tagREFString section, int32_t* count) = 0;
  virtual HRESULT get_ListValue(tagREFString section, int32_t index, IVariant** value) = 0;
  virtual HRESULT get_ListName(tagREFString section, int32_t index, IString** name) = 0;
};

struct IRegistryEx : IRegistry {
  // The value into a buffer of `byteCount` bytes, cut to fit and terminated.
  virtual HRESULT GetBuffer(tagREFString section, tagREFString name, wchar_t* buffer, int32_t byteCount) = 0;
  // Sets a value and writes the settings file.
  virtual HRESULT SetString(tagREFString section, tagREFString name, tagREFString value) = 0;
  // Reads the settings file again.
  virtual HRESULT Reload() = 0;
};
