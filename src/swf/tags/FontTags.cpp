#include "swf/tags/FontTags.h"

#include <algorithm>

namespace quillet {

namespace {

std::vector<SwfStream> GlyphStreams(const std::vector<SwfShape>& glyphs, uint8_t version) {
    std::vector<SwfStream> out(glyphs.size());
    for (size_t i = 0; i < glyphs.size(); ++i) {
        out[i].version = version;
        glyphs[i].Write(out[i], 1);
    }
    return out;
}

// Reads glyph shapes from `table` (starting at the offset table) given the
// offsets of each glyph and the end of the last one.
bool ReadGlyphs(SwfInput& table, const std::vector<uint32_t>& offsets, uint32_t end, std::vector<SwfShape>& glyphs) {
    glyphs.clear();
    for (size_t i = 0; i < offsets.size(); ++i) {
        const uint32_t from = offsets[i];
        const uint32_t to = i + 1 < offsets.size() ? offsets[i + 1] : end;
        if (from > to || to > table.Size()) {
            table.Fail("glyph offset table out of order or beyond the tag");
            return false;
        }
        SwfInput g(table.Data() + from, to - from, table.version);
        SwfShape s;
        s.Read(g, 1);
        if (!g.ok()) {
            table.Fail("glyph " + std::to_string(i) + ": " + g.error());
            return false;
        }
        glyphs.push_back(std::move(s));
    }
    return true;
}

uint8_t InfoFlags(bool smallText, bool shiftJis, bool ansi, bool italic, bool bold, bool wideCodes) {
    uint8_t f = 0;
    if (smallText) f |= 0x20;
    if (shiftJis) f |= 0x10;
    if (ansi) f |= 0x08;
    if (italic) f |= 0x04;
    if (bold) f |= 0x02;
    if (wideCodes) f |= 0x01;
    return f;
}

void WriteShortName(SwfStream& body, const std::string& name) {
    const size_t n = std::min<size_t>(name.size(), 255);
    body.WriteU8(static_cast<uint8_t>(n));
    body.WriteBytes(name.data(), n);
}

}  // namespace

// --- DefineFont ------------------------------------------------------------

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

// --- DefineFontInfo / DefineFontInfo2 --------------------------------------

void DefineFontInfoTag::WriteBody(SwfStream& body) const {
    body.WriteU16(fontId);
    WriteShortName(body, name);
    body.WriteU8(InfoFlags(smallText, shiftJis, ansi, italic, bold, wideCodes));
    for (uint16_t c : codes) {
        if (wideCodes) body.WriteU16(c);
        else body.WriteU8(static_cast<uint8_t>(c));
    }
}

void DefineFontInfoTag::ReadBody(SwfInput& body) {
    fontId = body.ReadU16();
    name = body.ReadBytesAsString(body.ReadU8());
    const uint8_t f = body.ReadU8();
    smallText = f & 0x20;
    shiftJis = f & 0x10;
    ansi = f & 0x08;
    italic = f & 0x04;
    bold = f & 0x02;
    wideCodes = f & 0x01;
    codes.clear();
    while (body.ok() && body.Remaining() >= (wideCodes ? 2u : 1u))
        codes.push_back(wideCodes ? body.ReadU16() : body.ReadU8());
    if (body.Remaining() > 0) body.Fail("odd byte after the code table");
}

void DefineFontInfo2Tag::WriteBody(SwfStream& body) const {
    body.WriteU16(fontId);
    WriteShortName(body, name);
    body.WriteU8(InfoFlags(smallText, shiftJis, ansi, italic, bold, true));
    body.WriteU8(languageCode);
    for (uint16_t c : codes) body.WriteU16(c);
}

void DefineFontInfo2Tag::ReadBody(SwfInput& body) {
    fontId = body.ReadU16();
    name = body.ReadBytesAsString(body.ReadU8());
    const uint8_t f = body.ReadU8();
    smallText = f & 0x20;
    shiftJis = f & 0x10;
    ansi = f & 0x08;
    italic = f & 0x04;
    bold = f & 0x02;
    languageCode = body.ReadU8();
    codes.clear();
    while (body.ok() && body.Remaining() >= 2) codes.push_back(body.ReadU16());
    if (body.Remaining() > 0) body.Fail("odd byte after the code table");
}

// --- DefineFont2 -----------------------------------------------------------

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
