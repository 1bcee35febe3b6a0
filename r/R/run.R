# kvatool run from R.

#' Run kva
#'
#' Runs `kvatool run` on genotypes and reads its results. Progress comes as messages.
#'
#' @param x A `genind` object (package adegenet), a data frame (see [write_kva()]) or the name of a data
#'   file.
#' @param output Folder for the results, which must not be there yet. Not given: for a data file
#'   `FILE_kvatool` beside it, otherwise a folder that goes away with the R session.
#' @param fst F-statistics: any of `"pairs"`, `"global"` and `"beta"`; `NULL`: none.
#' @param distances Genetic distances: measures such as `c("CAS", "DAN")`, between populations;
#'   or words of `kvatool run`: `"all"`, `"population"`, `"individual:DAN"`; `NULL`: none.
#' @param permutations Permutations of the tests of F-statistics; 0: no tests.
#' @param bootstrap Replicates of the distances between populations over loci. Above 1 a second run
#'   makes them, in the folder `OUTPUT_bootstrap`.
#' @param het_range Draws of the range of heterozygosity; 0: none.
#' @param seed Seed of the random numbers, a whole number from 0 to 2^53 - 1. Not given: drawn by the
#'   program, independent of R's own. It stands in `record$random$seed` of the result.
#' @param threads Threads; the results are the same for any number.
#' @param ... Other options of `kvatool run`, with `_` for `-` and `TRUE` for options without
#'   a value, such as `minus_log = TRUE`, `rarefy = 10`, `formats = "all"`, `force = TRUE`.
#' @param write Arguments of [write_kva()] for a `genind` object or a data frame, such as
#'   `list(repeats = 2, groups = groups)`.
#' @param quiet Whether to leave out the messages of progress.
#' @return An object of class `kva`, see [read_kva()].
#' @examples
#' if (kva_tool(must = FALSE) != "") {
#'   data <- system.file("extdata", "testdata.dat", package = "kva")
#'   x <- kva(data, output = tempfile(), permutations = 0, distances = "CAS", quiet = TRUE)
#'   print(x)
#' }
#' \dontrun{
#' data(nancycats, package = "adegenet")
#' x <- kva(nancycats, distances = "CAS", bootstrap = 100, seed = 1, write = list(repeats = 2))
#' plot(x, "tree", measure = "CAS")
#' }
#' @export
kva <- function(x, output = NULL, fst = c("pairs", "global"), distances = c("CAS", "DAN"),
                permutations = 10000, bootstrap = 1, het_range = 0, seed = NULL, threads = 1, ...,
                write = list(), quiet = FALSE) {
  places <- run_places(x, output, write)
  general <- option_words(list(threads = threads, seed = seed, ...))
  of_first <- option_words(list(fst = fst, permutations = if (length(fst)) permutations,
                                distances = distance_words(distances),
                                het_range = if (het_range > 0) het_range))
  second <- NULL
  if (bootstrap > 1) {
    second <- paste0(places$output, "_bootstrap")
    of_second <- bootstrap_words(distances, bootstrap,
                                 list(threads = threads, seed = seed, ...))
  }
  run_kvatool(places$data, places$output, c(of_first, general), quiet)
  if (bootstrap > 1) {
    run_kvatool(places$data, second, of_second, quiet)
  }
  read_kva(places$output, second)
}

# The data file and the result folder, both with whole paths.
run_places <- function(x, output, write) {
  if (is.character(x) && length(x) == 1) {
    if (!file.exists(x)) {
      stop("there is no file '", x, "'", call. = FALSE)
    }
    if (length(write)) {
      stop("write = is for genind objects and data frames, not for a data file", call. = FALSE)
    }
    data <- normalizePath(x)
    return(list(data = data,
                output = if (is.null(output)) paste0(data, "_kvatool") else whole_path(output)))
  }
  folder <- tempfile("kva")
  dir.create(folder)
  data <- file.path(folder, "data.txt")
  do.call(write_kva, c(list(x, data), write))
  list(data = data,
       output = if (is.null(output)) file.path(folder, "results") else whole_path(output))
}

whole_path <- function(path) {
  path <- path.expand(path)
  file.path(normalizePath(dirname(path), mustWork = FALSE), basename(path))
}

# Measures alone are those of populations.
distance_words <- function(distances) {
  if (length(distances) && all(toupper(distances) %in% measures())) {
    return(paste0("population:", paste(toupper(distances), collapse = ",")))
  }
  distances
}

# The same distances of populations with replicates, and nothing of what the first run did.
bootstrap_words <- function(distances, bootstrap, general) {
  words <- distance_words(distances)
  words <- unlist(strsplit(sub("^all$", "population", words), ",", fixed = TRUE))
  kind <- words[cummax(seq_along(words) * grepl("^(population|individual)", words))]
  words <- words[grepl("^population", kind)]
  if (!length(words)) {
    stop("a bootstrap needs distances of populations", call. = FALSE)
  }
  kept <- c("threads", "seed", "minus_log", "force")
  option_words(c(list(distances = words, bootstrap = bootstrap),
                 general[names(general) %in% kept]))
}

# Options of the program of named values.
option_words <- function(options) {
  if (length(options) && (is.null(names(options)) || any(names(options) == ""))) {
    stop("the options of kvatool run are given by name", call. = FALSE)
  }
  words <- lapply(names(options), function(name) {
    value <- options[[name]]
    option <- paste0("--", gsub("_", "-", name, fixed = TRUE))
    if (is.null(value) || isFALSE(value) || !length(value)) {
      return(character())
    }
    if (isTRUE(value)) option else c(option, value_word(value))
  })
  unlist(words)
}

value_word <- function(value) {
  if (is.numeric(value)) {
    value <- format(value, trim = TRUE, scientific = FALSE, digits = 16)
  }
  paste(value, collapse = ",")
}

run_kvatool <- function(data, output, words, quiet) {
  short <- function(line) message(sub(paste0(data, ": "), "", line, fixed = TRUE))
  told <- run_tool(c("run", data, "-o", output, words),
                   if (quiet) function(line) NULL else short)
  if (told$status != 0) {
    wrong <- told$lines[!grepl(", [0-9.]+ s$", told$lines)]
    stop("kvatool run failed:\n", paste(wrong, collapse = "\n"), call. = FALSE)
  }
}
