// Interface identities derived from names, and the fixed identities.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

#include "identities.h"

namespace {

IID Bytes(std::array<unsigned char, 16> bytes) {
  IID iid{};
  for (int i = 0; i < 16; ++i) iid.bytes[i] = bytes[i];
  return iid;
}

std::string Hex(const IID& iid) {
  std::string text;
  char buffer[4];
  for (unsigned char b : iid.bytes) {
    std::snprintf(buffer, sizeof(buffer), "%02X ", b);
    text += buffer;
  }
  return text;
}

TEST(Identity, WorkedExamples) {
  struct Case {
    const char* name;
    std::array<unsigned char, 16> expected;
  } cases[] = {
      {"IString", {0x69, 0x52, 0x99, 0xDC, 0x01}},
      {"IObjectInfo", {0xE9, 0x09, 0x55, 0x06, 0x4D, 0xCE, 0x3C}},
      {"_ICollectionEvents", {0x3B, 0x8D, 0xC7, 0x58, 0x19, 0x34, 0x3D, 0x57, 0x6C, 0x71, 0x74, 0x02}},
  };
  for (const Case& c : cases) EXPECT_EQ(Hex(__IIDOfc(c.name)), Hex(Bytes(c.expected))) << c.name;
}

TEST(Identity, NamedConstantsUseTheRule) {
  EXPECT_EQ(Hex(IID_IString), Hex(__IIDOfc("IString")));
  EXPECT_EQ(Hex(IID__ICollectionEvents), Hex(__IIDOfc("_ICollectionEvents")));
  EXPECT_EQ(Hex(IID_IUISpreadSheet), Hex(__IIDOfc("IUISpreadSheet")));
}

TEST(Identity, FixedIdentities) {
  EXPECT_EQ(Hex(__IIDOfc("")), Hex(IID_NULL));
  EXPECT_EQ(Hex(IID_NULL), Hex(Bytes({})));
  EXPECT_EQ(Hex(IID_IUnknown), Hex(Bytes({0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46})));
  EXPECT_NE(IID_IUnknown, __IIDOfc("IUnknown"));
}

// Pairs of names that the rule maps to the same identity, and pairs it must tell apart.
TEST(Identity, Collisions) {
  struct Case {
    const char* a;
    const char* b;
    bool same;
  } cases[] = {
      {"IString", "ISTRING", true},                                        // case is ignored
      {"IString", "istring", true},
      {"I_X", "I9X", true},                                                // "_" and "9" share code 27
      {"I5X", "I-X", true},                                                // 5-9 and punctuation share it too
      {"ABCDEFGHIJKLMNOPQRSTUVWXY", "ABCDEFGHIJKLMNOPQRSTUVWXYZZZ", true},  // only 25 characters count
      {"ABCDEFGHIJKLMNOPQRSTUVWXY", "ABCDEFGHIJKLMNOPQRSTUVWXZ", false},   // the 25th still counts
      {"I0", "I1", false},                                                 // digits 0-4 have codes of their own
      {"I4", "I9", false},
      {"IString", "IStrinh", false},
  };
  for (const Case& c : cases) EXPECT_EQ(__IIDOfc(c.a) == __IIDOfc(c.b), c.same) << c.a << " vs " << c.b;
}

// "4" gives code 32, a sixth bit that lands on the lowest bit of the next code's position.
TEST(Identity, DigitFourSpillsIntoTheNextCode) {
  EXPECT_EQ(Hex(__IIDOfc("4")), Hex(Bytes({0x20})));
  EXPECT_EQ(__IIDOfc("4A"), __IIDOfc("4")) << "A (1) only sets the bit the 4 already set";
  EXPECT_EQ(__IIDOfc("4B"), __IIDOfc("4C")) << "B (2) and C (3) differ only in that bit";
  EXPECT_NE(__IIDOfc("3B"), __IIDOfc("3C")) << "3 (31) has no sixth bit";
}

TEST(Identity, StartupTableIsInOrder) {
  EXPECT_STREQ(kFrameworkInterfaceNames[0], "IBindableObject");
  EXPECT_STREQ(kFrameworkInterfaceNames[1], "ICollectionMoniker");
  constexpr size_t count = sizeof(kFrameworkInterfaceNames) / sizeof(kFrameworkInterfaceNames[0]);
  EXPECT_STREQ(kFrameworkInterfaceNames[count - 1], "IUISpreadSheet");
  EXPECT_STREQ(kFrameworkInterfaceNames[count - 2], "IFileArchiveDB");
}

}  // namespace
