// Tags without a body: End (closes a movie or a sprite) and ShowFrame.
#pragma once

#include "swf/SwfTag.h"

namespace quillet {

class EndTag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::End; }
};

class ShowFrameTag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::ShowFrame; }
};

}  // namespace quillet
