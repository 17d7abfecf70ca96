#include "io/DataFolder.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace quillet {

std::string ProgramFolder() {
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    return ec ? std::string() : exe.parent_path().string();
}

std::string FindDataFolder(const std::string& installedName, const std::string& sourceTreePath,
                           const std::string& marker) {
    auto holds = [&](const fs::path& folder) {
        std::error_code ec;
        return fs::is_regular_file(folder / marker, ec);
    };
    fs::path dir = ProgramFolder();
    if (dir.empty()) return "";
    fs::path installed = dir.parent_path() / "share/quillet" / installedName;
    if (holds(installed)) return installed.string();
    for (fs::path up = dir;; up = up.parent_path()) {
        if (holds(up / sourceTreePath)) return (up / sourceTreePath).string();
        if (up == up.parent_path()) break;
    }
    return "";
}

std::string FindHelpFolder() { return FindDataFolder("help", "docs/help", "index.html"); }

}  // namespace quillet
