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
    bool TellMkdir = false; // wanted oddity of "Single_data": any failure of mkdir is
                            // told by NotEntered, and the pass goes on to enter
};

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

class PassFolder {
  public:
    // Makes the folder (mode 0777) and enters it; a failure is told on the console. Result
    // files opened meanwhile are shown with the folder's name in failure lines.
    PassFolder(ResultFolder& folder, const FolderRule& rule);

    // Goes back to ResultPfad, unless stay() was called or nothing was entered.
    ~PassFolder();

    PassFolder(const PassFolder&) = delete;
    PassFolder& operator=(const PassFolder&) = delete;

    // 0: entered; 1: a new folder cannot be entered; 2: an existing one cannot.
    int status() const { return Status; }
    bool entered() const { return Status == 0; }

    // Makes and enters a folder inside, by its relative name; a failure is told on the
    // console and leaves the process where it is. Result as status(). The end of the
    // stay leads back to ResultPfad all the same.
    int enterInner(const FolderRule& rule);

    // Leaves the process in the folder when the pass ends: wanted where a pass ends early.
    void stay() { Stays = true; }

  private:
    ResultFolder& Root; // NOT OWNED
    int Status = 0;
    bool Stays = false; // stay() was called
};

} // namespace kva

#endif
