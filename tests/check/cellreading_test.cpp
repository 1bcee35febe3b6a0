#include "check/cellreading.h"

#include <gtest/gtest.h>

#include <string>

using namespace kva;

namespace {

struct Case {
    std::string cell;
    CellContent kind;
    int32_t value; // as the reader takes it: the number in front, -1 without one
};

// The catalogue of cells. A test over the table says for each what stands there.
const Case kCases[] = {
    {"", CellContent::Empty, -1},
    {"  ", CellContent::Empty, -1},
    {"104", CellContent::Number, 104},
    {"0", CellContent::Number, 0},
    {" 104 ", CellContent::Number, 104},
    {"+104", CellContent::Number, 104},
    {"2147483647", CellContent::Number, 2147483647},
    {"104.0", CellContent::Number, 104},
    {"104,00", CellContent::Number, 104},
    {"104.", CellContent::Number, 104},
    {"007", CellContent::LeadingZeros, 7},
    {"00", CellContent::LeadingZeros, 0},
    {"-9", CellContent::Negative, -9},
    {"-1", CellContent::Negative, -1},
    {" 0", CellContent::ZeroMissing, -1},
    {"+0", CellContent::ZeroMissing, -1},
    {"2147483648", CellContent::TooLarge, 2147483647},
    {"02147483648", CellContent::TooLarge, 2147483647},
    {"02147483647", CellContent::LeadingZeros, 2147483647},
    {"99999999999999999999", CellContent::TooLarge, 2147483647},
    {"104.5", CellContent::Decimal, 104},
    {"104,5", CellContent::Decimal, 104},
    {"104.125", CellContent::Decimal, 104},
    {"104/106", CellContent::TwoAlleles, 104},
    {"104 / 106", CellContent::TwoAlleles, 104},
    {"104 106", CellContent::TwoAlleles, 104},
    {"104-106", CellContent::TwoAlleles, 104},
    {"104;106", CellContent::TwoAlleles, 104},
    {"104,106", CellContent::TwoAlleles, 104},
    {"104106", CellContent::TwoAlleles, 104106},
    {"0204", CellContent::TwoAlleles, 204},
    {"104a", CellContent::Letters, 104},
    {"1o4", CellContent::Letters, 1},
    {"104/", CellContent::Letters, 104},
    {"104.5x", CellContent::Letters, 104},
    {"1e5", CellContent::Letters, 1},
    {"\"104\"", CellContent::Quoted, -1},
    {"'104", CellContent::Quoted, -1},
    {"NA", CellContent::Word, -1},
    {"?", CellContent::Word, -1},
    {"-", CellContent::Word, -1},
    {"n/a", CellContent::Word, -1},
    {"LocA", CellContent::Text, -1},
    {"#NUM!", CellContent::Text, -1},
    {"\xc2\xa0"
     "104",
     CellContent::Text, -1}, // a no-break space, which no reader of numbers skips
};

} // namespace

TEST(CellReading, EachCellIsTakenForWhatItIs) {
    for (const Case& row : kCases) {
        const CellReading reading = readCell(row.cell);
        EXPECT_EQ(reading.kind, row.kind) << "cell '" << row.cell << "'";
        EXPECT_EQ(reading.value, row.value) << "cell '" << row.cell << "'";
    }
}
