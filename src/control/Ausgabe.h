// AUSGABE: the numbered catalogue of console messages. A pass names a message and holds no text
// of its own. Everything goes to the console (base/console.h) and is flushed, mark by mark. A code
// outside the catalogue is a mark: its text as it is, or an end of line if there is none.
#ifndef KVA_CONTROL_AUSGABE_H
#define KVA_CONTROL_AUSGABE_H

namespace kva {

// The messages by name, with the catalogue's numbers, which leave gaps. What is told as an argument
// stands behind. Names on Begin and End frame a pass, on Mark stand for its progress; those on
// NotMade and NotEntered speak of its folder, on Lost of a file that cannot be opened.
enum class Message : int {
    ReplicateEnd = -1, // a line of marks ends: a replicate of the distances
    ErrorReportBegin = 1,
    CountMark = 2,   // mark: a population or locus is done
    DiscardMark = 3, // mark: why the random discard of a table ended
    HetMark = 5,     // mark: names of populations
    CountBegin = 7,
    CountNotEntered = 8,
    CountNotMade = 9,
    RowRead = 10, // mark: a data row
    ReadingBegin = 11,
    ReadingEnd = 12,
    CountEnd = 13,
    ResultNotEntered = 14,
    WrongRows = 15,
    WrongColumns = 16,
    AlreadyChecked = 17,
    NoMemory = 18,
    SingleDataNotEntered = 19,
    OverviewEnd = 20,
    OverviewBegin = 21,
    SingleDataNotMade = 22,
    HetBegin = 23,
    HetEnd = 24,
    VarBegin = 25,
    VarEnd = 26,
    VarMark = 27, // mark: a population is done
    RangeBegin = 28,
    RangeEnd = 29,
    RangeMark = 30, // mark: a population is done
    NumbersBegin = 31,
    NumbersEnd = 32,
    NumbersMark = 33, // mark: a population is done
    SummaryBegin = 34,
    SummaryEnd = 35,
    SummaryLoci = 36,
    SummaryLocus = 37, // takes the name of a locus
    SummaryMark = 38,  // mark: a population is done
    ErrorReportEnd = 40,
    GroupDataNotMade = 41,
    GroupDataNotEntered = 42,
    GroupsBegin = 43,
    GroupsEnd = 44,
    TestGroup = 45, // takes the number of a group
    DistanceNotMade = 46,
    DistanceNotEntered = 47,
    DistanceBegin = 48, // takes the kind of distance
    DistanceEnd = 49,
    DistanceMark = 50, // mark: a locus is done
    DistanceLost = 51,
    PairsBegin = 52, // takes the kind of heterozygosity
    PairsEnd = 53,
    PairsLost = 55,
    PairTestBegin = 56, // no pass tells it
    PairReplica = 57,   // takes the number of a permutation
    PairTestEnd = 58,   // no pass tells it
    PValuesLost = 59,   // no pass tells it
    RowTooLong = 60,
    GenepopBegin = 61,
    GenepopEnd = 62,
    FormatsNotMade = 63,           // without words
    FormatsNotEntered = 64,        // without words
    IndividualsPerPopulation = 65, // no pass tells it
    ExportedPopulation = 66,       // takes the number of a population
    ExportedIndividuals = 67,      // takes a number of individuals
    FormatsBegin = 68,
    FormatsEnd = 70,
    GlobalBegin = 71, // takes the kind of heterozygosity
    GlobalEnd = 72,
    GlobalLost = 74,      // no pass tells it
    GlobalTestBegin = 75, // no pass tells it
    GlobalReplica = 76,   // takes the number of a permutation
    GlobalTestEnd = 77,   // no pass tells it
    HetRangeBegin = 78,
    HetRangeMark = 79, // mark: a population begins
    HetRangeEnd = 80,
    ResamplingNotMade = 81,
    ResamplingNotEntered = 82,
    BetaBegin = 90,
    BetaEnd = 91, // no pass tells it
    IMBegin = 100,
    IMEnd = 102,
    IMLost = 103,
    NoCommonLocus = 104, // takes the name of a file
    GstBegin = 110,
    GstEnd = 112,
};

// Prints message `code`. `text` is the argument of the codes that take one and the mark of those
// outside the catalogue's texts; null where there is none. The other codes do not look at it.
void AUSGABE(int code, const char* text);

// Prints `wert` in the words of `code`: TestGroup, PairReplica, ExportedPopulation,
// ExportedIndividuals or GlobalReplica; bare for any other.
void AUSGABE(int code, const int& wert);

// Prints `wert` in the stream's default format, for any code.
void AUSGABE(int code, const double& wert);

// The same by name.
inline void AUSGABE(Message message, const char* text = nullptr) {
    AUSGABE(static_cast<int>(message), text);
}
inline void AUSGABE(Message message, const int& wert) {
    AUSGABE(static_cast<int>(message), wert);
}

} // namespace kva

#endif
