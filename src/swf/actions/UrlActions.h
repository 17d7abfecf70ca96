// GetURL and GetURL2: load a page or a movie.
#pragma once

#include <string>

#include "swf/SwfAction.h"

namespace quillet {

// Loads `url` into the window or level named by `target`
// ("_blank", "_level1"...).
class ActionGetURL final : public SwfAction {
public:
    ActionGetURL() = default;
    ActionGetURL(std::string u, std::string t) : url(std::move(u)), target(std::move(t)) {}
    uint8_t Code() const override { return SwfActionCode::GetURL; }
    size_t Read(SwfInput& payload) override;
    std::string url, target;

protected:
    void WritePayload(SwfStream& out) const override { out.WriteString(url); out.WriteString(target); }
};

// URL and target popped from the stack.
class ActionGetURL2 final : public SwfAction {
public:
    enum Method : uint8_t { None = 0, Get = 1, Post = 2 };
    ActionGetURL2() = default;
    ActionGetURL2(uint8_t sendMethod, bool targetIsSprite, bool variables)
        : method(sendMethod), loadTarget(targetIsSprite), loadVariables(variables) {}
    uint8_t Code() const override { return SwfActionCode::GetURL2; }
    size_t Read(SwfInput& payload) override;
    uint8_t method = None;
    bool loadTarget = false;     // the target names a sprite, not a window
    bool loadVariables = false;
    uint8_t reserved = 0;        // the four bits between, kept for round trips

protected:
    void WritePayload(SwfStream& out) const override;
};

}  // namespace quillet
