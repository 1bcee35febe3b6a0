#include "report/panels.h"

#include "report/numbertext.h"

#include <algorithm>

namespace kva {

namespace {

constexpr double kPageWidth = 1040; // of a picture, if a panel is narrower
constexpr double kGap = 16;         // between panels
constexpr double kTitle = 22;
constexpr double kAxis = 30;
constexpr double kLegend = 26;
constexpr std::size_t kFewRows = 30;
constexpr std::size_t kLongestName = 22; // characters

struct Frame {
    double left = 0; // room of the names
    double rowHeight = 18;
    std::size_t across = 1; // panels side by side
    double blockHeight = 0; // of a row of panels
};

Frame frameOf(std::span<const std::string> rows, std::size_t panels, const PanelLayout& layout) {
    Frame frame;
    frame.rowHeight = rows.size() <= kFewRows ? 18 : 12;
    for (const std::string& name : rows) {
        frame.left = std::max(frame.left, textWidth(shortName(name, kLongestName), 11));
    }
    frame.left += 14;
    const auto fits =
        static_cast<std::size_t>(std::max(1.0, (kPageWidth - frame.left) / (layout.width + kGap)));
    const std::size_t blocks = (panels + fits - 1) / fits;
    frame.across = blocks == 0 ? 1 : (panels + blocks - 1) / blocks; // blocks that are even
    frame.blockHeight = kTitle + frame.rowHeight * static_cast<double>(rows.size()) + kAxis;
    return frame;
}

void drawAxis(Svg& svg, const Panel& panel, const Scale& x, double top, double bottom, int ticks) {
    for (const double tick : roundTicks(panel.low, panel.high, ticks)) {
        const double at = x.at(tick);
        svg.line(at, top, at, bottom, "#ececec");
        svg.text(at, bottom + 13, shortText(tick, 6), {.anchor = "middle", .size = 10});
    }
    svg.line(x.from - 4, bottom, x.to + 4, bottom, kGrey);
    svg.line(x.from - 4, top, x.to + 4, top, kPale);
}

} // namespace

std::string panelPicture(std::span<const std::string> rows, std::span<const Panel> panels,
                         const PanelLayout& layout, std::string_view alt, const DrawRow& draw,
                         const std::function<void(Svg&, double y)>& legend) {
    const Frame frame = frameOf(rows, panels.size(), layout);
    const std::size_t blocks = (panels.size() + frame.across - 1) / frame.across;
    const double head = legend ? kLegend : 4;
    Svg svg(frame.left + static_cast<double>(frame.across) * (layout.width + kGap) + 6,
            head + static_cast<double>(blocks) * frame.blockHeight, alt);
    if (legend) {
        legend(svg, kLegend / 2 + 4);
    }
    for (std::size_t p = 0; p < panels.size(); ++p) {
        const std::size_t column = p % frame.across;
        const std::size_t block = p / frame.across;
        const double top = head + static_cast<double>(block) * frame.blockHeight + kTitle;
        const double bottom = top + frame.rowHeight * static_cast<double>(rows.size());
        const double left = frame.left + static_cast<double>(column) * (layout.width + kGap);
        const Panel& panel = panels[p];
        const Scale x = {panel.low, panel.high, left + 6, left + layout.width - 6};
        svg.text(left + layout.width / 2, top - 7, shortName(panel.title, 34),
                 {.anchor = "middle", .bold = true});
        drawAxis(svg, panel, x, top, bottom, layout.ticks);
        for (std::size_t r = 0; r < rows.size(); ++r) {
            const double y = top + frame.rowHeight * (static_cast<double>(r) + 0.5);
            if (column == 0) {
                svg.text(frame.left - 8, y + 4, shortName(rows[r], kLongestName),
                         {.anchor = "end", .size = frame.rowHeight > 14 ? 11.0 : 10.0});
            }
            draw(svg, x, p, r, y);
        }
    }
    return svg.finish();
}

} // namespace kva
