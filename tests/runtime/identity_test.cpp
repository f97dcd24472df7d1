// Interface identities derived from names, and the fixed identities.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "identities.h"
#include "test_support.h"

namespace {

std::string Hex(const IID& iid) { return test_support::HexOf(iid.bytes, sizeof(iid.bytes)); }

// The hexadecimal form of 16 bytes given as a list (missing ones are zero).
std::string HexOfBytes(const std::array<unsigned char, 16>& bytes) { return test_support::HexOf(bytes.data(), 16); }

// The worked examples, and the named constants made by the same rule.
TEST(Identity, WorkedExamples) {
  struct Case {
    const char* name;
    const IID* constant;
    std::array<unsigned char, 16> expected;
  } cases[] = {
      {"IString", &IID_IString, {0x69, 0x52, 0x99, 0xDC, 0x01}},
      {"IObjectInfo", &IID_IObjectInfo, {0xE9, 0x09, 0x55, 0x06, 0x4D, 0xCE, 0x3C}},
      {"_ICollectionEvents", &IID__ICollectionEvents,
       {0x3B, 0x8D, 0xC7, 0x58, 0x19, 0x34, 0x3D, 0x57, 0x6C, 0x71, 0x74, 0x02}},
      {"", &IID_NULL, {}},
      {"4", nullptr, {0x20}},  // "4" gives code 32: a sixth bit, the lowest bit of the next code's position
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Hex(__IIDOfc(c.name)), HexOfBytes(c.expected)) << c.name;
    EXPECT_EQ(Hex(c.constant ? *c.constant : __IIDOfc(c.name)), HexOfBytes(c.expected)) << c.name << "'s constant";
  }
  EXPECT_EQ(Hex(IID_IUISpreadSheet), Hex(__IIDOfc("IUISpreadSheet")));
  EXPECT_EQ(Hex(IID_IUnknown), HexOfBytes({0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46}));
  EXPECT_NE(IID_IUnknown, __IIDOfc("IUnknown")) << "the standard value, not a derived one";
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
      {"4A", "4", true},    // A (1) only sets the bit the 4 already set
      {"4B", "4C", true},   // B (2) and C (3) differ only in that bit
      {"3B", "3C", false},  // 3 (31) has no sixth bit
  };
  for (const Case& c : cases) EXPECT_EQ(__IIDOfc(c.a) == __IIDOfc(c.b), c.same) << c.a << " vs " << c.b;
}

TEST(Identity, StartupTableIsInOrder) {
  constexpr size_t count = sizeof(kFrameworkInterfaceNames) / sizeof(kFrameworkInterfaceNames[0]);
  EXPECT_EQ(std::string(kFrameworkInterfaceNames[0]) + " " + kFrameworkInterfaceNames[1] + " ... " +
                kFrameworkInterfaceNames[count - 2] + " " + kFrameworkInterfaceNames[count - 1],
            "IBindableObject ICollectionMoniker ... IFileArchiveDB IUISpreadSheet");
}

}  // namespace
