// The HTML page that embeds a published movie for both browser plug-in
// models at once (an ActiveX OBJECT with an EMBED inside it), carrying the
// script function that the slides' popup click actions call.
#pragma once

#include <string>

#include "model/PublishSettings.h"

namespace quillet {

struct PageAddresses {
    std::string playerDownload;  // the OBJECT's codebase, before "#version=5,0,0,0"
    std::string pluginPage;      // PLUGINSPAGE, before "?P1_Prod_Version=ShockwaveFlash"
};

// The page's text. Widths and heights are written as the settings hold them.
std::string MakeHtmlPage(const HtmlSettings& settings, const PageAddresses& addresses);

}  // namespace quillet
