#include "effects/GlyphShapes.h"

#include <algorithm>
#include <cmath>

namespace quillet {

namespace {

GlyphPoint Mid(GlyphPoint a, GlyphPoint b) { return {(a.x + b.x) / 2, (a.y + b.y) / 2}; }

void SplitCubic(GlyphPoint p0, GlyphPoint c1, GlyphPoint c2, GlyphPoint p3, double tolerance, int depth,
                std::vector<std::pair<GlyphPoint, GlyphPoint>>& out) {
    // The best single quadratic has its control at (3(c1 + c2) - (p0 + p3)) / 4;
    // it strays from the cubic by at most sqrt(3)/36 of |p3 - 3 c2 + 3 c1 - p0|.
    const double dx = p3.x - 3 * c2.x + 3 * c1.x - p0.x;
    const double dy = p3.y - 3 * c2.y + 3 * c1.y - p0.y;
    const double error = std::sqrt(3.0) / 36.0 * std::hypot(dx, dy);
    if (error <= tolerance || depth >= 12) {
        GlyphPoint control{(3 * (c1.x + c2.x) - (p0.x + p3.x)) / 4, (3 * (c1.y + c2.y) - (p0.y + p3.y)) / 4};
        out.emplace_back(control, p3);
        return;
    }
    // De Casteljau at one half; each half's error is an eighth of the whole's.
    GlyphPoint a = Mid(p0, c1), b = Mid(c1, c2), c = Mid(c2, p3);
    GlyphPoint ab = Mid(a, b), bc = Mid(b, c), m = Mid(ab, bc);
    SplitCubic(p0, a, ab, m, tolerance, depth + 1, out);
    SplitCubic(m, bc, c, p3, tolerance, depth + 1, out);
}

}  // namespace

std::vector<std::pair<GlyphPoint, GlyphPoint>> QuadraticsFromCubic(GlyphPoint p0, GlyphPoint c1, GlyphPoint c2,
                                                                   GlyphPoint p3, double tolerance) {
    std::vector<std::pair<GlyphPoint, GlyphPoint>> out;
    SplitCubic(p0, c1, c2, p3, std::max(tolerance, 1e-6), 0, out);
    return out;
}

GlyphShapeBuilder::GlyphShapeBuilder(double unitsPerEm, bool fillOnLeft)
    : scale_(1024.0 / (unitsPerEm > 0 ? unitsPerEm : 1024.0)), fillOnLeft_(fillOnLeft) {}

int32_t GlyphShapeBuilder::X(double x) const { return static_cast<int32_t>(std::lround(x * scale_)); }
int32_t GlyphShapeBuilder::Y(double y) const { return static_cast<int32_t>(std::lround(-y * scale_)); }

void GlyphShapeBuilder::Reach(int32_t x, int32_t y) {
    if (!any_) {
        minX_ = maxX_ = x;
        minY_ = maxY_ = y;
        any_ = true;
    }
    minX_ = std::min(minX_, x);
    maxX_ = std::max(maxX_, x);
    minY_ = std::min(minY_, y);
    maxY_ = std::max(maxY_, y);
}

void GlyphShapeBuilder::MoveTo(GlyphPoint p) {
    Close();
    SwfShapeRecord move = SwfShapeRecord::Move(X(p.x), Y(p.y));
    if (!styled_) {
        // Glyphs have one fill style; which side it is on follows the winding.
        if (fillOnLeft_) {
            move.hasFill0 = true;
            move.fill0 = 1;
        } else {
            move.hasFill1 = true;
            move.fill1 = 1;
        }
        styled_ = true;
    }
    shape_.records.push_back(move);
    x_ = startX_ = X(p.x);
    y_ = startY_ = Y(p.y);
    pen_ = p;
    open_ = true;
    Reach(x_, y_);
}

void GlyphShapeBuilder::LineTo(GlyphPoint p) {
    const int32_t x = X(p.x), y = Y(p.y);
    pen_ = p;
    if (x == x_ && y == y_) return;
    shape_.records.push_back(SwfShapeRecord::Line(x - x_, y - y_));
    x_ = x;
    y_ = y;
    Reach(x, y);
}

void GlyphShapeBuilder::QuadTo(GlyphPoint control, GlyphPoint p) {
    const int32_t cx = X(control.x), cy = Y(control.y), x = X(p.x), y = Y(p.y);
    pen_ = p;
    if (x == x_ && y == y_ && cx == x_ && cy == y_) return;
    shape_.records.push_back(SwfShapeRecord::Curve(cx - x_, cy - y_, x - cx, y - cy));
    x_ = x;
    y_ = y;
    Reach(cx, cy);
    Reach(x, y);
}

void GlyphShapeBuilder::CubicTo(GlyphPoint c1, GlyphPoint c2, GlyphPoint p) {
    // The tolerance is in em units; the outline is in face units.
    for (const auto& [control, end] : QuadraticsFromCubic(pen_, c1, c2, p, kCubicTolerance / scale_))
        QuadTo(control, end);
    pen_ = p;
}

void GlyphShapeBuilder::Close() {
    if (!open_) return;
    if (x_ != startX_ || y_ != startY_) shape_.records.push_back(SwfShapeRecord::Line(startX_ - x_, startY_ - y_));
    x_ = startX_;
    y_ = startY_;
    open_ = false;
}

SwfShape GlyphShapeBuilder::Shape() {
    Close();
    return shape_;
}

SwfRect GlyphShapeBuilder::Bounds() const { return any_ ? SwfRect(minX_, maxX_, minY_, maxY_) : SwfRect(); }

}  // namespace quillet
