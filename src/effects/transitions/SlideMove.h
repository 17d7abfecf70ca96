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

protected:
    // "Slide In From" names its scales "Start Scale X:"..., "Slide Out To" "End Scale X:"...
    SlideMoveTransition(std::string name, bool startScales);
};

}  // namespace quillet
