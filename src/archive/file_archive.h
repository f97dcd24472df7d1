// IFileArchiveImpl<T, Interface>: gives an object a file of its own: a file
// name, a file-dialog filter, five numbered settings, and whole-file loading
// and saving in XML or folder-stream form (docs/formats.md, "File archive").
//
// FileArchiveState holds the state and does the work for any owner, which it
// reaches through the owner's IUnknown: its IDataPersist writes and reads the
// content, and the archive owns the file (form by extension, XML prolog and
// stylesheet line, encoding on disk, safe replacement of the file).
//
// Settings: 0 the changed marker, 1 the loaded marker, 2 the name form of
// get_Name (non-zero keeps the extension), 3 stored only, 4 when above 0
// SaveXML writes UTF-8 bytes through "ASCIIStream" instead of UTF-16 text.
#pragma once

#include "runtime/smart_ptr.h"

// The settings by number (Control and Inquire codes).
constexpr int32_t kArchiveChanged = 0;
constexpr int32_t kArchiveLoaded = 1;
constexpr int32_t kArchiveNameForm = 2;
constexpr int32_t kArchiveSetting3 = 3;
constexpr int32_t kArchiveByteOutput = 4;
constexpr int32_t kArchiveSettingCount = 5;

class FileArchiveState {
 public:
  HRESULT GetFilename(IString** name) const;
  HRESULT PutFilename(IString* name);
  HRESULT GetFilter(IString** filter) const;
  HRESULT GetName(IString** name) const;
  HRESULT ControlSetting(int32_t code, int32_t value);
  HRESULT InquireSetting(int32_t code, int32_t* value) const;
  // Save and Load by the file name's extension: "x..." XML, "t..." folder stream.
  HRESULT SaveByExtension(IUnknown* self);
  HRESULT LoadByExtension(IUnknown* self);
  HRESULT SaveXMLFile(IUnknown* self, IString* stylesheet, int32_t flags);
  HRESULT LoadXMLFile(IUnknown* self, int32_t extended);
  HRESULT SaveFolderStreamFile(IUnknown* self);
  HRESULT LoadFolderStreamFile(IUnknown* self);

  // The file name's text (empty without one); valid while the name is held.
  tagREFString FilenameText() const;
  void SetFilter(const wchar_t* filter);
  void SetSetting(int32_t code, int32_t value) { m_Settings[code] = value; }
  // After a successful load or save: not changed, loaded.
  void MarkStored();

 private:
  SmartPtr<IString> m_Filename;
  SmartPtr<IString> m_Filter;
  int32_t m_Settings[kArchiveSettingCount] = {};
};

// Serves IFileArchive (Interface) for the owner T, which derives from
// CObjectImpl (for GetUnknown) and may override Load, Save and Control.
template <class T, class Interface>
class IFileArchiveImpl : public Interface {
 public:
  HRESULT get_Filename(IString** name) override { return m_Archive.GetFilename(name); }
  HRESULT put_Filename(IString* name) override { return m_Archive.PutFilename(name); }
  HRESULT get_Filter(IString** filter, int16_t /*reserved*/) override { return m_Archive.GetFilter(filter); }
  HRESULT get_Name(IString** name) override { return m_Archive.GetName(name); }
  HRESULT Load() override { return m_Archive.LoadByExtension(Self()); }
  HRESULT Save() override { return m_Archive.SaveByExtension(Self()); }
  HRESULT Control(int32_t code, int32_t value) override { return m_Archive.ControlSetting(code, value); }
  HRESULT Inquire(int32_t code, int32_t* value) override { return m_Archive.InquireSetting(code, value); }

  // Operations the template adds after those of IFileArchive.
  virtual HRESULT Unload() { return E_NOTIMPL; }
  virtual HRESULT SaveFolderStream() { return m_Archive.SaveFolderStreamFile(Self()); }
  virtual HRESULT LoadFolderStream() { return m_Archive.LoadFolderStreamFile(Self()); }

  HRESULT SaveXML(IString* stylesheet, int32_t flags) { return m_Archive.SaveXMLFile(Self(), stylesheet, flags); }
  HRESULT LoadXML(int32_t extended) { return m_Archive.LoadXMLFile(Self(), extended); }

 protected:
  IFileArchiveImpl() = default;
  ~IFileArchiveImpl() = default;

  FileArchiveState m_Archive;

 private:
  IUnknown* Self() { return static_cast<T*>(this)->GetUnknown(); }
};
