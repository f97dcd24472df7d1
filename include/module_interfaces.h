// Interfaces of the parameter module's own classes: parameter sets,
// expressions, input bindings, the parameters creator, the text parser, the
// file archive, the condition search and the property-page list.
#pragma once

#include "collection_interfaces.h"

struct IInputParameter;

// One parameter of a set. Every pointer holds one reference.
struct PARAMETEROBJECT {
  IString* Name;
  IVariant* Value;
  IUnknown* Descriptor;
  int32_t Flags;
};
// Hosts allocate and read these records: three pointers, then the 32-bit flags
// (16 bytes on 32-bit ARM; 32 with tail padding on 64-bit hosts).
static_assert(offsetof(PARAMETEROBJECT, Name) == 0);
static_assert(offsetof(PARAMETEROBJECT, Value) == sizeof(void*));
static_assert(offsetof(PARAMETEROBJECT, Descriptor) == 2 * sizeof(void*));
static_assert(offsetof(PARAMETEROBJECT, Flags) == 3 * sizeof(void*));
static_assert(sizeof(PARAMETEROBJECT) == 4 * sizeof(void*));

// Loader and writer flags passed with a stream.
constexpr int32_t kLoadReplace = 0x1000000;  // empty the set before loading
constexpr int32_t kSaveLean = 0x800000;      // lean XML output

// Parameter flag: left out of lean output, descriptor not stored. Cleared on
// every item the parameters creator copies.
constexpr int32_t kParameterNotStored = 0x40000;

// Set() modes for an existing parameter.
constexpr int16_t kSetClearDescriptor = 0x1;
constexpr int16_t kSetWriteZeroFlags = 0x2;

struct IParameters : INamedCollection {
  virtual HRESULT Iterate(int32_t index, IString** name, IVariant** value, IUnknown** descriptor, int32_t* flags) = 0;
  virtual HRESULT get_ItemVariant(int32_t index, IVariant** value) = 0;
  virtual HRESULT put_Item(int32_t index, IUnknown* value) = 0;
  virtual HRESULT get_ItemDescriptor(int32_t index, IUnknown** descriptor) = 0;
  virtual HRESULT put_ItemDescriptor(int32_t index, IUnknown* descriptor) = 0;
  virtual HRESULT get_ItemFlags(int32_t index, int32_t* flags) = 0;
  virtual HRESULT put_ItemFlags(int32_t index, int32_t flags) = 0;
  virtual HRESULT Add(IString* name, IUnknown* value, IUnknown* descriptor, int32_t flags) = 0;
  virtual HRESULT Remove(int32_t index) = 0;
  virtual HRESULT RemoveAll() = 0;
  virtual HRESULT Copy(IParameters* source) = 0;
  virtual HRESULT Sort(int32_t flags) = 0;
  virtual HRESULT Set(IUnknown* key, IUnknown* value, IUnknown* descriptor, int32_t flags, int16_t mode) = 0;
  virtual HRESULT AddNOLOCK(IString* name, IUnknown* value, IUnknown* descriptor, int32_t flags) = 0;
  virtual HRESULT get_ItemNOLOCK(int32_t index, IUnknown** item) = 0;
  virtual HRESULT put_ItemNOLOCK(int32_t index, IUnknown* value) = 0;
  virtual HRESULT get_ItemNameNOLOCK(int32_t index, IString** name) = 0;
  virtual HRESULT Params_SaveCSV(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Params_SaveXML(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Params_LoadXML(IDataStream* stream, int32_t flags, int32_t reserved) = 0;
  virtual HRESULT Params_SaveFolderStream(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Params_LoadFolderStream(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Params_SaveXMLUnk(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Params_LoadXMLUnk(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT getParameter(PARAMETEROBJECT* record, IUnknown** value) = 0;
};

struct IParametersCreatable : IParameters {};

struct IExpression : IUnknown {
  virtual HRESULT get_Value(IVariant** value) = 0;
  virtual HRESULT put_Value(IVariant* value) = 0;
  virtual HRESULT Evaluate(IParameters* parameters) = 0;
  virtual HRESULT get_Expression(IString** text) = 0;
  virtual HRESULT put_Expression(tagREFString text) = 0;
};

struct IInputParameter : IUnknown {
  virtual HRESULT get_Object(IUnknown** object) = 0;
  virtual HRESULT get_IID(IID* iid) = 0;
  virtual HRESULT put_IID(IID iid) = 0;
  virtual HRESULT SetSource(IUnknown* source, int32_t checkType) = 0;
  virtual HRESULT get_Name(IString** name) = 0;
  virtual HRESULT put_Name(IString* name) = 0;
  virtual HRESULT get_Source(IUnknown** source) = 0;
  virtual HRESULT put_Source(IUnknown* source) = 0;
  virtual HRESULT get_SourceIndex(int32_t* index) = 0;
  virtual HRESULT put_SourceIndex(int32_t index) = 0;
  virtual HRESULT get_AssignmentFlags(int32_t* flags) = 0;
  virtual HRESULT put_AssignmentFlags(int32_t flags) = 0;
};

struct IInputParameters : INamedCollection {
  virtual HRESULT Add(IString* name, IInputParameter* parameter) = 0;
  virtual HRESULT Create(IString* name, IID iid, int32_t flags) = 0;
  virtual HRESULT SetInput(int32_t index, IUnknown* input) = 0;
  virtual HRESULT GetInput(int32_t index, IUnknown** object) = 0;
  virtual HRESULT Remove(int32_t index) = 0;
  virtual HRESULT cLock() = 0;
  virtual HRESULT cUnlock() = 0;
  virtual HRESULT get_ItemIndex(IUnknown* object, int32_t* index) = 0;
  virtual HRESULT get_IndexAttached(IUnknown* attached, int32_t* index) = 0;
  virtual HRESULT get_ItemAttached(int32_t index, IUnknown** attached) = 0;
  virtual HRESULT put_ItemAttached(int32_t index, IUnknown* attached) = 0;
  virtual HRESULT get_ItemFlags(int32_t index, int32_t* flags) = 0;
  virtual HRESULT put_ItemFlags(int32_t index, int32_t flags) = 0;
  virtual HRESULT Add(IString* name, IUnknown* object, IUnknown* attached, int32_t flags) = 0;
  virtual HRESULT Insert(int32_t index, IString* name, IUnknown* object, IUnknown* attached, int32_t flags) = 0;
  virtual HRESULT VerifyInterface(IUnknown* object, IInputParameter** verified) = 0;
  virtual HRESULT put_Item(int32_t index, IUnknown* object) = 0;
  virtual HRESULT Query(const IID& iid, int32_t nth, int16_t useAttached, int32_t* index) = 0;
  virtual HRESULT CollectionClear() = 0;
  virtual HRESULT Save(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Load(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Sort(int32_t flags, void* compare) = 0;
};

struct IParametersCreator : IUnknown {
  virtual HRESULT Create(IString* text, IString* separators, IParametersCreatable* target) = 0;
  virtual HRESULT Translate(IParameters* source, IParameters* names, IParameters* templ, IParametersCreatable* target) = 0;
  virtual HRESULT Copy(INamedCollection* source, IString* pattern, int32_t flags, IParametersCreatable* target) = 0;
  virtual HRESULT SubSet(INamedCollection* source, int32_t first, int32_t count, IParametersCreatable* target) = 0;
  virtual HRESULT Update(INamedCollection* target, IUnknown* source, int16_t mode) = 0;
};

// Copy flag: copy the items whose names do NOT match the pattern.
constexpr int32_t kCopyNonMatching = 0x1;
// Update mode: source items that the target lacks are appended to it.
constexpr int16_t kUpdateAddMissing = 0x1;

// The own table of "ParametersCreator" (the pointer it answers for IUnknown):
// the object-model slots, then the class's operations in this order. Combine
// and Find are reached only through this table.
struct ParametersCreatorObject : IUnknown {
  virtual HRESULT FinalConstruct() = 0;
  virtual void FinalRelease() = 0;
  virtual void Lock() = 0;
  virtual void Unlock() = 0;
  virtual HRESULT SubSet(INamedCollection* source, int32_t first, int32_t count, IParametersCreatable* target) = 0;
  virtual HRESULT Copy(INamedCollection* source, IString* pattern, int32_t flags, IParametersCreatable* target) = 0;
  virtual HRESULT Combine(INamedCollection* first, INamedCollection* second, IParametersCreatable* target) = 0;
  virtual HRESULT Translate(IParameters* source, IParameters* names, IParameters* templ,
                            IParametersCreatable* target) = 0;
  virtual HRESULT Create(IString* text, IString* separators, IParametersCreatable* target) = 0;
  virtual HRESULT Find(INamedCollection* source, IString* condition, int32_t flags, IParametersCreatable** found) = 0;
  virtual HRESULT Update(INamedCollection* target, IUnknown* source, int16_t mode) = 0;
};

struct ITextParser : IUnknown {
  virtual HRESULT get_Tags(IString** opening, IString** closing) = 0;
  virtual HRESULT put_Tags(IString* opening, IString* closing) = 0;
  virtual HRESULT ParseTags(IString* text, IString** result, INamedCollection* values, int32_t dropUnknown) = 0;
  virtual HRESULT Translate(IString* text, IString** result, INamedCollection* values) = 0;
};

// A file of an object's own: name, filter, settings and whole-file load and save.
struct IFileArchive : IUnknown {
  virtual HRESULT get_Filename(IString** name) = 0;
  virtual HRESULT put_Filename(IString* name) = 0;
  virtual HRESULT get_Filter(IString** filter, int16_t reserved) = 0;
  virtual HRESULT get_Name(IString** name) = 0;
  virtual HRESULT Load() = 0;
  virtual HRESULT Save() = 0;
  virtual HRESULT Control(int32_t code, int32_t value) = 0;
  virtual HRESULT Inquire(int32_t code, int32_t* value) = 0;
};

// Condition search over an object.
struct IPMSearch : IUnknown {
  virtual HRESULT Find(IString* condition, int32_t reserved, IUnknown** found) = 0;
};

// The property pages that edit an object.
struct IUIPropertyPageSpecify : IUnknown {
  virtual HRESULT GetPages(int32_t reserved, INamedCollection** pages, IUnknown** reserved2) = 0;
};

// An object described by a parameter set.
struct IParametricObject : IUnknown {
  virtual HRESULT get_Parameters(IParameters** parameters) = 0;
  virtual HRESULT put_Parameters(IParameters* parameters) = 0;
};

// A spreadsheet that serves ranges of cells to the formula language.
struct IUISpreadSheet : IUnknown {
  virtual HRESULT GetRange(IString* rangeText, int32_t* first, int32_t* last) = 0;
  virtual HRESULT GetRangeValues(int32_t first, int32_t last, IDblVector** values) = 0;
};
