#include "swf/SwfRecords.h"

#include <algorithm>
#include <cmath>

namespace quillet {

namespace {

int WidthFor(std::initializer_list<int32_t> values, int maxBits) {
    return std::min(SignedBitsNeeded(values), maxBits);
}

int32_t ToFixed(double v, double unit) {
    double x = std::trunc(v * unit + 0.5);
    x = std::clamp(x, -2147483648.0, 2147483647.0);
    return static_cast<int32_t>(x);
}

}  // namespace

int32_t SaturateField(double value) {
    if (std::isnan(value)) return 0;
    return static_cast<int32_t>(std::clamp(std::trunc(value), double(kSwfFieldMin), double(kSwfFieldMax)));
}

int32_t ToFixed16(double value) { return SaturateField(value * 65536.0 + 0.5); }

// --- SwfRect ---------------------------------------------------------------

void SwfRect::Set(int32_t left, int32_t top, int32_t right, int32_t bottom, bool inPixels) {
    const int32_t f = inPixels ? kTwipsPerPixel : 1;
    xMin = left * f;
    xMax = right * f;
    yMin = top * f;
    yMax = bottom * f;
}

SwfRect SwfRect::FromPixels(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    SwfRect r;
    r.Set(left, top, right, bottom, true);
    return r;
}

uint32_t SwfRect::Write(SwfStream& out) const {
    const uint32_t before = out.Size();
    const int n = WidthFor({xMin, xMax, yMin, yMax}, 31);
    out.WriteBits(static_cast<uint32_t>(n), 5);
    out.WriteSignedBits(xMin, n);
    out.WriteSignedBits(xMax, n);
    out.WriteSignedBits(yMin, n);
    out.WriteSignedBits(yMax, n);
    out.Align();
    return out.Size() - before;
}

void SwfRect::Read(SwfInput& in) {
    in.Align();
    const int n = static_cast<int>(in.ReadBits(5));
    xMin = in.ReadSignedBits(n);
    xMax = in.ReadSignedBits(n);
    yMin = in.ReadSignedBits(n);
    yMax = in.ReadSignedBits(n);
    in.Align();
}

// --- SwfMatrix -------------------------------------------------------------

SwfMatrix SwfMatrix::Translate(int32_t tx, int32_t ty) {
    SwfMatrix m;
    m.translateX = tx;
    m.translateY = ty;
    return m;
}

SwfMatrix SwfMatrix::Scale(int32_t sx, int32_t sy, int32_t tx, int32_t ty) {
    SwfMatrix m;
    m.scaleX = sx;
    m.scaleY = sy;
    m.translateX = tx;
    m.translateY = ty;
    return m;
}

SwfMatrix SwfMatrix::ScaleF(double sx, double sy, int32_t tx, int32_t ty) {
    return Scale(ToFixed(sx, 65536.0), ToFixed(sy, 65536.0), tx, ty);
}

void SwfMatrix::SetRotate(int32_t value, bool selector, bool rotate) {
    if (selector) rotateSkew1 = value;
    else rotateSkew0 = value;
    hasRotate = rotate;
}

uint32_t SwfMatrix::Write(SwfStream& out) const {
    const uint32_t before = out.Size();
    if (hasScale) {
        out.WriteBit(true);
        const int n = WidthFor({scaleX, scaleY}, 31);
        out.WriteBits(static_cast<uint32_t>(n), 5);
        out.WriteSignedBits(scaleX, n);
        out.WriteSignedBits(scaleY, n);
    } else {
        out.WriteBit(false);
    }
    if (hasRotate) {
        out.WriteBit(true);
        const int n = WidthFor({rotateSkew1, rotateSkew0}, 31);
        out.WriteBits(static_cast<uint32_t>(n), 5);
        out.WriteSignedBits(rotateSkew0, n);
        out.WriteSignedBits(rotateSkew1, n);
    } else {
        out.WriteBit(false);
    }
    if (translateX == 0 && translateY == 0) {
        out.WriteBits(0, 5);
    } else {
        const int n = WidthFor({translateX, translateY}, 31);
        out.WriteBits(static_cast<uint32_t>(n), 5);
        out.WriteSignedBits(translateX, n);
        out.WriteSignedBits(translateY, n);
    }
    return out.Size() - before;
}

void SwfMatrix::Read(SwfInput& in) {
    in.Align();
    hasScale = in.ReadBit();
    if (hasScale) {
        const int n = static_cast<int>(in.ReadBits(5));
        scaleX = in.ReadSignedBits(n);
        scaleY = in.ReadSignedBits(n);
    } else {
        scaleX = scaleY = 0x10000;
    }
    hasRotate = in.ReadBit();
    if (hasRotate) {
        const int n = static_cast<int>(in.ReadBits(5));
        rotateSkew0 = in.ReadSignedBits(n);
        rotateSkew1 = in.ReadSignedBits(n);
    } else {
        rotateSkew0 = rotateSkew1 = 0;
    }
    const int n = static_cast<int>(in.ReadBits(5));
    translateX = in.ReadSignedBits(n);
    translateY = in.ReadSignedBits(n);
}

// --- SwfColor --------------------------------------------------------------

void SwfColor::WriteRgb(SwfStream& out) const {
    out.WriteU8(r);
    out.WriteU8(g);
    out.WriteU8(b);
}

void SwfColor::WriteRgba(SwfStream& out) const {
    WriteRgb(out);
    out.WriteU8(a);
}

void SwfColor::ReadRgb(SwfInput& in) {
    r = in.ReadU8();
    g = in.ReadU8();
    b = in.ReadU8();
    a = 255;
}

void SwfColor::ReadRgba(SwfInput& in) {
    r = in.ReadU8();
    g = in.ReadU8();
    b = in.ReadU8();
    a = in.ReadU8();
}

// --- SwfColorTransform -----------------------------------------------------

uint32_t SwfColorTransform::Write(SwfStream& out) const {
    const uint32_t before = out.Size();
    out.WriteBit(hasAddTerms);
    out.WriteBit(hasMultTerms);
    const int n = WidthFor({redMult, greenMult, blueMult, redAdd, greenAdd, blueAdd}, 15);
    if (hasMultTerms) {
        out.WriteSignedBits(redMult, n);
        out.WriteSignedBits(greenMult, n);
        out.WriteSignedBits(blueMult, n);
    }
    if (hasAddTerms) {
        out.WriteSignedBits(redAdd, n);
        out.WriteSignedBits(greenAdd, n);
        out.WriteSignedBits(blueAdd, n);
    }
    return out.Size() - before;
}

uint32_t SwfColorTransform::WriteWithWidth(SwfStream& out) const {
    const uint32_t before = out.Size();
    out.WriteBit(hasAddTerms);
    out.WriteBit(hasMultTerms);
    const int n = WidthFor({redMult, greenMult, blueMult, redAdd, greenAdd, blueAdd}, 15);
    out.WriteBits(static_cast<uint32_t>(n), 4);
    if (hasMultTerms) {
        out.WriteSignedBits(redMult, n);
        out.WriteSignedBits(greenMult, n);
        out.WriteSignedBits(blueMult, n);
    }
    if (hasAddTerms) {
        out.WriteSignedBits(redAdd, n);
        out.WriteSignedBits(greenAdd, n);
        out.WriteSignedBits(blueAdd, n);
    }
    out.Align();
    return out.Size() - before;
}

void SwfColorTransform::Read(SwfInput& in) {
    in.Align();
    hasAddTerms = in.ReadBit();
    hasMultTerms = in.ReadBit();
    const int n = static_cast<int>(in.ReadBits(4));
    redMult = greenMult = blueMult = 256;
    redAdd = greenAdd = blueAdd = 0;
    if (hasMultTerms) {
        redMult = in.ReadSignedBits(n);
        greenMult = in.ReadSignedBits(n);
        blueMult = in.ReadSignedBits(n);
    }
    if (hasAddTerms) {
        redAdd = in.ReadSignedBits(n);
        greenAdd = in.ReadSignedBits(n);
        blueAdd = in.ReadSignedBits(n);
    }
    in.Align();
}

// --- SwfColorTransformAlpha ------------------------------------------------

SwfColorTransformAlpha SwfColorTransformAlpha::Alpha(int32_t alphaMult) {
    SwfColorTransformAlpha c;
    c.hasMultTerms = true;
    c.alphaMult = alphaMult;
    return c;
}

SwfColorTransformAlpha SwfColorTransformAlpha::Opacity(double opacity) {
    opacity = std::clamp(opacity, 0.0, 1.0);
    return Alpha(static_cast<int32_t>(opacity * 256.0 + 0.5));
}

uint32_t SwfColorTransformAlpha::Write(SwfStream& out) const {
    const uint32_t before = out.Size();
    out.WriteBit(hasAddTerms);
    out.WriteBit(hasMultTerms);
    const int n = WidthFor({redMult, greenMult, blueMult, alphaMult, redAdd, greenAdd, blueAdd, alphaAdd}, 15);
    out.WriteBits(static_cast<uint32_t>(n), 4);
    if (hasMultTerms) {
        out.WriteSignedBits(redMult, n);
        out.WriteSignedBits(greenMult, n);
        out.WriteSignedBits(blueMult, n);
        out.WriteSignedBits(alphaMult, n);
    }
    if (hasAddTerms) {
        out.WriteSignedBits(redAdd, n);
        out.WriteSignedBits(greenAdd, n);
        out.WriteSignedBits(blueAdd, n);
        out.WriteSignedBits(alphaAdd, n);
    }
    return out.Size() - before;
}

void SwfColorTransformAlpha::Read(SwfInput& in) {
    in.Align();
    hasAddTerms = in.ReadBit();
    hasMultTerms = in.ReadBit();
    const int n = static_cast<int>(in.ReadBits(4));
    redMult = greenMult = blueMult = alphaMult = 256;
    redAdd = greenAdd = blueAdd = alphaAdd = 0;
    if (hasMultTerms) {
        redMult = in.ReadSignedBits(n);
        greenMult = in.ReadSignedBits(n);
        blueMult = in.ReadSignedBits(n);
        alphaMult = in.ReadSignedBits(n);
    }
    if (hasAddTerms) {
        redAdd = in.ReadSignedBits(n);
        greenAdd = in.ReadSignedBits(n);
        blueAdd = in.ReadSignedBits(n);
        alphaAdd = in.ReadSignedBits(n);
    }
    in.Align();
}

}  // namespace quillet
