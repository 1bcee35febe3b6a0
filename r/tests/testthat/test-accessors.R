test_that("fst() is the matrix of its sheet", {
  x <- cats_run()
  sheet <- sheet_matrix(file.path(x$folder, "F-Statistic", "FST_WC84.txt"))
  expect_identical(rownames(fst(x)), levels(adegenet::pop(cats())))
  expect_equal(fst(x), sheet, ignore_attr = TRUE, tolerance = 0)
  expect_equal(fst(x, "fis"), sheet_matrix(file.path(x$folder, "F-Statistic", "FIS_WC84.txt")),
               ignore_attr = TRUE, tolerance = 0)
})

test_that("the p-values of pairs are those of the record, with their adjustments", {
  x <- cats_run()
  f <- fst(x)
  n <- nrow(f)
  expect_true(all(attr(f, "p")[upper.tri(f)] >= 1 / 51))
  expect_equal(attr(f, "p"), t(attr(f, "p")))
  tests <- x$record$tests
  tests <- tests[tests$statistic == "fst_pairwise", ]
  for (k in c(1, n, n * (n - 1) / 2)) {
    at <- match(c(tests$population1[k], tests$population2[k]), rownames(f))
    expect_equal(attr(f, "p")[at[1], at[2]], (tests$hits[k] + 1) / 51)
  }
  p <- attr(f, "p")[lower.tri(f)]
  expect_equal(attr(f, "p_holm")[lower.tri(f)], p.adjust(p, "holm"))
  expect_equal(attr(f, "p_bh")[lower.tri(f)], p.adjust(p, "BH"))
})

test_that("pairs that are not defined are NA", {
  skip_without_tool()
  file <- small_data()
  lines <- readLines(file)
  # East is left with locus B alone, and the others with A: no locus in common.
  lines[4:9] <- sub("(\t[0-9]*\t[0-9]*)$", "\t\t", lines[4:9])
  lines[10:12] <- "East\td\t2\t\t\t88\t90"
  writeLines(lines, file)
  x <- read_kva(run_folder(file, "--fst", "pairs", "--permutations", "9", "--distances",
                           "population:CAS"))
  expect_true(is.na(fst(x)["North", "East"]))
  expect_false(is.na(fst(x)["North", "South"]))
  expect_true(is.na(attr(fst(x), "p")["East", "North"]))
  expect_false(is.na(attr(fst(x), "p")["South", "North"]))
  d <- as.matrix(distances(x, "CAS"))
  expect_true(is.na(d["East", "South"]))
  expect_false(is.na(d["North", "South"]))
  expect_error(as.phylo(x, "CAS"), "North and East|East and North")
  expect_error(pcoa(x, "CAS"), "has no value")
})

test_that("distances() is the matrix of its sheet, and a list of those of the replicates", {
  x <- cats_run()
  expect_s3_class(distances(x, "DAN"), "dist")
  sheet <- sheet_matrix(file.path(x$folder, "Distance_data", "DAN_Pop.txt"))
  expect_equal(as.matrix(distances(x, "dan")), sheet, ignore_attr = TRUE, tolerance = 0)
  replicates <- distances(x, "DAN", replicates = TRUE)
  expect_length(replicates, 20)
  file <- file.path(paste0(x$folder, "_bootstrap"), "Distance_data", "DAN_Pop.txt")
  n <- length(x$populations)
  third <- tempfile()
  all <- readLines(file)
  all <- all[nzchar(all)]
  writeLines(all[2 * (n + 1) + seq_len(n + 1)], third)
  expect_equal(as.matrix(replicates[[3]]), sheet_matrix(third), ignore_attr = TRUE, tolerance = 0)
  expect_error(distances(x, "DAN", "individuals"), "no distances DAN of individuals")
  expect_error(distances(x, "XYZ"), "the measure is one of")
})

test_that("a folder of replicates alone gives the list", {
  x <- cats_run()
  alone <- read_kva(paste0(x$folder, "_bootstrap"))
  expect_type(distances(alone, "CAS"), "list")
  expect_length(distances(alone, "CAS"), 20)
  expect_error(distances(alone, "CAS", replicates = FALSE), "over all loci")
  expect_error(fst(alone), "no F-statistics of pairs")
})

test_that("distances of individuals come with their labels", {
  skip_without_tool()
  x <- read_kva(run_folder(small_data(), "--distances", "individual:POSA"))
  d <- distances(x, "POSA", "individuals")
  expect_identical(attr(d, "Size"), 9L)
  expect_equal(as.matrix(d),
               sheet_matrix(file.path(x$folder, "Distance_data", "POSA_Ind.txt")),
               ignore_attr = TRUE, tolerance = 0)
})

test_that("diversity() has the cells of the sheets in their places", {
  x <- cats_run()
  d <- diversity(x)
  expect_identical(nrow(d), 17L * 9L)
  sheet <- sheet_cells(file.path(x$folder, "Single_data", "Hetexp.xls"))
  expect_equal(d$heterozygosity_expected, as.vector(t(sheet[-1, ])))
  expect_equal(diversity(x, total = TRUE)$heterozygosity_expected, as.vector(t(sheet)))
  # Summary.xls goes the other way through populations and loci.
  observed <- as.data.frame(x, statistic = "heterozygosity_observed")
  for (k in c(1, 20, 153)) {
    at <- d$population == observed$population1[k] & d$locus == observed$locus[k]
    expect_equal(d$heterozygosity_observed[at], observed$value[k])
  }
})

test_that("heterozygosity of the small data is that by hand, NA where nothing is typed", {
  skip_without_tool()
  d <- diversity(read_kva(run_folder(small_data())))
  # A: North 104, 106: 3 of 6 each: 6/5 (1 - 1/2) = 0.6. South 106, 108, 110: 1, 4, 1 of 6:
  # 6/5 (1 - 18/36) = 0.6. East 104, 110: 4, 2 of 6: 6/5 (1 - 20/36) = 8/15.
  # B: North 88, 92: 4, 2 of 6: 8/15. South 92, 94: 3, 3: 0.6. East: nothing.
  expect_equal(d$heterozygosity_expected, c(0.6, 8 / 15, 0.6, 0.6, 8 / 15, NA), tolerance = 1e-6)
  # Heterozygotes at A: 1, 2 and 2 of 3; at B 2, 1 of 3.
  expect_equal(d$heterozygosity_observed, c(1, 2, 2, 1, 2, NA) / 3, tolerance = 1e-5)
})
