#include "output/nofollow.h"

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <string_view>
#include <unistd.h>

namespace kva {

namespace {

constexpr mode_t kFileMode = 0666;

#ifdef O_PATH
constexpr int kToEnter = O_PATH; // a folder that may be entered need not be readable
#else
constexpr int kToEnter = O_RDONLY;
#endif

// Closes without a change of errno.
void closeQuietly(int descriptor) {
    const int reason = errno;
    (void)close(descriptor);
    errno = reason;
}

// What std::fopen asks the system for in a mode.
int flagsOf(std::string_view mode) {
    const bool alsoReads = mode.find('+') != std::string_view::npos;
    const int access = alsoReads ? O_RDWR : O_WRONLY;
    switch (mode.front()) {
    case 'w':
        return access | O_CREAT | O_TRUNC;
    case 'a':
        return access | O_CREAT | O_APPEND;
    default:
        return alsoReads ? O_RDWR : O_RDONLY;
    }
}

} // namespace

bool enterFolder(const std::string& path) {
    const int folder = open(path.c_str(), kToEnter | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0) {
        return false;
    }
    const bool entered = fchdir(folder) == 0;
    closeQuietly(folder);
    return entered;
}

FolderMark::FolderMark() : Descriptor(open(".", kToEnter | O_DIRECTORY | O_CLOEXEC)) {}

FolderMark::~FolderMark() {
    if (Descriptor >= 0) {
        (void)close(Descriptor);
    }
}

void FolderMark::enter() const {
    const int reason = errno;
    (void)!fchdir(Descriptor);
    errno = reason;
}

std::FILE* openFile(const std::string& name, const char* mode) {
    const int file = open(name.c_str(), flagsOf(mode) | O_NOFOLLOW | O_CLOEXEC, kFileMode);
    if (file < 0) {
        return nullptr;
    }
    std::FILE* const stream = fdopen(file, mode);
    if (stream == nullptr) {
        closeQuietly(file);
        if (errno == ENOMEM) {
            throw std::bad_alloc();
        }
    }
    return stream;
}

} // namespace kva
