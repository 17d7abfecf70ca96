#pragma once

#include <string>

#include "swf/SwfTag.h"

namespace quillet {

// Names the current frame. `anchor` (SWF 6) adds the named-anchor byte.
class FrameLabelTag final : public SwfTag {
public:
    FrameLabelTag() = default;
    explicit FrameLabelTag(std::string text, bool isAnchor = false) : label(std::move(text)), anchor(isAnchor) {}
    uint16_t Code() const override { return SwfTagCode::FrameLabel; }
    std::string label;
    bool anchor = false;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

}  // namespace quillet
