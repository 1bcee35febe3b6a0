// The names of a locus's populations. All loci of a data set have the same ones, so they share a
// list, and each name is stored once.
#ifndef KVA_DATA_POPNAMES_H
#define KVA_DATA_POPNAMES_H

#include <cstddef>
#include <deque>
#include <memory>
#include <string>

namespace kva {

// The first Count names of a list that only ever grows. What others add behind them does not
// show; who adds a name that differs from what stands there goes on with a list of its own.
class PopNames {
  public:
    // No names yet, on the same list: the names added to it are looked for there first.
    PopNames share();

    void add(const std::string& name);

    std::size_t size() const { return Count; }

    // The name at a place from 0, which is below size(). It stays where it is until this object
    // goes or adds a name.
    const std::string& operator[](std::size_t place) const { return (*List)[place]; }

    // The place of the first such name, from 0; size() if there is none.
    std::size_t find(const std::string& name) const;

    bool operator==(const PopNames& other) const;

  private:
    std::shared_ptr<std::deque<std::string>> List; // null: nothing was added yet
    std::size_t Count = 0;                         // names of List that count
};

} // namespace kva

#endif
