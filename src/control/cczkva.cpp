// The command line:
//
//     kva -i data.txt -dist p POSA n=100 calc=ln -fst g p n=1000
//
// An option is known by its first letters, and its values follow in the same argument
// or in the next ones. The keywords of an option are rows of a table, tried in their
// order at the start of the text that is left: the order matters, since a row for one
// letter stands behind the whole words that begin with it. The grammar is lenient:
// text that no row knows is skipped up to the next blank.
#include "control/cczkva.h"

#include "distance/measures.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>
#include <string_view>

namespace kva {

namespace {

// --- Effects ----------------------------------------------------------------------

// One option at work.
struct Optionslauf {
    CCommandZeileKVA& Kommando;
    std::string_view Rest;  // text not yet taken away; a zero byte stands behind it
    bool Global = false;    // -fst: `global` stood there
    bool Paarweise = false; // -fst: `pairwise` stood there
    bool Beta = false;      // -fst: `beta` stood there
};

using Wirkung = void (*)(Optionslauf&);

template <auto Wort, uint32_t Bits> void setBits(Optionslauf& lauf) {
    lauf.Kommando.*Wort |= Bits;
}

template <auto Wort, uint32_t Bits> void clearBits(Optionslauf& lauf) {
    lauf.Kommando.*Wort &= ~Bits;
}

template <auto Flag> void raise(Optionslauf& lauf) {
    lauf.*Flag = true;
}

// The number behind "n=", which may stand in the next argument.
template <auto Feld, int32_t Minimum> void readNumber(Optionslauf& lauf) {
    const char* number = lauf.Rest.data() + std::string_view("n=").size();
    const int32_t value = NearestInt32(std::strtol(number, nullptr, 10));
    lauf.Kommando.*Feld = std::max(value, Minimum);
}

constexpr uint32_t kGenotypeBits = FstBit::Genotypes | FstBit::Linked;

// Alleles are resampled, each locus by itself.
void assumeHardyWeinberg(Optionslauf& lauf) {
    if (hasBit(lauf.Kommando.FstMask, FstBit::Genotypes)) {
        lauf.Kommando.FstMask ^= kGenotypeBits;
    }
}

// Wanted: all bits go, also those that take the draws and the replicate sheets.
void clearHetRange(Optionslauf& lauf) {
    lauf.Kommando.HetRangeMask = 0;
}

template <uint32_t Bits> constexpr Wirkung general = setBits<&CCommandZeileKVA::GeneralMask, Bits>;
template <uint32_t Bits> constexpr Wirkung dist = setBits<&CCommandZeileKVA::DistWort, Bits>;
template <uint32_t Bits> constexpr Wirkung fst = setBits<&CCommandZeileKVA::FstMask, Bits>;
template <uint32_t Bits> constexpr Wirkung het = setBits<&CCommandZeileKVA::HetRangeMask, Bits>;

// --- Keywords ----------------------------------------------------------------------

struct Schluesselwort {
    std::string_view Text;
    std::size_t Verglichen; // so many characters of the rest are compared with the whole Text
    std::size_t Genommen;   // so many are taken away, or all there are; 0: the later rows are
                            // tried too, and the text is then skipped like unknown text
    Wirkung Effekt;
};

constexpr std::size_t kGanzerRest = std::string_view::npos; // only the last word matches

constexpr Schluesselwort word(std::string_view text, Wirkung effekt) {
    return {text, text.size(), text.size(), effekt};
}

constexpr Schluesselwort number(Wirkung effekt) {
    return {"n=", 2, 0, effekt};
}

constexpr Schluesselwort kFstWords[] = {
    word("global", raise<&Optionslauf::Global>),
    word("g", raise<&Optionslauf::Global>),
    word("pairwise", raise<&Optionslauf::Paarweise>),
    word("p", raise<&Optionslauf::Paarweise>),
    word("beta", raise<&Optionslauf::Beta>),
    word("locus", fst<FstBit::PerLocus>),
    {"HW", kGanzerRest, 2, assumeHardyWeinberg},
    word("HW=YES", assumeHardyWeinberg),
    {"HW=", 3, 5, fst<kGenotypeBits>}, // two characters of any other answer, also a blank
    word("HW", assumeHardyWeinberg),
    number(readNumber<&CCommandZeileKVA::Permutationen, 0>),
    word("RD=OFF", clearBits<&CCommandZeileKVA::FstMask, FstBit::RandomDiscard>),
    word("RD=ON", fst<FstBit::RandomDiscard>),
    word("RD", fst<FstBit::RandomDiscard>),
};

// Behind the names of the distances themselves: takeMeasure. Wanted: no row knows "bl=", so the
// loci per bootstrap replicate keep their default.
constexpr Schluesselwort kDistWords[] = {
    word("population", general<GeneralBit::PopDistances>),
    word("p", general<GeneralBit::PopDistances>),
    word("individual", general<GeneralBit::IndDistances>),
    word("i", general<GeneralBit::IndDistances>),
    number(readNumber<&CCommandZeileKVA::Bootstraps, 1>),
    word("calc=ln", general<GeneralBit::MinusLog>),
    // Wanted: takes the blank behind it too, or whatever stands there.
    {"calc=1", 6, 7, clearBits<&CCommandZeileKVA::GeneralMask, GeneralBit::MinusLog>},
    word("nexus", dist<DistBit::Nexus>),
    word("NEXUS", dist<DistBit::Nexus>),
    word("locus", dist<DistBit::PerLocus>),
    word("l", dist<DistBit::PerLocus>),
};

constexpr Schluesselwort kFormatWords[] = {
    word("msvar", general<GeneralBit::Msvar>),
    word("arlequin", general<GeneralBit::Arlequin>),
    word("migrate", general<GeneralBit::Migrate>),
    word("im", general<GeneralBit::IMFormat>),
};

constexpr Schluesselwort kHetRangeWords[] = {
    word("linked", het<HetRangeBit::Linked>),
    word("l", het<HetRangeBit::Linked>),
    {"individual", kGanzerRest, 10, het<HetRangeBit::Individuals>},
    word("ind", het<HetRangeBit::Individuals>),
    word("RD=OFF", clearBits<&CCommandZeileKVA::HetRangeMask, HetRangeBit::RandomDiscard>),
    word("RD=ON", het<HetRangeBit::RandomDiscard>),
    word("RD", het<HetRangeBit::RandomDiscard>),
    word("zero=ON", het<HetRangeBit::CorrectZero>),
    word("zero=OFF", clearHetRange),
    word("zero", clearHetRange),
    number(readNumber<&CCommandZeileKVA::HetRandomisierungen, 0>),
};

// --- Reading the values of an option --------------------------------------------------

void take(std::string_view& rest, std::size_t characters) {
    rest.remove_prefix(std::min(characters, rest.size()));
}

// The last character stays, also if it is a blank.
void dropBlanks(std::string_view& rest) {
    while (rest.size() > 1 && rest.front() == ' ') {
        rest.remove_prefix(1);
    }
}

// Takes away the keyword at the start of the text. False if no row takes any.
bool takeKeyword(Optionslauf& lauf, std::span<const Schluesselwort> words) {
    for (const Schluesselwort& row : words) {
        if (lauf.Rest.substr(0, row.Verglichen) != row.Text) {
            continue;
        }
        row.Effekt(lauf);
        if (row.Genommen > 0) {
            take(lauf.Rest, row.Genommen);
            return true;
        }
    }
    return false;
}

std::string smallLetters(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return static_cast<char>(c - 'A' + 'a'); });
    return text;
}

// Takes away the name of a distance, in capitals or small letters, at the start of the text.
bool takeMeasure(Optionslauf& lauf) {
    for (const Measure& measure : allMeasures()) {
        const std::string capitals = measure.Stem;
        const std::string_view begin = std::string_view(lauf.Rest).substr(0, capitals.size());
        if (begin == capitals || begin == smallLetters(capitals)) {
            lauf.Kommando.DistWort |= measure.Bit;
            take(lauf.Rest, capitals.size());
            return true;
        }
    }
    return false;
}

// `first`: is tried before the rows.
void readKeywords(
    Optionslauf& lauf, std::span<const Schluesselwort> words,
    bool (*first)(Optionslauf&) = [](Optionslauf&) { return false; }) {
    while (!lauf.Rest.empty()) {
        dropBlanks(lauf.Rest);
        if (lauf.Rest == " ") {
            return;
        }
        if (!first(lauf) && !takeKeyword(lauf, words)) {
            const std::size_t blank = lauf.Rest.find(' ', 1);
            take(lauf.Rest, blank == std::string_view::npos ? blank : blank + 1);
        }
    }
}

// --- Options ---------------------------------------------------------------------------

// The rest is the file name; it may hold blanks.
template <auto Feld> int readFileName(Optionslauf& lauf) {
    dropBlanks(lauf.Rest);
    if (lauf.Rest == " ") {
        std::cout << "No Filename!" << std::endl;
        return -1;
    }
    lauf.Kommando.*Feld = lauf.Rest;
    return 1;
}

// Which of global and pairwise Fst run: without a keyword the default stands, global only.
void chooseFst(const Optionslauf& lauf) {
    uint32_t& mask = lauf.Kommando.FstMask;
    if (lauf.Global || lauf.Paarweise) {
        mask &= ~(FstBit::Global | FstBit::NoPairs);
    }
    if (lauf.Global) {
        mask |= lauf.Paarweise ? FstBit::Global : FstBit::Global | FstBit::NoPairs;
    }
}

// F-beta goes with global Fst alone and without permutations, unless both kinds of Fst
// were asked for. Its bit is on in the defaults, but only `beta` keeps it.
void chooseBeta(const Optionslauf& lauf) {
    CCommandZeileKVA& kommando = lauf.Kommando;
    if (!lauf.Beta) {
        kommando.FstMask &= ~FstBit::Beta;
        return;
    }
    if (!lauf.Global || !lauf.Paarweise) {
        kommando.FstMask |= FstBit::Global | FstBit::NoPairs;
        kommando.Permutationen = 0;
    }
    kommando.FstMask |= FstBit::Beta;
}

int readFst(Optionslauf& lauf) {
    lauf.Kommando.GeneralMask |= GeneralBit::FStatistics;
    readKeywords(lauf, kFstWords);
    chooseFst(lauf);
    chooseBeta(lauf);
    return 1;
}

// Wanted: the distances are computed only with `population` or `individual`.
int readDist(Optionslauf& lauf) {
    readKeywords(lauf, kDistWords, takeMeasure);
    return 1;
}

int readFormat(Optionslauf& lauf) {
    readKeywords(lauf, kFormatWords);
    return 1;
}

int readHetRange(Optionslauf& lauf) {
    lauf.Kommando.GeneralMask |= GeneralBit::HetRange;
    readKeywords(lauf, kHetRangeWords);
    return 1;
}

// The number of individuals, kept as gene copies; text that is no number reads as 0.
int readRichness(Optionslauf& lauf) {
    const double individuals = std::strtod(lauf.Rest.data(), nullptr);
    lauf.Kommando.RichnessRef = individuals < 0.0 ? -1 : TruncatedInt32(2.0 * individuals);
    return 1;
}

struct Option {
    std::string_view Name;
    std::size_t Genommen; // so many characters are taken away, and a colon behind them
    int (*Lesen)(Optionslauf&);
};

constexpr Option kOptions[] = {
    {"-i", 2, readFileName<&CCommandZeileKVA::DatenName>},
    {"-fim", 4, readFileName<&CCommandZeileKVA::IMDateiName>},
    {"-fst", 4, readFst},
    {"-dist", 5, readDist},
    {"-format", 7, readFormat},
    // Wanted: "ge" stays and is skipped as the first word, with all that is joined to it.
    {"-hetrange", 7, readHetRange},
    {"-rare", 5, readRichness},
};

// --- Arguments ------------------------------------------------------------------------

bool isDigitOrPoint(char c) {
    return (c >= '0' && c <= '9') || c == '.';
}

// True for an argument that begins an option: a "-", but for a negative number right
// behind `-rare`, which is its value.
bool opensOption(std::string_view argument, std::string_view before) {
    const bool isNumber = argument.size() > 1 && isDigitOrPoint(argument[1]);
    const bool isValue = isNumber && (before == "-rare" || before == "-rare:");
    return argument.starts_with('-') && !isValue;
}

void reportSideFile(const std::string& name) {
    std::cout << std::endl << "Can't open '" << name << "' as IM-Format-Helper-File!" << std::endl;
}

} // namespace

int CCommandZeileKVA::AnalyseCommando(const char* option) {
    if (option == nullptr) {
        return -1;
    }
    const std::string_view text(option);
    if (!text.starts_with('-')) {
        return 0;
    }
    const auto* row = std::ranges::find_if(
        kOptions, [text](const Option& known) { return text.starts_with(known.Name); });
    if (row == std::end(kOptions)) {
        return -1;
    }
    Optionslauf lauf{*this, text.substr(row->Genommen)};
    if (lauf.Rest.starts_with(':')) {
        take(lauf.Rest, 1);
    }
    return row->Lesen(lauf);
}

// False if an option other than the last is wrong. What stands before the first option
// is ignored.
bool CCommandZeileKVA::readOptions(int argc, char** argv) {
    std::string option;
    for (const char* argument : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
        if (!opensOption(argument, option)) {
            option.append(" ").append(argument);
            continue;
        }
        if (AnalyseCommando(option.c_str()) < 0) {
            std::cout << std::endl
                      << "Setting is incorrect!" << std::endl
                      << "Please check command:" << option << " !" << std::flush;
            return false;
        }
        option = argument;
    }
    (void)AnalyseCommando(option.c_str()); // wanted: a wrong last option goes unremarked
    return true;
}

// The first load, or the next result folder for data already loaded. False if no pass
// may run.
bool CCommandZeileKVA::load(InputFile& daten) {
    if (DatenObjekt) {
        (void)DatenObjekt->LinkResultNew();
        return !DatenObjekt->OrdnerFehlt;
    }
    DatenObjekt = std::make_unique<AnalyseDataObj>();
    return ErstesLaden(*DatenObjekt, DatenName, IMDateiName, reportSideFile, daten) ==
           Laden::Fertig;
}

int CCommandZeileKVA::Analyse(int argc, char** argv) {
    if (argc < 2) {
        return 0;
    }
    if (!readOptions(argc, argv)) {
        return -1;
    }
    if (DatenName.empty()) {
        std::cout << std::endl << "No filename specified!" << std::flush;
        return -1;
    }
    InputFile daten;
    if (!load(daten)) {
        return -1;
    }
    StarteLauf(*DatenObjekt, {GeneralMask, DistWort, DistWort, FstMask, HetRangeMask}, *this);
    return 1;
}

} // namespace kva
