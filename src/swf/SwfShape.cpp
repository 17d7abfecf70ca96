#include "swf/SwfShape.h"

#include <algorithm>
#include <cstdlib>

namespace quillet {

namespace {

constexpr int kMaxEdgeBits = 17;  // a 4-bit field holding bits - 2

void WriteColor(SwfStream& out, const SwfColor& c, int shapeVersion) {
    if (shapeVersion >= 3) c.WriteRgba(out);
    else c.WriteRgb(out);
}

void ReadColor(SwfInput& in, SwfColor& c, int shapeVersion) {
    if (shapeVersion >= 3) c.ReadRgba(in);
    else c.ReadRgb(in);
}

void WriteStyleCount(SwfStream& out, size_t count, int shapeVersion) {
    if (count < 0xFF) {
        out.WriteU8(static_cast<uint8_t>(count));
    } else if (shapeVersion >= 2) {
        out.WriteU8(0xFF);
        out.WriteU16(static_cast<uint16_t>(std::min<size_t>(count, 0xFFFF)));
    } else {
        out.WriteU8(0xFF);  // version 1 cannot hold more
    }
}

size_t StyleCountLimit(size_t count, int shapeVersion) {
    return shapeVersion >= 2 ? std::min<size_t>(count, 0xFFFF) : std::min<size_t>(count, 0xFF);
}

size_t ReadStyleCount(SwfInput& in, int shapeVersion) {
    size_t count = in.ReadU8();
    if (count == 0xFF && shapeVersion >= 2) count = in.ReadU16();
    return count;
}

int StyleBits(size_t count) { return BitsNeeded(static_cast<uint32_t>(count), false); }

void WriteStraight(SwfStream& out, int32_t dx, int32_t dy) {
    int n = std::max(SignedBitsNeeded({dx, dy}), 2);
    out.WriteBit(true);   // edge
    out.WriteBit(true);   // straight
    out.WriteBits(static_cast<uint32_t>(n - 2), 4);
    if (dx != 0 && dy != 0) {
        out.WriteBit(true);  // general line
        out.WriteSignedBits(dx, n);
        out.WriteSignedBits(dy, n);
    } else {
        out.WriteBit(false);
        const bool vertical = dx == 0;
        out.WriteBit(vertical);
        out.WriteSignedBits(vertical ? dy : dx, n);
    }
}

void WriteLongStraight(SwfStream& out, int32_t dx, int32_t dy) {
    const int n = SignedBitsNeeded({dx, dy});
    if (n <= kMaxEdgeBits) {
        WriteStraight(out, dx, dy);
        return;
    }
    // Too long for one record: equal pieces, each short enough.
    const uint32_t m = std::max(Magnitude(dx), Magnitude(dy));
    const int64_t parts = (static_cast<int64_t>(m) + 65534) / 65535;
    int64_t px = 0, py = 0;
    for (int64_t i = 1; i <= parts; ++i) {
        const int64_t x = static_cast<int64_t>(dx) * i / parts;
        const int64_t y = static_cast<int64_t>(dy) * i / parts;
        WriteStraight(out, static_cast<int32_t>(x - px), static_cast<int32_t>(y - py));
        px = x;
        py = y;
    }
}

void WriteCurve(SwfStream& out, int32_t cdx, int32_t cdy, int32_t adx, int32_t ady, int level = 0) {
    const int n = SignedBitsNeeded({cdx, cdy, adx, ady});
    if (n > kMaxEdgeBits && level < 16) {
        // Split at the middle (de Casteljau) and write the halves.
        const int64_t p1x = cdx, p1y = cdy, p2x = int64_t(cdx) + adx, p2y = int64_t(cdy) + ady;
        const int64_t q1x = p1x / 2, q1y = p1y / 2;
        const int64_t mx = (2 * p1x + p2x) / 4, my = (2 * p1y + p2y) / 4;
        const int64_t q2x = (p1x + p2x) / 2, q2y = (p1y + p2y) / 2;
        WriteCurve(out, int32_t(q1x), int32_t(q1y), int32_t(mx - q1x), int32_t(my - q1y), level + 1);
        WriteCurve(out, int32_t(q2x - mx), int32_t(q2y - my), int32_t(p2x - q2x), int32_t(p2y - q2y), level + 1);
        return;
    }
    const int bits = std::clamp(n, 2, kMaxEdgeBits);
    out.WriteBit(true);   // edge
    out.WriteBit(false);  // curved
    out.WriteBits(static_cast<uint32_t>(bits - 2), 4);
    out.WriteSignedBits(cdx, bits);
    out.WriteSignedBits(cdy, bits);
    out.WriteSignedBits(adx, bits);
    out.WriteSignedBits(ady, bits);
}

}  // namespace

// --- gradients and styles --------------------------------------------------

void SwfGradient::Write(SwfStream& out, int shapeVersion, bool focal) const {
    const size_t count = std::min<size_t>(records.size(), 15);
    out.WriteBits(spreadMode, 2);
    out.WriteBits(interpolationMode, 2);
    out.WriteBits(static_cast<uint32_t>(count), 4);
    for (size_t i = 0; i < count; ++i) {
        out.WriteU8(records[i].ratio);
        WriteColor(out, records[i].color, shapeVersion);
    }
    if (focal) out.WriteS16(focalPoint);
}

void SwfGradient::Read(SwfInput& in, int shapeVersion, bool focal) {
    in.Align();
    spreadMode = static_cast<uint8_t>(in.ReadBits(2));
    interpolationMode = static_cast<uint8_t>(in.ReadBits(2));
    const uint32_t count = in.ReadBits(4);
    records.clear();
    for (uint32_t i = 0; i < count && in.ok(); ++i) {
        SwfGradientRecord r;
        r.ratio = in.ReadU8();
        ReadColor(in, r.color, shapeVersion);
        records.push_back(r);
    }
    if (focal) focalPoint = in.ReadS16();
}

SwfFillStyle SwfFillStyle::MakeSolid(SwfColor c) {
    SwfFillStyle f;
    f.type = Solid;
    f.color = c;
    return f;
}

SwfFillStyle SwfFillStyle::MakeBitmap(uint16_t id, const SwfMatrix& matrix, bool clipped, bool smoothed) {
    SwfFillStyle f;
    f.type = static_cast<uint8_t>(0x40 | (clipped ? 0x01 : 0x00) | (smoothed ? 0x00 : 0x02));
    f.bitmapId = id;
    f.bitmapMatrix = matrix;
    return f;
}

SwfFillStyle SwfFillStyle::MakeLinearGradient(const SwfMatrix& matrix, std::vector<SwfGradientRecord> records) {
    SwfFillStyle f;
    f.type = LinearGradient;
    f.gradientMatrix = matrix;
    f.gradient.records = std::move(records);
    return f;
}

SwfFillStyle SwfFillStyle::MakeRadialGradient(const SwfMatrix& matrix, std::vector<SwfGradientRecord> records) {
    SwfFillStyle f = MakeLinearGradient(matrix, std::move(records));
    f.type = RadialGradient;
    return f;
}

void SwfFillStyle::Write(SwfStream& out, int shapeVersion) const {
    out.WriteU8(type);
    if (type == Solid) {
        WriteColor(out, color, shapeVersion);
    } else if (IsGradient()) {
        gradientMatrix.Write(out);
        out.Align();
        gradient.Write(out, shapeVersion, type == FocalRadialGradient);
    } else if (IsBitmap()) {
        out.WriteU16(bitmapId);
        bitmapMatrix.Write(out);
        out.Align();
    }
}

void SwfFillStyle::Read(SwfInput& in, int shapeVersion) {
    type = in.ReadU8();
    if (type == Solid) {
        ReadColor(in, color, shapeVersion);
    } else if (IsGradient()) {
        gradientMatrix.Read(in);
        gradient.Read(in, shapeVersion, type == FocalRadialGradient);
    } else if (IsBitmap()) {
        bitmapId = in.ReadU16();
        bitmapMatrix.Read(in);
        in.Align();
    } else if (in.ok()) {
        in.Fail("unknown fill style type " + std::to_string(type));
    }
}

void SwfLineStyle::Write(SwfStream& out, int shapeVersion) const {
    out.WriteU16(width);
    WriteColor(out, color, shapeVersion);
}

void SwfLineStyle::Read(SwfInput& in, int shapeVersion) {
    width = in.ReadU16();
    ReadColor(in, color, shapeVersion);
}

void WriteFillStyles(SwfStream& out, const std::vector<SwfFillStyle>& styles, int shapeVersion) {
    WriteStyleCount(out, styles.size(), shapeVersion);
    const size_t n = StyleCountLimit(styles.size(), shapeVersion);
    for (size_t i = 0; i < n; ++i) styles[i].Write(out, shapeVersion);
}

void WriteLineStyles(SwfStream& out, const std::vector<SwfLineStyle>& styles, int shapeVersion) {
    WriteStyleCount(out, styles.size(), shapeVersion);
    const size_t n = StyleCountLimit(styles.size(), shapeVersion);
    for (size_t i = 0; i < n; ++i) styles[i].Write(out, shapeVersion);
}

void ReadFillStyles(SwfInput& in, std::vector<SwfFillStyle>& styles, int shapeVersion) {
    const size_t count = ReadStyleCount(in, shapeVersion);
    styles.clear();
    // Each style takes at least 4 bytes: refuse counts the data cannot hold.
    if (!in.Need(count, "fill style list")) return;
    for (size_t i = 0; i < count && in.ok(); ++i) {
        SwfFillStyle s;
        s.Read(in, shapeVersion);
        styles.push_back(std::move(s));
    }
}

void ReadLineStyles(SwfInput& in, std::vector<SwfLineStyle>& styles, int shapeVersion) {
    const size_t count = ReadStyleCount(in, shapeVersion);
    styles.clear();
    if (!in.Need(count * 5, "line style list")) return;
    for (size_t i = 0; i < count && in.ok(); ++i) {
        SwfLineStyle s;
        s.Read(in, shapeVersion);
        styles.push_back(s);
    }
}

// --- shape records ---------------------------------------------------------

SwfShapeRecord SwfShapeRecord::Move(int32_t x, int32_t y) {
    SwfShapeRecord r;
    r.kind = Kind::StyleChange;
    r.hasMove = true;
    r.moveX = x;
    r.moveY = y;
    return r;
}

SwfShapeRecord SwfShapeRecord::Line(int32_t ddx, int32_t ddy) {
    SwfShapeRecord r;
    r.kind = Kind::StraightEdge;
    r.dx = ddx;
    r.dy = ddy;
    return r;
}

SwfShapeRecord SwfShapeRecord::Curve(int32_t controlDx, int32_t controlDy, int32_t aDx, int32_t aDy) {
    SwfShapeRecord r;
    r.kind = Kind::CurvedEdge;
    r.dx = controlDx;
    r.dy = controlDy;
    r.anchorDx = aDx;
    r.anchorDy = aDy;
    return r;
}

void WriteShapeRecords(SwfStream& out, const std::vector<SwfShapeRecord>& records, int fillBits, int lineBits,
                       int shapeVersion) {
    for (const SwfShapeRecord& r : records) {
        switch (r.kind) {
        case SwfShapeRecord::Kind::StyleChange: {
            const bool newStyles = r.hasNewStyles && shapeVersion >= 2;
            // A style change with no flag would read as the end record.
            if (!newStyles && !r.hasLine && !r.hasFill1 && !r.hasFill0 && !r.hasMove) break;
            out.WriteBit(false);
            out.WriteBit(newStyles);
            out.WriteBit(r.hasLine);
            out.WriteBit(r.hasFill1);
            out.WriteBit(r.hasFill0);
            out.WriteBit(r.hasMove);
            if (r.hasMove) {
                // At least one bit: some readers cannot take a zero-width move.
                const int n = std::clamp(SignedBitsNeeded({r.moveX, r.moveY}), 1, 31);
                out.WriteBits(static_cast<uint32_t>(n), 5);
                out.WriteSignedBits(r.moveX, n);
                out.WriteSignedBits(r.moveY, n);
            }
            if (r.hasFill0) out.WriteBits(r.fill0, fillBits);
            if (r.hasFill1) out.WriteBits(r.fill1, fillBits);
            if (r.hasLine) out.WriteBits(r.line, lineBits);
            if (newStyles) {
                WriteFillStyles(out, r.newFillStyles, shapeVersion);
                WriteLineStyles(out, r.newLineStyles, shapeVersion);
                fillBits = std::min(StyleBits(r.newFillStyles.size()), 15);
                lineBits = std::min(StyleBits(r.newLineStyles.size()), 15);
                out.WriteBits(static_cast<uint32_t>(fillBits), 4);
                out.WriteBits(static_cast<uint32_t>(lineBits), 4);
            }
            break;
        }
        case SwfShapeRecord::Kind::StraightEdge:
            WriteLongStraight(out, r.dx, r.dy);
            break;
        case SwfShapeRecord::Kind::CurvedEdge:
            WriteCurve(out, r.dx, r.dy, r.anchorDx, r.anchorDy);
            break;
        }
    }
    out.WriteBits(0, 6);  // end of shape
}

void ReadShapeRecords(SwfInput& in, std::vector<SwfShapeRecord>& records, int fillBits, int lineBits,
                      int shapeVersion) {
    records.clear();
    while (in.ok()) {
        const bool isEdge = in.ReadBit();
        if (!isEdge) {
            const uint32_t flags = in.ReadBits(5);
            if (!in.ok()) break;
            if (flags == 0) return;  // end of shape
            SwfShapeRecord r;
            r.kind = SwfShapeRecord::Kind::StyleChange;
            r.hasNewStyles = flags & 0x10;
            r.hasLine = flags & 0x08;
            r.hasFill1 = flags & 0x04;
            r.hasFill0 = flags & 0x02;
            r.hasMove = flags & 0x01;
            if (r.hasMove) {
                const int n = static_cast<int>(in.ReadBits(5));
                r.moveX = in.ReadSignedBits(n);
                r.moveY = in.ReadSignedBits(n);
            }
            if (r.hasFill0) r.fill0 = in.ReadBits(fillBits);
            if (r.hasFill1) r.fill1 = in.ReadBits(fillBits);
            if (r.hasLine) r.line = in.ReadBits(lineBits);
            if (r.hasNewStyles) {
                if (shapeVersion < 2) {
                    in.Fail("new styles in a shape that cannot have them");
                    break;
                }
                ReadFillStyles(in, r.newFillStyles, shapeVersion);
                ReadLineStyles(in, r.newLineStyles, shapeVersion);
                fillBits = static_cast<int>(in.ReadBits(4));
                lineBits = static_cast<int>(in.ReadBits(4));
            }
            records.push_back(std::move(r));
        } else {
            const bool straight = in.ReadBit();
            const int n = static_cast<int>(in.ReadBits(4)) + 2;
            SwfShapeRecord r;
            if (straight) {
                r.kind = SwfShapeRecord::Kind::StraightEdge;
                if (in.ReadBit()) {
                    r.dx = in.ReadSignedBits(n);
                    r.dy = in.ReadSignedBits(n);
                } else if (in.ReadBit()) {
                    r.dy = in.ReadSignedBits(n);
                } else {
                    r.dx = in.ReadSignedBits(n);
                }
            } else {
                r.kind = SwfShapeRecord::Kind::CurvedEdge;
                r.dx = in.ReadSignedBits(n);
                r.dy = in.ReadSignedBits(n);
                r.anchorDx = in.ReadSignedBits(n);
                r.anchorDy = in.ReadSignedBits(n);
            }
            if (in.ok()) records.push_back(r);
        }
    }
    if (in.ok()) in.Fail("shape without end record");
}

// --- shapes ----------------------------------------------------------------

void SwfShape::Write(SwfStream& out, int shapeVersion) const {
    out.WriteBits(fillBits, 4);
    out.WriteBits(lineBits, 4);
    WriteShapeRecords(out, records, fillBits, lineBits, shapeVersion);
    out.Align();
}

void SwfShape::Read(SwfInput& in, int shapeVersion) {
    in.Align();
    fillBits = static_cast<uint8_t>(in.ReadBits(4));
    lineBits = static_cast<uint8_t>(in.ReadBits(4));
    ReadShapeRecords(in, records, fillBits, lineBits, shapeVersion);
    in.Align();
}

void SwfShapeWithStyle::Write(SwfStream& out, int shapeVersion) const {
    WriteFillStyles(out, fillStyles, shapeVersion);
    WriteLineStyles(out, lineStyles, shapeVersion);
    const int fillBits = std::min(StyleBits(StyleCountLimit(fillStyles.size(), shapeVersion)), 15);
    const int lineBits = std::min(StyleBits(StyleCountLimit(lineStyles.size(), shapeVersion)), 15);
    out.WriteBits(static_cast<uint32_t>(fillBits), 4);
    out.WriteBits(static_cast<uint32_t>(lineBits), 4);
    WriteShapeRecords(out, records, fillBits, lineBits, shapeVersion);
    out.Align();
}

void SwfShapeWithStyle::Read(SwfInput& in, int shapeVersion) {
    ReadFillStyles(in, fillStyles, shapeVersion);
    ReadLineStyles(in, lineStyles, shapeVersion);
    const int fillBits = static_cast<int>(in.ReadBits(4));
    const int lineBits = static_cast<int>(in.ReadBits(4));
    ReadShapeRecords(in, records, fillBits, lineBits, shapeVersion);
    in.Align();
}

void SwfShapeWithStyle::OffsetBitmapIds(int16_t delta) {
    auto move = [delta](std::vector<SwfFillStyle>& styles) {
        for (auto& s : styles)
            if (s.IsBitmap() && s.bitmapId != 0xFFFF) s.bitmapId = static_cast<uint16_t>(s.bitmapId + delta);
    };
    move(fillStyles);
    for (auto& r : records)
        if (r.hasNewStyles) move(r.newFillStyles);
}

// --- builder ---------------------------------------------------------------

uint32_t SwfShapeBuilder::AddFillStyle(const SwfFillStyle& style) {
    shape_.fillStyles.push_back(style);
    return static_cast<uint32_t>(shape_.fillStyles.size());
}

uint32_t SwfShapeBuilder::AddLineStyle(const SwfLineStyle& style) {
    shape_.lineStyles.push_back(style);
    return static_cast<uint32_t>(shape_.lineStyles.size());
}

SwfShapeRecord& SwfShapeBuilder::PendingChange() {
    if (!pending_) {
        change_ = SwfShapeRecord();
        pending_ = true;
    }
    return change_;
}

void SwfShapeBuilder::FlushChange() {
    if (!pending_) return;
    shape_.records.push_back(change_);
    pending_ = false;
}

void SwfShapeBuilder::SetFill0(uint32_t index) {
    auto& c = PendingChange();
    c.hasFill0 = true;
    c.fill0 = index;
}

void SwfShapeBuilder::SetFill1(uint32_t index) {
    auto& c = PendingChange();
    c.hasFill1 = true;
    c.fill1 = index;
}

void SwfShapeBuilder::SetLine(uint32_t index) {
    auto& c = PendingChange();
    c.hasLine = true;
    c.line = index;
}

void SwfShapeBuilder::Extend(int32_t x, int32_t y) {
    if (!hasPoint_) {
        minX_ = maxX_ = x;
        minY_ = maxY_ = y;
        hasPoint_ = true;
        return;
    }
    minX_ = std::min(minX_, x);
    maxX_ = std::max(maxX_, x);
    minY_ = std::min(minY_, y);
    maxY_ = std::max(maxY_, y);
}

void SwfShapeBuilder::MoveTo(int32_t x, int32_t y) {
    auto& c = PendingChange();
    c.hasMove = true;
    c.moveX = x;
    c.moveY = y;
    FlushChange();
    x_ = x;
    y_ = y;
}

void SwfShapeBuilder::LineTo(int32_t x, int32_t y) {
    FlushChange();
    Extend(x_, y_);
    shape_.records.push_back(SwfShapeRecord::Line(x - x_, y - y_));
    x_ = x;
    y_ = y;
    Extend(x, y);
}

void SwfShapeBuilder::CurveTo(int32_t controlX, int32_t controlY, int32_t x, int32_t y) {
    FlushChange();
    Extend(x_, y_);
    shape_.records.push_back(SwfShapeRecord::Curve(controlX - x_, controlY - y_, x - controlX, y - controlY));
    Extend(controlX, controlY);
    x_ = x;
    y_ = y;
    Extend(x, y);
}

void SwfShapeBuilder::Rectangle(int32_t x, int32_t y, int32_t width, int32_t height) {
    MoveTo(x, y);
    LineTo(x + width, y);
    LineTo(x + width, y + height);
    LineTo(x, y + height);
    LineTo(x, y);
}

void SwfShapeBuilder::Polygon(const std::vector<std::pair<int32_t, int32_t>>& points) {
    if (points.empty()) return;
    MoveTo(points[0].first, points[0].second);
    for (size_t i = 1; i < points.size(); ++i) LineTo(points[i].first, points[i].second);
    if (points.size() > 1 && points.back() != points.front()) LineTo(points[0].first, points[0].second);
}

SwfRect SwfShapeBuilder::Bounds() const {
    if (!hasPoint_) return SwfRect();
    int32_t half = 0;
    for (const auto& l : shape_.lineStyles) half = std::max<int32_t>(half, l.width / 2);
    return SwfRect(minX_ - half, maxX_ + half, minY_ - half, maxY_ + half);
}

}  // namespace quillet
