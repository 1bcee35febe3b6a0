# Writes the cattle of adegenet's microbov (704 individuals, 15 breeds, 30 loci) twice: as a data file of
# ours, "microbov.txt", and as PHYLIP's table of allele frequencies of the breeds, "infile".
suppressMessages(library(adegenet))
data(microbov)

genotypes <- genind2df(microbov, sep = "/", usepop = FALSE)
loci <- locNames(microbov)
doubled <- function(words) paste(rep(words, each = 2), collapse = "\t")
alleles <- function(genotype) {
  both <- strsplit(ifelse(is.na(genotype), "/", genotype), "/")
  unlist(lapply(both, function(pair) c(pair, "", "")[1:2]))
}
individual <- function(i) {
  cells <- alleles(as.character(genotypes[i, ]))
  paste0(pop(microbov)[i], "\td\t0\t", paste(cells, collapse = "\t"))
}
writeLines(c(paste0("2\t\t\t", doubled(rep("2", length(loci)))),
             paste0("\t\t\t", doubled(rep("0", length(loci)))),
             paste0("\t\t\t", paste0(loci, "\t", loci, "b", collapse = "\t")),
             vapply(order(as.integer(pop(microbov))), individual, "")),
           "microbov.txt")

breeds <- genind2genpop(microbov, quiet = TRUE)
frequencies <- makefreq(breeds, quiet = TRUE)
numbers <- as.integer(table(factor(locFac(breeds), levels = unique(locFac(breeds)))))
lines <- sprintf("%5d %5d", nrow(frequencies), length(numbers))
lines <- c(lines, paste(numbers, collapse = " "))
for (breed in rownames(frequencies)) {
  cells <- sprintf("%.5f", frequencies[breed, ])
  rows <- tapply(cells, (seq_along(cells) - 1) %/% 10, paste, collapse = " ")
  lines <- c(lines, paste0(formatC(substr(breed, 1, 10), width = -10), rows[1]), paste0("  ", rows[-1]))
}
writeLines(lines, "infile")
