// The framework's value and registry interfaces: strings, variants, the
// component registry and the small helper interfaces (monikers, host windows,
// simple collections, number vectors, string collections, object persistence).
//
// Slots are declared in table order. A slot named Reserved<n> is one that no
// module of this product calls; it keeps its position so that every module of
// the framework agrees on the table, and answers E_NOTIMPL here.
#pragma once

#include <atomic>

#include "base_types.h"

struct IString;
struct IDataStream;  // declared with the streams in framework_streams.h

// A wide text held by an object.
struct IString : IUnknown {
  // Pointer to the object's own text (valid while the object lives) and its length.
  virtual HRESULT GetBuffer(const wchar_t** text, int32_t* length) = 0;
};

// A string whose text can be set and appended to.
struct ICreatableString : IString {
  virtual HRESULT SetText(tagREFString text) = 0;
  virtual HRESULT Append(tagREFString text) = 0;
};

// Optional on strings whose text can change in place. A collection that
// indexes its items by name watches every name string; one counter then tells
// it whether any watched string changed since it built its index. Names that
// do not answer this interface are looked up by scanning instead.
struct IStringChangeCounter : IUnknown {
  // Marks this string as watched and answers the counter that every later
  // change of the text of a watched string advances. The counter is shared by
  // all strings of one implementation and lives as long as its module.
  virtual const std::atomic<uint64_t>* WatchChanges() = 0;
};

// Kinds answered by IVariant::GetType.
constexpr int32_t kVariantNotNumber = 0;  // empty, text or object
constexpr int32_t kVariantInteger = 1;
constexpr int32_t kVariantReal = 2;

// A value: integer, real number, text or object.
struct IVariant : IUnknown {
  virtual int32_t GetType() = 0;  // kVariantNotNumber, kVariantInteger or kVariantReal
  virtual double GetDouble() = 0;
  virtual int32_t GetLong() = 0;
  virtual HRESULT SetLong(int32_t value) = 0;
  virtual HRESULT SetDouble(double value) = 0;
  virtual int32_t IsObject() = 0;
  virtual HRESULT GetObject(IUnknown** object) = 0;
  // Copies another variant's value, takes a string's text, or holds any other object.
  virtual HRESULT Assign(IUnknown* from) = 0;
  virtual int32_t IsString() = 0;
  virtual HRESULT GetString(IString** text) = 0;
  virtual HRESULT SetString(IString* text) = 0;  // holds the given string object itself
};

struct IComponentString;

// The process-wide registry of component classes.
struct IComponentCollection : IUnknown {
  virtual HRESULT get_Count(int32_t* count) = 0;
  virtual HRESULT GetItem(int32_t handle, IUnknown** item) = 0;
  virtual HRESULT Find(IString* className, int32_t* handle) = 0;  // negative when unknown
  virtual HRESULT Reserved4() = 0;
  virtual HRESULT Reserved5() = 0;
  virtual HRESULT Reserved6() = 0;
  virtual HRESULT Reserved7() = 0;
  virtual HRESULT Reserved8() = 0;
  virtual HRESULT Reserved9() = 0;
  virtual HRESULT Reserved10() = 0;
  virtual HRESULT Reserved11() = 0;
  virtual HRESULT Reserved12() = 0;
  virtual HRESULT Reserved13() = 0;
  // With an identity: a new object of the class answering it. With a null
  // identity: the class's component object (IComponentString).
  virtual HRESULT CreateByName(tagREFString className, IID* iid, void** object) = 0;
};

// Properties of a component object.
constexpr int32_t kComponentClassName = 1;
constexpr int32_t kComponentModuleName = 4;

// Describes one class (its module and class name) and creates instances of it.
struct IComponentString : IUnknown {
  virtual HRESULT GetProperty(int32_t which, IString** value) = 0;
  virtual HRESULT Reserved2() = 0;
  virtual HRESULT CreateInstance(IID* iid, void** object) = 0;
  virtual HRESULT SetProperty(int32_t which, tagREFString value) = 0;
};

// A containing collection's handle on an item.
struct ICollectionMoniker : IUnknown {
  virtual HRESULT Reserved1() = 0;
  virtual HRESULT FindObject(IID* iid, void** object) = 0;
};

struct IHostWindow : IUnknown {
  virtual HRESULT Reserved1() = 0;
  virtual HRESULT Reserved2() = 0;
  virtual HRESULT GetHostedObject(IUnknown** object) = 0;
};

struct IUINode : IUnknown {
  virtual HRESULT Reserved1() = 0;
  virtual HRESULT Reserved2() = 0;
  virtual HRESULT Reserved3() = 0;
  virtual HRESULT Reserved4() = 0;
  virtual HRESULT GetObject(IUnknown** object) = 0;
};

struct ISimpleCollection : IUnknown {
  virtual HRESULT get_Count(int32_t* count) = 0;
  virtual HRESULT get_Item(int32_t index, IUnknown** item) = 0;
};

// A vector of numbers ("DblBuffer" implements all four operations).
struct IDblVector : IUnknown {
  virtual HRESULT get_Count(int32_t* count) = 0;
  virtual HRESULT Append(double value, int32_t position) = 0;  // position -1: at the end
  virtual HRESULT get_Number(int32_t index, double* value) = 0;
  virtual HRESULT Reserve(int32_t count) = 0;
};

// Lines of a text ("StringCollection").
struct IStringCollection : IUnknown {
  virtual HRESULT get_Count(int32_t* count) = 0;
  virtual HRESULT get_Item(int32_t index, IUnknown** line) = 0;
  virtual HRESULT Reserved3() = 0;
  virtual HRESULT Reserved4() = 0;
  virtual HRESULT Reserved5() = 0;
  virtual HRESULT Reserved6() = 0;
  virtual HRESULT Reserved7() = 0;
  virtual HRESULT Reserved8() = 0;
  virtual HRESULT Reserved9() = 0;
  virtual HRESULT Reserved10() = 0;
  virtual HRESULT Reserved11() = 0;
  virtual HRESULT Reserved12() = 0;
  virtual HRESULT Reset(int32_t reserved) = 0;  // forget all lines
};

// Persistence of an object to a framework stream.
struct IDataPersist : IUnknown {
  virtual HRESULT Save(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Load(IDataStream* stream, int32_t flags) = 0;
};

// An object's class name.
struct IObjectInfo : IUnknown {
  virtual HRESULT GetName(int32_t which, tagREFString* name) = 0;
};
