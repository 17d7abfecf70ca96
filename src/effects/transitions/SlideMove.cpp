#include "effects/transitions/SlideMove.h"

#include "effects/SlideRender.h"
#include "effects/transitions/SlidePlacement.h"

namespace quillet {

namespace {

// The offset and scale fields, then the "Fade Out" box (a check box needs no
// separate label). Only the scale labels differ between the two classes.
#define QUILLET_SLIDE_MOVE_OPTIONS(scale)                                                                      \
    {.kind = OptionKind::Integer, .attribute = "final_x", .label = "Delta X:", .labelId = OptionLabelId(0),    \
     .controlId = OptionControlId(0)},                                                                        \
    {.kind = OptionKind::Integer, .attribute = "final_y", .label = "Delta Y:", .labelId = OptionLabelId(1),    \
     .controlId = OptionControlId(1)},                                                                        \
    {.kind = OptionKind::Real, .attribute = "final_sx", .label = scale " Scale X:", .labelId = OptionLabelId(2), \
     .controlId = OptionControlId(2), .decimals = 2},                                                         \
    {.kind = OptionKind::Real, .attribute = "final_sy", .label = scale " Scale Y:", .labelId = OptionLabelId(3), \
     .controlId = OptionControlId(3), .decimals = 2},                                                         \
    {.kind = OptionKind::Bool, .attribute = "fade_out", .label = "Fade Out", .defaultValue = 1,                \
     .controlId = OptionLabelId(4)}

constinit const OptionSpec kStartOptions[] = {QUILLET_SLIDE_MOVE_OPTIONS("Start")};
constinit const OptionSpec kEndOptions[] = {QUILLET_SLIDE_MOVE_OPTIONS("End")};

#undef QUILLET_SLIDE_MOVE_OPTIONS

}  // namespace

SlideMoveTransition::SlideMoveTransition(std::string name, bool movesIn)
    : Transition(std::move(name), movesIn ? OptionTable(kStartOptions) : OptionTable(kEndOptions)), movesIn_(movesIn) {}

bool SlideMoveTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    // The placement `t` of the way from the slide's place (0) to the far end
    // (1): the scales apply in the slide's own frame, about its placement
    // point, so with no offset a slide grows from or shrinks into its own
    // top-left corner; a zoomed outgoing slide keeps its zoom relative.
    const double sx = finalSX(), sy = finalSY(), fx = finalX(), fy = finalY();
    auto along = [&](const SlidePlacement& rest, double t) {
        return rest.ScaledWithin(1 + (sx - 1) * t, 1 + (sy - 1) * t).Moved(fx * t, fy * t);
    };
    // Slide Out To's copy is gone on the last frame, so the incoming slide
    // shows whole whatever the far end's scale and the fade.
    MoveOneSlide(
        incoming, outgoing, movesIn_, n, ctx,
        [&](uint16_t depth, const SlidePlacement& rest, double p) {
            if (movesIn_) Reposition(depth, along(rest, 1 - p), ctx);
            else Reposition(depth, along(rest, p), ctx, fadeOut() ? std::optional<double>(1 - p) : std::nullopt);
        },
        [&](double p) {
            if (movesIn_ && fadeOut() && ShowsPicture(outgoing)) SetOpacity(outgoing->depth, 1 - p, ctx);
        });
    return true;
}

}  // namespace quillet
