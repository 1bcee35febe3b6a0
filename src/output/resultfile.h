// A file of the result folder: opened by its bare name, written through one
// buffer, closed and checked. No write ever goes through a null stream: writes to
// a file that did not open, or that failed once, are dropped.
//
// From the first opening on the process ignores SIGXFSZ, so that a file beyond the
// size limit is a failed write and not the end of the run.
#ifndef KVA_OUTPUT_RESULTFILE_H
#define KVA_OUTPUT_RESULTFILE_H

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kva {

// Is told of a result file that cannot be opened, written or closed: the name as
// it is to be shown, and the system's reason.
using FileFailureHandler = std::function<void(const std::string& name, const std::string& reason)>;

class ResultFile {
  public:
    // A closed file: all writes are dropped.
    ResultFile() = default;

    // Opens `name` (a bare name in the current folder) in `mode`, one of "wb",
    // "wb+", "ab+", "rb+", "ab". In mode "rb+" the position is the end of the file.
    // `shownName` is the path inside the result folder. A failure, now or later, is told to
    // `onFailure` (null: to nobody), at most once for a file; the handler may write to this very
    // file.
    ResultFile(const std::string& name, const char* mode, std::string shownName,
               FileFailureHandler onFailure);

    // Appends to `text` instead, which is NOT OWNED and outlives the file; it is whole when the
    // file is flushed or closed. Nothing can fail.
    static ResultFile toText(std::string& text);

    // `other` is closed then, with nothing lost. An assignment closes this file first.
    ResultFile(ResultFile&& other) noexcept;
    ResultFile& operator=(ResultFile&& other) noexcept;
    ResultFile(const ResultFile&) = delete;
    ResultFile& operator=(const ResultFile&) = delete;
    ~ResultFile(); // closes

    // True from a successful opening until close(), also after a failed write.
    bool isOpen() const { return Buffer != nullptr; }

    // Formatted write, as printf does it, of any length. For cells of plain numbers the direct
    // writers below are faster and give the same bytes.
    void print(const char* format, ...) __attribute__((format(printf, 2, 3)));

    void text(std::string_view words) { // the bytes as they are
        if (words.size() <= kBufferSize) {
            piece(words);
        } else {
            longText(words);
        }
    }
    void character(char c) { // one byte
        if (char* const place = room(1)) {
            *place = c;
            ++Used;
        }
    }
    void integer(long long value);                          // "%lld"
    void fixed(double value);                               // "%f"
    void fixed(double value, int precision, int width = 0); // "%*.*f"

    // Has the caller write: put(out) writes at most so many bytes (up to half the buffer) from out
    // on and returns the place behind them. It is not called for a closed file.
    template <class Put> void write(std::size_t atMost, Put put) {
        if (char* const place = room(atMost)) {
            Used += static_cast<std::size_t>(put(place) - place);
        }
    }

    // "\t%f": the cell of most sheets, in one go.
    void tabFixed(double value);

    // Hands everything written so far to the system; a failure is told.
    void flush();

    // Writes the rest and closes; a failure is told. False if anything failed since the opening, or
    // the opening itself. A closed file stays closed.
    bool close();

  private:
    static constexpr std::size_t kBufferSize = std::size_t{1} << 16U; // bytes

    // Tells of a failure, if it is the first, in the system's words for the error number.
    void fail(int errorNumber);

    // The place behind what is written, with room for so many bytes (at most kBufferSize), flushed
    // if need be; null if the file is closed.
    char* room(std::size_t bytes) {
        if (!Buffer) {
            return nullptr;
        }
        if (kBufferSize - Used < bytes) {
            flush();
        }
        return Buffer.get() + Used;
    }

    // At most kBufferSize bytes, and any number.
    void piece(std::string_view words) {
        if (char* const place = room(words.size())) {
            Used += words.copy(place, words.size());
        }
    }
    void longText(std::string_view words);

    // Hands words to the system, or to the text.
    void pass(std::string_view words);

    // Closes a stream that was not closed by close(), without a look at the result.
    struct Closer {
        void operator()(std::FILE* stream) const { std::fclose(stream); }
    };
    std::unique_ptr<std::FILE, Closer> Stream; // unbuffered; null while closed, and for a text
    std::string* Text = nullptr;               // NOT OWNED; written to instead of a file
    std::unique_ptr<char[]> Buffer;            // kBufferSize bytes while open
    std::size_t Used = 0;                      // bytes in Buffer, not yet handed to the system
    std::string ShownName;                     // path inside the result folder
    FileFailureHandler OnFailure;              // null: nobody is told
    bool Failed = false;                       // something failed; further writes are dropped
};

} // namespace kva

#endif
