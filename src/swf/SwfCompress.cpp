#include "swf/SwfCompress.h"

#include <zlib.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "io/OutputFile.h"

namespace quillet {

namespace {

std::atomic<int> gLastError{kSwfErrorNone};

constexpr size_t kChunk = 64;

// Closes a FILE* when it goes out of scope.
struct File {
    std::FILE* f = nullptr;
    File() = default;
    File(const std::string& path, const char* mode) : f(std::fopen(path.c_str(), mode)) {}
    ~File() {
        if (f) std::fclose(f);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    explicit operator bool() const { return f != nullptr; }
};

// Reads the first three bytes; empty when the file cannot be opened.
bool ReadSignature(const std::string& path, char out[3], bool& opened) {
    std::error_code ec;
    opened = false;
    if (std::filesystem::is_directory(path, ec)) return false;
    File f(path, "rb");
    if (!f) return false;
    opened = true;
    return std::fread(out, 1, 3, f.f) == 3;
}

bool Fail(std::string* error, const std::string& file, const std::string& problem, int code = -1) {
    if (code >= 0) SetSwfLastError(code);
    if (error) *error = file + ": " + problem;
    return false;
}

// The source opened with its first (up to) 8 bytes read; `problem` says why
// not when it cannot be opened.
struct Source {
    explicit Source(const std::string& path) {
        std::error_code ec;
        if (std::filesystem::is_directory(path, ec)) {
            problem = "is a folder, not a movie";
            missing = true;
            return;
        }
        file.f = std::fopen(path.c_str(), "rb");
        if (!file) {
            missing = errno == ENOENT;
            problem = std::string("cannot open for reading: ") + std::strerror(errno);
            return;
        }
        got = std::fread(head, 1, sizeof head, file.f);
    }
    bool Begins(const char* signature) const { return got >= 3 && std::memcmp(head, signature, 3) == 0; }

    File file;
    unsigned char head[8] = {};
    size_t got = 0;
    bool missing = false;
    std::string problem;
};

// Writes to the output; a short write marks it failed with the system's reason.
bool Put(OutputFile& out, const void* bytes, size_t size) {
    if (size == 0 || std::fwrite(bytes, 1, size, out.File()) == size) return true;
    out.SetFailed(std::string("cannot write: ") + std::strerror(errno ? errno : EIO));
    return false;
}

// Commits the output, or names the file that stopped it.
bool Finish(OutputFile& out, const std::string& destPath, std::string* error) {
    if (out.Commit()) return true;
    return Fail(error, destPath, out.Error());
}

}  // namespace

int SwfLastError() { return gLastError.load(); }
void SetSwfLastError(int code) { gLastError.store(code); }

const char* SwfErrorText(int code) {
    switch (code) {
    case kSwfErrorNone: return "no error";
    case kSwfErrorNotMovie: return "the source is not a movie";
    case kSwfErrorNotCompressed: return "the source is not a compressed movie";
    case kSwfErrorCannotRead: return "the source cannot be opened for reading";
    case kSwfErrorDestination: return "the destination cannot be created";
    default: return "unknown error";
    }
}

bool IsSwfFile(const std::string& path) {
    char sig[3];
    bool opened;
    if (!ReadSignature(path, sig, opened)) return false;
    return (sig[0] == 'F' || sig[0] == 'C') && sig[1] == 'W' && sig[2] == 'S';
}

bool IsCompressedSwf(const std::string& path) {
    char sig[3];
    bool opened;
    const bool read = ReadSignature(path, sig, opened);
    if (!opened) {
        SetSwfLastError(kSwfErrorCannotRead);
        return false;
    }
    return read && std::memcmp(sig, "CWS", 3) == 0;
}

bool CompressSwf(const std::string& sourcePath, const std::string& destPath, bool overwrite, std::string* error) {
    // Everything about the source is settled before the destination is touched.
    Source in(sourcePath);
    if (!in.file) return Fail(error, sourcePath, in.problem, kSwfErrorNotMovie);
    if (in.Begins("CWS")) return Fail(error, sourcePath, "already compressed (it begins with CWS)");
    if (!in.Begins("FWS"))
        return Fail(error, sourcePath, "not a movie (it does not begin with FWS or CWS)", kSwfErrorNotMovie);
    OutputFile out;
    if (!out.Open(destPath, overwrite)) return Fail(error, destPath, out.Error(), kSwfErrorDestination);

    Put(out, "CWS", 3);
    Put(out, in.head + 3, in.got - 3);
    z_stream z{};
    if (deflateInit(&z, Z_BEST_COMPRESSION) != Z_OK) return Fail(error, sourcePath, "zlib cannot start");
    unsigned char input[kChunk];
    unsigned char output[kChunk];
    bool ok = true;
    size_t got;
    while (ok && (got = std::fread(input, 1, kChunk, in.file.f)) > 0) {
        z.next_in = input;
        z.avail_in = static_cast<uInt>(got);
        while (ok && z.avail_in > 0) {
            z.next_out = output;
            z.avail_out = kChunk;
            ok = deflate(&z, Z_NO_FLUSH) != Z_STREAM_ERROR && Put(out, output, kChunk - z.avail_out);
        }
    }
    int rc = Z_OK;
    while (ok && rc == Z_OK) {
        z.next_out = output;
        z.avail_out = kChunk;
        rc = deflate(&z, Z_FINISH);
        ok = rc != Z_STREAM_ERROR && Put(out, output, kChunk - z.avail_out);
    }
    deflateEnd(&z);
    if (std::ferror(in.file.f))
        return Fail(error, sourcePath, std::string("cannot read: ") + std::strerror(errno ? errno : EIO));
    if (!ok && out.Error().empty()) return Fail(error, sourcePath, "zlib failed to compress the movie");
    return Finish(out, destPath, error);
}

bool ExpandSwfLimited(const std::string& sourcePath, const std::string& destPath, bool overwrite, uint64_t maxBytes,
                      std::string* error) {
    Source in(sourcePath);
    if (!in.file)
        return Fail(error, sourcePath, in.problem, in.missing ? kSwfErrorNotCompressed : kSwfErrorCannotRead);
    if (!in.Begins("CWS"))
        return Fail(error, sourcePath, "not a compressed movie (it does not begin with CWS)", kSwfErrorNotCompressed);
    if (in.got < 8) return Fail(error, sourcePath, "the movie header is cut short");
    const uint64_t declared = uint64_t(in.head[4]) | uint64_t(in.head[5]) << 8 | uint64_t(in.head[6]) << 16 |
                              uint64_t(in.head[7]) << 24;
    if (declared > maxBytes)
        return Fail(error, sourcePath,
                    "the movie declares " + std::to_string(declared) + " bytes uncompressed; the limit is " +
                        std::to_string(maxBytes));
    OutputFile out;
    if (!out.Open(destPath, overwrite)) return Fail(error, destPath, out.Error(), kSwfErrorDestination);

    Put(out, "FWS", 3);
    Put(out, in.head + 3, 5);
    uint64_t written = 8;
    z_stream z{};
    if (inflateInit(&z) != Z_OK) return Fail(error, sourcePath, "zlib cannot start");
    unsigned char input[kChunk];
    unsigned char output[kChunk];
    bool tooLong = false;
    int rc = Z_OK;
    size_t got;
    while (rc != Z_STREAM_END && (got = std::fread(input, 1, kChunk, in.file.f)) > 0) {
        z.next_in = input;
        z.avail_in = static_cast<uInt>(got);
        do {
            z.next_out = output;
            z.avail_out = kChunk;
            rc = inflate(&z, Z_SYNC_FLUSH);
            if (rc != Z_OK && rc != Z_STREAM_END && rc != Z_BUF_ERROR) break;
            const size_t produced = kChunk - z.avail_out;
            // The length field bounds the output, so a small file cannot fill the disk.
            if (written + produced > declared) {
                tooLong = true;
                break;
            }
            written += produced;
            if (!Put(out, output, produced)) break;
        } while (rc == Z_OK && z.avail_out == 0);
        if (tooLong || !out.Error().empty() || (rc != Z_OK && rc != Z_STREAM_END && rc != Z_BUF_ERROR)) break;
    }
    inflateEnd(&z);
    if (tooLong)
        return Fail(error, sourcePath,
                    "the compressed data expand beyond the declared length of " + std::to_string(declared) + " bytes");
    if (std::ferror(in.file.f))
        return Fail(error, sourcePath, std::string("cannot read: ") + std::strerror(errno ? errno : EIO));
    if (!out.Error().empty()) return Fail(error, destPath, out.Error());
    if (rc != Z_STREAM_END) return Fail(error, sourcePath, "the compressed data are damaged or cut short");
    return Finish(out, destPath, error);
}

bool ExpandSwf(const std::string& sourcePath, const std::string& destPath, bool overwrite, std::string* error) {
    return ExpandSwfLimited(sourcePath, destPath, overwrite, kSwfMaxMovieBytes, error);
}

}  // namespace quillet
