#include "model/SwfData.h"

#include "model/PathResolve.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace {

const char* const kStartKeywords[] = {"play_automatically", "play_after_pause", "stop_on_first_frame"};
const char* const kPreloadTypeKeywords[] = {"simple", "smart"};
const char* const kLoopKeywords[] = {"none", "times", "forever"};
const char* const kUrlActionKeywords[] = {"get_url", "load_movie", "unload_movie"};

template <size_t N>
const char* keyword(const char* const (&table)[N], int value, size_t limit = N) {
    return (value >= 0 && static_cast<size_t>(value) < limit) ? table[value] : nullptr;
}

template <typename T, size_t N>
void readKeyword(const XmlNode& e, const char* name, const char* const (&table)[N], T& out, size_t limit = N) {
    auto text = e.string(name);
    if (!text) return;
    for (size_t i = 0; i < limit; ++i)
        if (*text == table[i]) out = static_cast<T>(i);
}

// The click action knows get_url and load_movie; the end action also unload_movie.
void writeUrlAction(XmlWriter& w, const char* element, const SwfData::UrlAction& a, size_t actions) {
    w.write("<");
    w.write(element);
    w.attribute("enable", a.enable);
    if (const char* k = keyword(kUrlActionKeywords, a.action, actions)) w.attributeRaw("action", k);
    w.attribute("url", a.url);
    w.attribute("target", a.target);
    w.write(" />\n");
}

void readUrlAction(const XmlNode& e, SwfData::UrlAction& a, size_t actions) {
    e.readBool("enable", a.enable);
    readKeyword(e, "action", kUrlActionKeywords, a.action, actions);
    e.readString("url", a.url);
    e.readString("target", a.target);
}

}  // namespace

void SwfData::Write(XmlWriter& w) const {
    w.write("<swf_data");
    if (const char* k = keyword(kStartKeywords, static_cast<int>(movieStartAction)))
        w.attributeRaw("movie_start_action", k);
    w.attribute("pause_time", pauseTime);
    w.attribute("preload", preload);
    w.attributeRaw("preload_creator", "qpj");
    w.attribute("preload_import_src", preloadImportSrc);
    w.attribute("preload_amount", preloadAmount);
    w.attribute("preload_text", preloadText);
    w.attribute("preload_text_color", preloadTextColor);
    w.attribute("preload_font_name", preloadFontName);
    // The font record is binary (it holds NUL bytes and any other byte), so
    // it is written as its 28 bytes in hexadecimal: raw bytes inside an
    // attribute would make the file unreadable as XML.
    w.attributeRaw("preload_font", preloadFont.toHex());
    if (const char* k = keyword(kPreloadTypeKeywords, static_cast<int>(preloadType)))
        w.attributeRaw("preload_type", k);
    if (const char* k = keyword(kLoopKeywords, static_cast<int>(loop))) w.attributeRaw("loop", k);
    w.attribute("loop_count", loopCount);
    w.write(">\n");
    writeUrlAction(w, "mouse_click_action", mouseClickAction, 2);
    writeUrlAction(w, "movie_end_action", movieEndAction, 3);
    w.write("</swf_data>\n");
}

void SwfData::Read(const XmlNode& e, const std::string& baseFolder) {
    readKeyword(e, "movie_start_action", kStartKeywords, movieStartAction);
    e.readInt("pause_time", pauseTime);
    e.readBool("preload", preload);
    if (e.readString("preload_import_src", preloadImportSrc))
        preloadImportSrc = resolveAgainst(baseFolder, preloadImportSrc);
    e.readInt("preload_amount", preloadAmount);
    e.readString("preload_text", preloadText);
    e.readUnsigned("preload_text_color", preloadTextColor);
    e.readString("font_name", preloadFontName);  // not preload_font_name: kept as the format has it
    if (auto hex = e.string("preload_font"))
        if (auto font = FontRecord::fromHex(*hex)) preloadFont = *font;
    readKeyword(e, "loop", kLoopKeywords, loop);
    e.readInt("loop_count", loopCount);
    for (const XmlNode& c : e.children()) {
        std::string name = c.name();
        if (name == "mouse_click_action")
            readUrlAction(c, mouseClickAction, 2);
        else if (name == "movie_end_action")
            readUrlAction(c, movieEndAction, 3);
    }
}

}  // namespace quillet
