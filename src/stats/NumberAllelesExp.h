// What a heterozygosity makes expect: theta and the number of alleles, under the
// stepwise mutation model (SMM) and the infinite-alleles model (IAM).
#ifndef KVA_STATS_NUMBERALLELESEXP_H
#define KVA_STATS_NUMBERALLELESEXP_H

namespace kva {

// Numbers of alleles expected in a sample of `n` independent gene copies with
// heterozygosity `h`, which stays as it is: `smm` by Kimura and Ohta (1975), `iam` by Ewens
// (1972). 0; -1 if n < 2; -2 if h < 0; both outputs are -1.0 then. h of 0.99999 and above
// gives n for both, h of exactly 0 gives 1.
int CalcNumberAllelesExp(double& smm, double& iam, int n, double& h);

// Theta of the stepwise mutation model, (1/(1-h)^2 - 1)/2 of a heterozygosity `h` (Ohta and
// Kimura 1973), with its two limits replaced by what the sample size `n`, in independent gene
// copies, allows: h above 0.999999 counts as 1 - 2/(n(n+1)), h of exactly 0 as 2/(n+1). -1.0 for
// a negative h. n is not tested: below 2 the two limits make no sense.
double CalcThetaSMM(double h, int n);

} // namespace kva

#endif
