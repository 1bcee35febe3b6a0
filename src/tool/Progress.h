// Progress: what a run tells while it runs, on standard error: on a terminal a bar with the pass,
// the share of it that is done and the time left; else a line a pass.
#ifndef KVA_TOOL_PROGRESS_H
#define KVA_TOOL_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace kva {

// How much is told.
enum class Telling { Nothing, Lines, Bar };

// Bar if standard error is a terminal, else Lines.
Telling tellingOfTerminal();

// The bar of a pass, without a line end: "[######..............] name, 30 %, 1:05 left".
std::string barText(const std::string& pass, double share, std::chrono::seconds left);

class Progress {
  public:
    using Clock = std::chrono::steady_clock;

    // A pass that is done, and how long it took.
    struct Done {
        std::string Pass;
        double Seconds;
    };

    // data: what is run, in front of each line. out: NOT OWNED.
    Progress(std::string data, Telling telling, std::ostream& out);

    // A pass begins, and the one before is done.
    void begin(const std::string& pass);

    // So many units of the pass are done, of so many. Told at most ten times a second.
    void share(std::size_t done, std::size_t all);

    // The last pass is done.
    void end();

    const std::vector<Done>& passes() const { return Passes; } // that are done

  private:
    void drawBar(const std::string& bar);

    std::string Data;
    Telling How;
    std::ostream& Out; // NOT OWNED
    std::string Pass;  // running; empty: none
    Clock::time_point Begun;
    Clock::time_point Drawn;
    std::size_t Width = 0; // of the bar that stands there
    std::vector<Done> Passes;
};

} // namespace kva

#endif
