// Paths read from a project file may be relative; they are taken relative to
// the folder of the project file.
#pragma once

#include <string>

namespace quillet {

// `path` unchanged when it is empty, absolute, or `folder` is empty;
// otherwise folder/path with "." and ".." steps folded away.
std::string resolveAgainst(const std::string& folder, const std::string& path);

}  // namespace quillet
