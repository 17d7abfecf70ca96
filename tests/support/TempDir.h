// A scratch folder for one test, removed with everything in it afterwards.
#pragma once

#include <filesystem>
#include <functional>
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

// Sets an environment variable (or unsets it, for null) for one scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    const char* name_;
    std::string old_;
    bool had_ = false;
};

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

// Runs a shell command, returns its exit status; captures stdout (and stderr
// when `merge` is set) into `output`.
int runCommand(const std::string& command, std::string* output = nullptr, bool merge = false);

// A shell prefix ("NAME='value' ...") that points the quillet program's
// settings folder and cache to dir/config and dir/cache, so no user's
// settings or cache take part in a test.
std::string ScratchUserEnvironment(const TempDir& dir);

// Runs `work` in a forked child whose files may not grow past maxBytes, with
// SIGXFSZ ignored so that a write beyond it fails (EFBIG) as on a full disk.
// The child's exit status (work's result); -1 when it did not exit normally.
int RunWithFileSizeLimit(unsigned long long maxBytes, const std::function<int()>& work);

}  // namespace quillet::test
