#include "stats/NumberAllelesExp.h"

namespace kva {

namespace {

constexpr double kAllDifferent = 0.99999; // h from here on: as many alleles as copies
constexpr double kThetaLimit = 0.999999;  // h above: theta of the sample size

// theta = (1/q^2 - 1)/2
double thetaOfHomozygosity(double q) {
    return (1.0 / (q * q) - 1.0) * 0.5;
}

double expectedStepwise(int n, double h) {
    const double q = 1.0 - h;
    const double theta = thetaOfHomozygosity(q);
    const double b = (q * theta + q - 1.0) / h;
    double P = 1.0;
    for (int x = 0; x < n; ++x) {
        P *= (x + theta) / (x + theta + b);
    }
    return (theta + b) * (1.0 - P) / b;
}

double expectedInfinite(int n, double h) {
    const double q = 1.0 - h;
    const double t = h / q;
    double S = 0.0;
    for (int x = 1; x < n; ++x) {
        S += t / (t + x);
    }
    return S + 1.0;
}

} // namespace

int CalcNumberAllelesExp(double& smm, double& iam, int n, double& h) {
    smm = -1.0;
    iam = -1.0;
    if (n < 2) {
        return -1;
    }
    if (h < 0) {
        return -2;
    }
    if (h >= kAllDifferent) {
        smm = n;
        iam = n;
    } else if (h == 0) {
        smm = 1.0;
        iam = 1.0;
    } else {
        smm = expectedStepwise(n, h);
        iam = expectedInfinite(n, h);
    }
    return 0;
}

double CalcThetaSMM(double h, int n) {
    if (h < 0) {
        return -1.0;
    }
    const double copies = n;
    if (h > kThetaLimit) {
        return thetaOfHomozygosity(2.0 / (copies * (copies + 1.0)));
    }
    if (h == 0) {
        const double m = copies + 1.0;
        const double limit =
            (m / copies) * (1.0 - (copies * copies) / (m * m) - 1.0 / (m * m)); // 2/m
        return thetaOfHomozygosity(1.0 - limit);
    }
    return thetaOfHomozygosity(1.0 - h);
}

} // namespace kva
