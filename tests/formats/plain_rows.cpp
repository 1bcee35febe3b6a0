#include "formats/plain_rows.h"

#include "formats/GenePop.h"
#include "formats/GenepopRows.h"
#include "fstat/randsci.h"

#include <array>
#include <string_view>
#include <utility>

using namespace kva;

namespace kva_test {

namespace {

std::string differenceOf(const GenepopRowTexts& texts, const std::string& genepop,
                         const GenepopLines& lines) {
    const std::array<std::pair<std::string_view, const std::string*>, 7> rows = {{
        {texts.Genepop, &genepop},
        {texts.GenepopRD, lines.GenepopRD},
        {texts.TwoColumns, lines.TwoColumns},
        {texts.OneColumn, lines.OneColumn},
        {texts.OneColumn2, lines.OneColumn2},
        {texts.Structure, lines.Structure},
        {texts.Structure2, lines.Structure2},
    }};
    for (const auto& [fast, plain] : rows) {
        if (fast != *plain + "\n") {
            return std::string(fast) + "plainly:\n" + *plain;
        }
    }
    return {};
}

} // namespace

std::string rowDifference(const Datensatz& data, const LocusTables& pool, long seed) {
    GenepopRows rows(data, pool);
    std::string difference;
    data.ForEachTier([&](int pop, int ind) {
        std::array<std::string, 8> plain;
        const GenepopLines lines{&plain[0], &plain[1], &plain[2], &plain[3],
                                 &plain[4], &plain[5], &plain[6], &plain[7]};
        srand2(seed);
        const std::string genepop = data.MakeGenePopLine(pop, ind, 1, 0, pool, lines);
        const double nextDraw = InternRand();
        srand2(seed);
        const GenepopRowTexts texts = rows.of(pop, ind);
        if (difference.empty()) {
            difference =
                InternRand() == nextDraw ? differenceOf(texts, genepop, lines) : "random stream";
        }
        ++seed;
    });
    return difference;
}

} // namespace kva_test
