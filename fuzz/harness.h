// What the harnesses share. A harness is a function that takes bytes: libFuzzer calls it with bytes
// that it makes up, replay.cpp with those that are kept in corpus/.
#ifndef KVA_FUZZ_HARNESS_H
#define KVA_FUZZ_HARNESS_H

#include "base/console.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <streambuf>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

namespace kva_fuzz {

// What goes to std::cout, as the console does, is dropped while the object lives.
class Quiet {
  public:
    Quiet() : Before(std::cout.rdbuf(&Nothing)), Console(&std::cout) {}
    ~Quiet() { std::cout.rdbuf(Before); }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

  private:
    struct Drop : std::streambuf {
        int overflow(int c) override { return c == EOF ? 0 : c; }
    };
    Drop Nothing;
    std::streambuf* Before;
    kva::ConsoleTo Console;
};

// The bytes as a file to read; null for none.
using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
inline Stream streamOf(const uint8_t* data, std::size_t size) {
    std::FILE* const file = size == 0 ? nullptr : fmemopen(const_cast<uint8_t*>(data), size, "rb");
    return {file, &std::fclose};
}

// Ends the program, as a find, if `holds` is false.
inline void require(bool holds, const char* what) {
    if (!holds) {
        std::cerr << "does not hold: " << what << std::endl;
        std::abort();
    }
}

} // namespace kva_fuzz

#endif
