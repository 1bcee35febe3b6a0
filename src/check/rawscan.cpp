#include "check/rawscan.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

namespace kva {

namespace {

enum class LineEnd { None, Lf, CrLf, Cr };

// The bytes of a file one after the other.
class Scanner {
  public:
    explicit Scanner(RawScan& result) : Result(result) {}

    void take(std::string_view bytes) {
        for (const char c : bytes) {
            if (CrBefore) {
                end(c == '\n' ? LineEnd::CrLf : LineEnd::Cr);
            } else if (c == '\n') {
                end(LineEnd::Lf);
            }
            CrBefore = c == '\r';
            if (c == '\0' && Result.nulRow == 0) {
                Result.nulRow = Row;
            }
        }
    }

    void finish() {
        if (CrBefore) {
            end(LineEnd::Cr);
        }
    }

  private:
    void end(LineEnd kind) {
        ++(kind == LineEnd::Lf ? Result.lf : kind == LineEnd::CrLf ? Result.crLf : Result.cr);
        First = First == LineEnd::None ? kind : First;
        if (kind != First && Result.otherLineEnd == 0) {
            Result.otherLineEnd = Row;
        }
        ++Row;
    }

    RawScan& Result; // NOT OWNED
    int64_t Row = 1;
    LineEnd First = LineEnd::None;
    bool CrBefore = false; // the byte before was a CR
};

} // namespace

RawScan scanBytes(std::FILE* stream) {
    RawScan result;
    Scanner scanner(result);
    std::array<char, 1 << 16> buffer{};
    std::clearerr(stream);
    if (fseeko(stream, 0, SEEK_SET) != 0) {
        result.failure = errno;
        return result;
    }
    std::size_t got = 0;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), stream)) > 0) {
        const std::string_view bytes(buffer.data(), got);
        result.front += bytes.substr(0, kFrontBytes - result.front.size());
        result.bytes += static_cast<int64_t>(got);
        scanner.take(bytes);
    }
    if (std::ferror(stream) != 0 || fseeko(stream, 0, SEEK_END) != 0) {
        result.failure = errno;
    } else if (ftello(stream) != result.bytes) {
        result.failure = EIO; // it ended too early
    }
    scanner.finish();
    return result;
}

} // namespace kva
