// The two entry points every module of the framework exports.
//
// A host loads a module with dlopen, hands it the process-wide component
// collection through InitializeModule, and asks CreateFunction for the
// creation function of a class by its exact, case-sensitive name.
#pragma once

#include "base_types.h"

struct IComponentCollection;

// Keeps the collection (a reference is added; null releases the one held). Always 0.
int32_t InitializeModule(void* reserved, IComponentCollection* collection);

extern "C" {
// 0 and the class's creation function in *creationFunction, or 0x80004005.
int32_t CreateFunction(tagREFString className, void** creationFunction);
}

// Symbol names a host looks up with dlsym.
inline constexpr const char kCreateFunctionSymbol[] = "CreateFunction";
inline constexpr const char kInitializeModuleSymbol[] = "_Z16InitializeModulePvP20IComponentCollection";
inline constexpr const char kInitializeModulePlainSymbol[] = "InitializeModule";
