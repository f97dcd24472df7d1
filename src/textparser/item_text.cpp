// The text that replaces a tag.
#include "textparser/item_text.h"

#include "parameters/folded_name.h"
#include "strings/conversions.h"

namespace {

// Inquire code of a file archive's loaded marker (0: not loaded yet).
constexpr int32_t kArchiveLoadedMarker = 1;

void AppendText(IString* text, std::wstring& out) {
  const tagREFString view = NameTextOf(text);
  if (view.length > 0) out.append(view.text, static_cast<size_t>(view.length));
}

// A file archive's text is read on first use.
void LoadIfNotLoaded(IUnknown* item) {
  SmartPtr<IFileArchive> archive = QueryAs<IFileArchive>(item);
  if (!archive) return;
  int32_t loaded = 1;
  if (SUCCEEDED(archive->Inquire(kArchiveLoadedMarker, &loaded)) && loaded == 0) archive->Load();
}

}  // namespace

void AppendItemText(IUnknown* item, std::wstring& out) {
  if (!item) return;
  if (SmartPtr<IString> text = QueryAs<IString>(item)) {
    LoadIfNotLoaded(item);
    AppendText(text.get(), out);
    return;
  }
  if (SmartPtr<IVariant> value = QueryAs<IVariant>(item)) {
    SmartPtr<IString> text = SmartPtr<IString>::Adopt(ISCreate(value.get()));
    AppendText(text.get(), out);
  }
}
