#include "support/TempDir.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <csignal>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillet::test {

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "quillet-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

ScopedEnv::ScopedEnv(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old, had_ = true;
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

ScopedEnv::~ScopedEnv() {
    if (had_)
        setenv(name_, old_.c_str(), 1);
    else
        unsetenv(name_);
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

int runCommand(const std::string& command, std::string* output, bool merge) {
    std::string cmd = command + (merge ? " 2>&1" : "");
    FILE* pipe = popen(cmd.c_str(), "r");
    if (!pipe) return -1;
    std::array<char, 4096> buf{};
    size_t n;
    while ((n = fread(buf.data(), 1, buf.size(), pipe)) > 0)
        if (output) output->append(buf.data(), n);
    int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string ScratchUserEnvironment(const TempDir& dir) {
    return "QUILLET_CONFIG_DIR='" + dir.file("config") + "' XDG_CACHE_HOME='" + dir.file("cache") + "' ";
}

int RunWithFileSizeLimit(unsigned long long maxBytes, const std::function<int()>& work) {
    std::fflush(nullptr);  // the child must not write the parent's buffers again
    const pid_t child = fork();
    if (child < 0) return -1;
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{maxBytes, maxBytes};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(125);
        _exit(work());
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace quillet::test
