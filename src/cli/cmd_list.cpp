// quillet list transitions|effects|filters|camera: the names on offer, in
// the order the program offers them.
#include <iostream>

#include "cli/Command.h"
#include "effects/CameraEffect.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "media/ImageFilter.h"

namespace quillet::cli {

namespace {

int runList(const std::vector<std::string>& args);

const Command kList{"list", "list transitions|effects|filters|camera",
                    "print the names of the transitions, overlay effects, filters or camera moves", runList, 80};
const CommandRegistrar registrar(kList);

int runList(const std::vector<std::string>& args) {
    ParsedArgs parsed = parseArgs(args, {}, {});
    if (!parsed.error.empty()) return usageError(kList, parsed.error);
    if (parsed.positional.size() != 1) return usageError(kList, "expected one of transitions, effects, filters, camera");
    const std::string& what = parsed.positional[0];

    std::vector<std::string> names;
    if (what == "transitions") {
        const TransitionRegistry& r = TransitionRegistry::instance();
        for (size_t i = 0; i < r.count(); ++i) names.push_back(r.At(static_cast<int>(i))->name());
    } else if (what == "effects") {
        const OverlayEffectRegistry& r = OverlayEffectRegistry::instance();
        for (size_t i = 0; i < r.count(); ++i) names.push_back(r.At(i)->name());
    } else if (what == "filters") {
        const ImageFilterRegistry& r = ImageFilterRegistry::instance();
        for (size_t i = 0; i < r.count(); ++i) names.push_back(r.at(i)->name());
    } else if (what == "camera") {
        names = CameraEffectNames();
    } else {
        return usageError(kList, "unknown list '" + what + "' (transitions, effects, filters or camera)");
    }
    for (const std::string& n : names) std::cout << n << "\n";
    std::cout.flush();
    return std::cout ? kExitOk : kExitFailure;
}

}  // namespace

}  // namespace quillet::cli
