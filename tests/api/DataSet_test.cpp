#include "base/settings.h"
#include "support/datasets.h"
#include "support/support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kva/kva.h>
#include <string>

using namespace kva::api;

using kva_test::tabbed;
using kva_test::TempFolder;
using testing::HasSubstr;

namespace {

const std::string kData = tabbed(kva_test::kTwoPops);

Error errorOf(const Outcome<DataSet>& loaded) {
    return loaded ? Error{ErrorKind::Internal, "it is loaded"} : loaded.error();
}

} // namespace

TEST(DataSet, HoldsPopulationsAndLoci) {
    const auto data = loadText(kData);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->name(), "data.txt");
    ASSERT_EQ(data->populations().size(), 2U);
    EXPECT_EQ(data->populations()[1].name, "B");
    EXPECT_EQ(data->populations()[1].individuals, 2);
    EXPECT_EQ(data->populations()[1].inbred, 0);
    ASSERT_EQ(data->loci().size(), 2U);
    EXPECT_EQ(data->loci()[0].name, "L1");
    EXPECT_EQ(data->loci()[1].repeat, 4);
    EXPECT_EQ(data->loci()[0].alleles, 3); // 100, 102, 104
    EXPECT_EQ(data->loci()[0].copies, 8);
    EXPECT_EQ(data->loci()[0].missing, 0);
}

TEST(DataSet, OfAFileIsThatOfItsBytes) {
    const TempFolder folder;
    const std::string file = folder / "cats.txt";
    kva_test::writeFile(file, kData);
    const auto data = loadFile(file);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->name(), file);
    EXPECT_EQ(data->populations().size(), 2U);
}

TEST(DataSet, TellsWhatTheCheckFinds) {
    // The rows of A stand in two blocks.
    const auto data = loadText(tabbed("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                                      "A d 0 100 102\nB d 0 100 100\nA d 0 102 102\n"));
    ASSERT_TRUE(data);
    bool found = false;
    for (const Finding& finding : data->findings()) {
        if (finding.name == "split-population") {
            found = true;
            EXPECT_EQ(finding.severity, Severity::Error);
            EXPECT_EQ(finding.row, 6);
            EXPECT_EQ(finding.column, 1);
            EXPECT_EQ(finding.count, 1);
        }
    }
    EXPECT_TRUE(found);
}

TEST(DataSet, BytesMayHoldANulByte) {
    // Reading ends there, as in a file: the second row of B is lost.
    std::string bytes = kData;
    bytes[bytes.rfind("B\td")] = '\0';
    const auto data = loadText(bytes);
    ASSERT_TRUE(data);
    ASSERT_EQ(data->populations().size(), 2U);
    EXPECT_EQ(data->populations()[1].individuals, 1);
}

TEST(DataSet, OfNothingIsAnError) {
    const Error error = errorOf(loadText(""));
    EXPECT_EQ(error.kind, ErrorKind::Data);
    EXPECT_EQ(error.text, "data.txt cannot be used: it is empty");
}

TEST(DataSet, RefusedBytesTellRowAndReason) {
    const Error error = errorOf(loadText("North\t1\t2\n", "cats"));
    EXPECT_EQ(error.kind, ErrorKind::Data);
    EXPECT_EQ(error.text,
              "cats cannot be used: cats, row 1: found \"N\" as first byte, expected \"1\" or "
              "\"2\", the number of columns per locus");
}

TEST(DataSet, HeaderRowsAloneAreAnError) {
    EXPECT_EQ(errorOf(loadText(kData.substr(0, kData.find("A\t")))).kind, ErrorKind::Data);
}

TEST(DataSet, OfAFileThatIsNotThereIsAnError) {
    const Error error = errorOf(loadFile("/nowhere/data.txt"));
    EXPECT_EQ(error.kind, ErrorKind::File);
    EXPECT_EQ(error.text, "cannot read '/nowhere/data.txt': No such file or directory");
}

TEST(DataSet, OfAFolderIsAnError) {
    const TempFolder folder;
    const Error error = errorOf(loadFile(folder.path()));
    EXPECT_EQ(error.kind, ErrorKind::File);
    EXPECT_THAT(error.text, HasSubstr("it is no file on a disk"));
}

TEST(Version, IsThatOfTheProgram) {
    EXPECT_EQ(version(), kva::kVersion);
}
