library(testthat)
library(kva)

test_check("kva")
