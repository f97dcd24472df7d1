// The text that replaces a tag.
#include "textparser/item_text.h"

#include "strings/conversions.h"

namespace {

// Inquire code of a file archive's loaded marker (0: not loaded yet).
constexpr int32_t kArchiveLoadedMarker = 1;

void AppendText(IString* text, std::wstring& out) {
  const wchar_t* buffer = nullptr;
  int32_t length = 0;
  if (!text || FAILED(text->GetBuffer(&buffer, &length)) || !buffer || length <= 0) return;
  out.append(buffer, static_cast<size_t>(length));
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
