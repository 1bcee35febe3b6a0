#include "imports/importtext.h"

#include "importsupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kva;
using namespace kva_test;
using testing::HasSubstr;
using testing::StartsWith;

TEST(ImportFormat, EachIsFoundByItself) {
    const struct {
        const char* name;
        const char* text;
    } kTexts[] = {
        {"genepop", "t\nLocA\nPop\nN, 0101\n"},
        {"genalex", "1,1,1,1\nt\nSample,Pop,LocA,\nN1,N,1,1\n"},
        {"long", "ind\tpop\tlocus\tallele1\tallele2\n1\tN\tL\t1\t1\n"},
        {"fstat", "1 1 9 1\nLocA\n1 11\n"},
        {"genetix", "1\n1\nLocA\n2 104 106\nN\n1\nN1 104106\n"},
        {"structure", "LocA\nN1 1 104\nN1 1 106\n"},
    };
    for (const auto& row : kTexts) {
        EXPECT_STREQ(importFormatOf(row.text, "").name, row.name);
    }
    EXPECT_EQ(std::size(kTexts), allImportFormats().size());
}

TEST(ImportFormat, UnknownFormatsAreRefused) {
    EXPECT_THAT(rowsOf("hello world\n", ""), StartsWith("data: it looks like none of the known"));
    EXPECT_THAT(rowsOf("", ""), StartsWith("data: it holds no text"));
    EXPECT_THAT(rowsOf("x", "genpop"), HasSubstr("option: unknown format 'genpop', the nearest"));
    EXPECT_THAT(rowsOf(std::string("PK\x03\x04"), ""), StartsWith("data: it is no plain text"));
    EXPECT_THAT(rowsOf(std::string("a\0b", 3), "long"), StartsWith("data: it is no plain text"));
}

TEST(DataFileOf, HeaderRowsHoldLengthsAndNames) {
    Genotypes data;
    data.loci = {"LocA", "LocB"};
    data.populations = {"North", "South"};
    data.individuals = {{"S1", 1, true, {{104, 104}, {kNoAllele, kNoAllele}}},
                        {"N1", 0, false, {{104, 106}, {0, kNoAllele}}}};
    // Repeat 2 and rest 100 at LocA, nothing known of LocB; the populations in their order.
    EXPECT_EQ(dataFileOf(data, {{2, 100}, {-1, -1}}), "2\t\t\t2\t\t\t\n"
                                                      "\t\t\t100\t\t\t\n"
                                                      "\t\t\tLocA\tLocA_2\tLocB\tLocB_2\n"
                                                      "North\td\t0\t104\t106\t0\t\n"
                                                      "South\th\t0\t104\t104\t\t\n");
}

TEST(DataFileOf, RowsThatTheReaderCannotHoldAreRefused) {
    Genotypes data;
    data.loci = {std::string(100000, 'x')};
    data.populations = {"N"};
    data.individuals = {{"", 0, false, {{1, 1}}}};
    EXPECT_THROW(dataFileOf(data, {{2, 0}}), ImportRefusal);
    data.loci = {"L"};
    data.populations = {std::string(200000, 'x')};
    EXPECT_THROW(dataFileOf(data, {{2, 0}}), ImportRefusal);
}

TEST(ImportText, NamesWithControlCharactersAreRefused) {
    EXPECT_THAT(rowsOf("ind,pop,locus,allele1,allele2\n1,\"a\tb\",L,1,1\n", "long"),
                HasSubstr("holds a tab or another control character"));
    EXPECT_THAT(rowsOf("ind,pop,locus,allele1,allele2\n1,a,,1,1\n", "long"),
                HasSubstr("the name '' of a locus is empty"));
}

TEST(CheckSize, TooManyLociOrGenotypesAreRefused) {
    EXPECT_NO_THROW(checkSize(1000, 20000));
    EXPECT_THROW(checkSize(1, 24973), ImportRefusal); // two columns hold 24972 loci
    EXPECT_THROW(checkSize(1, 1000000000), ImportRefusal);
    EXPECT_THROW(checkSize(20001, 10000), ImportRefusal);
}
