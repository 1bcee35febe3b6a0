#include "results/layouts.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kva {

namespace {

using Cells = std::span<const std::string_view>;

// The texts around two numbers.
struct Around {
    std::string_view before;
    std::string_view between;
    std::string_view after;
};

std::optional<std::pair<std::string_view, std::string_view>> twoNumbers(std::string_view text,
                                                                        const Around& around) {
    const std::size_t middle = text.find(around.between, around.before.size());
    if (middle == std::string_view::npos) {
        return std::nullopt;
    }
    const auto first = numberBetween(text.substr(0, middle), around.before, "");
    const auto second =
        numberBetween(text.substr(middle + around.between.size()), "", around.after);
    if (!first || !second) {
        return std::nullopt;
    }
    return std::pair(*first, *second);
}

// --- Global F-statistics -----------------------------------------------------------------------

struct GlobalRow {
    std::string_view overLoci;
    std::string_view ofLocus;
    std::string_view statistic;      // over all loci
    std::string_view locusStatistic; // of a locus
    std::string_view p;              // empty: not tested
    std::string_view locusP;
};

constexpr GlobalRow kGlobalRows[] = {
    {"global Fst over all loci:", "global Fst:", "fst_global", "fst_global_locus", "fst_global_p",
     "fst_global_locus_p"},
    {"global Fit over all loci:", "global Fit: ", "fit_global", "fit_global_locus", "", ""},
    {"global Fis over all loci:", "global Fis: ", "fis_global", "fis_global_locus", "", ""},
    {"Gst over all loci:", "Gst:", "gst_global", "gst_global_locus", "gst_global_p",
     "gst_global_locus_p"},
    {"Gst' over all loci:", "Gst':", "gst_prime_global", "gst_prime_global_locus",
     "gst_prime_global_p", "gst_prime_global_locus_p"},
};

constexpr std::string_view kPermutations = "permutations_global";

// Hands out a value and, where there is one behind it, its p-value.
bool valueWithP(SheetReading& sheet, std::string_view statistic, std::string_view p,
                const TidyPlace& place, Cells cells) {
    if (cells.size() != 1 && (cells.size() != 2 || p.empty())) {
        sheet.lines().fault("a value should stand here, or a value and its p");
        return false;
    }
    return sheet.row(statistic, place, cells[0]) &&
           (cells.size() == 1 || sheet.row(p, place, cells[1]));
}

bool readOverLoci(SheetReading& sheet) {
    for (const GlobalRow& row : kGlobalRows) {
        // The first row is current: the head in front may have any number of lines.
        if (&row != kGlobalRows && !sheet.nextOf(row.overLoci)) {
            return false;
        }
        const Cells cells = sheet.lines().cells();
        if (cells[0] != row.overLoci) {
            sheet.lines().fault("\"" + std::string(row.overLoci) + "\" should stand in front");
            return false;
        }
        if (!valueWithP(sheet, row.statistic, row.p, {}, cells.subspan(1))) {
            return false;
        }
    }
    return true;
}

// The rows of a locus; its heading is the current line.
bool readGlobalLocus(SheetReading& sheet) {
    if (!sheet.lines().line().starts_with("Locus: ")) {
        sheet.lines().fault("the name of a locus should stand here");
        return false;
    }
    for (const GlobalRow& row : kGlobalRows) {
        if (!sheet.nextOf(row.ofLocus)) {
            return false;
        }
        const Cells cells = sheet.lines().cells();
        if (cells.size() < 2 || cells[1] != row.ofLocus) {
            sheet.lines().fault("\"" + std::string(row.ofLocus) + "\" should stand here");
            return false;
        }
        if (!valueWithP(sheet, row.locusStatistic, row.locusP, {.locus = cells[0]},
                        cells.subspan(2))) {
            return false;
        }
    }
    return true;
}

void readGlobalF(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    while (sheet.nextOf(kGlobalRows[0].overLoci) && lines.cells()[0] != kGlobalRows[0].overLoci) {
        if (const auto n = numberBetween(lines.line(), "Number of permutations is: ", "")) {
            sheet.row(kPermutations, {}, *n);
        }
    }
    if (!lines.sound() || !readOverLoci(sheet)) {
        return;
    }
    bool more = lines.next();
    if (more && lines.line() == "\t\tValues\tp-Values") {
        more = lines.next();
    }
    for (; more; more = lines.next()) {
        if (!readGlobalLocus(sheet)) {
            return;
        }
    }
}

std::vector<std::string_view> globalStatistics() {
    std::vector<std::string_view> names = {kPermutations};
    for (const GlobalRow& row : kGlobalRows) {
        for (const std::string_view name : {row.statistic, row.locusStatistic, row.p, row.locusP}) {
            if (!name.empty()) {
                names.push_back(name);
            }
        }
    }
    return names;
}

// --- Heterogeneity among loci ---------------------------------------------------------------

constexpr std::string_view kLociDrawn = "heterogeneity_loci_drawn";
constexpr std::string_view kLociTotal = "heterogeneity_loci_total";
constexpr std::string_view kReplicates = "heterogeneity_replicates";
constexpr std::string_view kPairHeterogeneity = "fst_pairwise_heterogeneity";
constexpr std::array<std::string_view, 3> kGlobalHeterogeneity = {
    "fst_global_heterogeneity", "fit_global_heterogeneity", "fis_global_heterogeneity"};
constexpr std::array<std::string_view, 2> kPercents = {"95 %", "99 %"};
constexpr std::array<std::string_view, 3> kTriple = {"lower", "mean", "upper"};

// Hands out the triples of all statistics for 95 %, then those for 99 %; each has an empty cell
// behind it.
bool readTriples(SheetReading& sheet, std::span<const std::string_view> statistics, TidyPlace place,
                 Cells cells) {
    constexpr std::size_t kStep = 4;
    if (!sheet.hasCells(cells.size(), kStep * kPercents.size() * statistics.size())) {
        return false;
    }
    for (const std::string_view percent : kPercents) {
        for (const std::string_view statistic : statistics) {
            for (std::size_t t = 0; t < kTriple.size(); ++t) {
                std::string replicate(kTriple[t]);
                replicate.append(" ").append(percent);
                place.replicate = replicate;
                if (!sheet.row(statistic, place, cells[t])) {
                    return false;
                }
            }
            cells = cells.subspan(kStep);
        }
    }
    return true;
}

// "Analysis takes 8 Loci out of 9 Loci total."
bool readLociDrawn(SheetReading& sheet) {
    const auto numbers =
        twoNumbers(sheet.lines().line(), {"Analysis takes ", " Loci out of ", " Loci total."});
    return numbers && sheet.row(kLociDrawn, {}, numbers->first) &&
           sheet.row(kLociTotal, {}, numbers->second);
}

// "KVA made 1000 replikas."
bool readReplicates(SheetReading& sheet) {
    const std::string& line = sheet.lines().line();
    auto number = numberBetween(line, "KVA made ", " replikas.");
    if (!number) {
        number = numberBetween(line, "KVA makes ", " replikas.");
    }
    return number && sheet.row(kReplicates, {}, *number);
}

constexpr std::string_view kPairHead = "\t\t95% lower"; // begins the last line above the pairs

// A line outside the rows of pairs.
bool readOther(SheetReading& sheet) {
    const std::string& line = sheet.lines().line();
    if (line.starts_with("Global:\t")) {
        return readTriples(sheet, kGlobalHeterogeneity, {}, sheet.lines().cells().subspan(1));
    }
    if (line.starts_with("Analysis takes ")) {
        return readLociDrawn(sheet);
    }
    if (line.starts_with("KVA ")) {
        return readReplicates(sheet);
    }
    return line.empty() || line.starts_with("\t") || line.starts_with("Heterogeneity in ") ||
           line.starts_with("calculated by ");
}

void readHeterogeneity(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    bool inPairs = false; // rows of pairs, up to an empty line
    while (lines.next()) {
        bool good = true;
        if (inPairs && !lines.line().empty()) {
            constexpr std::size_t kNames = 2;
            const Cells cells = lines.cells();
            good = cells.size() > kNames &&
                   readTriples(sheet, {&kPairHeterogeneity, 1},
                               {.population1 = cells[0], .population2 = cells[1]},
                               cells.subspan(kNames));
        } else {
            inPairs = lines.line().starts_with(kPairHead);
            good = readOther(sheet);
        }
        if (!good) {
            return lines.fault("not a line of this sheet");
        }
    }
}

std::vector<std::string_view> heterogeneityStatistics() {
    std::vector names = {kLociDrawn, kLociTotal, kReplicates, kPairHeterogeneity};
    names.insert(names.end(), kGlobalHeterogeneity.begin(), kGlobalHeterogeneity.end());
    return names;
}

// --- Error report ---------------------------------------------------------------------------

// A line or a remark with one number or two.
struct Remark {
    Around text; // without a second number `between` is empty
    std::string_view statistic;
    std::string_view second; // of the second number
};

constexpr Remark kReportHead[] = {
    {{"- Large Gaps in your Data (>", "xMutationstep OR >", " bp)"},
     "report_limit_gap_steps",
     "report_limit_gap_length"},
    {{"- Unexpected short/long Allels (possible type errors!)[<", ",>", "]"},
     "report_limit_allele_short",
     "report_limit_allele_long"},
};

constexpr Remark kRemarks[] = {
    {{"Mutationsteps found:", "", ""}, "report_step_found", ""},
    {{"Incorrect Mutationsteps:", " instead of ", ""},
     "report_step_too_small",
     "report_step_expected"},
    {{"Mutationsteps to large:", " instead of ", ""},
     "report_step_too_large",
     "report_step_expected"},
    {{"Found incompatible Mutationstep:", "", " !"}, "report_step_incompatible", ""},
    {{"Large Allelgap detected:", "", ""}, "report_gap_large", ""},
    {{"Found to short Allel(s):", "", ""}, "report_allele_short", ""},
    {{"Found to long Allel(s):", "", ""}, "report_allele_long", ""},
};

constexpr std::string_view kMonomorphic = "report_monomorphic";

// Hands out the numbers of a text; false where it is not the remark's.
bool readRemark(SheetReading& sheet, const Remark& remark, std::string_view text,
                const TidyPlace& place) {
    if (remark.second.empty()) {
        const auto number = numberBetween(text, remark.text.before, remark.text.after);
        return number && sheet.row(remark.statistic, place, *number);
    }
    const auto numbers = twoNumbers(text, remark.text);
    return numbers && sheet.row(remark.statistic, place, numbers->first) &&
           sheet.row(remark.second, place, numbers->second);
}

bool readAnyRemark(SheetReading& sheet, std::string_view text, const TidyPlace& place) {
    for (const Remark& remark : kRemarks) {
        if (readRemark(sheet, remark, text, place)) {
            return true;
        }
    }
    sheet.lines().fault("a remark that this program does not write");
    return false;
}

// The line of a locus: its name, a comma and the remarks, each with a tab behind it.
bool readLocusRemarks(SheetReading& sheet) {
    Cells cells = sheet.lines().cells();
    std::string_view name = cells[0];
    if (cells.size() < 2 || !name.ends_with(',')) {
        sheet.lines().fault("the name of a locus should stand in front");
        return false;
    }
    name.remove_suffix(1);
    const TidyPlace place{.locus = name};
    if (cells.size() == 2 && cells[1] == "monomorphic") {
        return sheet.row(kMonomorphic, place, "1");
    }
    if (!cells.back().empty()) {
        sheet.lines().fault("the sheet is cut off here");
        return false;
    }
    for (const std::string_view text : cells.subspan(1, cells.size() - 2)) {
        if (!readAnyRemark(sheet, text, place)) {
            return false;
        }
    }
    return true;
}

void readErrorReport(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    constexpr std::size_t kTextLines = 3;
    for (std::size_t line = 0; line < kTextLines; ++line) {
        if (!sheet.nextOf("the explanation")) {
            return;
        }
    }
    for (const Remark& limits : kReportHead) {
        if (!sheet.nextOf("the limits") || !readRemark(sheet, limits, lines.line(), {})) {
            return lines.fault("the limits of the report should stand here");
        }
    }
    if (lines.next() && !lines.line().empty()) {
        return lines.fault("an empty line should stand here");
    }
    while (lines.next() && readLocusRemarks(sheet)) {
    }
}

std::vector<std::string_view> reportStatistics() {
    std::vector names = {kMonomorphic};
    for (const std::span<const Remark> remarks :
         {std::span<const Remark>(kReportHead), std::span<const Remark>(kRemarks)}) {
        for (const Remark& remark : remarks) {
            for (const std::string_view name : {remark.statistic, remark.second}) {
                if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end()) {
                    names.push_back(name);
                }
            }
        }
    }
    return names;
}

} // namespace

const Layout kGlobalF = {readGlobalF, globalStatistics};
const Layout kHeterogeneity = {readHeterogeneity, heterogeneityStatistics, true};
const Layout kErrorReport = {readErrorReport, reportStatistics, true};

} // namespace kva
