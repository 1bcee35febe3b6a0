// One long table of the numbers of a result folder: a row for each number, and the text form of the
// table, which R's read.delim and Python's csv (delimiter tab) read back:
//
//      statistic	population1	population2	locus	replicate	value
//      heterozygosity_expected	North		LocA		0.500000
//      fst_pairwise	North	South			0.15561
#ifndef KVA_RESULTS_TIDY_H
#define KVA_RESULTS_TIDY_H

#include <functional>
#include <ostream>
#include <string>
#include <string_view>

namespace kva {

// What a number belongs to; empty where it is of no population, pair, locus or replicate.
struct TidyPlace {
    std::string_view population1 = {}; // population, individual or group; "Total": the pool
    std::string_view population2 = {}; // the other one of a pair
    std::string_view locus = {};       // first name of the locus
    std::string_view replicate = {};   // number of the replicate, name of the limit, or allele
};

// A number with what it is and what it belongs to. NOT OWNED: the texts hold while a sink has the
// row.
struct TidyRow {
    std::string_view statistic; // one of catalogueStatistics()
    TidyPlace place;
    std::string_view
        value; // the number as its sheet prints it, "NaN", "Inf" or "-Inf"; empty: none
};

// The number of a row's value; NaN of an empty one.
double numberOf(std::string_view value);

// Takes the rows one by one.
using RowSink = std::function<void(const TidyRow&)>;

// Appends a text as the table has it: in quotes, those inside doubled, unless it is empty or of
// letters, digits, "_", "-", "+" and "." alone.
void appendTidyText(std::string& line, std::string_view text);

// Writes rows into a stream, the head of the table in front. The rows are there when the writer is
// gone or flush() was called; whether the stream took them is for its owner to ask.
class TidyWriter {
  public:
    explicit TidyWriter(std::ostream& out); // NOT OWNED
    ~TidyWriter() { flush(); }
    TidyWriter(const TidyWriter&) = delete;
    TidyWriter& operator=(const TidyWriter&) = delete;

    void write(const TidyRow& row);
    void flush();

  private:
    std::ostream& Out;
    std::string Waiting; // rows that are not in the stream yet
};

} // namespace kva

#endif
