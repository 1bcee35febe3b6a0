#include "base/settings.h"
#include "support/datasets.h"
#include "support/support.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kva/kva.h>
#include <string>

using namespace kva::api;

using kva_test::tabbed;
using kva_test::TempFolder;
using testing::HasSubstr;

namespace {

const std::string kData = tabbed(kva_test::kTwoPops);

Error errorOf(const Outcome<DataSet>& loaded) {
    return loaded ? Error{ErrorKind::Internal, "it is loaded"} : loaded.error();
}

// A file of some bytes of which one read fails.
class FailingFile {
  public:
    // failing: which of its reads, from 1; 0: none does.
    FailingFile(std::string bytes, int failing) : Bytes(std::move(bytes)), Failing(failing) {
        Opened = this;
    }
    ~FailingFile() { Opened = nullptr; }
    FailingFile(const FailingFile&) = delete;
    FailingFile& operator=(const FailingFile&) = delete;
    FailingFile(FailingFile&&) = delete;
    FailingFile& operator=(FailingFile&&) = delete;

    // A stream of it without a buffer, so that each reading reads anew.
    std::FILE* stream() {
        std::FILE* const file =
            fopencookie(this, "rb", {.read = &read, .write = nullptr, .seek = &seek, .close = {}});
        std::setvbuf(file, nullptr, _IONBF, 0);
        return file;
    }
    int reads() const { return Reads; } // so far

    // The one that lives; nothing: there is none.
    static FailingFile* opened() { return Opened; }

  private:
    static ssize_t read(void* cookie, char* buffer, std::size_t size) {
        auto& file = *static_cast<FailingFile*>(cookie);
        if (++file.Reads == file.Failing) {
            errno = EIO;
            return -1;
        }
        const std::size_t got = file.Bytes.copy(buffer, size, file.At);
        file.At += got;
        return static_cast<ssize_t>(got);
    }
    static int seek(void* cookie, off64_t* offset, int whence) {
        auto& file = *static_cast<FailingFile*>(cookie);
        const off64_t from = whence == SEEK_SET   ? 0
                             : whence == SEEK_CUR ? static_cast<off64_t>(file.At)
                                                  : static_cast<off64_t>(file.Bytes.size());
        *offset += from;
        file.At = std::min(static_cast<std::size_t>(*offset), file.Bytes.size());
        return 0;
    }

    static inline FailingFile* Opened = nullptr;
    std::string Bytes;
    int Failing;
    int Reads = 0;
    std::size_t At = 0;
};

} // namespace

// Stands in for the C library's function in the program of these tests: while a FailingFile lives
// each file is that one.
// The names of the parameters are reserved where the system declares it.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" std::FILE* fopen(const char* name, const char* modes) {
    using Open = std::FILE* (*)(const char*, const char*);
    static const auto open = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "fopen"));
    FailingFile* const file = FailingFile::opened();
    return file != nullptr ? file->stream() : open(name, modes);
}

TEST(DataSet, HoldsPopulationsAndLoci) {
    const auto data = loadText(kData);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->name(), "data.txt");
    ASSERT_EQ(data->populations().size(), 2U);
    EXPECT_EQ(data->populations()[1].name, "B");
    EXPECT_EQ(data->populations()[1].individuals, 2);
    EXPECT_EQ(data->populations()[1].inbred, 0);
    ASSERT_EQ(data->loci().size(), 2U);
    EXPECT_EQ(data->loci()[0].name, "L1");
    EXPECT_EQ(data->loci()[1].repeat, 4);
    EXPECT_EQ(data->loci()[0].alleles, 3); // 100, 102, 104
    EXPECT_EQ(data->loci()[0].copies, 8);
    EXPECT_EQ(data->loci()[0].missing, 0);
}

TEST(DataSet, OfAFileIsThatOfItsBytes) {
    const TempFolder folder;
    const std::string file = folder / "cats.txt";
    kva_test::writeFile(file, kData);
    const auto data = loadFile(file);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->name(), file);
    EXPECT_EQ(data->populations().size(), 2U);
}

TEST(DataSet, TellsWhatTheCheckFinds) {
    // The rows of A stand in two blocks.
    const auto data = loadText(tabbed("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                                      "A d 0 100 102\nB d 0 100 100\nA d 0 102 102\n"));
    ASSERT_TRUE(data);
    bool found = false;
    for (const Finding& finding : data->findings()) {
        if (finding.name == "split-population") {
            found = true;
            EXPECT_EQ(finding.severity, Severity::Error);
            EXPECT_EQ(finding.row, 6);
            EXPECT_EQ(finding.column, 1);
            EXPECT_EQ(finding.count, 1);
        }
    }
    EXPECT_TRUE(found);
}

TEST(DataSet, BytesMayHoldANulByte) {
    // Reading ends there, as in a file: the second row of B is lost.
    std::string bytes = kData;
    bytes[bytes.rfind("B\td")] = '\0';
    const auto data = loadText(bytes);
    ASSERT_TRUE(data);
    ASSERT_EQ(data->populations().size(), 2U);
    EXPECT_EQ(data->populations()[1].individuals, 1);
}

TEST(DataSet, OfNothingIsAnError) {
    const Error error = errorOf(loadText(""));
    EXPECT_EQ(error.kind, ErrorKind::Data);
    EXPECT_EQ(error.text, "data.txt cannot be used: it is empty");
}

TEST(DataSet, RefusedBytesTellRowAndReason) {
    const Error error = errorOf(loadText("North\t1\t2\n", "cats"));
    EXPECT_EQ(error.kind, ErrorKind::Data);
    EXPECT_EQ(error.text,
              "cats cannot be used: cats, row 1: found \"N\" as first byte, expected \"1\" or "
              "\"2\", the number of columns per locus");
}

TEST(DataSet, HeaderRowsAloneAreAnError) {
    EXPECT_EQ(errorOf(loadText(kData.substr(0, kData.find("A\t")))).kind, ErrorKind::Data);
}

TEST(DataSet, OfAFileThatIsNotThereIsAnError) {
    const Error error = errorOf(loadFile("/nowhere/data.txt"));
    EXPECT_EQ(error.kind, ErrorKind::File);
    EXPECT_EQ(error.text, "cannot read '/nowhere/data.txt': No such file or directory");
}

TEST(DataSet, OfAFolderIsAnError) {
    const TempFolder folder;
    const Error error = errorOf(loadFile(folder.path()));
    EXPECT_EQ(error.kind, ErrorKind::File);
    EXPECT_THAT(error.text, HasSubstr("it is no file on a disk"));
}

// The check reads the file first, and then loading does: a read that fails in either is told.
TEST(DataSet, OfAFileWithAReadThatFailsIsAnError) {
    const TempFolder folder;
    const std::string file = folder / "cats.txt";
    kva_test::writeFile(file, kData);
    int reads = 0;
    {
        const FailingFile sound(kData, 0);
        ASSERT_TRUE(loadFile(file));
        reads = sound.reads();
    }
    ASSERT_GE(reads, 2);
    for (int failing = 1; failing <= reads; ++failing) {
        const FailingFile bad(kData, failing);
        const Error error = errorOf(loadFile(file));
        EXPECT_EQ(error.kind, ErrorKind::File) << failing << " of " << reads;
        EXPECT_EQ(error.text, "cannot read '" + file + "': " + std::strerror(EIO));
    }
}

TEST(Version, IsThatOfTheProgram) {
    EXPECT_EQ(version(), kva::kVersion);
}
