#include "movie/ShowButtons.h"

#include "movie/MovieScripts.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

// The rectangle is only the button's hit area, so what lies below shows
// through and the pointer turns into a hand over it.
std::unique_ptr<DefineButton2Tag> InvisibleButton(MovieContext& ctx, const SwfRect& area, SwfActionList&& onRelease) {
    const uint16_t shapeId = ctx.NewCharacterId();
    ctx.movie.AddTag(DefineShapeTag::Rectangle(shapeId, area, SwfFillStyle::MakeSolid(SwfColor::FromRgb(0))));
    auto button = std::make_unique<DefineButton2Tag>(ctx.NewCharacterId());
    SwfButtonRecord hit;
    hit.states = SwfButtonRecord::HitTest;
    hit.characterId = shapeId;
    button->records.push_back(hit);
    SwfButtonCondAction release;
    release.actions = std::move(onRelease);
    button->actions.push_back(std::move(release));
    return button;
}

namespace {

std::unique_ptr<DefineButton2Tag> StageButton(MovieContext& ctx, SwfActionList&& onRelease) {
    return InvisibleButton(ctx, SwfRect(0, ctx.StageWidth(), 0, ctx.StageHeight()), std::move(onRelease));
}

}  // namespace

void WriteStartGate(MovieContext& ctx, bool controls) {
    auto button = StageButton(ctx, BuildGateClick(controls));
    const uint16_t buttonId = button->GetId();
    ctx.movie.AddTag(std::move(button));
    auto gate = std::make_unique<DefineSpriteTag>(ctx.NewCharacterId());
    gate->Add(PlaceObject2Tag::Place(1, buttonId, SwfMatrix()));
    gate->Add(std::make_unique<DoActionTag>(BuildGateScript(controls)));
    gate->Add(std::make_unique<ShowFrameTag>());
    gate->Add(std::make_unique<RemoveObject2Tag>(1));
    SwfActionList stay;
    stay.Emplace<ActionStop>();
    gate->Add(std::make_unique<DoActionTag>(std::move(stay)));
    gate->Add(std::make_unique<ShowFrameTag>());
    const uint16_t gateId = gate->GetId();
    ctx.movie.AddTag(std::move(gate));
    auto place = PlaceObject2Tag::Place(ctx.NewDepth(), gateId, SwfMatrix());
    if (controls) {
        // The play control starts the show without a click on the gate: it
        // marks the show started, and the gate then opens by itself.
        SwfClipAction open;
        open.events = SwfClipAction::kEnterFrame;
        open.actions = BuildGateOpenCheck();
        place->clipActions.push_back(std::move(open));
    }
    ctx.movie.AddTag(std::move(place));
}

void WriteClickButton(MovieContext& ctx, const SwfData::UrlAction& action) {
    SwfActionList onRelease;
    AppendUrlAction(onRelease, action);
    auto button = StageButton(ctx, std::move(onRelease));
    const uint16_t buttonId = button->GetId();
    ctx.movie.AddTag(std::move(button));
    ctx.movie.AddTag(PlaceObject2Tag::Place(ctx.NewDepth(), buttonId, SwfMatrix()));
}

}  // namespace quillet
