# Runs the R code of the package's page: its blocks of R, then the call in front of each row of its table,
# which must give what is told below. Needs the package kva and adegenet, whose nancycats the page takes:
# 17 populations, 9 loci.
# Usage: Rscript r_page.R PAGE

gives <- list(
  kva = function(value) inherits(value, "kva"),
  read_kva = function(value) inherits(value, "kva"),
  fst = function(value) is.matrix(value) && all(dim(value) == 17),
  distances = function(value) inherits(value, "dist") && attr(value, "Size") == 17,
  diversity = function(value) is.data.frame(value) && nrow(value) == 17 * 9,
  as.phylo = function(value) inherits(value, "phylo") && length(value$tip.label) == 17,
  pcoa = function(value) inherits(value, "pcoa") && nrow(value$vectors) == 17,
  as.data.frame = function(value) is.data.frame(value) && "statistic" %in% names(value),
  plot = function(value) inherits(value, "ggplot"),
  kva_report = function(value) any(grepl("<svg", readLines("report.html"), fixed = TRUE)),
  write_kva = function(value) file.size(file) > 237 # individuals, a line each
)

lines <- readLines(commandArgs(TRUE)[1], encoding = "UTF-8")
work <- tempfile("page")
dir.create(work)
setwd(work)

# The blocks leave x and nancycats.
fences <- grep("^```", lines)
opened <- fences[lines[fences] == "```r"]
stopifnot(length(opened) > 0)
for (from in opened) {
  to <- min(fences[fences > from])
  eval(parse(text = lines[(from + 1):(to - 1)]), globalenv())
}

genotypes <- nancycats
folder <- kva(genotypes, output = "results", quiet = TRUE)$folder
file <- "data.txt"
rows <- grep("^\\| `[a-z_.]+\\(", lines, value = TRUE)
code <- sub("^\\| `([^`]*)`.*", "\\1", rows)
called <- sub("\\(.*", "", code)
stopifnot(identical(sort(called), sort(names(gives))))
for (row in seq_along(code)) {
  value <- eval(parse(text = code[row]), globalenv())
  if (!isTRUE(gives[[called[row]]](value))) {
    stop(code[row], " does not give what the page says")
  }
}
cat("r_page.R:", length(opened), "blocks and", length(code), "calls run\n")
