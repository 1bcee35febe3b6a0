#include "tool/Gathered.h"

#include "results/tidy.h"
#include "tool/ResultPlace.h"
#include "tool/RunJob.h"

#include <cerrno>
#include <cstring>
#include <sstream>
#include <system_error>
#include <unistd.h>

namespace kva {

namespace {

namespace fs = std::filesystem;

// What a file is written as: beside its name, but for a device or pipe, which has no beside.
std::string unfinishedName(const std::string& name) {
    std::error_code error;
    const fs::file_status status = fs::status(name, error);
    const bool isFile = !fs::exists(status) || fs::is_regular_file(status);
    return isFile ? name + ".unfinished-" + std::to_string(getpid()) : name;
}

} // namespace

// --- WholeFile ---------------------------------------------------------------------------

WholeFile::WholeFile(const std::string& name)
    : Name(name), Unfinished(unfinishedName(name)), Out(Unfinished, std::ios::binary) {
    if (!Out) {
        throw PlaceError("cannot write '" + Name + "': " + std::strerror(errno));
    }
}

WholeFile::~WholeFile() {
    if (Unfinished != Name) {
        std::error_code gone; // where it has its name
        fs::remove(Unfinished, gone);
    }
}

void WholeFile::finish() {
    Out.close();
    std::error_code error;
    if (Out && Unfinished != Name) {
        fs::rename(Unfinished, Name, error);
    }
    if (!Out || error) {
        throw PlaceError("cannot write '" + Name + "'" +
                         (error ? ": " + error.message() : std::string()));
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
    std::ifstream in(folder / kRunRecordName, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    Records.push_back(text.str());
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
