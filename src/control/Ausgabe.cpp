// The catalogue of console messages: one row for each, all wording in one place.
// Message 41, for example, is
//
//
//     !! ERROR Can't create Subfolder Group_data! ERROR !!
//     Errorcode: 3-2
#include "control/Ausgabe.h"

#include "base/console.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <iterator>
#include <span>
#include <string>

namespace kva {

namespace {

// --- Forms ----------------------------------------------------------------------

// A form is the picture of a message: E an end of line, 1 to 4 a text of its row,
// a the argument.
constexpr const char* A = "E1E";
constexpr const char* B = "E1E2E";
constexpr const char* C = "E1E2E3E";
constexpr const char* D = "E1aE2E";
constexpr const char* F = "E1E2a3E4E";
constexpr const char* N = "1";

struct MessageRow {
    Message Code;
    const char* Form;
    std::array<const char*, 4> Texts{};
};

// --- The catalogue, ascending by code ----------------------------------------------

// A row of form "E" alone closes a line of progress marks.
constexpr MessageRow kTexts[] = {
    {Message::ReplicateEnd, "E"},
    {Message::ErrorReportBegin, A, {"Create Errorreport of Loci dataset"}},
    {Message::CountBegin, A, {"Count Allels"}},
    {Message::CountNotEntered, A, {"!! ERROR Can't change into Subfolder Allelcount! ERROR !!"}},
    {Message::CountNotMade, A, {"!! ERROR Can't create Subfolder Allelcount! ERROR !!"}},
    {Message::RowRead, N, {"."}},
    {Message::ReadingBegin, A, {"Read Loci/Pop Information!"}},
    {Message::ReadingEnd, "E"},
    {Message::CountEnd, "E"},
    {Message::ResultNotEntered, A, {"!! ERROR Can't change into result folder ERROR !!"}},
    {Message::WrongRows, A, {"!! FATAL ERROR Incorrect Row-Format FATAL ERROR !!"}},
    {Message::WrongColumns, A, {"!! FATAL ERROR Incorrect Colum-Format FATAL ERROR !!"}},
    {Message::AlreadyChecked,
     C,
     {"!! This Class has already Checked a Datafile !!",
      "\t Please try this to load with a new Class", "Errorcode: 1-1"}},
    {Message::NoMemory,
     C,
     {"!! ERROR Can't allocate memory! ERROR !!",
      "\t Please close other programs or increase memory for KVAnalyser ", "Errorcode: 1-2"}},
    {Message::SingleDataNotEntered,
     B,
     {"!! ERROR Can't change into Subfolder Single_data! ERROR !!", "Errorcode: 2-2"}},
    {Message::OverviewEnd, "E"},
    {Message::OverviewBegin, A, {"Calculate Stat's and create single data files"}},
    {Message::SingleDataNotMade,
     B,
     {"!! ERROR Can't create Subfolder Single_data! ERROR !!", "Errorcode: 2-1"}},
    {Message::HetBegin, A, {"Calculate Het's:"}},
    {Message::HetEnd, "E"},
    {Message::VarBegin, A, {"Calculate Var's and Mean's:"}},
    {Message::VarEnd, "E"},
    {Message::RangeBegin, A, {"Write Min- and Max- Allels:"}},
    {Message::RangeEnd, "E"},
    {Message::NumbersBegin, A, {"Find Num.Chromosomes and Num.of Allels"}},
    {Message::NumbersEnd, "E"},
    {Message::SummaryBegin, A, {"Start creating overview sheet!"}},
    {Message::SummaryEnd, "E"},
    {Message::SummaryLoci, "E1", {"LOCI: "}},
    {Message::SummaryLocus, "a1", {" "}},
    {Message::ErrorReportEnd, "E"},
    {Message::GroupDataNotMade,
     B,
     {"!! ERROR Can't create Subfolder Group_data! ERROR !!", "Errorcode: 3-2"}},
    {Message::GroupDataNotEntered,
     B,
     {"!! ERROR Can't change into Subfolder Group_data! ERROR !!", "Errorcode: 3-1"}},
    {Message::GroupsBegin, A, {"Making now group overview!"}},
    {Message::GroupsEnd, "E"},
    {Message::DistanceNotMade,
     B,
     {"!! ERROR Can't create Subfolder Distance_data! ERROR !!", "Errorcode: 4-2"}},
    {Message::DistanceNotEntered,
     B,
     {"!! ERROR Can't change into Subfolder Distance_data! ERROR !!", "Errorcode: 4-1"}},
    {Message::DistanceBegin, D, {"Calculate Population Distance: ", "! Please wait..."}},
    {Message::DistanceEnd, A, {"... Finished Population Distance!"}},
    {Message::DistanceLost,
     B,
     {"!! ERROR Can't create Resultfile for Distance! ERROR !!", "Errorcode: 4-3"}},
    {Message::PairsBegin, D, {"Calculate FST Distance: ", "! Please wait..."}},
    {Message::PairsEnd, A, {"... Finished FST Distance!"}},
    {Message::PairsLost,
     F,
     {"!! ERROR Can't create Resultfile for Distance! ERROR !!", "Lost of Fst-Result (", ")!",
      "Errorcode: 4-4"}},
    {Message::PairTestBegin, D, {"Calculate FST p-Value: ", "! This will need a lot of time..."}},
    {Message::PairTestEnd, A, {"... Finished FST p-Value calculation!"}},
    {Message::PValuesLost,
     F,
     {"!! ERROR Can't create Resultfile for Distance! ERROR !!", "Lost of Fst-Result (", ")!",
      "Errorcode: 4-5"}},
    {Message::RowTooLong,
     C,
     {"!! FATAL-ERROR Can't read one line into memory !!",
      "Please reduce number of loci and/or contact the programmer!", "Errorcode: 1-3"}},
    {Message::GenepopBegin,
     "EE1E2",
     {"Make Genepop formated files", "and Randomdiscarded datafiles!"}},
    {Message::GenepopEnd, A, {"All Lines generated!"}},
    {Message::IndividualsPerPopulation, "E1", {"Animal per Population:"}},
    {Message::FormatsBegin, "EE1", {"Make Beaumont, Arlequin and Migrate/Lamarc"}},
    {Message::FormatsEnd, A, {"All Lines generated!"}},
    {Message::GlobalBegin, D, {"Calculate global FST: ", "! Please wait..."}},
    {Message::GlobalEnd, A, {"... Finished global FST calculation!"}},
    {Message::GlobalLost,
     F,
     {"!! ERROR Can't create Resultfile for global Fst! ERROR !!", "Lost of global Fst-Result (",
      ")!", "Errorcode: 6-4"}},
    {Message::GlobalTestBegin,
     D,
     {"Calculate global FST p-Value: ", "! This may take a long time..."}},
    {Message::GlobalTestEnd, A, {"... Finished Global FST p-Value calculation!"}},
    {Message::HetRangeBegin,
     B,
     {"Calculate random heterozygosity range", "! This may take a long time..."}},
    {Message::HetRangeEnd, A, {"... Finished random heterozygosity range calculation!"}},
    {Message::ResamplingNotMade,
     B,
     {"!! ERROR Can't create Subfolder Resampling_data! ERROR !!", "Errorcode: 7-2"}},
    {Message::ResamplingNotEntered,
     B,
     {"!! ERROR Can't change into Subfolder Resampling_data! ERROR !!", "Errorcode: 7-1"}},
    {Message::BetaBegin, A, {"Start with F-beta-value calculation!"}},
    {Message::BetaEnd, A, {"... Finished F-beta calculation!"}},
    {Message::IMBegin, "EE1", {"Make IM formated files"}},
    {Message::IMEnd, A, {"All IM-Pairs generated!"}},
    {Message::IMLost, B, {"!! ERROR Can't create Files for IM Format!!", "Errorcode: 8-1"}},
    {Message::NoCommonLocus,
     "E1aE2",
     {"Can't create ", "because the populations has no common locus!"}},
    {Message::GstBegin, A, {"Start with G ST calculation!"}},
    {Message::GstEnd, A, {"... Finished GST calculation!"}},
};

// The messages around a whole number.
constexpr MessageRow kNumbers[] = {
    {Message::TestGroup, "E1a", {"Test Group: "}},
    {Message::PairReplica, "E1a", {"Calc Replica: "}},
    {Message::ExportedPopulation, "E1a2", {"Pop ", ":"}},
    {Message::ExportedIndividuals, "a1", {" animal(s)"}},
    {Message::GlobalReplica, "E1a", {"Calc Replica: "}},
};

constexpr bool ascending(std::span<const MessageRow> rows) {
    return std::ranges::adjacent_find(rows, std::ranges::greater_equal{}, &MessageRow::Code) ==
           rows.end();
}
static_assert(ascending(kTexts) && ascending(kNumbers));

// --- Printing -------------------------------------------------------------------------

// Null for a code that is not among the rows.
const MessageRow* find(std::span<const MessageRow> rows, int number) {
    const Message code{number};
    const auto row = std::ranges::lower_bound(rows, code, {}, &MessageRow::Code);
    return row != rows.end() && row->Code == code ? &*row : nullptr;
}

void print(const MessageRow& message, const char* argument) {
    for (const char* place = message.Form; *place != '\0'; ++place) {
        switch (*place) {
        case 'E':
            console() << std::endl;
            break;
        case 'a':
            console() << argument;
            break;
        default:
            console() << message.Texts[*place - '1'];
        }
    }
    console() << std::flush;
}

} // namespace

void AUSGABE(int code, const char* text) {
    if (const MessageRow* message = find(kTexts, code)) {
        print(*message, text != nullptr ? text : "");
    } else if (text != nullptr) {
        console() << text << std::flush;
    } else {
        console() << std::endl;
    }
}

void AUSGABE(int code, const int& wert) {
    constexpr MessageRow kNumberAlone{Message{}, "a"};
    const MessageRow* message = find(kNumbers, code);
    print(message != nullptr ? *message : kNumberAlone, std::to_string(wert).c_str());
}

void AUSGABE(int /*code*/, const double& wert) {
    console() << wert << std::flush;
}

} // namespace kva
