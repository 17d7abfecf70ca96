// DefineFont: glyph outlines with an offset table.
#include "swf/tags/FontTags.h"

#include "swf/tags/FontShared.h"

namespace quillet {

using namespace font_detail;

void DefineFontTag::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    auto shapes = GlyphStreams(glyphs, body.version);
    uint32_t offset = static_cast<uint32_t>(2 * glyphs.size());
    for (const auto& s : shapes) {
        body.WriteU16(static_cast<uint16_t>(offset));
        offset += s.Size();
    }
    for (const auto& s : shapes) body.WriteStream(s);
}

void DefineFontTag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    glyphs.clear();
    if (!body.ok() || body.Remaining() == 0) return;
    SwfInput table = body.Sub(body.Remaining());
    const uint16_t first = table.ReadU16();
    const size_t count = first / 2;
    if (count == 0 || first > table.Size()) {
        body.Fail("DefineFont offset table is damaged");
        return;
    }
    std::vector<uint32_t> offsets{first};
    for (size_t i = 1; i < count && table.ok(); ++i) offsets.push_back(table.ReadU16());
    if (table.ok()) ReadGlyphs(table, offsets, static_cast<uint32_t>(table.Size()), glyphs);
    if (!table.ok()) body.Fail(table.error());
}

}  // namespace quillet
