// DefineFont2: outlines, codes and optional layout in one tag.
#include "swf/tags/FontTags.h"

#include "swf/tags/FontShared.h"

namespace quillet {

using namespace font_detail;

void DefineFont2Tag::WriteBody(SwfStream& body) const {
    auto shapes = GlyphStreams(glyphs, body.version);
    const size_t n = std::min<size_t>(glyphs.size(), 0xFFFF);
    uint64_t shapeBytes = 0;
    for (size_t i = 0; i < n; ++i) shapeBytes += shapes[i].Size();
    const bool wide = wideOffsets || (n + 1) * 2 + shapeBytes > 0xFFFF;
    const uint32_t entry = wide ? 4 : 2;

    body.WriteU16(id_);
    uint8_t flags = 0;
    if (hasLayout) flags |= 0x80;
    if (shiftJis) flags |= 0x40;
    if (smallText) flags |= 0x20;
    if (ansi) flags |= 0x10;
    if (wide) flags |= 0x08;
    if (wideCodes) flags |= 0x04;
    if (italic) flags |= 0x02;
    if (bold) flags |= 0x01;
    body.WriteU8(flags);
    body.WriteU8(languageCode);
    WriteShortName(body, name);
    body.WriteU16(static_cast<uint16_t>(n));
    uint32_t offset = static_cast<uint32_t>((n + 1) * entry);
    auto writeOffset = [&](uint32_t v) {
        if (wide) body.WriteU32(v);
        else body.WriteU16(static_cast<uint16_t>(v));
    };
    for (size_t i = 0; i < n; ++i) {
        writeOffset(offset);
        offset += shapes[i].Size();
    }
    writeOffset(offset);  // the code table follows the shapes
    for (size_t i = 0; i < n; ++i) body.WriteStream(shapes[i]);
    for (size_t i = 0; i < n; ++i) {
        const uint16_t c = i < codes.size() ? codes[i] : 0;
        if (wideCodes) body.WriteU16(c);
        else body.WriteU8(static_cast<uint8_t>(c));
    }
    if (hasLayout) {
        body.WriteU16(ascent);
        body.WriteU16(descent);
        body.WriteS16(leading);
        for (size_t i = 0; i < n; ++i) body.WriteS16(i < advances.size() ? advances[i] : 0);
        for (size_t i = 0; i < n; ++i) (i < glyphBounds.size() ? glyphBounds[i] : SwfRect()).Write(body);
        const size_t k = std::min<size_t>(kerning.size(), 0xFFFF);
        body.WriteU16(static_cast<uint16_t>(k));
        for (size_t i = 0; i < k; ++i) {
            if (wideCodes) {
                body.WriteU16(kerning[i].code1);
                body.WriteU16(kerning[i].code2);
            } else {
                body.WriteU8(static_cast<uint8_t>(kerning[i].code1));
                body.WriteU8(static_cast<uint8_t>(kerning[i].code2));
            }
            body.WriteS16(kerning[i].adjustment);
        }
    }
}

void DefineFont2Tag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    const uint8_t flags = body.ReadU8();
    hasLayout = flags & 0x80;
    shiftJis = flags & 0x40;
    smallText = flags & 0x20;
    ansi = flags & 0x10;
    wideOffsets = flags & 0x08;
    wideCodes = flags & 0x04;
    italic = flags & 0x02;
    bold = flags & 0x01;
    languageCode = body.ReadU8();
    name = body.ReadBytesAsString(body.ReadU8());
    const uint16_t n = body.ReadU16();
    glyphs.clear();
    codes.clear();
    advances.clear();
    glyphBounds.clear();
    kerning.clear();
    if (!body.ok()) return;
    const uint32_t entry = wideOffsets ? 4 : 2;
    if (!body.Need(size_t(n) * entry, "DefineFont2 offset table")) return;
    // The offsets count from the start of the offset table.
    SwfInput table(body.Data() + body.Position(), body.Remaining(), body.version);
    std::vector<uint32_t> offsets;
    for (uint16_t i = 0; i < n; ++i) offsets.push_back(wideOffsets ? table.ReadU32() : table.ReadU16());
    uint32_t codeTable = static_cast<uint32_t>(table.Position());
    const size_t layoutMin = hasLayout ? 8 : 0;
    if (n > 0 || table.Remaining() > layoutMin) codeTable = wideOffsets ? table.ReadU32() : table.ReadU16();
    if (!table.ok() || codeTable > table.Size() || codeTable < table.Position()) {
        body.Fail("DefineFont2 code table offset is out of range");
        return;
    }
    if (!ReadGlyphs(table, offsets, codeTable, glyphs)) {
        body.Fail(table.error());
        return;
    }
    body.Skip(codeTable);
    if (!body.Need(size_t(n) * (wideCodes ? 2 : 1), "DefineFont2 code table")) return;
    for (uint16_t i = 0; i < n; ++i) codes.push_back(wideCodes ? body.ReadU16() : body.ReadU8());
    if (hasLayout) {
        ascent = body.ReadU16();
        descent = body.ReadU16();
        leading = body.ReadS16();
        if (!body.Need(size_t(n) * 3, "DefineFont2 layout")) return;
        for (uint16_t i = 0; i < n; ++i) advances.push_back(body.ReadS16());
        for (uint16_t i = 0; i < n && body.ok(); ++i) {
            SwfRect r;
            r.Read(body);
            glyphBounds.push_back(r);
        }
        const uint16_t k = body.ReadU16();
        if (!body.Need(size_t(k) * (wideCodes ? 6 : 4), "DefineFont2 kerning table")) return;
        for (uint16_t i = 0; i < k; ++i) {
            SwfKerningRecord r;
            r.code1 = wideCodes ? body.ReadU16() : body.ReadU8();
            r.code2 = wideCodes ? body.ReadU16() : body.ReadU8();
            r.adjustment = body.ReadS16();
            kerning.push_back(r);
        }
    }
}

}  // namespace quillet
