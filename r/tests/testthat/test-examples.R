example <- function(name) system.file("extdata", name, package = "kva", mustWork = TRUE)

test_that("the example with inbred populations: all measures are those of their sheets", {
  skip_without_tool()
  x <- kva(example("testdata.dat"), output = tempfile(), fst = c("pairs", "global", "beta"),
           permutations = 30, distances = "all", seed = 1, quiet = TRUE)
  expect_identical(x$populations, c("Alder", "Birch", "Cedar", "Dogwood", "Elm", "Fir", "Gorse",
                                    "Hazel"))
  expect_equal(fst(x), sheet_matrix(file.path(x$folder, "F-Statistic", "FST_WC84.txt")),
               ignore_attr = TRUE, tolerance = 0)
  for (measure in measures()) {
    for (of in c("populations", "individuals")) {
      name <- paste0(measure, if (of == "populations") "_Pop.txt" else "_Ind.txt")
      d <- distances(x, measure, of)
      expect_identical(attr(d, "Size"), if (of == "populations") 8L else 200L)
      cells <- sheet_matrix(file.path(x$folder, "Distance_data", name))
      cells[cells == -32767] <- NA
      # Above the diagonal DSG may hold another number for the same pair.
      expect_equal(as.vector(d), cells[lower.tri(cells)], tolerance = 0, info = name)
    }
  }
})

test_that("the example with one column per locus", {
  skip_without_tool()
  x <- kva(example("onecolumn.txt"), output = tempfile(), permutations = 30, het_range = 20,
           seed = 1, quiet = TRUE)
  expect_length(x$populations, 4)
  expect_length(x$loci, 6)
  d <- diversity(x)
  sheet <- strsplit(readLines(file.path(x$folder, "Single_data", "Hetexp.xls")), "\t")
  cells <- t(vapply(sheet[-(1:2)][1:4], function(row) as.numeric(row[-1]), numeric(6)))
  expect_equal(d$heterozygosity_expected, as.vector(t(cells)))
  expect_equal(fst(x), sheet_matrix(file.path(x$folder, "F-Statistic", "FST_WC84.txt")),
               ignore_attr = TRUE, tolerance = 0)
})
