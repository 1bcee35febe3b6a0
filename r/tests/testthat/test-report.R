# The page of kvatool report: its tree and coordinates against ape and cmdscale(), called by hand on the
# sheets. The page is read in the plainest way.

page_text <- function(file) paste(readLines(file, encoding = "UTF-8"), collapse = "\n")

# The text between two others.
between <- function(text, before, after) {
  rest <- strsplit(text, before, fixed = TRUE)[[1]][2]
  strsplit(rest, after, fixed = TRUE)[[1]][1]
}

# The cells of a table as a matrix of texts, the head left out.
page_table <- function(text, id) {
  body <- between(between(text, paste0("<table id=\"", id, "\">"), "</table>"), "<tbody>", "</tbody>")
  rows <- regmatches(body, gregexpr("<tr>.*?</tr>", body, perl = TRUE))[[1]]
  cells <- regmatches(rows, gregexpr("(?<=>)[^<]*(?=</t[dh]>)", rows, perl = TRUE))
  do.call(rbind, cells)
}

page_tree <- function(text) {
  newick <- between(text, "<pre id=\"newick\">", "</pre>")
  ape::read.tree(text = gsub("&#39;", "", newick, fixed = TRUE))
}

# Coordinates are the same but for the signs of the axes; the page has six decimals.
expect_axes <- function(cells, points) {
  for (axis in 1:2) {
    found <- as.numeric(cells[, ncol(cells) - 2 + axis])
    sign <- sign(sum(found * points[, axis]))
    expect_lt(max(abs(found - sign * points[, axis])), 2e-6)
  }
}

test_that("the page's tree is ape's, with the support of ape's", {
  x <- cats_run()
  text <- page_text(kva_report(x, tempfile(fileext = ".html"), measure = "CAS"))
  tree <- page_tree(text)
  sheet <- sheet_matrix(file.path(x$folder, "Distance_data", "CAS_Pop.txt"))
  by_hand <- ape::nj(stats::as.dist(sheet))
  expect_equal(ape::dist.topo(ape::unroot(tree), by_hand)[1], 0)
  names <- rownames(sheet)
  paths <- function(tree) ape::cophenetic.phylo(tree)[names, names]
  expect_lt(max(abs(paths(tree) - paths(by_hand))), 2e-5) # lengths of six digits
  trees <- lapply(distances(x, "CAS", replicates = TRUE), ape::nj)
  class(trees) <- "multiPhylo"
  times <- ape::prop.clades(tree, trees, rooted = FALSE)
  times[is.na(times)] <- 0
  expect_equal(as.numeric(tree$node.label)[-1], round(100 * times / length(trees))[-1])
  expect_gt(length(unique(tree$node.label)), 2)
})

test_that("the page's coordinates of populations are those of ape", {
  x <- cats_run()
  text <- page_text(kva_report(x, tempfile(fileext = ".html"), measure = "CAS"))
  sheet <- sheet_matrix(file.path(x$folder, "Distance_data", "CAS_Pop.txt"))
  by_hand <- ape::pcoa(stats::as.dist(sheet))
  expect_axes(page_table(text, "populations-axes"), by_hand$vectors)
  values <- page_table(text, "populations-eigenvalues")
  expect_equal(as.numeric(values[1:2, 3]), round(100 * by_hand$values$Relative_eig[1:2], 1))
  expect_equal(nrow(values), nrow(sheet))
})

# With 450 individuals the leading two eigenvalues are found in another way than with 60.
test_that("the page's coordinates of individuals are those of cmdscale()", {
  skip_without_tool()
  set.seed(3)
  for (size in c(20, 150)) {
    data <- data.frame(population = rep(c("A", "B", "C"), each = size))
    for (locus in paste0("L", 1:6)) {
      for (copy in c("", "_2")) {
        shift <- 2 * match(data$population, LETTERS)
        data[[paste0(locus, copy)]] <- 100 + shift + 2 * sample(0:5, 3 * size, replace = TRUE)
      }
    }
    file <- tempfile(fileext = ".txt")
    write_kva(data, file, repeats = 2)
    folder <- run_folder(file, "--distances", "individual:DAN", name = basename(tempfile("individuals")))
    text <- page_text(kva_report(folder, tempfile(fileext = ".html"), measure = "dan"))
    sheet <- sheet_matrix(file.path(folder, "Distance_data", "DAN_Ind.txt"))
    cells <- page_table(text, "individuals-axes")
    expect_axes(cells, stats::cmdscale(stats::as.dist(sheet)))
    expect_identical(cells[, 2], data$population)
  }
})

test_that("what goes wrong is told", {
  skip_without_tool()
  expect_error(kva_report(tempfile("none")), "there is no folder")
  folder <- run_folder(small_data())
  expect_error(kva_report(folder, file.path(tempfile("no"), "x.html")), "cannot write")
  expect_error(kva_report(folder, tempfile(), measure = "XYZ"), "the measure is one of")
  expect_error(kva_report(folder, tempfile(), measure = "DAN"), "holds no distances DAN")
})
