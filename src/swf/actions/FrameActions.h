// Timeline actions with a payload: GotoFrame, GotoFrame2, GoToLabel,
// WaitForFrame, WaitForFrame2, SetTarget, StoreRegister.
#pragma once

#include <string>

#include "swf/SwfAction.h"

namespace quillet {

// Goes to a frame, given as a 0-based index.
class ActionGotoFrame final : public SwfAction {
public:
    ActionGotoFrame() = default;
    explicit ActionGotoFrame(uint16_t frameIndex) : frame(frameIndex) {}
    uint8_t Code() const override { return SwfActionCode::GotoFrame; }
    size_t Read(SwfInput& payload) override;
    uint16_t frame = 0;

protected:
    void WritePayload(SwfStream& out) const override { out.WriteU16(frame); }
};

// Goes to the frame (number or label) popped from the stack; optionally plays.
class ActionGotoFrame2 final : public SwfAction {
public:
    ActionGotoFrame2() = default;
    explicit ActionGotoFrame2(bool playFlag) : play(playFlag) {}
    uint8_t Code() const override { return SwfActionCode::GotoFrame2; }
    size_t Read(SwfInput& payload) override;
    bool play = false;
    bool hasSceneBias = false;
    uint16_t sceneBias = 0;

protected:
    void WritePayload(SwfStream& out) const override;
};

class ActionGoToLabel final : public SwfAction {
public:
    ActionGoToLabel() = default;
    explicit ActionGoToLabel(std::string frameLabel) : label(std::move(frameLabel)) {}
    uint8_t Code() const override { return SwfActionCode::GoToLabel; }
    size_t Read(SwfInput& payload) override;
    std::string label;

protected:
    void WritePayload(SwfStream& out) const override { out.WriteString(label); }
};

// Skips `skipCount` actions unless the frame is loaded.
class ActionWaitForFrame final : public SwfAction {
public:
    ActionWaitForFrame() = default;
    ActionWaitForFrame(uint16_t frameIndex, uint8_t skip) : frame(frameIndex), skipCount(skip) {}
    uint8_t Code() const override { return SwfActionCode::WaitForFrame; }
    size_t Read(SwfInput& payload) override;
    uint16_t frame = 0;
    uint8_t skipCount = 0;

protected:
    void WritePayload(SwfStream& out) const override { out.WriteU16(frame); out.WriteU8(skipCount); }
};

// As WaitForFrame with the frame popped from the stack.
class ActionWaitForFrame2 final : public SwfAction {
public:
    ActionWaitForFrame2() = default;
    explicit ActionWaitForFrame2(uint8_t skip) : skipCount(skip) {}
    uint8_t Code() const override { return SwfActionCode::WaitForFrame2; }
    size_t Read(SwfInput& payload) override;
    uint8_t skipCount = 0;

protected:
    void WritePayload(SwfStream& out) const override { out.WriteU8(skipCount); }
};

// Directs the following actions at another timeline; "" is back to the own one.
class ActionSetTarget final : public SwfAction {
public:
    ActionSetTarget() = default;
    explicit ActionSetTarget(std::string targetPath) : target(std::move(targetPath)) {}
    uint8_t Code() const override { return SwfActionCode::SetTarget; }
    size_t Read(SwfInput& payload) override;
    std::string target;

protected:
    void WritePayload(SwfStream& out) const override { out.WriteString(target); }
};

class ActionStoreRegister final : public SwfAction {
public:
    ActionStoreRegister() = default;
    explicit ActionStoreRegister(uint8_t reg) : registerNumber(reg) {}
    uint8_t Code() const override { return SwfActionCode::StoreRegister; }
    size_t Read(SwfInput& payload) override;
    uint8_t registerNumber = 0;

protected:
    void WritePayload(SwfStream& out) const override { out.WriteU8(registerNumber); }
};

}  // namespace quillet
