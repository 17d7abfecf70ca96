// Static text (DefineText, DefineText2 with alpha colours) and the editable
// text field DefineEditText.
#pragma once

#include <string>
#include <vector>

#include "swf/SwfRecords.h"
#include "swf/SwfTag.h"
#include "swf/SwfText.h"

namespace quillet {

class SwfDefineTextBase : public SwfTag {
public:
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override;
    virtual bool WithAlpha() const = 0;

    SwfRect bounds;
    SwfMatrix matrix;  // usually identity
    std::vector<SwfTextRecord> records;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

class DefineTextTag final : public SwfDefineTextBase {
public:
    DefineTextTag() = default;
    explicit DefineTextTag(uint16_t id) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineText; }
    bool WithAlpha() const override { return false; }
};

class DefineText2Tag final : public SwfDefineTextBase {
public:
    DefineText2Tag() = default;
    explicit DefineText2Tag(uint16_t id) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineText2; }
    bool WithAlpha() const override { return true; }
};

// A text field. Fields that are absent are not written; the flags follow
// from what is set.
class DefineEditTextTag final : public SwfTag {
public:
    enum Align : uint8_t { Left = 0, Right = 1, Center = 2, Justify = 3 };
    DefineEditTextTag() = default;
    explicit DefineEditTextTag(uint16_t id) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineEditText; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override;

    SwfRect bounds;
    bool wordWrap = false, multiline = false, password = false, readOnly = true;
    bool autoSize = false, noSelect = true, border = false, wasStatic = false, html = false;
    bool useOutlines = false;  // draw with the embedded glyphs of fontId
    bool hasFont = false;
    uint16_t fontId = 0;
    uint16_t fontHeight = 240;  // twips
    bool hasFontClass = false;  // SWF 9; kept for round trips
    std::string fontClass;
    bool hasTextColor = false;
    SwfColor textColor;
    bool hasMaxLength = false;
    uint16_t maxLength = 0;
    bool hasLayout = false;
    uint8_t align = Left;
    uint16_t leftMargin = 0, rightMargin = 0, indent = 0;
    int16_t leading = 0;
    std::string variableName;
    bool hasText = false;
    std::string initialText;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

}  // namespace quillet
