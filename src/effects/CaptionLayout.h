// Caption text laid out with a real face: the characters of each line with
// their pen positions in twips, the size of the text block and where the block
// stands on the stage.
//
// Sizes: the desktop drew a caption of P points on a 96-dpi screen with an em
// of P * 96 / 72 pixels, so the em is P * 4/3 pixels = P * 80/3 twips. Lines
// are the face's ascent + descent apart (its Windows metrics when it has
// them), plus `leading` pixels; `tracking` pixels are added after every
// character but the last of a line. Each line is aligned within the block as
// the caption's horizontal alignment says.
//
// Place: with `align_to_doc` the block is aligned to the stage (left edge,
// centre or right edge; top, middle or bottom) and (x, y) moves it from there;
// without it (x, y) is the point the block's alignment refers to (its left
// edge, centre or right edge; its top, middle or bottom).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "effects/Caption.h"
#include "swf/SwfRecords.h"

namespace quillet {

class FontFace;

// The caption's bytes as characters: UTF-8 when they are valid UTF-8 (no
// overlong forms, surrogates or values past U+10FFFF), else Windows-1252.
std::u32string DecodeCaptionText(const std::string& bytes);

// The characters a caption draws: its decoded text, with codes past U+FFFF
// (which font tags cannot hold) as the replacement character.
std::u32string DrawnCaptionText(const Caption& caption);

// Twips of the em for a point size: |points| * 80/3, at least one twip and at
// most what a text record holds (65535).
uint16_t CaptionTextHeight(int32_t points);

struct CaptionPlacedChar {
    char32_t code = 0;
    int32_t x = 0;  // pen position from the block's left edge, twips
};

struct CaptionLine {
    int32_t baseline = 0;  // from the block's top, twips
    int32_t left = 0;      // the first pen position, twips
    int32_t width = 0;     // twips
    std::vector<CaptionPlacedChar> chars;
    std::vector<int32_t> advances;  // twips to the next character (the last: its own advance)
};

struct CaptionLayout {
    uint16_t textHeight = 0;           // em, twips
    std::vector<CaptionLine> lines;
    int32_t width = 0, height = 0;     // the block, twips
    int32_t left = 0, top = 0;         // the block's top-left corner on the stage, twips
    SwfRect ink;                       // the drawn outlines relative to the block; zero when none
    bool HasInk() const { return ink.xMax > ink.xMin && ink.yMax > ink.yMin; }
};

// Lays the caption's text out on a stage of the given size (twips). Line
// breaks are CR LF, LF or CR; a tab counts as a blank.
CaptionLayout LayOutCaption(const Caption& caption, const std::u32string& text, FontFace& face, int32_t stageWidth,
                            int32_t stageHeight);

}  // namespace quillet
