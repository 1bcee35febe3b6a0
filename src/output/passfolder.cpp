#include "output/passfolder.h"

#include "output/resultfolder.h"

#include <sys/stat.h>
#include <unistd.h>

namespace kva {

namespace {

constexpr mode_t kFolderMode = 0777;

// Makes and enters `path`. Status as in PassFolder.
int makeAndEnter(const std::string& path, const FolderRule& rule) {
    const bool made = mkdir(path.c_str(), kFolderMode) == 0;
    if (!made && rule.TellMkdir) {
        AUSGABE(rule.NotEntered);
    }
    if (chdir(path.c_str()) == 0) {
        return 0;
    }
    const bool asNew = made || rule.TellMkdir;
    AUSGABE(asNew ? rule.NewNotEntered : rule.NotEntered);
    return asNew ? 1 : 2;
}

} // namespace

PassFolder::PassFolder(ResultFolder& folder, const FolderRule& rule) : Root(folder) {
    // Without a result folder (nothing was loaded) there is no path: it fails like any other that
    // cannot be made, rather than leading to the root folder.
    const std::string& root = Root.ResultPfad;
    Status = makeAndEnter(root.empty() ? std::string() : root + "/" + rule.Name, rule);
    if (Status == 0) {
        Root.CurrentFolder = std::string(rule.Name) + "/";
    }
}

PassFolder::~PassFolder() {
    Root.CurrentFolder.clear();
    if (Status == 0 && !Stays) {
        (void)chdir(Root.ResultPfad.c_str()); // the next pass enters its folder by its full path
    }
}

int PassFolder::enterInner(const FolderRule& rule) {
    const int status = makeAndEnter(rule.Name, rule);
    if (status == 0) {
        Root.CurrentFolder += std::string(rule.Name) + "/";
    }
    return status;
}

} // namespace kva
