# Plots: ggplot2, and ape for the tree. Colours are of the scale viridis and of Okabe and Ito, which
# the colour-blind can tell.

#' Plot results
#'
#' @param x An object of class `kva`.
#' @param what What to draw:
#' \describe{
#'   \item{`"fst"`}{a map of Fst of all pairs; a star for p of 0.05 or less, adjusted after Holm
#'     where the run was one of `kvatool`}
#'   \item{`"tree"`}{the neighbour-joining tree of a distance, with the bootstrap support in percent, see
#'     [as.phylo.kva()]}
#'   \item{`"pcoa"`}{the first two principal coordinates of a distance}
#'   \item{`"diversity"`}{expected and observed heterozygosity, allelic richness and number of alleles of
#'     each population: the loci as grey points, their mean in colour}
#'   \item{`"alleles"`}{the frequencies of the alleles of each locus in each population}
#'   \item{`"hetrange"`}{heterozygosity of resampled data: least, mean and largest value of each
#'     population and locus}
#'   \item{`"errors"`}{the alleles of each locus in all populations; loci that the error report
#'     remarks on are orange, with the remark}
#' }
#' @param ... For `"tree"`: arguments of [ape::plot.phylo()].
#' @param measure Distance of `"tree"` and `"pcoa"`; not given: the first one of the folder.
#' @param of `"tree"` and `"pcoa"`: of populations or of individuals.
#' @param loci Names of the loci of `"diversity"`, `"alleles"`, `"hetrange"` and `"errors"`; not
#'   given: all.
#' @return The plot of ggplot2, or the tree, invisibly.
#' @examples
#' \dontrun{
#' plot(read_kva("data.txt_KVAresult00"), "fst")
#' }
#' @export
plot.kva <- function(x, what = c("fst", "tree", "pcoa", "diversity", "alleles", "hetrange",
                                 "errors"), ...,
                     measure = NULL, of = c("populations", "individuals"), loci = NULL) {
  what <- match.arg(what)
  of <- match.arg(of)
  drawn <- switch(what,
    fst = fst_plot(x),
    tree = tree_plot(x, measure_or_first(x, measure, of), of, ...),
    pcoa = pcoa_plot(x, measure_or_first(x, measure, of), of),
    diversity = diversity_plot(x, loci),
    alleles = alleles_plot(x, loci),
    hetrange = hetrange_plot(x, loci),
    errors = errors_plot(x, loci)
  )
  if (inherits(drawn, "ggplot")) print(drawn)
  invisible(drawn)
}

# --- What the plots share -------------------------------------------------------------------

measure_or_first <- function(x, measure, of) {
  if (!is.null(measure)) {
    return(check_measure(measure))
  }
  ending <- if (of == "individuals") "_individuals" else ""
  there <- paste0("distance_", tolower(measures()), ending) %in% x$table$statistic
  if (!any(there)) {
    stop("there are no distances of ", of, " in '", x$folder, "'", call. = FALSE)
  }
  measures()[there][1]
}

# Size of n labels one below the other, in points, so that they fit on the device.
label_points <- function(n) {
  inches <- if (grDevices::dev.cur() == 1) 7 else min(grDevices::dev.size())
  max(3, min(10, 0.78 * inches * 72 / max(n, 1)))
}

kva_theme <- function() ggplot2::theme_bw() +
  ggplot2::theme(panel.grid.minor = ggplot2::element_blank())

population_axis <- function(n) {
  ggplot2::theme(axis.text.y = ggplot2::element_text(size = label_points(n)))
}

# Names as a factor whose first level stands on top of a y axis.
from_top <- function(names, all) factor(names, rev(make.unique(all)))

# The rows of a statistic at the loci that are asked for, with `population` and `locus` as factors.
# Rows of one name keep apart where each population has one row for each locus.
locus_rows <- function(x, rows, loci) {
  strange <- setdiff(loci, x$loci)
  if (length(strange)) {
    stop("there is no locus '", strange[1], "'", call. = FALSE)
  }
  rows <- rows[rows$locus %in% (if (is.null(loci)) x$loci else loci), ]
  rows$locus <- factor(rows$locus, unique(x$loci))
  rows
}

nothing <- function(x, what) {
  stop("there is no ", what, " in '", x$folder, "'", call. = FALSE)
}

# --- The plots --------------------------------------------------------------------------------

fst_plot <- function(x) {
  values <- fst(x)
  n <- nrow(values)
  names <- make.unique(rownames(values))
  p <- attr(values, if (is.null(attr(values, "p_holm"))) "p" else "p_holm")
  pairs <- data.frame(first = factor(rep(names, each = n), names),
                      second = from_top(rep(names, n), names), fst = as.vector(values))
  pairs$star <- if (is.null(p)) "" else ifelse(as.vector(!is.na(p) & p <= 0.05), "*", "")
  pairs <- pairs[pairs$first != pairs$second, ]
  size <- label_points(n)
  plot <- ggplot2::ggplot(pairs, ggplot2::aes(.data$first, .data$second, fill = .data$fst)) +
    ggplot2::geom_tile() +
    ggplot2::scale_fill_viridis_c("Fst", na.value = "grey85") +
    ggplot2::scale_x_discrete(drop = FALSE) +
    ggplot2::scale_y_discrete(drop = FALSE) +
    ggplot2::coord_equal() +
    ggplot2::labs(x = "Population", y = "Population",
                  caption = stars_told(x, values)) +
    kva_theme() +
    ggplot2::theme(axis.text.x = ggplot2::element_text(angle = 90, hjust = 1, vjust = 0.5,
                                                       size = size),
                   axis.text.y = ggplot2::element_text(size = size),
                   panel.grid = ggplot2::element_blank())
  if (is.null(p)) {
    return(plot)
  }
  middle <- mean(range(values, na.rm = TRUE))
  pairs$ink <- ifelse(!is.na(pairs$fst) & pairs$fst < middle, "white", "black")
  plot + ggplot2::geom_text(ggplot2::aes(label = .data$star, colour = .data$ink), data = pairs,
                            size = size / ggplot2::.pt, vjust = 0.75) +
    ggplot2::scale_colour_identity()
}

# What the stars of a map of Fst mean; nothing without tests.
stars_told <- function(x, values) {
  if (is.null(attr(values, "p_holm"))) {
    return(if (!is.null(attr(values, "p"))) "*: p <= 0.05")
  }
  permutations <- x$record$settings$permutations
  if (sum(upper.tri(values) & !is.na(attr(values, "p"))) / (permutations + 1) > 0.05) {
    return(paste(permutations, "permutations are too few for a p of 0.05 or less (Holm)"))
  }
  "*: p <= 0.05 (Holm)"
}

tree_plot <- function(x, measure, of, ...) {
  tree <- as.phylo.kva(x, measure, of)
  n <- length(tree$tip.label)
  size <- min(1, label_points(n) / graphics::par("ps"))
  room <- 0.06 * (n + 5) # below the tips, for the bar
  words <- utils::modifyList(list(x = tree, cex = size, font = 1, y.lim = c(1 - room, n),
                                  label.offset = 0.01 * max(ape::node.depth.edgelength(tree))),
                             list(...))
  lying <- is.null(words$type) || words$type %in% c("phylogram", "cladogram")
  if (!lying) words$y.lim <- list(...)$y.lim
  before <- graphics::par(mar = c(3.5, 1, 2.5, 1))
  on.exit(graphics::par(before))
  do.call(ape::plot.phylo, words)
  if (!is.null(tree$node.label)) {
    shown <- ifelse(as.numeric(tree$node.label) >= 50, tree$node.label, "")
    ape::nodelabels(ifelse(is.na(shown), "", shown), frame = "none", cex = 0.8 * size,
                    adj = c(1.1, -0.3), col = "#0072B2")
  }
  if (lying) ape::add.scale.bar(0, 1 - room, cex = 0.8) else ape::add.scale.bar(cex = 0.8)
  graphics::title(paste("Neighbour joining,", measure), cex.main = 1)
  graphics::mtext(paste0("bar: distance ", measure, if (!is.null(tree$node.label))
    "; numbers: bootstrap support, 50 % or more"), side = 1, line = 2, cex = 0.8)
  tree
}

pcoa_plot <- function(x, measure, of) {
  found <- pcoa(x, measure, of)
  if (ncol(found$vectors) < 2) {
    stop("there are fewer than two principal coordinates", call. = FALSE)
  }
  share <- 100 * found$values$Relative_eig[1:2]
  points <- data.frame(x = found$vectors[, 1], y = found$vectors[, 2],
                       name = rownames(found$vectors))
  many <- nrow(points) > 30
  ggplot2::ggplot(points, ggplot2::aes(.data$x, .data$y, label = .data$name)) +
    ggplot2::geom_hline(yintercept = 0, colour = "grey70") +
    ggplot2::geom_vline(xintercept = 0, colour = "grey70") +
    ggplot2::geom_point(colour = "#0072B2", size = if (many) 1.2 else 2.2) +
    ggplot2::geom_text(vjust = -0.7, size = if (many) 2.2 else 3.2, check_overlap = many) +
    ggplot2::scale_x_continuous(expand = ggplot2::expansion(0.12)) +
    ggplot2::scale_y_continuous(expand = ggplot2::expansion(0.08)) +
    ggplot2::labs(x = sprintf("Axis 1 (%.1f %% of the variance)", share[1]),
                  y = sprintf("Axis 2 (%.1f %% of the variance)", share[2]),
                  title = paste("Principal coordinates,", measure),
                  caption = if (many) "names that would overlap are left out") +
    kva_theme()
}

diversity_plot <- function(x, loci) {
  shown <- c(heterozygosity_expected = "Expected heterozygosity",
             heterozygosity_observed = "Observed heterozygosity",
             allelic_richness = "Allelic richness (alleles)",
             allele_number_observed = "Alleles counted")
  cells <- diversity(x)
  if (!is.null(loci)) {
    cells <- locus_rows(x, cells, loci)
  }
  long <- do.call(rbind, lapply(names(shown), function(name) {
    data.frame(population = from_top(cells$population, levels(cells$population)), value = cells[[name]],
               statistic = shown[[name]])
  }))
  long$statistic <- factor(long$statistic, shown)
  long <- long[is.finite(long$value), ]
  means <- stats::aggregate(value ~ population + statistic, long, mean)
  ggplot2::ggplot(long, ggplot2::aes(.data$value, .data$population)) +
    ggplot2::geom_point(colour = "grey60", size = 0.7, alpha = 0.6) +
    ggplot2::geom_point(data = means, colour = "#D55E00", size = 1.8) +
    ggplot2::facet_wrap(~statistic, nrow = 1, scales = "free_x",
                        labeller = ggplot2::label_wrap_gen(16)) +
    ggplot2::scale_y_discrete(drop = FALSE) +
    ggplot2::labs(x = "Value", y = "Population", caption = "grey: a locus; orange: their mean") +
    kva_theme() + population_axis(length(x$populations))
}

alleles_plot <- function(x, loci) {
  rows <- locus_rows(x, rows_of(x, "allele_frequency"), loci)
  rows <- rows[rows$population1 != "Total" & !is.na(rows$value) & rows$value > 0, ]
  if (!nrow(rows)) nothing(x, "allele")
  rows$allele <- as.numeric(rows$replicate)
  rows$population <- from_top(rows$population1, unique(x$populations))
  n <- length(x$populations) * panel_rows(rows)
  ggplot2::ggplot(rows, ggplot2::aes(.data$allele, .data$population, size = .data$value,
                                     colour = .data$value)) +
    ggplot2::geom_point() +
    ggplot2::facet_wrap(~locus, scales = "free_x", nrow = panel_rows(rows)) +
    ggplot2::scale_size_area("Frequency", max_size = min(4, label_points(n) / 2)) +
    ggplot2::scale_colour_viridis_c("Frequency", direction = -1, end = 0.95) +
    ggplot2::guides(colour = ggplot2::guide_legend(), size = ggplot2::guide_legend()) +
    ggplot2::scale_x_continuous(n.breaks = 4, expand = ggplot2::expansion(0.12)) +
    ggplot2::labs(x = "Allele (base pairs, or its code)", y = "Population") +
    kva_theme() + population_axis(n) + upright_x()
}

# Numbers of an x axis that stand, in narrow panels.
upright_x <- function() {
  ggplot2::theme(axis.text.x = ggplot2::element_text(angle = 90, hjust = 1, vjust = 0.5))
}

# Rows of panels, ten loci in a row.
panel_rows <- function(rows) ceiling(length(unique(rows$locus)) / 10)

hetrange_plot <- function(x, loci) {
  rows <- locus_rows(x, rows_of(x, "heterozygosity_range"), loci)
  if (!nrow(rows)) nothing(x, "range of heterozygosity")
  of <- function(which) rows[rows$replicate == which, ]
  ranges <- of("mean")
  ranges$least <- of("min")$value
  ranges$most <- of("max")$value
  ranges$population <- from_top(ranges$population1, unique(x$populations))
  ggplot2::ggplot(ranges[is.finite(ranges$value), ],
                  ggplot2::aes(.data$value, .data$population, xmin = .data$least,
                               xmax = .data$most)) +
    ggplot2::geom_linerange(colour = "#56B4E9", linewidth = 1) +
    ggplot2::geom_point(colour = "#0072B2", size = 1.2) +
    ggplot2::facet_wrap(~locus, nrow = panel_rows(ranges)) +
    ggplot2::scale_x_continuous(limits = c(0, 1), breaks = c(0, 0.5, 1)) +
    ggplot2::labs(x = "Heterozygosity", y = "Population",
                  caption = "point: mean of the draws; bar: least to largest draw") +
    kva_theme() + population_axis(length(x$populations) * panel_rows(ranges)) + upright_x()
}

remarks <- function() {
  c(report_gap_large = "large gap", report_step_incompatible = "gap is no multiple of the repeat",
    report_step_too_small = "step below the repeat", report_step_too_large =
      "step above the repeat", report_allele_short = "very short allele",
    report_allele_long = "very long allele", report_monomorphic = "fewer than two alleles")
}

errors_plot <- function(x, loci) {
  alleles <- locus_rows(x, rows_of(x, "allele_count"), loci)
  alleles <- alleles[alleles$population1 == "Total" & !is.na(alleles$value), ]
  if (!nrow(alleles)) nothing(x, "allele")
  alleles$allele <- as.numeric(alleles$replicate)
  found <- x$table[x$table$statistic %in% names(remarks()), ]
  text <- vapply(levels(alleles$locus), function(locus) {
    of <- found[found$locus == locus, ]
    paste(sprintf("%s (%s)", remarks()[of$statistic], of$value), collapse = "\n")
  }, "")
  alleles$remarked <- ifelse(nzchar(text[as.character(alleles$locus)]), "remarked on", "no remark")
  notes <- unique(data.frame(locus = alleles$locus, text = text[as.character(alleles$locus)]))
  ggplot2::ggplot(alleles, ggplot2::aes(.data$allele, .data$value)) +
    ggplot2::geom_segment(ggplot2::aes(xend = .data$allele, yend = 0, colour = .data$remarked),
                          linewidth = 1.2) +
    ggplot2::geom_point(ggplot2::aes(colour = .data$remarked), size = 0.9) +
    ggplot2::geom_text(ggplot2::aes(x = Inf, y = Inf, label = .data$text), data = notes, hjust = 1.05,
                       vjust = 1.3, size = 2.6, lineheight = 0.9) +
    ggplot2::facet_wrap(~locus, scales = "free") +
    ggplot2::scale_colour_manual("Error report", values = c("remarked on" = "#D55E00",
                                                            "no remark" = "#0072B2")) +
    ggplot2::scale_y_continuous(limits = c(0, NA), expand = ggplot2::expansion(c(0, 0.35))) +
    ggplot2::labs(x = "Allele (base pairs, or its code)", y = "Gene copies, all populations") +
    kva_theme() + ggplot2::theme(legend.position = "bottom")
}
