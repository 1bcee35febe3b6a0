// Numbers of files are written and read as in the locale "C", whatever the program around asks for.
#ifndef KVA_BASE_PLAINLOCALE_H
#define KVA_BASE_PLAINLOCALE_H

#include <clocale>

namespace kva {

// The locale of this thread is "C" for as long as it lives; then it is the one before again.
class PlainLocale {
  public:
    PlainLocale(); // throws std::bad_alloc
    ~PlainLocale();
    PlainLocale(const PlainLocale&) = delete;
    PlainLocale& operator=(const PlainLocale&) = delete;

  private:
    locale_t Plain; // OWNED
    locale_t Before = nullptr;
};

// The same for the threads that a thread starts: they take its locale over.
inline locale_t localeOfThread() {
    return uselocale(nullptr);
}
inline void takeLocale(locale_t locale) {
    uselocale(locale);
}

} // namespace kva

#endif
