// Button records (the characters that make up a button's states) and the
// conditional actions of DefineButton2.
#pragma once

#include <cstdint>
#include <vector>

#include "swf/SwfAction.h"
#include "swf/SwfRecords.h"

namespace quillet {

struct SwfButtonRecord {
    enum State : uint8_t { Up = 0x01, Over = 0x02, Down = 0x04, HitTest = 0x08 };
    uint8_t states = Up | Over | Down | HitTest;  // in which states the character shows
    // The two reserved top bits as read: a record whose flags are only these
    // must not be written as 0, the end of the list.
    uint8_t reservedBits = 0;
    uint16_t characterId = 0;
    uint16_t depth = 1;
    SwfMatrix matrix;
    SwfColorTransformAlpha colorTransform;  // DefineButton2 only
    bool hasBlendMode = false;              // SWF 8
    uint8_t blendMode = 0;

    // `button2` selects the DefineButton2 layout (with the colour transform).
    void Write(SwfStream& out, bool button2) const;
    void Read(SwfInput& in, uint8_t flags, bool button2);
    bool operator==(const SwfButtonRecord&) const = default;
};
// Records until the 0 flag byte (which is written/consumed).
void WriteButtonRecords(SwfStream& out, const std::vector<SwfButtonRecord>& records, bool button2);
void ReadButtonRecords(SwfInput& in, std::vector<SwfButtonRecord>& records, bool button2);

struct SwfButtonCondAction {
    // Condition bits as published: 0x0001 idle-to-over-up (roll over),
    // 0x0002 over-up-to-idle (roll out), 0x0004 over-up-to-over-down (press),
    // 0x0008 over-down-to-over-up (release), ..., key code in bits 9..15.
    enum : uint16_t {
        IdleToOverUp = 0x0001, OverUpToIdle = 0x0002, OverUpToOverDown = 0x0004, OverDownToOverUp = 0x0008,
        OverDownToOutDown = 0x0010, OutDownToOverDown = 0x0020, OutDownToIdle = 0x0040,
        IdleToOverDown = 0x0080, OverDownToIdle = 0x0100,
    };
    uint16_t conditions = OverDownToOverUp;  // release
    SwfActionList actions;
};

}  // namespace quillet
