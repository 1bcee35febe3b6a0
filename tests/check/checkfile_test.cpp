// Spoiled data files, each with all findings that it has.
#include "check/checkfile.h"

#include "support/datasets.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <sys/stat.h>
#include <vector>

using namespace kva;
using namespace kva_test;

namespace {

// A finding and its first place.
struct Expected {
    std::string code;
    int64_t row = 0;
    int64_t column = 0;
    std::string found = {};
    int64_t count = 1;
};

struct Spoiled {
    const char* name;
    std::string bytes;
    std::vector<Expected> expected; // all findings, in their order
};

// Header rows of two loci in two columns, repeat lengths 2 and 4; all alleles below fit.
const std::string kHead = "2 . . 2 . 4 .\n. . . 100 . 80 .\n. . . LocA LocA_2 LocB LocB_2\n";
const std::string kNorth = "North d 1 104 106 88 92\nNorth d 1 104 104 88 88\n";
const std::string kSouth = "South h 2 106 106 92 92\nSouth h 2 110 110 92 88\n";

// The same in two rows an individual.
const std::string kHead1 = "1 . . 2 4\n. . . 100 80\n. . . LocA LocB\n";
const std::string kNorth1 = "North d 1 104 88\nNorth d 1 106 92\n";
const std::string kSouth1 = "South h 2 106 92\nSouth h 2 106 88\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// A table of individual rows behind the whole file's head, with a row between North and South.
std::string withRow(const std::string& row) {
    return tabbed(kHead + kNorth + row + kSouth);
}

std::string whole() {
    return tabbed(kHead + kNorth + kSouth);
}

std::string wholeOneColumn() {
    std::string text = kHead1;
    text += kNorth1;
    return tabbed(text += kSouth1);
}

// A file whose rows of individuals, with a row of 200000 bytes among them, are longer than a block.
std::string withLongRow() {
    return tabbed(kHead + kNorth) + "East\td\t1\t104\t106\t88\t92\t" + std::string(200000, 'x') +
           "\n" + tabbed(kSouth);
}

// More loci than a row may have: 24973 in two columns.
std::string withManyLoci() {
    const std::string cells(2 * 24973 + 2, '\t');
    return "2" + cells + "\n" + cells + "\n" + cells + "\nNorth\td\t1\n";
}

std::vector<Spoiled> wholeFiles() {
    return {
        {"empty", "", {{"empty-file"}}},
        {"zip", std::string("PK\x03\x04\x14\0\x06\0", 8), {{"spreadsheet"}}},
        {"old spreadsheet", "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", {{"spreadsheet"}}},
        {"gzip", "\x1f\x8b\x08", {{"compressed"}}},
        {"UTF-16 with mark",
         std::string("\xff\xfe"
                     "2\0\t\0",
                     6),
         {{"utf-16"}}},
        {"UTF-16 without mark", std::string("2\0\t\0\t\0", 6), {{"utf-16"}}},
        {"byte-order mark",
         "\xef\xbb\xbf" + whole(),
         {{"byte-order-mark"}, {"refused", 1, 0, "found byte 239 as first byte"}}},
        {"no header", tabbed(kNorth), {{"refused", 1, 0, "found \"N\" as first byte"}}},
        {"head alone", tabbed(kHead), {{"refused", 4, 0, "found the end of the data"}}},
        {"four header rows",
         tabbed("2 . . 2 . 4 .\n. . . 100 . 80 .\n"
                ". . . LocA LocA_2 LocB LocB_2\n. . . x x x x\n" +
                kNorth),
         {{"refused", 4, 0, "found a tab as first byte, as in row 3"}}},
        {"NUL byte",
         tabbed(kHead + kNorth) + std::string("East\td\t1\t104\0\t106\n", 18) + tabbed(kSouth),
         // The row is cut behind 104: 4 of 7 cells, and the second allele of LocA is not there.
         // South is lost, so that LocB has alleles in North alone.
         {{"nul-byte", 6},
          {"row-short", 6, 0, "4 of 7 cells"},
          {"half-missing", 6, 5, "LocA"},
          {"locus-one-population", 3, 6, "LocB"}}},
        {"very long row",
         withLongRow(),
         {{"row-too-long", 6}, {"row-long", 6, 8, std::string(40, 'x') + "..."}}},
        {"many loci", withManyLoci(), {{"too-many-loci", 1, 0, "24973 loci"}}},
        {"no locus", tabbed("2 . .\n. . .\n. . .\nNorth d 1\n"), {{"no-locus", 1, 0, "3 cells"}}},
        {"two header rows, CR LF",
         replaced(tabbed("2 . . . .\n. . . LocA LocA_2\n"
                         "A d 1 104 106\nB d 2 104 104\n"),
                  "\n", "\r\n"),
         {{"crlf-two-headers", 1}, {"no-lengths"}}},
        {"stray CR",
         // The CR stands for the tab behind 104: rows of 4 and of 3 cells, the second of which has
         // 88 as its type and 92 as its group. 3 header rows and 5 others end in LF.
         withRow("East d 1 104\r106 88 92\n"),
         {{"mixed-line-ends", 6, 0, "8 LF, 0 CR LF, 1 CR"},
          {"group-gap", 0, 0, "group 3 is missing, the largest is 92"},
          {"row-short", 6, 0, "4 of 7 cells", 2},
          {"type-unknown", 7, 2, "88"},
          {"half-missing", 6, 5, "LocA"},
          {"individual-without-data", 7, 0, "population \"106\""}}},
    };
}

std::vector<Spoiled> separators() {
    return {
        {"commas",
         replaced(whole(), "\t", ","),
         {{"separator", 1, 0, "commas"}, {"refused", 1, 0, "found 1 cell"}}},
        {"semicolons",
         replaced(whole(), "\t", ";"),
         {{"separator", 1, 0, "semicolons"}, {"refused", 1, 0, "found 1 cell"}}},
        {"blanks",
         replaced(whole(), "\t", " "),
         {{"separator", 1, 0, "blanks"}, {"refused", 1, 0, "found 1 cell"}}},
        {"as few commas as a head has cells, the first byte among them",
         ",,,\n" + whole(),
         {{"separator", 1, 0, "commas"}, {"refused", 1, 0, "found \",\" as first byte"}}},
        {"a head by tabs, loci by commas",
         "2\t.\t.,LocA,LocB,LocC\n.\t.\t.\n.\t.\t.\nNorth\td\t1\n",
         {{"separator", 1, 0, "commas"}, {"no-locus", 1, 0, "3 cells"}}},
    };
}

std::vector<Spoiled> headers() {
    return {
        {"first cell",
         replaced(whole(), "2\t\t\t2", "2 columns\t\t\t2"),
         {{"columns-cell", 1, 1, "2 columns"}}},
        {"one column told, two there",
         tabbed("1 . . 2 2\n. . . 100 100\n. . . LocA LocA_2\n"
                "A d 1 104 106\nA d 1 104 104\nB d 2 106 106\nB d 2 104 104\n"),
         {{"columns-doubtful", 1, 1, "LocA, LocA_2"}}},
        {"surplus column", replaced(whole(), "4\t\n", "4\t\t\n"), {{"surplus-column", 1, 8}}},
        {"text before the names",
         // The row is read from its fourth byte on: "e", "Group" and so on.
         replaced(whole(), "\t\t\tLocA", "\tType\tGroup\tLocA"),
         {{"names-shifted", 3, 1, "?Type?Group?LocA?LocA_2?LocB?LocB_2"}}},
        {"a row of names that is no header row",
         // Row 2 stands as names, the names are an individual of population "Pop".
         replaced(whole(), "\t\t\tLocA", "Pop\tType\tGroup\tLocA"),
         {{"names-as-individual", 3, 1, "Pop?Type?Group?LocA?LocA_2?LocB?LocB_2"},
          {"locus-name-number", 2, 4, "100", 2},
          {"no-lengths"},
          {"second-name-missing", 2, 5, "", 2}}},
        {"an individual as names",
         tabbed("2 . . 2 .\n. . . 100 .\n. . . 104 106\nA d 1 104 106\nB d 2 104 106\n"),
         {{"individual-as-names", 3, 4, "104"}}},
        {"two header rows",
         tabbed("2 . . . .\n. . . LocA LocA_2\nA d 1 104 106\nB d 2 104 106\n"),
         {{"no-lengths"}}},
        {"repeat length", replaced(whole(), "\t4\t\n", "\t0\t\n"), {{"repeat-length", 1, 6, "0"}}},
        {"rest length", replaced(whole(), "\t80\t\n", "\t?\t\n"), {{"rest-length", 2, 6, "?"}}},
        {"length above the second column",
         replaced(whole(), "\t4\t\n", "\t\t4\n"),
         {{"length-column", 1, 7, "4"}}},
        {"no name", replaced(whole(), "LocB\tLocB_2", "\tLocB_2"), {{"locus-name-missing", 3, 6}}},
        {"no second name", replaced(whole(), "LocB_2", ""), {{"second-name-missing", 3, 7}}},
        {"a name twice",
         replaced(whole(), "LocB\t", "LocA\t"),
         {{"locus-name-twice", 3, 6, "LocA"}}},
        {"a number as name",
         replaced(whole(), "LocB\t", "88\t"),
         {{"locus-name-number", 3, 6, "88"}}},
    };
}

std::vector<Spoiled> populations() {
    return {
        {"two blocks",
         withRow("South h 2 106 106 92 92\nNorth d 1 104 106 88 92\n"),
         // South opens in row 6, North comes back in row 7, South in row 8.
         {{"split-population", 7, 1, "North", 2}}},
        {"small letters",
         withRow("north d 1 104 106 88 92\n"),
         {{"names-alike", 6, 1, "\"North\" and \"north\""}}},
        {"a blank behind a name",
         tabbed(kHead + kNorth) + "North \td\t1\t104\t106\t88\t92\n" + tabbed(kSouth),
         {{"names-alike", 6, 1, "\"North\" and \"North \""}}},
        {"no name of a population", withRow(". d 1 104 106 88 92\n"), {{"name-empty", 6, 1}}},
        {"a slash",
         withRow("North/East d 1 104 106 88 92\n"),
         {{"name-slash", 6, 1, "North/East"}}},
        {"a long name",
         withRow("NorthernEast d 1 104 106 88 92\n"),
         {{"name-long", 6, 1, "NorthernEast"}}},
        {"a name of ten bytes", withRow("NorthEasts d 1 104 106 88 92\n"), {}},
        {"names whose eleventh byte differs",
         withRow("NorthEastsA d 1 104 106 88 92\nNorthEastsB d 1 104 106 88 92\n"),
         {{"names-cut-alike", 7, 1, "\"NorthEastsA\" and \"NorthEastsB\""},
          {"name-long", 6, 1, "NorthEastsA", 2}}},
        {"names with one beginning",
         withRow("NorthernEast d 1 104 106 88 92\nNorthernEastB d 1 104 106 88 92\n"),
         {{"names-cut-alike", 7, 1, "\"NorthernEast\" and \"NorthernEastB\""},
          {"name-long", 6, 1, "NorthernEast", 2}}},
        {"one population", tabbed(kHead + kNorth), {{"one-population"}}},
        {"no group",
         withRow("East d . 104 106 88 92\n"),
         // The reader takes 104 as the group, so that group 3 is the first one missing.
         {{"group-empty", 6, 3}, {"group-gap", 0, 0, "group 3 is missing, the largest is 104"}}},
        {"a word as group", withRow("East d B 104 106 88 92\n"), {{"group-text", 6, 3, "B"}}},
        {"mixed groups",
         withRow("North d 2 104 106 88 92\n"),
         {{"group-mixed", 6, 3, "2 after 1"}}},
        {"groups 1, 2 and 4",
         withRow("East d 4 104 106 88 92\n"),
         {{"group-gap", 0, 0, "group 3 is missing, the largest is 4"}}},
    };
}

std::vector<Spoiled> rows() {
    return {
        {"empty line", withRow("\n"), {{"empty-line", 6}}},
        {"row of tabs",
         withRow(". . . . . . .\n"),
         // As in a row without a group the next number is taken, in the row below: 2.
         {{"empty-line", 6}}},
        {"short row", withRow("East d 1 104 106\n"), {{"row-short", 6, 0, "5 of 7 cells"}}},
        {"name alone",
         withRow("East\n"),
         {{"row-short", 6, 0, "1 of 7 cells"},
          {"individual-without-data", 6, 0, "population \"East\""}}},
        {"long row", withRow("East d 1 104 106 88 92 95\n"), {{"row-long", 6, 8, "95"}}},
        {"empty cells behind a row", withRow("East d 1 104 106 88 92 . .\n"), {}},
        {"odd rows",
         tabbed(kHead1 + kNorth1 + "North d 1 104 88\n" + kSouth1),
         {{"odd-rows", 6, 0, "population \"North\", 3 rows"}}},
        {"rows of a pair differ",
         tabbed(kHead1 + kNorth1 + kSouth1 + "East d 1 104 88\n" + "East h 1 104 88\n"),
         {{"pair-differs", 9, 2}}},
        {"type", withRow("East x 1 104 106 88 92\n"), {{"type-unknown", 6, 2, "x"}}},
        {"capital H", withRow("East H 1 104 106 88 92\n"), {{"type-unknown", 6, 2, "H"}}},
        {"no alleles",
         withRow("East d 1 . . . .\n"),
         {{"individual-without-data", 6, 0, "population \"East\""}}},
        {"no alleles in one column",
         tabbed(kHead1 + kNorth1 + kSouth1 + "East d 1 . .\nEast d 1 . .\n"),
         {{"individual-without-data", 9, 0, "population \"East\""}}},
    };
}

std::vector<Spoiled> cells() {
    return {
        {"decimal point", withRow("East d 1 104.5 106 88 92\n"), {{"decimal", 6, 4, "104.5"}}},
        {"decimal comma", withRow("East d 1 104,5 106 88 92\n"), {{"decimal", 6, 4, "104,5"}}},
        {"two alleles", withRow("East d 1 104 106 88/92 92\n"), {{"two-alleles", 6, 6, "88/92"}}},
        {"letters", withRow("East d 1 104 106 88b 92\n"), {{"letters", 6, 6, "88b"}}},
        {"quotes", withRow("East d 1 \"104\" \"106\" 88 92\n"), {{"quoted", 6, 4, "\"104\"", 2}}},
        {"large number",
         withRow("East d 1 104 2147483648 88 92\n"),
         {{"number-too-large", 6, 5, "2147483648"}}},
        {"signed zeros", withRow("East d 1 +0 +0 88 92\n"), {{"zero-missing", 6, 4, "+0", 2}}},
        {"text", withRow("East d 1 low low 88 92\n"), {{"text-missing", 6, 4, "low", 2}}},
        {"zero", withRow("East d 1 0 0 88 92\n"), {{"zero-allele", 6, 4, "0", 2}}},
        {"half an individual", withRow("East d 1 104 . 88 92\n"), {{"half-missing", 6, 5, "LocA"}}},
        {"the other half", withRow("East d 1 104 106 . 92\n"), {{"half-missing", 6, 6, "LocB"}}},
        {"half in one column",
         tabbed(kHead1 + kNorth1 + kSouth1 + "East d 1 104 88\nEast d 1 . 88\n"),
         {{"half-missing", 9, 4, "LocA"}}},
        {"word", withRow("East d 1 NA NA 88 92\n"), {{"word-missing", 6, 4, "NA", 2}}},
        {"negative", withRow("East d 1 -9 -9 88 92\n"), {{"negative-missing", 6, 4, "-9", 2}}},
        {"zeros in front", withRow("East d 1 104 106 088 92\n"), {{"leading-zeros", 6, 6, "088"}}},
    };
}

std::vector<Spoiled> loci() {
    return {
        // 9 of 10 copies at LocA are even.
        {"off the grid", withRow("East d 1 105 106 88 92\n"), {{"off-grid", 6, 4, "105"}}},
        // Two of four copies are even, two odd: no grid that an allele could be off.
        {"wrong repeat length",
         tabbed("2 . . 2 .\n. . . 100 .\n. . . L1 L1b\nA d 1 104 106\nB d 2 105 107\n"),
         {{"off-grid", 1, 4, "L1: repeat length 2 fits 2 of 4"}}},
        // 101 leaves 1 over 2, the alleles are even.
        {"rest off the grid",
         replaced(whole(), "\t100\t", "\t101\t"),
         {{"rest-off-grid", 2, 4, "LocA"}}},
        // Nothing is left over, the alleles are odd.
        {"rest of 0 off the grid",
         tabbed("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 1 105 107\nB d 2 105 109\n"),
         {{"rest-off-grid", 2, 4, "L1"}}},
        {"below the rest", withRow("East d 1 98 106 88 92\n"), {{"below-rest", 6, 4, "98"}}},
        {"no data at a locus",
         tabbed(kHead + "A d 1 104 106 . .\nB d 2 104 104 . .\n"),
         {{"locus-without-data", 3, 6, "LocB"}}},
        {"data in one population",
         tabbed(kHead + "A d 1 104 106 88 92\nB d 2 104 104 . .\n"),
         {{"locus-one-population", 3, 6, "LocB"}}},
    };
}

std::vector<Spoiled> allSpoiled() {
    std::vector<Spoiled> all;
    for (const auto& part :
         {wholeFiles(), separators(), headers(), populations(), rows(), cells(), loci()}) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

std::string shown(const Expected& expected) {
    return expected.code + " row " + std::to_string(expected.row) + " column " +
           std::to_string(expected.column) + " (" + expected.found + ") x" +
           std::to_string(expected.count) + "\n";
}

// The findings as the table above writes them.
std::string findingsOf(const CheckReport& report) {
    std::string text;
    for (const Finding& finding : report.findings) {
        const Place& first = finding.places.front();
        text +=
            shown({kindOf(finding.code).name, first.row, first.column, first.found, finding.count});
    }
    return text;
}

CheckReport checkBytes(const std::string& bytes) {
    const TempFolder folder;
    writeFile(folder / "data.txt", bytes);
    return checkFile((folder / "data.txt").string());
}

// GoogleTest shows the name, not the bytes.
[[maybe_unused]] void PrintTo(const Spoiled& spoiled, std::ostream* out) {
    *out << spoiled.name;
}

class SpoiledFile : public testing::TestWithParam<Spoiled> {};

} // namespace

TEST_P(SpoiledFile, HasItsFindingsAndNoOthers) {
    std::string expected;
    for (const Expected& finding : GetParam().expected) {
        expected += shown(finding);
    }
    EXPECT_EQ(findingsOf(checkBytes(GetParam().bytes)), expected);
}

INSTANTIATE_TEST_SUITE_P(CheckFile, SpoiledFile, testing::ValuesIn(allSpoiled()),
                         [](const auto& row) {
                             std::string name;
                             for (const char c : std::string(row.param.name)) {
                                 name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
                             }
                             return name + "_" + std::to_string(row.index);
                         });

TEST(CheckFile, EachKindOfFindingHasASpoiledFile) {
    std::set<std::string> found;
    for (const Spoiled& spoiled : allSpoiled()) {
        for (const Expected& expected : spoiled.expected) {
            found.insert(expected.code);
        }
    }
    for (const FindingKind& kind : allFindingKinds()) {
        EXPECT_EQ(found.count(kind.name), 1U) << kind.name;
    }
    EXPECT_GE(allSpoiled().size(), 30U);
}

TEST(CheckFile, WholeFilesHaveNoFinding) {
    for (const std::string& bytes :
         {whole(), wholeOneColumn(), replaced(whole(), "\n", "\r\n"), replaced(whole(), "\n", "\r"),
          whole() + "\n\n", whole() + "  \n"}) {
        const CheckReport report = checkBytes(bytes);
        EXPECT_EQ(findingsOf(report), "") << bytes;
        EXPECT_TRUE(report.read);
        EXPECT_EQ(report.summary.individuals, bytes.front() == '2' ? 4 : 2);
    }
}

TEST(CheckFile, FindingsAreCountedBySeverity) {
    const CheckReport report = checkBytes(withRow("East x 1 104.5 106.5 088 92\n"));
    EXPECT_EQ(report.errors, 2);   // two decimals
    EXPECT_EQ(report.warnings, 1); // the type
    EXPECT_EQ(report.notes, 1);    // the zero in front
}

TEST(CheckFile, ConsoleStaysSilent) {
    const TempFolder folder;
    writeFile(folder / "data.txt", whole());
    writeFile(folder / "bad.txt", "x");
    StdoutCapture console;
    checkFile((folder / "data.txt").string());
    checkFile((folder / "bad.txt").string());
    EXPECT_EQ(console.text(), "");
}

TEST(CheckFile, WhatIsNoFileIsAFailure) {
    const TempFolder folder;
    EXPECT_EQ(checkFile((folder / "none").string()).failure, "No such file or directory");
    EXPECT_EQ(checkFile(folder.path().string()).failure, "it is a folder");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(checkFile((folder / "pipe").string()).failure, "it is no file on a disk");
    EXPECT_EQ(checkFile(std::string(1024, 'x')).failure,
              "the name is longer than 1023 bytes, which kva does not open");
}
