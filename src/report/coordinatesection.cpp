#include "report/coordinates.h"
#include "report/html.h"
#include "report/numbertext.h"
#include "report/sections.h"
#include "report/svg.h"

#include <algorithm>
#include <cmath>

namespace kva {

namespace {

constexpr int kDigits = 6;

// The points of a picture, with what they are coloured by.
struct Points {
    const PairDistances& distances;
    Coordinates found;
    std::vector<std::size_t> groups; // of each point; empty: each is named instead
    std::vector<std::string> groupNames;
};

std::string shareText(const Coordinates& found, std::size_t axis) {
    return fixedText(100 * found.eigenvalues[axis] / found.trace, 1);
}

// A range with some room around the values of an axis.
std::pair<double, double> rangeOf(const std::vector<double>& axis) {
    const auto [low, high] = std::minmax_element(axis.begin(), axis.end());
    const double room = 0.06 * (*high - *low);
    return {*low - room, *high + room};
}

// --- What the marks stand for -----------------------------------------------------------------

constexpr double kLegendRow = 18;
constexpr double kLegendColumn = 140;
constexpr std::size_t kLegendColumns = 5;
constexpr std::size_t kColours = 7;
constexpr std::size_t kMarks = 42; // colours times shapes
constexpr std::size_t kLongestName = 18;

double legendHeight(std::size_t groups) {
    const std::size_t rows = (groups + kLegendColumns - 1) / kLegendColumns;
    return kLegendRow * static_cast<double>(rows);
}

// Colours first, then shapes.
void drawMark(Svg& svg, std::size_t group, double x, double y, double radius,
              std::string_view tip = {}) {
    svg.mark(group / kColours, x, y, radius, groupColour(group), tip);
}

void drawLegend(Svg& svg, const std::vector<std::string>& names, double left, double top) {
    for (std::size_t g = 0; g < names.size(); ++g) {
        const double x = left + kLegendColumn * static_cast<double>(g % kLegendColumns);
        const std::size_t row = g / kLegendColumns;
        const double y = top + kLegendRow * static_cast<double>(row);
        drawMark(svg, g, x, y - 4, 4);
        svg.text(x + 10, y, shortName(names[g], kLongestName), {.size = 11});
    }
}

// The legend of many groups, a picture of its own.
std::string legendPicture(const std::vector<std::string>& names) {
    Svg svg(kLegendColumn * kLegendColumns + 20, legendHeight(names.size()) + 16,
            "Colours and shapes of the populations");
    drawLegend(svg, names, 16, 20);
    return svg.finish();
}

// --- The points ---------------------------------------------------------------------------------

class PointPicture {
  public:
    explicit PointPicture(const Points& points) : P(points) {
        const auto [lowX, highX] = rangeOf(P.found.axes[0]);
        const auto [lowY, highY] = rangeOf(P.found.axes[1]);
        X = {lowX, highX, kLeft, kLeft + kWidth};
        Y = {lowY, highY, kTop + kHeight, kTop};
    }

    std::string draw() {
        const double legend = hasLegend() ? legendHeight(P.groupNames.size()) + 14 : 0;
        Svg svg(kLeft + kWidth + 20, kTop + kHeight + 52 + legend,
                "The first two principal coordinates");
        drawFrame(svg);
        for (std::size_t i = 0; i < P.found.axes[0].size(); ++i) {
            drawPoint(svg, i);
        }
        if (hasLegend()) {
            drawLegend(svg, P.groupNames, kLeft, Y.from + 62);
        }
        return svg.finish();
    }

  private:
    static constexpr double kLeft = 64;
    static constexpr double kTop = 10;
    static constexpr double kWidth = 660;
    static constexpr double kHeight = 460;
    static constexpr std::size_t kManyPoints = 60;
    static constexpr double kNameSize = 11;

    bool hasLegend() const { return !P.groups.empty() && P.groupNames.size() <= kTallPicture; }

    void drawFrame(Svg& svg) const {
        for (const double tick : roundTicks(X.low, X.high, 6)) {
            svg.line(X.at(tick), Y.to, X.at(tick), Y.from, tick == 0 ? kGrey : "#ececec");
            svg.text(X.at(tick), Y.from + 16, shortText(tick, 4), {.anchor = "middle", .size = 11});
        }
        for (const double tick : roundTicks(Y.low, Y.high, 6)) {
            svg.line(X.from, Y.at(tick), X.to, Y.at(tick), tick == 0 ? kGrey : "#ececec");
            svg.text(X.from - 6, Y.at(tick) + 4, shortText(tick, 4), {.anchor = "end", .size = 11});
        }
        svg.text((X.from + X.to) / 2, Y.from + 38,
                 "Axis 1 (" + shareText(P.found, 0) + " % of the variance)", {.anchor = "middle"});
        svg.text(16, (Y.from + Y.to) / 2,
                 "Axis 2 (" + shareText(P.found, 1) + " % of the variance)",
                 {.anchor = "middle", .upright = true});
    }

    void drawPoint(Svg& svg, std::size_t i) {
        const double x = X.at(P.found.axes[0][i]);
        const double y = Y.at(P.found.axes[1][i]);
        const std::string& label = P.distances.labels[i];
        if (!P.groups.empty()) {
            const std::size_t g = P.groups[i];
            drawMark(svg, g, x, y, 3.2, label + ", " + P.groupNames[g]);
            return;
        }
        svg.circle(x, y, many() ? 2.5 : 4, kBlue, label);
        if (!many()) {
            drawName(svg, x, y, shortName(label, kLongestName));
        }
    }

    bool many() const { return P.found.axes[0].size() > kManyPoints; }

    // Writes a name beside its point, where it covers no other name if there is such a place.
    void drawName(Svg& svg, double x, double y, const std::string& name) {
        const double width = textWidth(name, kNameSize);
        const auto boxAt = [&](int corner) {
            const double left = corner % 2 == 0 ? x + 6 : x - 6 - width;
            return Box{left, corner < 2 ? y - 15 : y + 3, left + width,
                       corner < 2 ? y - 3 : y + 15};
        };
        int best = x + 6 + width > X.to ? 1 : 0;
        for (int corner = 0; corner < 4; ++corner) {
            const Box box = boxAt(corner);
            if (box.left >= X.from && box.right <= X.to && isFree(box)) {
                best = corner;
                break;
            }
        }
        const Box box = boxAt(best);
        Names.push_back(box);
        svg.text(best % 2 == 0 ? box.left : box.right, box.bottom - 2, name,
                 {.anchor = best % 2 == 0 ? "start" : "end", .size = kNameSize});
    }

    struct Box {
        double left, top, right, bottom;
    };

    bool isFree(const Box& box) const {
        const auto meets = [&box](const Box& other) {
            return box.left < other.right && other.left < box.right && box.top < other.bottom &&
                   other.top < box.bottom;
        };
        if (std::any_of(Names.begin(), Names.end(), meets)) {
            return false;
        }
        constexpr double kRadius = 4;
        for (std::size_t i = 0; i < P.found.axes[0].size(); ++i) {
            const double x = X.at(P.found.axes[0][i]);
            const double y = Y.at(P.found.axes[1][i]);
            if (meets({x - kRadius, y - kRadius, x + kRadius, y + kRadius})) {
                return false;
            }
        }
        return true;
    }

    const Points& P;
    Scale X;
    Scale Y;
    std::vector<Box> Names; // that are written
};

Table pointTable(const Points& points, const std::string& id, const std::string& of) {
    Table table{.id = id, .title = "Coordinates of the " + of, .source = ""};
    table.folded = true;
    table.columns = {{.head = of == "individuals" ? "Individual" : "Population", .labels = true}};
    if (!points.groups.empty()) {
        table.columns.push_back({.head = "Population", .words = true});
    }
    table.columns.push_back({.head = "Axis 1", .derived = true});
    table.columns.push_back({.head = "Axis 2", .derived = true});
    for (std::size_t i = 0; i < points.distances.labels.size(); ++i) {
        std::vector<Cell> row = {{points.distances.labels[i]}};
        if (!points.groups.empty()) {
            row.push_back({points.groupNames[points.groups[i]]});
        }
        for (std::size_t axis = 0; axis < 2; ++axis) {
            row.push_back({fixedText(points.found.axes[axis][i], kDigits)});
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

Table eigenvalueTable(const Points& points, const std::string& id) {
    Table table{.id = id, .title = "Eigenvalues", .source = ""};
    table.folded = true;
    table.columns = {{.head = "Axis", .labels = true},
                     {.head = "Eigenvalue", .derived = true},
                     {.head = "Of the sum of all, %", .derived = true}};
    for (std::size_t k = 0; k < points.found.eigenvalues.size(); ++k) {
        table.rows.push_back({{std::to_string(k + 1)},
                              {shortText(points.found.eigenvalues[k], kDigits)},
                              {shareText(points.found, k)}});
    }
    return table;
}

std::string captionOf(const Points& points) {
    std::string caption =
        "The first two principal coordinates of the distance " + points.distances.measure;
    if (points.distances.replicatesRead > 1) {
        caption += ", means of the bootstrap replicates";
    }
    if (points.groups.empty()) {
        return caption + ".";
    }
    caption += "; colours and shapes: populations";
    return caption + (points.groupNames.size() > kMarks ? ", which repeat after 42." : ".");
}

// The section, once for populations and once for individuals.
bool writeCoordinates(const PairDistances& distances, Points points, const std::string& of,
                      std::string& html) {
    if (distances.measure.empty()) {
        return false;
    }
    if (const std::size_t without = distances.pairsWithout(); without > 0) {
        appendNote(html, "There are no coordinates: the distance " + distances.measure +
                             " has no value for " + std::to_string(without) + " of " +
                             counted(distances.values.size(), "pair") + ".");
        return true;
    }
    points.found = principalCoordinates(distances.values, distances.labels.size());
    if (points.found.axes.size() < 2) {
        appendNote(html, "There are fewer than two principal coordinates.");
        return true;
    }
    appendFigure(html, of + "-picture", "Principal coordinates of the " + of,
                 PointPicture(points).draw(), captionOf(points));
    if (points.groupNames.size() > kTallPicture) {
        appendFigure(html, of + "-legend", "Colours and shapes of the populations",
                     legendPicture(points.groupNames), "", true);
    }
    appendTable(html, pointTable(points, of + "-axes", of));
    appendTable(html, eigenvalueTable(points, of + "-eigenvalues"));
    return true;
}

} // namespace

bool writePopulationCoordinates(const ReportData& data, std::string& html) {
    return writeCoordinates(data.ofPopulations, {data.ofPopulations, {}, {}, {}}, "populations",
                            html);
}

bool writeIndividualCoordinates(const ReportData& data, std::string& html) {
    Points points{data.ofIndividuals, {}, data.populationOf, {}};
    if (!points.groups.empty()) {
        points.groupNames = data.populations;
    }
    return writeCoordinates(data.ofIndividuals, std::move(points), "individuals", html);
}

} // namespace kva
