# Trees and ordinations of the distances.

#' @importFrom ape as.phylo
#' @export
ape::as.phylo

# The distances, refused where one of them has no value.
whole_distances <- function(d, what) {
  bad <- which(!is.finite(as.matrix(d)), arr.ind = TRUE)
  if (nrow(bad)) {
    names <- attr(d, "Labels")
    stop("the ", what, " has no value for ", nrow(bad) / 2, " of ", length(d), " pairs, among them ",
         names[bad[1, 2]], " and ", names[bad[1, 1]], call. = FALSE)
  }
  d
}

# The distances over all loci; where there are replicates alone, their mean.
observed_distances <- function(x, measure, of) {
  d <- distances(x, measure, of)
  if (is.list(d)) {
    sum <- Reduce(`+`, d)
    d <- sum / length(d)
  }
  whole_distances(d, paste("distance", measure))
}

has_replicates <- function(x, measure, of) {
  !is.null(tryCatch(distances(x, measure, of, replicates = TRUE), error = function(e) NULL))
}

#' Neighbour-joining tree
#'
#' The tree of [ape::nj()] from the distances over all loci. Where the result folder holds the
#' replicates of a bootstrap alone, it is the tree of their mean; [kva()] and the argument
#' `bootstrap` of [read_kva()] bring both together.
#'
#' @param x An object of class `kva`.
#' @inheritParams distances
#' @param ... Not used.
#' @return A tree of class `phylo`, not rooted. Where there are bootstrap replicates its node labels
#'   are the support of each node, the percentage of the replicates' trees that have the same split
#'   ([ape::prop.clades()]); the first node stands for no split and has an empty label. Replicates with
#'   a distance without a value are left out, with a warning.
#' @examples
#' \dontrun{
#' plot(as.phylo(read_kva("data.txt_KVAresult00"), "CAS"), "unrooted")
#' }
#' @export
as.phylo.kva <- function(x, measure, of = c("populations", "individuals"), ...) {
  of <- match.arg(of)
  measure <- check_measure(measure)
  d <- observed_distances(x, measure, of)
  if (attr(d, "Size") < 3) {
    stop("a tree takes three or more ", of, call. = FALSE)
  }
  labels <- attr(d, "Labels")
  tree <- unique_nj(d)
  if (has_replicates(x, measure, of)) {
    tree$node.label <- support(tree, distances(x, measure, of, replicates = TRUE))
  }
  tree$tip.label <- labels[as.integer(tree$tip.label)]
  tree
}

# The tree with the numbers of the tips as labels: names may be there twice.
unique_nj <- function(d) {
  attr(d, "Labels") <- as.character(seq_len(attr(d, "Size")))
  ape::nj(d)
}

support <- function(tree, replicates) {
  whole <- vapply(replicates, function(d) all(is.finite(d)), NA)
  if (!all(whole)) {
    warning(sum(!whole), " of ", length(whole), " replicates have a distance without a value and ",
            "are left out", call. = FALSE)
  }
  if (!any(whole)) {
    return(NULL)
  }
  trees <- lapply(replicates[whole], unique_nj)
  class(trees) <- "multiPhylo"
  times <- ape::prop.clades(tree, trees, rooted = FALSE)
  times[is.na(times)] <- 0
  c("", round(100 * times / length(trees))[-1])
}

#' Principal coordinates
#'
#' The ordination of [ape::pcoa()] from the distances over all loci; where the folder holds
#' bootstrap replicates alone, from their mean. For anything but an object of class `kva` this
#' is [ape::pcoa()] itself.
#'
#' @param x An object of class `kva`.
#' @inheritParams distances
#' @param ... For [ape::pcoa()], such as `correction = "cailliez"`.
#' @return An object of class `pcoa`: `vectors` has a row for each population or individual,
#'   `values` the eigenvalues.
#' @examples
#' \dontrun{
#' pcoa(read_kva("data.txt_KVAresult00"), "DAN")$vectors[, 1:2]
#' }
#' @export
pcoa <- function(x, ...) UseMethod("pcoa")

#' @export
pcoa.default <- function(x, ...) ape::pcoa(x, ...)

#' @rdname pcoa
#' @export
pcoa.kva <- function(x, measure, of = c("populations", "individuals"), ...) {
  ape::pcoa(observed_distances(x, check_measure(measure), match.arg(of)), ...)
}
