// Text records of DefineText/DefineText2: runs of glyph indices with their
// advances, optionally switching font, colour, position and height.
#pragma once

#include <cstdint>
#include <vector>

#include "swf/SwfRecords.h"

namespace quillet {

struct SwfGlyphEntry {
    uint32_t index = 0;   // glyph index in the font
    int32_t advance = 0;  // twips to the next glyph
    bool operator==(const SwfGlyphEntry&) const = default;
};

struct SwfTextRecord {
    bool hasFont = false, hasColor = false, hasXOffset = false, hasYOffset = false;
    uint16_t fontId = 0;
    SwfColor color;          // RGB in DefineText, RGBA in DefineText2
    int16_t xOffset = 0, yOffset = 0;  // twips
    uint16_t textHeight = 0;  // twips; written with the font
    std::vector<SwfGlyphEntry> glyphs;  // at most 255

    // Each record starts and ends on a byte boundary.
    void Write(SwfStream& out, int glyphBits, int advanceBits, bool withAlpha) const;
    void Read(SwfInput& in, uint8_t flags, int glyphBits, int advanceBits, bool withAlpha);
    bool operator==(const SwfTextRecord&) const = default;
};

}  // namespace quillet
