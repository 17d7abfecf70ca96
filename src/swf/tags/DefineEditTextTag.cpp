// DefineEditText: a text field.
#include "swf/tags/TextTags.h"

namespace quillet {

void DefineEditTextTag::OffsetIds(int16_t delta) {
    id_ = Offset(id_, delta);
    if (hasFont) fontId = Offset(fontId, delta);
}

void DefineEditTextTag::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    bounds.Write(body);
    uint8_t f1 = 0, f2 = 0;
    if (hasText) f1 |= 0x80;
    if (wordWrap) f1 |= 0x40;
    if (multiline) f1 |= 0x20;
    if (password) f1 |= 0x10;
    if (readOnly) f1 |= 0x08;
    if (hasTextColor) f1 |= 0x04;
    if (hasMaxLength) f1 |= 0x02;
    if (hasFont) f1 |= 0x01;
    if (hasFontClass) f2 |= 0x80;
    if (autoSize) f2 |= 0x40;
    if (hasLayout) f2 |= 0x20;
    if (noSelect) f2 |= 0x10;
    if (border) f2 |= 0x08;
    if (wasStatic) f2 |= 0x04;
    if (html) f2 |= 0x02;
    if (useOutlines) f2 |= 0x01;
    body.WriteU8(f1);
    body.WriteU8(f2);
    if (hasFont) body.WriteU16(fontId);
    if (hasFontClass) body.WriteString(fontClass);
    if (hasFont || hasFontClass) body.WriteU16(fontHeight);
    if (hasTextColor) textColor.WriteRgba(body);
    if (hasMaxLength) body.WriteU16(maxLength);
    if (hasLayout) {
        body.WriteU8(align);
        body.WriteU16(leftMargin);
        body.WriteU16(rightMargin);
        body.WriteU16(indent);
        body.WriteS16(leading);
    }
    body.WriteString(variableName);
    if (hasText) body.WriteString(initialText);
}

void DefineEditTextTag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    bounds.Read(body);
    const uint8_t f1 = body.ReadU8();
    const uint8_t f2 = body.ReadU8();
    hasText = f1 & 0x80;
    wordWrap = f1 & 0x40;
    multiline = f1 & 0x20;
    password = f1 & 0x10;
    readOnly = f1 & 0x08;
    hasTextColor = f1 & 0x04;
    hasMaxLength = f1 & 0x02;
    hasFont = f1 & 0x01;
    hasFontClass = f2 & 0x80;
    autoSize = f2 & 0x40;
    hasLayout = f2 & 0x20;
    noSelect = f2 & 0x10;
    border = f2 & 0x08;
    wasStatic = f2 & 0x04;
    html = f2 & 0x02;
    useOutlines = f2 & 0x01;
    if (hasFont) fontId = body.ReadU16();
    if (hasFontClass) fontClass = body.ReadString();
    if (hasFont || hasFontClass) fontHeight = body.ReadU16();
    if (hasTextColor) textColor.ReadRgba(body);
    if (hasMaxLength) maxLength = body.ReadU16();
    if (hasLayout) {
        align = body.ReadU8();
        leftMargin = body.ReadU16();
        rightMargin = body.ReadU16();
        indent = body.ReadU16();
        leading = body.ReadS16();
    }
    variableName = body.ReadString();
    if (hasText) initialText = body.ReadString();
}

}  // namespace quillet
