// Jump and If: branch by a signed byte offset counted from the end of the record.
#pragma once

#include "swf/SwfAction.h"

namespace quillet {

class ActionJump final : public SwfAction {
public:
    ActionJump() = default;
    explicit ActionJump(int16_t byteOffset) : offset(byteOffset) {}
    uint8_t Code() const override { return SwfActionCode::Jump; }
    size_t Read(SwfInput& payload) override;
    int16_t offset = 0;

protected:
    void WritePayload(SwfStream& out) const override { out.WriteS16(offset); }
};

// Branches when the popped value is true.
class ActionIf final : public SwfAction {
public:
    ActionIf() = default;
    explicit ActionIf(int16_t byteOffset) : offset(byteOffset) {}
    uint8_t Code() const override { return SwfActionCode::If; }
    size_t Read(SwfInput& payload) override;
    int16_t offset = 0;

protected:
    void WritePayload(SwfStream& out) const override { out.WriteS16(offset); }
};

}  // namespace quillet
