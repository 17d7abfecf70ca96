#include "io/ReadFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillet {

bool ReadFileLimited(const std::string& path, uint64_t maxBytes, std::vector<uint8_t>& out, std::string* error) {
    auto fail = [&](std::string why) {
        if (error) *error = std::move(why);
        out.clear();
        return false;
    };
    // Without O_NONBLOCK, opening a named pipe waits for a writer forever.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return fail(errno == ENOENT ? "the file was not found" : std::string("the file cannot be read: ") + std::strerror(errno));
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return fail("not a regular file");
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    const uint64_t size = static_cast<uint64_t>(st.st_size);
    if (size > maxBytes) {
        ::close(fd);
        return fail("the file is too large (" + std::to_string(size) + " bytes; the limit is " +
                    std::to_string(maxBytes) + ")");
    }
    out.resize(static_cast<size_t>(size));
    size_t done = 0;
    while (done < out.size()) {
        const ssize_t n = ::read(fd, out.data() + done, out.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        done += static_cast<size_t>(n);
    }
    ::close(fd);
    // A file that shrank while it was read keeps what was there.
    if (done < out.size()) out.resize(done);
    return true;
}

}  // namespace quillet
