// Fuzz target: FileArchiveLoad on a file of arbitrary bytes, in every text mode and with a byte limit.
#include "archive/file_archive_io.h"
#include "fuzz_support.h"

using namespace fuzz_support;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::wstring name = WideOf(WriteScratch(data, size, ".dat"));
  for (int16_t mode : {kFileLoadBytes, kFileLoadText, kFileLoadStrictText}) {
    for (int32_t maxBytes : {0, static_cast<int32_t>(size / 2) + 1}) {
      void* loaded = nullptr;
      unsigned int length = 0;
      FileArchiveLoad(Ref(name), &loaded, &length, mode, maxBytes);
      FileArchiveFree(loaded);
    }
  }
  return 0;
}
