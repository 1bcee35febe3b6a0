// The search for the number of the next folder, and the files and entries of a run.
#include "output/resultfolder.h"

#include "base/console.h"
#include "control/Ausgabe.h"
#include "output/nofollow.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kva {

namespace {

constexpr mode_t kFolderMode = 0777;

// Makes the folder `stem` + the first free number; `folder` takes its path, also that of the
// one that could not be made. Goes on to the next number only while the name is there already.
// 0, or the system's error number.
int makeNumberedFolder(const std::string& stem, std::string& folder) {
    for (int number = 0;; ++number) {
        char digits[16];
        (void)std::snprintf(digits, sizeof digits, "%.2d", number);
        folder = stem + digits;
        if (mkdir(folder.c_str(), kFolderMode) == 0) {
            return 0;
        }
        if (errno != EEXIST) {
            return errno;
        }
    }
}

// Makes a folder that is not there. 0, or the system's error number.
int makeFolder(const std::string& folder) {
    return mkdir(folder.c_str(), kFolderMode) == 0 ? 0 : errno;
}

// The absolute path of a file name, seen from the current folder; empty without such a folder.
std::string absolutePath(const std::string& name) {
    std::error_code error;
    const std::filesystem::path current = std::filesystem::current_path(error);
    if (error == std::errc::not_enough_memory) {
        throw std::bad_alloc();
    }
    const std::filesystem::path path = current / name; // an absolute name stands alone
    return path.is_absolute() ? path.string() : std::string();
}

} // namespace

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return path.substr(0, slash > 0 ? slash : 1);
}

ResultFolder::~ResultFolder() {
    LogDatei.close(); // now, while the object that tells of a failure is whole
    if (!StartPfad.empty()) {
        (void)!chdir(StartPfad.c_str()); // a folder that is gone cannot be mended here
    }
}

int ResultFolder::MakeNext(const std::string& dataFile) {
    if (InMemory()) {
        makeInMemory(dataFile);
        return 0;
    }
    FolderMissing = true;
    if (DataPath.empty()) {
        DataPath = absolutePath(dataFile);
    }
    std::string folder = WantedPfad.empty() ? dataFile : WantedPfad;
    int error = ENOENT;
    if (!DataPath.empty()) {
        error = WantedPfad.empty() ? makeNumberedFolder(DataPath + "_KVAresult", folder)
                                   : makeFolder(folder);
    }
    if (error == 0 && !enterFolder(folder)) {
        error = errno;
    }
    if (error != 0) {
        AUSGABE(Message::ResultNotEntered);
        console() << "Cannot make result folder " << folder << ": " << std::strerror(error)
                  << std::endl;
        return 1;
    }
    FolderMissing = false;
    StartPfad = folderOf(DataPath);
    DateiKurzName = DataPath.substr(DataPath.rfind('/') + 1);
    ResultPfad = folder;
    CurrentFolder.clear();
    LogDatei.close(); // its failure was told
    LogDatei = OpenResult("KVA.log", "wb");
    return 0;
}

void ResultFolder::makeInMemory(const std::string& dataFile) {
    LogDatei.close();
    Texts->clear();
    DataPath = dataFile;
    DateiKurzName = dataFile.substr(dataFile.rfind('/') + 1);
    CurrentFolder.clear();
    LogDatei = OpenResult("KVA.log", "wb");
}

bool ResultFolder::Enter() {
    if (EnterQuietly()) {
        return true;
    }
    AUSGABE(Message::ResultNotEntered);
    return false;
}

bool ResultFolder::EnterQuietly() {
    if (InMemory() || enterFolder(ResultPfad)) {
        return true;
    }
    LogFailure("Cannot enter " + ResultPfad + ": " + std::strerror(errno));
    return false;
}

ResultFile ResultFolder::openText(const std::string& path, const char* mode) {
    std::string& text = (*Texts)[path];
    if (mode[0] == 'w') {
        text.clear();
    }
    return ResultFile::toText(text);
}

ResultFile ResultFolder::OpenResult(const std::string& name, const char* mode) {
    if (InMemory()) {
        return openText(CurrentFolder + name, mode);
    }
    return {name, mode, CurrentFolder + name,
            [this](const std::string& shownName, const std::string& reason) {
                const std::string line = "Cannot write result file " + shownName + ": " + reason;
                console() << '\n' << line << std::endl;
                LogFailure(line);
            }};
}

void ResultFolder::LogEntry(const char* text) {
    LogDatei.character('\n');
    LogDatei.text(text);
    LogDatei.character('\n');
    LogDatei.flush();
}

void ResultFolder::LogFailure(const std::string& line) {
    Failures.push_back(line);
    LogDatei.text(line + "\n");
    LogDatei.flush();
}

} // namespace kva
