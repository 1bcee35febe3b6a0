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

// Gives the written file its name. Result: the system's error number, 0 if all went well.
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
    if (std::ferror(stream.get()) != 0) {
        return std::strerror(errno);
    }
    return static_cast<off_t>(bytes.size()) < state.st_size ? std::strerror(EIO) : "";
}

// --- NewFile -----------------------------------------------------------------------------

int NewFile::Descriptor::sync() {
    const char* from = pbase();
    while (Error == 0 && from < pptr()) {
        const ssize_t written = write(Number, from, static_cast<std::size_t>(pptr() - from));
        if (written >= 0) {
            from += written;
        } else if (errno != EINTR) {
            Error = errno;
        }
    }
    setp(Bytes.data(), Bytes.data() + Bytes.size());
    return Error == 0 ? 0 : -1;
}

NewFile::Descriptor::int_type NewFile::Descriptor::overflow(int_type c) {
    if (sync() != 0) {
        return traits_type::eof();
    }
    return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                           : sputc(traits_type::to_char_type(c));
}

NewFile::NewFile(std::string name, bool replace) : Name(std::move(name)), Replace(replace) {
    open();
    if (!File.isOpen()) {
        Out.setstate(std::ios::badbit);
    }
}

NewFile::~NewFile() {
    close();
    if (!Written.empty()) {
        (void)unlink(Written.c_str());
    }
}

void NewFile::open() {
    struct stat state {};
    const bool isThere = stat(Name.c_str(), &state) == 0;
    if (isThere && S_ISDIR(state.st_mode)) {
        Failure = "it is a folder";
    } else if (isThere && !S_ISREG(state.st_mode)) {
        File.Number = ::open(Name.c_str(), O_WRONLY | O_CLOEXEC);
    } else if (!Replace && lstat(Name.c_str(), &state) == 0) {
        Failure = kExists;
    } else {
        std::string written = Name + ".XXXXXX";
        File.Number = mkostemp(written.data(), O_CLOEXEC);
        if (File.isOpen()) {
            Written = std::move(written);
            const mode_t mask = umask(0);
            umask(mask);
            constexpr mode_t kReadWrite = 0666;
            (void)fchmod(File.Number, kReadWrite & ~mask); // else it is its owner's alone
        }
    }
    if (Failure.empty() && !File.isOpen()) {
        Failure = std::strerror(errno);
    }
}

void NewFile::close() {
    if (File.isOpen() && ::close(File.Number) != 0 && File.Error == 0) {
        File.Error = errno;
    }
    File.Number = -1;
}

const std::string& NewFile::finish() {
    if (!File.isOpen()) {
        return Failure;
    }
    Out.flush();
    if (File.Error == 0 && fsync(File.Number) != 0 && errno != EINVAL && errno != EROFS) {
        File.Error = errno;
    }
    close();
    if (File.Error == 0 && !Written.empty()) {
        File.Error = giveName(Written, Name, Replace);
    }
    if (File.Error == 0) {
        Written.clear();
    } else {
        Failure = File.Error == EEXIST ? kExists : std::strerror(File.Error);
    }
    return Failure;
}

std::string writeWholeFile(const std::string& file, std::string_view bytes, bool replace) {
    NewFile written(file, replace);
    written.out() << bytes;
    return written.finish();
}

} // namespace kva
