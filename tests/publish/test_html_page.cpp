// Whole pages, byte for byte, for the settings that change the text.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "publish/HtmlPage.h"

namespace quillet {
namespace {

const PageAddresses kAddresses{"http://example.com/player.cab", "http://example.com/get"};

const char* const kHead =
    "<HTML>\n<HEAD>\n<SCRIPT language=\"JavaScript\">\n"
    "function HG_Popup(theURL, winName, winFeatures) {newWin=window.open(theURL, winName, winFeatures); }\n"
    "</SCRIPT>\n<TITLE></TITLE>\n</HEAD>\n";

// The parts every page shares, as macros so that each page below reads as one literal.
#define PAGE_OBJECT \
    "<OBJECT classid=\"clsid:D27CDB6E-AE6D-11cf-96B8-444553540000\" codebase=\"http://example.com/player.cab#version=5,0,0,0\" "
#define PAGE_EMBED_END \
    "TYPE=\"application/x-shockwave-flash\" PLUGINSPAGE=\"http://example.com/get?P1_Prod_Version=ShockwaveFlash\">\n" \
    "</EMBED>\n</OBJECT>\n</BODY>\n</HTML>"

struct PageCase {
    const char* name;
    std::function<void(HtmlSettings&)> change;
    const char* body;  // everything after the head
};

TEST(HtmlPage, WholePages) {
    const PageCase cases[] = {
        {"defaults", [](HtmlSettings&) {},
         "<BODY bgcolor=\"#ffffff\">\n"
         PAGE_OBJECT "WIDTH=\"320\" HEIGHT=\"240\">\n"
         "<PARAM NAME=movie VALUE=\"Untitled.swf\">\n"
         "<PARAM NAME=quality VALUE=\"high\">\n"
         "<EMBED src=\"Untitled.swf\" quality=\"high\" WIDTH=\"320\" HEIGHT=\"240\" "
         PAGE_EMBED_END},
        {"percent 100 by 100, colour bytes in page order",
         [](HtmlSettings& s) {
             s.dimensionType = HtmlSettings::Percent;
             s.width = s.height = 100;
             s.bgcolor = 0x00336699;
             s.swf = "my show.swf";
             s.quality = HtmlSettings::AutoLow;
         },
         "<BODY bgcolor=\"#996633\">\n"
         PAGE_OBJECT "WIDTH=\"100%%\" HEIGHT=\"100%%\">\n"
         "<PARAM NAME=movie VALUE=\"my show.swf\">\n"
         "<PARAM NAME=quality VALUE=\"autolow\">\n"
         "<EMBED src=\"my show.swf\" quality=\"autolow\" WIDTH=\"100%%\" HEIGHT=\"100%%\" "
         PAGE_EMBED_END},
        {"every optional parameter",
         [](HtmlSettings& s) {
             s.autoPlay = s.loop = s.displayMenu = false;
             s.deviceFont = true;
             s.dimensionType = HtmlSettings::Pixels;
             s.width = 800;
             s.height = 600;
             s.bgcolor = 0x000000FF;
             s.quality = HtmlSettings::Best;
             s.scale = HtmlSettings::ExactFit;
             s.htmlAlign = HtmlSettings::HBottom;
             s.flashAlign = HtmlSettings::FBottomRight;
             s.windowMode = HtmlSettings::Transparent;
         },
         "<BODY bgcolor=\"#ff0000\">\n"
         PAGE_OBJECT "WIDTH=\"800\" HEIGHT=\"600\">\n"
         "<PARAM NAME=movie VALUE=\"Untitled.swf\">\n"
         "<PARAM NAME=play VALUE=false>\n<PARAM NAME=loop VALUE=false>\n<PARAM NAME=menu VALUE=false>\n"
         "<PARAM NAME=quality VALUE=\"best\">\n"
         "<PARAM NAME=scale VALUE=exactfit>\n<PARAM NAME=align VALUE=b>\n<PARAM NAME=salign VALUE=br>\n"
         "<PARAM NAME=wmode VALUE=transparent>\n<PARAM NAME=devicefont VALUE=false>\n"
         "<EMBED src=\"Untitled.swf\" play=false loop=false menu=false quality=\"best\" scale=exactfit "
         "align=b salign=br wmode=transparent devicefont=true WIDTH=\"800\" HEIGHT=\"600\" "
         PAGE_EMBED_END},
        {"one of each in the middle of its list",
         [](HtmlSettings& s) {
             s.loop = false;
             s.quality = HtmlSettings::Low;
             s.scale = HtmlSettings::NoBorder;
             s.htmlAlign = HtmlSettings::HLeft;
             s.flashAlign = HtmlSettings::FTopLeft;
             s.windowMode = HtmlSettings::Opaque;
         },
         "<BODY bgcolor=\"#ffffff\">\n"
         PAGE_OBJECT "WIDTH=\"320\" HEIGHT=\"240\">\n"
         "<PARAM NAME=movie VALUE=\"Untitled.swf\">\n"
         "<PARAM NAME=loop VALUE=false>\n"
         "<PARAM NAME=quality VALUE=\"low\">\n"
         "<PARAM NAME=scale VALUE=noborder>\n<PARAM NAME=align VALUE=l>\n<PARAM NAME=salign VALUE=tl>\n"
         "<PARAM NAME=wmode VALUE=opaque>\n"
         "<EMBED src=\"Untitled.swf\" loop=false quality=\"low\" scale=noborder align=l salign=tl wmode=opaque "
         "WIDTH=\"320\" HEIGHT=\"240\" " PAGE_EMBED_END},
    };
    for (const PageCase& c : cases) {
        HtmlSettings settings;
        c.change(settings);
        EXPECT_EQ(MakeHtmlPage(settings, kAddresses), std::string(kHead) + c.body) << c.name;
    }
}

}  // namespace
}  // namespace quillet
