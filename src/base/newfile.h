// Files that are read or written whole.
#ifndef KVA_BASE_NEWFILE_H
#define KVA_BASE_NEWFILE_H

#include <array>
#include <cstdint>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace kva {

// The bytes of a file of at most `most` bytes into `bytes`. A folder, a pipe or a device is none.
// Result: why it cannot be read, fit to stand behind its name; empty if it is read.
std::string readWholeFile(const std::string& file, std::string& bytes, int64_t most);

// A file that is written beside its name, which it gets when all of it is on the disk: the name
// never stands for a part, and nothing is left of a file that is not finished. A device or a pipe,
// which has no beside, is written to as it is.
class NewFile {
  public:
    // `replace`: whether a file of that name may go.
    NewFile(std::string name, bool replace);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    // Where to write to; bad after a failure.
    std::ostream& out() { return Out; }

    // Why nothing is or will be written, fit to stand behind the name; empty: nothing failed so
    // far.
    const std::string& failure() const { return Failure; }

    // Gives the file its name. Result: failure().
    const std::string& finish();

  private:
    // A buffer before a file descriptor that keeps the system's error number.
    class Descriptor : public std::streambuf {
      public:
        Descriptor() { setp(Bytes.data(), Bytes.data() + Bytes.size()); }
        bool isOpen() const { return Number >= 0; }

        int Number = -1;
        int Error = 0;

      protected:
        int_type overflow(int_type c) override;
        int sync() override;

      private:
        std::array<char, std::size_t{1} << 14U> Bytes;
    };

    void open();
    void close();

    std::string Name;
    bool Replace;
    std::string Written; // what it is called until it is finished; empty: Name
    std::string Failure;
    Descriptor File;
    std::ostream Out{&File};
};

// Writes the bytes into a NewFile. Result: its failure().
std::string writeWholeFile(const std::string& file, std::string_view bytes, bool replace);

} // namespace kva

#endif
