// Removing characters from the display list, and freeing a character.
#pragma once

#include "swf/SwfTag.h"

namespace quillet {

// RemoveObject2: removes whatever is at a depth.
class RemoveObject2Tag final : public SwfTag {
public:
    RemoveObject2Tag() = default;
    explicit RemoveObject2Tag(uint16_t d) : depth(d) {}
    uint16_t Code() const override { return SwfTagCode::RemoveObject2; }
    uint16_t depth = 0;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(depth); }
    void ReadBody(SwfInput& body) override { depth = body.ReadU16(); }
};

// RemoveObject: removes a given character from a depth.
class RemoveObjectTag final : public SwfTag {
public:
    RemoveObjectTag() = default;
    RemoveObjectTag(uint16_t id, uint16_t d) : characterId(id), depth(d) {}
    uint16_t Code() const override { return SwfTagCode::RemoveObject; }
    void OffsetIds(int16_t delta) override { characterId = Offset(characterId, delta); }
    uint16_t characterId = 0;
    uint16_t depth = 0;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(characterId); body.WriteU16(depth); }
    void ReadBody(SwfInput& body) override { characterId = body.ReadU16(); depth = body.ReadU16(); }
};

// FreeCharacter: the player may forget a character.
class FreeCharacterTag final : public SwfTag {
public:
    FreeCharacterTag() = default;
    explicit FreeCharacterTag(uint16_t id) : characterId(id) {}
    uint16_t Code() const override { return SwfTagCode::FreeCharacter; }
    void OffsetIds(int16_t delta) override { characterId = Offset(characterId, delta); }
    uint16_t characterId = 0;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(characterId); }
    void ReadBody(SwfInput& body) override { characterId = body.ReadU16(); }
};

}  // namespace quillet
