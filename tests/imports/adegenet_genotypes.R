# Prints the genotypes of files as adegenet imports them: for each file a line with its name, then one
# for each individual: population and genotypes, "NA" for missing ones.
#
# Usage: Rscript adegenet_genotypes.R
# Without adegenet: exit status 77.

if (!suppressMessages(suppressWarnings(require(adegenet, quietly = TRUE)))) {
    quit(status = 77)
}

tell <- function(name, data) {
    cat("file", system.file("files", name, package = "adegenet"), "\n", sep = "\t")
    table <- genind2df(data, sep = "/")
    for (row in seq_len(nrow(table))) {
        cat(unlist(lapply(table[row, ], as.character)), "\n", sep = "\t")
    }
}

path <- function(name) system.file("files", name, package = "adegenet")
tell("nancycats.gen", suppressWarnings(read.genepop(path("nancycats.gen"), quiet = TRUE)))
tell("nancycats.dat", read.fstat(path("nancycats.dat"), quiet = TRUE))
tell("nancycats.gtx", read.genetix(path("nancycats.gtx"), quiet = TRUE))
tell("nancycats.str",
     read.structure(path("nancycats.str"), n.ind = 237, n.loc = 9, onerowperind = FALSE,
                    col.lab = 1, col.pop = 2, col.others = 3, row.marknames = 0, NA.char = "-9",
                    ask = FALSE, quiet = TRUE))
