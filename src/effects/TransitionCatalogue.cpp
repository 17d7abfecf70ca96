// The transitions offered to the user. Add keeps the registry sorted by name,
// so the order here only decides among equal names.
#include "effects/Transition.h"
#include "effects/transitions/BlindsIn.h"
#include "effects/transitions/BlindsOut.h"
#include "effects/transitions/BlurIn.h"
#include "effects/transitions/BlurOut.h"
#include "effects/transitions/Checker.h"
#include "effects/transitions/CircularSweepOn.h"
#include "effects/transitions/ColorFade.h"
#include "effects/transitions/CrossFade.h"
#include "effects/transitions/CrossScale.h"
#include "effects/transitions/Curtain.h"
#include "effects/transitions/FadeIn.h"
#include "effects/transitions/FadeOut.h"
#include "effects/transitions/PageFlip.h"
#include "effects/transitions/Push.h"
#include "effects/transitions/SlideClose.h"
#include "effects/transitions/SlideInFrom.h"
#include "effects/transitions/SlideOpen.h"
#include "effects/transitions/SlideOutTo.h"
#include "effects/transitions/SlideTriangleOpen.h"
#include "effects/transitions/SlidingBars.h"
#include "effects/transitions/SpinIn.h"
#include "effects/transitions/SpinOut.h"
#include "effects/transitions/WipeOff.h"
#include "effects/transitions/WipeOn.h"
#include "effects/transitions/WipeOn2.h"
#include "effects/transitions/Window.h"
#include "effects/transitions/ZoomIn.h"
#include "effects/transitions/ZoomOut.h"

namespace quillet {

void TransitionRegistry::Populate() {
    Add(std::make_unique<Transition>());
    Add(std::make_unique<SlidingBarsTransition>());
    Add(std::make_unique<BlindsInTransition>());
    Add(std::make_unique<BlindsOutTransition>());
    Add(std::make_unique<BlurInTransition>());
    Add(std::make_unique<BlurOutTransition>());
    Add(std::make_unique<CheckerTransition>());
    Add(std::make_unique<CircularSweepOnTransition>());
    Add(std::make_unique<ColorFadeTransition>());
    Add(std::make_unique<CrossFadeTransition>());
    Add(std::make_unique<CrossScaleTransition>());
    Add(std::make_unique<CurtainTransition>());
    Add(std::make_unique<FadeInTransition>());
    Add(std::make_unique<FadeOutTransition>());
    Add(std::make_unique<PageFlipTransition>());
    Add(std::make_unique<PushTransition>());
    Add(std::make_unique<SpinInTransition>());
    Add(std::make_unique<SpinOutTransition>());
    Add(std::make_unique<SlideCloseTransition>());
    Add(std::make_unique<SlideInFromTransition>());
    Add(std::make_unique<SlideOpenTransition>());
    Add(std::make_unique<SlideOutToTransition>());
    Add(std::make_unique<SlideTriangleOpenTransition>());
    Add(std::make_unique<WindowTransition>());
    Add(std::make_unique<WipeOnTransition>());
    Add(std::make_unique<WipeOn2Transition>());
    Add(std::make_unique<WipeOffTransition>());
    Add(std::make_unique<ZoomInTransition>());
    Add(std::make_unique<ZoomOutTransition>());
}

}  // namespace quillet
