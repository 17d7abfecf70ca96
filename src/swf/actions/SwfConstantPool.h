// ConstantPool: the strings that later pushes refer to by index.
#pragma once

#include <string>
#include <vector>

#include "swf/SwfAction.h"

namespace quillet {

class SwfConstantPool final : public SwfAction {
public:
    uint8_t Code() const override { return SwfActionCode::ConstantPool; }
    size_t Read(SwfInput& payload) override;

    // A string already in the pool (exact bytes) keeps its index; a new one is
    // inserted at `position` when that is below the count, else appended.
    // Returns the string's index.
    int Add(const std::string& text, int position = 0x7fffffff);
    // Index of the string, or -1.
    int Find(const std::string& text) const;
    size_t Count() const { return strings.size(); }

    std::vector<std::string> strings;

protected:
    void WritePayload(SwfStream& out) const override;
};

}  // namespace quillet
