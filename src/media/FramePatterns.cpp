#include "media/FramePatterns.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>

#include "options/NameCompare.h"

namespace quillet {

namespace {

constexpr uint32_t kTile = 128;

// Value noise on a lattice of `cells` per tile that wraps at the tile's
// edge, smoothly interpolated: the basis of every pattern's grain.
class TileNoise {
public:
    TileNoise(uint32_t cells, uint32_t seed) : cells_(cells), values_(cells * cells) {
        uint32_t s = seed * 2654435761u + 1;
        for (float& v : values_) {
            s ^= s << 13;
            s ^= s >> 17;
            s ^= s << 5;
            v = static_cast<float>(s & 0xFFFF) / 65535.0f;
        }
    }
    // x, y in tile pixels; result in 0..1.
    float At(double x, double y) const {
        const double fx = x * cells_ / kTile, fy = y * cells_ / kTile;
        const auto x0 = static_cast<int64_t>(std::floor(fx)), y0 = static_cast<int64_t>(std::floor(fy));
        const double tx = Smooth(fx - x0), ty = Smooth(fy - y0);
        auto v = [&](int64_t cx, int64_t cy) {
            const auto n = static_cast<int64_t>(cells_);
            return values_[static_cast<size_t>(((cy % n + n) % n) * n + ((cx % n + n) % n))];
        };
        const double top = v(x0, y0) + (v(x0 + 1, y0) - v(x0, y0)) * tx;
        const double bottom = v(x0, y0 + 1) + (v(x0 + 1, y0 + 1) - v(x0, y0 + 1)) * tx;
        return static_cast<float>(top + (bottom - top) * ty);
    }

private:
    static double Smooth(double t) { return t * t * (3 - 2 * t); }
    uint32_t cells_;
    std::vector<float> values_;
};

// Octaves of noise at 4, 8, 16 and 32 cells, each half as strong.
double Turbulence(const TileNoise* octaves, double x, double y) {
    double sum = 0, weight = 0.5;
    for (int i = 0; i < 4; ++i, weight *= 0.5) sum += octaves[i].At(x, y) * weight;
    return sum / 0.9375;
}

struct Rgb {
    double r, g, b;
};

Rgb Mix(Rgb a, Rgb b, double t) {
    t = std::clamp(t, 0.0, 1.0);
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

using Shader = std::function<Rgb(double x, double y, const TileNoise* noise)>;

// Every shader's stripes and rings repeat a whole number of times across
// the tile, so the tile repeats without a seam.
const struct Pattern {
    const char* name;
    Shader shade;
} kPatterns[] = {
    {"Wood",
     [](double x, double y, const TileNoise* n) {
         // Grain running across: bands bent by the noise.
         const double bend = Turbulence(n, x, y) * 6.0;
         const double band = 0.5 + 0.5 * std::sin((y / kTile * 8 + bend) * 2 * std::numbers::pi);
         return Mix({92, 52, 24}, {168, 112, 62}, band * 0.8 + n[3].At(x, y * 0.25) * 0.2);
     }},
    {"Marble",
     [](double x, double y, const TileNoise* n) {
         const double vein = std::abs(std::sin(((x + y) / kTile * 2 + Turbulence(n, x, y) * 3) * std::numbers::pi));
         return Mix({70, 74, 80}, {236, 234, 228}, std::pow(vein, 0.35));
     }},
    {"Linen",
     [](double x, double y, const TileNoise* n) {
         // Threads every 4 pixels each way, a little uneven.
         const double warp = 0.5 + 0.5 * std::cos(x / 4 * 2 * std::numbers::pi);
         const double weft = 0.5 + 0.5 * std::cos(y / 4 * 2 * std::numbers::pi);
         const double t = 0.55 * std::max(warp, weft) + 0.45 * n[3].At(x, y);
         return Mix({178, 164, 136}, {232, 222, 198}, t);
     }},
    {"Brick",
     [](double x, double y, const TileNoise* n) {
         // Bricks 32 x 16 with 2-pixel mortar, every other row shifted by half.
         const auto row = static_cast<int>(y) / 16;
         const double bx = std::fmod(x + (row % 2 ? 16.0 : 0.0), 32.0), by = std::fmod(y, 16.0);
         if (bx < 2 || by < 2) return Mix({170, 166, 158}, {200, 196, 188}, n[2].At(x, y));
         const double shade = n[0].At(x - bx + 8, y - by + 8);  // one tone per brick
         return Mix({120, 42, 30}, {176, 76, 52}, shade * 0.7 + n[3].At(x, y) * 0.3);
     }},
};

}  // namespace

const std::vector<std::string>& FramePatternNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> v;
        for (const Pattern& p : kPatterns) v.emplace_back(p.name);
        return v;
    }();
    return names;
}

Bitmap MakeFramePattern(const std::string& name) {
    Bitmap tile;
    for (uint32_t k = 0; k < std::size(kPatterns); ++k) {
        if (!EqualsNoCase(name, kPatterns[k].name)) continue;
        const TileNoise noise[4] = {{4, k * 4 + 1}, {8, k * 4 + 2}, {16, k * 4 + 3}, {32, k * 4 + 4}};
        tile.Create(kTile, kTile, 24);
        for (uint32_t y = 0; y < kTile; ++y) {
            uint8_t* out = tile.row(y);
            for (uint32_t x = 0; x < kTile; ++x) {
                const Rgb c = kPatterns[k].shade(x, y, noise);
                *out++ = static_cast<uint8_t>(std::clamp(c.r, 0.0, 255.0));
                *out++ = static_cast<uint8_t>(std::clamp(c.g, 0.0, 255.0));
                *out++ = static_cast<uint8_t>(std::clamp(c.b, 0.0, 255.0));
            }
        }
        break;
    }
    return tile;
}

}  // namespace quillet
