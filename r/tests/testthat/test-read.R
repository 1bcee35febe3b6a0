test_that("numbers without a value become NA, and names stay texts", {
  file <- tempfile()
  writeLines(c("statistic\tpopulation1\tpopulation2\tlocus\treplicate\tvalue",
               "a\tNA\t12\tL\t\tn.d.",
               "a\t\"East \"\"Bay\"\"\"\t12\tL\t1\t-32767.000000",
               "a\tNA\t12\tL\t1\t",
               "a\tNA\t12\tL\t1\tNaN",
               "a\tNA\t12\tL\t1\t-Inf",
               "a\tNA\t12\tL\t1\t0.25"), file)
  table <- parse_table(file)
  expect_identical(table$value, c(NA, NA, NA, NaN, -Inf, 0.25))
  expect_identical(table$population1[1:2], c("NA", "East \"Bay\""))
  expect_identical(table$population2[1], "12")
  expect_identical(table$replicate[1], "")
})

test_that("names in Latin-1 become UTF-8", {
  text <- c("M\xfcnster", "M\xc3\xbcnster", "plain")
  expect_identical(as_utf8(text), c("M\u00fcnster", "M\u00fcnster", "plain"))
})

test_that("pairs fill a matrix by place, also where a name is there twice", {
  rows <- data.frame(population1 = c("A", "A", "A"), population2 = c("A", "B", "B"), value = 1:3)
  expect_identical(square(rows), matrix(c(0, 1, 2, 1, 0, 3, 2, 3, 0), 3, 3,
                                        dimnames = rep(list(c("A", "A", "B")), 2)))
  expect_error(square(rows[1:2, ]), "not whole")
})

test_that("a folder that is none, or of something else, is refused", {
  expect_error(read_kva(tempfile()), "there is no folder")
  expect_error(read_kva(c("a", "b")), "there is no folder")
  expect_error(read_kva(tempdir()), "no result folder")
})

test_that("populations, loci and the record are those of the data", {
  skip_without_tool()
  x <- read_kva(run_folder(small_data(), "--seed", "7"))
  expect_identical(x$populations, c("North", "South", "East"))
  expect_identical(x$loci, c("A", "B"))
  expect_equal(x$record$random$seed, 7)
  expect_equal(x$record$data$individuals, 9)
  expect_output(print(x), "3 populations, 2 loci")
  expect_output(print(cats_run()), "populations: CAS, DAN\n  bootstrap replicates: 20")
})

test_that("a folder without run.json is read, with the p-values of the sheet", {
  skip_without_tool()
  folder <- run_folder(small_data(), "--fst", "pairs", "--permutations", "40", "--seed", "7")
  unlink(file.path(folder, "run.json"))
  x <- read_kva(folder)
  expect_null(x$record)
  lines <- readLines(file.path(folder, "F-Statistic", "FST_WC84-pValue.xls"))
  first <- which(lines == "P-values:") + 1
  p <- as.numeric(strsplit(lines[first], "\t")[[1]][3:4]) # above the diagonal
  expect_equal(attr(fst(x), "p")["North", c("South", "East")], p, ignore_attr = TRUE)
  expect_equal(attr(fst(x), "p"), t(attr(fst(x), "p")))
})

test_that("a sheet that was cut off is told", {
  skip_without_tool()
  folder <- run_folder(small_data(), "--fst", "pairs", "--permutations", "0")
  sheet <- file.path(folder, "F-Statistic", "FST_WC84.txt")
  writeLines(readLines(sheet)[1:2], sheet)
  expect_warning(read_kva(folder), "FST_WC84")
})

test_that("populations of one name keep apart", {
  skip_without_tool()
  file <- small_data()
  lines <- readLines(file)
  writeLines(sub("^East", "North", lines), file)
  x <- read_kva(run_folder(file, "--fst", "pairs", "--permutations", "0"))
  expect_identical(rownames(fst(x)), c("North", "South", "North"))
  expect_identical(levels(diversity(x)$population), c("North", "South", "North.1"))
  # At A, North's alleles are 104 (3) and 106 (3); those of the second North 104 (4) and 110 (2):
  # 6/5 (1 - 1/2) = 0.6 and 6/5 (1 - 20/36) = 0.533333.
  d <- diversity(x)
  expect_equal(d$heterozygosity_expected[d$locus == "A"][c(1, 3)], c(0.6, 8 / 15),
               tolerance = 1e-6)
})
