#include "report/html.h"
#include "report/neighbourjoining.h"
#include "report/numbertext.h"
#include "report/sections.h"
#include "report/svg.h"

#include <algorithm>
#include <cmath>

namespace kva {

namespace {

// A tree with the support of its nodes in percent.
struct SupportedTree {
    Tree tree;
    std::vector<std::string> percents; // by node, "" at tips and the root; empty: no replicates
    std::size_t replicates = 0;        // that were taken
    std::size_t leftOut = 0;           // with a distance without a value
};

SupportedTree treeOf(const PairDistances& distances) {
    const std::size_t n = distances.labels.size();
    SupportedTree result{neighbourJoining(distances.values, n), {}, 0, 0};
    std::vector<Tree> trees;
    for (const std::vector<double>& replicate : distances.bootstrap) {
        if (distances.isWhole(replicate)) {
            trees.push_back(neighbourJoining(replicate, n));
        } else {
            ++result.leftOut;
        }
    }
    result.replicates = trees.size();
    if (trees.empty()) {
        return result;
    }
    const std::vector<std::size_t> times = splitSupport(result.tree, trees);
    result.percents.resize(times.size());
    for (std::size_t v = n; v < times.size(); ++v) {
        if (v != result.tree.root) {
            const double share = static_cast<double>(times[v]) / static_cast<double>(trees.size());
            result.percents[v] = fixedText(std::nearbyint(100 * share), 0);
        }
    }
    return result;
}

// The largest of 1, 2 and 5 times a power of 10 that is at most `value`, which is above 0.
double roundBelow(double value) {
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= value) {
            return factor * power;
        }
    }
    return power;
}

// --- The picture ------------------------------------------------------------------------------

class TreePicture {
  public:
    TreePicture(const SupportedTree& supported, const PairDistances& distances)
        : Supported(supported), Shown(supported.tree), Distances(distances), X(Shown.nodes.size()),
          Y(Shown.nodes.size()), RowHeight(Shown.tips <= kFewTips ? 22 : 14) {
        layOut(Shown.root, 0);
        for (const std::string& label : distances.labels) {
            Right = std::max(Right, textWidth(shortName(label, kLongestName), 12));
        }
    }

    std::string draw() {
        const double height = RowHeight * static_cast<double>(Shown.tips);
        Svg svg(kLeft + kTreeWidth + Right + 20, height + 50,
                "Neighbour-joining tree of the populations");
        const double deepest = *std::max_element(X.begin(), X.end());
        const Scale x = {0, deepest > 0 ? deepest : 1, kLeft, kLeft + kTreeWidth};
        for (std::size_t v = 0; v < Shown.nodes.size(); ++v) {
            drawNode(svg, x, v);
        }
        drawBar(svg, x, height + 24);
        return svg.finish();
    }

  private:
    static constexpr double kLeft = 16;
    static constexpr double kTreeWidth = 640;
    static constexpr std::size_t kFewTips = 60;
    static constexpr std::size_t kLongestName = 28;
    static constexpr double kWellSupported = 50; // percent

    // Depths and heights, tips one below the other. Branches below 0 are drawn without length.
    void layOut(std::size_t root, double depth) {
        struct Visit {
            std::size_t node;
            double depth;
            bool left;
        };
        std::vector<Visit> stack = {{root, depth, false}};
        while (!stack.empty()) {
            const Visit visit = stack.back();
            stack.pop_back();
            const std::vector<std::size_t>& children = Shown.nodes[visit.node].children;
            X[visit.node] = visit.depth;
            if (children.empty()) {
                Y[visit.node] = RowHeight * (static_cast<double>(Rows++) + 0.5) + 4;
            } else if (visit.left) {
                Y[visit.node] = (Y[children.front()] + Y[children.back()]) / 2;
            } else {
                stack.push_back({visit.node, visit.depth, true});
                for (std::size_t c = children.size(); c-- > 0;) {
                    const double length = std::max(0.0, Shown.nodes[children[c]].length);
                    stack.push_back({children[c], visit.depth + length, false});
                }
            }
        }
    }

    void drawNode(Svg& svg, const Scale& x, std::size_t v) const {
        const Tree::Node& node = Shown.nodes[v];
        if (v != Shown.root) {
            svg.line(x.at(X[node.parent]), Y[v], x.at(X[v]), Y[v], kInk, 1.3);
        }
        if (node.children.empty()) {
            svg.text(x.at(X[v]) + 5, Y[v] + 4, shortName(Distances.labels[v], kLongestName));
            return;
        }
        svg.line(x.at(X[v]), Y[node.children.front()], x.at(X[v]), Y[node.children.back()], kInk,
                 1.3);
        if (!Supported.percents.empty() && numberOf(Supported.percents[v]) >= kWellSupported) {
            svg.text(x.at(X[v]) - 4, Y[v] - 4, Supported.percents[v],
                     {.anchor = "end", .size = 11, .fill = kBlue});
        }
    }

    static void drawBar(Svg& svg, const Scale& x, double y) {
        const double length = roundBelow(x.high / 4);
        svg.line(x.from, y, x.at(length), y, kInk, 2);
        svg.text(x.at(length) + 6, y + 4, shortText(length, 3), {.size = 11});
    }

    const SupportedTree& Supported;
    const Tree& Shown;
    const PairDistances& Distances;
    std::vector<double> X; // distance from the root
    std::vector<double> Y;
    double RowHeight;
    std::size_t Rows = 0; // laid out so far
    double Right = 0;     // room of the names
};

// --- Tables -----------------------------------------------------------------------------------

Table branchTable(const SupportedTree& supported, const PairDistances& distances) {
    Table table{.id = "tree-branches", .title = "Branches of the tree", .source = ""};
    table.folded = true;
    table.columns = {{.head = "Node", .labels = true},
                     {.head = "Its parent", .words = true},
                     {.head = "Length", .derived = true}};
    if (!supported.percents.empty()) {
        table.columns.push_back({.head = "Support, %", .derived = true});
    }
    const Tree& tree = supported.tree;
    const auto nameOf = [&](std::size_t v) {
        return v < tree.tips ? distances.labels[v] : "node " + std::to_string(v - tree.tips + 1);
    };
    for (std::size_t v = 0; v < tree.nodes.size(); ++v) {
        if (v == tree.root) {
            continue;
        }
        std::vector<Cell> row = {
            {nameOf(v)}, {nameOf(tree.nodes[v].parent)}, {fixedText(tree.nodes[v].length, 6)}};
        if (!supported.percents.empty()) {
            row.push_back({supported.percents[v]});
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

Table distanceTable(const PairDistances& distances) {
    const bool exact = !distances.texts.empty();
    Table table{.id = "distances",
                .title = "Distances " + distances.measure +
                         (exact ? "" : ", means of the bootstrap replicates"),
                .source = "Distance_data/" + distances.measure + "_Pop.txt"};
    table.folded = true;
    table.columns = {{.head = "Population 1", .labels = true},
                     {.head = "Population 2", .words = true},
                     {.head = "Distance", .derived = !exact}};
    for (std::size_t i = 1; i < distances.labels.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const std::size_t at = trianglePlace(i, j);
            table.rows.push_back(
                {{distances.labels[j]},
                 {distances.labels[i]},
                 {exact ? distances.texts[at] : fixedText(distances.values[at], 6)}});
        }
    }
    return table;
}

std::string captionOf(const SupportedTree& supported, const PairDistances& distances) {
    std::string caption = "Neighbour joining of the distance " + distances.measure +
                          "; the tree has no root. Bar: distance.";
    if (supported.replicates > 0) {
        caption += " Numbers: bootstrap support in percent of " +
                   std::to_string(supported.replicates) + " replicates, where it is 50 or more.";
    }
    return caption;
}

void appendBootstrapNotes(const SupportedTree& supported, const PairDistances& distances,
                          std::string& html) {
    if (distances.bootstrap.empty()) {
        appendNote(html, "There is no bootstrap. <code>kvatool run DATA -o FOLDER2 --distances "
                         "population:" +
                             distances.measure +
                             " --bootstrap 1000</code> makes the replicates, and <code>kvatool "
                             "report --bootstrap FOLDER2</code> shows the support.");
    } else if (distances.texts.empty()) {
        appendNote(html, "The folder holds the bootstrap replicates alone: the distances are their "
                         "means.");
    }
    if (supported.leftOut > 0) {
        appendNote(html, counted(supported.leftOut, "replicate") +
                             " with a distance without a value left out.");
    }
}

} // namespace

bool writeTreeSection(const ReportData& data, std::string& html) {
    const PairDistances& distances = data.ofPopulations;
    if (distances.measure.empty()) {
        return false;
    }
    if (!distances.others.empty()) {
        std::string others;
        for (const std::string& other : distances.others) {
            others += (others.empty() ? "" : ", ") + other;
        }
        appendParagraph(html, "Shown is the distance " + distances.measure +
                                  ". The folder has others, too: " + others +
                                  "; <code>--measure</code> chooses.");
    }
    if (distances.labels.size() < 3) {
        appendNote(html, "A tree takes three or more populations.");
    } else if (const std::size_t without = distances.pairsWithout(); without > 0) {
        appendNote(html, "There is no tree: the distance has no value for " +
                             std::to_string(without) + " of " +
                             counted(distances.values.size(), "pair") + ".");
    } else {
        const SupportedTree supported = treeOf(distances);
        appendBootstrapNotes(supported, distances, html);
        appendFigure(html, "tree-picture", "Tree of the populations, " + distances.measure,
                     TreePicture(supported, distances).draw(), captionOf(supported, distances));
        appendTable(html, branchTable(supported, distances));
        html += "<details><summary>The tree as Newick text</summary>\n<div class=\"scroll\" "
                "tabindex=\"0\" role=\"region\" aria-label=\"Newick text\"><pre id=\"newick\">" +
                escaped(newick(supported.tree, distances.labels, supported.percents)) +
                "</pre></div></details>\n";
    }
    appendTable(html, distanceTable(distances));
    return true;
}

} // namespace kva
