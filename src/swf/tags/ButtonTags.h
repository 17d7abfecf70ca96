// Buttons: DefineButton (one action list on release), DefineButton2
// (conditional actions, colour transforms), DefineButtonSound,
// DefineButtonCxform.
#pragma once

#include <array>
#include <vector>

#include "swf/SwfButton.h"
#include "swf/SwfRecords.h"
#include "swf/SwfSound.h"
#include "swf/SwfTag.h"

namespace quillet {

class DefineButtonTag final : public SwfTag {
public:
    DefineButtonTag() = default;
    explicit DefineButtonTag(uint16_t id) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineButton; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override;
    std::vector<SwfButtonRecord> records;
    SwfActionList actions;  // run on release

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

class DefineButton2Tag final : public SwfTag {
public:
    DefineButton2Tag() = default;
    explicit DefineButton2Tag(uint16_t id) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineButton2; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override;
    bool trackAsMenu = false;
    std::vector<SwfButtonRecord> records;
    std::vector<SwfButtonCondAction> actions;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

// Sounds for the four state changes: over-up to idle, idle to over-up,
// over-up to over-down, over-down to over-up. Id 0 means no sound.
class DefineButtonSoundTag final : public SwfTag {
public:
    DefineButtonSoundTag() = default;
    explicit DefineButtonSoundTag(uint16_t button) : buttonId(button) {}
    uint16_t Code() const override { return SwfTagCode::DefineButtonSound; }
    void OffsetIds(int16_t delta) override;
    uint16_t buttonId = 0;
    std::array<uint16_t, 4> soundIds{};
    std::array<SwfSoundInfo, 4> soundInfos{};

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

// A colour transform for a DefineButton (published CXFORM layout).
class DefineButtonCxformTag final : public SwfTag {
public:
    DefineButtonCxformTag() = default;
    uint16_t Code() const override { return SwfTagCode::DefineButtonCxform; }
    void OffsetIds(int16_t delta) override { buttonId = Offset(buttonId, delta); }
    uint16_t buttonId = 0;
    SwfColorTransform colorTransform;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(buttonId); colorTransform.WriteWithWidth(body); }
    void ReadBody(SwfInput& body) override { buttonId = body.ReadU16(); colorTransform.Read(body); }
};

}  // namespace quillet
