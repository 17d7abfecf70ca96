// "Add Noise": every channel independently replaced by a noisy value.
#include <cmath>
#include <cstdlib>

#include "media/filters/FilterBase.h"

namespace quillet::filters {

namespace {

const char* const kTypeKeywords[] = {"uniform", "gaussian", "mult_gaussian", "impulse", "laplacian", "poisson"};
const char* const kTypeItems[] = {"Uniform", "Gaussian", "Multiplicative Gaussian", "Impulse", "Laplacian", "Poisson"};

// Uniform draws in [0, 1] on the 15-bit scale the noise constants were tuned
// for. A filter run takes its seed from the process's rand() sequence (so
// two exports differ) and then draws from a generator of its own, which
// needs no lock when slides are prepared on several threads.
thread_local uint32_t tState = 1;
inline double draw() {
    tState = tState * 1103515245u + 12345u;
    return ((tState >> 16) & 0x7FFF) * 3.051850947599719e-05;
}

// A draw that is safe to take the logarithm of.
inline double drawPositive() {
    double u = draw();
    return u > 0.0 ? u : 1e-6;
}

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::List, "Type:", "type", 1, 0, 5, kTypeItems, kTypeKeywords),
};

class AddNoise : public Cloneable<AddNoise, ImageFilter> {
public:
    AddNoise() : Cloneable("Add Noise", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const int type = intValue(0);
        tState = static_cast<uint32_t>(std::rand());
        uint8_t* p = bitmap.pixels();
        const size_t n = bitmap.byteSize();
        for (size_t i = 0; i < n; ++i) {
            double v = NoiseValue(p[i], type);
            p[i] = static_cast<uint8_t>(v + 0.5);
        }
        return true;
    }
};

}  // namespace

double NoiseValue(double p, int type) {
    double v;
    switch (type) {
        case 1: {  // Gaussian: a signal-dependent spread plus a fixed one (Box-Muller pair).
            double r = std::sqrt(-2.0 * std::log(drawPositive()));
            double t = 2.0 * M_PI * draw();
            v = p + std::sqrt(p) * 4.0 * r * std::cos(t) + 20.0 * r * std::sin(t);
            break;
        }
        case 2: {  // Multiplicative Gaussian: the value scaled by 1 + 0.5 g.
            double r = std::sqrt(-2.0 * std::log(drawPositive()));
            double t = 2.0 * M_PI * draw();
            v = p * (1.0 + 0.5 * r * std::cos(t));
            break;
        }
        case 3: {  // Impulse: salt and pepper.
            double u = draw();
            v = u < 0.05 ? 0.0 : (u >= 0.95 ? 255.0 : p);
            break;
        }
        case 4: {  // Laplacian: logarithmic tails either side, saturating at the extremes.
            double u = draw();
            if (u <= 0.5) {
                v = u <= 1e-05 ? p - 255.0 : p + 10.0 * std::log(2.0 * u);
            } else {
                double q = 1.0 - u;
                v = q <= 5e-06 ? p + 255.0 : p - 10.0 * std::log(2.0 * q);
            }
            break;
        }
        case 5: {  // Poisson with mean 0.05 p, scaled back to the value's range.
            const double limit = std::exp(-0.05 * p);
            int k = 0;
            double product = 1.0;
            do {
                ++k;
                product *= draw();
            } while (product > limit && k < 10000);
            v = (k - 1) / 0.05;
            break;
        }
        default:  // Uniform, also for unknown types.
            v = p + 20.0 * (2.0 * draw() - 1.0);
            break;
    }
    if (v < 0.0) v = 0.0;
    if (v > 255.0) v = 255.0;
    return v;
}

std::unique_ptr<ImageFilter> MakeAddNoise() { return std::make_unique<AddNoise>(); }

}  // namespace quillet::filters
