#include "swf/SwfAction.h"

#include "swf/SwfActions.h"

namespace quillet {

namespace {

constexpr int kMaxNesting = 32;  // function bodies and With blocks inside each other

}  // namespace

const char* SwfActionName(uint8_t code) {
    switch (code) {
    case SwfActionCode::End: return "End";
    case SwfActionCode::NextFrame: return "NextFrame";
    case SwfActionCode::PrevFrame: return "PrevFrame";
    case SwfActionCode::Play: return "Play";
    case SwfActionCode::Stop: return "Stop";
    case SwfActionCode::ToggleQuality: return "ToggleQuality";
    case SwfActionCode::StopSounds: return "StopSounds";
    case SwfActionCode::Add: return "Add";
    case SwfActionCode::Subtract: return "Subtract";
    case SwfActionCode::Multiply: return "Multiply";
    case SwfActionCode::Divide: return "Divide";
    case SwfActionCode::Equals: return "Equals";
    case SwfActionCode::Less: return "Less";
    case SwfActionCode::And: return "And";
    case SwfActionCode::Or: return "Or";
    case SwfActionCode::Not: return "Not";
    case SwfActionCode::StringEquals: return "StringEquals";
    case SwfActionCode::StringLength: return "StringLength";
    case SwfActionCode::StringExtract: return "StringExtract";
    case SwfActionCode::Pop: return "Pop";
    case SwfActionCode::ToInteger: return "ToInteger";
    case SwfActionCode::GetVariable: return "GetVariable";
    case SwfActionCode::SetVariable: return "SetVariable";
    case SwfActionCode::SetTarget2: return "SetTarget2";
    case SwfActionCode::StringAdd: return "StringAdd";
    case SwfActionCode::GetProperty: return "GetProperty";
    case SwfActionCode::SetProperty: return "SetProperty";
    case SwfActionCode::CloneSprite: return "CloneSprite";
    case SwfActionCode::RemoveSprite: return "RemoveSprite";
    case SwfActionCode::Trace: return "Trace";
    case SwfActionCode::StartDrag: return "StartDrag";
    case SwfActionCode::EndDrag: return "EndDrag";
    case SwfActionCode::StringLess: return "StringLess";
    case SwfActionCode::Throw: return "Throw";
    case SwfActionCode::CastOp: return "CastOp";
    case SwfActionCode::ImplementsOp: return "ImplementsOp";
    case SwfActionCode::RandomNumber: return "RandomNumber";
    case SwfActionCode::MBStringLength: return "MBStringLength";
    case SwfActionCode::CharToAscii: return "CharToAscii";
    case SwfActionCode::AsciiToChar: return "AsciiToChar";
    case SwfActionCode::GetTime: return "GetTime";
    case SwfActionCode::MBStringExtract: return "MBStringExtract";
    case SwfActionCode::MBCharToAscii: return "MBCharToAscii";
    case SwfActionCode::MBAsciiToChar: return "MBAsciiToChar";
    case SwfActionCode::Delete: return "Delete";
    case SwfActionCode::Delete2: return "Delete2";
    case SwfActionCode::DefineLocal: return "DefineLocal";
    case SwfActionCode::CallFunction: return "CallFunction";
    case SwfActionCode::Return: return "Return";
    case SwfActionCode::Modulo: return "Modulo";
    case SwfActionCode::NewObject: return "NewObject";
    case SwfActionCode::DefineLocal2: return "DefineLocal2";
    case SwfActionCode::InitArray: return "InitArray";
    case SwfActionCode::InitObject: return "InitObject";
    case SwfActionCode::TypeOf: return "TypeOf";
    case SwfActionCode::TargetPath: return "TargetPath";
    case SwfActionCode::Enumerate: return "Enumerate";
    case SwfActionCode::Add2: return "Add2";
    case SwfActionCode::Less2: return "Less2";
    case SwfActionCode::Equals2: return "Equals2";
    case SwfActionCode::ToNumber: return "ToNumber";
    case SwfActionCode::ToString: return "ToString";
    case SwfActionCode::PushDuplicate: return "PushDuplicate";
    case SwfActionCode::StackSwap: return "StackSwap";
    case SwfActionCode::GetMember: return "GetMember";
    case SwfActionCode::SetMember: return "SetMember";
    case SwfActionCode::Increment: return "Increment";
    case SwfActionCode::Decrement: return "Decrement";
    case SwfActionCode::CallMethod: return "CallMethod";
    case SwfActionCode::NewMethod: return "NewMethod";
    case SwfActionCode::InstanceOf: return "InstanceOf";
    case SwfActionCode::Enumerate2: return "Enumerate2";
    case SwfActionCode::BitAnd: return "BitAnd";
    case SwfActionCode::BitOr: return "BitOr";
    case SwfActionCode::BitXor: return "BitXor";
    case SwfActionCode::BitLShift: return "BitLShift";
    case SwfActionCode::BitRShift: return "BitRShift";
    case SwfActionCode::BitURShift: return "BitURShift";
    case SwfActionCode::StrictEquals: return "StrictEquals";
    case SwfActionCode::Greater: return "Greater";
    case SwfActionCode::StringGreater: return "StringGreater";
    case SwfActionCode::Extends: return "Extends";
    case SwfActionCode::GotoFrame: return "GotoFrame";
    case SwfActionCode::GetURL: return "GetURL";
    case SwfActionCode::StoreRegister: return "StoreRegister";
    case SwfActionCode::ConstantPool: return "ConstantPool";
    case SwfActionCode::WaitForFrame: return "WaitForFrame";
    case SwfActionCode::SetTarget: return "SetTarget";
    case SwfActionCode::GoToLabel: return "GoToLabel";
    case SwfActionCode::WaitForFrame2: return "WaitForFrame2";
    case SwfActionCode::DefineFunction2: return "DefineFunction2";
    case SwfActionCode::Try: return "Try";
    case SwfActionCode::With: return "With";
    case SwfActionCode::Push: return "Push";
    case SwfActionCode::Jump: return "Jump";
    case SwfActionCode::GetURL2: return "GetURL2";
    case SwfActionCode::DefineFunction: return "DefineFunction";
    case SwfActionCode::If: return "If";
    case SwfActionCode::Call: return "Call";
    case SwfActionCode::GotoFrame2: return "GotoFrame2";
    default: return "Unknown";
    }
}

size_t SwfAction::Write(SwfStream& out) const {
    const uint32_t before = out.Size();
    out.WriteU8(Code());
    if (Code() >= 0x80) {
        SwfStream payload;
        payload.version = out.version;
        WritePayload(payload);
        payload.Align();
        out.WriteU16(static_cast<uint16_t>(payload.Size()));
        out.WriteStream(payload);
    }
    return out.Size() - before;
}

size_t SwfAction::RecordSize() const {
    SwfStream s;
    return Write(s);
}

size_t SwfRawAction::Read(SwfInput& payload) {
    payload_ = payload.ReadRest();
    return payload_.size();
}

std::unique_ptr<SwfAction> CreateSwfAction(uint8_t code) {
    switch (code) {
#define QUILLET_SIMPLE(name) \
    case SwfActionCode::name: return std::make_unique<Action##name>();
        QUILLET_SIMPLE(NextFrame) QUILLET_SIMPLE(PrevFrame) QUILLET_SIMPLE(Play) QUILLET_SIMPLE(Stop)
        QUILLET_SIMPLE(ToggleQuality) QUILLET_SIMPLE(StopSounds) QUILLET_SIMPLE(Add) QUILLET_SIMPLE(Subtract)
        QUILLET_SIMPLE(Multiply) QUILLET_SIMPLE(Divide) QUILLET_SIMPLE(Equals) QUILLET_SIMPLE(Less)
        QUILLET_SIMPLE(And) QUILLET_SIMPLE(Or) QUILLET_SIMPLE(Not) QUILLET_SIMPLE(StringEquals)
        QUILLET_SIMPLE(StringLength) QUILLET_SIMPLE(StringExtract) QUILLET_SIMPLE(Pop) QUILLET_SIMPLE(ToInteger)
        QUILLET_SIMPLE(GetVariable) QUILLET_SIMPLE(SetVariable) QUILLET_SIMPLE(SetTarget2) QUILLET_SIMPLE(StringAdd)
        QUILLET_SIMPLE(GetProperty) QUILLET_SIMPLE(SetProperty) QUILLET_SIMPLE(CloneSprite)
        QUILLET_SIMPLE(RemoveSprite) QUILLET_SIMPLE(Trace) QUILLET_SIMPLE(StartDrag) QUILLET_SIMPLE(EndDrag)
        QUILLET_SIMPLE(StringLess) QUILLET_SIMPLE(RandomNumber) QUILLET_SIMPLE(CharToAscii)
        QUILLET_SIMPLE(AsciiToChar) QUILLET_SIMPLE(GetTime) QUILLET_SIMPLE(Delete) QUILLET_SIMPLE(Delete2)
        QUILLET_SIMPLE(DefineLocal) QUILLET_SIMPLE(CallFunction) QUILLET_SIMPLE(Return) QUILLET_SIMPLE(Modulo)
        QUILLET_SIMPLE(NewObject) QUILLET_SIMPLE(DefineLocal2) QUILLET_SIMPLE(InitArray) QUILLET_SIMPLE(InitObject)
        QUILLET_SIMPLE(TypeOf) QUILLET_SIMPLE(TargetPath) QUILLET_SIMPLE(Enumerate) QUILLET_SIMPLE(Add2)
        QUILLET_SIMPLE(Less2) QUILLET_SIMPLE(Equals2) QUILLET_SIMPLE(ToNumber) QUILLET_SIMPLE(ToString)
        QUILLET_SIMPLE(PushDuplicate) QUILLET_SIMPLE(StackSwap) QUILLET_SIMPLE(GetMember) QUILLET_SIMPLE(SetMember)
        QUILLET_SIMPLE(Increment) QUILLET_SIMPLE(Decrement) QUILLET_SIMPLE(CallMethod) QUILLET_SIMPLE(NewMethod)
        QUILLET_SIMPLE(InstanceOf) QUILLET_SIMPLE(Enumerate2) QUILLET_SIMPLE(BitAnd) QUILLET_SIMPLE(BitOr)
        QUILLET_SIMPLE(BitXor) QUILLET_SIMPLE(BitLShift) QUILLET_SIMPLE(BitRShift) QUILLET_SIMPLE(BitURShift)
        QUILLET_SIMPLE(StrictEquals) QUILLET_SIMPLE(Greater) QUILLET_SIMPLE(StringGreater) QUILLET_SIMPLE(Extends)
        QUILLET_SIMPLE(Throw) QUILLET_SIMPLE(CastOp) QUILLET_SIMPLE(ImplementsOp)
#undef QUILLET_SIMPLE
    case SwfActionCode::GotoFrame: return std::make_unique<ActionGotoFrame>();
    case SwfActionCode::GetURL: return std::make_unique<ActionGetURL>();
    case SwfActionCode::StoreRegister: return std::make_unique<ActionStoreRegister>();
    case SwfActionCode::ConstantPool: return std::make_unique<SwfConstantPool>();
    case SwfActionCode::WaitForFrame: return std::make_unique<ActionWaitForFrame>();
    case SwfActionCode::SetTarget: return std::make_unique<ActionSetTarget>();
    case SwfActionCode::GoToLabel: return std::make_unique<ActionGoToLabel>();
    case SwfActionCode::WaitForFrame2: return std::make_unique<ActionWaitForFrame2>();
    case SwfActionCode::DefineFunction2: return std::make_unique<ActionDefineFunction2>();
    case SwfActionCode::With: return std::make_unique<ActionWith>();
    case SwfActionCode::Push: return std::make_unique<ActionPush>();
    case SwfActionCode::Jump: return std::make_unique<ActionJump>();
    case SwfActionCode::GetURL2: return std::make_unique<ActionGetURL2>();
    case SwfActionCode::DefineFunction: return std::make_unique<ActionDefineFunction>();
    case SwfActionCode::If: return std::make_unique<ActionIf>();
    case SwfActionCode::GotoFrame2: return std::make_unique<ActionGotoFrame2>();
    default: return std::make_unique<SwfRawAction>(code);
    }
}

// --- SwfActionList ---------------------------------------------------------

SwfAction& SwfActionList::Add(std::unique_ptr<SwfAction> action) {
    actions_.push_back(std::move(action));
    return *actions_.back();
}

void SwfActionList::Append(SwfActionList&& other) {
    for (auto& a : other.actions_) actions_.push_back(std::move(a));
    other.actions_.clear();
}

size_t SwfActionList::Write(SwfStream& out, bool withEnd) const {
    const uint32_t before = out.Size();
    for (const auto& a : actions_) {
        a->Prepare();
        a->Write(out);
    }
    if (withEnd) out.WriteU8(SwfActionCode::End);
    return out.Size() - before;
}

bool SwfActionList::Read(SwfInput& in, bool untilEnd) {
    while (in.ok()) {
        if (in.Remaining() == 0) {
            if (untilEnd) in.Fail("action list without its end byte");
            break;
        }
        const uint8_t code = in.ReadU8();
        if (code == SwfActionCode::End && untilEnd) return true;
        auto action = CreateSwfAction(code);
        if (code >= 0x80) {
            const uint16_t length = in.ReadU16();
            SwfInput payload = in.Sub(length);
            if (!in.ok()) break;
            action->Read(payload);
            if (payload.ok() && payload.Remaining() != 0)
                payload.Fail(std::to_string(payload.Remaining()) + " bytes left over");
            if (!payload.ok()) {
                in.Fail(std::string("action ") + SwfActionName(code) + ": " + payload.error());
                break;
            }
        }
        if (SwfActionList* body = action->Body()) {
            if (in.depth >= kMaxNesting) {
                in.Fail("actions nested too deeply");
                break;
            }
            SwfInput block = in.Sub(action->DeclaredBodySize());
            if (!in.ok()) break;
            ++block.depth;
            body->Read(block, false);
            if (!block.ok()) {
                in.Fail(std::string(SwfActionName(code)) + " body: " + block.error());
                break;
            }
        }
        actions_.push_back(std::move(action));
    }
    return in.ok();
}

size_t SwfActionList::ByteSize(size_t from, size_t to) const {
    size_t n = 0;
    for (size_t i = from; i < to && i < actions_.size(); ++i) n += actions_[i]->RecordSize();
    return n;
}

void SwfActionList::PushString(const std::string& value) { Emplace<ActionPush>().String(value); }

void SwfActionList::SetVariable(const std::string& name, const std::string& value) {
    Emplace<ActionPush>().String(name).String(value);
    Emplace<ActionSetVariable>();
}

}  // namespace quillet
