# The splits of a tree without its root as texts: of both sides the one without the first tip.
splits <- function(tree) {
  tips <- tree$tip.label
  sides <- lapply(seq_len(tree$Nnode) + length(tips), function(node) {
    below <- node
    repeat {
      more <- unique(c(below, tree$edge[tree$edge[, 1] %in% below, 2]))
      if (length(more) == length(below)) break
      below <- more
    }
    side <- tips[below[below <= length(tips)]]
    paste(sort(if (sort(tips)[1] %in% side) setdiff(tips, side) else side), collapse = " ")
  })
  unlist(sides)
}

test_that("the tree is ape's of the sheet's matrix", {
  x <- cats_run()
  sheet <- sheet_matrix(file.path(x$folder, "Distance_data", "CAS_Pop.txt"))
  by_hand <- ape::nj(stats::as.dist(sheet))
  tree <- as.phylo(x, "CAS")
  expect_equal(tree$edge, by_hand$edge)
  expect_equal(tree$edge.length, by_hand$edge.length)
  expect_identical(tree$tip.label, x$populations)
})

test_that("support is the share of the replicates' trees with the same split", {
  x <- cats_run()
  tree <- as.phylo(x, "CAS")
  trees <- lapply(distances(x, "CAS", replicates = TRUE), ape::nj)
  each <- lapply(trees, splits)
  expected <- vapply(splits(tree), function(split) {
    100 * mean(vapply(each, function(one) split %in% one, NA))
  }, 0)
  expect_identical(tree$node.label[1], "")
  expect_equal(as.numeric(tree$node.label[-1]), round(unname(expected))[-1])
  expect_gt(length(unique(tree$node.label)), 2)
})

test_that("a folder without replicates gives a tree without support", {
  x <- cats_run()
  expect_null(as.phylo(read_kva(x$folder), "CAS")$node.label)
})

test_that("a folder of replicates alone gives the tree of their mean, with support", {
  x <- cats_run()
  alone <- read_kva(paste0(x$folder, "_bootstrap"))
  tree <- as.phylo(alone, "DAN")
  replicates <- lapply(distances(alone, "DAN"), as.matrix)
  mean <- Reduce(`+`, replicates) / 20
  expect_equal(tree$edge.length, ape::nj(stats::as.dist(mean))$edge.length)
  expect_length(tree$node.label, tree$Nnode)
})

test_that("populations of one name are tips of their own", {
  skip_without_tool()
  file <- small_data()
  lines <- sub("^East(.*)\t\t$", "North\\1\t88\t94", readLines(file))
  writeLines(lines, file)
  x <- read_kva(run_folder(file, "--distances", "population:CAS", "--bootstrap", "3"))
  expect_identical(sort(as.phylo(x, "CAS")$tip.label), c("North", "North", "South"))
})

test_that("principal coordinates are ape's and cmdscale's of the sheet's matrix", {
  x <- cats_run()
  sheet <- sheet_matrix(file.path(x$folder, "Distance_data", "DAN_Pop.txt"))
  found <- pcoa(x, "DAN")
  expect_equal(found$values, ape::pcoa(sheet)$values)
  two <- stats::cmdscale(sheet, 2)
  expect_equal(abs(unname(found$vectors[, 1:2])), abs(unname(two)))
  expect_identical(rownames(found$vectors), x$populations)
})

test_that("pcoa() of other things is ape's", {
  d <- stats::dist(matrix(c(1, 2, 4, 8, 3, 1, 0, 2), 4))
  expect_equal(pcoa(d)$vectors, ape::pcoa(d)$vectors)
})
