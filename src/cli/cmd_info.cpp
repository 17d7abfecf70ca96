// quillet info MOVIE.swf [--json]: the header and the tag list of a movie,
// read through our own reader, with the format of its sounds.
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "cli/Command.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"
#include "swf/tags/SoundTags.h"

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

const char* SoundFormatName(uint8_t format) {
    switch (format) {
    case SwfSoundFormat::Uncompressed: return "PCM";
    case SwfSoundFormat::Adpcm: return "ADPCM";
    case SwfSoundFormat::Mp3: return "MP3";
    case SwfSoundFormat::UncompressedLittleEndian: return "PCM-LE";
    case 4: case 5: case SwfSoundFormat::Nellymoser: return "Nellymoser";
    case 11: return "Speex";
    default: return "unknown";
    }
}

uint32_t SoundRateHz(uint8_t code) {
    static const uint32_t kRates[] = {5512, 11025, 22050, 44100};
    return kRates[code & 3];
}

int16_t S16(const std::vector<uint8_t>& data, size_t at) {
    return data.size() >= at + 2 ? static_cast<int16_t>(data[at] | data[at + 1] << 8) : 0;
}

// The details of a sound tag as name and value (all numbers but the format);
// nothing for other tags.
std::vector<std::pair<std::string, std::string>> SoundFields(const SwfTag& t) {
    std::vector<std::pair<std::string, std::string>> f;
    if (auto* d = dynamic_cast<const DefineSoundTag*>(&t)) {
        f = {{"format", SoundFormatName(d->format)}, {"rate", std::to_string(SoundRateHz(d->rate))},
             {"channels", d->stereo ? "2" : "1"}, {"bits", d->is16Bit ? "16" : "8"},
             {"samples", std::to_string(d->sampleCount)}};
        if (d->format == SwfSoundFormat::Mp3) f.push_back({"seek", std::to_string(S16(d->data, 0))});
        f.push_back({"bytes", std::to_string(d->data.size() - (d->format == SwfSoundFormat::Mp3 && d->data.size() >= 2 ? 2 : 0))});
    } else if (auto* h = dynamic_cast<const SwfSoundStreamHeadBase*>(&t)) {
        f = {{"format", SoundFormatName(h->streamFormat)}, {"rate", std::to_string(SoundRateHz(h->streamRate))},
             {"channels", h->streamStereo ? "2" : "1"}, {"samplesPerFrame", std::to_string(h->samplesPerBlock)}};
        if (h->streamFormat == SwfSoundFormat::Mp3) f.push_back({"latencySeek", std::to_string(h->latencySeek)});
    } else if (auto* b = dynamic_cast<const SoundStreamBlockTag*>(&t)) {
        // MP3 blocks start with their sample count and seek samples.
        if (b->data.size() >= 4)
            f = {{"samples", std::to_string(static_cast<uint16_t>(S16(b->data, 0)))}, {"seek", std::to_string(S16(b->data, 2))}};
    }
    return f;
}

// "MP3 22050 Hz mono 16-bit, 11025 samples, seek 1105, 6896 bytes" and the like.
std::string SoundText(const SwfTag& t) {
    std::string head, tail;
    for (const auto& [name, v] : SoundFields(t)) {
        if (name == "format") head = v;
        else if (name == "rate") head += " " + v + " Hz";
        else if (name == "channels") head += v == "2" ? " stereo" : " mono";
        else if (name == "bits") head += " " + v + "-bit";
        else if (name == "samplesPerFrame") tail += ", " + v + " samples per frame";
        else if (name == "latencySeek") tail += ", latency seek " + v;
        else if (name == "seek") tail += ", seek " + v;
        else tail += ", " + v + " " + name;
    }
    if (head.empty() && tail.empty()) return "";
    return "  " + (head.empty() ? tail.substr(2) : head + tail);
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
        for (const auto& [name, value] : SoundFields(t)) out << ", " << JsonString(name) << ": " << (name == "format" ? JsonString(value) : value);
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
        line << SoundText(t);
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
    // The main timeline's stream in all.
    uint64_t blocks = 0, samples = 0;
    for (const auto& t : reader.Tags())
        if (auto* b = dynamic_cast<const SoundStreamBlockTag*>(t.get())) {
            ++blocks;
            if (b->data.size() >= 4) samples += static_cast<uint16_t>(b->data[0] | b->data[1] << 8);
        }
    if (blocks) std::cout << "sound stream: " << blocks << " blocks, " << samples << " samples\n";
    return kExitOk;
}

}  // namespace

}  // namespace quillet::cli
