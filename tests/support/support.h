// Helpers of all test suites: folders and files to work in, and the console as text.
#ifndef KVA_TESTS_SUPPORT_SUPPORT_H
#define KVA_TESTS_SUPPORT_SUPPORT_H

#include <filesystem>
#include <string>
#include <string_view>
#include <sys/resource.h>

namespace kva_test {

// The bytes of a file. Throws std::runtime_error if it cannot be read.
std::string readFile(const std::filesystem::path& file);

// Writes the bytes, also NUL bytes, as they are; an earlier file is replaced.
// Throws std::runtime_error if it cannot be written.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

// `text` with each "-nan" as "nan": the sign of what is not a number is the processor's.
std::string withoutNanSign(std::string text);

// A fresh empty folder that goes with all its content at the end of the scope.
class TempFolder {
  public:
    // Whether the process works in the folder while the object lives; the working folder of
    // before comes back at the end of the scope.
    enum class Enter { no, yes };

    explicit TempFolder(Enter enter = Enter::no);
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    TempFolder(TempFolder&&) = delete;
    TempFolder& operator=(TempFolder&&) = delete;

    // Absolute, without symbolic links, so it equals what getcwd tells inside.
    const std::filesystem::path& path() const { return folder; }
    // The path of a name inside the folder.
    std::filesystem::path operator/(const std::filesystem::path& name) const {
        return folder / name;
    }

  private:
    std::filesystem::path folder;
    std::filesystem::path before; // working folder to come back to; empty: not entered
};

// Files of the process end at `bytes` while the object lives.
class SizeLimit {
  public:
    explicit SizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SizeLimit() { setrlimit(RLIMIT_FSIZE, &before); }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;

  private:
    rlimit before{};
};

// Takes all that goes to standard output (file descriptor 1, so std::cout and stdio alike) from
// its construction to text() or the end of the scope. The console goes there meanwhile.
class StdoutCapture {
  public:
    StdoutCapture();
    ~StdoutCapture();
    StdoutCapture(const StdoutCapture&) = delete;
    StdoutCapture& operator=(const StdoutCapture&) = delete;
    StdoutCapture(StdoutCapture&&) = delete;
    StdoutCapture& operator=(StdoutCapture&&) = delete;

    // Ends the capture and gives what came; the same text again when called again.
    std::string text();

  private:
    void end();

    int console = -1; // OWNED descriptor of the true standard output; -1 when given back
    std::ostream* before = nullptr; // console of before; NOT OWNED
    int taken = -1;                 // OWNED descriptor of the unnamed file that takes the text
    std::string held;
};

} // namespace kva_test

#endif
