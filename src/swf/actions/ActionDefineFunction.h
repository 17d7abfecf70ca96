// DefineFunction: a named (or anonymous) function whose body is the actions
// that follow the record; the record announces the body's size.
#pragma once

#include <string>
#include <vector>

#include "swf/SwfAction.h"

namespace quillet {

class ActionDefineFunction final : public SwfAction {
public:
    ActionDefineFunction() = default;
    explicit ActionDefineFunction(std::string functionName, std::vector<std::string> parameters = {})
        : name(std::move(functionName)), params(std::move(parameters)) {}
    uint8_t Code() const override { return SwfActionCode::DefineFunction; }
    size_t Read(SwfInput& payload) override;
    size_t Write(SwfStream& out) const override;
    SwfActionList* Body() override { return &body; }
    uint32_t DeclaredBodySize() const override { return declaredBodySize_; }

    std::string name;  // empty for a function literal
    std::vector<std::string> params;
    SwfActionList body;  // written behind the record, without an end byte

private:
    uint32_t declaredBodySize_ = 0;
};

// DefineFunction2 (SWF 7): registers for parameters and preloaded variables.
class ActionDefineFunction2 final : public SwfAction {
public:
    struct Param {
        uint8_t reg = 0;  // 0: not in a register
        std::string name;
        bool operator==(const Param&) const = default;
    };
    uint8_t Code() const override { return SwfActionCode::DefineFunction2; }
    size_t Read(SwfInput& payload) override;
    size_t Write(SwfStream& out) const override;
    SwfActionList* Body() override { return &body; }
    uint32_t DeclaredBodySize() const override { return declaredBodySize_; }

    std::string name;
    uint8_t registerCount = 0;
    uint16_t flags = 0;  // preload/suppress bits as published
    std::vector<Param> params;
    SwfActionList body;

private:
    uint32_t declaredBodySize_ = 0;
};

}  // namespace quillet
