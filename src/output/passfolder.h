// PassFolder: the stay of a pass in its folder under the result folder.
//
// Every pass starts from ResultPfad, not from the current folder. A folder that
// exists already is no failure: some serve several passes.
#ifndef KVA_OUTPUT_PASSFOLDER_H
#define KVA_OUTPUT_PASSFOLDER_H

class ResultFolder;

// A pass's folder and the two messages of the catalogue for it.
struct OrdnerRegel {
    const char* Name;               // folder under the result folder
    int MeldungVorhanden;           // an existing folder cannot be entered (or none made)
    int MeldungNeu;                 // the folder just made cannot be entered
    bool MkdirFehlerMelden = false; // wanted oddity of "Single_data": any failure of mkdir is
                                    // told by MeldungVorhanden, and the pass goes on to enter
};

namespace Ordner {
constexpr OrdnerRegel Allelecount{"Allelecount", 9, 8};
constexpr OrdnerRegel SingleData{"Single_data", 22, 19, true};
constexpr OrdnerRegel GroupData{"Group_data", 41, 42};
constexpr OrdnerRegel FormatsData{"Formats&Data", 63, 64};
constexpr OrdnerRegel IMFormat{"IM_Format", 63, 64}; // inside FormatsData
constexpr OrdnerRegel DistanceData{"Distance_data", 46, 47};
// The two messages speak of "Distance_data": the pass has none of its own.
constexpr OrdnerRegel FStatistic{"F-Statistic", 46, 47};
constexpr OrdnerRegel ResamplingData{"Resampling_data", 81, 82};
} // namespace Ordner

class PassFolder {
  public:
    // Makes the folder (mode 0777) and enters it; a failure is told on the console. Result
    // files opened meanwhile are shown with the folder's name in failure lines.
    PassFolder(ResultFolder& folder, const OrdnerRegel& regel);

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
    int enterInner(const OrdnerRegel& regel);

    // Leaves the process in the folder when the pass ends: wanted where a pass ends early.
    void stay() { Bleibt = true; }

  private:
    ResultFolder& Root; // NOT OWNED
    int Status = 0;
    bool Bleibt = false; // stay() was called
};

#endif
