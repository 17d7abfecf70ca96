// DefineText and DefineText2: static text runs (the second with alpha colours).
#include "swf/tags/TextTags.h"

#include <algorithm>

namespace quillet {

void SwfDefineTextBase::OffsetIds(int16_t delta) {
    id_ = Offset(id_, delta);
    for (auto& r : records)
        if (r.hasFont) r.fontId = Offset(r.fontId, delta);
}

void SwfDefineTextBase::WriteBody(SwfStream& body) const {
    uint32_t maxIndex = 0, maxAdvance = 0;
    for (const auto& r : records)
        for (const auto& g : r.glyphs) {
            maxIndex = std::max(maxIndex, g.index);
            maxAdvance = std::max(maxAdvance, Magnitude(g.advance));
        }
    const int glyphBits = BitsNeeded(maxIndex, false);
    const int advanceBits = std::min(BitsNeeded(maxAdvance, true), 32);
    body.WriteU16(id_);
    bounds.Write(body);
    matrix.Write(body);
    body.WriteU8(static_cast<uint8_t>(glyphBits));
    body.WriteU8(static_cast<uint8_t>(advanceBits));
    for (const auto& r : records) r.Write(body, glyphBits, advanceBits, WithAlpha());
    body.WriteU8(0);
}

void SwfDefineTextBase::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    bounds.Read(body);
    matrix.Read(body);
    const int glyphBits = body.ReadU8();
    const int advanceBits = body.ReadU8();
    if (glyphBits > 32 || advanceBits > 32) {
        body.Fail("text glyph or advance width above 32 bits");
        return;
    }
    records.clear();
    while (body.ok()) {
        const uint8_t flags = body.ReadU8();
        if (flags == 0 || !body.ok()) break;
        SwfTextRecord r;
        r.Read(body, flags, glyphBits, advanceBits, WithAlpha());
        if (body.ok()) records.push_back(std::move(r));
    }
}

}  // namespace quillet
