// Captions: pieces of text on a slide, each with its font, colour, position,
// timing and entrance effect, saved as `caption` elements inside `caption_data`.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillet {

class XmlNode;
class XmlWriter;

// The entrance effects. The saved value is a name, compared without regard to
// letter case; an unknown name behaves as None.
enum class CaptionEffectKind { None, FadeIn, FlyFromLeft, FlyFromRight, FlyFromTop, FlyFromBottom };

struct Caption {
    enum Kind : int32_t { Made = 0, Imported = 1 };  // written "qpj" / "glw"; other values ""
    enum HAlign : int32_t { Left = 0, HCenter = 1, Right = 2 };  // "left", "center", "right"
    enum VAlign : int32_t { Top = 0, VCenter = 1, Bottom = 2 };  // "top", "center", "bottom"

    // Fields in the order they are written. Defaults: a white 24-point Arial
    // line, opaque, centred at the bottom of the stage, entering with no
    // effect and staying until the next slide.
    int32_t kind = Made;            // `type`
    std::string importSource;       // `import_src`: the file an imported caption came from
    std::string text;               // `txt`
    std::string fontName = "Arial"; // `fnt_name`
    int32_t fontSize = 24;          // `font_size`, points
    bool italic = false;            // `font_italic`
    bool bold = false;              // `font_bold`
    uint32_t color = 0xFFFFFF;      // `color`, lowest byte red, then green, then blue
    int32_t alpha = 100;            // `alpha`, opacity in percent (0..100)
    int32_t x = 0;                  // `x`, pixels
    int32_t y = 0;                  // `y`, pixels
    int32_t hAlign = HCenter;       // `h_align`
    int32_t vAlign = Bottom;        // `v_align`
    bool alignToDoc = true;         // `align_to_doc`: align to the whole stage, not to (x, y)
    int32_t tracking = 0;           // `tracking`, letter spacing in pixels
    int32_t leading = 0;            // `leading`, extra line spacing in pixels
    uint32_t startTime = 0;         // `start_time`, milliseconds into the slide
    uint32_t duration = 3000;       // `duration`, milliseconds
    bool showTillNext = true;       // `show_till_next`: stay until the next slide
    std::string effect = "None";    // `effect`, kept as written

    // The effect this caption plays (case-insensitive; unknown gives None).
    CaptionEffectKind EffectKind() const;

    bool operator==(const Caption&) const = default;
};

// The names of the entrance effects in CaptionEffectKind order:
// "None", "Fade In", "Fly From Left", "Fly From Right", "Fly From Top", "Fly From Bottom".
const std::vector<std::string>& CaptionEffectNames();
CaptionEffectKind CaptionEffectFromName(const std::string& name);

// The packed `font` attribute that the reader also accepts:
// "FACE,SIZE[,bold][,italic]" - the face name, the point size, then optional
// flags in any order, any case ("Times New Roman,18,bold"). An empty face or a
// missing or non-numeric size keeps the caption's value; bold and italic are
// on exactly when named. Blanks around the parts are ignored.
std::string PackCaptionFont(const Caption& caption);
void UnpackCaptionFont(const std::string& packed, Caption& caption);

class CaptionList {
public:
    std::vector<Caption> items;

    bool empty() const { return items.empty(); }
    // "<caption_data>\n", one `<caption ... />` line per caption, "</caption_data>\n".
    void Write(XmlWriter& writer) const;
    // Appends one caption for every `caption` child of `caption_data`.
    void Read(const XmlNode& captionData);

    bool operator==(const CaptionList&) const = default;
};

// One `<caption type="..." ... />` line; one caption from a `caption` element.
void WriteCaption(XmlWriter& writer, const Caption& caption);
Caption ReadCaption(const XmlNode& element);

}  // namespace quillet
