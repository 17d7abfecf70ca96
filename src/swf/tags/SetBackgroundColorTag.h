#pragma once

#include "swf/SwfRecords.h"
#include "swf/SwfTag.h"

namespace quillet {

// The stage colour (RGB).
class SetBackgroundColorTag final : public SwfTag {
public:
    SetBackgroundColorTag() = default;
    explicit SetBackgroundColorTag(SwfColor c) : color(c) {}
    uint16_t Code() const override { return SwfTagCode::SetBackgroundColor; }
    SwfColor color{255, 255, 255};

protected:
    void WriteBody(SwfStream& body) const override { color.WriteRgb(body); }
    void ReadBody(SwfInput& body) override { color.ReadRgb(body); }
};

}  // namespace quillet
