#include "model/PathResolve.h"

#include <filesystem>

namespace quillet {

std::string resolveAgainst(const std::string& folder, const std::string& path) {
    if (path.empty() || folder.empty() || path[0] == '/') return path;
    return (std::filesystem::path(folder) / path).lexically_normal().string();
}

}  // namespace quillet
