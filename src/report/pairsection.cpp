#include "report/html.h"
#include "report/numbertext.h"
#include "report/sections.h"
#include "report/svg.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kva {

namespace {

constexpr const char* kFst = "fst_pairwise";
constexpr const char* kSheetP = "fst_pairwise_p";
constexpr const char* kSheetBonferroni = "fst_pairwise_p_bonferroni";
constexpr double kLevel = 0.05;
constexpr std::size_t kMostNumbers = 40; // populations; of more the map has no numbers in its cells

// The test of the pair i > j, which the record has in the order 1 and 2, 1 and 3, ..., 2 and 3.
std::size_t recordPlace(std::size_t n, std::size_t i, std::size_t j) {
    return j * n - j * (j + 1) / 2 + (i - j - 1);
}

// The p-values of the pairs, of the record or else of the sheet.
class PairTests {
  public:
    explicit PairTests(const ReportData& data) : Data(data), Tests(data.pairTests(kFst)) {}

    bool ofRecord() const { return !Tests.empty(); }
    bool any() const { return ofRecord() || !Data.of(kSheetP).empty(); }

    const RunRecord::Test& test(std::size_t i, std::size_t j) const {
        return Tests[recordPlace(Data.populations.size(), i, j)];
    }

    // Whether a pair has a p-value; how many pairs of the record do.
    bool has(std::size_t i, std::size_t j) const {
        return ofRecord() ? !test(i, j).p.empty() : !Data.pair(kSheetP, i, j).empty();
    }
    std::size_t countOfRecord() const {
        return static_cast<std::size_t>(
            std::count_if(Tests.begin(), Tests.end(),
                          [](const RunRecord::Test& test) { return !test.p.empty(); }));
    }

    // The p-value that is adjusted for the number of pairs; "" also where the sheet says that it is
    // not significant.
    std::string adjusted(std::size_t i, std::size_t j) const {
        return ofRecord() ? test(i, j).pHolm : std::string(Data.pair(kSheetBonferroni, i, j));
    }

  private:
    const ReportData& Data;
    std::span<const RunRecord::Test> Tests;
};

Table pairsTable(const ReportData& data, const PairTests& tests) {
    Table table{.id = "fst-pairs", .title = "Fst of pairs", .source = "F-Statistic/FST_WC84.txt"};
    table.columns = {{.head = "Population 1", .labels = true},
                     {.head = "Population 2", .words = true},
                     {.head = "Fst"}};
    if (tests.ofRecord()) {
        table.source += "; p-values: run.json";
        for (const char* head :
             {"p", "Its Monte Carlo error", "p after Holm", "p after Benjamini and Hochberg"}) {
            table.columns.push_back({.head = head});
        }
    }
    const bool sheet = !data.of(kSheetP).empty();
    if (sheet) {
        table.source += "; p-values of the sheet: F-Statistic/FST_WC84-pValue.xls";
        table.columns.push_back({.head = "p of the sheet"});
        table.columns.push_back({.head = "p times pairs, of the sheet"});
    }
    for (std::size_t i = 1; i < data.populations.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            std::vector<Cell> row = {
                {data.populations[j]}, {data.populations[i]}, {std::string(data.pair(kFst, i, j))}};
            if (tests.ofRecord()) {
                const RunRecord::Test& test = tests.test(i, j);
                for (const std::string& p : {test.p, test.pError, test.pHolm, test.pBh}) {
                    row.push_back(shortCell(p));
                }
            }
            if (sheet) {
                row.push_back({std::string(data.pair(kSheetP, i, j))});
                row.push_back({std::string(data.pair(kSheetBonferroni, i, j))});
            }
            table.rows.push_back(std::move(row));
        }
    }
    return table;
}

// --- The map of colours -----------------------------------------------------------------------

// The least and the largest Fst of a pair; 0 and 1 where no pair has a value.
struct FstRange {
    double low;
    double high;
};

FstRange rangeOfFst(const ReportData& data) {
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    for (const ResultRow& row : data.of(kFst)) {
        const double value = numberOf(row.value);
        if (std::isfinite(value)) {
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
    low = std::isfinite(low) ? low : 0;
    return {low, high > low ? high : low + 1};
}

class HeatMap {
  public:
    HeatMap(const ReportData& data, const PairTests& tests)
        : Data(data), Tests(tests), N(data.populations.size()), Numbers(N <= kMostNumbers),
          CellWidth(Numbers ? kNumberWidth
                            : std::max(4.0, std::floor(kMapWidth / static_cast<double>(N)))),
          CellHeight(Numbers ? kNumberHeight : CellWidth),
          Step(static_cast<std::size_t>(std::ceil(11.0 / CellHeight))), Range(rangeOfFst(data)) {
        for (const std::string& name : data.populations) {
            Left = std::max(Left, textWidth(shortName(name, kLongestName), 11) + 12);
        }
    }

    std::string draw() {
        const auto n = static_cast<double>(N);
        const double below = Left + 4; // room of the names of the columns
        Svg svg(Left + n * CellWidth + 90, kTop + n * CellHeight + below,
                "Fst of each pair of populations as a map of colours");
        for (std::size_t i = 0; i < N; ++i) {
            drawNames(svg, i);
            for (std::size_t j = 0; j < i; ++j) {
                drawPair(svg, i, j);
            }
        }
        drawScale(svg);
        return svg.finish();
    }

  private:
    static constexpr std::size_t kLongestName = 20;
    static constexpr double kMapWidth = 900;
    static constexpr double kNumberWidth = 56;
    static constexpr double kNumberHeight = 24;
    static constexpr double kTop = 6;

    double x(std::size_t column) const { return Left + static_cast<double>(column) * CellWidth; }
    double y(std::size_t row) const { return kTop + static_cast<double>(row) * CellHeight; }

    void drawNames(Svg& svg, std::size_t i) const {
        if (i % Step != 0) {
            return;
        }
        const std::string name = shortName(Data.populations[i], kLongestName);
        svg.text(Left - 6, y(i) + CellHeight / 2 + 4, name, {.anchor = "end", .size = 11});
        svg.text(x(i) + CellWidth / 2 + 4, y(N) + 6, name,
                 {.anchor = "end", .size = 11, .upright = true});
        if (Numbers) {
            svg.rect(x(i), y(i), CellWidth - 1, CellHeight - 1, "#f2f2f2");
        }
    }

    void drawPair(Svg& svg, std::size_t i, std::size_t j) const {
        const std::string fst(Data.pair(kFst, i, j));
        const double value = numberOf(fst);
        const double share = (value - Range.low) / (Range.high - Range.low);
        const std::string tip = Data.populations[j] + ", " + Data.populations[i] + ": " +
                                (fst.empty() ? "no value" : fst);
        const double gap = Numbers ? 1 : 0;
        svg.rect(x(j), y(i), CellWidth - gap, CellHeight - gap,
                 std::isfinite(value) ? heatColour(share) : std::string(kPale), tip);
        const std::string p = Tests.adjusted(i, j);
        const bool clear = numberOf(p) <= kLevel;
        if (Numbers) {
            const TextStyle style{.anchor = "middle", .size = 11};
            TextStyle onColour = style;
            onColour.fill = std::isfinite(value) ? inkOn(share) : kInk;
            svg.text(x(j) + CellWidth / 2, y(i) + CellHeight / 2 + 4, fst, onColour);
            if (Tests.has(i, j)) {
                TextStyle above = style;
                above.bold = clear;
                svg.text(x(i) + CellWidth / 2, y(j) + CellHeight / 2 + 4,
                         p.empty() ? "n.s." : shortText(numberOf(p), 3), above);
            }
        } else if (clear) {
            svg.rect(x(i), y(j), CellWidth, CellHeight, "#555555");
        }
    }

    void drawScale(Svg& svg) const {
        constexpr int kSteps = 20;
        constexpr double kHeight = 6;
        const double left = x(N) + 18;
        svg.text(left, kTop + 12, "Fst", {.bold = true});
        const double top = kTop + 22;
        for (int s = 0; s < kSteps; ++s) {
            svg.rect(left, top + kHeight * (kSteps - 1 - s), 16, kHeight + 0.3,
                     heatColour((s + 0.5) / kSteps));
        }
        const Scale scale{Range.low, Range.high, top + kHeight * kSteps, top};
        for (const double tick : roundTicks(Range.low, Range.high, 4)) {
            svg.text(left + 22, scale.at(tick) + 4, shortText(tick, 4), {.size = 11});
        }
    }

    const ReportData& Data;
    const PairTests& Tests;
    std::size_t N;
    bool Numbers; // in the cells
    double CellWidth;
    double CellHeight;
    std::size_t Step; // every how many names are written
    FstRange Range;
    double Left = 40;
};

std::string captionOf(const ReportData& data, const PairTests& tests) {
    const bool numbers = data.populations.size() <= kMostNumbers;
    std::string caption = "Below the diagonal Fst";
    if (!tests.any()) {
        return caption + "; there were no tests.";
    }
    const std::string by =
        tests.ofRecord() ? "adjusted after Holm" : "times the number of pairs (n.s.: above 0.05)";
    caption += numbers ? ", above it the p-value, " + by + ", bold where it is 0.05 or less."
                       : ", above it dark where the p-value, " + by + ", is 0.05 or less.";
    return caption;
}

// Whether so few permutations can give an adjusted p of 0.05 at all.
void appendPermutationNote(const ReportData& data, const PairTests& tests, std::string& html) {
    if (!tests.any()) {
        appendNote(html, "There were no tests of pairs; <code>--permutations 10000</code> of "
                         "<code>kvatool run</code> makes them.");
        return;
    }
    if (!tests.ofRecord()) {
        return;
    }
    const std::size_t pairs = tests.countOfRecord();
    const std::string permutations(data.record->setting("permutations"));
    const bool whole = data.record->setting("sequential_hits") == "0";
    if (whole && static_cast<double>(pairs) / (numberOf(permutations) + 1) > kLevel) {
        appendNote(html, escaped(permutations) +
                             " permutations are too few for a p-value of 0.05 "
                             "or less after Holm with " +
                             counted(pairs, "pair") + ", whatever the data.");
    }
}

} // namespace

bool writePairSection(const ReportData& data, std::string& html) {
    const std::size_t n = data.populations.size();
    if (n < 2 || data.of(kFst).size() != n * (n - 1) / 2) {
        return false;
    }
    const PairTests tests(data);
    appendPermutationNote(data, tests, html);
    appendFigure(html, "fst-picture", "Fst of pairs", HeatMap(data, tests).draw(),
                 captionOf(data, tests));
    appendTable(html, pairsTable(data, tests));
    return true;
}

} // namespace kva
