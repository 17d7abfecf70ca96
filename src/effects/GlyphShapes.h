// Glyph outlines as SWF glyph shapes. Outlines come in the face's own units
// with y growing upwards (as FreeType hands them over); the shapes are in the
// 1024-unit em square of font tags with y growing downwards and the baseline
// at 0. Every point is rounded once from the real-valued outline, so rounding
// never accumulates along a contour.
#pragma once

#include <cstdint>
#include <vector>

#include "swf/SwfRecords.h"
#include "swf/SwfShape.h"

namespace quillet {

struct GlyphPoint {
    double x = 0, y = 0;
};

// How far (in em units of 1024) a quadratic stand-in may stray from a cubic
// segment: a twentieth of a unit is a thousandth of a pixel at 48 pixels.
constexpr double kCubicTolerance = 0.05;

// Splits the cubic p0-c1-c2-p3 into quadratics whose distance from it stays
// within `tolerance`. Returns (control, end) pairs; the first starts at p0.
std::vector<std::pair<GlyphPoint, GlyphPoint>> QuadraticsFromCubic(GlyphPoint p0, GlyphPoint c1, GlyphPoint c2,
                                                                   GlyphPoint p3, double tolerance);

class GlyphShapeBuilder {
public:
    // `unitsPerEm`: the face's em size; `fillOnLeft`: whether the inside of an
    // outer contour lies on the left of the direction it is drawn in on the
    // screen (fill style 0) rather than on its right (fill style 1).
    GlyphShapeBuilder(double unitsPerEm, bool fillOnLeft);

    void MoveTo(GlyphPoint p);
    void LineTo(GlyphPoint p);
    void QuadTo(GlyphPoint control, GlyphPoint p);
    void CubicTo(GlyphPoint c1, GlyphPoint c2, GlyphPoint p);
    // Closes the open contour with a straight edge back to its start when needed.
    void Close();

    SwfShape Shape();
    // Bounds of every point reached, em units; all zero for an empty glyph.
    SwfRect Bounds() const;

private:
    int32_t X(double x) const;
    int32_t Y(double y) const;
    void Reach(int32_t x, int32_t y);

    double scale_;
    bool fillOnLeft_;
    SwfShape shape_;
    bool open_ = false, any_ = false, styled_ = false;
    GlyphPoint pen_;             // in face units
    int32_t x_ = 0, y_ = 0;       // current point, em units
    int32_t startX_ = 0, startY_ = 0;
    int32_t minX_ = 0, minY_ = 0, maxX_ = 0, maxY_ = 0;
};

}  // namespace quillet
