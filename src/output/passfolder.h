// PassFolder: the stay of a pass in its folder under the result folder.
//
// Every pass starts from ResultPfad, not from the current folder. A folder that
// exists already is no failure: some serve several passes.
#ifndef KVA_OUTPUT_PASSFOLDER_H
#define KVA_OUTPUT_PASSFOLDER_H

#include "control/Ausgabe.h"

namespace kva {

class ResultFolder;

// A pass's folder and the two messages of the catalogue for it.
struct FolderRule {
    const char* Name;       // folder under the result folder
    Message NotEntered;     // an existing folder cannot be entered (or none made)
    Message NewNotEntered;  // the folder just made cannot be entered
    bool TellMkdir = false; // any failure of mkdir is told by NotEntered, also that the folder is
                            // there, and the pass goes on to enter. Wanted in "Single_data", whose
                            // console output depends on it
};

// The folders of the passes, all under the result folder but for IMFormat.
namespace Folder {
constexpr FolderRule Allelecount{"Allelecount", Message::CountNotMade, Message::CountNotEntered};
constexpr FolderRule SingleData{"Single_data", Message::SingleDataNotMade,
                                Message::SingleDataNotEntered, true};
constexpr FolderRule GroupData{"Group_data", Message::GroupDataNotMade,
                               Message::GroupDataNotEntered};
constexpr FolderRule FormatsData{"Formats&Data", Message::FormatsNotMade,
                                 Message::FormatsNotEntered};
constexpr FolderRule IMFormat{"IM_Format", Message::FormatsNotMade,
                              Message::FormatsNotEntered}; // inside FormatsData
constexpr FolderRule DistanceData{"Distance_data", Message::DistanceNotMade,
                                  Message::DistanceNotEntered};
// The two messages speak of "Distance_data": the pass has none of its own.
constexpr FolderRule FStatistic{"F-Statistic", Message::DistanceNotMade,
                                Message::DistanceNotEntered};
constexpr FolderRule ResamplingData{"Resampling_data", Message::ResamplingNotMade,
                                    Message::ResamplingNotEntered};
} // namespace Folder

// The stay itself, from construction to the end of the scope.
class PassFolder {
  public:
    // Makes the folder (mode 0777) under ResultPfad and makes it the current folder of the process;
    // a failure leaves the process where it is and is told on the console, with the system's reason
    // in the log, and so is a `folder` without a path, where nothing was loaded. Result files
    // opened meanwhile are shown with the folder's name in failure lines. `folder` must outlive the
    // stay. In memory a folder is a part of the names of its files, and nothing can fail.
    PassFolder(ResultFolder& folder, const FolderRule& rule);

    // Goes back to ResultPfad, unless stay() was called or nothing was entered.
    ~PassFolder();

    PassFolder(const PassFolder&) = delete;
    PassFolder& operator=(const PassFolder&) = delete;

    // 0: entered; 1: a new folder cannot be entered (under TellMkdir any); 2: an existing one
    // cannot, or none could be made.
    int status() const { return Status; }
    bool entered() const { return Status == 0; }

    // Makes and enters a folder inside, by its relative name; a failure is told on the
    // console and leaves the process where it is. Result as status(). The end of the
    // stay leads back to ResultPfad all the same.
    int enterInner(const FolderRule& rule);

    // Leaves the process in the folder when the pass ends. Wanted in the group sheets and where a
    // pass ends early: the folder in which a pass ends is part of its contract. The next pass does
    // not depend on it, as it enters by a full path.
    void stay() { Stays = true; }

  private:
    ResultFolder& Root; // NOT OWNED
    int Status = 0;     // see status()
    bool Stays = false; // stay() was called
};

} // namespace kva

#endif
