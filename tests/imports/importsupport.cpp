#include "importsupport.h"

#include <functional>

using namespace kva;

namespace kva_test {

namespace {

std::string whatOf(const std::string& text, const std::string& format, const ImportOptions& options,
                   const std::function<std::string(const Genotypes&)>& what) {
    try {
        return what(importText(text, importFormatOf(text, format), options));
    } catch (const ImportRefusal& refusal) {
        return (refusal.cause() == ImportRefusal::Cause::Data ? "data: " : "option: ") +
               std::string(refusal.what());
    }
}

// Tabs as blanks, empty cells as ".".
std::string shown(const std::string& rows) {
    std::string text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const bool end = i + 1 == rows.size() || rows[i + 1] == '\t' || rows[i + 1] == '\n';
        text += rows[i] == '\t' ? " " : std::string(1, rows[i]);
        text += rows[i] == '\t' && end ? "." : "";
    }
    return text;
}

} // namespace

std::string rowsOf(const std::string& text, const std::string& format,
                   const ImportOptions& options) {
    return whatOf(text, format, options, [](const Genotypes& data) {
        std::string file = dataFileOf(data, std::vector<LocusLengths>(data.loci.size()));
        for (int row = 0; row < 3; ++row) {
            file.erase(0, file.find('\n') + 1);
        }
        return shown(file);
    });
}

std::string lociOf(const std::string& text, const std::string& format,
                   const ImportOptions& options) {
    return whatOf(text, format, options, [](const Genotypes& data) {
        std::string names;
        for (const std::string& name : data.loci) {
            names += (names.empty() ? "" : " ") + name;
        }
        return names;
    });
}

std::string notesOf(const std::string& text, const std::string& format,
                    const ImportOptions& options) {
    return whatOf(text, format, options, [](const Genotypes& data) {
        std::string notes;
        for (const std::string& note : data.notes) {
            notes += note + "\n";
        }
        return notes;
    });
}

} // namespace kva_test
