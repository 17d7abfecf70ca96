// Helpers that the font tags share: glyph shape tables, font-info flags and
// the short font name. Used only inside swf/tags.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "swf/tags/FontTags.h"

namespace quillet::font_detail {

inline std::vector<SwfStream> GlyphStreams(const std::vector<SwfShape>& glyphs, uint8_t version) {
    std::vector<SwfStream> out(glyphs.size());
    for (size_t i = 0; i < glyphs.size(); ++i) {
        out[i].version = version;
        glyphs[i].Write(out[i], 1);
    }
    return out;
}

// Reads glyph shapes from `table` (starting at the offset table) given the
// offsets of each glyph and the end of the last one.
inline bool ReadGlyphs(SwfInput& table, const std::vector<uint32_t>& offsets, uint32_t end, std::vector<SwfShape>& glyphs) {
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

inline uint8_t InfoFlags(bool smallText, bool shiftJis, bool ansi, bool italic, bool bold, bool wideCodes) {
    uint8_t f = 0;
    if (smallText) f |= 0x20;
    if (shiftJis) f |= 0x10;
    if (ansi) f |= 0x08;
    if (italic) f |= 0x04;
    if (bold) f |= 0x02;
    if (wideCodes) f |= 0x01;
    return f;
}

inline void WriteShortName(SwfStream& body, const std::string& name) {
    const size_t n = std::min<size_t>(name.size(), 255);
    body.WriteU8(static_cast<uint8_t>(n));
    body.WriteBytes(name.data(), n);
}

}  // namespace quillet::font_detail
