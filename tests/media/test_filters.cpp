#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "media/Bitmap.h"
#include "media/ImageFilter.h"

namespace quillet {
namespace {

std::unique_ptr<ImageFilter> make(const char* name, double value = NAN, double second = NAN) {
    auto f = ImageFilterRegistry::instance().Create(name);
    EXPECT_TRUE(f) << name;
    if (!std::isnan(value)) f->SetOptionValue(0, value);
    if (!std::isnan(second)) f->SetOptionValue(1, second);
    return f;
}

Bitmap flat(uint32_t w, uint32_t h, uint8_t r, uint8_t g, uint8_t b) {
    Bitmap bm;
    bm.Create(w, h, 24);
    for (size_t i = 0; i < bm.byteSize(); i += 3) {
        bm.pixels()[i] = r;
        bm.pixels()[i + 1] = g;
        bm.pixels()[i + 2] = b;
    }
    return bm;
}

std::array<int, 3> px(const Bitmap& b, uint32_t x, uint32_t y) {
    const uint8_t* p = b.row(y) + x * 3;
    return {p[0], p[1], p[2]};
}

std::array<int, 3> applied(const char* name, std::array<int, 3> in, double value = NAN, double second = NAN) {
    Bitmap b = flat(1, 1, uint8_t(in[0]), uint8_t(in[1]), uint8_t(in[2]));
    EXPECT_TRUE(make(name, value, second)->Apply(b));
    return px(b, 0, 0);
}

using C = std::array<int, 3>;

TEST(PixelFilters, NumbersAsDescribed) {
    EXPECT_EQ(applied("Black & White", {255, 255, 254}, 255), (C{0, 0, 0}));
    EXPECT_EQ(applied("Black & White", {100, 100, 102}), (C{0, 0, 0}));      // mean 100 == threshold
    EXPECT_EQ(applied("Black & White", {100, 100, 103}), (C{255, 255, 255}));  // mean 101
    EXPECT_EQ(applied("Grayscale", {200, 30, 40}), (C{88, 88, 88}));
    EXPECT_EQ(applied("Sepia", {255, 255, 255}), (C{255, 241, 199}));
    EXPECT_EQ(applied("Sepia", {0, 0, 0}), (C{49, 0, 0}));
    EXPECT_EQ(applied("Sepia", {100, 100, 100}), (C{149, 86, 44}));
    EXPECT_EQ(applied("Solarize", {51, 50, 255}), (C{204, 50, 0}));
    EXPECT_EQ(applied("Brightness/Contrast", {0, 127, 255}), (C{0, 127, 255}));
    EXPECT_EQ(applied("Brightness/Contrast", {0, 127, 255}, 50, 0), (C{63, 190, 255}));   // offset floor(63.5)
    EXPECT_EQ(applied("Brightness/Contrast", {0, 127, 255}, -1, 0), (C{0, 125, 253}));    // floor(-1.27) = -2
    EXPECT_EQ(applied("Brightness/Contrast", {10, 127, 250}, 0, -100), (C{127, 127, 127}));
    EXPECT_EQ(applied("Brightness/Contrast", {100, 127, 150}, 0, 100), (C{73, 127, 173}));  // doubled about 127
}

TEST(PixelFilters, NoiseTypesSpreadAsNamed) {
    std::srand(7);
    for (int type = 0; type <= 5; ++type) {
        SCOPED_TRACE(type);
        Bitmap b = flat(100, 100, 128, 128, 128);
        ASSERT_TRUE(make("Add Noise", type)->Apply(b));
        double sum = 0, sq = 0;
        int black = 0, white = 0, changed = 0;
        for (size_t i = 0; i < b.byteSize(); ++i) {
            const int v = b.pixels()[i];
            sum += v;
            sq += (v - 128.0) * (v - 128.0);
            black += v == 0;
            white += v == 255;
            changed += v != 128;
        }
        const double n = static_cast<double>(b.byteSize());
        const double mean = sum / n, sd = std::sqrt(sq / n);
        switch (type) {
            case 0:  // uniform within +-20
                EXPECT_NEAR(mean, 128, 1.0);
                EXPECT_NEAR(sd, 20 / std::sqrt(3.0), 1.0);
                EXPECT_EQ(black + white, 0);
                break;
            case 1:  // sqrt(128)*4 and 20 combined
                EXPECT_NEAR(mean, 128, 2.0);
                EXPECT_NEAR(sd, std::sqrt(128.0 * 16 + 400), 4.0);
                break;
            case 2:  // half the value as spread
                EXPECT_NEAR(sd, 62, 8.0);  // clipping at 0 and 255 trims it a little
                break;
            case 3:  // 5% each way, the rest untouched
                EXPECT_NEAR(black / n, 0.05, 0.01);
                EXPECT_NEAR(white / n, 0.05, 0.01);
                EXPECT_NEAR(changed / n, 0.10, 0.01);
                break;
            case 4:  // Laplacian of scale 10: sd = 10 * sqrt(2)
                EXPECT_NEAR(mean, 128, 1.0);
                EXPECT_NEAR(sd, 14.1, 1.5);
                break;
            case 5:  // Poisson of mean 6.4, scaled by 20: sd = sqrt(128 * 20)
                EXPECT_NEAR(mean, 128, 3.0);
                EXPECT_NEAR(sd, std::sqrt(128.0 * 20), 6.0);
                break;
        }
    }
    // Every channel is drawn on its own.
    Bitmap b = flat(50, 50, 128, 128, 128);
    make("Add Noise", 1)->Apply(b);
    int grey = 0;
    for (size_t i = 0; i < b.byteSize(); i += 3) grey += b.pixels()[i] == b.pixels()[i + 1] && b.pixels()[i] == b.pixels()[i + 2];
    EXPECT_LT(grey, 50);
}

TEST(NeighbourhoodFilters, FlatPicturesAndSinglePixels) {
    const auto& r = ImageFilterRegistry::instance();
    for (size_t i = 0; i < r.count(); ++i) {
        const std::string name = r.At(i)->name();
        SCOPED_TRACE(name);
        auto f = r.At(i)->Clone();
        // Tiny and odd sizes never crash.
        for (auto [w, h] : {std::pair{1u, 1u}, {2u, 1u}, {1u, 7u}, {3u, 2u}}) {
            Bitmap b = flat(w, h, 90, 120, 150);
            EXPECT_TRUE(f->Apply(b));
        }
        // A flat picture stays flat under the smoothing and geometric filters.
        if (name == "Blur" || name == "Gaussian Blur" || name == "Median" || name == "Despeckle" ||
            name == "Reduce Noise" || name == "Sharpen" || name == "Motion Blur" || name == "Oil Paint" ||
            name == "Swirl" || name == "Implode") {
            Bitmap b = flat(37, 23, 90, 120, 150);
            f->Apply(b);
            for (uint32_t y = 0; y < 23; ++y)
                for (uint32_t x = 0; x < 37; ++x) ASSERT_EQ(px(b, x, y), (C{90, 120, 150})) << x << "," << y;
        }
        // Anything but 24 bits is refused.
        Bitmap rgba;
        rgba.Create(4, 4, 32);
        EXPECT_FALSE(f->Apply(rgba));
        Bitmap none;
        EXPECT_FALSE(f->Apply(none));
    }
}

TEST(NeighbourhoodFilters, EachDoesWhatItsNameSays) {
    // A dark picture with a light square in the middle and one white speck.
    auto scene = [] {
        Bitmap b = flat(40, 40, 40, 40, 40);
        for (uint32_t y = 12; y < 28; ++y)
            for (uint32_t x = 12; x < 28; ++x) std::memset(b.row(y) + x * 3, 200, 3);
        std::memset(b.row(4) + 4 * 3, 255, 3);
        return b;
    };
    auto run = [&](const char* name, double v = NAN) {
        Bitmap b = scene();
        EXPECT_TRUE(make(name, v)->Apply(b));
        return b;
    };
    Bitmap d = run("Despeckle");
    EXPECT_EQ(px(d, 4, 4), (C{40, 40, 40}));       // the speck is gone
    EXPECT_EQ(px(d, 12, 12), (C{200, 200, 200}));  // the square's corner stays
    Bitmap m = run("Median", 20);
    EXPECT_EQ(px(m, 4, 4), (C{40, 40, 40}));
    EXPECT_EQ(px(m, 20, 20), (C{200, 200, 200}));
    Bitmap bl = run("Blur");
    EXPECT_GT(px(bl, 11, 20)[0], 40);   // light bleeds out of the square
    EXPECT_LT(px(bl, 12, 20)[0], 200);
    EXPECT_LT(px(bl, 4, 4)[0], 255);
    Bitmap g = run("Gaussian Blur");
    EXPECT_GT(px(g, 11, 20)[0], 40);
    Bitmap s = run("Sharpen");
    EXPECT_EQ(px(s, 12, 20)[0], 255);   // overshoot on the light side
    EXPECT_EQ(px(s, 11, 20)[0], 0);     // and on the dark side
    Bitmap e = run("Edge");
    EXPECT_EQ(px(e, 20, 20), (C{0, 0, 0}));  // flat inside: black
    EXPECT_EQ(px(e, 2, 30), (C{0, 0, 0}));
    EXPECT_EQ(px(e, 12, 20)[0], 255);        // the border lights up
    Bitmap em = run("Emboss");
    EXPECT_EQ(px(em, 20, 20), (C{128, 128, 128}));
    EXPECT_NE(px(em, 12, 20)[0], 128);
    Bitmap mb = run("Motion Blur");
    EXPECT_GT(px(mb, 30, 20)[0], 40);   // a streak to the right of the square
    EXPECT_EQ(px(mb, 10, 20)[0], 40);   // nothing to its left
    Bitmap rn = run("Reduce Noise");
    EXPECT_EQ(px(rn, 12, 20)[0], 200);  // the edge is kept
    Bitmap oil = run("Oil Paint", 30);
    EXPECT_EQ(px(oil, 4, 4)[0], 40);    // detail flattened into the common colour
    EXPECT_EQ(px(oil, 20, 20)[0], 200);
    Bitmap rb = run("Raise Borders", 5);
    EXPECT_GT(px(rb, 20, 1)[0], 40);    // top lit
    EXPECT_LT(px(rb, 20, 38)[0], 40);   // bottom in shadow
    EXPECT_GT(px(rb, 1, 20)[0], 40);
    EXPECT_LT(px(rb, 38, 20)[0], 40);
    EXPECT_EQ(px(rb, 5, 6)[0], 40);     // inside the bevel untouched
    Bitmap sh = run("Shade");
    EXPECT_NE(px(sh, 12, 20)[0], px(sh, 27, 20)[0]);  // opposite slopes lit differently
    // Swirl and Implode move the square's corner but keep the centre and the picture's corners.
    for (const char* name : {"Swirl", "Implode"}) {
        Bitmap w = run(name);
        EXPECT_EQ(px(w, 0, 0), (C{40, 40, 40})) << name;
        EXPECT_EQ(px(w, 20, 20), (C{200, 200, 200})) << name;
    }
    Bitmap sw = run("Swirl");
    EXPECT_NE(px(sw, 12, 12)[0], 200);
    Bitmap im = run("Implode", 80);
    EXPECT_EQ(px(im, 13, 13)[0], 40);  // the square shrinks towards the centre
    EXPECT_EQ(px(run("Implode", 0), 12, 12)[0], 200);
}

}  // namespace
}  // namespace quillet
