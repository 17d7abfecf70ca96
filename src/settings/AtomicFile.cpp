#include "settings/AtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace quillet {

namespace {

bool fail(std::string* error, const std::string& what, int err) {
    if (error) *error = what + ": " + std::strerror(err);
    return false;
}

mode_t newFileMode() {
    // umask can only be read by setting it; put it straight back.
    mode_t mask = ::umask(022);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

bool WriteFileAtomically(const std::string& path, std::string_view bytes, std::string* error) {
    namespace fs = std::filesystem;
    fs::path target(path);
    fs::path folder = target.parent_path();
    if (folder.empty()) folder = ".";

    std::string tmp = (folder / ("." + target.filename().string() + ".tmp-XXXXXX")).string();
    int fd = ::mkstemp(tmp.data());
    if (fd < 0) return fail(error, "cannot create a temporary file in " + folder.string(), errno);

    auto abandon = [&](const std::string& what, int err) {
        ::close(fd);
        ::unlink(tmp.c_str());
        return fail(error, what, err);
    };

    struct stat old {};
    mode_t mode = ::stat(path.c_str(), &old) == 0 ? (old.st_mode & 07777) : newFileMode();
    if (::fchmod(fd, mode) != 0) return abandon("cannot set the permissions of " + tmp, errno);

    size_t done = 0;
    while (done < bytes.size()) {
        ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            return abandon("cannot write " + tmp, errno);
        }
        done += static_cast<size_t>(n);
    }
    if (::fsync(fd) != 0) return abandon("cannot flush " + tmp + " to the disk", errno);
    // Check that the disk holds every byte before the old file goes.
    struct stat written {};
    if (::fstat(fd, &written) != 0 || static_cast<size_t>(written.st_size) != bytes.size())
        return abandon("the temporary file " + tmp + " is incomplete", errno ? errno : EIO);
    if (::close(fd) != 0) {
        int err = errno;
        ::unlink(tmp.c_str());
        return fail(error, "cannot close " + tmp, err);
    }
    if (::rename(tmp.c_str(), path.c_str()) != 0) {
        int err = errno;
        ::unlink(tmp.c_str());
        return fail(error, "cannot replace " + path, err);
    }
    // Make the rename itself durable.
    int dir = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

}  // namespace quillet
