# A result folder as an object of class kva.

#' Read a result folder
#'
#' Reads all numbers of a result folder of `kva` or of `kvatool run`, with
#' `kvatool tidy`, and the record of the run, `run.json`, where it is there.
#'
#' Values that cannot be computed (`"n.d."`, `"n.s."` and -32767 in the sheets) are `NA`.
#' What a sheet holds as nan or inf is `NaN` or `Inf`.
#'
#' @param folder The result folder.
#' @param bootstrap A second result folder of the same data with bootstrap replicates of the
#'   distances, if there is one. A run with a bootstrap writes the replicates alone, not the
#'   distances of all loci, so that a tree with its support takes two runs.
#' @return An object of class `kva`, a list with the elements
#' \describe{
#'   \item{folder}{the result folder}
#'   \item{table}{all numbers, a data frame with a number a row and the columns `statistic`,
#'     `population1`, `population2`, `locus`, `replicate` (texts; `""` where there is none)
#'     and `value`}
#'   \item{populations, loci}{their names, in the order of the data}
#'   \item{record}{the content of `run.json` as lists, or `NULL`}
#'   \item{bootstrap}{the rows of distances between populations of the second folder, or `NULL`}
#'   \item{bootstrap_folder}{the second folder, where there is one}
#' }
#' @seealso [fst()], [distances()], [diversity()], [as.phylo.kva()], [pcoa()], [plot.kva()]
#' @examples
#' \dontrun{
#' x <- read_kva("data.txt_KVAresult00")
#' fst(x)
#' }
#' @export
read_kva <- function(folder, bootstrap = NULL) {
  folder <- result_folder(folder)
  table <- read_table(folder)
  value <- list(folder = folder, table = table, populations = names_of(table, "population1"),
                loci = names_of(table, "locus"), record = read_record(folder), bootstrap = NULL)
  if (!is.null(bootstrap)) {
    value$bootstrap <- read_bootstrap(bootstrap, value$populations)
    value$bootstrap_folder <- result_folder(bootstrap)
  }
  structure(value, class = "kva")
}

result_folder <- function(folder) {
  if (!is.character(folder) || length(folder) != 1 || is.na(folder) || !dir.exists(folder)) {
    stop("there is no folder ", paste0("'", folder, "'", collapse = ", "), call. = FALSE)
  }
  folder <- normalizePath(folder)
  if (!file.exists(file.path(folder, "KVA.log"))) {
    stop("'", folder, "' is no result folder: KVA.log is not in it", call. = FALSE)
  }
  folder
}

# The long table of a result folder.
read_table <- function(folder) {
  file <- tempfile("kva", fileext = ".tsv")
  on.exit(unlink(file))
  told <- run_tool(c("tidy", folder, "-o", file))
  if (!file.exists(file)) {
    stop(paste(told$lines, collapse = "\n"), call. = FALSE)
  }
  if (told$status != 0) {
    warning("not all of '", folder, "' could be read:\n", paste(told$lines, collapse = "\n"),
            call. = FALSE)
  }
  parse_table(file)
}

# A long table in a file. Names stay as they are, also one that reads NA.
parse_table <- function(file) {
  heads <- c("statistic", "population1", "population2", "locus", "replicate", "value")
  columns <- scan(file, what = stats::setNames(rep(list(""), 6), heads), sep = "\t",
                  quote = "\"", na.strings = character(), skip = 1, quiet = TRUE)
  text <- columns$value
  columns$value <- suppressWarnings(as.numeric(text)) # "n.d." and the like become NA
  columns$value[columns$value == -32767] <- NA
  as.data.frame(lapply(columns, as_utf8))
}

# Data files come in UTF-8 or in the Latin alphabet of one byte a letter.
as_utf8 <- function(text) {
  if (is.character(text)) {
    good <- validUTF8(text)
    text[!good] <- iconv(text[!good], "latin1", "UTF-8")
    Encoding(text[good]) <- "UTF-8"
  }
  text
}

# Populations or loci, in the order of the data: those of the expected heterozygosity and of Gst, which
# every run writes. Names may be there twice.
names_of <- function(table, column) {
  if (column == "locus") {
    return(table$locus[table$statistic == "gst"])
  }
  rows <- table[table$statistic == "heterozygosity_expected", ]
  loci <- length(names_of(table, "locus"))
  if (loci == 0) {
    return(character())
  }
  rows$population1[seq(1, nrow(rows), by = loci)][-1]
}

read_record <- function(folder) {
  file <- file.path(folder, "run.json")
  if (file.exists(file)) jsonlite::fromJSON(file, simplifyDataFrame = TRUE)
}

read_bootstrap <- function(folder, populations) {
  table <- read_table(result_folder(folder))
  if (!identical(names_of(table, "population1"), populations)) {
    stop("'", folder, "' is not of the same data: its populations are others", call. = FALSE)
  }
  table[table$statistic %in% paste0("distance_", tolower(measures())), ]
}

#' @export
print.kva <- function(x, ...) {
  cat("Results of kva: ", length(x$populations), " populations, ", length(x$loci), " loci\n",
      "  folder: ", x$folder, "\n", sep = "")
  if (!is.null(x$record)) {
    seed <- x$record$random$seed
    cat("  data: ", x$record$data$file, "\n  seed: ",
        if (is.null(seed)) "of the clock" else format(seed, digits = 16), "\n", sep = "")
  }
  have <- unique(x$table$statistic)
  of <- function(ending) measures()[paste0("distance_", tolower(measures()), ending) %in% have]
  fst <- c("pairs", "global", "beta")[
    c("fst_pairwise", "fst_global", "beta_population") %in% have]
  show <- function(what, words) {
    if (length(words)) cat("  ", what, ": ", paste(words, collapse = ", "), "\n", sep = "")
  }
  show("F-statistics", fst)
  show("distances of populations", of(""))
  show("distances of individuals", of("_individuals"))
  replicates <- unique(x$bootstrap$replicate)
  show("bootstrap replicates", if (length(replicates)) length(replicates))
  invisible(x)
}

#' All numbers as a data frame
#'
#' @param x An object of class `kva`.
#' @param row.names,optional Not used.
#' @param statistic Names of statistics; all if it is not given.
#' @param ... Not used.
#' @return A data frame, see [read_kva()].
#' @export
as.data.frame.kva <- function(x, row.names = NULL, optional = FALSE, statistic = NULL, ...) {
  rows <- if (is.null(statistic)) TRUE else x$table$statistic %in% statistic
  table <- x$table[rows, ]
  rownames(table) <- NULL
  table
}
