#include "tool/Progress.h"

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <unistd.h>
#include <utility>

namespace kva {

namespace {

constexpr std::size_t kBarWidth = 20; // characters
constexpr auto kBarEvery = std::chrono::milliseconds(100);

} // namespace

Telling tellingOfTerminal() {
    return isatty(STDERR_FILENO) == 1 ? Telling::Bar : Telling::Lines;
}

std::string barText(const std::string& pass, double share, std::chrono::seconds left) {
    const auto filled = static_cast<std::size_t>(share * kBarWidth);
    char numbers[64];
    (void)std::snprintf(numbers, sizeof numbers, ", %d %%, %lld:%02lld left",
                        static_cast<int>(share * 100), static_cast<long long>(left.count() / 60),
                        static_cast<long long>(left.count() % 60));
    return "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " + pass +
           numbers;
}

Progress::Progress(std::string data, Telling telling, std::ostream& out)
    : Data(std::move(data)), How(telling), Out(out) {}

void Progress::begin(const std::string& pass) {
    end();
    Pass = pass;
    Begun = Drawn = Clock::now();
    if (How == Telling::Bar) {
        drawBar(Data + ": " + pass);
    }
}

void Progress::share(std::size_t done, std::size_t all) {
    const Clock::time_point now = Clock::now();
    if (How != Telling::Bar || now - Drawn < kBarEvery || all == 0) {
        return;
    }
    Drawn = now;
    const double share = static_cast<double>(done) / static_cast<double>(all);
    const auto left = (now - Begun) * (1.0 / share - 1.0);
    drawBar(Data + ": " +
            barText(Pass, share, std::chrono::duration_cast<std::chrono::seconds>(left)));
}

void Progress::end() {
    if (Pass.empty()) {
        return;
    }
    const std::chrono::duration<double> took = Clock::now() - Begun;
    Passes.push_back({std::exchange(Pass, {}), took.count()});
    if (How == Telling::Lines) {
        char seconds[32];
        (void)std::snprintf(seconds, sizeof seconds, ", %.1f s\n", took.count());
        Out << Data << ": " << Passes.back().Pass << seconds << std::flush;
    } else if (How == Telling::Bar) {
        drawBar("");
    }
}

// What stood there is written over.
void Progress::drawBar(const std::string& bar) {
    Out << '\r' << bar << std::string(Width - std::min(Width, bar.size()), ' ');
    if (bar.empty()) {
        Out << '\r';
    }
    Out << std::flush;
    Width = bar.size();
}

} // namespace kva
