#include "tool/ResultPlace.h"

#include <string>
#include <system_error>
#include <unistd.h>

namespace kva {

namespace {

namespace fs = std::filesystem;

std::string quoted(const fs::path& path) {
    return "'" + path.string() + "'";
}

// Whether a folder may be replaced: one of results, or an empty one.
bool isReplaceable(const fs::path& folder) {
    std::error_code error;
    return fs::is_directory(fs::symlink_status(folder, error)) &&
           (fs::is_regular_file(folder / "KVA.log", error) || fs::is_empty(folder, error));
}

void giveName(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error) {
        throw PlaceError("cannot rename " + quoted(from) + " to " + quoted(to) + ": " +
                         error.message());
    }
}

} // namespace

ResultPlace::ResultPlace(const fs::path& folder, bool force)
    : Folder(fs::absolute(folder).lexically_normal()), Force(force) {
    if (!Folder.has_filename()) { // "results/"
        Folder = Folder.parent_path();
    }
    std::error_code error;
    const bool isThere = fs::exists(fs::symlink_status(Folder, error));
    if (isThere && !force) {
        throw PlaceError(quoted(Folder) +
                         " is there already; name another folder, or replace it with --force");
    }
    if (isThere && !isReplaceable(Folder)) {
        throw PlaceError(quoted(Folder) +
                         " is no result folder and is not replaced; name another one");
    }
    if (!fs::is_directory(Folder.parent_path(), error)) {
        throw PlaceError("there is no folder " + quoted(Folder.parent_path()) +
                         " to put the results in");
    }
    Unfinished = Folder.string() + ".unfinished-" + std::to_string(getpid());
}

void ResultPlace::finish() const {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(Folder, error))) {
        giveName(Unfinished, Folder);
        return;
    }
    if (!Force || !isReplaceable(Folder)) {
        throw PlaceError(quoted(Folder) + " has come into being meanwhile; the results are in " +
                         quoted(Unfinished));
    }
    const fs::path old = Folder.string() + ".replaced-" + std::to_string(getpid());
    giveName(Folder, old);
    giveName(Unfinished, Folder);
    fs::remove_all(old, error);
    if (error) {
        throw PlaceError("cannot remove " + quoted(old) + ": " + error.message());
    }
}

void ResultPlace::discard() const noexcept {
    std::error_code error;
    fs::remove_all(Unfinished, error);
}

} // namespace kva
