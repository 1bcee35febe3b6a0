#include "control/cczkva.h"

#include "support/datasets.h"
#include "support/support.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

using namespace kva;

namespace fs = std::filesystem;
using namespace kva_test;

namespace {

// --- Command lines -----------------------------------------------------------------

// The arguments of a line written with "|" between them: "-i|a b|" has the three arguments
// "-i", "a b" and "".
std::vector<std::string> split(std::string_view line) {
    std::vector<std::string> arguments;
    for (std::size_t bar = line.find('|'); bar != std::string_view::npos; bar = line.find('|')) {
        arguments.emplace_back(line.substr(0, bar));
        line.remove_prefix(bar + 1);
    }
    arguments.emplace_back(line);
    return arguments;
}

struct Outcome {
    int result;
    std::string console;
};

Outcome analyse(CCommandZeileKVA& commandLine, std::string_view line) {
    std::vector<std::string> arguments = split(line);
    arguments.insert(arguments.begin(), "kva");
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    StdoutCapture console;
    const int result = commandLine.Analyse(static_cast<int>(arguments.size()), argv.data());
    return {result, console.text()};
}

// The settings that follow from a command line; what a row does not name keeps its default.
struct Settings {
    std::string file = "x.txt";
    std::string im = {};
    uint32_t general = 0x31FF;
    uint32_t dist = 0x1;
    uint32_t fst = 0x9A39;
    uint32_t het = 0x803;
    int32_t bootstraps = 1;
    int32_t permutations = 10000;
    int32_t richness = -1;
    int32_t randomisations = 1000;
    int32_t bootLoci = -1;
    int32_t replicaLoci = -1;
    int32_t replicas = 1000;

    bool operator==(const Settings&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Settings& s) {
    return out << "file '" << s.file << "' im '" << s.im << "'" << std::hex << " general "
               << s.general << " dist " << s.dist << " fst " << s.fst << " het " << s.het
               << std::dec << " bootstraps " << s.bootstraps << " permutations " << s.permutations
               << " richness " << s.richness << " randomisations " << s.randomisations
               << " bootLoci " << s.bootLoci << " replicaLoci " << s.replicaLoci << " replicas "
               << s.replicas;
}

Settings settingsOf(const CCommandZeileKVA& k) {
    return {k.DatenName,    k.IMDateiName, k.GeneralMask,   k.DistWort,    k.FstMask,
            k.HetRangeMask, k.Bootstraps,  k.Permutationen, k.RichnessRef, k.HetRandomisierungen,
            k.BootLoci,     k.ReplikaLoci, k.Replikate};
}

// The file x.txt does not exist, so that a line with a name ends at its opening.
constexpr const char* kAbsent = "\nWrong Filename or Path!\n";
constexpr const char* kNoName = "\nNo filename specified!";

struct Line {
    const char* arguments;
    Settings expected;
    const char* console = kAbsent;
};

std::ostream& operator<<(std::ostream& out, const Line& line) {
    return out << line.arguments;
}

// All lines give -1: the file is absent, or an error comes first.
class CommandLine : public testing::TestWithParam<Line> {};

std::string lineName(const testing::TestParamInfo<Line>& info) {
    std::string name = std::to_string(info.index);
    for (const char c : std::string_view(info.param.arguments)) {
        name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    }
    return name;
}

} // namespace

TEST_P(CommandLine, GivesSettingsConsoleAndResult) {
    const TempFolder folder(TempFolder::Enter::yes);
    CCommandZeileKVA commandLine;
    const Outcome outcome = analyse(commandLine, GetParam().arguments);
    EXPECT_EQ(outcome.result, -1);
    EXPECT_EQ(outcome.console, GetParam().console);
    EXPECT_EQ(settingsOf(commandLine), GetParam().expected);
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

#define LINES(name, ...)                                                                           \
    INSTANTIATE_TEST_SUITE_P(name, CommandLine, testing::ValuesIn(__VA_ARGS__), lineName)

// --- File names ------------------------------------------------------------------------

namespace {
const Line kFileLines[] = {
    {"-i|x.txt", {}},
    {"-ix.txt", {}},
    {"-i:x.txt", {}},
    {"-i:|x.txt", {}},
    {"-i|   x.txt", {}},
    {"-i:   x.txt", {}},
    {"-i||x.txt", {}}, // "-i  x.txt": the empty argument is one more blank
    {"-i|my|cats.txt", {.file = "my cats.txt"}},
    {"-i|my cats.txt", {.file = "my cats.txt"}},
    {"-i|my  cats|of|town", {.file = "my  cats of town"}},
    {"-i|x.txt|", {.file = "x.txt "}}, // blanks in front alone are dropped
    {"-i|x.txt |", {.file = "x.txt  "}},
    {"-i|x", {.file = "x"}},      // a single character stays
    {"-input", {.file = "nput"}}, // an option is known by its first letters
    {"-individual|x.txt", {.file = "ndividual x.txt"}},
    {"-i::x.txt", {.file = ":x.txt"}}, // one colon is taken
    {"-i|:x.txt", {.file = ":x.txt"}}, // and only right behind the option
    {"-i|:", {.file = ":"}},
    {"-i|a.txt|-i|x.txt", {}}, // a later name replaces the earlier
    {"y.txt|-i|x.txt", {}},    // text before the first option is ignored
    {"y.txt|z|-i|x.txt", {}},
    {"|-i|x.txt", {}},
    {"-fim|side.txt|-i|x.txt", {.im = "side.txt"}},
    {"-i|x.txt|-fim|side.txt", {.im = "side.txt"}},
    {"-i|x.txt|-fim:side.txt", {.im = "side.txt"}},
    {"-i|x.txt|-fimside.txt", {.im = "side.txt"}},
    {"-i|x.txt|-fim|my|side file", {.im = "my side file"}},
    {"-i|x.txt|-fim|a|-fim|b", {.im = "b"}},
    {"-i|x.txt|-fim|a|-fim", {}}, // nothing behind it stores an empty name
    {"-i|x.txt|-fim|a|-fim|", {.im = "a"}, "No Filename!\n\nWrong Filename or Path!\n"},
};

const Line kErrorLines[] = {
    {"x.txt", {.file = ""}, kNoName},
    {"", {.file = ""}, kNoName},
    {"-i", {.file = ""}, kNoName},
    {"-i:", {.file = ""}, kNoName},
    {"-i|x.txt|-i", {.file = ""}, kNoName},
    {"-I|x.txt", {.file = ""}, kNoName}, // capitals differ; unknown, but the last
    {"-fst", {.file = "", .general = 0x71FF, .fst = 0x1A39}, kNoName},
    // A lone blank as a name, last and not last.
    {"-i|", {.file = ""}, "No Filename!\n\nNo filename specified!"},
    {"-i |", {.file = ""}, "No Filename!\n\nNo filename specified!"},
    {"-i: ", {.file = ""}, "No Filename!\n\nNo filename specified!"},
    {"-i|x.txt|-i|", {}, "No Filename!\n\nWrong Filename or Path!\n"},
    {"-i||-fst", {.file = ""}, "No Filename!\n\nSetting is incorrect!\nPlease check command:-i  !"},
    {"-i|x.txt|-fim||-fst",
     {},
     "No Filename!\n\nSetting is incorrect!\nPlease check command:-fim  !"},
    // Unknown options, with the words behind them.
    {"-bogus|-i|x.txt", {.file = ""}, "\nSetting is incorrect!\nPlease check command:-bogus !"},
    {"-bogus|a|b c|-i|x.txt",
     {.file = ""},
     "\nSetting is incorrect!\nPlease check command:-bogus a b c !"},
    {"-|-i|x.txt", {.file = ""}, "\nSetting is incorrect!\nPlease check command:- !"},
    {"--i|x.txt|-i|x.txt",
     {.file = ""},
     "\nSetting is incorrect!\nPlease check command:--i x.txt !"},
    {"-form|im|-i|x.txt", {.file = ""}, "\nSetting is incorrect!\nPlease check command:-form im !"},
    {"-fi|-i|x.txt", {.file = ""}, "\nSetting is incorrect!\nPlease check command:-fi !"},
    {"-hetrang|l|-i|x.txt",
     {.file = ""},
     "\nSetting is incorrect!\nPlease check command:-hetrang l !"},
    {"-FST|-i|x.txt", {.file = ""}, "\nSetting is incorrect!\nPlease check command:-FST !"},
    // What stood in front of the error has taken effect, what stands behind it has not.
    {"-i|x.txt|-fst|-bogus|-rare|5",
     {.general = 0x71FF, .fst = 0x1A39},
     "\nSetting is incorrect!\nPlease check command:-bogus !"},
    // The last option is not checked.
    {"-i|x.txt|-bogus", {}},
    {"-i|x.txt|-bogus|words", {}},
    {"-i|x.txt|-", {}},
};

// --- -fst --------------------------------------------------------------------------------
// The default word 0x9A39 loses bit 0x8000 with any -fst, but for `beta`: 0x1A39. Bits 0x1800
// are both on for global only, 0x800 alone for both, both off for pairwise only.

const Line kFstLines[] = {
    {"-i|x.txt|-fst", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst:", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|  ", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|g", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|global", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|p", {.general = 0x71FF, .fst = 0x0239}},
    {"-i|x.txt|-fst|pairwise", {.general = 0x71FF, .fst = 0x0239}},
    {"-i|x.txt|-fst|pair", {.general = 0x71FF, .fst = 0x0239}}, // "air" is skipped
    {"-fst|p|-i|x.txt", {.general = 0x71FF, .fst = 0x0239}},
    {"-i|x.txt|-fst|g|p", {.general = 0x71FF, .fst = 0x0A39}},
    {"-i|x.txt|-fst|p|g", {.general = 0x71FF, .fst = 0x0A39}},
    {"-i|x.txt|-fst|gp", {.general = 0x71FF, .fst = 0x0A39}},
    {"-i|x.txt|-fst|globalpairwise", {.general = 0x71FF, .fst = 0x0A39}},
    {"-i|x.txt|-fst|glob|pair", {.general = 0x71FF, .fst = 0x0A39}},
    {"-i|x.txt|-fst|gxp", {.general = 0x71FF, .fst = 0x1A39}}, // "xp" is skipped
    {"-i|x.txt|-fst|P|Pairwise", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst:p", {.general = 0x71FF, .fst = 0x0239}},
    {"-i|x.txt|-fst:|p", {.general = 0x71FF, .fst = 0x0239}},
    {"-i|x.txt|-fstp", {.general = 0x71FF, .fst = 0x0239}},
    {"-i|x.txt|-fstat|p", {.general = 0x71FF, .fst = 0x0239}}, // "at" is skipped
    {"-i|x.txt|-fstatp", {.general = 0x71FF, .fst = 0x1A39}},  // with what is joined to it
    {"-i|x.txt|-fst::p", {.general = 0x71FF, .fst = 0x1A39}},  // ":p" is unknown
    {"-i|x.txt|-fst|:p", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|bogus|p", {.general = 0x71FF, .fst = 0x0239}},
    {"-i|x.txt|-fst|   p   ", {.general = 0x71FF, .fst = 0x0239}},
    // A second -fst: without g and p it leaves them as they are.
    {"-i|x.txt|-fst|p|-fst|g", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|g|p|-fst", {.general = 0x71FF, .fst = 0x0A39}},
    {"-i|x.txt|-fst|locus", {.general = 0x71FF, .fst = 0x1A79}},
    {"-i|x.txt|-fst|plocus", {.general = 0x71FF, .fst = 0x0279}},
    {"-i|x.txt|-fst|l", {.general = 0x71FF, .fst = 0x1A39}}, // no short form here
    {"-i|x.txt|-fst|loc", {.general = 0x71FF, .fst = 0x1A39}},
    // F-beta
    {"-i|x.txt|-fst|beta", {.general = 0x71FF, .fst = 0x9A39, .permutations = 0}},
    {"-i|x.txt|-fst|b", {.general = 0x71FF, .fst = 0x1A39}}, // no short form here
    {"-i|x.txt|-fst|beta|n=100", {.general = 0x71FF, .fst = 0x9A39, .permutations = 0}},
    {"-i|x.txt|-fst|n=100|beta", {.general = 0x71FF, .fst = 0x9A39, .permutations = 0}},
    {"-i|x.txt|-fst|g|beta|n=100", {.general = 0x71FF, .fst = 0x9A39, .permutations = 0}},
    {"-i|x.txt|-fst|p|beta|n=100", {.general = 0x71FF, .fst = 0x9A39, .permutations = 0}},
    {"-i|x.txt|-fst|g|p|beta|n=100", {.general = 0x71FF, .fst = 0x8A39, .permutations = 100}},
    {"-i|x.txt|-fst|beta|p|g", {.general = 0x71FF, .fst = 0x8A39}},
    {"-i|x.txt|-fst|gbetap", {.general = 0x71FF, .fst = 0x8A39}},
    {"-i|x.txt|-fst|beta|-fst|n=5", {.general = 0x71FF, .fst = 0x1A39, .permutations = 5}},
    // Permutations
    {"-i|x.txt|-fst|n=50", {.general = 0x71FF, .fst = 0x1A39, .permutations = 50}},
    {"-i|x.txt|-fst:n=50|p", {.general = 0x71FF, .fst = 0x0239, .permutations = 50}},
    {"-i|x.txt|-fst|n=0", {.general = 0x71FF, .fst = 0x1A39, .permutations = 0}},
    {"-i|x.txt|-fst|n=-5", {.general = 0x71FF, .fst = 0x1A39, .permutations = 0}},
    {"-i|x.txt|-fst|n=", {.general = 0x71FF, .fst = 0x1A39, .permutations = 0}},
    {"-i|x.txt|-fst|n=ten", {.general = 0x71FF, .fst = 0x1A39, .permutations = 0}},
    {"-i|x.txt|-fst|n=|70", {.general = 0x71FF, .fst = 0x1A39, .permutations = 70}},
    {"-i|x.txt|-fst|n=50p", {.general = 0x71FF, .fst = 0x1A39, .permutations = 50}},
    {"-i|x.txt|-fst|n=p", {.general = 0x71FF, .fst = 0x1A39, .permutations = 0}},
    {"-i|x.txt|-fst|n=|p", {.general = 0x71FF, .fst = 0x0239, .permutations = 0}},
    {"-i|x.txt|-fst|pn=50", {.general = 0x71FF, .fst = 0x0239, .permutations = 50}},
    {"-i|x.txt|-fst|n=1.9", {.general = 0x71FF, .fst = 0x1A39, .permutations = 1}},
    {"-i|x.txt|-fst|n=12|n=13", {.general = 0x71FF, .fst = 0x1A39, .permutations = 13}},
    {"-i|x.txt|-fst|n=2147483648", {.general = 0x71FF, .fst = 0x1A39, .permutations = 2147483647}},
    {"-i|x.txt|-fst|n=99999999999999999999",
     {.general = 0x71FF, .fst = 0x1A39, .permutations = 2147483647}},
    {"-i|x.txt|-fst|n=-99999999999999999999",
     {.general = 0x71FF, .fst = 0x1A39, .permutations = 0}},
    {"-i|x.txt|-fst|n|=5", {.general = 0x71FF, .fst = 0x1A39}},
    // Hardy-Weinberg: bits 0x18 off or on
    {"-i|x.txt|-fst|HW", {.general = 0x71FF, .fst = 0x1A21}},
    {"-i|x.txt|-fst|HW|", {.general = 0x71FF, .fst = 0x1A21}},
    {"-i|x.txt|-fst|HW|HW", {.general = 0x71FF, .fst = 0x1A21}}, // off stays off
    {"-i|x.txt|-fst|HW|p", {.general = 0x71FF, .fst = 0x0221}},
    {"-i|x.txt|-fst|HWp", {.general = 0x71FF, .fst = 0x0221}},
    {"-i|x.txt|-fst|hw", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|HW=YES", {.general = 0x71FF, .fst = 0x1A21}},
    {"-i|x.txt|-fst|HW=YES|HW=YES", {.general = 0x71FF, .fst = 0x1A21}},
    {"-i|x.txt|-fst|HW=YESp", {.general = 0x71FF, .fst = 0x0221}},
    {"-i|x.txt|-fst|HW=NO", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|HW|HW=NO", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|HW|HW=NO|p", {.general = 0x71FF, .fst = 0x0239}},
    {"-i|x.txt|-fst|HW|HW=yes", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|HW|HW=YE", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|HW|HW=", {.general = 0x71FF, .fst = 0x1A39}},  // fewer than five are left
    {"-i|x.txt|-fst|HW=N|p", {.general = 0x71FF, .fst = 0x0239}},  // takes "HW=N "
    {"-i|x.txt|-fst|HW=|p|g", {.general = 0x71FF, .fst = 0x1A39}}, // takes "HW= p"
    {"-i|x.txt|-fst|HW=OFFp", {.general = 0x71FF, .fst = 0x1A39}}, // leaves "Fp", unknown
    {"-i|x.txt|-fst|HW=NOp", {.general = 0x71FF, .fst = 0x0239}},
    // Random discarding: bit 0x80
    {"-i|x.txt|-fst|RD", {.general = 0x71FF, .fst = 0x1AB9}},
    {"-i|x.txt|-fst|RD=ON", {.general = 0x71FF, .fst = 0x1AB9}},
    {"-i|x.txt|-fst|RD=OFF", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|RD|RD=OFF", {.general = 0x71FF, .fst = 0x1A39}},
    {"-i|x.txt|-fst|RD=OFF|RD", {.general = 0x71FF, .fst = 0x1AB9}},
    {"-i|x.txt|-fst|RD=OF", {.general = 0x71FF, .fst = 0x1AB9}}, // any other RD is on
    {"-i|x.txt|-fst|RD=off", {.general = 0x71FF, .fst = 0x1AB9}},
    {"-i|x.txt|-fst|RDp", {.general = 0x71FF, .fst = 0x02B9}},
    {"-i|x.txt|-fst|RD=ONp", {.general = 0x71FF, .fst = 0x02B9}},
    {"-i|x.txt|-fst|RD=OFFp", {.general = 0x71FF, .fst = 0x0239}},
    {"-i|x.txt|-fst|RD=p", {.general = 0x71FF, .fst = 0x1AB9}}, // "=p" is skipped
    {"-i|x.txt|-fst|rd", {.general = 0x71FF, .fst = 0x1A39}},
};

// --- -dist -------------------------------------------------------------------------------

const Line kDistLines[] = {
    {"-i|x.txt|-dist", {}},
    {"-i|x.txt|-dist|POSA", {.dist = 0x3}}, // selected, but nothing says what to compute it for
    {"-i|x.txt|-dist|p", {.general = 0x35FF}},
    {"-i|x.txt|-dist|p|POSA|n=100", {.general = 0x35FF, .dist = 0x3, .bootstraps = 100}},
    {"-i|x.txt|-dist|POSA|FSS|ADA|KSC|DMS|ASD|CAS|DSG", {.dist = 0x1FF}},
    {"-i|x.txt|-dist|posa|fss|ada|ksc|dms|asd|cas|dsg", {.dist = 0x1FF}},
    {"-i|x.txt|-dist|DSGASDPOSA", {.dist = 0x143}},
    {"-i|x.txt|-dist|FSS", {.dist = 0x5}},
    {"-i|x.txt|-dist|ADA", {.dist = 0x9}},
    {"-i|x.txt|-dist|KSC", {.dist = 0x11}},
    {"-i|x.txt|-dist|DMS", {.dist = 0x21}},
    {"-i|x.txt|-dist|ASD", {.dist = 0x41}},
    {"-i|x.txt|-dist|CAS", {.dist = 0x81}},
    {"-i|x.txt|-dist|DAN", {.dist = 0x81}},
    {"-i|x.txt|-dist|cas", {.dist = 0x81}},
    {"-i|x.txt|-dist|dan", {.dist = 0x81}},
    {"-i|x.txt|-dist|DSG", {.dist = 0x101}},
    {"-i|x.txt|-dist|Dsg|Fss", {}},
    {"-i|x.txt|-dist|pOSA", {.general = 0x35FF}}, // p, and "OSA" is skipped
    {"-i|x.txt|-dist|posap", {.general = 0x35FF, .dist = 0x3}},
    {"-i|x.txt|-dist|population", {.general = 0x35FF}},
    {"-i|x.txt|-dist|populationPOSA", {.general = 0x35FF, .dist = 0x3}},
    {"-i|x.txt|-dist|popPOSA", {.general = 0x35FF}}, // "opPOSA" is skipped
    {"-i|x.txt|-dist|individual", {.general = 0x39FF}},
    {"-i|x.txt|-dist|individualPOSA", {.general = 0x39FF, .dist = 0x3}},
    {"-i|x.txt|-dist|ind|POSA", {.general = 0x39FF, .dist = 0x3}},
    {"-i|x.txt|-dist|i", {.general = 0x39FF}},
    {"-i|x.txt|-dist|i|p", {.general = 0x3DFF}},
    {"-i|x.txt|-dist|pi", {.general = 0x3DFF}},
    {"-i|x.txt|-dist|in=5", {.general = 0x39FF, .bootstraps = 5}}, // i, then n=5
    {"-i|x.txt|-dist:p|POSA", {.general = 0x35FF, .dist = 0x3}},
    {"-i|x.txt|-distPOSA|p", {.general = 0x35FF, .dist = 0x3}},
    {"-i|x.txt|-distances|p", {.general = 0x35FF}}, // "ances" is skipped
    {"-i|x.txt|-distp", {.general = 0x35FF}},
    {"-i|x.txt|-dist:p:POSA", {.general = 0x35FF}}, // ":POSA" is skipped
    {"-i|x.txt|-dist|p,POSA", {.general = 0x35FF}},
    {"-i|x.txt|-dist|POSA|-dist|p|FSS", {.general = 0x35FF, .dist = 0x7}},
    {"-i|x.txt|-dist|POSA|-p", {.dist = 0x3}}, // "-p" is an unknown last option
    // Bootstraps
    {"-i|x.txt|-dist|n=0", {.bootstraps = 1}},
    {"-i|x.txt|-dist|n=i", {.bootstraps = 1}},
    {"-i|x.txt|-dist|n=7|n=-3", {.bootstraps = 1}},
    {"-i|x.txt|-dist|n=7|n=", {.bootstraps = 1}},
    {"-i|x.txt|-dist|n=|25|p", {.general = 0x35FF, .bootstraps = 25}}, // "25" is skipped then
    {"-i|x.txt|-dist|n=25POSA", {.bootstraps = 25}},                   // skipped with the number
    {"-i|x.txt|-dist|n=25|POSA", {.dist = 0x3, .bootstraps = 25}},
    {"-i|x.txt|-dist|pn=7", {.general = 0x35FF, .bootstraps = 7}},
    {"-i|x.txt|-dist|n=+8", {.bootstraps = 8}},
    {"-i|x.txt|-dist|n=4294967297", {.bootstraps = 2147483647}},
    {"-i|x.txt|-dist|n=-4294967297", {.bootstraps = 1}},
    // -ln
    {"-i|x.txt|-dist|calc=ln", {.general = 0xB1FF}},
    {"-i|x.txt|-dist|calc=ln|p", {.general = 0xB5FF}},
    {"-i|x.txt|-dist|calc=lnp", {.general = 0xB5FF}},
    {"-i|x.txt|-dist|calc=1", {}},
    {"-i|x.txt|-dist|calc=ln|calc=1", {}},
    {"-i|x.txt|-dist|calc=ln|calc=1|p", {.general = 0x35FF}}, // takes the blank too
    {"-i|x.txt|-dist|calc=1p|i", {.general = 0x39FF}},        // takes the "p" too
    {"-i|x.txt|-dist|calc=ln|calc=10|p", {.general = 0x35FF}},
    {"-i|x.txt|-dist|calc=1|calc=ln", {.general = 0xB1FF}},
    {"-i|x.txt|-dist|calc=log|p", {.general = 0x35FF}},
    {"-i|x.txt|-dist|calc=LN", {}},
    {"-i|x.txt|-dist|calc=|p", {.general = 0x35FF}},
    // Sheets and NEXUS
    {"-i|x.txt|-dist|nexus", {.dist = 0x801}},
    {"-i|x.txt|-dist|NEXUS", {.dist = 0x801}},
    {"-i|x.txt|-dist|Nexus", {}},
    {"-i|x.txt|-dist|locus", {.dist = 0x401}},
    {"-i|x.txt|-dist|l", {.dist = 0x401}},
    {"-i|x.txt|-dist|loci", {.dist = 0x401}}, // l, and "oci" is skipped
    {"-i|x.txt|-dist|locusnexus", {.dist = 0xC01}},
    {"-i|x.txt|-dist|linear", {.general = 0x39FF, .dist = 0x401}}, // l, i, and "near" skipped
    // "bl=" is no keyword.
    {"-i|x.txt|-dist|bl=5", {}},
    {"-i|x.txt|-dist|bl=5|p", {.general = 0x35FF}},
    {"-i|x.txt|-dist|bl", {}},
};

// --- -format -------------------------------------------------------------------------------

const Line kFormatLines[] = {
    {"-i|x.txt|-format", {}},
    {"-i|x.txt|-format|msvar", {.general = 0x231FF}},
    {"-i|x.txt|-format|arlequin", {.general = 0x431FF}},
    {"-i|x.txt|-format|migrate", {.general = 0x831FF}},
    {"-i|x.txt|-format|im", {.general = 0x4031FF}},
    {"-i|x.txt|-format|im|msvar|arlequin|migrate", {.general = 0x4E31FF}},
    {"-i|x.txt|-format:im", {.general = 0x4031FF}},
    {"-i|x.txt|-formatim", {.general = 0x4031FF}},
    {"-i|x.txt|-formats|im", {.general = 0x4031FF}}, // "s" is skipped
    {"-i|x.txt|-format|immsvar", {.general = 0x4231FF}},
    {"-i|x.txt|-format|import|msvar", {.general = 0x4231FF}}, // im, and "port" is skipped
    {"-i|x.txt|-format|imigrate", {.general = 0x4031FF}},     // "igrate" is skipped
    {"-i|x.txt|-format|migrateim", {.general = 0x4831FF}},
    {"-i|x.txt|-format|Arlequin|arl|m", {}},
    {"-i|x.txt|-format|im|-format|msvar", {.general = 0x4231FF}},
};

// --- -hetrange -----------------------------------------------------------------------------

const Line kHetRangeLines[] = {
    {"-i|x.txt|-hetrange", {.general = 0x2031FF}},
    {"-i|x.txt|-hetrange|linked", {.general = 0x2031FF, .het = 0x1803}},
    {"-i|x.txt|-hetrange|l", {.general = 0x2031FF, .het = 0x1803}},
    {"-i|x.txt|-hetrange|linkedRD", {.general = 0x2031FF, .het = 0x5803}},
    {"-i|x.txt|-hetrange:linked", {.general = 0x2031FF}}, // "ge:linked" is skipped
    {"-i|x.txt|-hetrangelinked", {.general = 0x2031FF}},
    {"-i|x.txt|-hetrange:linked|ind", {.general = 0x2031FF, .het = 0x2803}},
    {"-i|x.txt|-hetranges|l", {.general = 0x2031FF, .het = 0x1803}},
    {"-i|x.txt|-hetrange:|l", {.general = 0x2031FF, .het = 0x1803}},
    {"-i|x.txt|-hetrange|individual", {.general = 0x2031FF, .het = 0x2803}},
    {"-i|x.txt|-hetrange|individual|l", {.general = 0x2031FF, .het = 0x3803}},
    {"-i|x.txt|-hetrange|individuall", {.general = 0x2031FF, .het = 0x2803}}, // "ividuall"
    {"-i|x.txt|-hetrange|ind", {.general = 0x2031FF, .het = 0x2803}},
    {"-i|x.txt|-hetrange|indl", {.general = 0x2031FF, .het = 0x3803}},
    {"-i|x.txt|-hetrange|i", {.general = 0x2031FF}}, // no short form here
    {"-i|x.txt|-hetrange|lind", {.general = 0x2031FF, .het = 0x3803}},
    {"-i|x.txt|-hetrange|RD", {.general = 0x2031FF, .het = 0x4803}},
    {"-i|x.txt|-hetrange|RD=ON", {.general = 0x2031FF, .het = 0x4803}},
    {"-i|x.txt|-hetrange|RD|RD=OFF", {.general = 0x2031FF}},
    {"-i|x.txt|-hetrange|RD=OFFl", {.general = 0x2031FF, .het = 0x1803}},
    {"-i|x.txt|-hetrange|RD=OFl", {.general = 0x2031FF, .het = 0x4803}},
    {"-i|x.txt|-hetrange|RDl", {.general = 0x2031FF, .het = 0x5803}},
    {"-i|x.txt|-hetrange|zero", {.general = 0x2031FF, .het = 0}},
    {"-i|x.txt|-hetrange|zero=OFF", {.general = 0x2031FF, .het = 0}},
    {"-i|x.txt|-hetrange|zero|zero=OFF", {.general = 0x2031FF, .het = 0}},
    {"-i|x.txt|-hetrange|zero=ON", {.general = 0x2031FF}},
    {"-i|x.txt|-hetrange|zero|zero=ON", {.general = 0x2031FF, .het = 0x800}},
    {"-i|x.txt|-hetrange|zero=on", {.general = 0x2031FF, .het = 0}}, // any other zero
    {"-i|x.txt|-hetrange|linked|ind|RD|zero=OFF", {.general = 0x2031FF, .het = 0}},
    {"-i|x.txt|-hetrange|zero|linked", {.general = 0x2031FF, .het = 0x1000}},
    {"-i|x.txt|-hetrange|zero=OFFl", {.general = 0x2031FF, .het = 0x1000}},
    {"-i|x.txt|-hetrange|zero=ONl", {.general = 0x2031FF, .het = 0x1803}},
    {"-i|x.txt|-hetrange|zerol", {.general = 0x2031FF, .het = 0x1000}},
    {"-i|x.txt|-hetrange|zer", {.general = 0x2031FF}},
    {"-i|x.txt|-hetrange|n=100|zero=OFF", {.general = 0x2031FF, .het = 0, .randomisations = 100}},
    {"-i|x.txt|-hetrange|n=-1", {.general = 0x2031FF, .randomisations = 0}},
    {"-i|x.txt|-hetrange|n=", {.general = 0x2031FF, .randomisations = 0}},
    {"-i|x.txt|-hetrange|n=|30", {.general = 0x2031FF, .randomisations = 30}},
    {"-i|x.txt|-hetrange|n=10l", {.general = 0x2031FF, .randomisations = 10}},
    {"-i|x.txt|-hetrange|n=l", {.general = 0x2031FF, .randomisations = 0}},
    {"-i|x.txt|-hetrange:n=10", {.general = 0x2031FF}},
    {"-i|x.txt|-hetrange|n=3000000000", {.general = 0x2031FF, .randomisations = 2147483647}},
};

// --- -rare -----------------------------------------------------------------------------------

const Line kRareLines[] = {
    {"-i|x.txt|-rare|5", {.richness = 10}},
    {"-i|x.txt|-rare5", {.richness = 10}},
    {"-i|x.txt|-rare:5", {.richness = 10}},
    {"-i|x.txt|-rare:|5", {.richness = 10}},
    {"-i|x.txt|-rare|   5", {.richness = 10}},
    {"-i|x.txt|-rare|:5", {.richness = 0}}, // ":5" is no number
    {"-i|x.txt|-rare::5", {.richness = 0}},
    {"-i|x.txt|-rarely|5", {.richness = 0}}, // "ly 5" is no number
    {"-i|x.txt|-rare|2.3", {.richness = 4}}, // 4.6
    {"-i|x.txt|-rare|0.5", {.richness = 1}},
    {"-i|x.txt|-rare|0.49", {.richness = 0}}, // 0.98
    {"-i|x.txt|-rare|.75", {.richness = 1}},  // 1.5
    {"-i|x.txt|-rare|0", {.richness = 0}},
    {"-i|x.txt|-rare", {.richness = 0}},
    {"-i|x.txt|-rare|", {.richness = 0}},
    {"-i|x.txt|-rare|all", {.richness = 0}},
    {"-i|x.txt|-rare|5cats", {.richness = 10}},
    {"-i|x.txt|-rare|5|6", {.richness = 10}},
    {"-i|x.txt|-rare|5|-rare|6", {.richness = 12}},
    {"-i|x.txt|-rare|1e3", {.richness = 2000}},
    {"-i|x.txt|-rare|1073741823.5", {.richness = 2147483647}},
    {"-i|x.txt|-rare|1073741824", {.richness = 2147483647}},
    {"-i|x.txt|-rare|1e308", {.richness = 2147483647}},
    {"-i|x.txt|-rare|inf", {.richness = 2147483647}},
    {"-i|x.txt|-rare|nan", {.richness = 0}},
    // Right behind the option a negative number is its value.
    {"-i|x.txt|-rare|-1", {.richness = -1}},
    {"-i|x.txt|-rare|5|-rare|-1", {.richness = -1}},
    {"-i|x.txt|-rare|5|-rare:|-1", {.richness = -1}},
    {"-i|x.txt|-rare|5|-rare:-1", {.richness = -1}},
    {"-i|x.txt|-rare|5|-rare-1", {.richness = -1}},
    {"-i|x.txt|-rare|5|-rare|-0.2", {.richness = -1}},
    {"-i|x.txt|-rare|5|-rare|-.5", {.richness = -1}},
    {"-i|x.txt|-rare|5|-rare|-1e300", {.richness = -1}},
    {"-i|x.txt|-rare|5|-rare:-inf", {.richness = -1}},
    {"-i|x.txt|-rare|5|-rare|-0", {.richness = 0}}, // -0 is not below 0
    {"-rare|-1|-i|x.txt", {.richness = -1}},
    {"-i|x.txt|-rare|-1|-fst|p", {.general = 0x71FF, .fst = 0x0239, .richness = -1}},
    // Everywhere else it opens an option.
    {"-i|x.txt|-rare|5|-1", {.richness = 10}},
    {"-i|x.txt|-rare|5|-1|-fst",
     {.richness = 10},
     "\nSetting is incorrect!\nPlease check command:-1 !"},
    {"-i|x.txt|-rare|-x|-fst",
     {.richness = 0},
     "\nSetting is incorrect!\nPlease check command:-x !"},
    {"-i|x.txt|-rare|-", {.richness = 0}},
    {"-rare|-i|x.txt", {.richness = 0}},
    {"-rare|-inf", {.file = "nf", .richness = 0}},
    {"-i|x.txt|-rare||-1|-fst",
     {.richness = 0},
     "\nSetting is incorrect!\nPlease check command:-1 !"},
    {"-i|x.txt|-fst|n=|-1|-dist",
     {.general = 0x71FF, .fst = 0x1A39, .permutations = 0},
     "\nSetting is incorrect!\nPlease check command:-1 !"},
};

const Line kMixedLines[] = {
    {"-dist|p|POSA|n=100|-fst|p|-i|x.txt",
     {.general = 0x75FF, .dist = 0x3, .fst = 0x0239, .bootstraps = 100}},
    {"-hetrange|l|n=5|-format|im|-dist|i|nexus|-rare|3|-fim|s|-i|x.txt|-fst|g|n=9",
     {.im = "s",
      .general = 0x6079FF,
      .dist = 0x801,
      .fst = 0x1A39,
      .het = 0x1803,
      .permutations = 9,
      .richness = 6,
      .randomisations = 5}},
    {"-fst|n=1|-dist|n=2|-hetrange|n=3|-i|x.txt",
     {.general = 0x2071FF, .fst = 0x1A39, .bootstraps = 2, .permutations = 1, .randomisations = 3}},
};
} // namespace

LINES(FileNames, kFileLines);
LINES(Errors, kErrorLines);
LINES(Fst, kFstLines);
LINES(Dist, kDistLines);
LINES(Format, kFormatLines);
LINES(HetRange, kHetRangeLines);
LINES(Rare, kRareLines);
LINES(Mixed, kMixedLines);

// --- One option ----------------------------------------------------------------------------

TEST(AnalyseCommando, NullIsRefused) {
    CCommandZeileKVA commandLine;
    EXPECT_EQ(commandLine.AnalyseCommando(nullptr), -1);
}

TEST(AnalyseCommando, TextWithoutADashIsPassedOver) {
    CCommandZeileKVA commandLine;
    for (const char* text : {"", "data.txt", " -i data.txt", " "}) {
        EXPECT_EQ(commandLine.AnalyseCommando(text), 0) << text;
    }
    EXPECT_EQ(settingsOf(commandLine), Settings{.file = ""});
}

TEST(AnalyseCommando, UnknownOptionIsRefused) {
    CCommandZeileKVA commandLine;
    for (const char* text : {"-", "--", "-x", "-f", "-fs", "-dis", "-forma", "-hetrang", "-rar",
                             "- i data.txt", "-Dist"}) {
        EXPECT_EQ(commandLine.AnalyseCommando(text), -1) << text;
    }
    EXPECT_EQ(settingsOf(commandLine), Settings{.file = ""});
}

TEST(AnalyseCommando, EveryOptionIsTaken) {
    CCommandZeileKVA commandLine;
    for (const char* text : {"-i", "-i: name", "-fim", "-fim name", "-fst", "-fst nothing known",
                             "-dist", "-format", "-hetrange", "-rare", "-rare x"}) {
        EXPECT_EQ(commandLine.AnalyseCommando(text), 1) << text;
    }
}

TEST(AnalyseCommando, LoneBlankIsNoFileName) {
    CCommandZeileKVA commandLine;
    for (const char* text : {"-i ", "-i    ", "-i: ", "-fim ", "-fim:  "}) {
        StdoutCapture console;
        EXPECT_EQ(commandLine.AnalyseCommando(text), -1) << text;
        EXPECT_EQ(console.text(), "No Filename!\n") << text;
    }
}

TEST(AnalyseCommando, LoneBlankLeavesTheEarlierName) {
    CCommandZeileKVA commandLine;
    commandLine.AnalyseCommando("-i data.txt");
    const StdoutCapture console;
    commandLine.AnalyseCommando("-i ");
    EXPECT_EQ(commandLine.DatenName, "data.txt");
}

TEST(AnalyseCommando, LongTextIsReadInOnePass) {
    CCommandZeileKVA commandLine;
    std::string option = "-fst";
    for (int i = 0; i < 200000; ++i) {
        option += " x n=3";
    }
    EXPECT_EQ(commandLine.AnalyseCommando(option.c_str()), 1);
    EXPECT_EQ(commandLine.Permutationen, 3);
}

// --- A run ---------------------------------------------------------------------------------

namespace {

// Works in a folder that holds "data.txt".
class CommandLineRun : public testing::Test {
  protected:
    CommandLineRun() { writeFile("data.txt", tabbed(kTwoPops)); }

    const TempFolder folder{TempFolder::Enter::yes};
    CCommandZeileKVA commandLine;
};

} // namespace

TEST_F(CommandLineRun, NoArgumentGivesZero) {
    char program[] = "kva";
    char* argv[] = {program, nullptr};
    EXPECT_EQ(commandLine.Analyse(1, argv), 0);
    EXPECT_EQ(commandLine.Analyse(0, argv + 1), 0);
    EXPECT_EQ(commandLine.DatenObjekt, nullptr);
}

TEST_F(CommandLineRun, GivesOneAndLeavesAResultFolder) {
    EXPECT_EQ(analyse(commandLine, "-i|data.txt").result, 1);
    EXPECT_TRUE(fs::exists(folder / "data.txt_KVAresult00/KVA.log"));
    EXPECT_EQ(commandLine.DatenObjekt->AnzPop, 2);
    EXPECT_EQ(commandLine.DatenObjekt->AnzLoci, 2);
}

TEST_F(CommandLineRun, HeadOfTheLogShowsTheSettings) {
    analyse(commandLine, "-i|data.txt|-rare|5|-dist|p|POSA|n=100|-fst|p|n=7");
    commandLine.DatenObjekt.reset();
    const std::string log = readFile(folder / "data.txt_KVAresult00/KVA.log");
    const std::string head = "KVAnalyser-Log\n"
                             "\tVersion: 4.05\n"
                             "\tKVAnalyzer, population genetics of microsatellites\n"
                             "\n"
                             "Filename: data.txt\n"
                             "Number of Loci\t\t: 2\n"
                             "Number of Populations\t: 2\n"
                             "Format : 2\n"
                             "\n"
                             "Allelic Richness : 5.000000\n"
                             "Distanz settings:\n"
                             "Dps, Proportion of shared allels\n"
                             "Distances are taken as 1-P [if possible]\n"
                             "\n"
                             "Number of bootstraps\t: 100\n"
                             "\n"
                             "F-Statistics settings:\n"
                             "Heterozygosity is Hobserved\n"
                             "Resampling Genotypes\n"
                             "Loci are linked together\n"
                             "Randomisationmode: Permutation\n"
                             "\n"
                             "Number of permutations\t: 7\n"
                             "\n";
    EXPECT_EQ(log.substr(0, head.size()), head);
}

TEST_F(CommandLineRun, SettingsAreCopiedIntoTheObject) {
    commandLine.ReplikaLoci = -2;
    commandLine.Replikate = 400;
    commandLine.BootLoci = 5;
    analyse(commandLine, "-i|data.txt|-hetrange|zero|n=4|-dist|FSS|-rare|3|-fst|p|HW|n=0");
    const AnalyseDataObj& run = *commandLine.DatenObjekt;
    EXPECT_EQ(run.GeneralMask, 0x2071FFU);
    EXPECT_EQ(run.PopDistMask, 0x5U);
    EXPECT_EQ(run.IndDistMask, 0x5U);
    EXPECT_EQ(run.FstMask, 0x0221U);
    EXPECT_EQ(run.HetRangeMask, 0U);
    EXPECT_EQ(run.HetRandomisierungen, 4);
    EXPECT_EQ(run.RichnessRef, 6);
    EXPECT_EQ(run.ReplikaLoci, -2);
    EXPECT_EQ(run.Replikate, 400);
    EXPECT_EQ(run.BootLoci, 5);
}

TEST_F(CommandLineRun, DefaultsComputeNeitherDistancesNorFStatisticsNorFormats) {
    EXPECT_EQ(analyse(commandLine, "-i|data.txt").result, 1);
    EXPECT_EQ(commandLine.DatenObjekt->GeneralMask, 0x31FFU);
    EXPECT_FALSE(fs::exists(folder / "data.txt_KVAresult00/Distance_data"));
    EXPECT_FALSE(fs::exists(folder / "data.txt_KVAresult00/F-Statistic"));
    EXPECT_FALSE(fs::exists(folder / "data.txt_KVAresult00/Resampling_data"));
}

TEST_F(CommandLineRun, UnknownLastOptionGoesUnremarked) {
    const Outcome plain = analyse(commandLine, "-i|data.txt");
    CCommandZeileKVA other;
    commandLine.DatenObjekt.reset();
    const Outcome bogus = analyse(other, "-i|data.txt|-bogus");
    EXPECT_EQ(bogus.result, 1);
    EXPECT_EQ(bogus.console, plain.console);
}

TEST_F(CommandLineRun, AbsentSideFileIsToldAndTheRunGoesOn) {
    const Outcome outcome = analyse(commandLine, "-i|data.txt|-fim|my side.txt");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_NE(outcome.console.find("\nCan't open 'my side.txt' as IM-Format-Helper-File!\n"),
              std::string::npos);
}

// The name starts from the folder of the call, although the process stands in the result
// folder by the time the file is read.
TEST_F(CommandLineRun, SideFileIsOpenedInTheFolderOfTheCall) {
    writeFile("side.txt", "");
    const Outcome outcome = analyse(commandLine, "-i|data.txt|-fim|side.txt");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.console.find("Can't open"), std::string::npos);
}

TEST_F(CommandLineRun, ObjectsEndBringsTheProcessBack) {
    analyse(commandLine, "-i|data.txt");
    EXPECT_EQ(fs::current_path(), folder / "data.txt_KVAresult00");
    commandLine.DatenObjekt.reset();
    EXPECT_EQ(fs::current_path(), folder.path());
}

TEST_F(CommandLineRun, LoadedDataTakeTheNextFolderWithoutReading) {
    analyse(commandLine, "-i|data.txt");
    const std::string log = readFile("KVA.log");
    fs::remove(folder / "data.txt");
    EXPECT_EQ(analyse(commandLine, "-i|data.txt").result, 1);
    EXPECT_EQ(fs::current_path(), folder / "data.txt_KVAresult01");
    commandLine.DatenObjekt.reset();
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult01/KVA.log"), log);
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult00/KVA.log"), log);
}

TEST_F(CommandLineRun, RefusedFileStillGivesOneAndALog) {
    writeFile("bad.txt", "3\t\t\t2\n");
    EXPECT_EQ(analyse(commandLine, "-i|bad.txt").result, 1);
    EXPECT_TRUE(fs::exists(folder / "bad.txt_KVAresult00/KVA.log"));
}

// "_KVAresult00" makes 257 bytes of a name of 245; a name in a folder has at most 255.
TEST_F(CommandLineRun, WithoutAResultFolderNoPassRuns) {
    const std::string name(245, 'n');
    writeFile(name, tabbed(kTwoPops));
    const Outcome outcome = analyse(commandLine, "-i|" + name);
    EXPECT_EQ(outcome.result, -1);
    EXPECT_NE(outcome.console.find("\n!! ERROR Can't change into result folder ERROR !!\n"),
              std::string::npos);
    EXPECT_EQ(outcome.console.find("Count Allels"), std::string::npos);
    EXPECT_TRUE(commandLine.DatenObjekt->PopAllele.empty());
}
