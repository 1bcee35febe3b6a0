#!/usr/bin/env Rscript
# What adegenet gives beside the sheets of kvatool, for docs/results.md: the largest difference of each pair of
# tables. Half-missing genotypes are taken out first.
#
# Usage: peers.R DATA        two columns per locus, three header rows

suppressMessages(library(adegenet))

data <- commandArgs(trailingOnly = TRUE)[1]
lines <- readLines(data)
cells <- read.delim(data, header = FALSE, skip = 3, colClasses = "character")
loci <- strsplit(lines[3], "\t")[[1]][-(1:3)][c(TRUE, FALSE)]
first <- 2 * seq_along(loci) + 2
for (column in first) {
    half <- (cells[[column]] == "") != (cells[[column + 1]] == "")
    cells[half, c(column, column + 1)] <- ""
}
writeLines(c(lines[1:3], do.call(paste, c(unname(cells), sep = "\t"))), "whole.txt")
status <- system2("kvatool", c("run", "whole.txt", "-o", "whole", "--force", "--minus-log", "--quiet",
                               "--distances", "population:DAN,DSG,individual:POSA"))
stopifnot(status == 0)

genotype <- function(column) {
    pair <- paste(cells[[column]], cells[[column + 1]], sep = "/")
    ifelse(pair == "/", NA, pair)
}
genotypes <- sapply(first, genotype)
colnames(genotypes) <- loci
rownames(genotypes) <- seq_len(nrow(genotypes))
x <- df2genind(genotypes, sep = "/", ploidy = 2, pop = factor(cells$V1, levels = unique(cells$V1)))
populations <- genind2genpop(x, quiet = TRUE)

square <- function(name) {
    text <- readLines(file.path("whole", "Distance_data", name))
    rows <- strsplit(trimws(sub("^.{5}[0-9]{3} |^.{10}", "", text[-1], perl = TRUE)), " +")
    matrix(as.numeric(unlist(rows)), length(rows[[1]]), byrow = TRUE)
}
sheet <- function(...) {
    text <- strsplit(readLines(file.path("whole", ...)), "\t")
    Filter(length, text)
}
beside <- function(what, ours, theirs) {
    cat(sprintf("%-48s %8.5f\n", what, max(abs(ours - theirs))))
}

logarithms <- square("POSA_Ind.txt")
individuals <- ifelse(logarithms == 10, 1, 1 - exp(-logarithms)) # 10: no common allele
beside("POSA_Ind, 1 - propShared()", individuals, 1 - propShared(x))
beside("DAN_Pop, square of dist.genpop(method = 2)", square("DAN_Pop.txt"),
       as.matrix(dist.genpop(populations, 2))^2)
beside("DSG_Pop -ln, dist.genpop(method = 1)", square("DSG_Pop.txt"),
       as.matrix(dist.genpop(populations, 1)))

gst <- sheet("Single_data", "GST.xls")
row <- function(name) as.numeric(Find(function(cells) cells[1] == name, gst)[-1])
hs <- sapply(seppop(x), function(one) mean(summary(one)$Hexp))
beside("Hs of GST.xls, mean of Hs()", mean(row("Hs")), mean(Hs(x)))
beside("Ht of GST.xls, summary()$Hexp", row("Ht"), summary(x)$Hexp)
summary_rows <- do.call(rbind, lapply(sheet("Summary.xls")[-1], head, 25))
of <- function(population, column) as.numeric(summary_rows[summary_rows[, 3] == population, column])
alder <- seppop(x)$Alder
beside("Het obs of Alder, summary()$Hobs", of("Alder", 4), summary(alder)$Hobs)
n <- 2 * as.numeric(summary_rows[summary_rows[, 3] == "Alder", 18]) / 2
beside("Het exp of Alder, n/(n - 1) summary()$Hexp", of("Alder", 5), n / (n - 1) * summary(alder)$Hexp)
