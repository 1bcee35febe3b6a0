// The catalogue of console messages: one row for each, all wording in one place.
// Message 41, for example, is
//
//
//     !! ERROR Can't create Subfolder Group_data! ERROR !!
//     Errorcode: 3-2
#include "control/Ausgabe.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <iostream>
#include <iterator>
#include <span>
#include <string>

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

struct Meldung {
    int Code;
    const char* Form;
    std::array<const char*, 4> Texte{};
};

// --- The catalogue, ascending by code ----------------------------------------------

// A row of form "E" alone closes a line of progress marks.
constexpr Meldung kTexte[] = {
    {-1, "E"},
    {1, A, {"Create Errorreport of Loci dataset"}},
    {7, A, {"Count Allels"}},
    {8, A, {"!! ERROR Can't change into Subfolder Allelcount! ERROR !!"}},
    {9, A, {"!! ERROR Can't create Subfolder Allelcount! ERROR !!"}},
    {10, N, {"."}},
    {11, A, {"Read Loci/Pop Information!"}},
    {12, "E"},
    {13, "E"},
    {14, A, {"!! ERROR Can't change into result folder ERROR !!"}},
    {15, A, {"!! FATAL ERROR Incorrect Row-Format FATAL ERROR !!"}},
    {16, A, {"!! FATAL ERROR Incorrect Colum-Format FATAL ERROR !!"}},
    {17,
     C,
     {"!! This Class has already Checked a Datafile !!",
      "\t Please try this to load with a new Class", "Errorcode: 1-1"}},
    {18,
     C,
     {"!! ERROR Can't allocate memory! ERROR !!",
      "\t Please close other programs or increase memory for KVAnalyser ", "Errorcode: 1-2"}},
    {19, B, {"!! ERROR Can't change into Subfolder Single_data! ERROR !!", "Errorcode: 2-2"}},
    {20, "E"},
    {21, A, {"Calculate Stat's and create single data files"}},
    {22, B, {"!! ERROR Can't create Subfolder Single_data! ERROR !!", "Errorcode: 2-1"}},
    {23, A, {"Calculate Het's:"}},
    {24, "E"},
    {25, A, {"Calculate Var's and Mean's:"}},
    {26, "E"},
    {28, A, {"Write Min- and Max- Allels:"}},
    {29, "E"},
    {31, A, {"Find Num.Chromosomes and Num.of Allels"}},
    {32, "E"},
    {34, A, {"Start creating overview sheet!"}},
    {35, "E"},
    {36, "E1", {"LOCI: "}},
    {37, "a1", {" "}},
    {40, "E"},
    {41, B, {"!! ERROR Can't create Subfolder Group_data! ERROR !!", "Errorcode: 3-2"}},
    {42, B, {"!! ERROR Can't change into Subfolder Group_data! ERROR !!", "Errorcode: 3-1"}},
    {43, A, {"Making now group overview!"}},
    {44, "E"},
    {46, B, {"!! ERROR Can't create Subfolder Distance_data! ERROR !!", "Errorcode: 4-2"}},
    {47, B, {"!! ERROR Can't change into Subfolder Distance_data! ERROR !!", "Errorcode: 4-1"}},
    {48, D, {"Calculate Population Distance: ", "! Please wait..."}},
    {49, A, {"... Finished Population Distance!"}},
    {51, B, {"!! ERROR Can't create Resultfile for Distance! ERROR !!", "Errorcode: 4-3"}},
    {52, D, {"Calculate FST Distance: ", "! Please wait..."}},
    {53, A, {"... Finished FST Distance!"}},
    {55,
     F,
     {"!! ERROR Can't create Resultfile for Distance! ERROR !!", "Lost of Fst-Result (", ")!",
      "Errorcode: 4-4"}},
    {56, D, {"Calculate FST p-Value: ", "! This will need a lot of time..."}},
    {58, A, {"... Finished FST p-Value calculation!"}},
    {59,
     F,
     {"!! ERROR Can't create Resultfile for Distance! ERROR !!", "Lost of Fst-Result (", ")!",
      "Errorcode: 4-5"}},
    {60,
     C,
     {"!! FATAL-ERROR Can't read one line into memory !!",
      "Please reduce number of loci and/or contact the programmer!", "Errorcode: 1-3"}},
    {61, "EE1E2", {"Make Genepop formated files", "and Randomdiscarded datafiles!"}},
    {62, A, {"All Lines generated!"}},
    {65, "E1", {"Animal per Population:"}},
    {68, "EE1", {"Make Beaumont, Arlequin and Migrate/Lamarc"}},
    {70, A, {"All Lines generated!"}},
    {71, D, {"Calculate global FST: ", "! Please wait..."}},
    {72, A, {"... Finished global FST calculation!"}},
    {74,
     F,
     {"!! ERROR Can't create Resultfile for global Fst! ERROR !!", "Lost of global Fst-Result (",
      ")!", "Errorcode: 6-4"}},
    {75, D, {"Calculate global FST p-Value: ", "! This may take a long time..."}},
    {77, A, {"... Finished Global FST p-Value calculation!"}},
    {78, B, {"Calculate random heterozygosity range", "! This may take a long time..."}},
    {80, A, {"... Finished random heterozygosity range calculation!"}},
    {81, B, {"!! ERROR Can't create Subfolder Resampling_data! ERROR !!", "Errorcode: 7-2"}},
    {82, B, {"!! ERROR Can't change into Subfolder Resampling_data! ERROR !!", "Errorcode: 7-1"}},
    {90, A, {"Start with F-beta-value calculation!"}},
    {91, A, {"... Finished F-beta calculation!"}},
    {100, "EE1", {"Make IM formated files"}},
    {102, A, {"All IM-Pairs generated!"}},
    {103, B, {"!! ERROR Can't create Files for IM Format!!", "Errorcode: 8-1"}},
    {104, "E1aE2", {"Can't create ", "because the populations has no common locus!"}},
    {110, A, {"Start with G ST calculation!"}},
    {112, A, {"... Finished GST calculation!"}},
};

// The messages around a whole number.
constexpr Meldung kZahlen[] = {
    {45, "E1a", {"Test Group: "}}, {57, "E1a", {"Calc Replica: "}}, {66, "E1a2", {"Pop ", ":"}},
    {67, "a1", {" animal(s)"}},    {76, "E1a", {"Calc Replica: "}},
};

constexpr bool ascending(std::span<const Meldung> rows) {
    return std::ranges::adjacent_find(rows, std::ranges::greater_equal{}, &Meldung::Code) ==
           rows.end();
}
static_assert(ascending(kTexte) && ascending(kZahlen));

// --- Printing -------------------------------------------------------------------------

// Null for a code that is not among the rows.
const Meldung* find(std::span<const Meldung> rows, int code) {
    const auto row = std::ranges::lower_bound(rows, code, {}, &Meldung::Code);
    return row != rows.end() && row->Code == code ? &*row : nullptr;
}

void print(const Meldung& meldung, const char* argument) {
    for (const char* place = meldung.Form; *place != '\0'; ++place) {
        switch (*place) {
        case 'E':
            std::cout << std::endl;
            break;
        case 'a':
            std::cout << argument;
            break;
        default:
            std::cout << meldung.Texte[static_cast<std::size_t>(*place - '1')];
        }
    }
    std::cout << std::flush;
}

} // namespace

void AUSGABE(int code, const char* text) {
    if (const Meldung* meldung = find(kTexte, code)) {
        print(*meldung, text != nullptr ? text : "");
    } else if (text != nullptr) {
        std::cout << text << std::flush;
    } else {
        std::cout << std::endl;
    }
}

void AUSGABE(int code, const int& wert) {
    constexpr Meldung kNurZahl{0, "a"};
    const Meldung* meldung = find(kZahlen, code);
    print(meldung != nullptr ? *meldung : kNurZahl, std::to_string(wert).c_str());
}

void AUSGABE(int /*code*/, const double& wert) {
    std::cout << wert << std::flush;
}
