#include "report/neighbourjoining.h"

#include "report/numbertext.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <utility>

namespace kva {

namespace {

// --- Joining -----------------------------------------------------------------------------------

class Joining {
  public:
    Joining(std::span<const double> distances, std::size_t n) : N(n), D(n * n), Sums(n) {
        std::size_t at = 0;
        for (std::size_t i = 1; i < n; ++i) {
            for (std::size_t j = 0; j < i; ++j, ++at) {
                D[i * n + j] = D[j * n + i] = distances[at];
            }
        }
        for (std::size_t i = 0; i < n; ++i) {
            Rows.push_back(i);
            Node.push_back(i);
        }
        Result.tips = n;
        Result.nodes.resize(n);
    }

    Tree join() {
        while (Rows.size() > 3) {
            joinPair();
        }
        joinLast();
        return std::move(Result);
    }

  private:
    double& d(std::size_t a, std::size_t b) { return D[a * N + b]; }

    std::size_t newNode() {
        Result.nodes.emplace_back();
        return Result.nodes.size() - 1;
    }

    void hang(std::size_t row, std::size_t parent, double length) {
        Result.nodes[Node[row]].parent = parent;
        Result.nodes[Node[row]].length = length;
        Result.nodes[parent].children.push_back(Node[row]);
    }

    // The places of the two rows to join.
    std::pair<std::size_t, std::size_t> nearest() {
        const std::size_t r = Rows.size();
        for (const std::size_t a : Rows) {
            Sums[a] = 0;
            for (const std::size_t b : Rows) {
                Sums[a] += d(a, b);
            }
        }
        double least = std::numeric_limits<double>::infinity();
        std::pair<std::size_t, std::size_t> best(0, 1);
        for (std::size_t i = 0; i < r; ++i) {
            for (std::size_t j = i + 1; j < r; ++j) {
                const double q = static_cast<double>(r - 2) * d(Rows[i], Rows[j]) - Sums[Rows[i]] -
                                 Sums[Rows[j]];
                if (q < least) {
                    least = q;
                    best = {i, j};
                }
            }
        }
        return best;
    }

    void joinPair() {
        const auto [i, j] = nearest();
        const std::size_t a = Rows[i];
        const std::size_t b = Rows[j];
        const double dab = d(a, b);
        const double la =
            dab / 2 + (Sums[a] - Sums[b]) / (2 * static_cast<double>(Rows.size() - 2));
        const std::size_t u = newNode();
        hang(a, u, la);
        hang(b, u, dab - la);
        for (const std::size_t k : Rows) {
            if (k != a && k != b) {
                d(a, k) = d(k, a) = (d(a, k) + d(b, k) - dab) / 2;
            }
        }
        Node[a] = u; // the new node takes the row of the first
        Rows.erase(Rows.begin() + static_cast<std::ptrdiff_t>(j));
    }

    void joinLast() {
        const std::size_t a = Rows[0];
        const std::size_t b = Rows[1];
        const std::size_t c = Rows[2];
        Result.root = newNode();
        hang(a, Result.root, (d(a, b) + d(a, c) - d(b, c)) / 2);
        hang(b, Result.root, (d(a, b) + d(b, c) - d(a, c)) / 2);
        hang(c, Result.root, (d(a, c) + d(b, c) - d(a, b)) / 2);
        Result.nodes[Result.root].parent = Result.root;
    }

    std::size_t N;
    std::vector<double> D; // n x n; rows of nodes that are gone are not read
    std::vector<double> Sums;
    std::vector<std::size_t> Rows; // that are left
    std::vector<std::size_t> Node; // of each row
    Tree Result;
};

// --- Splits -------------------------------------------------------------------------------------

using TipSet = std::vector<uint64_t>; // a bit for each tip

constexpr std::size_t kBits = 64;

// The tips below each node. Nodes are numbered as they were joined: children before parents.
std::vector<TipSet> tipSets(const Tree& tree) {
    std::vector<TipSet> sets(tree.nodes.size(), TipSet(tree.tips / kBits + 1));
    for (std::size_t v = 0; v < tree.nodes.size(); ++v) {
        if (v < tree.tips) {
            sets[v][v / kBits] |= uint64_t{1} << (v % kBits);
        }
        for (const std::size_t child : tree.nodes[v].children) {
            for (std::size_t w = 0; w < sets[v].size(); ++w) {
                sets[v][w] |= sets[child][w];
            }
        }
    }
    return sets;
}

// Of the two sides of a split that without the first tip.
TipSet sideWithoutFirst(TipSet set, std::size_t tips) {
    if ((set[0] & 1U) == 0) {
        return set;
    }
    for (std::size_t w = 0; w < set.size(); ++w) {
        const std::size_t bits = std::min(kBits, tips - std::min(tips, w * kBits));
        const uint64_t all = bits == kBits ? ~uint64_t{0} : (uint64_t{1} << bits) - 1;
        set[w] = ~set[w] & all;
    }
    return set;
}

// The splits of the inner branches, by node from the first inner one; that of the root is of no
// meaning.
std::vector<TipSet> splitsOf(const Tree& tree) {
    std::vector<TipSet> sets = tipSets(tree);
    std::vector<TipSet> splits;
    for (std::size_t v = tree.tips; v < tree.nodes.size(); ++v) {
        splits.push_back(sideWithoutFirst(std::move(sets[v]), tree.tips));
    }
    return splits;
}

// A label as Newick has it: in quotes, those inside doubled.
std::string quoted(const std::string& label) {
    std::string text = "'";
    for (const char c : label) {
        text.append(c == '\'' ? 2 : 1, c);
    }
    return text + "'";
}

} // namespace

Tree neighbourJoining(std::span<const double> distances, std::size_t n) {
    return Joining(distances, n).join();
}

std::vector<std::size_t> splitSupport(const Tree& tree, std::span<const Tree> trees) {
    const std::vector<TipSet> wanted = splitsOf(tree);
    std::vector<std::size_t> times(tree.nodes.size());
    for (const Tree& other : trees) {
        std::vector<TipSet> found = splitsOf(other);
        found.erase(found.begin() + static_cast<std::ptrdiff_t>(other.root - other.tips));
        std::sort(found.begin(), found.end());
        for (std::size_t v = tree.tips; v < tree.nodes.size(); ++v) {
            if (v != tree.root &&
                std::binary_search(found.begin(), found.end(), wanted[v - tree.tips])) {
                ++times[v];
            }
        }
    }
    return times;
}

std::string newick(const Tree& tree, std::span<const std::string> labels,
                   std::span<const std::string> percents) {
    std::vector<std::string> texts(tree.nodes.size());
    for (std::size_t v = 0; v < tree.nodes.size(); ++v) {
        const Tree::Node& node = tree.nodes[v];
        std::string& text = texts[v];
        if (node.children.empty()) {
            text = quoted(labels[v]);
        } else {
            for (const std::size_t child : node.children) {
                text += text.empty() ? '(' : ',';
                text += std::exchange(texts[child], "");
            }
            text += ')';
            text += percents.empty() ? "" : percents[v];
        }
        if (v != tree.root) {
            text += ':';
            text += shortText(node.length, 6);
        }
    }
    return texts[tree.root] + ";";
}

} // namespace kva
