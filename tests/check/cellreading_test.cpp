#include "check/cellreading.h"

#include <gtest/gtest.h>

#include <string>

using namespace kva;

namespace {

struct Case {
    std::string cell;
    CellKind kind;
    int32_t value; // as the reader takes it: the number in front, -1 without one
};

// The catalogue of cells. A test over the table says for each what stands there.
const Case kCases[] = {
    {"", CellKind::Empty, -1},
    {"  ", CellKind::Empty, -1},
    {"104", CellKind::Number, 104},
    {"0", CellKind::Number, 0},
    {" 104 ", CellKind::Number, 104},
    {"+104", CellKind::Number, 104},
    {"2147483647", CellKind::Number, 2147483647},
    {"104.0", CellKind::Number, 104},
    {"104,00", CellKind::Number, 104},
    {"104.", CellKind::Number, 104},
    {"007", CellKind::LeadingZeros, 7},
    {"00", CellKind::LeadingZeros, 0},
    {"-9", CellKind::Negative, -9},
    {"-1", CellKind::Negative, -1},
    {" 0", CellKind::ZeroMissing, -1},
    {"+0", CellKind::ZeroMissing, -1},
    {"2147483648", CellKind::TooLarge, 2147483647},
    {"99999999999999999999", CellKind::TooLarge, 2147483647},
    {"104.5", CellKind::Decimal, 104},
    {"104,5", CellKind::Decimal, 104},
    {"104.125", CellKind::Decimal, 104},
    {"104/106", CellKind::TwoAlleles, 104},
    {"104 / 106", CellKind::TwoAlleles, 104},
    {"104 106", CellKind::TwoAlleles, 104},
    {"104-106", CellKind::TwoAlleles, 104},
    {"104;106", CellKind::TwoAlleles, 104},
    {"104,106", CellKind::TwoAlleles, 104},
    {"104106", CellKind::TwoAlleles, 104106},
    {"0204", CellKind::TwoAlleles, 204},
    {"104a", CellKind::Letters, 104},
    {"1o4", CellKind::Letters, 1},
    {"104/", CellKind::Letters, 104},
    {"104.5x", CellKind::Letters, 104},
    {"1e5", CellKind::Letters, 1},
    {"\"104\"", CellKind::Quoted, -1},
    {"'104", CellKind::Quoted, -1},
    {"NA", CellKind::Word, -1},
    {"?", CellKind::Word, -1},
    {"-", CellKind::Word, -1},
    {"n/a", CellKind::Word, -1},
    {"LocA", CellKind::Text, -1},
    {"#NUM!", CellKind::Text, -1},
    {"\xc2\xa0"
     "104",
     CellKind::Text, -1}, // a no-break space, which no reader of numbers skips
};

} // namespace

TEST(CellReading, EachCellIsTakenForWhatItIs) {
    for (const Case& row : kCases) {
        const CellReading reading = readCell(row.cell);
        EXPECT_EQ(reading.kind, row.kind) << "cell '" << row.cell << "'";
        EXPECT_EQ(reading.value, row.value) << "cell '" << row.cell << "'";
    }
}
