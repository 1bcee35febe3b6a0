// Loading, and the data set of the public header.
#include "api/DataSet.h"

#include "api/Guarded.h"
#include "api/ToldLines.h"
#include "base/console.h"
#include "base/plainlocale.h"
#include "check/checkfile.h"
#include "control/frontend.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <sstream>
#include <system_error>
#include <utility>

namespace kva::api {

namespace {

Error fileError(const std::string& file, const std::string& reason) {
    return {ErrorKind::File, "cannot read '" + file + "': " + reason};
}

Severity severityOf(kva::Severity severity) {
    return severity == kva::Severity::Error     ? Severity::Error
           : severity == kva::Severity::Warning ? Severity::Warning
                                                : Severity::Note;
}

std::vector<Finding> findingsOf(const CheckReport& report) {
    std::vector<Finding> findings;
    for (const kva::Finding& finding : report.findings) {
        const FindingKind& kind = kindOf(finding.code);
        const Place first = finding.places.empty() ? Place() : finding.places.front();
        findings.push_back({severityOf(kind.severity), kind.name,
                            std::string(kind.title) + ". " + kind.meaning + " " + kind.advice,
                            finding.count, first.row, first.column});
    }
    return findings;
}

void takeSummary(const DataSummary& summary, DataSet::Content& content) {
    for (const PopulationSummary& population : summary.populations) {
        content.Populations.push_back(
            {population.name, population.individuals, population.inbred, population.group});
    }
    for (const LocusSummary& locus : summary.loci) {
        content.Loci.push_back(
            {locus.name, locus.repeat, locus.alleles, locus.copies, locus.missing});
    }
}

// The reader's words on data that cannot be used, or what the check found.
Error dataError(const std::string& name, const std::string& told, const CheckReport& report) {
    std::string why = joinedLines(linesOf(told));
    if (why.empty() && !report.findings.empty()) {
        why = kindOf(report.findings.front().code).title;
    }
    return {ErrorKind::Data, name + " cannot be used: " + why};
}

Outcome<DataSet> load(std::FILE* stream, const std::string& name) {
    const PlainLocale plain;
    const CheckReport report = checkStream(stream);
    if (!report.failure.empty()) {
        return fileError(name, report.failure);
    }
    const auto content = std::make_shared<DataSet::Content>();
    std::ostringstream told;
    const ConsoleTo console(&told);
    LoadedData& loaded = content->Loaded;
    loaded.DateiName = name;
    const int refusal = loaded.CheckDataFile(stream);
    if (refusal == 1 || refusal == 2) {
        throw std::bad_alloc();
    }
    if (refusal == 0) {
        loaded.GetDataFile(stream); // what it refuses stays without individuals
    }
    if (!loaded.Unread.empty()) { // by this reading, after that of the check
        return fileError(name, loaded.Unread);
    }
    if (loaded.GetGesamtIndividuuenAnzahl() == 0) {
        return dataError(name, told.str(), report);
    }
    takeSummary(report.summary, *content);
    content->Findings = findingsOf(report);
    content->Warnings = warningsAmong(linesOf(told.str()));
    return DataSet(content);
}

Outcome<DataSet> loadNamed(const std::string& file) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        return fileError(file, "it is no file on a disk");
    }
    const InputFile stream(std::fopen(file.c_str(), "rbe"));
    if (!stream) {
        return fileError(file, std::strerror(errno));
    }
    return load(stream.get(), file);
}

Outcome<DataSet> loadBytes(std::string_view bytes, const std::string& name) {
    if (bytes.empty()) {
        return Error{ErrorKind::Data, name + " cannot be used: it is empty"};
    }
    // It is only read.
    const InputFile stream(fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb"));
    if (!stream) {
        throw std::bad_alloc();
    }
    return load(stream.get(), name);
}

} // namespace

std::string version() {
    return kVersion;
}

Outcome<DataSet> loadFile(const std::string& file) {
    return guarded([&] { return loadNamed(file); });
}

Outcome<DataSet> loadText(std::string_view bytes, const std::string& name) {
    return guarded([&] { return loadBytes(bytes, name); });
}

const std::string& DataSet::name() const {
    return Held->Loaded.DateiName;
}

const std::vector<Population>& DataSet::populations() const {
    return Held->Populations;
}

const std::vector<Locus>& DataSet::loci() const {
    return Held->Loci;
}

const std::vector<Finding>& DataSet::findings() const {
    return Held->Findings;
}

const std::vector<std::string>& DataSet::warnings() const {
    return Held->Warnings;
}

} // namespace kva::api
