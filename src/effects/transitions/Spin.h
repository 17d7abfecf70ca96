// "Spin In" and "Spin Out": a slide turns while it grows from nothing to full
// size (the incoming one) or shrinks from full size to nothing (the outgoing
// one). They share their options: how many turns, and which way.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class SpinTransition : public Transition {
public:
    float spins() const { return options().Float(0); }     // `spins`, whole and part turns
    bool clockwise() const { return !options().Bool(1); }  // `clockwise`: the box shows the opposite

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;

protected:
    SpinTransition(std::string name, bool growsIn);

private:
    bool growsIn_;
};

}  // namespace quillet
