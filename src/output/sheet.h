// The idioms of the result sheets: heads, labels, cells with a value or "n.d.".
// Every cell of these sheets ends with its tab; the writeTab... forms begin with it.
// The writers write into `f`, an open file, and drop what they write into a closed one.
#ifndef KVA_OUTPUT_SHEET_H
#define KVA_OUTPUT_SHEET_H

#include <cstddef>
#include <string>

namespace kva {

class Datensatz;
class ResultFile;

// "%f\t", or "n.d.\t" for a negative value. What is not a number is written as it is.
void writeRealOrNd(ResultFile& f, double value);

// "%d\t", or "n.d.\t" for a value below `minimum`.
void writeCountOrNd(ResultFile& f, int value, int minimum);

// "%f\t" and "%d\t", whatever the value, also a sentinel.
void writeReal(ResultFile& f, double value);
void writeCount(ResultFile& f, int value);

// "n.d.\t", `cells` times; nothing for 0 or less.
void writeNd(ResultFile& f, int cells = 1);

// "\t%f", whatever the value, and "\tn.d.".
void writeTabReal(ResultFile& f, double value);
void writeTabNd(ResultFile& f);

// "%s\t".
void writeLabel(ResultFile& f, const std::string& label);

// The head of a sheet with one column per locus: the line of first names and, for a
// `dataFormat` (columns per locus) of 2, the line of second names.
void writeLociHead(ResultFile& f, const Datensatz& daten, int dataFormat);

// The label of sample p: "Total" for 0, else the name of population p, from 1; empty for a
// population that does not exist.
std::string sampleLabel(const Datensatz& daten, int p);

// printf's "%w.ws" of a name: filled up on the left with blanks, or cut on the right, to `width`
// bytes.
std::string padOrCut(const std::string& name, std::size_t width);

constexpr std::size_t kPopulationLabel = 10; // bytes of the label of a population

// The label of a population's row in a matrix: padOrCut to kPopulationLabel.
std::string populationLabel(const std::string& name);

} // namespace kva

#endif
