#pragma once

#include "swf/SwfAction.h"
#include "swf/SwfTag.h"

namespace quillet {

// A frame script. Always written with the long header.
class DoActionTag final : public SwfTag {
public:
    DoActionTag() = default;
    explicit DoActionTag(SwfActionList list) : actions(std::move(list)) {}
    uint16_t Code() const override { return SwfTagCode::DoAction; }
    SwfActionList actions;

protected:
    void WriteBody(SwfStream& body) const override { actions.Write(body, true); }
    void ReadBody(SwfInput& body) override { actions.Read(body, true); }
    bool ForceLongHeader() const override { return true; }
};

// A script run once when a sprite is first defined (SWF 6). Long header always.
class DoInitActionTag final : public SwfTag {
public:
    DoInitActionTag() = default;
    DoInitActionTag(uint16_t sprite, SwfActionList list) : spriteId(sprite), actions(std::move(list)) {}
    uint16_t Code() const override { return SwfTagCode::DoInitAction; }
    void OffsetIds(int16_t delta) override { spriteId = Offset(spriteId, delta); }
    uint16_t spriteId = 0;
    SwfActionList actions;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(spriteId); actions.Write(body, true); }
    void ReadBody(SwfInput& body) override { spriteId = body.ReadU16(); actions.Read(body, true); }
    bool ForceLongHeader() const override { return true; }
};

}  // namespace quillet
