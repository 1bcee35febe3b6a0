// Three populations and two loci, all nine distances worked out by hand. kThreePops tells the
// data. Per locus, with n = 4 copies everywhere (C/(C-2) = 8/6, J' = (4 J - 1)/3):
//
//                          L1 (r = 2)                     L2 (r = 4)
//                          A-B       A-C      B-C         A-B       A-C       B-C
//   sum of min(x, y)       0.5       0        0.5         1         0.75      0.75
//   shared / all alleles   1/2       0/2      1/2         2/2       2/2       2/2
//   means                  100 102   100 104  102 104     204 204   204 202   204 202
//   |mi - mj| / r          1         2        1           0         0.5       0.5
//   squared                1         4        1           0         0.25      0.25
//   variances              0 16/3    0 0      16/3 0      64/3 64/3 64/3 16   64/3 16
//   (vi + d^2 + vj) / r^2  7/3       4        7/3         8/3       31/12     31/12
//   sum of x y             0.5       0        0.5         0.5       0.5       0.5
//   B                      0.707107  0        0.707107    1         0.965926  0.965926
//   sqrt(2 (1 - B))        0.765367  1.414214 0.765367    0         0.261052  0.261052
//   J', J'                 1 1/3     1 1      1/3 1       1/3 1/3   1/3 1/2   1/3 1/2
//
// B at L2: A-C and B-C sqrt(3/8) + sqrt(1/8).
#include "distance/passrun.h"

#include <gtest/gtest.h>
#include <ostream>

using namespace kva;

using namespace kva_test;

namespace {

struct Row {
    const char* Stem;
    uint32_t Bit;
    const char* Plain[3]; // A-B, A-C, B-C as 1 - s
    const char* Log[3];   // as -ln(s); the same where it is no similarity
};
void PrintTo(const Row& row, std::ostream* out) {
    *out << row.Stem;
}

// Over both loci:
//   POSA  1 - (0.5 + 1)/2, 1 - 0.75/2, 1 - 1.25/2; -ln of 0.75, 0.375, 0.625
//   FSS   1 - 3/4, 1 - 2/4, 1 - 3/4; -ln of 0.75, 0.5, 0.75
//   ADA   1/2, 2.5/2, 1.5/2        KSC  1 - 1/2, 1 - 0.5/2, 1 - 1/2; -ln of 0.5, 0.25, 0.5
//   DMS   1/2, 4.25/2, 1.25/2      ASD  5/2, (4 + 31/12)/2, (7/3 + 31/12)/2
//   CAS   2 x 0.765367 / 2 pi, 2 x 1.675266 / 2 pi, 2 x 1.026419 / 2 pi
//   DAN   1 - 1.707107/2, 1 - 0.965926/2, 1 - 1.673033/2
//   DSG   s: 1 / sqrt(4/3 x 2/3) = 1.060660, 0.5 / sqrt(4/3 x 3/2) = 0.353553,
//         1 / sqrt(2/3 x 3/2) = 1, whose -ln is -0
constexpr Row kRows[] = {
    {"POSA", 0x2, {"0.25000", "0.62500", "0.37500"}, {"0.28768", "0.98083", "0.47000"}},
    {"FSS", 0x4, {"0.25000", "0.50000", "0.25000"}, {"0.28768", "0.69315", "0.28768"}},
    {"ADA", 0x8, {"0.50000", "1.25000", "0.75000"}, {"0.50000", "1.25000", "0.75000"}},
    {"KSC", 0x10, {"0.50000", "0.75000", "0.50000"}, {"0.69315", "1.38629", "0.69315"}},
    {"DMS", 0x20, {"0.50000", "2.12500", "0.62500"}, {"0.50000", "2.12500", "0.62500"}},
    {"ASD", 0x40, {"2.50000", "3.29167", "2.45833"}, {"2.50000", "3.29167", "2.45833"}},
    {"CAS", 0x80, {"0.24362", "0.53325", "0.32672"}, {"0.24362", "0.53325", "0.32672"}},
    {"DAN", 0x80, {"0.14645", "0.51704", "0.16348"}, {"0.14645", "0.51704", "0.16348"}},
    {"DSG", 0x100, {"-0.06066", "0.64645", "0.00000"}, {"-0.05889", "1.03972", "-0.00000"}},
};

std::string cell(const std::string& number) {
    return std::string(9 - number.size(), ' ') + number;
}

std::string matrixOf(const char* const values[3]) {
    const std::string zero = cell("0.00000");
    const std::string ab = cell(values[0]);
    const std::string ac = cell(values[1]);
    const std::string bc = cell(values[2]);
    std::string text = "3\n";
    text.append("         A").append(zero).append(ab).append(ac).append("\n");
    text.append("         B").append(ab).append(zero).append(bc).append("\n");
    text.append("         C").append(ac).append(bc).append(zero).append("\n\n");
    return text;
}

class ThreePopulations : public ::testing::TestWithParam<Row> {};

std::string stemOf(const ::testing::TestParamInfo<Row>& info) {
    return info.param.Stem;
}

} // namespace

TEST_P(ThreePopulations, MatrixByHand) {
    LoadedRun run(kThreePops);
    popPass(run, GetParam().Bit);
    EXPECT_EQ(distanceFile(run, std::string(GetParam().Stem) + "_Pop.txt"),
              matrixOf(GetParam().Plain));
}

TEST_P(ThreePopulations, MatrixUnderLogByHand) {
    LoadedRun run(kThreePops);
    run->GeneralMask |= GeneralBit::MinusLog;
    popPass(run, GetParam().Bit);
    EXPECT_EQ(distanceFile(run, std::string(GetParam().Stem) + "_Pop.txt"),
              matrixOf(GetParam().Log));
}

INSTANTIATE_TEST_SUITE_P(ByHand, ThreePopulations, ::testing::ValuesIn(kRows), stemOf);

// --- Single loci -----------------------------------------------------------------------

namespace {

struct SheetRow {
    const char* Stem;
    uint32_t Bit;
    const char* L1;
    const char* L2;
};
void PrintTo(const SheetRow& row, std::ostream* out) {
    *out << row.Stem;
}

// CAS: 2 sqrt(2 (1 - B)) / pi = 0.487248, 2 sqrt(2) / pi = 0.900316, 0.166191.
// DSG: L1 1 - 0.5 / sqrt(1/3); L2 A-B 1 - 0.5 / (1/3), A-C and B-C 1 - 0.5 / sqrt(1/6).
constexpr SheetRow kSheetRows[] = {
    {"POSA", 0x2, "\t0.500000\t1.000000\t0.500000", "\t0.000000\t0.250000\t0.250000"},
    {"FSS", 0x4, "\t0.500000\t1.000000\t0.500000", "\t0.000000\t0.000000\t0.000000"},
    {"ADA", 0x8, "\t1.000000\t2.000000\t1.000000", "\t0.000000\t0.500000\t0.500000"},
    {"KSC", 0x10, "\t0.500000\t1.000000\t0.500000", "\t0.500000\t0.500000\t0.500000"},
    {"DMS", 0x20, "\t1.000000\t4.000000\t1.000000", "\t0.000000\t0.250000\t0.250000"},
    {"ASD", 0x40, "\t2.333333\t4.000000\t2.333333", "\t2.666667\t2.583333\t2.583333"},
    {"CAS", 0x80, "\t0.487248\t0.900316\t0.487248", "\t0.000000\t0.166191\t0.166191"},
    {"DAN", 0x80, "\t0.292893\t1.000000\t0.292893", "\t0.000000\t0.034074\t0.034074"},
    {"DSG", 0x100, "\t0.133975\t1.000000\t0.133975", "\t-0.500000\t-0.224745\t-0.224745"},
};

class ThreePopulationsByLocus : public ::testing::TestWithParam<SheetRow> {};

std::string sheetStemOf(const ::testing::TestParamInfo<SheetRow>& info) {
    return info.param.Stem;
}

} // namespace

TEST_P(ThreePopulationsByLocus, SheetByHand) {
    LoadedRun run(kThreePops);
    popPass(run, GetParam().Bit | DistBit::PerLocus);
    std::string expected = "\t\tA\tA\tB\n\t\tB\tC\tC\n";
    expected.append("L1\tL1b").append(GetParam().L1).append("\n");
    expected.append("L2\tL2b").append(GetParam().L2).append("\n");
    EXPECT_EQ(distanceFile(run, std::string(GetParam().Stem) + "_Pop_Loci.xls"), expected);
}

INSTANTIATE_TEST_SUITE_P(ByHand, ThreePopulationsByLocus, ::testing::ValuesIn(kSheetRows),
                         sheetStemOf);

// --- Individuals -------------------------------------------------------------------------

namespace {

// L1: 1 and 2 are 100/100, 3 is 100/104, 4 is 104/104.
const char* const kFourIndividuals = "2 . . 4 .\n"
                                     ". . . 0 .\n"
                                     ". . . L1 L1b\n"
                                     "A d 0 100 100\n"
                                     "A d 0 100 100\n"
                                     "A d 0 100 104\n"
                                     "A d 0 104 104\n";

struct FirstRow {
    const char* Stem;
    uint32_t Bit;
    const char* Cells;
};
void PrintTo(const FirstRow& row, std::ostream* out) {
    *out << row.Stem;
}

// Individual 1 against 2 (the same homozygote), 3 (a heterozygote) and 4 (another homozygote):
//   POSA  s 1, 0.5, 0          FSS  1/1, 1/2, 0/2        KSC  1, 0.5, 0
//   means 100, 102, 104, not divided by the repeat length of 4; ASD is DMS
//   B     1, sqrt(0.5), 0: CAS 2 sqrt(2 (1 - B)) / pi, DAN 1 - B
//   DSG   J' = 2 J - 1: 1 for a homozygote and 0 for a heterozygote:
//         1 - 1/1, 1 - 0.5/sqrt(1 x 0) = -inf, 1 - 0/1
constexpr FirstRow kFirstRows[] = {
    {"POSA", 0x2, "  0.00000  0.50000  1.00000"},  {"FSS", 0x4, "  0.00000  0.50000  1.00000"},
    {"ADA", 0x8, "  0.00000  2.00000  4.00000"},   {"KSC", 0x10, "  0.00000  0.50000  1.00000"},
    {"DMS", 0x20, "  0.00000  4.00000 16.00000"},  {"ASD", 0x40, "  0.00000  4.00000 16.00000"},
    {"CAS", 0x80, "  0.00000  0.48725  0.90032"},  {"DAN", 0x80, "  0.00000  0.29289  1.00000"},
    {"DSG", 0x100, "  0.00000     -inf  1.00000"},
};

class FourIndividuals : public ::testing::TestWithParam<FirstRow> {};

std::string firstRowStemOf(const ::testing::TestParamInfo<FirstRow>& info) {
    return info.param.Stem;
}

} // namespace

TEST_P(FourIndividuals, FirstRowByHand) {
    LoadedRun run(kFourIndividuals);
    indPass(run, GetParam().Bit);
    const std::string file = distanceFile(run, std::string(GetParam().Stem) + "_Ind.txt");
    EXPECT_EQ(file.substr(0, file.find('\n', 2)),
              std::string("4\n    A001  0.00000") + GetParam().Cells);
}

INSTANTIATE_TEST_SUITE_P(ByHand, FourIndividuals, ::testing::ValuesIn(kFirstRows), firstRowStemOf);
