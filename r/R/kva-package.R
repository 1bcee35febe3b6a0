#' Population genetics of microsatellites with the program kva
#'
#' [kva()] runs `kvatool run` on genotypes, [read_kva()] reads a result folder of
#' `kva` or `kvatool`. [fst()], [distances()], [diversity()], [as.phylo()] and [pcoa()]
#' take the results out, [plot()][plot.kva] draws them, [write_kva()] writes a data file.
#'
#' The program is looked for at three places, see [kva_tool()].
#'
#' @importFrom ggplot2 .data
#' @name kva-package
#' @keywords internal
NULL
