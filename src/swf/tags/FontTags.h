// Fonts: DefineFont (glyph outlines only), DefineFontInfo/DefineFontInfo2
// (name and character codes for a DefineFont), and DefineFont2 (everything in
// one tag: outlines, codes, and optionally the layout metrics that
// DefineEditText needs).
#pragma once

#include <string>
#include <vector>

#include "swf/SwfRecords.h"
#include "swf/SwfShape.h"
#include "swf/SwfTag.h"

namespace quillet {

class DefineFontTag final : public SwfTag {
public:
    DefineFontTag() = default;
    explicit DefineFontTag(uint16_t id) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineFont; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override { id_ = Offset(id_, delta); }
    // Glyph outlines in the font's 1024-unit em square (y grows downwards,
    // baseline at 0).
    std::vector<SwfShape> glyphs;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

class DefineFontInfoTag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::DefineFontInfo; }
    void OffsetIds(int16_t delta) override { fontId = Offset(fontId, delta); }
    uint16_t fontId = 0;
    std::string name;
    bool smallText = false, shiftJis = false, ansi = false, italic = false, bold = false;
    bool wideCodes = true;
    std::vector<uint16_t> codes;  // one per glyph

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

class DefineFontInfo2Tag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::DefineFontInfo2; }
    void OffsetIds(int16_t delta) override { fontId = Offset(fontId, delta); }
    uint16_t fontId = 0;
    std::string name;
    bool smallText = false, shiftJis = false, ansi = false, italic = false, bold = false;
    uint8_t languageCode = 1;  // 1 Latin, 2 Japanese, 3 Korean, 4/5 Chinese
    std::vector<uint16_t> codes;  // always 16-bit here

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

struct SwfKerningRecord {
    uint16_t code1 = 0, code2 = 0;
    int16_t adjustment = 0;
    bool operator==(const SwfKerningRecord&) const = default;
};

// For captions:
//   DefineFont2Tag font(fontId);
//   font.name = "DejaVu Sans"; font.hasLayout = true;
//   font.glyphs / codes / advances / glyphBounds: one entry per glyph, codes ascending.
//   font.ascent, descent, leading in em units (1024).
class DefineFont2Tag final : public SwfTag {
public:
    DefineFont2Tag() = default;
    explicit DefineFont2Tag(uint16_t id) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineFont2; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override { id_ = Offset(id_, delta); }

    bool hasLayout = false;
    bool shiftJis = false, smallText = false, ansi = false;
    bool wideOffsets = false;  // set by the writer when the glyph data need it
    bool wideCodes = true;     // required from SWF 6 on
    bool italic = false, bold = false;
    uint8_t languageCode = 1;  // 1 Latin, 2 Japanese, 3 Korean, 4/5 Chinese
    std::string name;
    std::vector<SwfShape> glyphs;
    std::vector<uint16_t> codes;  // character code of each glyph
    // Layout (with hasLayout):
    uint16_t ascent = 0, descent = 0;
    int16_t leading = 0;
    std::vector<int16_t> advances;   // one per glyph
    std::vector<SwfRect> glyphBounds;  // one per glyph (may be all zero)
    std::vector<SwfKerningRecord> kerning;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

}  // namespace quillet
