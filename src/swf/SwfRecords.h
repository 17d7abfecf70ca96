// The records that many tags share: rectangle, matrix, colours and the two
// colour transforms. Each record writes itself into a SwfStream (returning the
// change of the stream's byte count) and reads itself from a SwfInput.
#pragma once

#include <cstdint>

#include "swf/SwfInput.h"
#include "swf/SwfStream.h"

namespace quillet {

// One pixel is 20 twips.
constexpr int32_t kTwipsPerPixel = 20;

// Signed fields of the records hold at most 31 bits, so coordinates and
// 16.16 values from outside are saturated to that range rather than
// wrapped (or overflowed) on their way in.
constexpr int32_t kSwfFieldMax = (1 << 30) - 1;
constexpr int32_t kSwfFieldMin = -(1 << 30);
int32_t SaturateField(double value);                 // NaN gives 0
inline int32_t PixelsToTwips(int64_t pixels) { return SaturateField(static_cast<double>(pixels) * kTwipsPerPixel); }
// trunc(value * 65536 + 0.5), saturated.
int32_t ToFixed16(double value);

struct SwfRect {
    // Twips, kept and written in the order Xmin, Xmax, Ymin, Ymax.
    int32_t xMin = 0, xMax = 0, yMin = 0, yMax = 0;

    SwfRect() = default;
    SwfRect(int32_t xmin, int32_t xmax, int32_t ymin, int32_t ymax) : xMin(xmin), xMax(xmax), yMin(ymin), yMax(ymax) {}
    // Left, top, right, bottom; with inPixels each value is multiplied by 20.
    void Set(int32_t left, int32_t top, int32_t right, int32_t bottom, bool inPixels);
    static SwfRect FromPixels(int32_t left, int32_t top, int32_t right, int32_t bottom);
    int32_t Width() const { return xMax - xMin; }
    int32_t Height() const { return yMax - yMin; }

    // Width in 5 bits, the four values, then align.
    uint32_t Write(SwfStream& out) const;
    void Read(SwfInput& in);
    bool operator==(const SwfRect&) const = default;
};

struct SwfMatrix {
    bool hasScale = true;
    int32_t scaleX = 0x10000, scaleY = 0x10000;  // 16.16 fixed point
    bool hasRotate = false;
    int32_t rotateSkew0 = 0, rotateSkew1 = 0;    // 16.16 fixed point
    int32_t translateX = 0, translateY = 0;      // twips

    SwfMatrix() = default;
    static SwfMatrix Translate(int32_t tx, int32_t ty);
    // Scale terms in 16.16 fixed point (0x10000 = 1.0), translation in twips.
    static SwfMatrix Scale(int32_t sx, int32_t sy, int32_t tx = 0, int32_t ty = 0);
    // Scale from doubles, converted as trunc(v * 65536 + 0.5).
    static SwfMatrix ScaleF(double sx, double sy, int32_t tx = 0, int32_t ty = 0);
    // Sets rotateSkew0 (selector false) or rotateSkew1 (true) and hasRotate.
    void SetRotate(int32_t value, bool selector, bool rotate);

    // No final align: the caller's next byte field aligns.
    uint32_t Write(SwfStream& out) const;
    void Read(SwfInput& in);
    bool operator==(const SwfMatrix&) const = default;
};

struct SwfColor {
    uint8_t r = 0, g = 0, b = 0, a = 255;
    SwfColor() = default;
    constexpr SwfColor(uint8_t red, uint8_t green, uint8_t blue, uint8_t alpha = 255) : r(red), g(green), b(blue), a(alpha) {}
    // 0x00RRGGBB as the show settings keep colours.
    static SwfColor FromRgb(uint32_t rgb) { return SwfColor(uint8_t(rgb >> 16), uint8_t(rgb >> 8), uint8_t(rgb)); }
    void WriteRgb(SwfStream& out) const;
    void WriteRgba(SwfStream& out) const;
    void ReadRgb(SwfInput& in);
    void ReadRgba(SwfInput& in);
    bool operator==(const SwfColor&) const = default;
};

// Colour transform without alpha. Write() emits the two flags and the terms
// with no width field in between; that layout only suits places where both
// flags are off or where the reader expects exactly that. WriteWithWidth() is
// the published CXFORM layout (4-bit width) that PlaceObject and
// DefineButtonCxform carry, and Read() reads that published layout.
struct SwfColorTransform {
    bool hasAddTerms = false, hasMultTerms = false;
    int32_t redMult = 256, greenMult = 256, blueMult = 256;  // 8.8 fixed point
    int32_t redAdd = 0, greenAdd = 0, blueAdd = 0;

    uint32_t Write(SwfStream& out) const;
    uint32_t WriteWithWidth(SwfStream& out) const;
    void Read(SwfInput& in);
    bool operator==(const SwfColorTransform&) const = default;
};

// Colour transform with alpha (CXFORMWITHALPHA). The width is clamped to 15
// bits; a term that needs more is cut to its low 15 bits.
struct SwfColorTransformAlpha {
    bool hasAddTerms = false, hasMultTerms = false;
    int32_t redMult = 256, greenMult = 256, blueMult = 256, alphaMult = 256;  // 8.8 fixed point
    int32_t redAdd = 0, greenAdd = 0, blueAdd = 0, alphaAdd = 0;

    // Multipliers only: red, green, blue 256 and the given alpha multiplier
    // (256 = opaque, 0 = invisible).
    static SwfColorTransformAlpha Alpha(int32_t alphaMult);
    // Opacity 0..1, clamped, converted as trunc(opacity * 256 + 0.5).
    static SwfColorTransformAlpha Opacity(double opacity);

    uint32_t Write(SwfStream& out) const;
    void Read(SwfInput& in);
    bool operator==(const SwfColorTransformAlpha&) const = default;
};

}  // namespace quillet
