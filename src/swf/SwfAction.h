// Script actions (the AVM1 byte code of DoAction, DoInitAction, buttons and
// clip events): the action base class, the list that owns and writes them,
// and the payload-free actions. Actions with a payload live in swf/actions/.
//
// A record is the code byte alone for codes below 0x80 (they never carry a
// payload); codes from 0x80 on are followed by a u16 payload length and the
// payload. A list ends with the end-of-actions byte 0x00.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "swf/SwfInput.h"
#include "swf/SwfStream.h"

namespace quillet {

struct SwfActionCode {
    enum : uint8_t {
        End = 0x00,
        NextFrame = 0x04, PrevFrame = 0x05, Play = 0x06, Stop = 0x07, ToggleQuality = 0x08, StopSounds = 0x09,
        Add = 0x0A, Subtract = 0x0B, Multiply = 0x0C, Divide = 0x0D, Equals = 0x0E, Less = 0x0F,
        And = 0x10, Or = 0x11, Not = 0x12, StringEquals = 0x13, StringLength = 0x14, StringExtract = 0x15,
        Pop = 0x17, ToInteger = 0x18, GetVariable = 0x1C, SetVariable = 0x1D,
        SetTarget2 = 0x20, StringAdd = 0x21, GetProperty = 0x22, SetProperty = 0x23, CloneSprite = 0x24,
        RemoveSprite = 0x25, Trace = 0x26, StartDrag = 0x27, EndDrag = 0x28, StringLess = 0x29, Throw = 0x2A,
        CastOp = 0x2B, ImplementsOp = 0x2C,
        RandomNumber = 0x30, MBStringLength = 0x31, CharToAscii = 0x32, AsciiToChar = 0x33, GetTime = 0x34,
        MBStringExtract = 0x35, MBCharToAscii = 0x36, MBAsciiToChar = 0x37,
        Delete = 0x3A, Delete2 = 0x3B, DefineLocal = 0x3C, CallFunction = 0x3D, Return = 0x3E, Modulo = 0x3F,
        NewObject = 0x40, DefineLocal2 = 0x41, InitArray = 0x42, InitObject = 0x43, TypeOf = 0x44,
        TargetPath = 0x45, Enumerate = 0x46, Add2 = 0x47, Less2 = 0x48, Equals2 = 0x49, ToNumber = 0x4A,
        ToString = 0x4B, PushDuplicate = 0x4C, StackSwap = 0x4D, GetMember = 0x4E, SetMember = 0x4F,
        Increment = 0x50, Decrement = 0x51, CallMethod = 0x52, NewMethod = 0x53, InstanceOf = 0x54,
        Enumerate2 = 0x55,
        BitAnd = 0x60, BitOr = 0x61, BitXor = 0x62, BitLShift = 0x63, BitRShift = 0x64, BitURShift = 0x65,
        StrictEquals = 0x66, Greater = 0x67, StringGreater = 0x68, Extends = 0x69,
        GotoFrame = 0x81, GetURL = 0x83, StoreRegister = 0x87, ConstantPool = 0x88, WaitForFrame = 0x8A,
        SetTarget = 0x8B, GoToLabel = 0x8C, WaitForFrame2 = 0x8D, DefineFunction2 = 0x8E, Try = 0x8F,
        With = 0x94, Push = 0x96, Jump = 0x99, GetURL2 = 0x9A, DefineFunction = 0x9B, If = 0x9D, Call = 0x9E,
        GotoFrame2 = 0x9F,
    };
};
// "Play", "GotoFrame"...; "Unknown" for codes we have no name for.
const char* SwfActionName(uint8_t code);

class SwfActionList;

class SwfAction {
public:
    virtual ~SwfAction() = default;
    // Parses the payload; `payload` holds exactly the payload bytes. Returns
    // the bytes consumed; failures are recorded in the reader.
    virtual size_t Read(SwfInput& payload) { return 0; }
    // Appends the whole record (and a function's or With's body); returns the bytes added.
    virtual size_t Write(SwfStream& out) const;
    // Hook run before writing; empty for most actions.
    virtual void Prepare() {}
    virtual uint8_t Code() const = 0;

    // Actions that own the actions following them (DefineFunction, With)
    // return that body; the list reader fills it from the bytes after the record.
    virtual SwfActionList* Body() { return nullptr; }
    // Bytes of body announced by the record just read.
    virtual uint32_t DeclaredBodySize() const { return 0; }

    // Size of the whole record as Write() produces it.
    size_t RecordSize() const;

protected:
    // Writes the payload only; the base adds code and length.
    virtual void WritePayload(SwfStream& out) const {}
};

// An action without payload, one class per code: ActionPlay, ActionStop...
template <uint8_t C>
class SwfSimpleAction final : public SwfAction {
public:
    uint8_t Code() const override { return C; }
};
using ActionNextFrame = SwfSimpleAction<SwfActionCode::NextFrame>;
using ActionPrevFrame = SwfSimpleAction<SwfActionCode::PrevFrame>;
using ActionPlay = SwfSimpleAction<SwfActionCode::Play>;
using ActionStop = SwfSimpleAction<SwfActionCode::Stop>;
using ActionToggleQuality = SwfSimpleAction<SwfActionCode::ToggleQuality>;
using ActionStopSounds = SwfSimpleAction<SwfActionCode::StopSounds>;
using ActionAdd = SwfSimpleAction<SwfActionCode::Add>;
using ActionSubtract = SwfSimpleAction<SwfActionCode::Subtract>;
using ActionMultiply = SwfSimpleAction<SwfActionCode::Multiply>;
using ActionDivide = SwfSimpleAction<SwfActionCode::Divide>;
using ActionEquals = SwfSimpleAction<SwfActionCode::Equals>;
using ActionLess = SwfSimpleAction<SwfActionCode::Less>;
using ActionAnd = SwfSimpleAction<SwfActionCode::And>;
using ActionOr = SwfSimpleAction<SwfActionCode::Or>;
using ActionNot = SwfSimpleAction<SwfActionCode::Not>;
using ActionStringEquals = SwfSimpleAction<SwfActionCode::StringEquals>;
using ActionStringLength = SwfSimpleAction<SwfActionCode::StringLength>;
using ActionStringExtract = SwfSimpleAction<SwfActionCode::StringExtract>;
using ActionPop = SwfSimpleAction<SwfActionCode::Pop>;
using ActionToInteger = SwfSimpleAction<SwfActionCode::ToInteger>;
using ActionGetVariable = SwfSimpleAction<SwfActionCode::GetVariable>;
using ActionSetVariable = SwfSimpleAction<SwfActionCode::SetVariable>;
using ActionSetTarget2 = SwfSimpleAction<SwfActionCode::SetTarget2>;
using ActionStringAdd = SwfSimpleAction<SwfActionCode::StringAdd>;
using ActionGetProperty = SwfSimpleAction<SwfActionCode::GetProperty>;
using ActionSetProperty = SwfSimpleAction<SwfActionCode::SetProperty>;
using ActionCloneSprite = SwfSimpleAction<SwfActionCode::CloneSprite>;
using ActionRemoveSprite = SwfSimpleAction<SwfActionCode::RemoveSprite>;
using ActionTrace = SwfSimpleAction<SwfActionCode::Trace>;
using ActionStartDrag = SwfSimpleAction<SwfActionCode::StartDrag>;
using ActionEndDrag = SwfSimpleAction<SwfActionCode::EndDrag>;
using ActionStringLess = SwfSimpleAction<SwfActionCode::StringLess>;
using ActionRandomNumber = SwfSimpleAction<SwfActionCode::RandomNumber>;
using ActionCharToAscii = SwfSimpleAction<SwfActionCode::CharToAscii>;
using ActionAsciiToChar = SwfSimpleAction<SwfActionCode::AsciiToChar>;
using ActionGetTime = SwfSimpleAction<SwfActionCode::GetTime>;
using ActionDelete = SwfSimpleAction<SwfActionCode::Delete>;
using ActionDelete2 = SwfSimpleAction<SwfActionCode::Delete2>;
using ActionDefineLocal = SwfSimpleAction<SwfActionCode::DefineLocal>;
using ActionCallFunction = SwfSimpleAction<SwfActionCode::CallFunction>;
using ActionReturn = SwfSimpleAction<SwfActionCode::Return>;
using ActionModulo = SwfSimpleAction<SwfActionCode::Modulo>;
using ActionNewObject = SwfSimpleAction<SwfActionCode::NewObject>;
using ActionDefineLocal2 = SwfSimpleAction<SwfActionCode::DefineLocal2>;
using ActionInitArray = SwfSimpleAction<SwfActionCode::InitArray>;
using ActionInitObject = SwfSimpleAction<SwfActionCode::InitObject>;
using ActionTypeOf = SwfSimpleAction<SwfActionCode::TypeOf>;
using ActionTargetPath = SwfSimpleAction<SwfActionCode::TargetPath>;
using ActionEnumerate = SwfSimpleAction<SwfActionCode::Enumerate>;
using ActionAdd2 = SwfSimpleAction<SwfActionCode::Add2>;
using ActionLess2 = SwfSimpleAction<SwfActionCode::Less2>;
using ActionEquals2 = SwfSimpleAction<SwfActionCode::Equals2>;
using ActionToNumber = SwfSimpleAction<SwfActionCode::ToNumber>;
using ActionToString = SwfSimpleAction<SwfActionCode::ToString>;
using ActionPushDuplicate = SwfSimpleAction<SwfActionCode::PushDuplicate>;
using ActionStackSwap = SwfSimpleAction<SwfActionCode::StackSwap>;
using ActionGetMember = SwfSimpleAction<SwfActionCode::GetMember>;
using ActionSetMember = SwfSimpleAction<SwfActionCode::SetMember>;
using ActionIncrement = SwfSimpleAction<SwfActionCode::Increment>;
using ActionDecrement = SwfSimpleAction<SwfActionCode::Decrement>;
using ActionCallMethod = SwfSimpleAction<SwfActionCode::CallMethod>;
using ActionNewMethod = SwfSimpleAction<SwfActionCode::NewMethod>;
using ActionInstanceOf = SwfSimpleAction<SwfActionCode::InstanceOf>;
using ActionEnumerate2 = SwfSimpleAction<SwfActionCode::Enumerate2>;
using ActionBitAnd = SwfSimpleAction<SwfActionCode::BitAnd>;
using ActionBitOr = SwfSimpleAction<SwfActionCode::BitOr>;
using ActionBitXor = SwfSimpleAction<SwfActionCode::BitXor>;
using ActionBitLShift = SwfSimpleAction<SwfActionCode::BitLShift>;
using ActionBitRShift = SwfSimpleAction<SwfActionCode::BitRShift>;
using ActionBitURShift = SwfSimpleAction<SwfActionCode::BitURShift>;
using ActionStrictEquals = SwfSimpleAction<SwfActionCode::StrictEquals>;
using ActionGreater = SwfSimpleAction<SwfActionCode::Greater>;
using ActionStringGreater = SwfSimpleAction<SwfActionCode::StringGreater>;
using ActionExtends = SwfSimpleAction<SwfActionCode::Extends>;
using ActionThrow = SwfSimpleAction<SwfActionCode::Throw>;
using ActionCastOp = SwfSimpleAction<SwfActionCode::CastOp>;
using ActionImplementsOp = SwfSimpleAction<SwfActionCode::ImplementsOp>;

// An action we keep as bytes: an unknown code, or one whose payload we do
// not interpret (Call, Try). Written back unchanged.
class SwfRawAction final : public SwfAction {
public:
    explicit SwfRawAction(uint8_t code, std::vector<uint8_t> payload = {}) : code_(code), payload_(std::move(payload)) {}
    size_t Read(SwfInput& payload) override;
    uint8_t Code() const override { return code_; }
    const std::vector<uint8_t>& Payload() const { return payload_; }

protected:
    void WritePayload(SwfStream& out) const override { out.WriteBytes(payload_); }

private:
    uint8_t code_;
    std::vector<uint8_t> payload_;
};

// A fresh, empty action object for a code (a raw one for unknown codes).
std::unique_ptr<SwfAction> CreateSwfAction(uint8_t code);

// An ordered list of owned actions, written in order and closed by 0x00.
class SwfActionList {
public:
    SwfActionList() = default;
    SwfActionList(SwfActionList&&) noexcept = default;
    SwfActionList& operator=(SwfActionList&&) noexcept = default;

    // Takes ownership; returns the action for further setting.
    SwfAction& Add(std::unique_ptr<SwfAction> action);
    template <class T, class... Args>
    T& Emplace(Args&&... args) {
        auto p = std::make_unique<T>(std::forward<Args>(args)...);
        T& ref = *p;
        Add(std::move(p));
        return ref;
    }
    // Moves every action of `other` to the end of this list.
    void Append(SwfActionList&& other);

    size_t size() const { return actions_.size(); }
    bool empty() const { return actions_.empty(); }
    SwfAction& operator[](size_t i) const { return *actions_[i]; }
    auto begin() const { return actions_.begin(); }
    auto end() const { return actions_.end(); }
    void clear() { actions_.clear(); }

    // Writes the actions, then the end byte when `withEnd`; returns the bytes added.
    size_t Write(SwfStream& out, bool withEnd = true) const;
    // Reads actions. With `untilEnd` it stops after the 0x00 byte (which must
    // come); without it, it reads to the end of `in` (function bodies).
    bool Read(SwfInput& in, bool untilEnd = true);
    // Bytes that actions [from, to) take when written (for branch offsets).
    size_t ByteSize(size_t from, size_t to) const;

    // Conveniences for the common statements:
    // name = value (both pushed as strings), then SetVariable.
    void SetVariable(const std::string& name, const std::string& value);
    // Pushes one string.
    void PushString(const std::string& value);

private:
    std::vector<std::unique_ptr<SwfAction>> actions_;
};

}  // namespace quillet
