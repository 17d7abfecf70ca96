#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "media/Bitmap.h"
#include "media/JpegEncoder.h"
#include "support/TempDir.h"

namespace quillet {
namespace {

Bitmap fromBytes(uint32_t w, uint32_t h, uint16_t bpp, std::vector<uint8_t> bytes) {
    Bitmap b;
    b.Create(w, h, bpp, bytes.data());
    return b;
}

std::vector<uint8_t> bytesOf(const Bitmap& b) { return {b.pixels(), b.pixels() + b.byteSize()}; }

TEST(Bitmap, RotatesAsDescribed) {
    Bitmap one = fromBytes(1, 1, 24, {9, 8, 7});
    one.Rotate(90);
    EXPECT_EQ(one.width(), 1u);
    EXPECT_EQ(bytesOf(one), (std::vector<uint8_t>{9, 8, 7}));

    // 2x1 turned clockwise: the left pixel ends on top.
    Bitmap b = fromBytes(2, 1, 24, {1, 1, 1, 2, 2, 2});
    b.Rotate(90);
    EXPECT_EQ(b.width(), 1u);
    EXPECT_EQ(b.height(), 2u);
    EXPECT_EQ(bytesOf(b), (std::vector<uint8_t>{1, 1, 1, 2, 2, 2}));
    b = fromBytes(2, 1, 24, {1, 1, 1, 2, 2, 2});
    b.Rotate(-90);
    EXPECT_EQ(bytesOf(b), (std::vector<uint8_t>{2, 2, 2, 1, 1, 1}));

    // A 3x2 32-bit picture, every pixel distinct: quarter turns both ways and
    // a half turn; four clockwise turns give the original back.
    std::vector<uint8_t> px;
    for (uint8_t i = 0; i < 6; ++i) px.insert(px.end(), {i, uint8_t(i + 10), uint8_t(i + 20), uint8_t(i + 30)});
    Bitmap r = fromBytes(3, 2, 32, px);
    r.Rotate(90);
    ASSERT_EQ(r.width(), 2u);
    ASSERT_EQ(r.height(), 3u);
    // Clockwise: row 0 is (bottom-left, top-left) = pixels 3, 0.
    EXPECT_EQ(r.row(0)[0], 3);
    EXPECT_EQ(r.row(0)[4], 0);
    EXPECT_EQ(r.row(2)[0], 5);
    EXPECT_EQ(r.row(2)[7], 32);
    r.Rotate(-270);
    r.Rotate(90);
    r.Rotate(90);
    EXPECT_EQ(bytesOf(r), px);
    Bitmap h = fromBytes(3, 2, 32, px);
    h.Rotate(180);
    EXPECT_EQ(h.row(0)[0], 5);
    EXPECT_EQ(h.row(1)[8], 0);
    Bitmap ccw = fromBytes(3, 2, 32, px);
    ccw.Rotate(270);
    EXPECT_EQ(ccw.row(0)[0], 2);  // top-right comes to the top-left
    EXPECT_EQ(ccw.row(2)[4], 3);

    // Unsupported angles and depths leave a blank buffer of the same size.
    Bitmap odd = fromBytes(2, 1, 24, {1, 2, 3, 4, 5, 6});
    odd.Rotate(45);
    EXPECT_EQ(odd.width(), 2u);
    EXPECT_EQ(odd.byteSize(), 6u);
    EXPECT_EQ(bytesOf(odd), std::vector<uint8_t>(6, 0));
    Bitmap plane = fromBytes(2, 1, 8, {1, 2});
    plane.Rotate(90);
    EXPECT_EQ(plane.width(), 2u);
}

TEST(Bitmap, FlipsMoveWholePixels) {
    Bitmap b = fromBytes(2, 2, 32, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16});
    b.FlipHorizontal();
    EXPECT_EQ(bytesOf(b), (std::vector<uint8_t>{5, 6, 7, 8, 1, 2, 3, 4, 13, 14, 15, 16, 9, 10, 11, 12}));
    b.FlipVertical();
    EXPECT_EQ(bytesOf(b), (std::vector<uint8_t>{13, 14, 15, 16, 9, 10, 11, 12, 5, 6, 7, 8, 1, 2, 3, 4}));
    Bitmap odd = fromBytes(3, 3, 24, std::vector<uint8_t>(27, 0));
    odd.row(1)[3] = 99;  // the centre stays put
    odd.FlipHorizontal();
    odd.FlipVertical();
    EXPECT_EQ(odd.row(1)[3], 99);
}

TEST(Bitmap, ResizeUsesTheTriangleFilter) {
    Bitmap same = fromBytes(2, 1, 24, {1, 2, 3, 4, 5, 6});
    const uint8_t* before = same.pixels();
    same.Resize(2, 1);
    EXPECT_EQ(same.pixels(), before);  // untouched

    // Enlarging a row 0,100 to four: centres at 0, 0.5, 1, 1.5.
    Bitmap up = fromBytes(2, 1, 24, {0, 0, 0, 100, 100, 100});
    up.Resize(4, 1);
    EXPECT_EQ(up.width(), 4u);
    EXPECT_EQ(up.row(0)[0], 0);
    EXPECT_EQ(up.row(0)[3], 50);
    EXPECT_EQ(up.row(0)[6], 100);
    EXPECT_EQ(up.row(0)[9], 100);

    // Shrinking 0,0,255,255 to two: the second sample is weighted .25/.5/.25.
    Bitmap down = fromBytes(4, 1, 24, {0, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255});
    down.Resize(2, 1);
    EXPECT_EQ(down.row(0)[0], 0);
    EXPECT_EQ(down.row(0)[3], 191);

    // Vertical pass and a 32-bit picture: a flat picture stays flat.
    Bitmap flat;
    flat.Create(50, 40, 32);
    for (size_t i = 0; i < flat.byteSize(); i += 4) std::memcpy(flat.pixels() + i, "\x10\x80\xF0\xFF", 4);
    flat.Resize(17, 93);
    EXPECT_EQ(flat.height(), 93u);
    for (size_t i = 0; i < flat.byteSize(); i += 4) {
        ASSERT_EQ(flat.pixels()[i], 0x10);
        ASSERT_EQ(flat.pixels()[i + 3], 0xFF);
    }
    Bitmap none;
    none.Resize(10, 10);  // no pixels: nothing happens
    EXPECT_TRUE(none.empty());
}

TEST(JpegEncoder, DjpegDecodesWhatItWrites) {
    test::TempDir dir;
    Bitmap src;
    src.Create(64, 48, 24);
    for (uint32_t y = 0; y < 48; ++y)
        for (uint32_t x = 0; x < 64; ++x) {
            uint8_t* p = src.row(y) + x * 3;
            p[0] = static_cast<uint8_t>(x * 4);
            p[1] = static_cast<uint8_t>(y * 5);
            p[2] = 128;
        }
    // At a high quality djpeg gives back nearly the same pixels.
    auto bytes = EncodeJpeg(src.pixels(), 64, 48, 3, 95);
    ASSERT_FALSE(bytes.empty());
    test::writeFile(dir.file("a.jpg"), std::string(bytes.begin(), bytes.end()));
    ASSERT_EQ(test::runCommand("djpeg -pnm " + dir.file("a.jpg") + " > " + dir.file("a.ppm")), 0);
    std::string ppm = test::readFile(dir.file("a.ppm"));
    ASSERT_EQ(ppm.rfind("P6\n64 48\n255\n", 0), 0u);
    const uint8_t* decoded = reinterpret_cast<const uint8_t*>(ppm.data()) + 13;
    int worst = 0;
    for (size_t i = 0; i < src.byteSize(); ++i) worst = std::max(worst, std::abs(decoded[i] - src.pixels()[i]));
    EXPECT_LE(worst, 12);

    // 32-bit input drops its alpha; a quality out of range is clamped; bad sizes fail cleanly.
    std::vector<uint8_t> rgba(8 * 8 * 4, 200);
    EXPECT_FALSE(EncodeJpeg(rgba.data(), 8, 8, 4, 150).empty());
    EXPECT_FALSE(EncodeJpeg(rgba.data(), 8, 8, 3, -3).empty());
    EXPECT_TRUE(EncodeJpeg(rgba.data(), 0, 8, 3, 80).empty());
    EXPECT_TRUE(EncodeJpeg(nullptr, 8, 8, 3, 80).empty());
}


}  // namespace
}  // namespace quillet
