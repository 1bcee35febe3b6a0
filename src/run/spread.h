// Spread: how the work of a pass is spread over threads. A pass cuts its work into units, each of
// which draws from a stream of its own (startUnit), so that the results are the same for any number
// of threads. What a unit gives is taken in the order of the units.
//
// A run without a Spread does everything in order, on the one stream that the clock seeds.
#ifndef KVA_RUN_SPREAD_H
#define KVA_RUN_SPREAD_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

namespace kva {

class Spread {
  public:
    // Takes what a unit gave; units come one after the other, in their order.
    using Take = std::function<void()>;
    // Does a unit, by its number from 0, and gives what is to be taken of it.
    using Work = std::function<Take(std::size_t unit)>;
    // Is told how many units of how many are taken.
    using Progress = std::function<void(std::size_t done, std::size_t all)>;

    // threads: 1 or more. progress: null: nobody is told.
    Spread(uint64_t seed, unsigned threads, Progress progress = nullptr)
        : TheSeed(seed), TheThreads(threads), Told(std::move(progress)) {}

    uint64_t seed() const { return TheSeed; }
    unsigned threads() const { return TheThreads; }

    // Does the units 0 to units - 1, on threads that each take their Work from newWork(). At most
    // `ahead` units, and one for each thread, are done and not yet taken. What a unit throws ends
    // the work and is thrown on. The stream of the calling thread is not touched.
    void inOrder(std::size_t units, std::size_t ahead, const std::function<Work()>& newWork) const;

  private:
    uint64_t TheSeed;
    unsigned TheThreads;
    Progress Told;
};

} // namespace kva

#endif
