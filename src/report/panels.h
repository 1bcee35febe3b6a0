// A picture of panels that share their rows: a row a population, a panel a locus or a statistic.
#ifndef KVA_REPORT_PANELS_H
#define KVA_REPORT_PANELS_H

#include "report/svg.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace kva {

struct Panel {
    std::string title;
    double low = 0; // of its axis
    double high = 1;
};

struct PanelLayout {
    double width = 160;  // of a panel
    int ticks = 3;       // on an axis, about
    bool legend = false; // room for a line on top
};

// Draws the contents of a panel at a row, whose middle is y.
using DrawRow =
    std::function<void(Svg& svg, const Scale& x, std::size_t panel, std::size_t row, double y)>;

// The picture, in as many rows of panels as it takes. legend: draws into the line on top.
std::string panelPicture(std::span<const std::string> rows, std::span<const Panel> panels,
                         const PanelLayout& layout, std::string_view alt, const DrawRow& draw,
                         const std::function<void(Svg&, double y)>& legend = {});

} // namespace kva

#endif
