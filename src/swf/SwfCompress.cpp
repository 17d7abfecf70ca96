#include "swf/SwfCompress.h"

#include <zlib.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <system_error>

namespace quillet {

namespace {

std::atomic<int> gLastError{kSwfErrorNone};

constexpr size_t kChunk = 64;

// Closes a FILE* when it goes out of scope.
struct File {
    std::FILE* f = nullptr;
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

bool PrepareDestination(const std::string& path, bool overwrite) {
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) return false;
    if (std::filesystem::exists(std::filesystem::symlink_status(path, ec))) {
        if (!overwrite) return false;
        if (!std::filesystem::remove(path, ec) || ec) return false;
    }
    File f(path, "wb");
    return static_cast<bool>(f);
}

bool CompressSwf(const std::string& sourcePath, const std::string& destPath, bool overwrite) {
    if (!IsSwfFile(sourcePath)) {
        SetSwfLastError(kSwfErrorNotMovie);
        return false;
    }
    if (!PrepareDestination(destPath, overwrite)) {
        SetSwfLastError(kSwfErrorDestination);
        return false;
    }
    File in(sourcePath, "rb");
    if (!in) return false;
    unsigned char head[8];
    if (std::fread(head, 1, 3, in.f) != 3 || std::memcmp(head, "FWS", 3) != 0) return false;
    File out(destPath, "wb");
    if (!out) return false;
    const size_t rest = std::fread(head + 3, 1, 5, in.f);
    std::fwrite("CWS", 1, 3, out.f);
    std::fwrite(head + 3, 1, rest, out.f);

    z_stream z{};
    if (deflateInit(&z, Z_BEST_COMPRESSION) != Z_OK) return false;
    unsigned char input[kChunk];
    unsigned char output[kChunk];
    size_t got;
    while ((got = std::fread(input, 1, kChunk, in.f)) > 0) {
        z.next_in = input;
        z.avail_in = static_cast<uInt>(got);
        while (z.avail_in > 0) {
            z.next_out = output;
            z.avail_out = kChunk;
            if (deflate(&z, Z_NO_FLUSH) == Z_STREAM_ERROR) {
                deflateEnd(&z);
                return false;
            }
            std::fwrite(output, 1, kChunk - z.avail_out, out.f);
        }
    }
    int rc;
    do {
        z.next_out = output;
        z.avail_out = kChunk;
        rc = deflate(&z, Z_FINISH);
        if (rc == Z_STREAM_ERROR) break;
        std::fwrite(output, 1, kChunk - z.avail_out, out.f);
    } while (rc == Z_OK);
    deflateEnd(&z);
    const bool flushed = std::fflush(out.f) == 0 && !std::ferror(out.f);
    return rc == Z_STREAM_END && flushed;
}

bool ExpandSwfLimited(const std::string& sourcePath, const std::string& destPath, bool overwrite,
                      unsigned long long maxBytes) {
    if (!IsCompressedSwf(sourcePath)) {
        SetSwfLastError(kSwfErrorNotCompressed);
        return false;
    }
    // The destination may still be writable when this fails; go on.
    if (!PrepareDestination(destPath, overwrite)) SetSwfLastError(kSwfErrorDestination);
    File in(sourcePath, "rb");
    if (!in) {
        SetSwfLastError(kSwfErrorCannotRead);
        return false;
    }
    unsigned char head[8];
    if (std::fread(head, 1, 3, in.f) != 3 || std::memcmp(head, "CWS", 3) != 0) return false;
    File out(destPath, "wb");
    if (!out) return false;
    const size_t rest = std::fread(head + 3, 1, 5, in.f);
    std::fwrite("FWS", 1, 3, out.f);
    std::fwrite(head + 3, 1, rest, out.f);
    unsigned long long written = 3 + rest;

    z_stream z{};
    if (inflateInit(&z) != Z_OK) return false;
    unsigned char input[kChunk];
    unsigned char output[kChunk];
    int rc = Z_OK;
    size_t got;
    while (rc != Z_STREAM_END && (got = std::fread(input, 1, kChunk, in.f)) > 0) {
        z.next_in = input;
        z.avail_in = static_cast<uInt>(got);
        do {
            z.next_out = output;
            z.avail_out = kChunk;
            rc = inflate(&z, Z_SYNC_FLUSH);
            if (rc != Z_OK && rc != Z_STREAM_END && rc != Z_BUF_ERROR) break;
            const size_t produced = kChunk - z.avail_out;
            written += produced;
            if (written > maxBytes) {
                rc = Z_DATA_ERROR;
                break;
            }
            std::fwrite(output, 1, produced, out.f);
        } while (rc == Z_OK && z.avail_out == 0);
        if (rc != Z_OK && rc != Z_STREAM_END && rc != Z_BUF_ERROR) break;
    }
    inflateEnd(&z);
    const bool flushed = std::fflush(out.f) == 0 && !std::ferror(out.f);
    return rc == Z_STREAM_END && flushed;
}

bool ExpandSwf(const std::string& sourcePath, const std::string& destPath, bool overwrite) {
    return ExpandSwfLimited(sourcePath, destPath, overwrite, std::numeric_limits<unsigned long long>::max());
}

}  // namespace quillet
