#include "support/support.h"

#include "base/console.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <unistd.h>

namespace kva_test {

namespace fs = std::filesystem;

namespace {

std::string makeFolder() {
    std::string name = (fs::canonical(fs::temp_directory_path()) / "kva_test_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder: " + name);
    }
    return name;
}

// A file of no name that goes when its descriptor is closed.
int openUnnamedFile() {
    std::string name = (fs::temp_directory_path() / "kva_stdout_XXXXXX").string();
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0) {
        throw std::runtime_error("no temporary file: " + name);
    }
    unlink(name.c_str());
    return descriptor;
}

// Both ways to standard output keep a buffer of their own.
void flushConsole() {
    std::cout.flush();
    std::fflush(stdout);
}

} // namespace

std::string withoutNanSign(std::string text) {
    for (std::size_t at = text.find("-nan"); at != std::string::npos; at = text.find("-nan", at)) {
        text.erase(at, 1);
    }
    return text;
}

std::string readFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeFile(const fs::path& file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

TempFolder::TempFolder(Enter enter) : folder(makeFolder()) {
    if (enter == Enter::yes) {
        before = fs::current_path();
        fs::current_path(folder);
    }
}

TempFolder::~TempFolder() {
    std::error_code ignored; // a destructor has nobody to tell
    if (!before.empty()) {
        fs::current_path(before, ignored);
    }
    fs::remove_all(folder, ignored);
}

StdoutCapture::StdoutCapture() : console(dup(STDOUT_FILENO)), taken(openUnnamedFile()) {
    flushConsole();
    if (console < 0 || dup2(taken, STDOUT_FILENO) < 0) {
        throw std::runtime_error("standard output cannot be taken");
    }
    before = kva::setConsole(&std::cout);
}

StdoutCapture::~StdoutCapture() {
    end();
    close(taken);
}

std::string StdoutCapture::text() {
    end();
    return held;
}

void StdoutCapture::end() {
    if (console < 0) {
        return;
    }
    flushConsole();
    kva::setConsole(before);
    dup2(console, STDOUT_FILENO);
    close(console);
    console = -1;

    char block[4096];
    lseek(taken, 0, SEEK_SET);
    for (ssize_t n = read(taken, block, sizeof block); n > 0;
         n = read(taken, block, sizeof block)) {
        held.append(block, static_cast<std::size_t>(n));
    }
}

} // namespace kva_test
