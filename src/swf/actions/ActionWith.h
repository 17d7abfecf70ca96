// With: runs the block that follows the record with an object on the scope chain.
#pragma once

#include "swf/SwfAction.h"

namespace quillet {

class ActionWith final : public SwfAction {
public:
    uint8_t Code() const override { return SwfActionCode::With; }
    size_t Read(SwfInput& payload) override;
    size_t Write(SwfStream& out) const override;
    SwfActionList* Body() override { return &block; }
    uint32_t DeclaredBodySize() const override { return declaredBlockSize_; }

    SwfActionList block;  // written behind the record, without an end byte

private:
    uint16_t declaredBlockSize_ = 0;
};

}  // namespace quillet
