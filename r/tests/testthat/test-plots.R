# A plot as it is drawn, on a device without a file.
drawn <- function(...) {
  grDevices::pdf(NULL)
  on.exit(grDevices::dev.off())
  plot(...)
}

test_that("the map of Fst has each pair twice, and stars where p is small", {
  x <- cats_run()
  p <- drawn(x, "fst")
  f <- fst(x)
  expect_identical(nrow(p$data), 17L * 16L)
  row <- p$data[p$data$first == "P03" & p$data$second == "P06", ]
  expect_identical(row$fst, f["P03", "P06"])
  # 136 pairs and 50 permutations: the least p after Holm is 136 / 51.
  expect_true(all(p$data$star == ""))
  expect_match(p$labels$caption, "50 permutations are too few")
  x$record <- NULL
  p <- drawn(x, "fst")
  expect_identical(sum(p$data$star == "*"), sum(attr(fst(x), "p") <= 0.05, na.rm = TRUE))
  expect_gt(sum(p$data$star == "*"), 0)
})

test_that("the tree that is drawn is that of as.phylo()", {
  x <- cats_run()
  expect_equal(drawn(x, "tree", measure = "DAN"), as.phylo(x, "DAN"))
  expect_equal(drawn(x, "tree", type = "unrooted"), as.phylo(x, "CAS"))
})

test_that("principal coordinates have the share of their axes", {
  x <- cats_run()
  p <- drawn(x, "pcoa", measure = "DAN")
  found <- pcoa(x, "DAN")
  expect_identical(p$data$x, unname(found$vectors[, 1]))
  expect_match(p$labels$x, sprintf("%.1f %%", 100 * found$values$Relative_eig[1]), fixed = TRUE)
})

test_that("diversity is drawn with the means over loci", {
  x <- cats_run()
  p <- drawn(x, "diversity")
  means <- p$layers[[2]]$data
  d <- diversity(x)
  row <- means$population == "P05" & means$statistic == "Expected heterozygosity"
  expect_equal(means$value[row], mean(d$heterozygosity_expected[d$population == "P05"]))
  expect_identical(rev(levels(p$data$population)), x$populations)
  expect_setequal(drawn(x, "alleles", loci = "fca8")$data$locus, "fca8")
  expect_error(drawn(x, "diversity", loci = "none"), "no locus 'none'")
})

test_that("alleles of a population make 1 at each locus", {
  p <- drawn(cats_run(), "alleles")
  sums <- tapply(p$data$value, list(p$data$population1, p$data$locus), sum)
  # Frequencies have six decimals, and there are up to 20 of them.
  expect_true(all(abs(sums[!is.na(sums)] - 1) < 1e-5))
})

test_that("ranges of heterozygosity hold their means", {
  p <- drawn(cats_run(), "hetrange")
  expect_gt(nrow(p$data), 100)
  expect_true(all(p$data$least <= p$data$value & p$data$value <= p$data$most))
  skip_without_tool()
  expect_error(drawn(read_kva(run_folder(small_data())), "hetrange"), "no range")
})

test_that("remarks of the error report stand at their loci", {
  skip_without_tool()
  file <- small_data()
  lines <- readLines(file)
  # One step of 1 at A, where repeats are 2 long, and an allele 40 above all others.
  lines[4] <- "North\td\t1\t105\t150\t88\t92"
  writeLines(lines, file)
  p <- drawn(read_kva(run_folder(file)), "errors")
  notes <- p$layers[[3]]$data
  expect_match(notes$text[notes$locus == "A"], "step below the repeat (1)", fixed = TRUE)
  expect_match(notes$text[notes$locus == "A"], "large gap (40)", fixed = TRUE)
  expect_identical(notes$text[notes$locus == "B"], "")
  expect_true(all((p$data$remarked == "remarked on") == (p$data$locus == "A")))
})

test_that("all plots are drawn with 3 and with 100 populations, labels small enough to fit", {
  skip_without_tool()
  for (n in c(3, 100)) {
    frame <- data.frame(population = rep(sprintf("Population%03d", 1:n), each = 4),
                        A = 100 + 2 * ((1:(4 * n)) %% 11), A_2 = 100 + 2 * ((1:(4 * n)) %% 7),
                        B = 200 + 4 * ((1:(4 * n)) %% 5), B_2 = 200 + 4 * ((1:(4 * n)) %% 13))
    x <- kva(frame, fst = "pairs", permutations = 0, distances = "CAS", het_range = 5,
             write = list(repeats = c(2, 4)), quiet = TRUE)
    for (what in c("fst", "pcoa", "diversity", "alleles", "hetrange", "errors")) {
      expect_s3_class(drawn(x, what), "ggplot")
    }
    expect_s3_class(drawn(x, "tree"), "phylo")
    # 72 points an inch; three quarters of the 7 inches of a device are for the labels.
    expect_lte(n * label_points(n), 0.8 * 7 * 72)
    expect_gte(label_points(n), 3)
  }
})
