// Folders and files that are what their names say: a symbolic link in their place is refused, so
// that nothing is written outside the result folder, whoever has put it there.
#ifndef KVA_OUTPUT_NOFOLLOW_H
#define KVA_OUTPUT_NOFOLLOW_H

#include <cstdio>
#include <string>

namespace kva {

// Makes the folder the current one of the process. False, with errno set, if it cannot be entered
// or is a symbolic link (ENOTDIR or ELOOP); only the last part of the path is looked at.
bool enterFolder(const std::string& path);

// The folder in which the process is at the construction, for the way back.
class FolderMark {
  public:
    FolderMark();
    ~FolderMark();
    FolderMark(const FolderMark&) = delete;
    FolderMark& operator=(const FolderMark&) = delete;

    // Makes that folder the current one again, if it could be marked. Leaves errno as it is.
    void enter() const;

  private:
    int Descriptor; // OWNED; -1: not marked
};

// Opens a file as std::fopen does, `mode` as in ResultFile; the caller closes it. Null, with errno
// set, if that fails or the name is a symbolic link (ELOOP). Throws std::bad_alloc without memory.
std::FILE* openFile(const std::string& name, const char* mode);

} // namespace kva

#endif
