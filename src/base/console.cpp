#include "base/console.h"

#include <utility>

namespace kva {

namespace {

thread_local std::ostream* named = nullptr;

} // namespace

std::ostream& console() {
    thread_local std::ostream nobody(nullptr);
    return named != nullptr ? *named : nobody;
}

std::ostream* setConsole(std::ostream* stream) {
    return std::exchange(named, stream);
}

} // namespace kva
