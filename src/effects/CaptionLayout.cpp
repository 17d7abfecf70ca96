#include "effects/CaptionLayout.h"

#include <algorithm>
#include <cmath>

#include "effects/FontFace.h"

namespace quillet {

namespace {

// Windows-1252 for 0x80..0x9F; the five unassigned bytes keep their value.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool DecodeUtf8(const std::string& bytes, std::u32string& out) {
    out.clear();
    const size_t n = bytes.size();
    for (size_t i = 0; i < n;) {
        const auto b0 = static_cast<unsigned char>(bytes[i]);
        int extra = 0;
        char32_t c = 0, min = 0;
        if (b0 < 0x80) {
            out += b0;
            ++i;
            continue;
        } else if ((b0 & 0xE0) == 0xC0) {
            extra = 1, c = b0 & 0x1F, min = 0x80;
        } else if ((b0 & 0xF0) == 0xE0) {
            extra = 2, c = b0 & 0x0F, min = 0x800;
        } else if ((b0 & 0xF8) == 0xF0) {
            extra = 3, c = b0 & 0x07, min = 0x10000;
        } else {
            return false;
        }
        if (i + static_cast<size_t>(extra) >= n) return false;
        for (int k = 1; k <= extra; ++k) {
            const auto b = static_cast<unsigned char>(bytes[i + static_cast<size_t>(k)]);
            if ((b & 0xC0) != 0x80) return false;
            c = (c << 6) | (b & 0x3F);
        }
        if (c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return false;
        out += c;
        i += static_cast<size_t>(extra) + 1;
    }
    return true;
}

int32_t Round(double v) {
    return static_cast<int32_t>(std::clamp(std::lround(v), -(1l << 30), 1l << 30));
}

}  // namespace

std::u32string DecodeCaptionText(const std::string& bytes) {
    std::u32string text;
    if (DecodeUtf8(bytes, text)) return text;
    text.clear();
    for (unsigned char b : bytes) text += (b >= 0x80 && b < 0xA0) ? static_cast<char32_t>(kCp1252High[b - 0x80]) : b;
    return text;
}

std::u32string DrawnCaptionText(const Caption& caption) {
    std::u32string text = DecodeCaptionText(caption.text);
    for (char32_t& c : text)
        if (c > 0xFFFF) c = 0xFFFD;
    return text;
}

uint16_t CaptionTextHeight(int32_t points) {
    const double twips = std::fabs(static_cast<double>(points)) * 80.0 / 3.0;
    return static_cast<uint16_t>(std::clamp(std::lround(twips), 1l, 65535l));
}

CaptionLayout LayOutCaption(const Caption& caption, const std::u32string& text, FontFace& face, int32_t stageWidth,
                            int32_t stageHeight) {
    CaptionLayout layout;
    layout.textHeight = CaptionTextHeight(caption.fontSize);
    const double scale = layout.textHeight / 1024.0;  // twips per em unit
    const double tracking = caption.tracking * 20.0;
    const double lineHeight = std::max(0.0, (face.Ascent() + face.Descent()) * scale + caption.leading * 20.0);

    // Split into lines and measure each from a pen position of 0.
    std::vector<std::u32string> lines(1);
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == U'\r' || text[i] == U'\n') {
            if (text[i] == U'\r' && i + 1 < text.size() && text[i + 1] == U'\n') ++i;
            lines.emplace_back();
        } else {
            lines.back() += text[i] == U'\t' ? U' ' : text[i];
        }
    }
    for (size_t k = 0; k < lines.size(); ++k) {
        CaptionLine line;
        line.baseline = Round(face.Ascent() * scale + static_cast<double>(k) * lineHeight);
        double pen = 0;
        std::vector<double> pens;
        for (size_t i = 0; i < lines[k].size(); ++i) {
            const char32_t c = lines[k][i];
            if (i > 0) pen += face.Kerning(lines[k][i - 1], c) * scale + tracking;
            pens.push_back(pen);
            pen += face.Glyph(c).advance * scale;
            line.chars.push_back({c, 0});
        }
        // Positions are rounded once each; advances are their differences.
        for (size_t i = 0; i < pens.size(); ++i) line.chars[i].x = Round(pens[i]);
        for (size_t i = 0; i < pens.size(); ++i)
            line.advances.push_back(i + 1 < pens.size() ? line.chars[i + 1].x - line.chars[i].x
                                                        : Round(pen) - line.chars[i].x);
        line.width = std::max(0, Round(pen));
        layout.width = std::max(layout.width, line.width);
        layout.lines.push_back(std::move(line));
    }
    layout.height = Round((face.Ascent() + face.Descent()) * scale + static_cast<double>(lines.size() - 1) * lineHeight);

    bool haveInk = false;
    for (CaptionLine& line : layout.lines) {
        const int32_t spare = layout.width - line.width;
        line.left = caption.hAlign == Caption::Right ? spare : caption.hAlign == Caption::HCenter ? spare / 2 : 0;
        for (CaptionPlacedChar& placed : line.chars) {
            placed.x += line.left;
            const FontGlyph& glyph = face.Glyph(placed.code);
            if (glyph.bounds.xMax <= glyph.bounds.xMin || glyph.bounds.yMax <= glyph.bounds.yMin) continue;
            SwfRect r(placed.x + Round(glyph.bounds.xMin * scale), placed.x + Round(glyph.bounds.xMax * scale),
                      line.baseline + Round(glyph.bounds.yMin * scale), line.baseline + Round(glyph.bounds.yMax * scale));
            if (!haveInk) layout.ink = r;
            layout.ink.xMin = std::min(layout.ink.xMin, r.xMin);
            layout.ink.xMax = std::max(layout.ink.xMax, r.xMax);
            layout.ink.yMin = std::min(layout.ink.yMin, r.yMin);
            layout.ink.yMax = std::max(layout.ink.yMax, r.yMax);
            haveInk = true;
        }
    }

    // Where the block stands; 64-bit sums so that far-off positions saturate.
    auto place = [](int32_t align, int64_t size, int64_t stage, int64_t pos, bool toStage) {
        const int64_t start = toStage ? (align == 2 ? stage - size : align == 1 ? (stage - size) / 2 : 0) + pos
                                      : (align == 2 ? pos - size : align == 1 ? pos - size / 2 : pos);
        return static_cast<int32_t>(std::clamp<int64_t>(start, -(int64_t{1} << 30), int64_t{1} << 30));
    };
    const int64_t x = int64_t{caption.x} * 20, y = int64_t{caption.y} * 20;
    layout.left = place(caption.hAlign, layout.width, stageWidth, x, caption.alignToDoc);
    layout.top = place(caption.vAlign, layout.height, stageHeight, y, caption.alignToDoc);
    return layout;
}

}  // namespace quillet
