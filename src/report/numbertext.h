// Texts of numbers that the report works out itself, and coordinates of its pictures.
#ifndef KVA_REPORT_NUMBERTEXT_H
#define KVA_REPORT_NUMBERTEXT_H

#include <string>

namespace kva {

// With so many digits behind the point; "" for NaN.
std::string fixedText(double value, int digits);

// With so many significant digits at most, no zeros behind them; "" for NaN.
std::string shortText(double value, int digits);

} // namespace kva

#endif
