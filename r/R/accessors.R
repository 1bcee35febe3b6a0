# What an object of class kva holds, as matrices, distances and data frames.

measures <- function() c("POSA", "FSS", "ADA", "KSC", "DMS", "ASD", "CAS", "DAN", "DSG")

check_kva <- function(x) {
  if (!inherits(x, "kva")) {
    stop("not an object of class kva; kva() and read_kva() make one", call. = FALSE)
  }
}

# The square matrix of the rows of a table, which hold its pairs in this order: 1 and 2, 1 and 3,
# 2 and 3, 1 and 4, and so on. Names are taken by place, as several may read the same.
square <- function(rows, diagonal = 0) {
  n <- (1 + sqrt(1 + 8 * nrow(rows))) / 2
  if (n != round(n)) {
    stop("the pairs are not whole: ", nrow(rows), " of them make no matrix", call. = FALSE)
  }
  last <- seq_len(n)[-1]
  of_first <- (last - 1) * (last - 2) / 2 + 1 # rows of the pairs with population 1
  names <- c(rows$population1[1], rows$population2[of_first])
  values <- matrix(diagonal, n, n, dimnames = list(names, names))
  values[upper.tri(values)] <- rows$value
  values[lower.tri(values)] <- t(values)[lower.tri(values)]
  values
}

rows_of <- function(x, statistic) x$table[x$table$statistic == statistic, ]

# The matrix of a statistic of pairs, or NULL.
square_of <- function(x, statistic, diagonal = 0) {
  rows <- rows_of(x, statistic)
  if (nrow(rows)) square(rows, diagonal)
}

#' F-statistics of pairs of populations
#'
#' @param x An object of class `kva`.
#' @param statistic Which one: Fst, Fit or Fis after Weir and Cockerham (1984).
#' @return A symmetric matrix, `NA` where the value is not defined. Where there were permutations
#'   it has the attribute `p`, the matrix of the p-values, and where the run was one of
#'   `kvatool` (so that there is a `run.json`) also `p_holm` and `p_bh`, adjusted for the number
#'   of pairs after Holm and after Benjamini and Hochberg, and `p_error`, the Monte Carlo standard
#'   error of p. `p` is that of `run.json`, (hits + 1) / (permutations + 1); without it, of Fst
#'   alone, that of the sheet `FST_WC84-pValue.xls`.
#' @examples
#' \dontrun{
#' f <- fst(read_kva("data.txt_KVAresult00"))
#' attr(f, "p")["North", "South"]
#' }
#' @export
fst <- function(x, statistic = c("fst", "fit", "fis")) {
  check_kva(x)
  statistic <- match.arg(statistic)
  values <- square_of(x, paste0(statistic, "_pairwise"))
  if (is.null(values)) {
    stop("there are no F-statistics of pairs in '", x$folder, "'; run kva with fst = \"pairs\"",
         call. = FALSE)
  }
  tests <- tests_of(x, statistic, nrow(values))
  for (name in names(tests)) {
    attr(values, name) <- `dimnames<-`(tests[[name]], dimnames(values))
  }
  values
}

# Matrices of p-values, by name; none if there were no tests.
tests_of <- function(x, statistic, n) {
  tests <- x$record$tests
  if (is.data.frame(tests)) {
    tests <- tests[tests$statistic == paste0(statistic, "_pairwise"), ]
    names <- c("p", "p_error", "p_holm", "p_bh")
    if (n > 1 && nrow(tests) == n * (n - 1) / 2) {
      return(lapply(stats::setNames(names, names), function(name) by_rows(tests[[name]], n)))
    }
  }
  p <- if (statistic == "fst") square_of(x, "fst_pairwise_p", NA)
  if (is.null(p)) list() else list(p = p)
}

# The symmetric matrix of values in the order of run.json: 1 and 2, 1 and 3, ..., 2 and 3.
by_rows <- function(values, n) {
  whole <- matrix(NA_real_, n, n)
  whole[lower.tri(whole)] <- as.numeric(values)
  whole[upper.tri(whole)] <- t(whole)[upper.tri(whole)]
  whole
}

check_measure <- function(measure) {
  if (!is.character(measure) || length(measure) != 1 || !toupper(measure) %in% measures()) {
    stop("the measure is one of ", paste(measures(), collapse = ", "), call. = FALSE)
  }
  toupper(measure)
}

#' Genetic distances
#'
#' @param x An object of class `kva`.
#' @param measure One of `"POSA"`, `"FSS"`, `"ADA"`, `"KSC"`, `"DMS"`, `"ASD"`, `"CAS"`, `"DAN"`
#'   and `"DSG"`, in letters of any case.
#' @param of Between what: populations or individuals.
#' @param replicates Whether the bootstrap replicates are wanted; without it they come where the
#'   folder holds nothing else.
#' @return A `dist`, or the bootstrap replicates as a list of them. `NA` where two
#'   have no locus in common.
#' @examples
#' \dontrun{
#' distances(read_kva("data.txt_KVAresult00"), "DAN")
#' }
#' @export
distances <- function(x, measure, of = c("populations", "individuals"), replicates = NULL) {
  check_kva(x)
  measure <- check_measure(measure)
  of <- match.arg(of)
  statistic <- paste0("distance_", tolower(measure), if (of == "individuals") "_individuals")
  rows <- rows_of(x, statistic)
  second <- if (of == "populations") x$bootstrap[x$bootstrap$statistic == statistic, ]
  found <- replicates_of(rows)
  if (isTRUE(replicates)) {
    found <- if (length(found) > 1) found else replicates_of(second)
  } else if (isFALSE(replicates) && length(found) > 1) {
    found <- list()
  }
  if (!length(found)) {
    stop("there are no ", if (isTRUE(replicates)) "bootstrap replicates of the ", "distances ",
         measure, " of ", of, if (isFALSE(replicates)) " over all loci", " in '", x$folder, "'",
         call. = FALSE)
  }
  if (length(found) == 1 && !isTRUE(replicates)) found[[1]] else unname(found)
}

# The distances of each replicate, in their order.
replicates_of <- function(rows) {
  if (is.null(rows) || !nrow(rows)) {
    return(list())
  }
  which <- factor(rows$replicate, unique(rows$replicate))
  lapply(split(rows, which), function(one) stats::as.dist(square(one)))
}

#' Diversity of populations and loci
#'
#' @param x An object of class `kva`.
#' @param total Whether to give rows for all populations together, too.
#' @return A data frame with a row for each population and locus and the columns
#'   `population`, `locus` and one for each statistic of `Single_data/` and `Summary.xls`, such as
#'   `heterozygosity_expected`, `heterozygosity_observed`, `allelic_richness`, `gene_copies` and
#'   `fis_population`. `NA` where there is no value. Populations and loci are factors in the order of
#'   the data; populations that have one name come as that name with `.1`, `.2` behind it.
#' @examples
#' \dontrun{
#' d <- diversity(read_kva("data.txt_KVAresult00"))
#' aggregate(heterozygosity_expected ~ population, d, mean)
#' }
#' @export
diversity <- function(x, total = FALSE) {
  check_kva(x)
  samples <- make.unique(c("Total", x$populations))
  loci <- make.unique(x$loci)
  cells <- expand.grid(locus = loci, population = samples, KEEP.OUT.ATTRS = FALSE)[, 2:1]
  for (statistic in diversity_statistics()) {
    values <- rows_of(x, statistic)$value
    cells[[statistic]] <- spread_cells(values, statistic, length(samples), length(loci))
  }
  if (!total) {
    cells <- cells[cells$population != samples[1], ]
    cells$population <- factor(cells$population, samples[-1])
  }
  rownames(cells) <- NULL
  cells
}

# Values of a statistic in the order of populations with their loci. Sheets of single statistics
# are in that order and begin with the pool; Summary.xls goes through the loci with their
# populations, without the pool.
spread_cells <- function(values, statistic, samples, loci) {
  if (length(values) == samples * loci) {
    return(values)
  }
  if (length(values) == (samples - 1) * loci) {
    pool <- rep(NA_real_, loci)
    return(c(pool, t(matrix(values, samples - 1, loci))))
  }
  if (length(values)) {
    warning(statistic, " is left out: it is not there for all populations and loci", call. = FALSE)
  }
  rep(NA_real_, samples * loci)
}

diversity_statistics <- function() {
  c("gene_copies", "gene_copies_effective", "heterozygosity_observed", "heterozygosity_expected",
    "heterozygosity_expected_rd", "heterozygosity_nei", "fis_population", "allele_number_observed",
    "allele_number_rd", "allele_number_expected_smm", "allele_number_expected_iam",
    "allelic_richness", "allelic_richness_variance", "shannon", "theta", "theta_rd", "allele_min",
    "allele_max", "allele_mean_rd", "allele_variance", "allele_variance_rd", "repeat_min",
    "repeat_mean", "repeat_max", "repeat_variance", "repeat_variance_rd",
    "repeat_variance_corrected", "repeat_variance_rd_corrected")
}
