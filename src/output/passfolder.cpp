#include "output/passfolder.h"

#include "output/resultfolder.h"

#include <sys/stat.h>
#include <unistd.h>

namespace kva {

namespace {

constexpr mode_t kFolderMode = 0777;

// Makes and enters `path`. Status as in PassFolder.
int makeAndEnter(const std::string& path, const OrdnerRegel& regel) {
    const bool made = mkdir(path.c_str(), kFolderMode) == 0;
    if (!made && regel.MkdirFehlerMelden) {
        AUSGABE(regel.MeldungVorhanden);
    }
    if (chdir(path.c_str()) == 0) {
        return 0;
    }
    const bool asNew = made || regel.MkdirFehlerMelden;
    AUSGABE(asNew ? regel.MeldungNeu : regel.MeldungVorhanden);
    return asNew ? 1 : 2;
}

} // namespace

PassFolder::PassFolder(ResultFolder& folder, const OrdnerRegel& regel) : Root(folder) {
    // Without a result folder (nothing was loaded) there is no path: it fails like any other that
    // cannot be made, rather than leading to the root folder.
    const std::string& root = Root.ResultPfad;
    Status = makeAndEnter(root.empty() ? std::string() : root + "/" + regel.Name, regel);
    if (Status == 0) {
        Root.AktuellerOrdner = std::string(regel.Name) + "/";
    }
}

PassFolder::~PassFolder() {
    Root.AktuellerOrdner.clear();
    if (Status == 0 && !Bleibt) {
        (void)chdir(Root.ResultPfad.c_str()); // the next pass enters its folder by its full path
    }
}

int PassFolder::enterInner(const OrdnerRegel& regel) {
    const int status = makeAndEnter(regel.Name, regel);
    if (status == 0) {
        Root.AktuellerOrdner += std::string(regel.Name) + "/";
    }
    return status;
}

} // namespace kva
