# Genotypes of R objects, and our data file. Between them stands a list of: population, type ("d" or "h")
# and group of each individual, loci, and the two alleles of each genotype, first and
# second, matrices of individuals and loci; NA: missing.

#' Write a data file
#'
#' Writes genotypes as a data file of `kva`, with three header rows and two columns per locus.
#' The individuals are put in order by their populations; their names have no place in the file.
#' An individual with one gene copy becomes an inbred one (type h) with that allele twice.
#'
#' @param x A `genind` object (package adegenet) with codominant markers, of ploidy 1 or 2, whose
#'   alleles are whole numbers, or a data frame with a row for each individual. The data frame has
#'   a column `population` (or `pop`); it may have a column `group`, a column `type` (`"h"`: inbred)
#'   and one with the individuals' names, `individual`, `ind` or `id`, that is not read; all other
#'   columns are alleles: two a locus, the first one with its name, or one a locus with cells
#'   such as `"104/106"`.
#' @param file The file to write.
#' @param repeats Repeat lengths of the loci in base pairs: one for all, one for each, or named by
#'   the loci; `NA` or not given: unknown.
#' @param rest Lengths of an allele without its repeats, in the same way.
#' @param groups Group of each population (named by them) or of each individual: numbers from 1
#'   without gaps, 0 for none, or names, which are numbered as they come. Not given: none, or the
#'   column `group`.
#' @param inbred Names of the populations that are inbred, or a logical for each individual.
#' @param overwrite Whether a file that is there is replaced.
#' @return The numbers of the individuals of `x` in the order of the file, invisibly.
#' @examples
#' cats <- data.frame(population = c("North", "North", "South"), Fca8 = c(135, 143, 133),
#'                    Fca8_2 = c(143, 143, NA))
#' file <- tempfile(fileext = ".txt")
#' write_kva(cats, file, repeats = 2)
#' cat(readLines(file), sep = "\n")
#' @export
write_kva <- function(x, file, repeats = NULL, rest = NULL, groups = NULL, inbred = NULL,
                      overwrite = FALSE) {
  if (!overwrite && file.exists(file)) {
    stop("'", file, "' is there already; replace it with overwrite = TRUE", call. = FALSE)
  }
  data <- genotypes(x)
  data$group <- group_numbers(groups, data)
  data$type <- types(inbred, data)
  check_names(data$population, "population")
  check_names(data$loci, "locus")
  order <- order(match(data$population, unique(data$populations)))
  lines <- c(header_rows(data, locus_lengths(repeats, data$loci), locus_lengths(rest, data$loci)),
             data_rows(data)[order])
  out <- file(file, "wb")
  on.exit(close(out))
  writeLines(enc2utf8(lines), out, useBytes = TRUE)
  invisible(order)
}

genotypes <- function(x) {
  data <- if (inherits(x, "genind")) {
    genotypes_of_genind(x)
  } else if (is.data.frame(x)) {
    genotypes_of_frame(x)
  } else {
    stop("neither a genind object nor a data frame", call. = FALSE)
  }
  if (!length(data$population) || !length(data$loci)) {
    stop("there are no individuals or no loci", call. = FALSE)
  }
  data
}

# --- genind -------------------------------------------------------------------------------

genotypes_of_genind <- function(x) {
  if (x@type != "codom") {
    stop("the markers are not codominant: alleles cannot be told", call. = FALSE)
  }
  ploidy <- rep_len(x@ploidy, nrow(x@tab))
  if (!all(ploidy %in% 1:2)) {
    stop("the ploidy of individuals is 1 or 2, not ", setdiff(ploidy, 1:2)[1], call. = FALSE)
  }
  population <- if (is.null(x@pop)) factor(rep("pop1", nrow(x@tab))) else x@pop
  loci <- names(x@all.names)
  pairs <- lapply(loci, function(locus) {
    alleles <- allele_numbers(x@all.names[[locus]], locus)
    copies_to_pair(x@tab[, as.character(x@loc.fac) == locus, drop = FALSE], alleles, ploidy)
  })
  list(population = as.character(population), populations = levels(population),
       type = ifelse(ploidy == 1, "h", "d"), group = rep(0L, length(population)), loci = loci,
       first = vapply(pairs, `[[`, integer(nrow(x@tab)), 1),
       second = vapply(pairs, `[[`, integer(nrow(x@tab)), 2)) |> as_matrices()
}

# With one individual vapply() gives vectors.
as_matrices <- function(data) {
  for (name in c("first", "second")) {
    data[[name]] <- matrix(data[[name]], length(data$population), length(data$loci))
  }
  data
}

# First and second allele of each individual, of its copies of each allele.
copies_to_pair <- function(copies, alleles, ploidy) {
  copies[is.na(copies)] <- 0L
  place <- function(copies) {
    if (!ncol(copies)) {
      return(rep(NA_integer_, nrow(copies)))
    }
    ifelse(rowSums(copies > 0) > 0, max.col(copies > 0, "first"), NA)
  }
  first <- place(copies)
  cells <- cbind(seq_along(first), first)[!is.na(first), , drop = FALSE]
  copies[cells] <- copies[cells] - 1L
  second <- ifelse(ploidy == 1, first, place(copies))
  list(alleles[first], alleles[second])
}

# Whole numbers of 0 or more, of texts.
allele_numbers <- function(text, locus) {
  text <- trimws(text)
  number <- suppressWarnings(as.integer(text))
  bad <- !grepl("^[0-9]+$", text) | is.na(number)
  if (any(bad)) {
    stop("locus ", locus, ": the allele '", text[bad][1], "' is no whole number of 0 or more",
         call. = FALSE)
  }
  number
}

# --- Data frames ----------------------------------------------------------------------------

column_of <- function(x, names) {
  found <- which(tolower(colnames(x)) %in% names)
  if (length(found) > 1) {
    stop("the columns ", paste(colnames(x)[found], collapse = " and "), " say the same",
         call. = FALSE)
  }
  found
}

genotypes_of_frame <- function(x) {
  x <- as.data.frame(x)
  population <- column_of(x, c("population", "pop"))
  type <- column_of(x, "type")
  group <- column_of(x, "group")
  if (!length(population)) {
    stop("the data frame has no column 'population'", call. = FALSE)
  }
  alleles <- x[-c(population, type, group, column_of(x, c("individual", "ind", "id")))]
  alleles[] <- lapply(alleles, frame_cells)
  pairs <- if (any(grepl("/", unlist(alleles), fixed = TRUE))) {
    lapply(alleles, slashed_pair)
  } else if (ncol(alleles) %% 2 == 0) {
    odd <- seq(1, by = 2, length.out = ncol(alleles) / 2)
    stats::setNames(lapply(odd, function(k) list(alleles[[k]], alleles[[k + 1]])),
                    names(alleles)[odd])
  } else {
    stop("there are ", ncol(alleles), " columns of alleles, not two a locus: ",
         paste(utils::head(names(alleles), 20), collapse = ", "), call. = FALSE)
  }
  of <- function(k) {
    vapply(seq_along(pairs), function(l) cell_alleles(pairs[[l]][[k]], names(pairs)[l]),
           integer(nrow(x)))
  }
  population <- x[[population]]
  list(population = as.character(population),
       populations = if (is.factor(population)) levels(population) else
         unique(as.character(population)),
       type = if (length(type)) ifelse(grepl("^h", x[[type]]), "h", "d") else rep("d", nrow(x)),
       group = if (length(group)) x[[group]] else rep(0L, nrow(x)), loci = names(pairs),
       first = of(1), second = of(2)) |> as_matrices()
}

# The cells of a column as texts, "" for missing ones.
frame_cells <- function(cells) {
  text <- if (is.numeric(cells)) format(cells, trim = TRUE, scientific = FALSE, digits = 15)
          else trimws(as.character(cells))
  text[is.na(cells) | text == "NA"] <- ""
  text
}

slashed_pair <- function(cells) {
  bad <- nzchar(cells) & !grepl("^[^/]*/[^/]*$", cells)
  if (any(bad)) {
    stop("'", cells[bad][1], "' is no genotype such as 104/106", call. = FALSE)
  }
  list(sub("/.*", "", cells), sub("^[^/]*/?", "", cells))
}

cell_alleles <- function(text, locus) {
  number <- rep(NA_integer_, length(text))
  there <- !text %in% c("", "NA")
  number[there] <- allele_numbers(text[there], locus)
  number
}

# --- The file ---------------------------------------------------------------------------------

# Group of each individual as a number.
group_numbers <- function(groups, data) {
  if (is.null(groups)) {
    groups <- data$group
  } else if (length(groups) != length(data$population) || !is.null(names(groups))) {
    populations <- unique(data$population)
    if (is.null(names(groups)) || !all(populations %in% names(groups))) {
      stop("groups are named by the populations, or one for each individual", call. = FALSE)
    }
    groups <- groups[data$population]
  }
  if (!is.numeric(groups)) {
    groups <- match(groups, unique(groups[!is.na(groups)]))
  }
  groups[is.na(groups)] <- 0
  if (any(groups != round(groups))) {
    stop("groups are whole numbers or names", call. = FALSE)
  }
  as.integer(groups)
}

types <- function(inbred, data) {
  if (is.null(inbred)) {
    return(data$type)
  }
  if (is.logical(inbred)) {
    if (length(inbred) != length(data$type) || anyNA(inbred)) {
      stop("inbred is TRUE or FALSE for each individual", call. = FALSE)
    }
    return(ifelse(inbred, "h", data$type))
  }
  strange <- setdiff(inbred, data$population)
  if (length(strange)) {
    stop("inbred: there is no population '", strange[1], "'", call. = FALSE)
  }
  ifelse(data$population %in% inbred, "h", data$type)
}

check_names <- function(names, what) {
  bad <- is.na(names) | !nzchar(names) | grepl("[\t\r\n]", names)
  if (any(bad)) {
    stop("a ", what, " has ", if (all(names[bad] %in% c(NA, ""))) "no name" else
      "a name with a tab or a line end", call. = FALSE)
  }
}

# A length for each locus, NA where it is not known.
locus_lengths <- function(lengths, loci) {
  if (is.null(lengths)) {
    return(rep(NA_integer_, length(loci)))
  }
  if (!is.null(names(lengths))) {
    if (!all(loci %in% names(lengths))) {
      stop("there is no length of the locus ", setdiff(loci, names(lengths))[1], call. = FALSE)
    }
    lengths <- lengths[loci]
  }
  if (!length(lengths) %in% c(1, length(loci))) {
    stop("there are ", length(lengths), " lengths for ", length(loci), " loci", call. = FALSE)
  }
  known <- lengths[!is.na(lengths)]
  if (any(known < 0 | known != round(known))) {
    stop("lengths are whole numbers of base pairs", call. = FALSE)
  }
  rep_len(as.integer(lengths), length(loci))
}

cells_of <- function(numbers) ifelse(is.na(numbers), "", as.character(numbers))

header_rows <- function(data, repeats, rest) {
  row <- function(begin, first, second) {
    paste(c(begin, "", "", rbind(first, second)), collapse = "\t")
  }
  c(row("2", cells_of(repeats), ""), row("", cells_of(rest), ""),
    row("", data$loci, paste0(data$loci, "_2")))
}

# A row for each individual.
data_rows <- function(data) {
  loci <- seq_along(data$loci)
  alleles <- lapply(loci, function(locus) {
    paste(cells_of(data$first[, locus]), cells_of(data$second[, locus]), sep = "\t")
  })
  do.call(paste, c(list(data$population, data$type, data$group), alleles, sep = "\t"))
}
