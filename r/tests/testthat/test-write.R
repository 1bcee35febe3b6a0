# The rows of a data file with three header rows and two columns per locus.
file_rows <- function(file) {
  cells <- strsplit(paste0(readLines(file), "\t."), "\t", fixed = TRUE)
  cells <- do.call(rbind, cells)
  cells[, -ncol(cells)]
}

# The genotypes of one row or genind, "104/106" with the smaller allele first.
sorted_pairs <- function(first, second) {
  low <- pmin(as.integer(first), as.integer(second))
  ifelse(is.na(low), NA_character_, paste(low, pmax(as.integer(first), as.integer(second)), sep = "/"))
}

findings <- function(file) {
  lines <- system2(kva_tool(), c("check", "--json", shQuote(file)), stdout = TRUE)
  jsonlite::fromJSON(paste(lines, collapse = "\n"), simplifyVector = FALSE)$files[[1]]
}

test_that("nancycats keeps every genotype", {
  skip_if_not_installed("adegenet")
  file <- tempfile()
  order <- write_kva(cats(), file, repeats = 2)
  rows <- file_rows(file)
  expect_identical(rows[1, 4:7], c("2", "", "2", ""))
  expect_identical(rows[3, 4:6], c("fca8", "fca8_2", "fca23"))
  rows <- rows[-(1:3), ]
  expect_identical(nrow(rows), 237L)
  expect_identical(rows[, 1], as.character(adegenet::pop(cats()))[order])
  expected <- adegenet::genind2df(cats(), sep = "/", usepop = FALSE)[order, ]
  for (l in 1:9) {
    there <- strsplit(as.character(expected[[l]]), "/", fixed = TRUE)
    there <- vapply(there, function(pair) sorted_pairs(pair[1], pair[2]), "")
    expect_identical(sorted_pairs(rows[, 2 + 2 * l], rows[, 3 + 2 * l]), there)
  }
})

test_that("nancycats goes through the program and back, and the check finds no error", {
  skip_without_tool()
  skip_if_not_installed("adegenet")
  file <- file.path(tempfile("cats"), "cats.txt")
  dir.create(dirname(file))
  order <- write_kva(cats(), file, repeats = 2)
  found <- findings(file)
  expect_identical(found$errors, 0L)
  expect_identical(found$understood$individuals, 237L)
  folder <- run_folder(file)
  export <- file.path(folder, "Formats&Data", "Genepop.gen")
  back <- suppressWarnings(adegenet::read.genepop(export, ncode = 2, quiet = TRUE))
  expect_identical(adegenet::nInd(back), 237L)
  before <- cats()[order]
  expect_identical(unname(is.na(back@tab)), unname(is.na(before@tab)))
  expect_equal(unname(adegenet::nAll(back)), unname(adegenet::nAll(before)))
  expect_equal(sort(colSums(back@tab, na.rm = TRUE), method = "radix"),
               sort(colSums(before@tab, na.rm = TRUE), method = "radix"), ignore_attr = TRUE)
})

test_that("a missing genotype is empty, a single copy an inbred individual", {
  skip_if_not_installed("adegenet")
  frame <- data.frame(A = c("104/106", NA, "108/108"), B = c("90/90", "92/94", "90/92"))
  x <- adegenet::df2genind(frame, sep = "/", pop = c("N", "S", "N"), ploidy = 2)
  file <- tempfile()
  expect_identical(write_kva(x, file), c(1L, 3L, 2L))
  expect_identical(readLines(file)[4:6], c("N\td\t0\t104\t106\t90\t90", "N\td\t0\t108\t108\t90\t92",
                                           "S\td\t0\t\t\t92\t94"))
  x <- adegenet::df2genind(data.frame(A = c("104", "106"), B = c("90", NA)), ploidy = 1,
                           ncode = 3, pop = c("N", "S"))
  write_kva(x, file, overwrite = TRUE)
  expect_identical(readLines(file)[4:5], c("N\th\t0\t104\t104\t90\t90", "S\th\t0\t106\t106\t\t"))
})

test_that("half a genotype keeps its allele", {
  pair <- copies_to_pair(matrix(c(1L, 0L, 2L, 1L, 0L, 1L, 0L, 1L), 4), c(104L, 106L), rep(2, 4))
  expect_identical(pair, list(c(104L, 106L, 104L, 104L), c(NA, NA, 104L, 106L)))
})

test_that("data frames give the same file in both forms", {
  two <- data.frame(pop = c("N", "S"), ind = c("i1", "i2"), type = c("h", ""), A = c(104, NA),
                    A_2 = c(106L, 108L), B = c("90", "NA"), B_2 = c("92", ""))
  one <- data.frame(Population = c("N", "S"), type = c("h", "d"), A = c("104/106", "/108"),
                    B = c("90/92", NA))
  files <- c(tempfile(), tempfile())
  write_kva(two, files[1], repeats = c(2, NA), rest = c(B = 80, A = 100))
  write_kva(one, files[2], repeats = c(A = 2, B = NA), rest = c(100, 80))
  expect_identical(readLines(files[1]),
                   c("2\t\t\t2\t\t\t", "\t\t\t100\t\t80\t", "\t\t\tA\tA_2\tB\tB_2",
                     "N\th\t0\t104\t106\t90\t92", "S\td\t0\t\t108\t\t"))
  expect_identical(readLines(files[2]), readLines(files[1]))
})

test_that("groups are numbers, names, or of the individuals", {
  frame <- data.frame(pop = c("N", "S", "E"), A = 104, A_2 = 106)
  groups_of <- function(...) {
    file <- tempfile()
    write_kva(frame, file, ...)
    vapply(strsplit(readLines(file)[-(1:3)], "\t"), `[`, "", 3)
  }
  expect_identical(groups_of(), c("0", "0", "0"))
  expect_identical(groups_of(groups = c(E = 1, N = 2, S = 1)), c("2", "1", "1"))
  expect_identical(groups_of(groups = c(E = "coast", N = "hill", S = "coast")), c("1", "2", "2"))
  expect_identical(groups_of(groups = factor(c("b", "a", NA))), c("1", "2", "0"))
  expect_error(groups_of(groups = c(N = 1)), "named by the populations")
  frame$group <- 3:1
  expect_identical(groups_of(), c("3", "2", "1"))
})

test_that("inbred populations and individuals are of type h", {
  frame <- data.frame(pop = c("N", "S"), A = 104, A_2 = 104)
  type_of <- function(...) {
    file <- tempfile()
    write_kva(frame, file, ...)
    substr(readLines(file)[4:5], 3, 3)
  }
  expect_identical(type_of(inbred = "S"), c("d", "h"))
  expect_identical(type_of(inbred = c(TRUE, FALSE)), c("h", "d"))
  expect_error(type_of(inbred = "X"), "no population 'X'")
  expect_error(type_of(inbred = TRUE), "for each individual")
})

test_that("what a data file cannot hold is refused", {
  file <- tempfile()
  frame <- data.frame(pop = c("N", "S"), A = c("104/106", "108/110"))
  expect_error(write_kva(transform(frame, A = c("104/x", "1/2")), file), "locus A: the allele 'x'")
  expect_error(write_kva(transform(frame, A = c("104/1.5", "1/2")), file), "'1.5'")
  expect_error(write_kva(transform(frame, A = c("104/3000000000", "1/2")), file), "3000000000")
  expect_error(write_kva(transform(frame, A = c("104/106", "1")), file), "'1' is no genotype")
  expect_error(write_kva(transform(frame, pop = c("N", "")), file), "no name")
  expect_error(write_kva(transform(frame, pop = c("N", "a\tb")), file), "tab")
  expect_error(write_kva(frame["A"], file), "no column 'population'")
  expect_error(write_kva(data.frame(pop = "N", A = 1, B = 2, C = 3), file), "3 columns of alleles")
  expect_error(write_kva(frame, file, repeats = 1:3), "3 lengths for 1 loci")
  expect_false(file.exists(file))
  write_kva(frame, file)
  expect_error(write_kva(frame, file), "is there already")
})
