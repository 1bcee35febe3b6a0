#include "base/newfile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace kva {

namespace {

constexpr const char* kExists = "it is there already; --force replaces it";

// Writes and closes. Result: the system's error number, 0 if all went well.
int writeAndClose(int descriptor, std::string_view bytes) {
    int failure = 0;
    while (failure == 0 && !bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            failure = errno;
        }
    }
    if (failure == 0 && fsync(descriptor) != 0 && errno != EINVAL) {
        failure = errno;
    }
    if (close(descriptor) != 0 && failure == 0) {
        failure = errno;
    }
    return failure;
}

// Gives the written file its name. Result as above.
int giveName(const std::string& written, const std::string& name, bool replace) {
    if (replace) {
        return std::rename(written.c_str(), name.c_str()) == 0 ? 0 : errno;
    }
    if (renameat2(AT_FDCWD, written.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
    // A file system that knows no such renaming.
    struct stat state {};
    if (lstat(name.c_str(), &state) == 0) {
        return EEXIST;
    }
    return std::rename(written.c_str(), name.c_str()) == 0 ? 0 : errno;
}

} // namespace

std::string readWholeFile(const std::string& file, std::string& bytes, int64_t most) {
    struct stat state {};
    if (stat(file.c_str(), &state) != 0) {
        return std::strerror(errno);
    }
    if (!S_ISREG(state.st_mode)) {
        return S_ISDIR(state.st_mode) ? "it is a folder" : "it is no file on a disk";
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "rb"),
                                                                 &std::fclose);
    if (!stream) {
        return std::strerror(errno);
    }
    bytes.clear();
    std::string piece(std::size_t{1} << 16, '\0');
    std::size_t got = 0;
    while ((got = std::fread(piece.data(), 1, piece.size(), stream.get())) > 0) {
        bytes.append(piece, 0, got);
        if (static_cast<int64_t>(bytes.size()) > most) {
            return "it is larger than " + std::to_string(most) + " bytes";
        }
    }
    return std::ferror(stream.get()) != 0 ? std::strerror(errno) : "";
}

std::string writeWholeFile(const std::string& file, std::string_view bytes, bool replace) {
    struct stat state {};
    if (lstat(file.c_str(), &state) == 0 && (!replace || S_ISDIR(state.st_mode))) {
        return S_ISDIR(state.st_mode) ? "it is a folder" : kExists;
    }
    if (lstat(file.c_str(), &state) == 0 && !S_ISREG(state.st_mode) && !S_ISLNK(state.st_mode)) {
        return "it is no file on a disk";
    }
    std::string written = file + ".XXXXXX";
    const int descriptor = mkstemp(written.data());
    if (descriptor < 0) {
        return std::strerror(errno);
    }
    const mode_t mask = umask(0);
    umask(mask);
    constexpr mode_t kReadWrite = 0666;
    (void)fchmod(descriptor, kReadWrite & ~mask); // mkstemp gives it to its owner alone
    int failure = writeAndClose(descriptor, bytes);
    if (failure == 0) {
        failure = giveName(written, file, replace);
    }
    if (failure == 0) {
        return {};
    }
    (void)unlink(written.c_str());
    return failure == EEXIST ? kExists : std::strerror(failure);
}

} // namespace kva
