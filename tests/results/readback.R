# Reads a long table and prints it again, for readers_test.py: a line for each row, the bytes of its
# five names in hexadecimal and its value with all digits. "NA" stands for what R takes for missing.
# Usage: readback.R FILE plain|told
#        plain: read.delim as it is; told: with the arguments that docs/results-table.md names
arguments <- commandArgs(trailingOnly = TRUE)
table <- if (arguments[2] == "plain") {
  read.delim(arguments[1])
} else {
  read.delim(arguments[1], colClasses = c(rep("character", 5), "numeric"), na.strings = "")
}
stopifnot(identical(names(table), c("statistic", "population1", "population2", "locus",
                                    "replicate", "value")))
hex <- function(text) {
  if (is.na(text)) "NA" else paste(as.character(charToRaw(as.character(text))), collapse = "")
}
for (i in seq_len(nrow(table))) {
  cat(vapply(table[i, 1:5], hex, ""), sprintf("%.17g", table$value[i]), sep = "\t")
  cat("\n")
}
