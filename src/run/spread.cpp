#include "run/spread.h"

#include "base/plainlocale.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace kva {

namespace {

// The units of one call, handed out to the threads and taken back in order.
class Units {
  public:
    Units(std::size_t units, std::size_t ahead, const Spread::Progress& told)
        : Count(units), Ahead(ahead), Told(told) {}

    // Does units until there is none left.
    void work(const std::function<Spread::Work()>& newWork) {
        try {
            const Spread::Work doUnit = newWork();
            std::size_t unit = 0;
            while (next(unit)) {
                leave(unit, doUnit(unit));
            }
        } catch (...) {
            stop(std::current_exception());
        }
    }

    // Throws what a unit threw.
    void finish() const {
        if (Failure) {
            std::rethrow_exception(Failure);
        }
    }

  private:
    bool next(std::size_t& unit) {
        std::unique_lock lock(Mutex);
        Room.wait(lock, [this] { return Failure || Next == Count || Next <= Taken + Ahead; });
        if (Failure || Next == Count) {
            return false;
        }
        unit = Next++;
        return true;
    }

    // Leaves what a unit gave to be taken, and takes what its turn is, unless another thread does.
    void leave(std::size_t unit, Spread::Take result) {
        std::unique_lock lock(Mutex);
        Done.emplace(unit, std::move(result));
        if (std::exchange(Taking, true)) {
            return;
        }
        for (auto first = Done.begin(); first != Done.end() && first->first == Taken && !Failure;
             first = Done.begin()) {
            const Spread::Take take = Done.extract(first).mapped();
            lock.unlock();
            if (take) {
                take();
            }
            lock.lock();
            ++Taken;
            if (Told) {
                Told(Taken, Count);
            }
            Room.notify_all();
        }
        Taking = false;
    }

    void stop(std::exception_ptr failure) {
        const std::lock_guard lock(Mutex);
        if (!Failure) {
            Failure = std::move(failure);
        }
        Room.notify_all();
    }

    std::size_t Count;
    std::size_t Ahead;
    const Spread::Progress& Told;
    std::mutex Mutex;                         // of all below
    std::condition_variable Room;             // a unit was taken, or one failed
    std::size_t Next = 0;                     // unit that nobody does yet
    std::size_t Taken = 0;                    // units
    bool Taking = false;                      // a thread is at it
    std::map<std::size_t, Spread::Take> Done; // units that are not taken yet
    std::exception_ptr Failure;               // the first
};

} // namespace

void Spread::inOrder(std::size_t units, std::size_t ahead,
                     const std::function<Work()>& newWork) const {
    Units running(units, std::max<std::size_t>(ahead, TheThreads), Told);
    const locale_t locale = localeOfThread(); // numbers look the same in all threads
    {
        std::vector<std::jthread> threads;
        for (unsigned t = 0; t < std::max(TheThreads, 1U); ++t) {
            threads.emplace_back([&] {
                takeLocale(locale);
                running.work(newWork);
            });
        }
    }
    running.finish();
}

} // namespace kva
