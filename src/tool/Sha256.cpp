#include "tool/Sha256.h"

#include <array>
#include <cstdio>
#include <memory>
#include <openssl/evp.h>
#include <vector>

namespace kva {

namespace {

struct ContextCloser {
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

struct InputCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

std::string hexadecimal(const unsigned char* bytes, unsigned count) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string digits;
    for (unsigned k = 0; k < count; ++k) {
        digits += kDigits[bytes[k] >> 4U];
        digits += kDigits[bytes[k] & 15U];
    }
    return digits;
}

} // namespace

std::string sha256OfFile(const std::string& file) {
    const std::unique_ptr<std::FILE, InputCloser> input(std::fopen(file.c_str(), "rb"));
    const std::unique_ptr<EVP_MD_CTX, ContextCloser> context(EVP_MD_CTX_new());
    if (!input || !context || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1) {
        return {};
    }
    std::vector<unsigned char> block(std::size_t{1} << 16U);
    std::size_t bytes = 0;
    off_t read = 0;
    while ((bytes = std::fread(block.data(), 1, block.size(), input.get())) > 0) {
        EVP_DigestUpdate(context.get(), block.data(), bytes);
        read += static_cast<off_t>(bytes);
    }
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest;
    unsigned length = 0;
    if (std::ferror(input.get()) != 0 || fseeko(input.get(), 0, SEEK_END) != 0 ||
        ftello(input.get()) != read || // it ended too early
        EVP_DigestFinal_ex(context.get(), digest.data(), &length) != 1) {
        return {};
    }
    return hexadecimal(digest.data(), length);
}

} // namespace kva
