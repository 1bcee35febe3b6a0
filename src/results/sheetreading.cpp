#include "results/sheetreading.h"

#include "results/cellvalue.h"

#include <charconv>

namespace kva {

namespace {

constexpr std::size_t kShownBytes = 40; // of a cell that is no number
constexpr std::size_t kCountDigits = 9;

bool isHeadLine(std::string_view line) {
    return line.starts_with('\t') && line.ends_with('\t');
}

} // namespace

SheetReading::SheetReading(SheetLines& lines, const SheetRule& rule,
                           std::span<const std::string> populations, std::string_view part,
                           const RowSink& sink)
    : Lines(lines), Rule(rule), Populations(populations), Part(part), Sink(sink) {}

bool SheetReading::row(const TidyPlace& place, std::string_view cell) {
    return row(Rule.statistic, place, cell, Rule.none);
}

bool SheetReading::row(std::string_view statistic, const TidyPlace& place, std::string_view cell,
                       NoValue none) {
    const std::optional<std::string_view> value = cellValue(cell);
    if (!value) {
        Lines.fault("\"" + std::string(cell.substr(0, kShownBytes)) + "\" is no number");
    }
    if (Lines.sound()) {
        const bool isNone = none != nullptr && none(*value);
        Sink({statistic, place, isNone ? std::string_view() : *value});
    }
    return Lines.sound();
}

bool SheetReading::nextOf(std::string_view what) {
    if (!Lines.next()) {
        Lines.fault("the sheet ends, where " + std::string(what) + " should follow");
    }
    return Lines.sound();
}

bool SheetReading::hasCells(std::size_t cells, std::size_t expected) {
    if (cells != expected) {
        Lines.fault(std::to_string(cells) + " cells instead of " + std::to_string(expected));
    }
    return Lines.sound();
}

LocusHead readLocusHead(SheetLines& lines, std::size_t labels) {
    if (!lines.next()) {
        lines.fault("the sheet has no head");
        return {};
    }
    return locusHeadFromHere(lines, labels);
}

LocusHead locusHeadFromHere(SheetLines& lines, std::size_t labels) {
    LocusHead head;
    const std::span<const std::string_view> cells = lines.closedCells();
    if (!isHeadLine(lines.line()) || cells.size() < labels) {
        lines.fault("no head of locus names");
        return head;
    }
    head.loci.assign(cells.begin() + static_cast<std::ptrdiff_t>(labels), cells.end());
    head.more = lines.next();
    if (head.more && isHeadLine(lines.line())) {
        head.more = lines.next();
    }
    return head;
}

std::optional<std::string_view> numberBetween(std::string_view text, std::string_view before,
                                              std::string_view after) {
    if (text.size() < before.size() + after.size() || !text.starts_with(before) ||
        !text.ends_with(after)) {
        return std::nullopt;
    }
    const std::string_view number =
        text.substr(before.size(), text.size() - before.size() - after.size());
    if (!isWholeNumber(number.substr(number.starts_with('-') ? 1 : 0))) {
        return std::nullopt;
    }
    return number;
}

std::optional<std::size_t> countOf(std::string_view text) {
    if (!isWholeNumber(text) || text.size() > kCountDigits) {
        return std::nullopt;
    }
    std::size_t count = 0;
    std::from_chars(text.data(), text.data() + text.size(), count);
    return count;
}

} // namespace kva
