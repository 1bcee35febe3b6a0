// Known answers of Philox4x32-10: those that its authors give with their generator (kat_vectors of
// Random123).
#include "fstat/philox.h"

#include <gtest/gtest.h>

using namespace kva;

TEST(Philox, KnownAnswers) {
    EXPECT_EQ(philox({0, 0, 0, 0}, {0, 0}),
              (PhiloxBlock{0x6627e8d5, 0xe169c58d, 0xbc57ac4c, 0x9b00dbd8}));
    EXPECT_EQ(philox({0xffffffff, 0xffffffff, 0xffffffff, 0xffffffff}, {0xffffffff, 0xffffffff}),
              (PhiloxBlock{0x408f276d, 0x41c83b0e, 0xa20bc7c6, 0x6d5451fd}));
    EXPECT_EQ(philox({0x243f6a88, 0x85a308d3, 0x13198a2e, 0x03707344}, {0xa4093822, 0x299f31d0}),
              (PhiloxBlock{0xd16cfe09, 0x94fdcceb, 0x5001e420, 0x24126ea1}));
}
