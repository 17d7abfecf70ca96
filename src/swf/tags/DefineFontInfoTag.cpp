// DefineFontInfo and DefineFontInfo2: name and character codes for a DefineFont.
#include "swf/tags/FontTags.h"

#include "swf/tags/FontShared.h"

namespace quillet {

using namespace font_detail;

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

}  // namespace quillet
