// The numbered result folder of a run, beside the data file. Its number is the first that is
// free, so that no run writes into the folder of an earlier one:
//
//     data.txt
//     data.txt_KVAresult00/KVA.log
//     data.txt_KVAresult01/KVA.log
#include "data/resultpath.h"

#include "control/AnalyseDataObj.h"
#include "control/Ausgabe.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

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

// The absolute path of a file name, seen from the current folder; empty without such a folder.
std::string absolutePath(const std::string& name) {
    std::error_code error;
    const std::filesystem::path current = std::filesystem::current_path(error);
    const std::filesystem::path path = current / name; // an absolute name stands alone
    return path.is_absolute() ? path.string() : std::string();
}

} // namespace

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return path.substr(0, slash > 0 ? slash : 1);
}

int AnalyseDataObj::InitPath() {
    OrdnerFehlt = true;
    if (DateiPfad.empty()) {
        DateiPfad = absolutePath(DateiName);
    }
    std::string ordner = DateiName;
    int error = DateiPfad.empty() ? ENOENT : makeNumberedFolder(DateiPfad + "_KVAresult", ordner);
    if (error == 0 && chdir(ordner.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        AUSGABE(14, nullptr);
        std::cout << "Cannot make result folder " << ordner << ": " << std::strerror(error)
                  << std::endl;
        return 1;
    }
    OrdnerFehlt = false;
    StartPfad = folderOf(DateiPfad);
    DateiKurzName = DateiPfad.substr(DateiPfad.rfind('/') + 1);
    ResultPfad = ordner;
    AktuellerOrdner.clear();
    (void)LogDatei.close(); // its failure was told
    LogDatei = OpenResult("KVA.log", "wb");
    return 0;
}
