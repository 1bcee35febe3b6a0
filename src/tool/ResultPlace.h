// ResultPlace: the folder of a run under its final name. The run writes beside it, under a name
// that tells that it is not finished, and the folder takes its name when it is whole.
#ifndef KVA_TOOL_RESULTPLACE_H
#define KVA_TOOL_RESULTPLACE_H

#include <filesystem>
#include <stdexcept>

namespace kva {

// What a user is told of a file or folder that is in the way or cannot be had.
class PlaceError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class ResultPlace {
  public:
    // folder: of the results. Throws PlaceError if it is there, or with `force` if what is there is
    // no result folder, or if the folder around it is not there.
    ResultPlace(const std::filesystem::path& folder, bool force);

    const std::filesystem::path& folder() const { return Folder; }         // absolute
    const std::filesystem::path& unfinished() const { return Unfinished; } // absolute

    // Gives the unfinished folder its name; what is there is replaced, with `force` alone. Throws
    // PlaceError; then the results stay in the unfinished folder.
    void finish() const;

    // Removes the unfinished folder, if there is one.
    void discard() const noexcept;

  private:
    std::filesystem::path Folder;
    std::filesystem::path Unfinished;
    bool Force;
};

} // namespace kva

#endif
