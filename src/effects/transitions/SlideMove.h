// The options shared by "Slide In From" and "Slide Out To": an offset and a
// scale for the moving slide's far end (where it comes from, or where it
// goes), and whether the outgoing slide fades meanwhile.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class SlideMoveTransition : public Transition {
public:
    int32_t finalX() const { return options().Int(0); }    // `final_x`, twips
    int32_t finalY() const { return options().Int(1); }    // `final_y`, twips
    double finalSX() const { return options().Value(2); }  // `final_sx`, scale factor
    double finalSY() const { return options().Value(3); }  // `final_sy`
    bool fadeOut() const { return options().Bool(4); }     // `fade_out`

    // Slide In From moves the incoming slide from the far end to its place;
    // Slide Out To moves a copy of the outgoing slide, above the incoming one,
    // from its place to the far end.
    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;

protected:
    // "Slide In From" names its scales "Start Scale X:"..., "Slide Out To" "End Scale X:"...
    SlideMoveTransition(std::string name, bool movesIn);

private:
    bool movesIn_;
};

}  // namespace quillet
