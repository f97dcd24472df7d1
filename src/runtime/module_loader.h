// Reaching the rest of the framework: the global component collection,
// creation of objects by class name, and direct loading of sibling modules
// from "./_binlinux/".
#pragma once

#include "smart_ptr.h"

// The collection this module shares with the host and the sibling modules.
// Read and written only under its lock, through the functions below (tests
// that run on one thread may look at it directly).
extern SmartPtr<IComponentCollection> gGlobalComponentCollection;

// Another reference to the kept collection, or null; never makes one.
SmartPtr<IComponentCollection> CurrentGlobalComponents();

// Keeps `collection` (null clears) and releases the one kept before.
void ReplaceGlobalComponents(IComponentCollection* collection);

// Longest module name accepted; longer names would overflow the path buffer.
constexpr int32_t kMaxModuleNameLength = 240;

// The collection with a reference for the caller, made from "CollectionsEx" on first need; or null.
IComponentCollection* GLOBALComponents();

// The creation function of `className` in module `moduleName` ("./_binlinux/<module>.so"), or null.
CreationFunction MODULECreateFunction(tagREFString moduleName, tagREFString className);

// A new object of the class answering `iid` (one reference for the caller), or null.
void* CreateObject(tagREFString className, IID* iid);

// The component object that describes and creates the class, or null.
IComponentString* GetComponentString(IString* className);

// Typed form of CreateObject.
template <class I>
SmartPtr<I> CreateObjectAs(const wchar_t* className) {
  IID iid = IIDOf<I>();
  tagREFString name{static_cast<int32_t>(wcslen(className)), className};
  return SmartPtr<I>::Adopt(static_cast<I*>(CreateObject(name, &iid)));
}

// A view of a terminated wide literal.
inline tagREFString RefOf(const wchar_t* text) { return {static_cast<int32_t>(wcslen(text)), text}; }
