// Shared setup of the fuzz targets: the build folder as working directory,
// empty settings, the modules loaded before the first input, and the turning
// of fuzz bytes into wide text and scratch files.
//
// The targets link the module's code (paramcore) statically for the functions
// they call directly and create every class by name, as a host does; the
// framework then loads Parameters.so and the stand-in siblings with dlopen.
// The fuzz build instruments all of them, so libFuzzer sees the coverage of
// every module. Loading them in LLVMFuzzerInitialize registers their counters
// before the first input runs.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "runtime/module_loader.h"
#include "runtime/object.h"
#include "strings/ref_string.h"

namespace fuzz_support {

// Every class a target creates, so that each module is loaded once up front.
inline void LoadModules() {
  const wchar_t* classes[] = {L"Expression", L"XMLStream", L"GlobalComponentCollection"};
  for (const wchar_t* name : classes) {
    SmartPtr<IUnknown> object = CreateObjectAs<IUnknown>(name);
    (void)object;
  }
}

// Runs the target from the build folder ("./_binlinux/" resolves there), with
// the settings store reading a file that does not exist.
inline void Initialize() {
  if (chdir(PARAMS_FUZZ_BUILD_DIR) != 0) std::abort();
  setenv("PARAMS_SETTINGS", PARAMS_FUZZ_BUILD_DIR "/fuzz-no-settings.ini", 1);
  LoadModules();
}

// Each byte as one character, so every byte value reaches the parsers.
inline std::wstring WideOf(const uint8_t* data, size_t size) { return std::wstring(data, data + size); }
inline std::wstring WideOf(const std::string& bytes) {
  return WideOf(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

inline tagREFString Ref(const std::wstring& text) { return {static_cast<int32_t>(text.size()), text.c_str()}; }

inline SmartPtr<ICreatableString> MakeString(const std::wstring& text) {
  SmartPtr<ICreatableString> result = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  if (result) result->SetText(Ref(text));
  return result;
}

// A file of this process holding exactly `data`; its name as the file functions take it.
inline std::string WriteScratch(const uint8_t* data, size_t size, const char* extension) {
  std::string path = "/tmp/params-fuzz-" + std::to_string(getpid()) + extension;
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (fd < 0) std::abort();
  for (size_t done = 0; done < size;) {
    ssize_t written = write(fd, data + done, size - done);
    if (written <= 0) std::abort();
    done += static_cast<size_t>(written);
  }
  close(fd);
  return path;
}

}  // namespace fuzz_support
