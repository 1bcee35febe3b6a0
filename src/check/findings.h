// What can be found in a data file that a run takes otherwise than its owner thinks: the catalogue
// of all kinds, a row each, and the findings of one file.
#ifndef KVA_CHECK_FINDINGS_H
#define KVA_CHECK_FINDINGS_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

// Error: the file is refused, or genotypes, names or populations are read otherwise than they
// stand. Warning: it may be meant so, but as a rule it is not. Note: it is read as it stands, and
// good to know.
enum class Severity { Error, Warning, Note };

// "error", "warning" or "note".
const char* nameOf(Severity severity);

// The kinds of findings, in the order of the catalogue: what concerns the whole file, its header
// rows, its populations, its rows, its cells, its loci.
enum class FindingCode {
    EmptyFile,
    Spreadsheet,
    Compressed,
    Utf16,
    ByteOrderMark,
    OtherSeparator,
    Refused,
    NulByte,
    RowTooLong,
    TooManyLoci,
    NoLocus,
    CrLfTwoHeaders,
    MixedLineEnds,
    ColumnsCell,
    ColumnsDoubtful,
    SurplusColumn,
    NamesShifted,
    NamesAsIndividual,
    IndividualAsNames,
    NoLengths,
    RepeatLength,
    RestLength,
    LengthColumn,
    LocusNameMissing,
    SecondNameMissing,
    LocusNameTwice,
    LocusNameNumber,
    SplitPopulation,
    NamesAlike,
    NameEmpty,
    NameSlash,
    NameLong,
    NamesCutAlike,
    OnePopulation,
    GroupEmpty,
    GroupText,
    GroupMixed,
    GroupGap,
    EmptyLine,
    RowShort,
    RowLong,
    OddRows,
    PairDiffers,
    TypeUnknown,
    IndividualWithoutData,
    Decimal,
    TwoAlleles,
    Letters,
    Quoted,
    NumberTooLarge,
    ZeroMissing,
    TextMissing,
    ZeroAllele,
    HalfMissing,
    WordMissing,
    NegativeMissing,
    LeadingZeros,
    OffGrid,
    RestOffGrid,
    BelowRest,
    LocusWithoutData,
    LocusOnePopulation,
};

// A row of the catalogue.
struct FindingKind {
    FindingCode code;
    const char* name; // for scripts, as "split-population"
    Severity severity;
    const char* title;   // what it is, in a few words
    const char* meaning; // what it does to the results
    const char* advice;  // what to do
};

// All kinds, a row for each code, in the order of the codes.
std::span<const FindingKind> allFindingKinds();

const FindingKind& kindOf(FindingCode code);

// Where something was found. Rows and columns count from 1, as in a spreadsheet.
struct Place {
    int64_t row = 0;    // 0: the whole file
    int64_t column = 0; // 0: the whole row
    std::string found;  // what stands there, fit to be shown (shownText)
};

// All findings of one kind.
struct Finding {
    FindingCode code;
    int64_t count = 0;         // how many
    std::vector<Place> places; // the first kFirstPlaces of them
};

constexpr std::size_t kFirstPlaces = 5;

// Text of a data file as it can be shown on a line: cut to `kShownBytes`, with a "?" for each
// control character.
constexpr std::size_t kShownBytes = 40;
std::string shownText(std::string_view text);

// The findings of a file as they are made.
class Findings {
  public:
    // `found` is text of the file or about it; it is kept as shownText gives it.
    void add(FindingCode code, int64_t row = 0, int64_t column = 0, std::string_view found = {});

    // One finding for each kind that was found: errors, warnings, notes, each in the order of the
    // catalogue.
    std::vector<Finding> sorted() const;

    bool has(FindingCode code) const;

  private:
    std::vector<Finding> All; // in the order in which their kinds were first found
};

} // namespace kva

#endif
