// A bracketed root of one equation: secant and inverse quadratic steps, with bisection where these converge badly
// (Brent's method). It cannot leave the bracket, so the flashes that use it cannot diverge.
#pragma once

#include <cmath>
#include <limits>
#include <utility>

#include "samples/thermo/errors.h"

namespace zelt::sample {

// The x in [lower, upper] where f changes sign, to the precision of doubles. If f is zero at an end, that end is the
// result. Throws NoSolution when f has the same sign at both ends or is NaN at one of them, or when more iterations are
// needed than allowed.
template <class Function>
double FindRoot(Function&& f, double lower, double upper, const char* what, long iterations = 200)
{
    double a = lower, b = upper;
    double fa = f(a), fb = f(b);
    if (fa == 0) return a;
    if (fb == 0) return b;
    if (!(fa * fb < 0)) throw NoSolution(what);
    double c = a, fc = fa, step = b - a, previousStep = step;
    for (long iteration = 0; iteration < iterations; ++iteration) {
        if (std::fabs(fc) < std::fabs(fb)) {
            a = b, b = c, c = a;
            fa = fb, fb = fc, fc = fa;
        }
        const double tolerance = 2 * std::numeric_limits<double>::epsilon() * std::fabs(b);
        const double half = 0.5 * (c - b);
        if (fb == 0 || std::fabs(half) <= tolerance) return b;
        if (std::fabs(previousStep) >= tolerance && std::fabs(fa) > std::fabs(fb)) {
            const double s = fb / fa;
            double p, q;
            if (a == c) {
                p = 2 * half * s;
                q = 1 - s;
            } else {
                const double t = fa / fc, r = fb / fc;
                p = s * (2 * half * t * (t - r) - (b - a) * (r - 1));
                q = (t - 1) * (r - 1) * (s - 1);
            }
            if (p > 0) q = -q;
            p = std::fabs(p);
            if (2 * p < std::fmin(3 * half * q - std::fabs(tolerance * q), std::fabs(previousStep * q))) {
                previousStep = step;
                step = p / q;
            } else {
                step = previousStep = half;
            }
        } else {
            step = previousStep = half;
        }
        a = b;
        fa = fb;
        b += std::fabs(step) > tolerance ? step : std::copysign(tolerance, half);
        fb = f(b);
        if ((fb > 0) == (fc > 0)) {
            c = a;
            fc = fa;
            step = previousStep = b - a;
        }
    }
    throw NoSolution(what);
}

}  // namespace zelt::sample
