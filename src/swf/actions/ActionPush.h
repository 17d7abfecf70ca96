// Push: puts typed values on the stack.
#pragma once

#include <string>
#include <vector>

#include "swf/SwfAction.h"

namespace quillet {

struct SwfPushValue {
    enum Type : uint8_t {
        String = 0, Float = 1, Null = 2, Undefined = 3, Register = 4,
        Boolean = 5, Double = 6, Integer = 7, Constant8 = 8, Constant16 = 9,
    };
    Type type = Undefined;
    std::string text;      // String
    float f = 0;           // Float
    double d = 0;          // Double
    int32_t i = 0;         // Integer
    uint32_t u = 0;        // Register (u8), Boolean (u8), Constant8 (u8), Constant16 (u16)

    static SwfPushValue MakeString(std::string s) { SwfPushValue v; v.type = String; v.text = std::move(s); return v; }
    static SwfPushValue MakeFloat(float x) { SwfPushValue v; v.type = Float; v.f = x; return v; }
    static SwfPushValue MakeNull() { SwfPushValue v; v.type = Null; return v; }
    static SwfPushValue MakeUndefined() { return SwfPushValue(); }
    static SwfPushValue MakeRegister(uint8_t r) { SwfPushValue v; v.type = Register; v.u = r; return v; }
    static SwfPushValue MakeBoolean(bool b) { SwfPushValue v; v.type = Boolean; v.u = b ? 1 : 0; return v; }
    static SwfPushValue MakeDouble(double x) { SwfPushValue v; v.type = Double; v.d = x; return v; }
    static SwfPushValue MakeInteger(int32_t x) { SwfPushValue v; v.type = Integer; v.i = x; return v; }
    // An index into the constant pool: one byte below 256, else two.
    static SwfPushValue MakeConstant(uint16_t index) {
        SwfPushValue v; v.type = index < 256 ? Constant8 : Constant16; v.u = index; return v;
    }
    bool operator==(const SwfPushValue&) const = default;
};

class ActionPush final : public SwfAction {
public:
    ActionPush() = default;
    ActionPush(std::initializer_list<SwfPushValue> list) : values(list) {}
    explicit ActionPush(std::vector<SwfPushValue> v) : values(std::move(v)) {}
    uint8_t Code() const override { return SwfActionCode::Push; }
    size_t Read(SwfInput& payload) override;

    ActionPush& String(std::string s) { values.push_back(SwfPushValue::MakeString(std::move(s))); return *this; }
    ActionPush& Integer(int32_t x) { values.push_back(SwfPushValue::MakeInteger(x)); return *this; }
    ActionPush& Double(double x) { values.push_back(SwfPushValue::MakeDouble(x)); return *this; }
    ActionPush& Float(float x) { values.push_back(SwfPushValue::MakeFloat(x)); return *this; }
    ActionPush& Boolean(bool b) { values.push_back(SwfPushValue::MakeBoolean(b)); return *this; }
    ActionPush& Null() { values.push_back(SwfPushValue::MakeNull()); return *this; }
    ActionPush& Undefined() { values.push_back(SwfPushValue::MakeUndefined()); return *this; }
    ActionPush& Register(uint8_t r) { values.push_back(SwfPushValue::MakeRegister(r)); return *this; }
    ActionPush& Constant(uint16_t index) { values.push_back(SwfPushValue::MakeConstant(index)); return *this; }

    std::vector<SwfPushValue> values;

protected:
    void WritePayload(SwfStream& out) const override;
};

}  // namespace quillet
