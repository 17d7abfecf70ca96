// EnableDebugger (SWF 5) and EnableDebugger2 (SWF 6): an MD5 password.
#pragma once

#include <string>

#include "swf/SwfTag.h"

namespace quillet {

class EnableDebuggerTag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::EnableDebugger; }
    std::string password;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteString(password); }
    void ReadBody(SwfInput& body) override { password = body.ReadString(); }
};

class EnableDebugger2Tag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::EnableDebugger2; }
    uint16_t reserved = 0;
    std::string password;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(reserved); body.WriteString(password); }
    void ReadBody(SwfInput& body) override { reserved = body.ReadU16(); password = body.ReadString(); }
};

}  // namespace quillet
