// ResultFolder: the numbered result folder of a run, beside the data file, and the log in it. Its
// number is the first that is free, so that no run writes into the folder of an earlier one:
//
//     data.txt
//     data.txt_KVAresult00/KVA.log
//     data.txt_KVAresult01/KVA.log
//
// The current folder of the process is part of the state: passes go from ResultPfad into their
// folder and back (PassFolder).
//
// It can lie in memory instead (KeepInMemory): then its files are texts, no file or folder is
// touched, and the current folder of the process stays as it is.
#ifndef KVA_OUTPUT_RESULTFOLDER_H
#define KVA_OUTPUT_RESULTFOLDER_H

#include "output/resultfile.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kva {

// The files of a result folder, by their path inside it.
using ResultTexts = std::map<std::string, std::string, std::less<>>;

class ResultFolder {
  public:
    // No folder yet: all paths are empty, the log is closed.
    ResultFolder() = default;

    // Closes the log and takes the process back to StartPfad, if there is one.
    ~ResultFolder();
    ResultFolder(const ResultFolder&) = delete;
    ResultFolder& operator=(const ResultFolder&) = delete;

    // From now on, before MakeNext, the folder lies in memory.
    void KeepInMemory() { Texts = std::make_unique<ResultTexts>(); }
    bool InMemory() const { return Texts != nullptr; }

    // Its files, those that are open up to their last flush; the folder must lie in memory.
    const ResultTexts& texts() const { return *Texts; }

    // Takes them out. Closes the log; no other file may be open.
    ResultTexts takeTexts() {
        LogDatei.close();
        return std::move(*Texts);
    }

    // Makes WantedPfad, or without it the next numbered folder (mode 0777) for a data file, named
    // as it was typed, enters it and opens its log. From the second call on the folder lies beside
    // the first file, whatever the name. 0; 1, and told on the console, if there is no such folder
    // to enter: StartPfad, ResultPfad, DateiKurzName and the log stay as they were. A log that does
    // not open is told, and the result is 0. In memory the folder begins empty, and only
    // DateiKurzName and DataPath are set, to the name alone.
    int MakeNext(const std::string& dataFile);

    // Goes into the result folder itself; false, with Message::ResultNotEntered on the console and
    // the system's reason in the log, if that fails.
    bool Enter();

    // The same without a word on the console.
    bool EnterQuietly();

    // Opens a file of the result folder by its bare name in the current folder; `mode` as in
    // ResultFile. A failure, now or later, is told on the console and in the log. This object must
    // outlive the file.
    ResultFile OpenResult(const std::string& name, const char* mode);

    // Puts a line about a failure into Failures and, if there is one, into the log, and flushes it.
    void LogFailure(const std::string& line);

    // The entry of a finished pass in the log: a line end, the text, a line end, flushed. Nothing
    // without a log.
    void LogEntry(const char* text);

    std::string WantedPfad;    // absolute; the folder that MakeNext is to make, which must not be
                               // there; empty: the next numbered one
    std::string StartPfad;     // absolute; folder to go back to, empty until MakeNext
    std::string ResultPfad;    // absolute; the numbered result folder, empty until MakeNext
    std::string DateiKurzName; // data file without its folder, set by MakeNext
    std::string DataPath;      // absolute path of the data file, set at the first MakeNext
    std::string CurrentFolder; // folder of the running pass inside the result folder, for
                               // failure lines; set by PassFolder
    std::vector<std::string> Failures; // lines told by LogFailure
    bool FolderMissing = false;        // the last MakeNext failed: no pass may run
    ResultFile LogDatei;               // the run log "KVA.log"

  private:
    void makeInMemory(const std::string& dataFile);
    ResultFile openText(const std::string& path, const char* mode);

    std::unique_ptr<ResultTexts> Texts; // the folder in memory; null: it lies on the disk
};

// The folder of a file, from the file's absolute path: the part before its last "/"; "/" for a
// file of the root folder. No file is looked at.
std::string folderOf(const std::string& path);

} // namespace kva

#endif
