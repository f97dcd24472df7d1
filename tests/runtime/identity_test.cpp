// Interface identities derived from names, and the fixed identities.
#include <gtest/gtest.h>

#include <string>

#include "identities.h"
#include "test_support.h"

namespace {

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
      {"I4", "I9", false},
      {"IString", "IStrinh", false},
      {"4A", "4", true},    // A (1) only sets the bit the 4 already set
      {"4B", "4C", true},   // B (2) and C (3) differ only in that bit
      {"3B", "3C", false},  // 3 (31) has no sixth bit
  };
  for (const Case& c : cases) EXPECT_EQ(__IIDOfc(c.a) == __IIDOfc(c.b), c.same) << c.a << " vs " << c.b;
}

}  // namespace
