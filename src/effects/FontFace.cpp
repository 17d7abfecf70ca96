#include "effects/FontFace.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <cmath>

#include "effects/GlyphShapes.h"
#include "options/NameCompare.h"
#include "swf/tags/FontTags.h"

namespace quillet {

namespace {

FT_Face AsFace(void* face) { return static_cast<FT_Face>(face); }

// Thickening of a synthesised bold face, in em units of 1024 (the outline
// grows by this much in x, half on each side) and the slant of a synthesised
// italic (x moves by this much of y).
constexpr double kEmboldenEm = 1024.0 / 24.0;
constexpr double kSlant = 0.2;

struct Decomposer {
    GlyphShapeBuilder* builder;
};

GlyphPoint P(const FT_Vector* v) { return {static_cast<double>(v->x), static_cast<double>(v->y)}; }

int MoveToCb(const FT_Vector* to, void* user) {
    static_cast<Decomposer*>(user)->builder->MoveTo(P(to));
    return 0;
}
int LineToCb(const FT_Vector* to, void* user) {
    static_cast<Decomposer*>(user)->builder->LineTo(P(to));
    return 0;
}
int ConicToCb(const FT_Vector* control, const FT_Vector* to, void* user) {
    static_cast<Decomposer*>(user)->builder->QuadTo(P(control), P(to));
    return 0;
}
int CubicToCb(const FT_Vector* c1, const FT_Vector* c2, const FT_Vector* to, void* user) {
    static_cast<Decomposer*>(user)->builder->CubicTo(P(c1), P(c2), P(to));
    return 0;
}

int32_t Em(double units, double unitsPerEm) { return static_cast<int32_t>(std::lround(units * 1024.0 / unitsPerEm)); }

}  // namespace

FontFace::~FontFace() {
    if (face_) FT_Done_Face(AsFace(face_));
}

bool FontFace::Load(void* library, const std::string& file, int index) {
    FT_Face face = nullptr;
    if (FT_New_Face(static_cast<FT_Library>(library), file.c_str(), index, &face) != 0) return false;
    if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0) {
        FT_Done_Face(face);
        return false;
    }
    face_ = face;
    file_ = file;
    family_ = face->family_name ? face->family_name : "";
    unitsPerEm_ = face->units_per_EM;
    bold_ = (face->style_flags & FT_STYLE_FLAG_BOLD) != 0;
    italic_ = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
    // The desktop measured text by the face's Windows ascent and descent when
    // it has them; other faces give their horizontal header's.
    double ascent = face->ascender, descent = -face->descender, gap = face->height - ascent - descent;
    if (auto* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
        os2 && os2->version != 0xFFFF && os2->usWinAscent + os2->usWinDescent > 0) {
        ascent = os2->usWinAscent;
        descent = os2->usWinDescent;
    }
    ascent_ = Em(ascent, unitsPerEm_);
    descent_ = Em(descent, unitsPerEm_);
    lineGap_ = std::max(0, Em(gap, unitsPerEm_));
    return true;
}

const FontGlyph& FontFace::Glyph(char32_t code) {
    auto found = glyphs_.find(code);
    if (found != glyphs_.end()) return found->second;
    FontGlyph& glyph = glyphs_[code];
    FT_Face face = AsFace(face_);
    const FT_UInt index = FT_Get_Char_Index(face, code);
    glyph.present = index != 0;
    if (FT_Load_Glyph(face, index, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) != 0) return glyph;
    FT_GlyphSlot slot = face->glyph;
    double advance = static_cast<double>(slot->advance.x);
    if (slot->format == FT_GLYPH_FORMAT_OUTLINE) {
        FT_Outline& outline = slot->outline;
        if (embolden_) {
            const FT_Pos strength = static_cast<FT_Pos>(std::lround(kEmboldenEm * unitsPerEm_ / 1024.0));
            FT_Outline_EmboldenXY(&outline, strength, 0);
            advance += static_cast<double>(strength);
        }
        if (slant_) {
            FT_Matrix shear{0x10000, static_cast<FT_Fixed>(kSlant * 0x10000), 0, 0x10000};
            FT_Outline_Transform(&outline, &shear);
        }
        // TrueType outer contours run clockwise with y upwards, so anticlockwise
        // on the screen: their inside is on the left. PostScript ones the other way.
        const bool fillOnLeft = FT_Outline_Get_Orientation(&outline) != FT_ORIENTATION_POSTSCRIPT;
        GlyphShapeBuilder builder(unitsPerEm_, fillOnLeft);
        Decomposer user{&builder};
        FT_Outline_Funcs funcs{};
        funcs.move_to = MoveToCb;
        funcs.line_to = LineToCb;
        funcs.conic_to = ConicToCb;
        funcs.cubic_to = CubicToCb;
        FT_Outline_Decompose(&outline, &funcs, &user);
        glyph.shape = builder.Shape();
        glyph.bounds = builder.Bounds();
    }
    glyph.advance = Em(advance, unitsPerEm_);
    return glyph;
}

int32_t FontFace::Kerning(char32_t left, char32_t right) {
    FT_Face face = AsFace(face_);
    if (!FT_HAS_KERNING(face)) return 0;
    FT_Vector delta{0, 0};
    if (FT_Get_Kerning(face, FT_Get_Char_Index(face, left), FT_Get_Char_Index(face, right), FT_KERNING_UNSCALED,
                       &delta) != 0)
        return 0;
    return Em(static_cast<double>(delta.x), unitsPerEm_);
}

std::unique_ptr<DefineFont2Tag> MakeFontTag(FontFace& face, const std::vector<char32_t>& codes, uint16_t id) {
    auto font = std::make_unique<DefineFont2Tag>(id);
    auto i16 = [](int32_t v) { return static_cast<int16_t>(std::clamp(v, -32768, 32767)); };
    font->name = face.Family();
    font->bold = face.Bold();
    font->italic = face.Italic();
    font->hasLayout = true;
    font->ascent = static_cast<uint16_t>(std::clamp(face.Ascent(), 0, 65535));
    font->descent = static_cast<uint16_t>(std::clamp(face.Descent(), 0, 65535));
    font->leading = i16(face.LineGap());
    for (char32_t c : codes) {
        const FontGlyph& glyph = face.Glyph(c);
        font->glyphs.push_back(glyph.shape);
        font->codes.push_back(static_cast<uint16_t>(c));
        font->advances.push_back(i16(glyph.advance));
        font->glyphBounds.push_back(glyph.bounds);
    }
    // For text fields laid out by the player; static text carries its own advances.
    for (char32_t a : codes)
        for (char32_t b : codes)
            if (int32_t k = face.Kerning(a, b); k != 0)
                font->kerning.push_back({static_cast<uint16_t>(a), static_cast<uint16_t>(b), i16(k)});
    return font;
}

FontCatalog::FontCatalog() {
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) == 0) library_ = library;
}

FontCatalog::~FontCatalog() {
    byFile_.clear();  // faces before their library
    if (library_) FT_Done_FreeType(static_cast<FT_Library>(library_));
}

FontCatalog::Resolved FontCatalog::Match(const std::string& family, bool bold, bool italic, bool allowOther) {
    Resolved none;
    if (!library_) return none;
    FcPattern* pattern = FcPatternCreate();
    if (!family.empty()) FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(nullptr, pattern, &result);
    FcPatternDestroy(pattern);
    if (!match) return none;

    // fontconfig always offers something; it is the asked-for family only when
    // one of the names the face carries is that family.
    bool named = false;
    FcChar8* value = nullptr;
    for (int i = 0; FcPatternGetString(match, FC_FAMILY, i, &value) == FcResultMatch; ++i)
        if (EqualsNoCase(reinterpret_cast<const char*>(value), family)) named = true;
    std::string file;
    int index = 0, weight = FC_WEIGHT_REGULAR, slant = FC_SLANT_ROMAN;
    if (FcPatternGetString(match, FC_FILE, 0, &value) == FcResultMatch) file = reinterpret_cast<const char*>(value);
    FcPatternGetInteger(match, FC_INDEX, 0, &index);
    FcPatternGetInteger(match, FC_WEIGHT, 0, &weight);
    FcPatternGetInteger(match, FC_SLANT, 0, &slant);

    // fontconfig's own rules for faces without the style mark the match with
    // "embolden" and a slanting matrix (and report the asked-for weight and slant).
    FcBool emboldenHint = FcFalse;
    FcMatrix* matrix = nullptr;
    FcPatternGetBool(match, FC_EMBOLDEN, 0, &emboldenHint);
    const bool sheared = FcPatternGetMatrix(match, FC_MATRIX, 0, &matrix) == FcResultMatch && matrix && matrix->xy != 0;
    const bool embolden = bold && (emboldenHint || weight < FC_WEIGHT_DEMIBOLD);
    const bool slanted = italic && (sheared || slant == FC_SLANT_ROMAN);
    FcPatternDestroy(match);
    if ((!named && !allowOther) || file.empty()) return none;
    auto& slot = byFile_[{file, index, embolden, slanted}];
    if (!slot) {
        auto face = std::unique_ptr<FontFace>(new FontFace());
        if (!face->Load(library_, file, index)) {
            byFile_.erase({file, index, embolden, slanted});
            return none;
        }
        face->embolden_ = embolden;
        face->slant_ = slanted;
        face->bold_ = face->bold_ || embolden;
        face->italic_ = face->italic_ || slanted;
        slot = std::move(face);
    }
    return {slot.get(), !named};
}

FontFace* FontCatalog::Find(const std::string& family, bool bold, bool italic, bool* fellBack) {
    auto key = std::make_tuple(family, bold, italic);
    auto found = byRequest_.find(key);
    if (found == byRequest_.end()) {
        Resolved r = Match(family, bold, italic, false);
        if (!r.face) {
            r = Match(kFallbackFontFamily, bold, italic, true);
            r.fellBack = true;
        }
        if (!r.face) r = Match("", bold, italic, true), r.fellBack = true;
        found = byRequest_.emplace(key, r).first;
    }
    if (fellBack) *fellBack = found->second.fellBack;
    return found->second.face;
}

}  // namespace quillet
