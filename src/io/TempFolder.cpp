#include "io/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <unistd.h>

namespace quillet {

namespace {

namespace fs = std::filesystem;

struct Folder {
    std::mutex lock;
    std::string path;
    ~Folder() {
        std::error_code ec;
        // Only the process that made it removes it (a forked child does not).
        if (!path.empty() && owner == ::getpid()) fs::remove_all(path, ec);
    }
    pid_t owner = 0;
};

Folder& TheFolder() {
    static Folder folder;
    return folder;
}

}  // namespace

std::string PrivateTempFolder(std::string* error) {
    Folder& f = TheFolder();
    std::lock_guard<std::mutex> hold(f.lock);
    if (!f.path.empty()) return f.path;
    const char* env = std::getenv("TMPDIR");
    std::string base = env && *env ? env : "/tmp";
    std::string pattern = (fs::path(base) / "quillet-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) {
        if (error) *error = "cannot make a temporary folder in " + base;
        return {};
    }
    f.path = pattern;
    f.owner = ::getpid();
    return f.path;
}

std::string PrivateTempFile(const std::string& name, std::string* error) {
    std::string folder = PrivateTempFolder(error);
    if (folder.empty()) return {};
    return (fs::path(folder) / name).string();
}

}  // namespace quillet
