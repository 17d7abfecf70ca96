#include "movie/SlideActions.h"

#include <algorithm>
#include <cstdio>

#include "model/ClickAction.h"
#include "model/SwfData.h"
#include "movie/MovieScripts.h"
#include "movie/ShowButtons.h"
#include "swf/SwfActions.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

std::string SlideLabel(int index) { return "slide_" + std::to_string(index); }

// A string inside single quotes of a script address.
std::string Quoted(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        if (c == '\'' || c == '\\') out += '\\';
        out += c;
    }
    return out + "'";
}

const char* YesNo(bool on) { return on ? "yes" : "no"; }

}  // namespace

std::string PopupUrl(const std::string& url, const PopupWindow& popup, int index) {
    char features[256];
    std::snprintf(features, sizeof features,
                  "width=%d,height=%d,left=%d,top=%d,resizable=%s,toolbar=%s,scrollbars=%s,directories=%s,"
                  "status=%s,location=%s,menubar=%s",
                  popup.width, popup.height, popup.x, popup.y, YesNo(popup.resizable), YesNo(popup.toolbar),
                  YesNo(popup.scrollbar), YesNo(popup.directory), YesNo(popup.status), YesNo(popup.location),
                  YesNo(popup.menubar));
    return "javascript:HG_Popup(" + Quoted(url) + "," + Quoted("sld_" + std::to_string(index)) + "," +
           Quoted(features) + ")";
}

SwfActionList BuildSlideClick(const SlideActionInput& in) {
    const ClickAction& a = *in.action;
    const int count = std::max(in.slideCount, 1);
    SwfActionList list;
    int jumpTo = 0;  // a slide to go to, 1-based
    switch (a.type) {
        case ClickAction::Type::GetUrl:
            if (a.popup && in.popup)
                list.Emplace<ActionGetURL>(PopupUrl(a.url, *in.popup, in.index), "");
            else
                list.Emplace<ActionGetURL>(a.url, a.target);
            break;
        case ClickAction::Type::LoadMovie: {
            SwfData::UrlAction load;
            load.action = 1;
            load.url = a.url;
            const bool window = a.target.rfind("_level", 0) != 0 && !a.target.empty() && a.target[0] == '_';
            load.target = window ? "_level0" : a.target;
            AppendUrlAction(list, load);
            break;
        }
        case ClickAction::Type::NextSlide: jumpTo = in.index % count + 1; break;
        case ClickAction::Type::PreviousSlide: jumpTo = in.index > 1 ? in.index - 1 : count; break;
        case ClickAction::Type::JumpToSlide: jumpTo = std::clamp(a.jumpTo, 1, count); break;
        case ClickAction::Type::FirstSlide: jumpTo = 1; break;
        case ClickAction::Type::LastSlide: jumpTo = count; break;
        case ClickAction::Type::Print:
            // Prints the frame shown, each frame of the movie at its bounds.
            list.Emplace<ActionGetURL>("print:#bframe", "_level0");
            break;
    }
    if (jumpTo > 0) list.Emplace<ActionGoToLabel>(SlideLabel(jumpTo));
    if (a.pauseAfter)
        AppendStop(list, in.controls);
    else if (jumpTo > 0)
        AppendPlay(list, in.controls);
    return list;
}

uint16_t WriteSlideClick(MovieContext& ctx, const SlideOnStage& slide, const SlideActionInput& in) {
    if (!in.action || !in.action->enable) return 0;
    // The hit area is the slide's picture (the whole stage for a blank slide).
    SwfRect area(slide.x, slide.x + slide.width, slide.y, slide.y + slide.height);
    if (slide.width <= 0 || slide.height <= 0) area = SwfRect(0, ctx.StageWidth(), 0, ctx.StageHeight());
    auto button = InvisibleButton(ctx, area, BuildSlideClick(in));
    const uint16_t buttonId = button->GetId();
    ctx.movie.AddTag(std::move(button));
    const uint16_t depth = ctx.NewDepth();
    auto place = PlaceObject2Tag::Place(depth, buttonId, SwfMatrix());
    place->name = "sld_" + std::to_string(in.index) + "_btn";
    ctx.movie.AddTag(std::move(place));
    return depth;
}

void WriteDisplayUrl(MovieContext& ctx, const SlideActionInput& in) {
    if (!in.action || !in.action->loadUrlOnDisplay) return;
    // if (!sld_N_shown) { sld_N_shown = 1; getURL(url, target); }
    const std::string shown = "sld_" + std::to_string(in.index) + "_shown";
    SwfActionList list;
    list.Emplace<ActionPush>().String(shown);
    list.Emplace<ActionGetVariable>();
    SwfActionList first;
    first.Emplace<ActionPush>().String(shown).Integer(1);
    first.Emplace<ActionSetVariable>();
    first.Emplace<ActionGetURL>(in.action->onDisplayLoadUrl, in.action->onDisplayLoadTarget);
    AppendIfElse(list, SwfActionList(), std::move(first));
    ctx.movie.AddTag(std::make_unique<DoActionTag>(std::move(list)));
}

}  // namespace quillet
