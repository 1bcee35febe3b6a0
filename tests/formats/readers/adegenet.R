# Opens the Genepop files and the structure file of an export with adegenet, and prints what it
# found: a line per file with its name, then the individuals, populations, loci, and the alleles of
# each locus.
#
# Usage: Rscript adegenet.R GENEPOP GENEPOP_RD STRUCTURE INDIVIDUALS LOCI
# Without adegenet: exit status 77.

if (!suppressMessages(suppressWarnings(require(adegenet, quietly = TRUE)))) {
    quit(status = 77)
}

tell <- function(file, data, populations) {
    cat(basename(file), nInd(data), populations, nLoc(data), nAll(data), "\n")
}

arguments <- commandArgs(trailingOnly = TRUE)

for (file in arguments[1:2]) {
    # The individuals of a population have one label; adegenet warns that it numbers them.
    data <- suppressWarnings(read.genepop(file, ncode = 2, quiet = TRUE))
    tell(file, data, nPop(data))
}

# read.structure insists on the extension .stru. The populations stand in the labels alone, in
# front of three digits.
file <- arguments[3]
copy <- file.path(tempdir(), "copy.stru")
invisible(file.copy(file, copy))
data <- read.structure(copy, n.ind = as.integer(arguments[4]), n.loc = as.integer(arguments[5]),
                       onerowperind = FALSE, col.lab = 1, col.pop = 0, row.marknames = 0,
                       NA.char = "-9", ask = FALSE, quiet = TRUE)
tell(file, data, length(unique(sub("[0-9]{3}$", "", indNames(data)))))
