#include "distance/passrun.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace kva;

using namespace kva_test;

TEST(LocusSheets, OneColumnDataHasOneLabelCell) {
    LoadedRun run(kTwoPopsOneColumn);
    popPass(run, DistBit::Dps | DistBit::PerLocus);
    // s: L1 the smaller of 1/4 and 1/4 (102); L2 the smaller of 1/2 and 3/4 (200) and of 1/4 and
    // 1/4 (204).
    EXPECT_EQ(distanceFile(run, "POSA_Pop_Loci.xls"), "\tA\n\tB\nL1\t0.750000\nL2\t0.250000\n");
}

TEST(LocusSheets, ABlockForEachReplicateWithoutSpace) {
    LoadedRun run(kThreePops);
    popPass(run, DistBit::Dps | DistBit::PerLocus, 30);
    const std::string sheet = distanceFile(run, "POSA_Pop_Loci.xls");
    EXPECT_EQ(occurrences(sheet, "\t\tA\tA\tB\n\t\tB\tC\tC\n"), 30);
    EXPECT_EQ(occurrences(sheet, "\n"), 30 * 4);
    EXPECT_EQ(occurrences(sheet, "\n\n"), 0);
    // In 30 replicates some locus comes twice in one of them, and each row is a whole one.
    EXPECT_EQ(occurrences(sheet, "L1\tL1b\t0.500000\t1.000000\t0.500000\n") +
                  occurrences(sheet, "L2\tL2b\t0.000000\t0.250000\t0.250000\n"),
              60);
}

TEST(LocusSheets, LocusDrawnTwiceHasTwoRows) {
    LoadedRun run("2 . . 1 .\n. . . 0 .\n. . . L Lb\nA d 0 1 1\nB d 0 1 2\n");
    run->BootLoci = 3;
    popPass(run, DistBit::Dps | DistBit::PerLocus, 2);
    const std::string block = "\t\tA\n\t\tB\nL\tLb\t0.500000\nL\tLb\t0.500000\nL\tLb\t0.500000\n";
    EXPECT_EQ(distanceFile(run, "POSA_Pop_Loci.xls"), block + block);
}

// The cells of both outputs of the bit depend on the sheet of "CAS" alone; "n.d." does not.
TEST(LocusSheets, WithoutTheChordSheetTheOtherHasNoValues) {
    LoadedRun run("2 . . 1 . 1 .\n. . . 0 . 0 .\n. . . L Lb M Mb\n"
                  "A d 0 1 1 5 5\nB d 0 1 2 . .\n");
    std::filesystem::create_directories(run->ResultPfad + "/Distance_data/CAS_Pop_Loci.xls");
    popPass(run, DistBit::DcDa | DistBit::PerLocus);
    EXPECT_EQ(distanceFile(run, "DAN_Pop_Loci.xls"), "\t\tA\n\t\tB\nL\tLb\nM\tMb\tn.d.\n");
    EXPECT_EQ(occurrences(distanceFile(run, "DAN_Pop.txt"), "0.29289"), 2); // 1 - sqrt(0.5)
}

TEST(LocusSheets, WithoutItsOwnSheetAMeasureIsLeftOut) {
    LoadedRun run(kThreePops);
    std::filesystem::create_directories(run->ResultPfad + "/Distance_data/DAN_Pop_Loci.xls");
    popPass(run, DistBit::DcDa | DistBit::PerLocus);
    EXPECT_EQ(occurrences(distanceFile(run, "CAS_Pop_Loci.xls"), "\t0.487248"), 2);
}

TEST(LocusSheets, SheetsOfARunBeforeAreEmptied) {
    LoadedRun run(kThreePops);
    popPass(run, DistBit::Dps | DistBit::PerLocus);
    const std::string once = distanceFile(run, "POSA_Pop_Loci.xls");
    popPass(run, DistBit::Dps | DistBit::PerLocus);
    EXPECT_EQ(distanceFile(run, "POSA_Pop_Loci.xls"), once);
}

TEST(LocusSheets, ALocusWithoutNamesHasAnEmptyLabel) {
    LoadedRun run("2 . . 1 .\n. . . 0 .\n. . . L Lb\nA d 0 1 1\nB d 0 1 2\n");
    run->Daten->Loci[0].SetLociName("");
    run->Daten->Loci[0].SetLociName2("");
    popPass(run, DistBit::Dps | DistBit::PerLocus);
    EXPECT_EQ(distanceFile(run, "POSA_Pop_Loci.xls"), "\t\tA\n\t\tB\n\t\t0.500000\n");
}
