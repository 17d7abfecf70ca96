#include "model/ClickAction.h"

#include "options/NameCompare.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace {
const char* const kTypeKeywords[] = {"get_url",       "load_movie", "next_slide", "previous_slide",
                                     "jump_to_slide", "first_slide", "last_slide", "print"};
}

const char* clickActionKeyword(ClickAction::Type type) {
    int i = static_cast<int>(type);
    return (i >= 0 && i < 8) ? kTypeKeywords[i] : "";
}

bool clickActionFromKeyword(const std::string& keyword, ClickAction::Type& out) {
    for (int i = 0; i < 8; ++i) {
        if (EqualsNoCase(keyword, kTypeKeywords[i])) {
            out = static_cast<ClickAction::Type>(i);
            return true;
        }
    }
    return false;
}

void ClickAction::write(XmlWriter& w) const {
    w.write("<click_actions");
    w.attribute("enable", enable);
    w.attributeRaw("type", clickActionKeyword(type));
    w.attribute("url", url);
    w.attribute("target", target);
    w.attribute("jump_to", jumpTo);
    w.attribute("popup", popup);
    w.attribute("pause_after", pauseAfter);
    w.attribute("load_url_on_display", loadUrlOnDisplay);
    w.attribute("on_display_load_url", onDisplayLoadUrl);
    w.attribute("on_display_load_target", onDisplayLoadTarget);
    w.write(" />\n");
}

void ClickAction::read(const XmlNode& e) {
    e.readBool("enable", enable);
    if (auto keyword = e.string("type")) clickActionFromKeyword(*keyword, type);
    e.readString("url", url);
    e.readString("target", target);
    e.readInt("jump_to", jumpTo);
    e.readBool("popup", popup);
    e.readBool("pause_after", pauseAfter);
    e.readBool("load_url_on_display", loadUrlOnDisplay);
    e.readString("on_display_load_url", onDisplayLoadUrl);
    e.readString("on_display_load_target", onDisplayLoadTarget);
}

void PopupWindow::write(XmlWriter& w) const {
    w.write("<popup_data");
    w.attribute("width", width);
    w.attribute("height", height);
    w.attribute("x", x);
    w.attribute("y", y);
    w.attribute("resizable", resizable);
    w.attribute("toolbar", toolbar);
    w.attribute("scrollbar", scrollbar);
    w.attribute("directory", directory);
    w.attribute("status", status);
    w.attribute("location", location);
    w.attribute("menubar", menubar);
    w.write(" />\n");
}

void PopupWindow::read(const XmlNode& e) {
    e.readInt("width", width);
    e.readInt("height", height);
    e.readInt("x", x);
    e.readInt("y", y);
    e.readBool("resizable", resizable);
    e.readBool("toolbar", toolbar);
    e.readBool("scrollbar", scrollbar);
    e.readBool("directory", directory);
    e.readBool("status", status);
    e.readBool("location", location);
    e.readBool("menubar", menubar);
}

}  // namespace quillet
