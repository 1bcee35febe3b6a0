#include "check/checkfile.h"

#include "base/console.h"
#include "check/headerchecks.h"
#include "check/rawscan.h"
#include "check/rowchecks.h"
#include "data/datarows.h"
#include "data/loadeddata.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <sstream>
#include <string_view>
#include <sys/stat.h>

namespace kva {

namespace {

using Code = FindingCode;

constexpr std::size_t kFileNameLimit = 1024; // kva opens no longer name

// --- The first bytes -------------------------------------------------------------------

bool startsWith(std::string_view front, std::string_view bytes) {
    return front.starts_with(bytes);
}

// What the first bytes of files of other kinds tell.
struct Signature {
    std::string_view bytes;
    Code code;
};

constexpr Signature kSignatures[] = {
    {{"PK\x03\x04", 4}, Code::Spreadsheet},
    {{"\xd0\xcf\x11\xe0", 4}, Code::Spreadsheet},
    {{"\x1f\x8b", 2}, Code::Compressed},
    {{"BZh", 3}, Code::Compressed},
    {{"\xfd\x37zXZ", 5}, Code::Compressed},
    {{"\x28\xb5\x2f\xfd", 4}, Code::Compressed},
    {{"\xff\xfe", 2}, Code::Utf16},
    {{"\xfe\xff", 2}, Code::Utf16},
    {{"\xef\xbb\xbf", 3}, Code::ByteOrderMark},
};

bool isUtf16(std::string_view front) {
    return front.size() >= 4 &&
           ((front[0] == '\0' && front[2] == '\0') || (front[1] == '\0' && front[3] == '\0'));
}

// Cells of the first row by commas, semicolons or blanks, where there are hardly any tabs.
void checkSeparator(std::string_view front, Findings& findings) {
    const std::string_view line = front.substr(0, front.find_first_of("\r\n"));
    const auto times = [line](char c) { return std::count(line.begin(), line.end(), c); };
    const struct {
        char separator;
        const char* name;
    } kOthers[] = {{',', "commas"}, {';', "semicolons"}, {' ', "blanks"}};
    for (const auto& other : kOthers) {
        if (times('\t') < kHeadCells && times(other.separator) >= kHeadCells) {
            findings.add(Code::OtherSeparator, 1, 0, other.name);
            return;
        }
    }
}

// True if the file is no text that can be checked any further.
bool checkFront(const RawScan& scan, Findings& findings) {
    if (scan.bytes == 0) {
        findings.add(Code::EmptyFile);
        return true;
    }
    const auto* const signature =
        std::find_if(std::begin(kSignatures), std::end(kSignatures),
                     [&scan](const Signature& row) { return startsWith(scan.front, row.bytes); });
    if (signature != std::end(kSignatures)) {
        findings.add(signature->code);
        return signature->code != Code::ByteOrderMark;
    }
    if (isUtf16(scan.front)) {
        findings.add(Code::Utf16);
        return true;
    }
    return false;
}

void checkLineEnds(const RawScan& scan, Findings& findings) {
    if (scan.otherLineEnd != 0) {
        findings.add(Code::MixedLineEnds, scan.otherLineEnd, 0,
                     std::to_string(scan.lf) + " LF, " + std::to_string(scan.crLf) + " CR LF, " +
                         std::to_string(scan.cr) + " CR");
    }
    if (scan.nulRow != 0) {
        findings.add(Code::NulByte, scan.nulRow);
    }
}

// --- The reader ------------------------------------------------------------------------

// What the reader told of a file without a name that it refuses: ", row 1: found ..., expected
// ...".
void addRefusal(const std::string& told, Findings& findings) {
    constexpr std::string_view kBegin = ", row ";
    const std::size_t begin = told.rfind(kBegin);
    if (begin == std::string::npos) {
        findings.add(Code::Refused);
        return;
    }
    const std::string row = told.substr(begin + kBegin.size());
    const std::size_t colon = std::min(row.find(": "), row.size() - 1);
    const std::string words = row.substr(colon + 2, row.find('\n') - colon - 2);
    const std::size_t expected = words.find(", expected");
    findings.add(Code::Refused, std::strtol(row.c_str(), nullptr, 10), 0,
                 words.substr(0, expected));
}

// --- Rows ------------------------------------------------------------------------------

// The rows of individuals. Two header rows with CR LF are taken as if the lines ended in LF.
// Result: the system's error number where reading failed; 0: it did not.
int checkRows(std::FILE* stream, const LoadedData& data, const DataSummary& summary,
              const RawScan& scan, Findings& findings) {
    DataWindow window(stream);
    if (!window.hasBuffer()) {
        throw std::bad_alloc();
    }
    const HeaderRows header = headerRowsOf(window, data.KopfZeilen);
    checkHeader(header, data, findings);
    if (data.AnzLoci == 0) {
        return window.failure();
    }
    RowChecks rows(summary, cellCount(header.first), findings);
    RowWalk walk(window, header.lastByte, CrLf::LineEnd);
    int64_t number = data.KopfZeilen;
    while (walk.next()) {
        ++number;
        rows.add(walk.row().text);
        const int64_t end = walk.row().begin + static_cast<int64_t>(walk.row().text.size());
        if (walk.endsBlock() && end + 2 < window.contentEnd() && scan.nulRow == 0) {
            findings.add(Code::RowTooLong, number);
            break;
        }
    }
    rows.finish();
    checkSummary(summary, findings);
    return window.failure();
}

// What the reader makes of the file; report.failure where it could not read all of it.
void checkText(std::FILE* stream, const RawScan& scan, CheckReport& report, Findings& findings) {
    LoadedData data;
    data.DateiName.clear();
    {
        std::ostringstream told;
        const ConsoleTo console(&told);
        const int refused = data.CheckDataFile(stream);
        if (refused == 1 || refused == 2) {
            throw std::bad_alloc();
        }
        report.failure = data.Unread;
        if (!report.failure.empty()) {
            return;
        }
        if (refused != 0) {
            addRefusal(told.str(), findings);
            checkSeparator(scan.front, findings);
            return;
        }
        if (data.KopfZeilen == 2 && told.str().find("misaligned") != std::string::npos) {
            findings.add(Code::CrLfTwoHeaders, 1);
        }
    }
    if (data.AnzLoci > 0 && rowTooLong(data.AnzLoci, data.DatenFormat)) {
        findings.add(Code::TooManyLoci, 1, 0, std::to_string(data.AnzLoci) + " loci");
        return;
    }
    {
        const ConsoleTo nobody(nullptr);
        report.read = data.GetDataFile(stream) == 0;
        report.failure = data.Unread;
    }
    if (!report.failure.empty()) {
        return;
    }
    report.summary = summaryOf(data);
    if (data.AnzLoci == 0) {
        checkSeparator(scan.front, findings);
    }
    const int failure = checkRows(stream, data, report.summary, scan, findings);
    if (failure != 0) {
        report.failure = std::strerror(failure);
    }
}

void count(CheckReport& report) {
    for (const Finding& finding : report.findings) {
        const Severity severity = kindOf(finding.code).severity;
        (severity == Severity::Error     ? report.errors
         : severity == Severity::Warning ? report.warnings
                                         : report.notes) += finding.count;
    }
}

} // namespace

CheckReport checkStream(std::FILE* stream) {
    CheckReport report;
    Findings findings;
    const RawScan scan = scanBytes(stream);
    if (scan.failure != 0) {
        report.failure = std::strerror(scan.failure);
        return report;
    }
    if (!checkFront(scan, findings)) {
        checkLineEnds(scan, findings);
        checkText(stream, scan, report, findings);
    }
    if (!report.failure.empty()) { // what was found may not be true
        CheckReport failed;
        failed.failure = report.failure;
        return failed;
    }
    report.findings = findings.sorted();
    count(report);
    return report;
}

CheckReport checkFile(const std::string& file) {
    CheckReport report;
    struct stat state {};
    if (file.size() >= kFileNameLimit) {
        report.failure = "the name is longer than 1023 bytes, which kva does not open";
    } else if (stat(file.c_str(), &state) != 0) {
        report.failure = std::strerror(errno);
    } else if (!S_ISREG(state.st_mode)) {
        report.failure = S_ISDIR(state.st_mode) ? "it is a folder" : "it is no file on a disk";
    } else {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "rb"),
                                                                     &std::fclose);
        if (stream) {
            report = checkStream(stream.get());
        } else {
            report.failure = std::strerror(errno);
        }
    }
    report.file = file;
    return report;
}

} // namespace kva
