#include "swf/SwfReader.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "swf/SwfCompress.h"
#include "swf/tags/JpegTags.h"

namespace quillet {

namespace {

std::string TagLabel(uint16_t code, uint64_t offset) {
    return "tag " + std::to_string(code) + " (" + SwfTagName(code) + ") at offset " + std::to_string(offset);
}

// A private temporary folder, removed with its content when done.
class PrivateTempDir {
public:
    PrivateTempDir() {
        std::error_code ec;
        std::string pattern = (std::filesystem::temp_directory_path(ec) / "quillet-swf-XXXXXX").string();
        if (ec) pattern = "/tmp/quillet-swf-XXXXXX";
        if (char* made = mkdtemp(pattern.data())) path_ = made;
    }
    ~PrivateTempDir() {
        if (path_.empty()) return;
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    PrivateTempDir(const PrivateTempDir&) = delete;
    PrivateTempDir& operator=(const PrivateTempDir&) = delete;
    bool ok() const { return !path_.empty(); }
    std::string file(const char* name) const { return (std::filesystem::path(path_) / name).string(); }

private:
    std::string path_;
};

bool ReadWholeFile(const std::string& path, std::vector<uint8_t>& out, std::string& error) {
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) {
        error = "is a folder, not a movie";
        return false;
    }
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) {
        error = std::string("cannot open: ") + std::strerror(errno);
        return false;
    }
    out.clear();
    uint8_t buffer[65536];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, f)) > 0) {
        if (out.size() + got > SwfReader::kMaxMovieBytes) {
            std::fclose(f);
            error = "file is too large to be read as a movie";
            return false;
        }
        out.insert(out.end(), buffer, buffer + got);
    }
    const bool bad = std::ferror(f);
    std::fclose(f);
    if (bad) {
        error = "read error";
        return false;
    }
    return true;
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
    error_.clear();
    tags_.clear();
    locations_.clear();
    char sig[8] = {};
    {
        std::error_code ec;
        if (std::filesystem::is_directory(path, ec)) return Fail("is a folder, not a movie");
        std::FILE* f = std::fopen(path.c_str(), "rb");
        if (!f) return Fail(std::string("cannot open: ") + std::strerror(errno));
        const size_t got = std::fread(sig, 1, 8, f);
        std::fclose(f);
        if (got < 8) return Fail("too short to be a movie (" + std::to_string(got) + " bytes)");
    }
    std::vector<uint8_t> data;
    std::string why;
    const bool compressed = std::memcmp(sig, "CWS", 3) == 0;
    if (compressed) {
        uint32_t declared = 0;
        for (int i = 7; i >= 4; --i) declared = declared << 8 | static_cast<uint8_t>(sig[i]);
        if (declared > kMaxMovieBytes) return Fail("the length field says " + std::to_string(declared) + " bytes, too large");
        PrivateTempDir dir;
        if (!dir.ok()) return Fail("cannot make a temporary folder to expand the movie");
        const std::string expanded = dir.file("_xxswfxx__.bin");
        if (!ExpandSwfLimited(path, expanded, true, declared)) {
            std::error_code ec;
            const auto size = std::filesystem::file_size(expanded, ec);
            if (!ec && size >= declared) return Fail("compressed movie expands beyond its length field of " +
                                                     std::to_string(declared) + " bytes");
            return Fail("compressed data are damaged or cut off");
        }
        if (!ReadWholeFile(expanded, data, why)) return Fail(why);
    } else {
        if (!ReadWholeFile(path, data, why)) return Fail(why);
    }
    return ReadMemoryPlain(data, compressed);
}

bool SwfReader::ReadMemory(const uint8_t* data, size_t size) {
    error_.clear();
    tags_.clear();
    locations_.clear();
    if (!data || size < 8) return Fail("too short to be a movie (" + std::to_string(data ? size : 0) + " bytes)");
    if (std::memcmp(data, "CWS", 3) == 0) {
        uint32_t declared = 0;
        for (int i = 7; i >= 4; --i) declared = declared << 8 | data[i];
        if (declared < 8 || declared > kMaxMovieBytes)
            return Fail("the length field says " + std::to_string(declared) + " bytes, which cannot be");
        std::vector<uint8_t> movie(data, data + 8);
        movie[0] = 'F';
        std::vector<uint8_t> rest;
        std::string why;
        if (!ZlibExpand(data + 8, size - 8, declared - 8, rest, &why)) return Fail(why);
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
