#include "formats/NextFormates.h"

#include "formats/formats_support.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace kva;

namespace fs = std::filesystem;
using namespace kva_test;

namespace {

long exportNext(LoadedRun& run, uint32_t mask) {
    run->GeneralMask = mask;
    return quietly([&] { return run->MakeNextFormates(); });
}

bool hasExport(LoadedRun& run, const std::string& name) {
    return fs::exists(fs::path(run->ResultPfad) / "Formats&Data" / name);
}

// What the pass adds to the log.
std::string logged(uint32_t mask) {
    LoadedRun run(kTwoPops);
    run.counted();
    const std::string before = run.resultFile("KVA.log");
    exportNext(run, mask);
    return run.resultFile("KVA.log").substr(before.size());
}

} // namespace

TEST(MakeNextFormates, WithoutABitTheFolderIsMadeAndStaysEmpty) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(exportNext(run, 0), 0);
    EXPECT_TRUE(fs::is_empty(fs::path(run->ResultPfad) / "Formats&Data"));
}

TEST(MakeNextFormates, MsvarBitGivesAFileForEachPopulation) {
    LoadedRun run(kTwoPops);
    exportNext(run, GeneralBit::Msvar);
    EXPECT_TRUE(hasExport(run, "A.beau.infile"));
    EXPECT_TRUE(hasExport(run, "B.beau.infile"));
    EXPECT_FALSE(hasExport(run, "data.txt.migrate"));
}

TEST(MakeNextFormates, ArlequinAndMigrateBitEachGiveBothFiles) {
    for (const uint32_t bit : {GeneralBit::Arlequin, GeneralBit::Migrate}) {
        LoadedRun run(kTwoPops);
        EXPECT_EQ(exportNext(run, bit), 0);
        EXPECT_TRUE(hasExport(run, "data.txt.migrate"));
        EXPECT_TRUE(hasExport(run, "data.txt.arlequin.arp"));
        EXPECT_FALSE(hasExport(run, "A.beau.infile"));
    }
}

TEST(MakeNextFormates, LogNamesWhatWasAskedFor) {
    EXPECT_EQ(logged(GeneralBit::Msvar), "\nCreate msvar/beaumont ...\n");
    EXPECT_EQ(logged(GeneralBit::Arlequin), "\nCreate Arlequin ...\n");
    EXPECT_EQ(logged(GeneralBit::Migrate), "\nCreate Migrate/LAMARC ...\n");
    EXPECT_EQ(logged(GeneralBit::Msvar | GeneralBit::Arlequin | GeneralBit::Migrate),
              "\nCreate msvar/beaumont ...\nCreate Arlequin ...\nCreate Migrate/LAMARC ...\n");
}

TEST(MakeNextFormates, WithoutABitTheLogGetsABareLineEnd) {
    EXPECT_EQ(logged(0), "\n");
}

TEST(MakeNextFormates, ConsoleHasTwoMessages) {
    LoadedRun run(kTwoPops);
    run.counted();
    EXPECT_EQ(printed([&] { return run->MakeNextFormates(); }),
              "\n\nMake Beaumont, Arlequin and Migrate/Lamarc\nAll Lines generated!\n");
}

TEST(MakeNextFormates, WithoutDataNothingIsDone) {
    AnalyseDataObj empty;
    EXPECT_EQ(printed([&] { return empty.MakeNextFormates(); }), "");
    EXPECT_EQ(empty.MakeNextFormates(), -4);
}

TEST(MakeNextFormates, FolderThatIsAFileEndsThePass) {
    LoadedRun run(kTwoPops);
    run.counted();
    writeFile("Formats&Data", "");
    EXPECT_EQ(exportNext(run, GeneralBit::Msvar), 2);
}

TEST(MakeNextFormates, MigrateFileThatCannotBeOpenedIsMinusOne) {
    LoadedRun run(kTwoPops);
    run.counted();
    fs::create_directories("Formats&Data/data.txt.migrate");
    EXPECT_EQ(exportNext(run, GeneralBit::Migrate), -1);
    EXPECT_FALSE(hasExport(run, "data.txt.arlequin.arp"));
    EXPECT_EQ(fs::current_path(), fs::path(run->ResultPfad) / "Formats&Data");
}

TEST(MakeNextFormates, ArlequinFileThatCannotBeOpenedIsMinusTwo) {
    LoadedRun run(kTwoPops);
    run.counted();
    fs::create_directories("Formats&Data/data.txt.arlequin.arp");
    EXPECT_EQ(exportNext(run, GeneralBit::Arlequin), -2);
    EXPECT_EQ(fs::current_path(), fs::path(run->ResultPfad) / "Formats&Data");
}

TEST(MakeNextFormates, EndsInTheResultFolder) {
    LoadedRun run(kTwoPops);
    exportNext(run, GeneralBit::Msvar | GeneralBit::Migrate);
    EXPECT_EQ(fs::current_path(), run->ResultPfad);
}

TEST(MakeNextFormates, CountsFirstWhereNothingIsCounted) {
    LoadedRun run(kTwoPops);
    exportNext(run, GeneralBit::Msvar);
    EXPECT_EQ(run->PopAllele.size(), 3U);
}
