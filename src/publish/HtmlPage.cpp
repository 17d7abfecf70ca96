#include "publish/HtmlPage.h"

#include <cstdio>

namespace quillet {

namespace {

// Parameter values of the optional settings, indexed by the setting's value
// (nothing for the default at index 0).
const char* const kScaleValue[] = {"", "noborder", "exactfit"};
const char* const kAlignValue[] = {"", "l", "r", "t", "b"};
const char* const kSalignValue[] = {"", "l", "r", "t", "b", "tl", "tr", "bl", "br"};
const char* const kWindowModeValue[] = {"", "opaque", "transparent"};

template <size_t N>
const char* optionalValue(const char* const (&table)[N], int value) {
    return (value > 0 && static_cast<size_t>(value) < N) ? table[value] : nullptr;
}

}  // namespace

std::string MakeHtmlPage(const HtmlSettings& s, const PageAddresses& addresses) {
    // The page text was never passed through a formatter, so percent mode
    // carries a doubled percent sign after each number.
    const char* unit = s.dimensionType == HtmlSettings::Percent ? "%%" : "";
    std::string width = std::to_string(s.width) + unit;
    std::string height = std::to_string(s.height) + unit;
    const char* quality = htmlQualityKeyword(s.quality);
    const char* scale = optionalValue(kScaleValue, s.scale);
    const char* align = optionalValue(kAlignValue, s.htmlAlign);
    const char* salign = optionalValue(kSalignValue, s.flashAlign);
    const char* wmode = optionalValue(kWindowModeValue, s.windowMode);

    char colour[8];
    std::snprintf(colour, sizeof colour, "#%02x%02x%02x", s.bgcolor & 0xFF, (s.bgcolor >> 8) & 0xFF,
                  (s.bgcolor >> 16) & 0xFF);

    std::string p;
    p += "<HTML>\n<HEAD>\n<SCRIPT language=\"JavaScript\">\n";
    p += "function HG_Popup(theURL, winName, winFeatures) {newWin=window.open(theURL, winName, winFeatures); }\n";
    p += "</SCRIPT>\n<TITLE></TITLE>\n</HEAD>\n";
    p += "<BODY bgcolor=\"" + std::string(colour) + "\">\n";

    p += "<OBJECT classid=\"clsid:D27CDB6E-AE6D-11cf-96B8-444553540000\" codebase=\"" +
         addresses.playerDownload + "#version=5,0,0,0\" ";
    p += "WIDTH=\"" + width + "\" HEIGHT=\"" + height + "\">\n";
    p += "<PARAM NAME=movie VALUE=\"" + s.swf + "\">\n";
    if (!s.autoPlay) p += "<PARAM NAME=play VALUE=false>\n";
    if (!s.loop) p += "<PARAM NAME=loop VALUE=false>\n";
    if (!s.displayMenu) p += "<PARAM NAME=menu VALUE=false>\n";
    p += "<PARAM NAME=quality VALUE=\"" + std::string(quality) + "\">\n";
    if (scale) p += "<PARAM NAME=scale VALUE=" + std::string(scale) + ">\n";
    if (align) p += "<PARAM NAME=align VALUE=" + std::string(align) + ">\n";
    if (salign) p += "<PARAM NAME=salign VALUE=" + std::string(salign) + ">\n";
    if (wmode) p += "<PARAM NAME=wmode VALUE=" + std::string(wmode) + ">\n";
    // The OBJECT says false where the EMBED says true for the same setting;
    // pages have always been written so.
    if (s.deviceFont) p += "<PARAM NAME=devicefont VALUE=false>\n";

    p += "<EMBED src=\"" + s.swf + "\"";
    if (!s.autoPlay) p += " play=false";
    if (!s.loop) p += " loop=false";
    if (!s.displayMenu) p += " menu=false";
    p += " quality=\"" + std::string(quality) + "\"";
    if (scale) p += " scale=" + std::string(scale);
    if (align) p += " align=" + std::string(align);
    if (salign) p += " salign=" + std::string(salign);
    if (wmode) p += " wmode=" + std::string(wmode);
    if (s.deviceFont) p += " devicefont=true";
    p += " WIDTH=\"" + width + "\" HEIGHT=\"" + height + "\" TYPE=\"application/x-shockwave-flash\"";
    p += " PLUGINSPAGE=\"" + addresses.pluginPage + "?P1_Prod_Version=ShockwaveFlash\">\n";
    p += "</EMBED>\n</OBJECT>\n";
    p += "</BODY>\n</HTML>";
    return p;
}

}  // namespace quillet
