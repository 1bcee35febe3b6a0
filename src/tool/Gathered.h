// What several data files of one call give together: their long tables in one file, their records
// in one.
#ifndef KVA_TOOL_GATHERED_H
#define KVA_TOOL_GATHERED_H

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace kva {

// A file that is written beside its name and renamed when it is whole; else nothing is left of it.
class WholeFile {
  public:
    // Throws PlaceError if the file cannot be written.
    explicit WholeFile(const std::string& name);
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    std::ostream& out() { return Out; }

    // Gives the file its name. Throws PlaceError if that or a write before failed.
    void finish();

  private:
    std::string Name;
    std::string Unfinished;
    std::ofstream Out;
};

// The long tables (kTidyName) of result folders, moved into one file; of several data files with a
// column "data" in front.
class GatheredTable {
  public:
    // file: empty: nothing is gathered.
    GatheredTable(const std::string& file, bool several);

    void add(const std::string& data, const std::filesystem::path& folder);
    void finish();

  private:
    std::optional<WholeFile> File;
    bool Several;
    bool Begun = false; // the head is written
};

// The records (kRunRecordName) of result folders in one file: that of one data file as it is, those
// of several as a list.
class GatheredRecords {
  public:
    // file: empty: nothing is gathered.
    GatheredRecords(const std::string& file, bool several);

    void add(const std::filesystem::path& folder);
    void finish();

  private:
    std::optional<WholeFile> File;
    bool Several;
    std::vector<std::string> Records; // as texts
};

} // namespace kva

#endif
