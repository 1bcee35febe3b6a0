#include "base/nearestword.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace kva;

namespace {

const std::vector<std::string> kKnown = {"genepop", "structure", "fstat", "genalex", "long"};

} // namespace

TEST(NearestWord, OneChangeFindsTheWord) {
    EXPECT_EQ(nearestWord("genpop", kKnown), "genepop");   // a letter less
    EXPECT_EQ(nearestWord("genepopp", kKnown), "genepop"); // a letter more
    EXPECT_EQ(nearestWord("fstet", kKnown), "fstat");      // another letter
    EXPECT_EQ(nearestWord("lnog", kKnown), "long");        // neighbours swapped
}

TEST(NearestWord, SwappedNeighboursAreOneChange) {
    // "ab" to "ba": one swap; to "cd": two other letters, to "xab" one letter more. The first of
    // the two that take one change stands.
    EXPECT_EQ(nearestWord("ab", {"cd", "ba", "xab"}), "ba");
    EXPECT_EQ(nearestWord("ab", {"cd", "xab", "ba"}), "xab");
}

TEST(NearestWord, CapitalsCountAsSmallLetters) {
    EXPECT_EQ(nearestWord("STRUCTURE", kKnown), "structure");
    EXPECT_EQ(nearestWord("dan", {"CAS", "DAN"}), "DAN");
}

TEST(NearestWord, FarWordsAndNoneHaveANearestToo) {
    EXPECT_EQ(nearestWord("", kKnown), "long"); // four letters more, the shortest
    EXPECT_EQ(nearestWord("zzzz", {"abc"}), "abc");
    EXPECT_EQ(nearestWord("word", {}), "");
}

TEST(NearestWord, LongWordsAreComparedByTheirBeginning) {
    EXPECT_EQ(nearestWord(std::string(1000000, 'x'), {"y", std::string(64, 'x')}),
              std::string(64, 'x'));
}

TEST(UnknownWord, TellsTheWordTheNearestAndAllKnown) {
    EXPECT_EQ(unknownWord("format", "genpop", {"genepop", "long"}),
              "unknown format 'genpop', the nearest known one is 'genepop' (known: genepop, long)");
}

TEST(UnknownWord, KnownWordsAreEmpty) {
    EXPECT_EQ(unknownWord("format", "long", kKnown), "");
    EXPECT_NE(unknownWord("format", "Long", kKnown), "");
}
