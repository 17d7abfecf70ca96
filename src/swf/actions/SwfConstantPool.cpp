#include "swf/actions/SwfConstantPool.h"

namespace quillet {

int SwfConstantPool::Find(const std::string& text) const {
    for (size_t i = 0; i < strings.size(); ++i)
        if (strings[i] == text) return static_cast<int>(i);
    return -1;
}

int SwfConstantPool::Add(const std::string& text, int position) {
    const int found = Find(text);
    if (found >= 0) return found;
    if (position >= 0 && static_cast<size_t>(position) < strings.size()) {
        strings.insert(strings.begin() + position, text);
        return position;
    }
    strings.push_back(text);
    return static_cast<int>(strings.size() - 1);
}

void SwfConstantPool::WritePayload(SwfStream& out) const {
    out.WriteU16(static_cast<uint16_t>(strings.size()));
    for (const auto& s : strings) out.WriteString(s);
}

size_t SwfConstantPool::Read(SwfInput& payload) {
    const size_t start = payload.Position();
    const uint16_t count = payload.ReadU16();
    strings.clear();
    if (!payload.Need(count, "constant pool")) return payload.Position() - start;
    for (uint16_t i = 0; i < count && payload.ok(); ++i) strings.push_back(payload.ReadString());
    return payload.Position() - start;
}

}  // namespace quillet
