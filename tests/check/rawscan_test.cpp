#include "check/rawscan.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace kva;

namespace {

RawScan scanOf(std::string text) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(
        fmemopen(text.data(), text.size(), "rb"), &std::fclose);
    return scanBytes(stream.get());
}

} // namespace

TEST(RawScan, LineEndsAreCountedByKind) {
    const RawScan scan = scanOf("a\nb\r\nc\rd\r\r\ne\r");
    EXPECT_EQ(scan.bytes, 13); // 5 letters and the line ends: 1, 2, 1, 1, 2, 1
    EXPECT_EQ(scan.lf, 1);     // behind a
    EXPECT_EQ(scan.crLf, 2);   // behind b, and the second one behind d
    EXPECT_EQ(scan.cr, 3);     // behind c, the first one behind d, behind e
    EXPECT_EQ(scan.otherLineEnd, 2);
}

TEST(RawScan, OneKindOfLineEndIsNoOther) {
    EXPECT_EQ(scanOf("a\r\nb\r\n").otherLineEnd, 0);
    EXPECT_EQ(scanOf("a").otherLineEnd, 0);
}

TEST(RawScan, FirstNulByteHasARow) {
    EXPECT_EQ(scanOf(std::string("a\r\nb\rc\0\n\0", 9)).nulRow, 3);
    EXPECT_EQ(scanOf("a\nb").nulRow, 0);
}

TEST(RawScan, PairOfBytesAtTheEdgeOfABufferIsOneLineEnd) {
    // The buffer holds 65536 bytes: the CR is its last.
    const RawScan scan = scanOf(std::string(65535, 'x') + "\r\ny\n");
    EXPECT_EQ(scan.crLf, 1);
    EXPECT_EQ(scan.cr, 0);
    EXPECT_EQ(scan.otherLineEnd, 2);
    EXPECT_EQ(scan.front, std::string(kFrontBytes, 'x'));
}
