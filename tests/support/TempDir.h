// A scratch folder for one test, removed with everything in it afterwards.
#pragma once

#include <filesystem>
#include <string>

namespace quillet::test {

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

// Runs a shell command, returns its exit status; captures stdout (and stderr
// when `merge` is set) into `output`.
int runCommand(const std::string& command, std::string* output = nullptr, bool merge = false);

}  // namespace quillet::test
