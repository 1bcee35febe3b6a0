# The report of kvatool: a result folder as one page.

#' Report of a result folder
#'
#' Writes one page of HTML with what was run, the data at a glance, diversity, allele frequencies,
#' F-statistics with their tests, a tree, principal coordinates, the range of heterozygosity, and a
#' paragraph of methods with its references. Pictures can be saved as SVG and tables as TSV from it. The page
#' needs no other file and no network. `kvatool report` makes it.
#'
#' @param x An object of class `kva`, or the name of a result folder.
#' @param file The page to write; one that is there is replaced.
#' @param bootstrap A second result folder of the same data with bootstrap replicates of the
#'   distances, for the support of the tree; not given: that of `x`, if it has one.
#' @param measure The distance of the tree and the principal coordinates, such as `"DAN"`; not given:
#'   the first one of the folder.
#' @return The whole name of the page, invisibly.
#' @examples
#' if (kva_tool(must = FALSE) != "") {
#'   data <- system.file("extdata", "testdata.dat", package = "kva")
#'   x <- kva(data, output = tempfile(), permutations = 0, distances = "CAS", quiet = TRUE)
#'   page <- kva_report(x, tempfile(fileext = ".html"), measure = "CAS")
#' }
#' \dontrun{
#' browseURL(kva_report(x, "report.html"))
#' }
#' @export
kva_report <- function(x, file = "report.html", bootstrap = NULL, measure = NULL) {
  if (inherits(x, "kva")) {
    folder <- x$folder
    if (is.null(bootstrap)) bootstrap <- x$bootstrap_folder
  } else {
    folder <- result_folder(x)
  }
  file <- whole_path(file)
  words <- c("report", folder, "-o", file,
             if (!is.null(bootstrap)) c("--bootstrap", result_folder(bootstrap)),
             if (!is.null(measure)) c("--measure", check_measure(measure)))
  told <- run_tool(words)
  if (told$status != 0) {
    stop("kvatool report failed:\n", paste(told$lines, collapse = "\n"), call. = FALSE)
  }
  invisible(file)
}
