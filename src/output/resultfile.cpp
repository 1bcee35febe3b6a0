#include "output/resultfile.h"

#include "output/nofollow.h"
#include "output/numberformat.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdarg>
#include <cstring>
#include <utility>

namespace kva {

namespace {

constexpr std::size_t kIntegerSize = 24; // digits and sign of any long long
constexpr std::size_t kShortPrint = 256; // most formatted writes fit
constexpr int kDecimals = 6;             // of "%f"

// A write beyond the size limit of the process raises a signal that ends it. Ignored, the write
// fails like one to a full disk, and is told like it.
void surviveSizeLimit() {
    static const bool ignored = std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR;
    (void)ignored; // where it cannot be ignored, the limit acts as it always does
}

} // namespace

ResultFile::ResultFile(const std::string& name, const char* mode, std::string shownName,
                       FileFailureHandler onFailure)
    : ShownName(std::move(shownName)), OnFailure(std::move(onFailure)) {
    surviveSizeLimit();
    Stream.reset(openFile(name, mode));
    if (!Stream) {
        fail(errno);
        return;
    }
    // The file's own buffer is the only one, so that a failed write shows at once.
    (void)std::setvbuf(Stream.get(), nullptr, _IONBF, 0);
    if (std::strncmp(mode, "rb+", 3) == 0 && std::fseek(Stream.get(), 0, SEEK_END) != 0) {
        fail(errno);
    }
    Buffer = std::make_unique_for_overwrite<char[]>(kBufferSize);
}

ResultFile ResultFile::toText(std::string& text) {
    ResultFile file;
    file.Text = &text;
    file.Buffer = std::make_unique_for_overwrite<char[]>(kBufferSize);
    return file;
}

ResultFile::ResultFile(ResultFile&& other) noexcept
    : Stream(std::move(other.Stream)), Text(std::exchange(other.Text, nullptr)),
      Buffer(std::move(other.Buffer)), Used(std::exchange(other.Used, 0)),
      ShownName(std::move(other.ShownName)), OnFailure(std::move(other.OnFailure)),
      Failed(other.Failed) {}

ResultFile& ResultFile::operator=(ResultFile&& other) noexcept {
    if (this != &other) {
        close();
        Stream = std::move(other.Stream);
        Text = std::exchange(other.Text, nullptr);
        Buffer = std::move(other.Buffer);
        Used = std::exchange(other.Used, 0);
        ShownName = std::move(other.ShownName);
        OnFailure = std::move(other.OnFailure);
        Failed = other.Failed;
    }
    return *this;
}

ResultFile::~ResultFile() {
    close();
}

void ResultFile::print(const char* format, ...) {
    if (!Buffer) {
        return;
    }
    char words[kShortPrint];
    va_list arguments;
    va_list again;
    va_start(arguments, format);
    va_copy(again, arguments);
    const auto length = static_cast<std::size_t>(
        std::max(std::vsnprintf(words, kShortPrint, format, arguments), 0));
    va_end(arguments);
    if (length < kShortPrint) {
        text(std::string_view(words, length));
    } else {
        std::string longWords(length + 1, '\0');
        (void)std::vsnprintf(longWords.data(), longWords.size(), format, again);
        text(std::string_view(longWords.data(), length));
    }
    va_end(again);
}

void ResultFile::longText(std::string_view words) {
    flush();
    pass(words);
}

void ResultFile::integer(long long value) {
    if (char* const place = room(kIntegerSize)) {
        Used +=
            static_cast<std::size_t>(std::to_chars(place, place + kIntegerSize, value).ptr - place);
    }
}

void ResultFile::fixed(double value) {
    if (char* const place = room(kFixedBufferSize)) {
        Used += formatDecimals<kDecimals>(place, value);
    }
}

void ResultFile::fixed(double value, int precision, int width) {
    if (char* const place = room(kFixedBufferSize)) {
        Used += formatFixed(place, value, precision, width);
    }
}

void ResultFile::tabFixed(double value) {
    if (char* const place = room(kFixedBufferSize + 1)) {
        *place = '\t';
        Used += 1 + formatDecimals<kDecimals>(place + 1, value);
    }
}

void ResultFile::flush() {
    // Taken away first: the handler of a failure may write to this very file.
    pass({Buffer.get(), std::exchange(Used, 0)});
}

void ResultFile::pass(std::string_view words) {
    if (Text != nullptr) {
        Text->append(words);
    } else if (Stream && !Failed && !words.empty()) {
        errno = 0;
        if (std::fwrite(words.data(), 1, words.size(), Stream.get()) != words.size()) {
            fail(errno);
        }
    }
}

bool ResultFile::close() {
    if (!Buffer) {
        return !Failed;
    }
    flush();
    std::FILE* const stream = Stream.release();
    Buffer.reset();
    Text = nullptr;
    if (stream != nullptr && std::fclose(stream) != 0) {
        fail(errno);
    }
    return !Failed;
}

void ResultFile::fail(int errorNumber) {
    const bool first =
        !std::exchange(Failed, true); // before the handler: it may write to this file
    if (first && OnFailure) {
        OnFailure(ShownName, std::strerror(errorNumber));
    }
}

} // namespace kva
