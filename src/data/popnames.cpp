#include "data/popnames.h"

namespace kva {

PopNames PopNames::share() {
    if (!List) {
        List = std::make_shared<std::deque<std::string>>();
    }
    PopNames other;
    other.List = List;
    return other;
}

void PopNames::add(const std::string& name) {
    if (!List) {
        List = std::make_shared<std::deque<std::string>>();
    }
    const auto shared = List; // `name` may stand in it
    if (Count < List->size() && (*List)[Count] != name) {
        const auto begin = List->begin();
        List = std::make_shared<std::deque<std::string>>(
            begin, begin + static_cast<std::ptrdiff_t>(Count));
    }
    if (Count == List->size()) {
        List->push_back(name);
    }
    ++Count;
}

std::size_t PopNames::find(const std::string& name) const {
    std::size_t place = 0;
    while (place < Count && (*List)[place] != name) {
        ++place;
    }
    return place;
}

bool PopNames::operator==(const PopNames& other) const {
    if (Count != other.Count) {
        return false;
    }
    for (std::size_t place = 0; place < Count; ++place) {
        if ((*List)[place] != (*other.List)[place]) {
            return false;
        }
    }
    return true;
}

} // namespace kva
