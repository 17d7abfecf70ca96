// Comparisons of display names. Names are byte strings; letter case is folded
// for ASCII letters only, so a byte above 0x7F compares as itself.
#pragma once

#include <string_view>

namespace quillet {

inline char FoldCase(char ch) { return (ch >= 'A' && ch <= 'Z') ? static_cast<char>(ch - 'A' + 'a') : ch; }

inline bool EqualsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (FoldCase(a[i]) != FoldCase(b[i])) return false;
    return true;
}

// Byte order (unsigned), case-sensitive, over at most the first 256 bytes;
// negative, zero or positive like strncmp.
inline int CompareNames(std::string_view a, std::string_view b) {
    constexpr size_t kLimit = 256;
    return a.substr(0, kLimit).compare(b.substr(0, kLimit));
}

}  // namespace quillet
