// Result folders as a whole: written by the program and read back, and such that are not as they
// should be.
#include "results/results.h"

#include "rows.h"
#include "support/datasets.h"
#include "support/support.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

using namespace kva;

using kva_test::asLine;
using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::TempFolder;
using kva_test::writeFile;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

namespace fs = std::filesystem;

namespace {

struct Read {
    std::vector<std::string> rows;
    std::vector<std::string> faults;
};

Read readFolder(const fs::path& folder) {
    Read read;
    read.faults =
        readResults(folder, [&read](const TidyRow& row) { read.rows.push_back(asLine(row)); });
    return read;
}

// A folder of two good sheets: two populations, a locus.
class Folder {
  public:
    Folder() {
        write("Single_data/Hetexp.xls", "\tL1\t\nTotal\t0.5\t\nA\t0.25\t\nB\t0.75\t\n");
        write("F-Statistic/FST_WC84.txt", kMatrix);
    }

    void write(const fs::path& path, const std::string& text) const {
        fs::create_directories((folder / path).parent_path());
        writeFile(folder / path, text);
    }
    Read read() const { return readFolder(folder.path()); }
    fs::path operator/(const fs::path& path) const { return folder / path; }

    inline static const std::string kMatrix =
        "2\n         A  0.00000  0.12500\n         B  0.12500  0.00000\n\n";

  private:
    TempFolder folder;
};

} // namespace

// The numbers are those of the sheets' tests: A has 100/102 100/100 at L1, B 102/104 104/104.
// Hexp of A: C = 8, p = 3/4 and 1/4: 8/6 (1 - 10/16) = 0.5.
// Hobs of A at L1: one of two, 0.5. Of the pool: 100 three, 102 two, 104 three of 8 copies.
TEST(Results, SheetsThatTheProgramWritesAreReadBack) {
    LoadedRun run(kva_test::kTwoPops);
    {
        const StdoutCapture swallowed;
        run->WriteOutput(0, 1);
    }
    const Read read = readFolder(run->ResultPfad);
    EXPECT_THAT(read.faults, IsEmpty());
    EXPECT_THAT(read.rows,
                IsSupersetOf({"allele_count|Total||L1|100|3", "allele_count|Total||L1|102|2",
                              "allele_count|Total||L1|104|3", "allele_count|A||L1|102|1",
                              "allele_frequency|A||L1|100|0.750000",
                              "heterozygosity_expected|A||L1||0.500000",
                              "heterozygosity_observed|A||L1||0.500000", "allele_min|B||L1||102",
                              "allele_max|B||L1||104", "gene_copies|Total||L2||8",
                              "report_limit_gap_length|||||15"}));
}

TEST(Results, SheetsComeInTheOrderOfTheCatalogue) {
    const Read read = Folder().read();
    EXPECT_THAT(read.faults, IsEmpty());
    EXPECT_THAT(read.rows,
                ElementsAre("heterozygosity_expected|Total||L1||0.5",
                            "heterozygosity_expected|A||L1||0.25",
                            "heterozygosity_expected|B||L1||0.75", "fst_pairwise|A|B|||0.12500"));
}

TEST(Results, SheetsOfOneRuleComeByName) {
    const Folder folder;
    for (const char* const name : {"b", "c", "a"}) {
        folder.write(std::string("Resampling_data/") + name + "_VarRange.xls", "\tL1\t\n1\t2\n");
    }
    const auto rows = folder.read().rows;
    ASSERT_EQ(rows.size(), 7U);
    EXPECT_EQ(rows[4], "allele_variance_draw|a||L1|1|2");
    EXPECT_EQ(rows[5], "allele_variance_draw|b||L1|1|2");
    EXPECT_EQ(rows[6], "allele_variance_draw|c||L1|1|2");
}

TEST(Results, NamesOfHetexpCompleteThoseOfAMatrix) {
    const Folder folder;
    folder.write("Single_data/Hetexp.xls",
                 "\tL1\t\nTotal\t1\t\nLong name of it\t1\t\nLong name of another\t1\t\n");
    folder.write("F-Statistic/FST_WC84.txt",
                 "2\nLong name   0.00000  0.5\nLong name   0.5  0.00000\n\n");
    EXPECT_THAT(folder.read().rows,
                Contains("fst_pairwise|Long name of it|Long name of another|||0.5"));
}

TEST(Results, OtherFilesArePassedOver) {
    const Folder folder;
    folder.write("KVA.log", "x");
    folder.write("F-Statistic/notes.txt", "x");
    folder.write("Formats&Data/Genepop.gen", "x");
    EXPECT_THAT(folder.read().faults, IsEmpty());
    EXPECT_EQ(folder.read().rows.size(), 4U);
}

TEST(Results, BadSheetIsToldAndTheOthersAreRead) {
    const Folder folder;
    folder.write("Single_data/Hetexp.xls", "\tL1\t\nTotal\t0.5\t\nA\tx\t\n");
    const Read read = folder.read();
    EXPECT_THAT(read.faults, ElementsAre("Single_data/Hetexp.xls: line 3: \"x\" is no number"));
    EXPECT_THAT(read.rows, ElementsAre("heterozygosity_expected|Total||L1||0.5",
                                       "fst_pairwise|A|B|||0.12500"));
}

TEST(Results, FolderThatIsNoneIsTold) {
    const TempFolder folder;
    EXPECT_THAT(readFolder(folder / "absent").faults,
                ElementsAre((folder / "absent").string() + ": is no folder"));
    EXPECT_THAT(readFolder(folder.path()).faults,
                ElementsAre(folder.path().string() + ": holds no result sheet"));
}

TEST(Results, FolderInPlaceOfASheetIsTold) {
    const Folder folder;
    fs::create_directories(folder / "Single_data/Var.xls");
    EXPECT_THAT(folder.read().faults, ElementsAre("Single_data/Var.xls: is no file"));
}

// Nobody writes into the pipe: opening it would wait for ever.
TEST(Results, PipeInPlaceOfASheetIsTold) {
    const Folder folder;
    ASSERT_EQ(mkfifo((folder / "Single_data/Var.xls").c_str(), 0600), 0);
    EXPECT_THAT(folder.read().faults, ElementsAre("Single_data/Var.xls: is no file"));
    fs::remove(folder / "Single_data/Hetexp.xls");
    ASSERT_EQ(mkfifo((folder / "Single_data/Hetexp.xls").c_str(), 0600), 0);
    EXPECT_THAT(folder.read().faults, Contains("Single_data/Hetexp.xls: is no file"));
}

// No further file or folder can be opened: the two sheets, and the folders of sheets whose names
// hold that of a group or population.
TEST(Results, SheetThatCannotBeOpenedIsTold) {
    const Folder folder;
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none{0, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    const Read read = folder.read();
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_THAT(read.rows, IsEmpty());
    EXPECT_THAT(read.faults,
                ElementsAre("Single_data/Hetexp.xls: cannot be opened: Too many open files",
                            "Group_data/SumGrp*.xls: cannot be listed: Too many open files",
                            "F-Statistic/FST_WC84.txt: cannot be opened: Too many open files",
                            "Resampling_data/*_HetRange.xls: cannot be listed: Too many open files",
                            "Resampling_data/*_VarRange.xls: cannot be listed: Too many open files",
                            "Resampling_data/*_AlleleRange.xls: cannot be listed: Too many open "
                            "files"));
}

TEST(Results, MatrixCutAnywhereIsTold) {
    const Folder folder;
    const std::string text = Folder::kMatrix;
    for (std::size_t size = 0; size < text.size(); ++size) {
        folder.write("F-Statistic/FST_WC84.txt", text.substr(0, size));
        EXPECT_EQ(folder.read().faults.size(), 1U) << size;
    }
}

TEST(Results, HugeCellIsNoNumber) {
    const Folder folder;
    folder.write("Single_data/Var.xls", "\tL1\t\nTotal\t" + std::string(1U << 22U, '9') + "x\t\n");
    EXPECT_THAT(folder.read().faults, ElementsAre("Single_data/Var.xls: line 2: \"" +
                                                  std::string(40, '9') + "\" is no number"));
}

// --- In memory --------------------------------------------------------------------------

TEST(Results, OfAFolderInMemoryAreThoseOfTheSameOnTheDisk) {
    const Folder folder;
    const std::string draws = "Replicate\tL1\n1\t0.5\n";
    folder.write("Resampling_data/B_HetRange.xls", draws);
    folder.write("Resampling_data/A_HetRange.xls", draws);
    folder.write("Resampling_datax/C_HetRange.xls", draws); // no sheet of that folder
    ResultTexts texts;
    for (const auto& entry : fs::recursive_directory_iterator(folder / "")) {
        if (entry.is_regular_file()) {
            texts[fs::relative(entry.path(), folder / "").string()] =
                kva_test::readFile(entry.path());
        }
    }
    const Read onDisk = folder.read();
    std::vector<std::string> rows;
    const auto faults =
        readResults(texts, [&rows](const TidyRow& row) { rows.push_back(asLine(row)); });
    EXPECT_EQ(faults, onDisk.faults);
    EXPECT_EQ(rows, onDisk.rows);
    EXPECT_THAT(rows, testing::SizeIs(testing::Ge(4U)));
}

TEST(Results, OfAnEmptyFolderInMemoryAreNone) {
    EXPECT_THAT(readResults(ResultTexts(), [](const TidyRow&) { FAIL(); }),
                ElementsAre("the result: holds no result sheet"));
}
