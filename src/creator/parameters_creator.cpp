// "ParametersCreator": parameter sets from text, ranges, patterns and templates.
#include "creator/parameters_creator.h"

#include <algorithm>

#include "creator/item_copy.h"
#include "creator/name_pattern.h"
#include "creator/text_to_parameters.h"
#include "parameters/folded_name.h"
#include "strings/ref_string.h"

namespace {

int32_t CountOf(ISimpleCollection* collection) {
  int32_t count = 0;
  if (FAILED(collection->get_Count(&count)) || count < 0) return 0;
  return count;
}

// The name of source item `index` mapped through `names`: the text item that
// `names` holds under that name; a non-text item there gives no name. Without
// a table, or when the table does not know the name, the name stays.
SmartPtr<IString> TranslatedName(IParameters* source, int32_t index, IParameters* names) {
  SmartPtr<IString> name;
  source->get_ItemName(index, name.Receive());
  int32_t position = -1;
  if (!names || !name || FAILED(names->get_Index(name.get(), &position))) return name;
  SmartPtr<IUnknown> translated;
  names->get_Item(position, translated.Receive());
  return QueryAs<IString>(translated.get());
}

SmartPtr<IVariant> ValueOf(IParameters* parameters, int32_t index) {
  SmartPtr<IVariant> value;
  parameters->get_ItemVariant(index, value.Receive());
  return value;
}

}  // namespace

HRESULT CParametersCreator::SubSet(INamedCollection* source, int32_t first, int32_t count,
                                   IParametersCreatable* target) {
  if (!source || !target) return E_POINTER;
  const CopySource from(source);
  const int64_t n = CountOf(source);
  if (n == 0) return S_OK;  // no position to clamp to
  int64_t start = first < 0 ? first + n : first;
  start = std::clamp<int64_t>(start, 0, n - 1);
  const int64_t taken = std::min<int64_t>(count, n - start);
  for (int64_t i = start; i < start + taken; ++i)
    StoreByName(target, ReadItemForCopy(from, static_cast<int32_t>(i)));
  return S_OK;
}

HRESULT CParametersCreator::Copy(INamedCollection* source, IString* pattern, int32_t flags,
                                 IParametersCreatable* target) {
  if (!source || !target) return E_POINTER;
  const CopySource from(source);
  const tagREFString wanted = NameTextOf(pattern);
  const bool copyMatching = (flags & kCopyNonMatching) == 0;
  HRESULT result = S_FALSE;
  const int32_t n = CountOf(source);
  for (int32_t i = 0; i < n; ++i) {
    SmartPtr<IString> name;
    source->get_ItemName(i, name.Receive());
    const bool matches = wanted.length == 0 || NameMatchesPattern(NameTextOf(name.get()), wanted);
    if (matches != copyMatching) continue;
    StoreByName(target, ReadItemForCopy(from, i));
    result = S_OK;
  }
  return result;
}

HRESULT CParametersCreator::Combine(INamedCollection* /*first*/, INamedCollection* /*second*/,
                                    IParametersCreatable* /*target*/) {
  return S_OK;
}

HRESULT CParametersCreator::Translate(IParameters* source, IParameters* names, IParameters* templ,
                                      IParametersCreatable* target) {
  if (!source || !target) return E_POINTER;
  const int32_t n = CountOf(source);
  if (!templ) {
    for (int32_t i = 0; i < n; ++i)
      target->Add(TranslatedName(source, i, names).get(), ValueOf(source, i).get(), nullptr, 0);
    return S_OK;
  }
  // The template gives the items and their order; its descriptors and flags are not carried over.
  const int32_t shape = CountOf(templ);
  for (int32_t i = 0; i < shape; ++i) {
    SmartPtr<IString> name;
    templ->get_ItemName(i, name.Receive());
    target->Add(name.get(), ValueOf(templ, i).get(), nullptr, 0);
  }
  for (int32_t i = 0; i < n; ++i) {
    SmartPtr<IString> name = TranslatedName(source, i, names);
    int32_t position = -1;
    if (name && SUCCEEDED(target->get_Index(name.get(), &position)))
      target->put_Item(position, ValueOf(source, i).get());
  }
  return S_OK;
}

HRESULT CParametersCreator::Create(IString* text, IString* separators, IParametersCreatable* target) {
  const tagREFString separatorText = NameTextOf(separators);
  if (separatorText.length == 0) return E_FAIL;
  if (!target) return E_POINTER;
  AddParametersFromText(NameTextOf(text), SeparatorRanks(separatorText), target);
  return S_OK;
}

HRESULT CParametersCreator::Find(INamedCollection* /*source*/, IString* /*condition*/, int32_t /*flags*/,
                                 IParametersCreatable** /*found*/) {
  return E_NOTIMPL;
}

HRESULT CParametersCreator::Update(INamedCollection* target, IUnknown* source, int16_t mode) {
  if (!target || !source) return E_POINTER;
  SmartPtr<INamedCollection> sourceCollection = QueryAs<INamedCollection>(source);
  SmartPtr<IParameters> targetSet = QueryAs<IParameters>(target);
  SmartPtr<ISuperCollection> targetCollection = QueryAs<ISuperCollection>(target);
  if (!sourceCollection || (!targetSet && !targetCollection)) return E_NOINTERFACE;
  const CopySource from(sourceCollection.get());
  HRESULT result = S_FALSE;
  const int32_t n = CountOf(sourceCollection.get());
  for (int32_t i = 0; i < n; ++i) {
    CopiedItem item = ReadItemForCopy(from, i);
    int32_t position = -1;
    const bool present = item.name && SUCCEEDED(target->get_Index(item.name.get(), &position));
    if (!present && !(mode & kUpdateAddMissing)) continue;
    HRESULT stored = E_FAIL;
    if (targetSet) {
      stored = present ? targetSet->put_Item(position, item.object.get())
                       : targetSet->Add(item.name.get(), item.object.get(), item.descriptor.get(), item.flags);
    } else {
      stored = present ? targetCollection->put_Item(position, item.object.get())
                       : targetCollection->Add(item.name.get(), item.object.get(), item.descriptor.get(), item.flags);
    }
    if (SUCCEEDED(stored)) result = S_OK;
  }
  return result;
}
