# Result folders of small data, made by the program. Tests that need it are skipped where it is
# not found.

skip_without_tool <- function() {
  skip_if(kva_tool(must = FALSE) == "", "kvatool was not found")
}

# A data file of three populations with three individuals each and two loci; East has no allele at B.
small_data <- function(folder = tempfile("small")) {
  dir.create(folder)
  file <- file.path(folder, "small.txt")
  writeLines(c("2\t\t\t2\t\t2\t",
               "\t\t\t100\t\t80\t",
               "\t\t\tA\tA_2\tB\tB_2",
               "North\td\t1\t104\t106\t88\t92",
               "North\td\t1\t104\t104\t88\t88",
               "North\td\t1\t106\t106\t88\t92",
               "South\td\t2\t106\t108\t92\t92",
               "South\td\t2\t108\t110\t92\t94",
               "South\td\t2\t108\t108\t94\t94",
               "East\td\t2\t104\t110\t\t",
               "East\td\t2\t104\t104\t\t",
               "East\td\t2\t110\t104\t\t"), file)
  file
}

# The result folder of kvatool run on a data file, without the package's own kva().
run_folder <- function(data, ..., name = "results") {
  folder <- file.path(dirname(data), name)
  told <- suppressWarnings(system2(kva_tool(), shQuote(c("run", data, "-o", folder, "-q", ...)),
                                   stdout = TRUE, stderr = TRUE))
  if (!is.null(attr(told, "status"))) {
    stop(paste(told, collapse = "\n"))
  }
  folder
}

# A matrix sheet: a line with the number of samples, a line for each with its name, that has no
# blanks here, and its numbers.
sheet_matrix <- function(file) {
  lines <- readLines(file)
  n <- as.integer(lines[1])
  words <- strsplit(trimws(lines[1 + seq_len(n)]), " +")
  stopifnot(lengths(words) == n + 1)
  names <- vapply(words, `[`, "", 1)
  values <- unlist(lapply(words, function(line) as.numeric(line[-1])))
  matrix(values, n, n, byrow = TRUE, dimnames = list(names, names))
}

# A sheet with a head of loci and a row for each population, in two-column data.
sheet_cells <- function(file) {
  cells <- strsplit(readLines(file), "\t", fixed = TRUE)
  rows <- cells[-(1:2)]
  rows <- rows[lengths(rows) > 1]
  values <- suppressWarnings(t(vapply(rows, function(row) as.numeric(row[-1]), 0 * seq_along(
    rows[[1]][-1]))))
  rownames(values) <- vapply(rows, `[`, "", 1)
  values
}

# What is made once for all tests: a run on adegenet's nancycats, 17 populations, 9 loci, with
# missing genotypes.
made <- new.env()

cats_run <- function() {
  skip_without_tool()
  skip_if_not_installed("adegenet")
  if (is.null(made$cats)) {
    made$cats <- kva(cats(), distances = c("CAS", "DAN"), bootstrap = 20, permutations = 50,
                     het_range = 30, seed = 5, write = list(repeats = 2), quiet = TRUE)
  }
  made$cats
}

cats <- function() {
  found <- new.env()
  utils::data("nancycats", package = "adegenet", envir = found)
  found$nancycats
}
