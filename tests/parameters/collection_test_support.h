// Helpers of the collection tests: making collections, names, and reference first-match scans that the indexed
// lookups must agree with.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "inputs/input_parameters.h"
#include "parameters/named_collection.h"
#include "parameters/parameter_set.h"
#include "test_support.h"

namespace collection_test {

using namespace test_support;

inline SmartPtr<ISuperCollection> NewSuperCollection() { return CreateObjectAs<ISuperCollection>(L"SuperCollection"); }
inline SmartPtr<IParametersCreatable> NewParameters() {
  return CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
}
// "InputParameters": a named collection (of bindings) that matches whole names.
inline SmartPtr<IInputParameters> NewExactCollection() { return CreateObjectAs<IInputParameters>(L"InputParameters"); }
inline SmartPtr<IInputParameter> NewBinding() { return CreateObjectAs<IInputParameter>(L"InputParameter"); }

// Adds one item per name, all holding `object` (a collection's item or a set's value).
template <class Collection>
void AddNamed(Collection* collection, const std::vector<std::wstring>& names, IUnknown* object) {
  for (const std::wstring& name : names) ASSERT_EQ(collection->Add(MakeString(name).get(), object, nullptr, 0), S_OK);
}

// The names of the items in order, "<null>" for an unnamed one.
template <class Collection>
std::vector<std::wstring> NamesOf(Collection* collection) {
  int32_t count = 0;
  collection->get_Count(&count);
  std::vector<std::wstring> names;
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    names.push_back(collection->get_ItemName(i, name.Receive()) < 0 ? L"<null>" : TextOf(name));
  }
  return names;
}

inline wchar_t FoldForTest(wchar_t c) { return (c >= L'A' && c <= L'Z') ? c - L'A' + L'a' : c; }

// True when `name` begins with `key` (whole: equals it), folding A-Z only.
inline bool NameMatches(const std::wstring& name, const std::wstring& key, bool whole) {
  if (key.empty() || name.size() < key.size() || (whole && name.size() != key.size())) return false;
  for (size_t i = 0; i < key.size(); ++i)
    if (FoldForTest(name[i]) != FoldForTest(key[i])) return false;
  return true;
}

// Index of the first of `names` that matches, or `notFound`. Unnamed items ("<null>") never match since keys in
// the tests have no '<'.
inline int32_t ScanFirst(const std::vector<std::wstring>& names, const std::wstring& key, bool whole,
                         int32_t notFound) {
  for (size_t i = 0; i < names.size(); ++i)
    if (NameMatches(names[i], key, whole)) return static_cast<int32_t>(i);
  return notFound;
}

template <class Collection>
int32_t IndexOfName(Collection* collection, const std::wstring& key) {
  int32_t index = -2;
  collection->get_Index(MakeString(key).get(), &index);
  return index;
}

// A caller's comparison for Sort: longer names first, then descending names.
inline int ByLengthDescending(const void* a, const void* b) {
  using Template = INamedCollectionImpl<CInputParameters, IInputParameters, IInputParameter>;
  return -Template::COLLECTIONCompareByNameAndLength(a, b);
}

}  // namespace collection_test
