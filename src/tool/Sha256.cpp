#include "tool/Sha256.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <nettle/sha2.h>
#include <span>
#include <vector>

namespace kva {

namespace {

struct InputCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

std::string hexadecimal(std::span<const uint8_t> bytes) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string digits;
    for (const uint8_t byte : bytes) {
        digits += kDigits[byte >> 4U];
        digits += kDigits[byte & 15U];
    }
    return digits;
}

} // namespace

std::string sha256OfFile(const std::string& file) {
    const std::unique_ptr<std::FILE, InputCloser> input(std::fopen(file.c_str(), "rb"));
    if (!input) {
        return {};
    }
    sha256_ctx context;
    sha256_init(&context);
    std::vector<uint8_t> block(std::size_t{1} << 16U);
    std::size_t bytes = 0;
    off_t read = 0;
    while ((bytes = std::fread(block.data(), 1, block.size(), input.get())) > 0) {
        sha256_update(&context, bytes, block.data());
        read += static_cast<off_t>(bytes);
    }
    if (std::ferror(input.get()) != 0 || fseeko(input.get(), 0, SEEK_END) != 0 ||
        ftello(input.get()) != read) { // it ended too early
        return {};
    }
    std::array<uint8_t, SHA256_DIGEST_SIZE> digest;
    sha256_digest(&context, digest.size(), digest.data());
    return hexadecimal(digest);
}

} // namespace kva
