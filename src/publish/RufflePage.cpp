#include "publish/RufflePage.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "io/DataFolder.h"
#include "io/OutputFile.h"
#include "io/ReadFile.h"

namespace quillet {

const char* const kRuffleFolderName = "ruffle";

namespace fs = std::filesystem;

namespace {

// Ruffle's spelling of the scale modes.
const char* const kRuffleScale[] = {"showAll", "noBorder", "exactFit"};
const char* const kSalign[] = {"", "l", "r", "t", "b", "tl", "tr", "bl", "br"};
const char* const kTextAlign[] = {"", "left", "right", "", ""};

std::string escapeHtml(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            default: out += c;
        }
    }
    return out;
}

// Byte by byte, so names with spaces, '#', '?', '%' or accents load.
std::string escapeUrl(const std::string& name) {
    std::string out;
    for (unsigned char c : name) {
        if (std::isalnum(c) || c == '-' || c == '_' || c == '.' || c == '~') {
            out += static_cast<char>(c);
        } else {
            char hex[4];
            std::snprintf(hex, sizeof hex, "%%%02X", c);
            out += hex;
        }
    }
    return out;
}

template <size_t N>
const char* pick(const char* const (&table)[N], int value) {
    return (value >= 0 && static_cast<size_t>(value) < N) ? table[value] : "";
}

bool wanted(const fs::path& file) {
    std::string name = file.filename().string();
    std::string ext = file.extension().string();
    return ext == ".js" || ext == ".wasm" || name.rfind("LICENSE", 0) == 0;
}

}  // namespace

std::string MakeRufflePage(const HtmlSettings& s, const std::string& title) {
    char colour[8];
    std::snprintf(colour, sizeof colour, "#%02x%02x%02x", s.bgcolor & 0xFF, (s.bgcolor >> 8) & 0xFF,
                  (s.bgcolor >> 16) & 0xFF);
    bool percent = s.dimensionType == HtmlSettings::Percent;
    std::string unit = percent ? "%" : "";
    std::string width = std::to_string(s.width) + unit, height = std::to_string(s.height) + unit;
    std::string scale = pick(kRuffleScale, s.scale);
    std::string salign = pick(kSalign, s.flashAlign);
    std::string textAlign = pick(kTextAlign, s.htmlAlign);
    std::string quality = htmlQualityKeyword(s.quality);

    std::string p;
    p += "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n";
    p += "<title>" + escapeHtml(title) + "</title>\n";
    p += "<script>\n";
    p += "  // Ruffle reads its configuration when it loads; it then replaces the embed below.\n";
    p += "  window.RufflePlayer = window.RufflePlayer || {};\n";
    p += "  window.RufflePlayer.config = {\n";
    p += std::string("    autoplay: \"") + (s.autoPlay ? "on" : "off") + "\", unmuteOverlay: \"hidden\", splashScreen: false,\n";
    p += std::string("    contextMenu: \"") + (s.displayMenu ? "on" : "off") + "\", letterbox: \"on\", backgroundColor: \"" +
         colour + "\",\n";
    p += "    scale: \"" + scale + "\", salign: \"" + salign + "\", quality: \"" + quality + "\"\n";
    p += "  };\n</script>\n";
    p += std::string("<script src=\"") + kRuffleFolderName + "/ruffle.js\"></script>\n";
    p += "<style>\n  html, body { margin: 0; height: 100%; background: " + std::string(colour) + "; }\n";
    if (!textAlign.empty()) p += "  body { text-align: " + textAlign + "; }\n";
    p += "</style>\n</head>\n<body>\n";
    p += "<embed src=\"" + escapeHtml(escapeUrl(s.swf)) + "\" width=\"" + width + "\" height=\"" + height + "\"";
    p += std::string(" play=\"") + (s.autoPlay ? "true" : "false") + "\"";
    p += std::string(" loop=\"") + (s.loop ? "true" : "false") + "\"";
    p += std::string(" menu=\"") + (s.displayMenu ? "true" : "false") + "\"";
    p += " quality=\"" + quality + "\" scale=\"" + scale + "\"";
    if (!salign.empty()) p += " salign=\"" + salign + "\"";
    p += std::string(" bgcolor=\"") + colour + "\" type=\"application/x-shockwave-flash\">\n";
    p += "</body>\n</html>\n";
    return p;
}

bool CopyRufflePlayer(const std::string& playerFolder, const std::string& destination, std::string* error) {
    std::error_code ec;
    if (!fs::is_regular_file(fs::path(playerFolder) / "ruffle.js", ec)) {
        if (error) *error = playerFolder + ": the Ruffle player is not there (no ruffle.js)";
        return false;
    }
    if (!fs::is_directory(destination, ec) && !fs::create_directory(destination, ec)) {
        if (error) *error = destination + ": " + ec.message();
        return false;
    }
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(playerFolder, ec))
        if (entry.is_regular_file() && wanted(entry.path())) files.push_back(entry.path());
    for (const fs::path& file : files) {
        std::vector<uint8_t> bytes;
        std::string why;
        std::string target = (fs::path(destination) / file.filename()).string();
        if (!ReadFileLimited(file.string(), uint64_t(256) << 20, bytes, &why) ||
            !WriteFileAtomically(target, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()),
                                 &why)) {
            if (error) *error = target + ": " + why;
            return false;
        }
    }
    return true;
}

std::string FindRufflePlayer() {
    if (const char* env = std::getenv("QUILLET_RUFFLE_DIR"); env && *env) {
        std::error_code ec;
        return fs::is_regular_file(fs::path(env) / "ruffle.js", ec) ? env : "";
    }
    return FindDataFolder("ruffle", "node_modules/@ruffle-rs/ruffle", "ruffle.js");
}

}  // namespace quillet
