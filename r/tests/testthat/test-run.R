test_that("the program is the option's, then that of the environment", {
  program <- tempfile()
  writeLines("#!/bin/sh", program)
  Sys.chmod(program, "755")
  before <- options(kva.tool = program)
  on.exit(options(before))
  expect_identical(kva_tool(), program)
  options(kva.tool = file.path(tempdir(), "none"))
  expect_error(kva_tool(), "was not found at")
  expect_identical(kva_tool(must = FALSE), "")
})

test_that("options become words of the program", {
  expect_identical(option_words(list(fst = c("pairs", "beta"), permutations = 100000, thin = TRUE,
                                     nexus = FALSE, rarefy = NULL, het_range = 1e6,
                                     seed = 2^53 - 1)),
                   c("--fst", "pairs,beta", "--permutations", "100000", "--thin",
                     "--het-range", "1000000", "--seed", "9007199254740991"))
  expect_error(option_words(list(3)), "by name")
  expect_identical(distance_words(c("cas", "DAN")), "population:CAS,DAN")
  expect_identical(distance_words("all"), "all")
  expect_identical(bootstrap_words("all", 9, list(thin = TRUE, seed = 1)),
                   c("--distances", "population", "--bootstrap", "9", "--seed", "1"))
  expect_identical(bootstrap_words("population:CAS,DAN,individual:DSG", 9, list())[2],
                   "population:CAS,DAN")
  expect_error(bootstrap_words("individual:CAS", 9, list()), "distances of populations")
})

test_that("a run on a data file puts its results beside it and tells its progress", {
  skip_without_tool()
  data <- small_data()
  suppressMessages(expect_message(
    x <- kva(data, permutations = 20, seed = 3, distances = NULL), "^F-statistics, "
  ))
  expect_identical(basename(x$folder), "small.txt_kvatool")
  expect_equal(x$record$settings$permutations, 20)
  expect_equal(x$record$random$seed, 3)
  expect_false(any(grepl("^distance_", x$table$statistic)))
  expect_error(kva(data, quiet = TRUE), "is there already")
  expect_silent(kva(data, quiet = TRUE, permutations = 0, distances = NULL, force = TRUE))
})

test_that("lines come while the program runs, not at its end", {
  program <- tempfile()
  writeLines(c("#!/bin/sh", "echo first", "sleep 1", "echo second >&2", "exit 3"), program)
  Sys.chmod(program, "755")
  before <- options(kva.tool = program)
  on.exit(options(before))
  at <- numeric()
  told <- run_tool("word", function(line) at <<- c(at, as.numeric(Sys.time())))
  expect_identical(told, list(status = 3L, lines = c("first", "second")))
  expect_gt(diff(at), 0.5)
})

test_that("results are the same for one seed and any number of threads", {
  skip_without_tool()
  data <- small_data()
  run <- function(name, threads) {
    kva(data, file.path(dirname(data), name), permutations = 100, seed = 11, threads = threads,
        distances = "CAS", bootstrap = 4, quiet = TRUE)
  }
  one <- run("one", 1)
  two <- run("two", 2)
  expect_identical(one$table, two$table)
  expect_identical(one$bootstrap, two$bootstrap)
  expect_identical(attr(fst(one), "p"), attr(fst(two), "p"))
})

test_that("names with blanks and quotes reach the program whole", {
  skip_without_tool()
  data <- small_data(file.path(tempdir(), "it's a \"folder\" $HOME"))
  x <- kva(data, fst = NULL, distances = NULL, quiet = TRUE)
  expect_identical(x$populations, c("North", "South", "East"))
})

test_that("what the program refuses is an error with its words", {
  skip_without_tool()
  data <- small_data()
  expect_error(kva(data, quiet = TRUE, distances = "XYZ"), "XYZ")
  expect_error(kva(data, quiet = TRUE, no_such_option = 1), "no-such-option")
  expect_error(kva(tempfile(), quiet = TRUE), "there is no file")
  expect_error(kva(data, quiet = TRUE, write = list(repeats = 2)), "not for a data file")
  expect_error(kva(matrix(1)), "neither a genind")
  expect_error(kva(data, distances = "individual:CAS", bootstrap = 9), "distances of populations")
  expect_identical(list.files(dirname(data)), "small.txt") # nothing was begun
})

test_that("a data frame is run", {
  skip_without_tool()
  cells <- read.delim(small_data(), skip = 3, header = FALSE)
  frame <- data.frame(population = cells$V1, group = cells$V3, A = cells$V4, A_2 = cells$V5,
                      B = cells$V6, B_2 = cells$V7)
  x <- kva(frame, permutations = 0, distances = NULL, quiet = TRUE)
  # The values of the small data, worked out in test-accessors.R.
  expect_equal(diversity(x)$heterozygosity_expected, c(0.6, 8 / 15, 0.6, 0.6, 8 / 15, NA),
               tolerance = 1e-6)
})
