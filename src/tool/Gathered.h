// What several data files of one call give together: their long tables in one file, their records
// in one.
#ifndef KVA_TOOL_GATHERED_H
#define KVA_TOOL_GATHERED_H

#include "base/newfile.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace kva {

// The file that a user names for what is gathered.
class GatheredFile {
  public:
    // Throws PlaceError if the file cannot be written.
    explicit GatheredFile(const std::string& name);

    std::ostream& out() { return File.out(); }

    // Gives the file its name. Throws PlaceError if that or a write before failed.
    void finish();

  private:
    void throwFailure() const;

    std::string Name;
    NewFile File;
};

// The long tables (kTidyName) of result folders, moved into one file; of several data files with a
// column "data" in front.
class GatheredTable {
  public:
    // file: empty: nothing is gathered.
    GatheredTable(const std::string& file, bool several);

    // Throws PlaceError if the folder's table cannot be read or taken away.
    void add(const std::string& data, const std::filesystem::path& folder);
    void finish();

  private:
    std::optional<GatheredFile> File;
    bool Several;
    bool Begun = false; // the head is written
};

// The records (kRunRecordName) of result folders in one file: that of one data file as it is, those
// of several as a list.
class GatheredRecords {
  public:
    // file: empty: nothing is gathered.
    GatheredRecords(const std::string& file, bool several);

    // Throws PlaceError if the folder's record cannot be read.
    void add(const std::filesystem::path& folder);
    void finish();

  private:
    std::optional<GatheredFile> File;
    bool Several;
    std::vector<std::string> Records; // as texts
};

} // namespace kva

#endif
