// PHYLIP's neighbor reads the matrices (Debian package phylip). Skipped where it is not
// installed.
#include "distance/passrun.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace kva;

using namespace kva_test;

namespace {

bool neighborInstalled() {
    return std::system("command -v phylip > /dev/null") == 0;
}

// The trees that neighbor makes of a file of matrices; `keys` as typed into its menu.
std::string treesOf(const std::string& matrices, const std::string& keys) {
    const TempFolder folder(TempFolder::Enter::yes);
    writeFile(folder / "infile", matrices);
    writeFile(folder / "keys", keys);
    if (std::system("phylip neighbor < keys > screen 2>&1") != 0) {
        return "neighbor failed: " + readFile(folder / "screen");
    }
    return readFile(folder / "outtree");
}

} // namespace

TEST(Phylip, NeighborReadsAPopulationMatrix) {
    if (!neighborInstalled()) {
        GTEST_SKIP() << "PHYLIP is not installed (Debian package phylip)";
    }
    LoadedRun run(kThreePops);
    popPass(run, DistBit::DcDa);
    // Dc of A-B 0.24362, A-C 0.53325, B-C 0.32672: the branch of A is
    // (0.24362 + 0.53325 - 0.32672)/2 = 0.22507, of B 0.01855, of C 0.30818.
    const std::string tree = treesOf(distanceFile(run, "CAS_Pop.txt"), "Y\n");
    EXPECT_NE(tree.find("_A:0.2250"), std::string::npos) << tree;
    EXPECT_NE(tree.find("_B:0.0185"), std::string::npos) << tree;
    EXPECT_NE(tree.find("_C:0.3081"), std::string::npos) << tree;
}

TEST(Phylip, NeighborReadsABootstrapOfAHundredMatrices) {
    if (!neighborInstalled()) {
        GTEST_SKIP() << "PHYLIP is not installed (Debian package phylip)";
    }
    LoadedRun run(kThreePops);
    popPass(run, DistBit::DcDa, 100);
    // M: several data sets; their number; an odd seed.
    const std::string trees = treesOf(distanceFile(run, "CAS_Pop.txt"), "M\n100\n1\nY\n");
    EXPECT_EQ(occurrences(trees, ";"), 100) << trees;
}

TEST(Phylip, NeighborReadsAMatrixOfIndividuals) {
    if (!neighborInstalled()) {
        GTEST_SKIP() << "PHYLIP is not installed (Debian package phylip)";
    }
    LoadedRun run(kThreePops);
    indPass(run, DistBit::Dps);
    const std::string tree = treesOf(distanceFile(run, "POSA_Ind.txt"), "Y\n");
    for (const char* name : {"A001", "A002", "B001", "B002", "C001", "C002"}) {
        EXPECT_NE(tree.find(name), std::string::npos) << tree;
    }
}
