#include "effects/Caption.h"

#include <cstdlib>

#include "options/NameCompare.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace {

const char* const kKindKeywords[] = {"qpj", "glw"};
const char* const kHAlignKeywords[] = {"left", "center", "right"};
const char* const kVAlignKeywords[] = {"top", "center", "bottom"};

template <size_t N>
const char* KeywordOf(const char* const (&table)[N], int32_t index) {
    return index >= 0 && static_cast<size_t>(index) < N ? table[index] : "";
}

// Exact comparison; an unknown keyword or a missing attribute leaves the field.
template <size_t N>
void ReadKeywordField(const XmlNode& element, const char* attribute, const char* const (&table)[N], int32_t& field) {
    std::string keyword;
    if (!element.readString(attribute, keyword)) return;
    for (size_t i = 0; i < N; ++i) {
        if (keyword == table[i]) {
            field = static_cast<int32_t>(i);
            return;
        }
    }
}

std::string Trim(std::string_view text) {
    size_t begin = 0, end = text.size();
    while (begin < end && (text[begin] == ' ' || text[begin] == '\t')) ++begin;
    while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t')) --end;
    return std::string(text.substr(begin, end - begin));
}

}  // namespace

const std::vector<std::string>& CaptionEffectNames() {
    static const std::vector<std::string> names{"None",           "Fade In",      "Fly From Left",
                                                "Fly From Right", "Fly From Top", "Fly From Bottom"};
    return names;
}

CaptionEffectKind CaptionEffectFromName(const std::string& name) {
    const auto& names = CaptionEffectNames();
    for (size_t i = 0; i < names.size(); ++i)
        if (EqualsNoCase(names[i], name)) return static_cast<CaptionEffectKind>(i);
    return CaptionEffectKind::None;
}

CaptionEffectKind Caption::EffectKind() const { return CaptionEffectFromName(effect); }

std::string PackCaptionFont(const Caption& caption) {
    std::string packed = caption.fontName + "," + std::to_string(caption.fontSize);
    if (caption.bold) packed += ",bold";
    if (caption.italic) packed += ",italic";
    return packed;
}

void UnpackCaptionFont(const std::string& packed, Caption& caption) {
    std::vector<std::string> parts;
    size_t start = 0;
    while (true) {
        const size_t comma = packed.find(',', start);
        parts.push_back(Trim(std::string_view(packed).substr(start, comma == std::string::npos ? std::string::npos
                                                                                               : comma - start)));
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    if (!parts[0].empty()) caption.fontName = parts[0];
    if (parts.size() > 1 && !parts[1].empty()) {
        char* end = nullptr;
        const long size = std::strtol(parts[1].c_str(), &end, 10);
        if (end && *end == '\0' && size > 0 && size <= 0x7FFF) caption.fontSize = static_cast<int32_t>(size);
    }
    caption.bold = caption.italic = false;
    for (size_t i = 2; i < parts.size(); ++i) {
        if (EqualsNoCase(parts[i], "bold")) caption.bold = true;
        if (EqualsNoCase(parts[i], "italic")) caption.italic = true;
    }
}

void WriteCaption(XmlWriter& writer, const Caption& c) {
    writer.write("<caption");
    writer.attributeRaw("type", KeywordOf(kKindKeywords, c.kind));
    writer.attribute("import_src", c.importSource);
    writer.attribute("txt", c.text);
    writer.attribute("fnt_name", c.fontName);
    writer.attribute("font_size", static_cast<int>(c.fontSize));
    writer.attribute("font_italic", c.italic);
    writer.attribute("font_bold", c.bold);
    writer.attribute("color", static_cast<unsigned>(c.color));
    writer.attribute("alpha", static_cast<int>(c.alpha));
    writer.attribute("x", static_cast<int>(c.x));
    writer.attribute("y", static_cast<int>(c.y));
    writer.attributeRaw("h_align", KeywordOf(kHAlignKeywords, c.hAlign));
    writer.attributeRaw("v_align", KeywordOf(kVAlignKeywords, c.vAlign));
    writer.attribute("align_to_doc", c.alignToDoc);
    writer.attribute("tracking", static_cast<int>(c.tracking));
    writer.attribute("leading", static_cast<int>(c.leading));
    writer.attribute("start_time", static_cast<unsigned>(c.startTime));
    writer.attribute("duration", static_cast<unsigned>(c.duration));
    writer.attribute("show_till_next", c.showTillNext);
    writer.attribute("effect", c.effect);
    writer.write(" />\n");
}

Caption ReadCaption(const XmlNode& e) {
    Caption c;
    ReadKeywordField(e, "type", kKindKeywords, c.kind);
    e.readString("import_src", c.importSource);
    if (!e.readString("txt", c.text)) e.readString("text", c.text);
    // The packed form first, so that the separate attributes win over it.
    std::string packed;
    if (e.readString("font", packed)) UnpackCaptionFont(packed, c);
    if (!e.readString("fnt_name", c.fontName)) e.readString("font_name", c.fontName);
    e.readInt("font_size", c.fontSize);
    e.readBool("font_italic", c.italic);
    e.readBool("font_bold", c.bold);
    e.readUnsigned("color", c.color);
    e.readInt("alpha", c.alpha);
    e.readInt("x", c.x);
    e.readInt("y", c.y);
    ReadKeywordField(e, "h_align", kHAlignKeywords, c.hAlign);
    ReadKeywordField(e, "v_align", kVAlignKeywords, c.vAlign);
    e.readBool("align_to_doc", c.alignToDoc);
    e.readInt("tracking", c.tracking);
    e.readInt("leading", c.leading);
    e.readUnsigned("start_time", c.startTime);
    e.readUnsigned("duration", c.duration);
    e.readBool("show_till_next", c.showTillNext);
    e.readString("effect", c.effect);
    return c;
}

void CaptionList::Write(XmlWriter& writer) const {
    writer.write("<caption_data>\n");
    for (const Caption& caption : items) WriteCaption(writer, caption);
    writer.write("</caption_data>\n");
}

void CaptionList::Read(const XmlNode& captionData) {
    if (!captionData) return;
    for (const XmlNode& child : captionData.children())
        if (child.name() == "caption") items.push_back(ReadCaption(child));
}

}  // namespace quillet
