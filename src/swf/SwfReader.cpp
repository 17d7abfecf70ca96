#include "swf/SwfReader.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <system_error>

#include "io/ReadFile.h"
#include "io/TempFolder.h"
#include "swf/SwfCompress.h"
#include "swf/tags/JpegTags.h"

namespace quillet {

namespace {

std::string TagLabel(uint16_t code, uint64_t offset) {
    return "tag " + std::to_string(code) + " (" + SwfTagName(code) + ") at offset " + std::to_string(offset);
}

std::string DeclaresTooMuch(uint64_t declared) {
    return "the movie declares " + std::to_string(declared) + " bytes uncompressed; the limit is " +
           std::to_string(SwfReader::kMaxMovieBytes);
}

std::string ExpandsTooFar(uint64_t declared) {
    return "the compressed data expand beyond the declared length of " + std::to_string(declared) + " bytes";
}

}  // namespace

bool ReadSwfTags(SwfInput& in, std::vector<std::unique_ptr<SwfTag>>& tags, std::vector<SwfTagLocation>* locations,
                 uint64_t baseOffset) {
    while (in.ok() && in.Remaining() > 0) {
        const uint64_t start = baseOffset + in.Position();
        if (in.Remaining() < 2) {
            in.Fail("tag header at offset " + std::to_string(start) + " is cut off");
            break;
        }
        const uint16_t head = in.ReadU16();
        const uint16_t code = head >> 6;
        uint32_t length = head & 0x3F;
        bool longHeader = false;
        if (length == 63) {
            if (in.Remaining() < 4) {
                in.Fail(TagLabel(code, start) + ": long header is cut off");
                break;
            }
            length = in.ReadU32();
            longHeader = true;
        }
        if (length > in.Remaining()) {
            in.Fail(TagLabel(code, start) + ": its length of " + std::to_string(length) +
                    " bytes runs past the end of the data (" + std::to_string(in.Remaining()) + " bytes remain)");
            break;
        }
        if (code == SwfTagCode::DefineSprite && in.depth > 0) {
            in.Fail(TagLabel(code, start) + ": a sprite inside a sprite");
            break;
        }
        SwfInput body = in.Sub(length);
        std::unique_ptr<SwfTag> tag = CreateSwfTag(code);
        if (!tag) tag = std::make_unique<SwfRawTag>(code, std::vector<uint8_t>{}, longHeader);
        tag->Read(body);
        if (body.ok() && body.Remaining() > 0)
            body.Fail(std::to_string(body.Remaining()) + " bytes left over at the end of the body");
        if (!body.ok()) {
            in.Fail(TagLabel(code, start) + ": " + body.error());
            break;
        }
        if (locations) locations->push_back({code, start, longHeader ? 6u : 2u, length});
        tags.push_back(std::move(tag));
        if (code == SwfTagCode::End) break;
    }
    return in.ok();
}

bool SwfReader::Fail(const std::string& reason) {
    error_ = reason;
    tags_.clear();
    locations_.clear();
    return false;
}

std::vector<std::unique_ptr<SwfTag>> SwfReader::TakeTags() {
    locations_.clear();
    return std::move(tags_);
}

bool SwfReader::ReadFile(const std::string& path) {
    namespace fs = std::filesystem;
    error_.clear();
    tags_.clear();
    locations_.clear();
    unsigned char sig[8] = {};
    {
        std::error_code ec;
        const fs::file_status status = fs::status(path, ec);
        if (fs::is_directory(status)) return Fail("is a folder, not a movie");
        // Opening a named pipe would wait for a writer.
        if (fs::exists(status) && !fs::is_regular_file(status)) return Fail("not a regular file");
        std::FILE* f = std::fopen(path.c_str(), "rb");
        if (!f) return Fail(std::string("cannot open: ") + std::strerror(errno));
        const size_t got = std::fread(sig, 1, 8, f);
        std::fclose(f);
        if (got < 8) return Fail("too short to be a movie (" + std::to_string(got) + " bytes)");
    }
    std::vector<uint8_t> data;
    std::string why;
    const bool compressed = std::memcmp(sig, "CWS", 3) == 0;
    if (!compressed) {
        if (!ReadFileLimited(path, kMaxMovieBytes, data, &why)) return Fail(why);
        return ReadMemoryPlain(data, false);
    }
    const uint64_t declared = uint64_t(sig[4]) | uint64_t(sig[5]) << 8 | uint64_t(sig[6]) << 16 | uint64_t(sig[7]) << 24;
    if (declared > kMaxMovieBytes) return Fail(DeclaresTooMuch(declared));
    // Readers on other threads would share the one expansion file name.
    static std::mutex expanding;
    std::lock_guard<std::mutex> hold(expanding);
    const std::string expanded = PrivateTempFile("_xxswfxx__.bin", &why);
    if (expanded.empty()) return Fail(why + " to expand the movie");
    bool ok = ExpandSwfLimited(path, expanded, true, kMaxMovieBytes, &why);
    if (!ok) {
        // Messages name the file at fault: this movie, or the expansion file.
        if (why.rfind(path + ": ", 0) == 0) why.erase(0, path.size() + 2);
        else if (why.rfind(expanded + ": ", 0) == 0) why = "cannot expand the movie: " + why.substr(expanded.size() + 2);
    } else {
        ok = ReadFileLimited(expanded, kMaxMovieBytes, data, &why);
    }
    std::error_code ec;
    fs::remove(expanded, ec);
    if (!ok) return Fail(why);
    return ReadMemoryPlain(data, true);
}

bool SwfReader::ReadMemory(const uint8_t* data, size_t size) {
    error_.clear();
    tags_.clear();
    locations_.clear();
    if (!data || size < 8) return Fail("too short to be a movie (" + std::to_string(data ? size : 0) + " bytes)");
    if (std::memcmp(data, "CWS", 3) == 0) {
        uint32_t declared = 0;
        for (int i = 7; i >= 4; --i) declared = declared << 8 | data[i];
        if (declared < 8) return Fail("the length field says " + std::to_string(declared) + " bytes, which cannot be");
        if (declared > kMaxMovieBytes) return Fail(DeclaresTooMuch(declared));
        std::vector<uint8_t> movie(data, data + 8);
        movie[0] = 'F';
        std::vector<uint8_t> rest;
        std::string why;
        if (!ZlibExpand(data + 8, size - 8, declared - 8, rest, &why))
            return Fail(why == kZlibTooLarge ? ExpandsTooFar(declared) : why);
        movie.insert(movie.end(), rest.begin(), rest.end());
        return ReadMemoryPlain(movie, true);
    }
    return ReadMemoryPlain(std::vector<uint8_t>(data, data + size), false);
}

bool SwfReader::ReadMemoryPlain(const std::vector<uint8_t>& movie, bool compressed) {
    if (movie.size() < 8) return Fail("too short to be a movie");
    if (std::memcmp(movie.data(), "ZWS", 3) == 0) return Fail("LZMA-compressed movies (ZWS) are not supported");
    if (std::memcmp(movie.data(), "FWS", 3) != 0) return Fail("not a movie: it does not begin with FWS or CWS");
    header_ = SwfHeader();
    header_.compressed = compressed;
    header_.version = movie[3];
    header_.fileLength = static_cast<uint32_t>(movie[4] | movie[5] << 8 | movie[6] << 16 | uint32_t(movie[7]) << 24);
    if (header_.fileLength != movie.size())
        return Fail("the length field says " + std::to_string(header_.fileLength) + " bytes but the movie has " +
                    std::to_string(movie.size()));
    SwfInput in(movie, header_.version);
    in.Skip(8);
    header_.frameSize.Read(in);
    header_.frameRateRaw = in.ReadU16();
    header_.frameRate = static_cast<float>(header_.frameRateRaw >> 8) + static_cast<float>(header_.frameRateRaw & 0xFF) / 256.0f;
    header_.frameCount = in.ReadU16();
    if (!in.ok()) return Fail("movie header is cut off");
    ReadSwfTags(in, tags_, &locations_, 0);
    if (!in.ok()) return Fail(in.error());
    if (in.Remaining() > 0)
        return Fail(std::to_string(in.Remaining()) + " bytes after the End tag");
    return true;
}

}  // namespace quillet
