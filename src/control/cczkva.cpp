// The command line:
//
//     kva -i data.txt -dist p POSA n=100 calc=ln -fst g p n=1000
//
// An option is known by its first letters, and its values follow in the same argument
// or in the next ones. The keywords of an option are tried at the start of the text that is left:
// first those of the catalogues (flags, distances, exports), then the rows of its table, in their
// order, since a row for one letter stands behind the whole words that begin with it. The grammar
// is lenient: text that no row knows is skipped up to the next blank.
#include "control/cczkva.h"

#include "control/flags.h"
#include "distance/measures.h"
#include "formats/exports.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>
#include <string_view>

namespace kva {

namespace {

// --- Effects ----------------------------------------------------------------------

// One option at work.
struct OptionReader {
    CCommandZeileKVA& Command;
    std::string_view Rest; // text not yet taken away; a zero byte stands behind it
    bool Global = false;   // -fst: `global` stood there
    bool Pairwise = false; // -fst: `pairwise` stood there
    bool Beta = false;     // -fst: `beta` stood there
};

using Action = void (*)(OptionReader&);

template <auto Flag> void raise(OptionReader& reader) {
    reader.*Flag = true;
}

// The number behind "n=", which may stand in the next argument.
template <auto Field, int32_t Minimum> void readNumber(OptionReader& reader) {
    const char* number = reader.Rest.data() + std::string_view("n=").size();
    const int32_t value = NearestInt32(std::strtol(number, nullptr, 10));
    reader.Command.*Field = std::max(value, Minimum);
}

constexpr uint32_t kGenotypeBits = FstBit::Genotypes | FstBit::Linked;

// Alleles are resampled, each locus by itself.
void assumeHardyWeinberg(OptionReader& reader) {
    if (hasBit(reader.Command.FstMask, FstBit::Genotypes)) {
        reader.Command.FstMask ^= kGenotypeBits;
    }
}

// Genotypes are resampled as wholes, one draw for all loci.
void resampleGenotypes(OptionReader& reader) {
    reader.Command.FstMask |= kGenotypeBits;
}

// Wanted: all bits go, also those that take the draws and the replicate sheets. The sheets of
// a run with zero=OFF depend on it.
void clearHetRange(OptionReader& reader) {
    reader.Command.HetRangeMask = 0;
}

// Switches off -ln(similarity).
void takeOneMinus(OptionReader& reader) {
    reader.Command.GeneralMask &= ~GeneralBit::MinusLog;
}

// --- Keywords ----------------------------------------------------------------------

struct Keyword {
    std::string_view Text;
    std::size_t Compared; // so many characters of the rest are compared with the whole Text
    std::size_t Taken;    // so many are taken away, or all there are; 0: the later rows are
                          // tried too, and the text is then skipped like unknown text
    Action Effect;
};

constexpr std::size_t kWholeRest = std::string_view::npos; // only the last word matches

constexpr Keyword word(std::string_view text, Action effect) {
    return {text, text.size(), text.size(), effect};
}

constexpr Keyword number(Action effect) {
    return {"n=", 2, 0, effect};
}

constexpr Keyword kFstWords[] = {
    word("global", raise<&OptionReader::Global>),
    word("g", raise<&OptionReader::Global>),
    word("pairwise", raise<&OptionReader::Pairwise>),
    word("p", raise<&OptionReader::Pairwise>),
    word("beta", raise<&OptionReader::Beta>),
    {"HW", kWholeRest, 2, assumeHardyWeinberg},
    word("HW=YES", assumeHardyWeinberg),
    {"HW=", 3, 5, resampleGenotypes}, // two characters of any other answer, also a blank
    word("HW", assumeHardyWeinberg),
    number(readNumber<&CCommandZeileKVA::Permutationen, 0>),
};

// Wanted: no row knows "bl=", so the loci per bootstrap replicate keep their default; the word is
// skipped like any unknown one.
constexpr Keyword kDistWords[] = {
    number(readNumber<&CCommandZeileKVA::Bootstraps, 1>),
    // Wanted: takes the blank behind it too, or whatever stands there; how words joined to it are
    // read depends on it.
    {"calc=1", 6, 7, takeOneMinus},
};

constexpr Keyword kHetRangeWords[] = {
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
bool takeKeyword(OptionReader& reader, std::span<const Keyword> words) {
    for (const Keyword& row : words) {
        if (reader.Rest.substr(0, row.Compared) != row.Text) {
            continue;
        }
        row.Effect(reader);
        if (row.Taken > 0) {
            take(reader.Rest, row.Taken);
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

// Takes away a text that stands at the start; false if it does not, or is empty.
bool takeText(OptionReader& reader, std::string_view text) {
    if (text.empty() || !reader.Rest.starts_with(text)) {
        return false;
    }
    take(reader.Rest, text.size());
    return true;
}

// The field of a word; the one of the distances is carried into both words of the settings.
uint32_t& maskOf(CCommandZeileKVA& command, FlagWord word) {
    const std::array masks = {&command.GeneralMask, &command.DistWort, &command.FstMask,
                              &command.HetRangeMask};
    return *masks[static_cast<std::size_t>(word)];
}

// Takes away a keyword of a flag of the option.
bool takeFlag(OptionReader& reader, std::string_view option) {
    for (const Flag& flag : allFlags()) {
        if (flag.Option != option) {
            continue;
        }
        uint32_t& mask = maskOf(reader.Command, flag.Word);
        if (takeText(reader, flag.Off)) {
            mask &= ~flag.Bit;
            return true;
        }
        if (takeText(reader, flag.On[0]) || takeText(reader, flag.On[1])) {
            mask |= flag.Bit;
            return true;
        }
    }
    return false;
}

// Takes away the name of a distance, in capitals or small letters.
bool takeMeasure(OptionReader& reader) {
    for (const Measure& measure : allMeasures()) {
        if (takeText(reader, measure.Stem) || takeText(reader, smallLetters(measure.Stem))) {
            reader.Command.DistWort |= measure.Bit;
            return true;
        }
    }
    return false;
}

bool takeExport(OptionReader& reader) {
    for (const Export& row : allExports()) {
        if (takeText(reader, row.Keyword)) {
            reader.Command.GeneralMask |= row.Bit;
            return true;
        }
    }
    return false;
}

// Reads all keywords; takeAny(reader): takes away one at the start of the text, false if it knows
// none there.
template <class TakeAny> void readKeywords(OptionReader& reader, TakeAny takeAny) {
    while (!reader.Rest.empty()) {
        dropBlanks(reader.Rest);
        if (reader.Rest == " ") {
            return;
        }
        if (!takeAny(reader)) {
            const std::size_t blank = reader.Rest.find(' ', 1);
            take(reader.Rest, blank == std::string_view::npos ? blank : blank + 1);
        }
    }
}

// --- Options ---------------------------------------------------------------------------

// The rest is the file name; it may hold blanks.
template <auto Field> int readFileName(OptionReader& reader) {
    dropBlanks(reader.Rest);
    if (reader.Rest == " ") {
        std::cout << "No Filename!" << std::endl;
        return -1;
    }
    reader.Command.*Field = reader.Rest;
    return 1;
}

// Which of global and pairwise Fst run: without a keyword the default stands, global only.
void chooseFst(const OptionReader& reader) {
    uint32_t& mask = reader.Command.FstMask;
    if (reader.Global || reader.Pairwise) {
        mask &= ~(FstBit::Global | FstBit::NoPairs);
    }
    if (reader.Global) {
        mask |= reader.Pairwise ? FstBit::Global : FstBit::Global | FstBit::NoPairs;
    }
}

// F-beta goes with global Fst alone and without permutations, unless both kinds of Fst
// were asked for. Its bit is on in the defaults, but only `beta` keeps it.
void chooseBeta(const OptionReader& reader) {
    CCommandZeileKVA& command = reader.Command;
    if (!reader.Beta) {
        command.FstMask &= ~FstBit::Beta;
        return;
    }
    if (!reader.Global || !reader.Pairwise) {
        command.FstMask |= FstBit::Global | FstBit::NoPairs;
        command.Permutationen = 0;
    }
    command.FstMask |= FstBit::Beta;
}

int readFst(OptionReader& reader) {
    reader.Command.GeneralMask |= GeneralBit::FStatistics;
    readKeywords(reader, [](OptionReader& rest) {
        return takeFlag(rest, "-fst") || takeKeyword(rest, kFstWords);
    });
    chooseFst(reader);
    chooseBeta(reader);
    return 1;
}

// Wanted: the distances are computed only with `population` or `individual`, the one switch that
// tells which of the two engines is to run.
int readDist(OptionReader& reader) {
    readKeywords(reader, [](OptionReader& rest) {
        return takeMeasure(rest) || takeFlag(rest, "-dist") || takeKeyword(rest, kDistWords);
    });
    return 1;
}

int readFormat(OptionReader& reader) {
    readKeywords(reader, takeExport);
    return 1;
}

int readHetRange(OptionReader& reader) {
    reader.Command.GeneralMask |= GeneralBit::HetRange;
    readKeywords(reader, [](OptionReader& rest) {
        return takeFlag(rest, "-hetrange") || takeKeyword(rest, kHetRangeWords);
    });
    return 1;
}

// The number of individuals, kept as gene copies; text that is no number reads as 0.
int readRichness(OptionReader& reader) {
    const double individuals = std::strtod(reader.Rest.data(), nullptr);
    reader.Command.RichnessRef = individuals < 0.0 ? -1 : TruncatedInt32(2.0 * individuals);
    return 1;
}

struct Option {
    std::string_view Name;
    std::size_t Taken; // so many characters are taken away, and a colon behind them
    int (*Read)(OptionReader&);
};

constexpr Option kOptions[] = {
    {"-i", 2, readFileName<&CCommandZeileKVA::DatenName>},
    {"-fim", 4, readFileName<&CCommandZeileKVA::IMDateiName>},
    {"-fst", 4, readFst},
    {"-dist", 5, readDist},
    {"-format", 7, readFormat},
    // Wanted: "ge" stays and is skipped as the first word, with all that is joined to it: how a
    // keyword without a blank in front is read depends on it.
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
    OptionReader reader{*this, text.substr(row->Taken)};
    if (reader.Rest.starts_with(':')) {
        take(reader.Rest, 1);
    }
    return row->Read(reader);
}

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
    // Wanted: a wrong last option goes unremarked, and the run takes place.
    AnalyseCommando(option.c_str());
    return true;
}

bool CCommandZeileKVA::load(InputFile& daten) {
    if (DatenObjekt) {
        DatenObjekt->LinkResultNew();
        return !DatenObjekt->FolderMissing;
    }
    DatenObjekt = std::make_unique<AnalyseDataObj>();
    return LoadFirst(*DatenObjekt, DatenName, IMDateiName, reportSideFile, daten) ==
           LoadResult::Done;
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
    StartRun(*DatenObjekt, {GeneralMask, DistWort, DistWort, FstMask, HetRangeMask}, *this);
    return 1;
}

} // namespace kva
