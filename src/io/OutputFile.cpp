#include "io/OutputFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace quillet {

namespace fs = std::filesystem;

namespace {

std::string Describe(const std::string& what, int err) { return what + ": " + std::strerror(err); }

// Creates "folder/.name.tmp-XXXXXX" exclusively with mode 0666, so the
// kernel applies the umask (mkstemp would give 0600, and reading the umask
// means setting it, which races with other threads). Read and write, as
// File() promises a stream that may be read back (fdopen "w+" needs both).
int CreatePrivate(const fs::path& folder, const std::string& name, std::string& path) {
    static thread_local std::mt19937_64 random{std::random_device{}() ^ static_cast<uint64_t>(::getpid())};
    static const char kChars[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    // A name near the 255-byte limit leaves no room for the dot and suffix.
    const std::string stem = name.substr(0, 200);
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string suffix(6, 'x');
        for (char& c : suffix) c = kChars[random() % (sizeof kChars - 1)];
        path = (folder / ("." + stem + ".tmp-" + suffix)).string();
        int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    errno = EEXIST;
    return -1;
}

}  // namespace

std::string FollowLinks(const std::string& path) {
    fs::path p(path);
    std::error_code ec;
    for (int hops = 0; hops < 40; ++hops) {
        if (!fs::is_symlink(fs::symlink_status(p, ec))) break;
        fs::path next = fs::read_symlink(p, ec);
        if (ec) break;
        p = next.is_absolute() ? next : p.parent_path() / next;
    }
    return p.string();
}

OutputFile::~OutputFile() {
    if (file_) Abandon();
}

bool OutputFile::Open(const std::string& path, bool overwrite) {
    if (file_) Abandon();
    error_.clear();
    failed_ = false;
    overwrite_ = overwrite;
    target_ = FollowLinks(path);
    std::error_code ec;
    const fs::file_status status = fs::status(target_, ec);
    if (fs::is_directory(status)) {
        error_ = "it is a folder";
        return false;
    }
    hadTarget_ = fs::exists(status);
    if (hadTarget_ && !overwrite) {
        error_ = "the file exists already";
        return false;
    }
    // A rename would put a plain file in place of a device or a pipe (as root,
    // /dev/null itself).
    if (hadTarget_ && !fs::is_regular_file(status)) {
        error_ = "it is not a regular file";
        return false;
    }
    struct stat old {};
    targetMode_ = hadTarget_ && ::stat(target_.c_str(), &old) == 0 ? (old.st_mode & 07777) : 0;

    fs::path t(target_);
    fs::path folder = t.parent_path();
    if (folder.empty()) folder = ".";
    const int fd = CreatePrivate(folder, t.filename().string(), private_);
    if (fd < 0) {
        error_ = Describe("cannot create a file in " + folder.string(), errno);
        return false;
    }
    if (hadTarget_ && targetMode_ != 0) ::fchmod(fd, targetMode_);
    file_ = ::fdopen(fd, "w+b");
    if (!file_) {
        error_ = Describe("cannot open " + private_, errno);
        ::close(fd);
        ::unlink(private_.c_str());
        return false;
    }
    return true;
}

void OutputFile::SetFailed(const std::string& why) {
    if (!failed_) error_ = why;
    failed_ = true;
}

bool OutputFile::Commit() {
    if (!file_) {
        if (error_.empty()) error_ = "nothing was written";
        return false;
    }
    auto abandon = [&](const std::string& why) {
        SetFailed(why);
        Abandon();
        return false;
    };
    if (failed_) return abandon(error_);
    if (std::fflush(file_) != 0 || std::ferror(file_)) return abandon(Describe("cannot write", errno ? errno : EIO));
    if (::fsync(::fileno(file_)) != 0) return abandon(Describe("cannot flush the file to the disk", errno));
    const int closed = std::fclose(file_);
    file_ = nullptr;
    if (closed != 0) {
        const int err = errno;
        ::unlink(private_.c_str());
        SetFailed(Describe("cannot write", err));
        return false;
    }
    int renamed;
    if (overwrite_) {
        renamed = ::rename(private_.c_str(), target_.c_str());
    } else {
        // A file that appeared meanwhile is not replaced either.
        renamed = ::renameat2(AT_FDCWD, private_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE);
        if (renamed != 0 && (errno == EINVAL || errno == ENOSYS)) {
            renamed = ::link(private_.c_str(), target_.c_str());
            if (renamed == 0) ::unlink(private_.c_str());
        }
    }
    if (renamed != 0) {
        const int err = errno;
        ::unlink(private_.c_str());
        SetFailed(err == EEXIST ? "the file exists already" : Describe("cannot replace the file", err));
        return false;
    }
    // Make the rename itself durable.
    fs::path folder = fs::path(target_).parent_path();
    if (folder.empty()) folder = ".";
    const int dir = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

void OutputFile::Abandon() {
    if (file_) {
        std::fclose(file_);
        file_ = nullptr;
        ::unlink(private_.c_str());
    }
}

bool WriteFileAtomically(const std::string& path, std::string_view bytes, std::string* error) {
    OutputFile out;
    bool ok = out.Open(path, true);
    if (ok && !bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), out.File()) != bytes.size())
        out.SetFailed(Describe("cannot write", errno));
    if (ok) ok = out.Commit();
    if (!ok && error) *error = out.Error();
    return ok;
}

}  // namespace quillet
