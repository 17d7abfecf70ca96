#include "swf/SwfText.h"

namespace quillet {

void SwfTextRecord::Write(SwfStream& out, int glyphBits, int advanceBits, bool withAlpha) const {
    uint8_t flags = 0x80;
    if (hasFont) flags |= 0x08;
    if (hasColor) flags |= 0x04;
    if (hasYOffset) flags |= 0x02;
    if (hasXOffset) flags |= 0x01;
    out.WriteU8(flags);
    if (hasFont) out.WriteU16(fontId);
    if (hasColor) {
        if (withAlpha) color.WriteRgba(out);
        else color.WriteRgb(out);
    }
    if (hasXOffset) out.WriteS16(xOffset);
    if (hasYOffset) out.WriteS16(yOffset);
    if (hasFont) out.WriteU16(textHeight);
    const size_t n = glyphs.size() > 255 ? 255 : glyphs.size();
    out.WriteU8(static_cast<uint8_t>(n));
    for (size_t i = 0; i < n; ++i) {
        out.WriteBits(glyphs[i].index, glyphBits);
        out.WriteSignedBits(glyphs[i].advance, advanceBits);
    }
    out.Align();
}

void SwfTextRecord::Read(SwfInput& in, uint8_t flags, int glyphBits, int advanceBits, bool withAlpha) {
    hasFont = flags & 0x08;
    hasColor = flags & 0x04;
    hasYOffset = flags & 0x02;
    hasXOffset = flags & 0x01;
    if (hasFont) fontId = in.ReadU16();
    if (hasColor) {
        if (withAlpha) color.ReadRgba(in);
        else color.ReadRgb(in);
    }
    if (hasXOffset) xOffset = in.ReadS16();
    if (hasYOffset) yOffset = in.ReadS16();
    if (hasFont) textHeight = in.ReadU16();
    const uint8_t n = in.ReadU8();
    glyphs.clear();
    for (uint8_t i = 0; i < n && in.ok(); ++i) {
        SwfGlyphEntry g;
        g.index = in.ReadBits(glyphBits);
        g.advance = in.ReadSignedBits(advanceBits);
        glyphs.push_back(g);
    }
    in.Align();
}

}  // namespace quillet
