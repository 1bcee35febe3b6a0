#include "check/findings.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace kva {

namespace {

using Code = FindingCode;
constexpr Severity kError = Severity::Error;
constexpr Severity kWarning = Severity::Warning;
constexpr Severity kNote = Severity::Note;

// clang-format off
constexpr FindingKind kKinds[] = {
    {Code::EmptyFile, "empty-file", kError, "the file is empty",
     "There is nothing to read; a run writes sheets with heads alone.",
     "Save the data again as tab-delimited text."},
    {Code::Spreadsheet, "spreadsheet", kError, "a spreadsheet or a zip, not text",
     "The file is refused; a run writes sheets with heads alone.",
     "Open it in the spreadsheet program and save it as tab-delimited text."},
    {Code::Compressed, "compressed", kError, "a compressed file",
     "The file is refused; a run writes sheets with heads alone.",
     "Unpack it first."},
    {Code::Utf16, "utf-16", kError, "text in UTF-16, two bytes a character",
     "The file is refused, or read to its first character alone.",
     "Save it as plain text or as UTF-8 without a byte-order mark."},
    {Code::ByteOrderMark, "byte-order-mark", kError, "a byte-order mark in front of the text",
     "The file is refused: its first byte must be 1 or 2.",
     "Save it as plain text or as UTF-8 without a byte-order mark."},
    {Code::OtherSeparator, "separator", kError, "cells are not separated by tabs",
     "A row without tabs is one cell: the file is refused, or has no locus.",
     "Save it as tab-delimited text, not as CSV."},
    {Code::Refused, "refused", kError, "the file is refused",
     "A run writes sheets with heads alone.",
     "Mend what is told of it, or compare its header rows with docs/file-formats.md."},
    {Code::NulByte, "nul-byte", kError, "a NUL byte",
     "Reading ends there: this row is cut and the rows behind it are lost.",
     "Remove the byte, or save the file again as plain text."},
    {Code::RowTooLong, "row-too-long", kError, "a row of 200000 bytes or more",
     "Reading ends there: this row is cut and the rows behind it are lost.",
     "Shorten the row, or divide the loci among several files."},
    {Code::TooManyLoci, "too-many-loci", kError, "more loci than a row can hold",
     "No individual is read.",
     "Divide the loci among several files."},
    {Code::NoLocus, "no-locus", kError, "the first row names no locus",
     "The sheets hold their heads alone.",
     "Give row 1 a cell for each column of the table; the cells may be empty."},
    {Code::CrLfTwoHeaders, "crlf-two-headers", kError, "two header rows and CR LF line ends",
     "Names of loci and the first individuals are misaligned. The other findings are told as if the "
     "lines ended in LF.",
     "Save it with LF line ends, or add the header row of rest lengths."},
    {Code::MixedLineEnds, "mixed-line-ends", kWarning, "different line ends in one file",
     "Each of LF, CR LF and CR ends a row: a stray CR within a row divides it in two.",
     "Save it with one kind of line end."},
    {Code::ColumnsCell, "columns-cell", kWarning, "the first cell is more than 1 or 2",
     "Only its first character counts, as the columns per locus.",
     "Write 1 or 2 alone."},
    {Code::ColumnsDoubtful, "columns-doubtful", kWarning,
     "one column per locus is told, but the names stand in pairs",
     "Each column is taken as a locus of its own, and each two rows as an individual.",
     "Write 2 into the first cell if a locus has two columns."},
    {Code::SurplusColumn, "surplus-column", kWarning, "the last column makes no whole locus",
     "With two columns per locus it is left out.",
     "Look whether a column too many stands behind the group, as names of individuals do; else "
     "remove the last column, or add its partner in row 1."},
    {Code::NamesShifted, "names-shifted", kError, "text in front of the names of the loci",
     "The row of names is read from its fourth byte on, so that the names shift.",
     "Leave the first three cells of the row of names empty."},
    {Code::NamesAsIndividual, "names-as-individual", kError,
     "a row of names is read as an individual",
     "Its first cell is a population, its names are missing alleles, and the header rows are "
     "counted as two.",
     "Leave the first three cells of the row of names empty."},
    {Code::IndividualAsNames, "individual-as-names", kWarning,
     "the names of the loci are all numbers",
     "A row 3 that begins with an empty cell is the row of names, whatever it holds.",
     "Give each individual the name of its population, and the loci names."},
    {Code::NoLengths, "no-lengths", kNote, "two header rows: repeat lengths are unknown",
     "Values in repeats read \"n.d.\", steps are guessed from the alleles.",
     "Add the row of rest lengths and the repeat lengths in row 1 if you know them."},
    {Code::RepeatLength, "repeat-length", kWarning, "a repeat length that is no number above 0",
     "It is read up to what is no digit, or unknown: values in repeats change or read \"n.d.\".",
     "Write a whole number of base pairs above the first column of the locus."},
    {Code::RestLength, "rest-length", kNote,
     "a rest length that is empty, or no number of 0 or more",
     "It is read up to what is no digit, or unknown: numbers of repeats of an allele read \"n.d.\".",
     "Nothing, if you do not know it; else write a whole number of base pairs above the first "
     "column of the locus."},
    {Code::LengthColumn, "length-column", kWarning,
     "a length stands above the second column of its locus alone",
     "Only the one above the first column is read: the length is unknown.",
     "Move it one column to the left; where each locus has it, look whether a column too many "
     "stands behind the group."},
    {Code::LocusNameMissing, "locus-name-missing", kWarning, "a locus without a name",
     "Its cells in the sheets have no head.",
     "Write a name above the first column of the locus."},
    {Code::SecondNameMissing, "second-name-missing", kNote, "a second column without a name",
     "Heads with both names of a locus have an empty cell there.",
     "Write a name above both columns of the locus."},
    {Code::LocusNameTwice, "locus-name-twice", kWarning, "two loci of one name",
     "They cannot be told apart in the sheets. Merged with another data set only one of them counts.",
     "Give each locus a name of its own."},
    {Code::LocusNameNumber, "locus-name-number", kWarning, "the name of a locus is a number",
     "A row of lengths or an individual may be taken as the row of names.",
     "Look whether there are as many header rows as you think."},
    {Code::SplitPopulation, "split-population", kError,
     "the rows of one population stand in several blocks",
     "Each block is a population of its own: sizes, frequencies and distances are those of the parts, "
     "and files that carry the name overwrite each other.",
     "Sort the rows by population."},
    {Code::NamesAlike, "names-alike", kWarning,
     "names of populations that differ in capitals or blanks alone",
     "They are two populations.",
     "Write the name in one way if it is one population."},
    {Code::NameEmpty, "name-empty", kWarning, "a population without a name",
     "It is a population of its own, and files that carry its name have a gap there.",
     "Write the name of the population into the first cell."},
    {Code::NameSlash, "name-slash", kWarning, "a \"/\" in the name of a population",
     "In names of files it reads \"_\", and populations that differ in that alone share files.",
     "Write the name without \"/\"."},
    {Code::NameLong, "name-long", kNote, "the name of a population is longer than 10 bytes",
     "Distance matrices show 10 bytes of it, those of individuals 5.",
     "Shorten the name if it is to be read whole in PHYLIP."},
    {Code::NamesCutAlike, "names-cut-alike", kWarning,
     "names of populations with the same first 10 bytes",
     "In distance matrices they carry the same label.",
     "Let names differ within their first 10 bytes."},
    {Code::OnePopulation, "one-population", kNote, "a single population",
     "Distances and F-statistics of populations have nothing to compare.",
     "Look whether the first column holds the populations."},
    {Code::GroupEmpty, "group-empty", kWarning, "an empty group number",
     "The next number of the row, as a rule its first allele, is taken as the group.",
     "Write 0 for no group."},
    {Code::GroupText, "group-text", kWarning, "a group that is no whole number",
     "It is read up to what is no digit; without a digit in front the row has no group.",
     "Number the groups 1, 2, 3 and so on, and write 0 for no group."},
    {Code::GroupMixed, "group-mixed", kWarning, "several group numbers in one population",
     "The population counts to the group of its first individual.",
     "Give all individuals of a population one group."},
    {Code::GroupGap, "group-gap", kWarning, "group numbers with a gap",
     "The first number that no population has ends the group sheets and Arlequin's structure.",
     "Number the groups 1, 2, 3 and so on."},
    {Code::EmptyLine, "empty-line", kError, "an empty row among the individuals",
     "It is an individual without alleles in a population without a name, and divides the "
     "population around it.",
     "Remove the row."},
    {Code::RowShort, "row-short", kWarning, "a row with fewer cells than the table has columns",
     "The cells that are not there are missing alleles.",
     "Look whether cells of the row slipped to the left; else fill it up with empty cells."},
    {Code::RowLong, "row-long", kWarning, "cells behind the last locus",
     "They do not count.",
     "Look whether cells of the row slipped to the right, and whether row 1 has all its cells."},
    {Code::OddRows, "odd-rows", kError, "a population with an odd number of rows",
     "With one column per locus two rows are an individual: from a missing row on the pairs are "
     "those of two individuals, and the last row counts as half of one.",
     "Look for the row that is missing or stands twice."},
    {Code::PairDiffers, "pair-differs", kWarning,
     "the two rows of an individual differ in type or group",
     "Each gene copy counts with the type of its own row.",
     "Look whether rows slipped; write the same into both."},
    {Code::TypeUnknown, "type-unknown", kWarning, "a type that is neither d nor h",
     "It counts as diploid; only a small h as first character marks inbred individuals.",
     "Write d for diploid and h for inbred individuals."},
    {Code::IndividualWithoutData, "individual-without-data", kNote,
     "an individual without any allele",
     "It counts in the size of its population and as missing at every locus.",
     "Nothing, if it is meant so."},
    {Code::Decimal, "decimal", kError, "an allele with decimals",
     "What stands behind the point or comma is cut off, not rounded.",
     "Round the alleles to whole numbers (bin them) first; show numbers without thousands "
     "separators."},
    {Code::TwoAlleles, "two-alleles", kError, "two alleles in one cell",
     "Only the first is read, or both as one large number.",
     "Give each allele a cell."},
    {Code::Letters, "letters", kError, "an allele with other characters behind it",
     "The number in front is the allele; what stands behind is dropped.",
     "Write the whole number alone."},
    {Code::Quoted, "quoted", kError, "a cell in quotes",
     "A cell that begins with a quote is a missing allele.",
     "Save the table without quotes around cells."},
    {Code::NumberTooLarge, "number-too-large", kError, "a number beyond 32 bits",
     "It is read as the nearest number of 32 bits, 2147483647.",
     "Mend the number."},
    {Code::ZeroMissing, "zero-missing", kWarning, "a 0 with a blank or a sign in front",
     "It is a missing allele, while a plain 0 is the allele 0.",
     "Leave the cell empty if the allele is missing."},
    {Code::TextMissing, "text-missing", kWarning, "text in place of an allele",
     "Without a number in front the allele is missing.",
     "Mend the cell, or leave it empty if the allele is missing."},
    {Code::ZeroAllele, "zero-allele", kWarning, "an allele 0",
     "0 is an allele of length 0 like any other, not a missing one.",
     "Leave the cell empty if the allele is missing."},
    {Code::HalfMissing, "half-missing", kWarning, "an individual with one of two alleles missing",
     "The other allele counts alone; the Genepop and Arlequin files show half a genotype.",
     "Look whether the allele was forgotten; a homozygote needs it twice."},
    {Code::WordMissing, "word-missing", kNote, "a word for missing alleles",
     "It is a missing allele, as an empty cell is.",
     "Nothing, if it is meant so."},
    {Code::NegativeMissing, "negative-missing", kNote, "a negative number",
     "It is a missing allele; the new data files of a run keep the number.",
     "Nothing, if it is meant so."},
    {Code::LeadingZeros, "leading-zeros", kNote, "a number with zeros in front",
     "The zeros do not count: 007 is the allele 7.",
     "Nothing, if it is meant so."},
    {Code::OffGrid, "off-grid", kWarning, "an allele that no whole repeats lead to",
     "Most copies at the locus lie whole repeats from each other, this one does not: a typing "
     "error, or the repeat length is wrong. Steps are cut to whole repeats in the exports.",
     "Look at the raw data of this genotype, and at the repeat length."},
    {Code::RestOffGrid, "rest-off-grid", kNote, "the rest length does not fit the alleles",
     "Most alleles of the locus less the rest length are no whole repeats; numbers of repeats have "
     "fractions.",
     "Look at the rest length: what an allele is long without its repeats."},
    {Code::BelowRest, "below-rest", kWarning, "an allele shorter than the rest length",
     "Its number of repeats is negative.",
     "Look at the allele and at the rest length."},
    {Code::LocusWithoutData, "locus-without-data", kWarning, "a locus without any allele",
     "Its cells read \"n.d.\".",
     "Look whether the columns stand under their names; else leave the locus out."},
    {Code::LocusOnePopulation, "locus-one-population", kWarning,
     "a locus with alleles in a single population",
     "The global Fst, Fit and Fis over all loci become \"nan\".",
     "Leave the locus out for F-statistics."},
};
// clang-format on

constexpr bool standInOrder() {
    std::size_t place = 0;
    for (const FindingKind& kind : kKinds) {
        if (static_cast<std::size_t>(kind.code) != place++) {
            return false;
        }
    }
    return place == static_cast<std::size_t>(Code::LocusOnePopulation) + 1;
}
static_assert(standInOrder(), "a row for each code, in their order");

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7f;
}

} // namespace

const char* nameOf(Severity severity) {
    constexpr std::array<const char*, 3> kNames = {"error", "warning", "note"};
    return kNames[static_cast<std::size_t>(severity)];
}

std::span<const FindingKind> allFindingKinds() {
    return kKinds;
}

const FindingKind& kindOf(FindingCode code) {
    return kKinds[static_cast<std::size_t>(code)];
}

std::string shownText(std::string_view text) {
    std::string shown(text.substr(0, kShownBytes));
    std::replace_if(shown.begin(), shown.end(), isControl, '?');
    if (text.size() <= kShownBytes) {
        return shown;
    }
    while (!shown.empty() && (static_cast<unsigned char>(shown.back()) & 0x80) != 0) {
        shown.pop_back(); // no part of a character of UTF-8
    }
    return shown + "...";
}

void Findings::add(FindingCode code, int64_t row, int64_t column, std::string_view found) {
    auto finding = std::find_if(All.begin(), All.end(),
                                [code](const Finding& other) { return other.code == code; });
    if (finding == All.end()) {
        finding = All.insert(All.end(), Finding{code, 0, {}});
    }
    ++finding->count;
    if (finding->places.size() < kFirstPlaces) {
        finding->places.push_back({row, column, shownText(found)});
    }
}

std::vector<Finding> Findings::sorted() const {
    std::vector<Finding> findings = All;
    std::sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
        const Severity first = kindOf(a.code).severity;
        const Severity second = kindOf(b.code).severity;
        return first != second ? first < second : a.code < b.code;
    });
    return findings;
}

bool Findings::has(FindingCode code) const {
    return std::any_of(All.begin(), All.end(),
                       [code](const Finding& finding) { return finding.code == code; });
}

} // namespace kva
