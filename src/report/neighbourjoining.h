// Neighbour-joining trees of distances and the support of their splits.
#ifndef KVA_REPORT_NEIGHBOURJOINING_H
#define KVA_REPORT_NEIGHBOURJOINING_H

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace kva {

// An unrooted tree, drawn from the node that was joined last. Tips come first.
struct Tree {
    struct Node {
        std::size_t parent = 0;
        double length = 0;                 // of the branch to the parent; may be negative
        std::vector<std::size_t> children; // none: a tip
    };
    std::size_t tips = 0;
    std::vector<Node> nodes; // tips in the order of the distances, then inner nodes
    std::size_t root = 0;    // with three children
};

// The tree after Saitou and Nei (1987) in the form of Studier and Keppler (1988). distances: those
// of n >= 3 tips, finite, in the order 1 and 2, 1 and 3, 2 and 3, ...; of pairs that could be
// joined the first one is.
Tree neighbourJoining(std::span<const double> distances, std::size_t n);

// In how many of the trees each split of `tree` is found (Felsenstein 1985); by node, 0 at tips and
// at the root, which stand for no split. All trees have the same tips.
std::vector<std::size_t> splitSupport(const Tree& tree, std::span<const Tree> trees);

// The tree as Newick text with branch lengths of six significant digits; percents: labels of the
// inner nodes, by node, or empty.
std::string newick(const Tree& tree, std::span<const std::string> labels,
                   std::span<const std::string> percents);

} // namespace kva

#endif
