# The program kvatool: where it is, and how it is called.

#' The program kvatool
#'
#' Looks for `kvatool`: first the option `kva.tool`, then the environment variable
#' `KVATOOL`, then the path.
#'
#' @param must Whether to stop where there is none.
#' @return The program's file name, or `""` where there is none.
#' @examples
#' kva_tool(must = FALSE)
#' @export
kva_tool <- function(must = TRUE) {
  named <- c(getOption("kva.tool", ""), Sys.getenv("KVATOOL"))
  named <- named[nzchar(named)]
  tool <- if (length(named)) path.expand(named[1]) else unname(Sys.which("kvatool"))
  if (file.access(tool, 1) == 0 && !dir.exists(tool)) {
    return(tool)
  }
  if (must) {
    stop("the program kvatool was not found", if (nzchar(tool)) paste0(" at '", tool, "'"),
         "; install it on the path, or name it with options(kva.tool = ) or the ",
         "environment variable KVATOOL", call. = FALSE)
  }
  ""
}

# Runs kvatool with these words; its standard error comes line by line to `tell` while it
# runs. Gives the exit status and all lines, standard output among them.
run_tool <- function(words, tell = function(line) NULL) {
  command <- paste(c(shQuote(kva_tool()), shQuote(words), "2>&1"), collapse = " ")
  running <- pipe(command, "rb") # as text it would come in blocks
  open <- TRUE
  on.exit(if (open) close(running))
  lines <- character()
  while (length(line <- readLines(running, 1L, warn = FALSE))) {
    lines <- c(lines, line)
    tell(line)
  }
  open <- FALSE
  status <- close(running) # that of wait(): the exit status stands in the second byte
  status <- if (is.null(status)) 0L else as.integer(status)
  list(status = if (status > 255L) status %/% 256L else status, lines = lines)
}
