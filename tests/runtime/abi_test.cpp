// Binary interface checks: interface identities derived from names, record layouts per platform, the ELF files
// of the built modules, and the symbols they export.
#include <elf.h>
#include <link.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "identities.h"
#include "module_entry.h"
#include "module_interfaces.h"
#include "test_support.h"

namespace {

// What the binaries of each supported platform must look like.
struct PlatformLayout {
  unsigned char elfClass;
  uint16_t machine;
  uint32_t requiredFlags;  // e_flags bits every module must carry
};

#if defined(__arm__)
// The home platform: 32-bit ARM, hard-float procedure-call standard.
#if !defined(__ARM_PCS_VFP)
#error "the ARM build must use the hard-float calling convention"
#endif
static_assert(sizeof(void*) == 4 && sizeof(long) == 4);
static_assert(sizeof(tagREFString) == 8 && offsetof(tagREFString, text) == 4);
static_assert(sizeof(PARAMETEROBJECT) == 16 && offsetof(PARAMETEROBJECT, Flags) == 12);
constexpr PlatformLayout kPlatform{ELFCLASS32, EM_ARM, EF_ARM_ABI_FLOAT_HARD};
#elif defined(__x86_64__)
static_assert(sizeof(void*) == 8 && sizeof(long) == 8);
static_assert(sizeof(tagREFString) == 16 && offsetof(tagREFString, text) == 8);
static_assert(sizeof(PARAMETEROBJECT) == 32 && offsetof(PARAMETEROBJECT, Flags) == 24);
constexpr PlatformLayout kPlatform{ELFCLASS64, EM_X86_64, 0};
#else
#error "add this platform's expected layout"
#endif

std::string ModulePath(const std::string& module) { return "./_binlinux/" + module + ".so"; }

template <class T>
bool ReadAt(std::ifstream& file, uint64_t offset, T* out, size_t count = 1) {
  file.seekg(static_cast<std::streamoff>(offset));
  file.read(reinterpret_cast<char*>(out), static_cast<std::streamsize>(sizeof(T) * count));
  return static_cast<bool>(file);
}

// Reads the ELF header and the exported symbols (defined, global or weak, visible from outside; sorted) as the
// dynamic loader sees them; false when the file is not an ELF image.
bool ReadElfImage(const std::string& path, ElfW(Ehdr)* header, std::vector<std::string>* exported) {
  std::ifstream file(path, std::ios::binary);
  if (!ReadAt(file, 0, header) || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 ||
      header->e_ident[EI_CLASS] != kPlatform.elfClass)
    return false;
  std::vector<ElfW(Shdr)> sections(header->e_shnum);
  if (sections.empty() || !ReadAt(file, header->e_shoff, sections.data(), sections.size())) return false;
  for (const ElfW(Shdr)& section : sections) {
    if (section.sh_type != SHT_DYNSYM || section.sh_link >= sections.size()) continue;
    const ElfW(Shdr)& names = sections[section.sh_link];
    std::vector<ElfW(Sym)> symbols(section.sh_size / sizeof(ElfW(Sym)));
    std::string strings(names.sh_size, '\0');
    if (!ReadAt(file, section.sh_offset, symbols.data(), symbols.size()) ||
        !ReadAt(file, names.sh_offset, strings.data(), strings.size()))
      return false;
    for (const ElfW(Sym)& symbol : symbols) {
      // Binding and visibility are encoded alike in both ELF classes.
      const unsigned bind = ELF32_ST_BIND(symbol.st_info);
      const unsigned visibility = ELF32_ST_VISIBILITY(symbol.st_other);
      const bool visible = bind == STB_GLOBAL || bind == STB_WEAK || bind == STB_GNU_UNIQUE;
      if (symbol.st_shndx == SHN_UNDEF || !visible || (visibility != STV_DEFAULT && visibility != STV_PROTECTED))
        continue;
      if (symbol.st_name >= strings.size()) return false;
      exported->emplace_back(strings.c_str() + symbol.st_name);
    }
  }
  std::sort(exported->begin(), exported->end());
  return true;
}

// Each module is built for this platform and exports exactly its two entry points.
TEST(ModuleBinaries, AreBuiltForThisPlatformAndExportOnlyTheEntryPoints) {
  std::vector<std::string> entryPoints = {kInitializeModuleSymbol, kCreateFunctionSymbol};
  std::sort(entryPoints.begin(), entryPoints.end());
  for (const char* module : {"Parameters", "Collections", "CollectionsEx"}) {
    SCOPED_TRACE(module);
    ElfW(Ehdr) header{};
    std::vector<std::string> exported;
    ASSERT_TRUE(ReadElfImage(ModulePath(module), &header, &exported));
    EXPECT_EQ(header.e_type, ET_DYN);
    EXPECT_EQ(header.e_machine, kPlatform.machine);
    EXPECT_EQ(header.e_flags & kPlatform.requiredFlags, kPlatform.requiredFlags);
    EXPECT_EQ(exported, entryPoints) << "InitializeModule has C++ linkage: only its decorated name exists";
  }
}

std::string Hex(const IID& iid) { return test_support::HexOf(iid.bytes, sizeof(iid.bytes)); }

// The worked examples, and the named constants made by the same rule.
TEST(Identity, WorkedExamples) {
  struct Case { const char* name; const IID* constant; const char* bytes; } cases[] = {
      {"IString", &IID_IString, " 69 52 99 DC 01 00 00 00 00 00 00 00 00 00 00 00"},
      {"IObjectInfo", &IID_IObjectInfo, " E9 09 55 06 4D CE 3C 00 00 00 00 00 00 00 00 00"},
      {"_ICollectionEvents", &IID__ICollectionEvents, " 3B 8D C7 58 19 34 3D 57 6C 71 74 02 00 00 00 00"},
      {"", &IID_NULL, " 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
      // "4" gives code 32: a sixth bit, the lowest bit of the next code's position.
      {"4", nullptr, " 20 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Hex(__IIDOfc(c.name)), c.bytes) << c.name;
    EXPECT_EQ(Hex(c.constant ? *c.constant : __IIDOfc(c.name)), c.bytes) << c.name << "'s constant";
  }
  EXPECT_EQ(Hex(IID_IUnknown), " 00 00 00 00 00 00 00 00 C0 00 00 00 00 00 00 46") << "the standard value";
}

// Pairs of names that the rule maps to the same identity, and pairs it must tell apart.
TEST(Identity, Collisions) {
  struct Case { const char* a; const char* b; bool same; } cases[] = {
      {"IString", "ISTRING", true},                                        // case is ignored
      {"IString", "istring", true},
      {"I_X", "I9X", true},                                                // "_" and "9" share code 27
      {"I5X", "I-X", true},                                                // 5-9 and punctuation share it too
      {"ABCDEFGHIJKLMNOPQRSTUVWXY", "ABCDEFGHIJKLMNOPQRSTUVWXYZZZ", true},  // only 25 characters count
      {"ABCDEFGHIJKLMNOPQRSTUVWXY", "ABCDEFGHIJKLMNOPQRSTUVWXZ", false},   // the 25th still counts
      {"I0", "I1", false},                                                 // digits 0-4 have codes of their own
      {"I4", "I9", false}, {"IString", "IStrinh", false},
      {"4A", "4", true},    // A (1) only sets the bit the 4 already set
      {"4B", "4C", true},   // B (2) and C (3) differ only in that bit
      {"3B", "3C", false},  // 3 (31) has no sixth bit
  };
  for (const Case& c : cases) EXPECT_EQ(__IIDOfc(c.a) == __IIDOfc(c.b), c.same) << c.a << " vs " << c.b;
}

}  // namespace
