#include "publish/Projector.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "io/OutputFile.h"
#include "io/ReadFile.h"
#include "io/TempFolder.h"
#include "publish/BinHex.h"
#include "swf/SwfAction.h"
#include "swf/SwfStream.h"
#include "swf/actions/UrlActions.h"
#include "swf/tags/DoActionTag.h"

namespace quillet {

const char* const kWindowsPlayerFile = "windows-player.exe";
const char* const kMacPlayerDataFile = "mac-player.data";
const char* const kMacPlayerRsrcFile = "mac-player.rsrc";

namespace {

constexpr uint32_t kMarker = 0xFA123456;
constexpr uint16_t kFileAttributesCode = 69;

void putLittle(std::string& out, uint32_t v) {
    for (int k = 0; k < 4; ++k) out += static_cast<char>((v >> (8 * k)) & 0xFF);
}

void putBig(std::string& out, uint32_t v) {
    for (int k = 3; k >= 0; --k) out += static_cast<char>((v >> (8 * k)) & 0xFF);
}

uint32_t getLittle(const std::string& s, size_t at) {
    uint32_t v = 0;
    for (int k = 3; k >= 0; --k) v = (v << 8) | static_cast<unsigned char>(s[at + k]);
    return v;
}

bool fail(std::string* error, const std::string& why) {
    if (error) *error = why;
    return false;
}

bool readWhole(const std::string& path, std::string& out, std::string* error) {
    std::string why;
    std::vector<uint8_t> bytes;
    if (!ReadFileLimited(path, uint64_t(1) << 31, bytes, &why)) return fail(error, path + ": " + why);
    out.assign(bytes.begin(), bytes.end());
    return true;
}

bool loadPlayer(const std::string& folder, const char* name, std::string& out, std::string* error) {
    if (folder.empty())
        return fail(error, std::string("no players folder is set (--players DIR holding ") + name + ")");
    std::string path = (std::filesystem::path(folder) / name).string();
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) return fail(error, path + ": the player file is missing");
    return readWhole(path, out, error);
}

// The movie the projector carries: as built, or a copy with the player
// commands (kept as "~projfscmd" in the private temporary folder, removed
// when done).
bool chooseMovie(const std::string& moviePath, const ProjectorSettings& options, std::string& movie,
                 std::string* error) {
    if (!readWhole(moviePath, movie, error)) return false;
    if (options.isPlayerDefault()) return true;
    std::string withCommands;
    if (!AddPlayerCommands(movie, options, withCommands, error)) return false;
    std::string tempError;
    std::string copy = PrivateTempFile("~projfscmd", &tempError);
    if (copy.empty()) return fail(error, tempError);
    if (!WriteFileAtomically(copy, withCommands, &tempError)) return fail(error, copy + ": " + tempError);
    bool ok = readWhole(copy, movie, error);
    std::filesystem::remove(copy);
    return ok;
}

bool writeTarget(const std::string& target, const std::string& bytes, std::string* error) {
    std::string why;
    if (!WriteFileAtomically(target, bytes, &why)) return fail(error, target + ": " + why);
    return true;
}

}  // namespace

std::string WindowsProjectorBytes(const std::string& player, const std::string& movie) {
    std::string out = player + movie;
    putLittle(out, kMarker);
    putLittle(out, static_cast<uint32_t>(movie.size()));
    return out;
}

std::string MacProjectorDataFork(const std::string& player, const std::string& movie) {
    std::string out = player + movie;
    putBig(out, static_cast<uint32_t>(movie.size()));
    putBig(out, kMarker);
    return out;
}

bool AddPlayerCommands(const std::string& movie, const ProjectorSettings& options, std::string& out,
                       std::string* error) {
    if (movie.size() < 8 || (movie.compare(0, 3, "FWS") != 0 && movie.compare(0, 3, "CWS") != 0))
        return fail(error, "not an SWF movie");
    bool compressed = movie[0] == 'C';
    uint32_t length = getLittle(movie, 4);
    if (length < 8 + 5 + 4 || length > (uint32_t(1) << 31)) return fail(error, "the movie's length field is wrong");
    std::string body;
    if (compressed) {
        body.resize(length - 8);
        uLongf got = body.size();
        if (uncompress(reinterpret_cast<Bytef*>(body.data()), &got,
                       reinterpret_cast<const Bytef*>(movie.data() + 8), movie.size() - 8) != Z_OK ||
            got != body.size())
            return fail(error, "the compressed movie cannot be expanded");
    } else {
        if (movie.size() != length) return fail(error, "the movie's length field does not match its size");
        body = movie.substr(8);
    }

    // Stage rectangle, frame rate and frame count, then the tags.
    size_t rectBits = 5 + 4 * (static_cast<unsigned char>(body[0]) >> 3);
    size_t at = (rectBits + 7) / 8 + 4;
    // A FileAttributes record must stay first.
    if (at + 2 <= body.size()) {
        uint16_t head = static_cast<uint16_t>(static_cast<unsigned char>(body[at]) |
                                              (static_cast<unsigned char>(body[at + 1]) << 8));
        if ((head >> 6) == kFileAttributesCode) {
            uint32_t size = head & 0x3F;
            size_t headerSize = 2;
            if (size == 0x3F) {
                if (at + 6 > body.size()) return fail(error, "the movie ends inside a tag header");
                size = getLittle(body, at + 2);
                headerSize = 6;
            }
            at += headerSize + size;
        }
    }
    if (at > body.size()) return fail(error, "the movie ends inside its header");

    SwfActionList actions;
    actions.Emplace<ActionGetURL>("FSCommand:fullscreen", options.fullscreen ? "true" : "false");
    actions.Emplace<ActionGetURL>("FSCommand:showmenu", options.showmenu ? "true" : "false");
    actions.Emplace<ActionGetURL>("FSCommand:allowscale", options.allowscale ? "true" : "false");
    DoActionTag tag(std::move(actions));
    SwfStream stream;
    stream.version = static_cast<uint8_t>(movie[3]);
    tag.Write(stream);
    const std::vector<uint8_t>& script = stream.Bytes();
    body.insert(at, reinterpret_cast<const char*>(script.data()), script.size());

    out.assign(movie, 0, 8);
    uint32_t newLength = static_cast<uint32_t>(body.size() + 8);
    for (int k = 0; k < 4; ++k) out[4 + k] = static_cast<char>((newLength >> (8 * k)) & 0xFF);
    if (!compressed) {
        out += body;
        return true;
    }
    uLongf packedSize = compressBound(body.size());
    std::string packed(packedSize, '\0');
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &packedSize, reinterpret_cast<const Bytef*>(body.data()),
                  body.size(), Z_BEST_COMPRESSION) != Z_OK)
        return fail(error, "the movie cannot be compressed");
    out.append(packed, 0, packedSize);
    return true;
}

bool WriteWindowsProjector(const std::string& target, const std::string& moviePath,
                           const ProjectorSettings& options, const std::string& playersFolder, std::string* error) {
    std::string player, movie;
    if (!loadPlayer(playersFolder, kWindowsPlayerFile, player, error)) return false;
    if (!chooseMovie(moviePath, options, movie, error)) return false;
    return writeTarget(target, WindowsProjectorBytes(player, movie), error);
}

bool WriteMacProjector(const std::string& target, const std::string& macName, const std::string& moviePath,
                       const ProjectorSettings& options, const std::string& playersFolder, std::string* error) {
    std::string player, resources, movie;
    if (!loadPlayer(playersFolder, kMacPlayerDataFile, player, error)) return false;
    if (!loadPlayer(playersFolder, kMacPlayerRsrcFile, resources, error)) return false;
    if (!chooseMovie(moviePath, options, movie, error)) return false;

    // The forks pass through the temporary folder as "~macprj_d.dat" and
    // "~macprj_r.dat", removed once packed.
    std::string why;
    std::string dataPath = PrivateTempFile("~macprj_d.dat", &why);
    std::string rsrcPath = PrivateTempFile("~macprj_r.dat", &why);
    if (dataPath.empty() || rsrcPath.empty()) return fail(error, why);
    if (!WriteFileAtomically(dataPath, MacProjectorDataFork(player, movie), &why) ||
        !WriteFileAtomically(rsrcPath, resources, &why))
        return fail(error, why);
    std::string dataFork, rsrcFork;
    bool ok = readWhole(dataPath, dataFork, error) && readWhole(rsrcPath, rsrcFork, error);
    if (ok) {
        MacFile file;
        file.name = macName;
        std::copy_n("FP98", 4, file.creator);
        file.flags = 0x0100;
        file.dataFork = dataFork;
        file.resourceFork = rsrcFork;
        ok = writeTarget(target, EncodeBinHex(file), error);
    }
    std::filesystem::remove(dataPath);
    std::filesystem::remove(rsrcPath);
    return ok;
}

}  // namespace quillet
