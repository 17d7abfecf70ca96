// Output files that a failure never destroys. The bytes go to a private file
// beside the target ("." + name + ".tmp-XXXXXX" in the same folder, so the
// final rename stays on one file system); Commit flushes them to the disk and
// renames the file over the target. Until then the old target, if any, is
// untouched, and a file abandoned (or destroyed uncommitted) is removed.
//
//   OutputFile out;
//   if (!out.Open("show.swf", true)) fail(out.Error());
//   std::fwrite(data, 1, size, out.File());
//   if (!out.Commit()) fail(out.Error());
//
// A target that is a symbolic link is written through: the link stays and
// the file it names is replaced. New files get 0666 less the process umask
// (applied by the kernel when the private file is created); a replaced file
// keeps its permissions. Nothing here calls umask(): setting it, even to read
// it, races with every thread that creates a file meanwhile.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace quillet {

class OutputFile {
public:
    OutputFile() = default;
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // Fails when the target is a folder or another file that is not a
    // regular one (a device, a pipe), when it exists and overwrite is false,
    // or when no file can be created in its folder. Error() then says why,
    // without the target's name (callers name the file).
    bool Open(const std::string& path, bool overwrite);
    // The stream to write (seekable). Null when not open.
    std::FILE* File() const { return file_; }
    bool IsOpen() const { return file_ != nullptr; }

    // Flushes, syncs and renames into place. False (the target untouched,
    // the private file removed) when any write failed or the disk refused.
    bool Commit();
    // Removes the private file; the target stays as it was.
    void Abandon();

    // Marks the output as failed (a write the caller made went wrong), so
    // Commit refuses it.
    void SetFailed(const std::string& why);
    const std::string& Error() const { return error_; }
    // The file that Commit replaces (a link's target when the path is a link).
    const std::string& TargetPath() const { return target_; }
    const std::string& PrivatePath() const { return private_; }

private:
    std::FILE* file_ = nullptr;
    std::string target_;
    std::string private_;
    std::string error_;
    bool overwrite_ = true;
    bool failed_ = false;
    bool hadTarget_ = false;
    unsigned targetMode_ = 0;
};

// Writes `bytes` to `path` through an OutputFile. On failure the old file is
// untouched and `error` (when given) says what went wrong.
bool WriteFileAtomically(const std::string& path, std::string_view bytes, std::string* error = nullptr);

// The path with symbolic links at its end followed (a dangling link gives
// the path it names); other paths as they are.
std::string FollowLinks(const std::string& path);

}  // namespace quillet
