// The console: where the passes tell what they do. Nobody is told unless a front end names a
// stream, so that a program built on the library prints nothing of its own.
#ifndef KVA_BASE_CONSOLE_H
#define KVA_BASE_CONSOLE_H

#include <ostream>

namespace kva {

// The console of this thread; a stream that drops everything where none is named.
std::ostream& console();

// Names the console of this thread, NOT OWNED; null: none. The one before.
std::ostream* setConsole(std::ostream* stream);

// Names the console for as long as it lives; then it is the one before again.
class ConsoleTo {
  public:
    explicit ConsoleTo(std::ostream* stream) : Before(setConsole(stream)) {}
    ~ConsoleTo() { setConsole(Before); }
    ConsoleTo(const ConsoleTo&) = delete;
    ConsoleTo& operator=(const ConsoleTo&) = delete;

  private:
    std::ostream* Before;
};

} // namespace kva

#endif
