// No exception leaves the library: one becomes an Error.
#ifndef KVA_API_GUARDED_H
#define KVA_API_GUARDED_H

#include <exception>
#include <kva/kva.h>
#include <new>

namespace kva {

// What work() gives, an Outcome.
template <class Work> auto guarded(Work&& work) -> decltype(work()) {
    using api::Error;
    using api::ErrorKind;
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return Error{ErrorKind::Memory, "no memory"}; // so short that it takes none
    } catch (const std::exception& failure) {
        return Error{ErrorKind::Internal, failure.what()};
    } catch (...) {
        return Error{ErrorKind::Internal, "unknown"};
    }
}

} // namespace kva

#endif
