#include "base/plainlocale.h"

#include <new>

namespace kva {

PlainLocale::PlainLocale() : Plain(newlocale(LC_ALL_MASK, "C", nullptr)) {
    if (Plain == nullptr) {
        throw std::bad_alloc();
    }
    Before = uselocale(Plain);
}

PlainLocale::~PlainLocale() {
    uselocale(Before);
    freelocale(Plain);
}

} // namespace kva
