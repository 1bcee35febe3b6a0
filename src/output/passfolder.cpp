#include "output/passfolder.h"

#include "output/nofollow.h"
#include "output/resultfolder.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace kva {

namespace {

constexpr mode_t kFolderMode = 0777;

// Makes and enters `path`. Status as in PassFolder.
int makeAndEnter(ResultFolder& root, const std::string& path, const FolderRule& rule) {
    const bool made = mkdir(path.c_str(), kFolderMode) == 0;
    const int notMade = made || errno == EEXIST ? 0 : errno;
    if (!made && rule.TellMkdir) {
        AUSGABE(rule.NotEntered);
    }
    if (enterFolder(path)) {
        return 0;
    }
    const int reason = notMade != 0 ? notMade : errno;
    const bool asNew = made || rule.TellMkdir;
    AUSGABE(asNew ? rule.NewNotEntered : rule.NotEntered);
    if (!path.empty()) {
        root.LogFailure("Cannot enter folder " + root.CurrentFolder + rule.Name + ": " +
                        std::strerror(reason));
    }
    return asNew ? 1 : 2;
}

} // namespace

PassFolder::PassFolder(ResultFolder& folder, const FolderRule& rule) : Root(folder) {
    if (Root.InMemory()) {
        Root.CurrentFolder = std::string(rule.Name) + "/";
        return;
    }
    // The result folder first, then the one inside by its bare name: each step refuses a link.
    // Without a result folder (nothing was loaded) there is no path: it fails like any other that
    // cannot be made.
    const FolderMark before;
    const bool atRoot = !Root.ResultPfad.empty() && Root.EnterQuietly();
    Status = makeAndEnter(Root, atRoot ? rule.Name : "", rule);
    if (Status == 0) {
        Root.CurrentFolder = std::string(rule.Name) + "/";
    } else {
        before.enter();
    }
}

PassFolder::~PassFolder() {
    Root.CurrentFolder.clear();
    if (Status == 0 && !Stays) {
        Root.EnterQuietly(); // the next pass begins with the same step, and tells
    }
}

int PassFolder::enterInner(const FolderRule& rule) {
    const int status = Root.InMemory() ? 0 : makeAndEnter(Root, rule.Name, rule);
    if (status == 0) {
        Root.CurrentFolder += std::string(rule.Name) + "/";
    }
    return status;
}

} // namespace kva
