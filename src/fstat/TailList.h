// TailList: the k smallest and the k largest of a stream of values, for the limits of
// a test statistic. Both lists start full of fillers, of which only the number is kept:
// they take no room.
#ifndef KVA_FSTAT_TAILLIST_H
#define KVA_FSTAT_TAILLIST_H

#include <cstddef>
#include <vector>

namespace kva {

class TailList {
  public:
    static constexpr double kStartLower = 100000.0;  // filler of the smallest values
    static constexpr double kStartUpper = -100000.0; // filler of the largest values

    // k: length of both lists in values, at least 2.
    explicit TailList(std::size_t k) : K(k) {}

    // Takes a value: among the smallest if it is below the last of them, among the largest
    // if it is above the first of them. What is not a number is neither.
    void add(double v);

    // The limits: the (k-1)-th smallest and the (k-1)-th largest value; the filler while
    // there are fewer values.
    double lower() const;
    double upper() const;

  private:
    std::size_t K;              // length of both lists, with fillers
    std::vector<double> Untere; // smallest values, ascending; fillers stand behind
    std::vector<double> Obere;  // largest values, ascending; fillers stand in front
};

} // namespace kva

#endif
