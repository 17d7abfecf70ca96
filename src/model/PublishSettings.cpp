#include "model/PublishSettings.h"

#include "model/PathResolve.h"
#include "settings/AppSettings.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace {

const char* const kDimension[] = {"matchmovie", "pixels", "percent"};
const char* const kQuality[] = {"low", "autolow", "autohigh", "medium", "high", "best"};
const char* const kWindowMode[] = {"window", "opaque", "transparent"};
const char* const kHtmlAlign[] = {"default", "left", "right", "top", "bottom"};
const char* const kScale[] = {"showall", "noborder", "exactfit"};
const char* const kFlashAlign[] = {"default", "left",    "right",      "top",        "bottom",
                                   "topleft", "topright", "bottomleft", "bottomright"};

template <size_t N>
const char* keyword(const char* const (&table)[N], int value) {
    return (value >= 0 && static_cast<size_t>(value) < N) ? table[value] : "";
}

template <size_t N>
void readKeyword(const XmlNode& e, const char* name, const char* const (&table)[N], int& out) {
    auto text = e.string(name);
    if (!text) return;
    for (size_t i = 0; i < N; ++i)
        if (*text == table[i]) out = static_cast<int>(i);
}

void writeTargetStart(XmlWriter& w, const char* element, bool publish, const std::string& filename) {
    w.write("<");
    w.write(element);
    w.attribute("publish", publish);
    w.attribute("filename", filename);
}

void readTarget(const XmlNode& e, PublishTarget& t) {
    e.readBool("publish", t.publish);
    e.readString("filename", t.filename);
}

}  // namespace

const char* htmlDimensionKeyword(int v) { return keyword(kDimension, v); }
const char* htmlQualityKeyword(int v) { return keyword(kQuality, v); }
const char* htmlWindowModeKeyword(int v) { return keyword(kWindowMode, v); }
const char* htmlAlignKeyword(int v) { return keyword(kHtmlAlign, v); }
const char* htmlScaleKeyword(int v) { return keyword(kScale, v); }
const char* htmlFlashAlignKeyword(int v) { return keyword(kFlashAlign, v); }

void HtmlSettings::Write(XmlWriter& w) const {
    w.write("<html_swf");
    w.attribute("swf", swf);
    w.attribute("orig_width", origWidth);
    w.attribute("orig_height", origHeight);
    w.attribute("width", width);
    w.attribute("height", height);
    w.attribute("bgcolor", bgcolor);
    w.attribute("auto_play", autoPlay);
    w.attribute("loop", loop);
    w.attribute("display_menu", displayMenu);
    w.attribute("device_font", deviceFont);
    w.attribute("popup_function", popupFunction);
    w.attributeRaw("dimension_type", htmlDimensionKeyword(dimensionType));
    w.attributeRaw("quality", htmlQualityKeyword(quality));
    w.attributeRaw("window_mode", htmlWindowModeKeyword(windowMode));
    w.attributeRaw("html_align", htmlAlignKeyword(htmlAlign));
    w.attributeRaw("scale", htmlScaleKeyword(scale));
    w.attributeRaw("flash_align", htmlFlashAlignKeyword(flashAlign));
    w.write(" />\n");
}

void HtmlSettings::Read(const XmlNode& e) {
    e.readString("swf", swf);
    e.readInt("orig_width", origWidth);
    e.readInt("orig_height", origHeight);
    e.readInt("width", width);
    e.readInt("height", height);
    e.readUnsigned("bgcolor", bgcolor);
    e.readBool("auto_play", autoPlay);
    e.readBool("loop", loop);
    e.readBool("display_menu", displayMenu);
    e.readBool("device_font", deviceFont);
    e.readBool("popup_function", popupFunction);
    readKeyword(e, "dimension_type", kDimension, dimensionType);
    readKeyword(e, "quality", kQuality, quality);
    readKeyword(e, "window_mode", kWindowMode, windowMode);
    readKeyword(e, "html_align", kHtmlAlign, htmlAlign);
    readKeyword(e, "scale", kScale, scale);
    readKeyword(e, "flash_align", kFlashAlign, flashAlign);
}

void ProjectorSettings::Write(XmlWriter& w) const {
    w.write("<swf_projector");
    w.attribute("fullscreen", fullscreen);
    w.attribute("allowscale", allowscale);
    w.attribute("showmenu", showmenu);
    w.write(" />\n");
}

void ProjectorSettings::Read(const XmlNode& e) {
    e.readBool("fullscreen", fullscreen);
    e.readBool("allowscale", allowscale);
    e.readBool("showmenu", showmenu);
}

PublishSettings::PublishSettings() { reset(); }

void PublishSettings::reset() {
    output = AppSettings::current().defaultPublishPath;
    useDefaultBaseFilename = true;
    for (PublishTarget* t : {&swf, &flv, &html, &macProjector, &winProjector, &quicktime, &screensaver, &rufflePage})
        *t = PublishTarget{};
    swf.publish = true;
    html.publish = true;
    publishInstaller = false;
    replaceInstaller = true;
    htmlSettings = HtmlSettings{};
    macProjectorSettings = ProjectorSettings{};
    winProjectorSettings = ProjectorSettings{};
    screensaverMoviePath.clear();
    setBaseFilename("Untitled");
}

void PublishSettings::setBaseFilename(const std::string& base) {
    defaultBaseFilename = base;
    swf.filename = base + ".swf";
    flv.filename = base + ".flv";
    html.filename = base + ".html";
    macProjector.filename = base + ".hqx";
    winProjector.filename = base + ".exe";
    quicktime.filename = base + ".mov";
    screensaver.filename = base + ".scr";
    installerFilename = base + "SS.exe";
    rufflePage.filename = base + "-ruffle.html";
    htmlSettings.swf = swf.filename;
}

bool PublishSettings::anyTarget() const {
    return swf.publish || flv.publish || html.publish || macProjector.publish || winProjector.publish ||
           quicktime.publish || screensaver.publish || publishInstaller || rufflePage.publish;
}

void PublishSettings::Write(XmlWriter& w) const {
    w.write("<publish_data");
    w.attribute("output", output);
    w.attribute("use_default_base_filename", useDefaultBaseFilename);
    w.attribute("default_base_filename", defaultBaseFilename);
    w.write(" >\n");

    writeTargetStart(w, "swf", swf.publish, swf.filename);
    w.write(" />\n");
    // The FLV flag is written from the movie's flag: a saved project always
    // reloads with FLV publishing equal to movie publishing.
    writeTargetStart(w, "flv", swf.publish, flv.filename);
    w.write(" />\n");

    writeTargetStart(w, "html", html.publish, html.filename);
    w.write(">\n");
    htmlSettings.Write(w);
    w.write("</html>\n");

    writeTargetStart(w, "mac_projector", macProjector.publish, macProjector.filename);
    w.write(">\n");
    macProjectorSettings.Write(w);
    w.write("</mac_projector>\n");

    writeTargetStart(w, "win_projector", winProjector.publish, winProjector.filename);
    w.write(">\n");
    winProjectorSettings.Write(w);
    w.write("</win_projector>\n");

    writeTargetStart(w, "quicktime_mov", quicktime.publish, quicktime.filename);
    w.write(">\n<quicktime_swf />\n</quicktime_mov>\n");

    writeTargetStart(w, "screensaver", screensaver.publish, screensaver.filename);
    w.attribute("publish_installer", publishInstaller);
    w.attribute("installer_filename", installerFilename);
    w.write(">\n<screensaver_swf />\n</screensaver>\n");

    // Only when on, so projects without it save as they always have.
    if (rufflePage.publish) {
        writeTargetStart(w, "ruffle_page", rufflePage.publish, rufflePage.filename);
        w.write(" />\n");
    }

    w.write("</publish_data>\n");
}

void PublishSettings::Read(const XmlNode& e, const std::string& projectFolder) {
    if (e.readString("output", output)) output = resolveAgainst(projectFolder, output);
    e.readBool("use_default_base_filename", useDefaultBaseFilename);
    e.readString("default_base_filename", defaultBaseFilename);
    // Saved only when switched on: otherwise its name follows the base name.
    rufflePage.filename = defaultBaseFilename + "-ruffle.html";
    for (const XmlNode& c : e.children()) {
        std::string name = c.name();
        if (name == "swf") {
            readTarget(c, swf);
        } else if (name == "flv") {
            readTarget(c, flv);
        } else if (name == "html") {
            readTarget(c, html);
            if (XmlNode s = c.child("html_swf")) htmlSettings.Read(s);
        } else if (name == "mac_projector") {
            readTarget(c, macProjector);
            if (XmlNode s = c.child("swf_projector")) macProjectorSettings.Read(s);
        } else if (name == "win_projector") {
            readTarget(c, winProjector);
            if (XmlNode s = c.child("swf_projector")) winProjectorSettings.Read(s);
        } else if (name == "quicktime_mov") {
            readTarget(c, quicktime);
        } else if (name == "screensaver") {
            readTarget(c, screensaver);
            c.readBool("publish_installer", publishInstaller);
            c.readString("installer_filename", installerFilename);
        } else if (name == "ruffle_page") {
            readTarget(c, rufflePage);
        }
    }
}

}  // namespace quillet
