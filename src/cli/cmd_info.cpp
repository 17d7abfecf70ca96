// quillet info MOVIE.swf [--json]: the header and the tag list of a movie,
// read through our own reader.
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "cli/Command.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

namespace quillet::cli {

namespace {

std::string JsonString(const std::string& s) {
    std::string out = "\"";
    for (unsigned char c : s) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", c);
                out += buf;
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    return out + "\"";
}

std::string Number(double v) {
    std::ostringstream s;
    s << std::setprecision(10) << v;
    return s.str();
}

void JsonTags(std::ostream& out, const std::vector<std::unique_ptr<SwfTag>>& tags,
              const std::vector<SwfTagLocation>& locations, uint64_t base, const std::string& indent) {
    out << "[";
    for (size_t i = 0; i < tags.size(); ++i) {
        const SwfTag& t = *tags[i];
        const SwfTagLocation loc = i < locations.size() ? locations[i] : SwfTagLocation{t.Code(), 0, 0, 0};
        out << (i ? "," : "") << "\n" << indent << "  {\"code\": " << t.Code() << ", \"name\": " << JsonString(SwfTagName(t.Code()))
            << ", \"offset\": " << base + loc.offset << ", \"length\": " << loc.bodyLength;
        if (t.HasId()) out << ", \"id\": " << t.GetId();
        if (auto* sprite = dynamic_cast<const DefineSpriteTag*>(&t)) {
            out << ", \"frameCount\": " << sprite->FrameCount() << ", \"tags\": ";
            JsonTags(out, sprite->Tags(), sprite->Locations(), base + loc.offset + loc.headerLength, indent + "  ");
        }
        out << "}";
    }
    out << (tags.empty() ? "]" : "\n" + indent + "]");
}

void TextTags(std::ostream& out, const std::vector<std::unique_ptr<SwfTag>>& tags,
              const std::vector<SwfTagLocation>& locations, uint64_t base, int level) {
    for (size_t i = 0; i < tags.size(); ++i) {
        const SwfTag& t = *tags[i];
        const SwfTagLocation loc = i < locations.size() ? locations[i] : SwfTagLocation{t.Code(), 0, 0, 0};
        std::ostringstream line;
        line << std::string(level * 2, ' ') << std::setw(4) << t.Code() << "  " << std::left << std::setw(22)
             << SwfTagName(t.Code()) << std::right << std::setw(9) << loc.bodyLength << std::setw(11)
             << base + loc.offset;
        if (t.HasId()) line << "  id " << t.GetId();
        if (auto* sprite = dynamic_cast<const DefineSpriteTag*>(&t)) line << "  frames " << sprite->FrameCount();
        out << line.str() << "\n";
        if (auto* sprite = dynamic_cast<const DefineSpriteTag*>(&t))
            TextTags(out, sprite->Tags(), sprite->Locations(), base + loc.offset + loc.headerLength, level + 1);
    }
}

int RunInfo(const std::vector<std::string>& args);

const Command kInfo{"info", "info MOVIE.swf [--json]",
                    "print a movie's header and its tags (code, name, length, offset, id)", RunInfo, 60};
const CommandRegistrar kRegisterInfo(kInfo);

int RunInfo(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(args, {}, {"--json"});
    if (!parsed.error.empty()) return usageError(kInfo, parsed.error);
    if (parsed.positional.size() != 1) return usageError(kInfo, "expected one movie");
    const std::string& path = parsed.positional[0];
    SwfReader reader;
    if (!reader.ReadFile(path)) {
        printError(path, reader.Error());
        return kExitFailure;
    }
    const SwfHeader& h = reader.Header();
    const std::string signature = h.compressed ? "CWS" : "FWS";
    if (parsed.has("--json")) {
        std::cout << "{\"file\": " << JsonString(path) << ", \"signature\": \"" << signature
                  << "\", \"version\": " << int(h.version) << ", \"fileLength\": " << h.fileLength
                  << ",\n \"frameRect\": {\"xMin\": " << h.frameSize.xMin << ", \"xMax\": " << h.frameSize.xMax
                  << ", \"yMin\": " << h.frameSize.yMin << ", \"yMax\": " << h.frameSize.yMax
                  << "}, \"frameRate\": " << Number(h.frameRate) << ", \"frameCount\": " << h.frameCount
                  << ",\n \"tags\": ";
        JsonTags(std::cout, reader.Tags(), reader.Locations(), 0, "");
        std::cout << "}\n";
        return kExitOk;
    }
    std::cout << path << ": " << signature << " version " << int(h.version) << ", " << h.fileLength
              << " bytes (uncompressed)\n"
              << "stage: " << h.frameSize.xMin << ", " << h.frameSize.yMin << " to " << h.frameSize.xMax << ", "
              << h.frameSize.yMax << " twips (" << h.frameSize.Width() / 20.0 << " x " << h.frameSize.Height() / 20.0
              << " pixels)\n"
              << "frame rate: " << Number(h.frameRate) << " fps\n"
              << "frames: " << h.frameCount << "\n"
              << "tags: " << reader.Tags().size() << "\n"
              << "code  name                     length     offset\n";
    TextTags(std::cout, reader.Tags(), reader.Locations(), 0, 0);
    return kExitOk;
}

}  // namespace

}  // namespace quillet::cli
