// Shapes: gradients, fill and line styles, shape records (style change,
// straight and curved edges), the plain SHAPE of glyphs and the
// SHAPEWITHSTYLE of DefineShape 1/2/3, plus a builder that turns absolute
// coordinates into records.
//
// The shape "version" is 1, 2 or 3 for DefineShape, DefineShape2 and
// DefineShape3: version 2 and up allow more than 255 styles and new styles in
// a style change, version 3 stores colours with alpha.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "swf/SwfRecords.h"

namespace quillet {

struct SwfGradientRecord {
    uint8_t ratio = 0;  // 0..255 along the gradient
    SwfColor color;
    bool operator==(const SwfGradientRecord&) const = default;
};

struct SwfGradient {
    uint8_t spreadMode = 0;         // 0 pad, 1 reflect, 2 repeat (SWF 8)
    uint8_t interpolationMode = 0;  // 0 normal RGB, 1 linear RGB (SWF 8)
    std::vector<SwfGradientRecord> records;  // at most 15
    int16_t focalPoint = 0;         // 8.8, focal radial gradients only

    void Write(SwfStream& out, int shapeVersion, bool focal) const;
    void Read(SwfInput& in, int shapeVersion, bool focal);
    bool operator==(const SwfGradient&) const = default;
};

struct SwfFillStyle {
    enum Type : uint8_t {
        Solid = 0x00,
        LinearGradient = 0x10,
        RadialGradient = 0x12,
        FocalRadialGradient = 0x13,
        RepeatingBitmap = 0x40,
        ClippedBitmap = 0x41,
        NonSmoothedRepeatingBitmap = 0x42,
        NonSmoothedClippedBitmap = 0x43,
    };
    uint8_t type = Solid;
    SwfColor color;                // solid fills
    SwfMatrix gradientMatrix;      // gradients: maps the 32768-twip gradient square onto the shape
    SwfGradient gradient;
    uint16_t bitmapId = 0xFFFF;    // bitmap fills; 0xFFFF means no bitmap
    SwfMatrix bitmapMatrix;        // bitmap pixels to twips (scale 20.0 shows a pixel as a pixel)

    static SwfFillStyle MakeSolid(SwfColor color);
    // A bitmap fill; `clipped` shows the bitmap once, else it repeats.
    static SwfFillStyle MakeBitmap(uint16_t bitmapId, const SwfMatrix& matrix, bool clipped = true, bool smoothed = true);
    static SwfFillStyle MakeLinearGradient(const SwfMatrix& matrix, std::vector<SwfGradientRecord> records);
    static SwfFillStyle MakeRadialGradient(const SwfMatrix& matrix, std::vector<SwfGradientRecord> records);

    bool IsBitmap() const { return type >= 0x40 && type <= 0x43; }
    bool IsGradient() const { return type == LinearGradient || type == RadialGradient || type == FocalRadialGradient; }
    void Write(SwfStream& out, int shapeVersion) const;
    void Read(SwfInput& in, int shapeVersion);
    bool operator==(const SwfFillStyle&) const = default;
};

struct SwfLineStyle {
    uint16_t width = 20;  // twips
    SwfColor color;
    void Write(SwfStream& out, int shapeVersion) const;
    void Read(SwfInput& in, int shapeVersion);
    bool operator==(const SwfLineStyle&) const = default;
};

// Writes/reads a style array with its count (u8, or 0xFF then u16 from version 2 on).
void WriteFillStyles(SwfStream& out, const std::vector<SwfFillStyle>& styles, int shapeVersion);
void WriteLineStyles(SwfStream& out, const std::vector<SwfLineStyle>& styles, int shapeVersion);
void ReadFillStyles(SwfInput& in, std::vector<SwfFillStyle>& styles, int shapeVersion);
void ReadLineStyles(SwfInput& in, std::vector<SwfLineStyle>& styles, int shapeVersion);

struct SwfShapeRecord {
    enum class Kind : uint8_t { StyleChange, StraightEdge, CurvedEdge };
    Kind kind = Kind::StyleChange;

    // Style change. Style indices are 1-based into the current style arrays; 0 clears.
    bool hasMove = false;
    int32_t moveX = 0, moveY = 0;  // absolute, twips
    bool hasFill0 = false, hasFill1 = false, hasLine = false;
    uint32_t fill0 = 0, fill1 = 0, line = 0;
    bool hasNewStyles = false;     // shape version 2 and up
    std::vector<SwfFillStyle> newFillStyles;
    std::vector<SwfLineStyle> newLineStyles;

    // Edges, relative to the current point. A straight edge uses dx, dy; a
    // curve goes by (dx, dy) to its control point and (anchorDx, anchorDy) on.
    int32_t dx = 0, dy = 0;
    int32_t anchorDx = 0, anchorDy = 0;

    static SwfShapeRecord Move(int32_t x, int32_t y);
    static SwfShapeRecord Line(int32_t dx, int32_t dy);
    static SwfShapeRecord Curve(int32_t controlDx, int32_t controlDy, int32_t anchorDx, int32_t anchorDy);
    bool operator==(const SwfShapeRecord&) const = default;
};

// Writes the records and the end record (six zero bits) with the given style
// index widths; style changes with new styles switch to the new widths. An
// edge whose deltas need more than 17 bits is written as several shorter ones.
void WriteShapeRecords(SwfStream& out, const std::vector<SwfShapeRecord>& records, int fillBits, int lineBits,
                       int shapeVersion);
// Reads records up to and including the end record (not stored).
void ReadShapeRecords(SwfInput& in, std::vector<SwfShapeRecord>& records, int fillBits, int lineBits,
                      int shapeVersion);

// SHAPE: the glyphs of fonts and the edges of morph shapes. One fill style
// index bit and no line bits unless said otherwise.
struct SwfShape {
    uint8_t fillBits = 1, lineBits = 0;
    std::vector<SwfShapeRecord> records;
    // Writes the two widths, the records, the end record, then aligns.
    void Write(SwfStream& out, int shapeVersion = 1) const;
    void Read(SwfInput& in, int shapeVersion = 1);
    bool operator==(const SwfShape&) const = default;
};

// SHAPEWITHSTYLE: the body of DefineShape after the bounds.
struct SwfShapeWithStyle {
    std::vector<SwfFillStyle> fillStyles;
    std::vector<SwfLineStyle> lineStyles;
    std::vector<SwfShapeRecord> records;
    // Style index widths are computed from the style counts.
    void Write(SwfStream& out, int shapeVersion) const;
    void Read(SwfInput& in, int shapeVersion);
    // Adds delta to every bitmap id that the fill styles refer to (0xFFFF stays).
    void OffsetBitmapIds(int16_t delta);
    bool operator==(const SwfShapeWithStyle&) const = default;
};

// Builds a shape from absolute coordinates in twips:
//   SwfShapeBuilder b;
//   uint32_t fill = b.AddFillStyle(SwfFillStyle::MakeSolid({255, 0, 0}));
//   b.SetFill1(fill);
//   b.Rectangle(0, 0, 2000, 1000);
//   auto shape = b.Build();  // bounds: b.Bounds()
// Style selections take effect at the next move or edge. Paths drawn
// clockwise on screen (y grows downwards) have their inside on fill 1.
class SwfShapeBuilder {
public:
    uint32_t AddFillStyle(const SwfFillStyle& style);  // returns the 1-based index
    uint32_t AddLineStyle(const SwfLineStyle& style);
    void SetFill0(uint32_t index);
    void SetFill1(uint32_t index);
    void SetLine(uint32_t index);

    void MoveTo(int32_t x, int32_t y);
    void LineTo(int32_t x, int32_t y);
    void CurveTo(int32_t controlX, int32_t controlY, int32_t x, int32_t y);
    // A closed clockwise rectangle path starting at its top-left corner.
    void Rectangle(int32_t x, int32_t y, int32_t width, int32_t height);
    // A closed path through the points (closing edge added when needed).
    void Polygon(const std::vector<std::pair<int32_t, int32_t>>& points);

    // Bounds of every point reached, widened by half of the widest line style;
    // all zero for an empty shape.
    SwfRect Bounds() const;
    const SwfShapeWithStyle& Shape() const { return shape_; }
    SwfShapeWithStyle Build() const { return shape_; }

private:
    SwfShapeRecord& PendingChange();
    void FlushChange();
    void Extend(int32_t x, int32_t y);

    SwfShapeWithStyle shape_;
    bool pending_ = false;
    SwfShapeRecord change_;
    int32_t x_ = 0, y_ = 0;
    bool hasPoint_ = false;
    int32_t minX_ = 0, minY_ = 0, maxX_ = 0, maxY_ = 0;
};

}  // namespace quillet
