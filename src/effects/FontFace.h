// Faces of installed fonts, found by name and style with fontconfig and read
// with FreeType. Metrics are given in the 1024-unit em square of SWF font tags
// (y growing downwards, baseline at 0), glyph outlines as glyph shapes.
//
//   FontCatalog fonts;
//   FontFace* face = fonts.Find("DejaVu Sans", /*bold*/ true, /*italic*/ false);
//   const FontGlyph& g = face->Glyph(U'é');
//
// A name that no installed family carries gives the fallback face (DejaVu Sans
// in the requested style) and says so; Find never fails while any font is
// installed. A family without a bold or italic face gets its regular outlines
// thickened or slanted, as the desktop did.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "swf/SwfRecords.h"
#include "swf/SwfShape.h"

namespace quillet {

constexpr const char* kFallbackFontFamily = "DejaVu Sans";

struct FontGlyph {
    bool present = false;  // the face has a glyph for the code
    SwfShape shape;
    SwfRect bounds;        // em units
    int32_t advance = 0;   // em units
};

class FontFace {
public:
    ~FontFace();
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;

    const std::string& Family() const { return family_; }  // as the face names itself
    const std::string& File() const { return file_; }
    bool Bold() const { return bold_; }      // drawn bold (a bold face, or thickened)
    bool Italic() const { return italic_; }  // drawn slanted (an italic face, or sheared)
    int32_t Ascent() const { return ascent_; }    // em units above the baseline
    int32_t Descent() const { return descent_; }  // em units below it (positive)
    int32_t LineGap() const { return lineGap_; }

    // The glyph for a character code; a code the face lacks gives its
    // missing-glyph box, `present` false. Outlines are read once.
    const FontGlyph& Glyph(char32_t code);
    // The kerning between two characters, em units (0 where the face has none).
    int32_t Kerning(char32_t left, char32_t right);

private:
    friend class FontCatalog;
    FontFace() = default;
    bool Load(void* library, const std::string& file, int index);

    void* face_ = nullptr;  // FT_Face
    std::string family_, file_;
    bool bold_ = false, italic_ = false;
    bool embolden_ = false, slant_ = false;  // synthesised styles
    double unitsPerEm_ = 1024;
    int32_t ascent_ = 0, descent_ = 0, lineGap_ = 0;
    std::map<char32_t, FontGlyph> glyphs_;
};

class DefineFont2Tag;

// A font tag holding the face's glyphs for `codes` (ascending, at most
// U+FFFF), with its layout: ascent, descent, advances, bounds and the kerning
// between those characters. Captions and the preloader's digits use it.
std::unique_ptr<DefineFont2Tag> MakeFontTag(FontFace& face, const std::vector<char32_t>& codes, uint16_t id);

class FontCatalog {
public:
    FontCatalog();
    ~FontCatalog();
    FontCatalog(const FontCatalog&) = delete;
    FontCatalog& operator=(const FontCatalog&) = delete;

    // The face for a family name and style; null only when no font at all can
    // be loaded. The same request, or one that resolves to the same face file,
    // gives the same object. `fellBack` tells whether the family was missing.
    FontFace* Find(const std::string& family, bool bold, bool italic, bool* fellBack = nullptr);

private:
    struct Resolved {
        FontFace* face = nullptr;
        bool fellBack = false;
    };
    Resolved Match(const std::string& family, bool bold, bool italic, bool allowOther);

    void* library_ = nullptr;  // FT_Library
    std::map<std::tuple<std::string, bool, bool>, Resolved> byRequest_;
    std::map<std::tuple<std::string, int, bool, bool>, std::unique_ptr<FontFace>> byFile_;
};

}  // namespace quillet
