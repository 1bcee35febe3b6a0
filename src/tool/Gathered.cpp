#include "tool/Gathered.h"

#include "results/tidy.h"
#include "tool/ResultPlace.h"
#include "tool/RunJob.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>

namespace kva {

namespace {

namespace fs = std::filesystem;

constexpr int64_t kLargestRecord = int64_t{1} << 32U; // bytes

[[noreturn]] void throwUnread(const fs::path& file, const std::string& why) {
    throw PlaceError("cannot read '" + file.string() + "': " + why);
}

} // namespace

// --- GatheredFile ------------------------------------------------------------------------

GatheredFile::GatheredFile(const std::string& name) : Name(name), File(name, true) {
    throwFailure();
}

void GatheredFile::finish() {
    (void)File.finish();
    throwFailure();
}

void GatheredFile::throwFailure() const {
    if (!File.failure().empty()) {
        throw PlaceError("cannot write '" + Name + "': " + File.failure());
    }
}

// --- Tables ------------------------------------------------------------------------------

GatheredTable::GatheredTable(const std::string& file, bool several) : Several(several) {
    if (!file.empty()) {
        File.emplace(file);
    }
}

void GatheredTable::add(const std::string& data, const fs::path& folder) {
    if (!File) {
        return;
    }
    const fs::path table = folder / kTidyName;
    std::ifstream in(table, std::ios::binary);
    std::string line;
    std::getline(in, line);
    uintmax_t bytes = line.size() + 1;
    if (!Begun) {
        File->out() << (Several ? "data\t" : "") << line << '\n';
        Begun = true;
    }
    std::string front;
    if (Several) {
        appendTidyText(front, data);
        front += '\t';
    }
    while (std::getline(in, line)) {
        File->out() << front << line << '\n';
        bytes += line.size() + 1;
    }
    if (in.bad() || bytes != fs::file_size(table)) {
        throwUnread(table, std::strerror(EIO));
    }
    fs::remove(table);
}

void GatheredTable::finish() {
    if (File && Begun) {
        File->finish();
    }
}

// --- Records -------------------------------------------------------------------------------

GatheredRecords::GatheredRecords(const std::string& file, bool several) : Several(several) {
    if (!file.empty()) {
        File.emplace(file);
    }
}

void GatheredRecords::add(const fs::path& folder) {
    if (!File) {
        return;
    }
    std::string& record = Records.emplace_back();
    const fs::path file = folder / kRunRecordName;
    const std::string failure = readWholeFile(file, record, kLargestRecord);
    if (!failure.empty()) {
        throwUnread(file, failure);
    }
}

void GatheredRecords::finish() {
    if (!File || Records.empty()) {
        return;
    }
    std::string all;
    for (const std::string& record : Records) {
        all += (all.empty() ? "" : ",\n") + record;
    }
    File->out() << (Several ? "[\n" + all + "]\n" : all);
    File->finish();
}

} // namespace kva
