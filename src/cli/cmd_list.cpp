// quillet list transitions|effects|filters|camera|controls: the names on
// offer, in the order the program offers them.
#include <iostream>

#include "cli/Command.h"
#include "effects/CameraEffect.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "media/ImageFilter.h"
#include "movie/ControlSets.h"

namespace quillet::cli {

namespace {

int runList(const std::vector<std::string>& args);

const Command kList{"list", "list transitions|effects|filters|camera|controls [--options]",
                    "print the names of the transitions, overlay effects, filters, camera moves or control sets; "
                    "with --options, each one's saved options with their values and defaults",
                    runList, 80};
const CommandRegistrar registrar(kList);

// The names of a family in the order the program offers them, each followed
// by its options when asked.
template <class Family>
std::string Describe(const Family& registry, bool withOptions) {
    std::string out;
    for (const auto& prototype : registry) {
        out += prototype->name() + "\n";
        if (withOptions) out += DescribeOptionTable(prototype->Options());
    }
    return out;
}

int runList(const std::vector<std::string>& args) {
    ParsedArgs parsed = parseArgs(args, {}, {"--options"});
    if (!parsed.error.empty()) return usageError(kList, parsed.error);
    if (parsed.positional.size() != 1)
        return usageError(kList, "expected one of transitions, effects, filters, camera, controls");
    const std::string& what = parsed.positional[0];
    const bool withOptions = parsed.has("--options");

    std::string text;
    if (what == "transitions") text = Describe(TransitionRegistry::instance(), withOptions);
    else if (what == "effects") text = Describe(OverlayEffectRegistry::instance(), withOptions);
    else if (what == "filters") text = Describe(ImageFilterRegistry::instance(), withOptions);
    else if (what == "camera") text = Describe(CameraEffectRegistry::instance(), withOptions);
    else if (what == "controls") {
        // Playback sets for --controls, then mute sets for --mute-control, each with its size.
        const std::vector<std::string> playback = ListControlSets(ControlKind::Playback);
        const std::vector<std::string> mute = ListControlSets(ControlKind::Mute);
        if (playback.empty() && mute.empty()) {
            printError(kNoControlTemplates);
            return kExitFailure;
        }
        for (ControlKind kind : {ControlKind::Playback, ControlKind::Mute}) {
            text += kind == ControlKind::Playback ? "playback (--controls):\n" : "mute (--mute-control):\n";
            for (const std::string& name : kind == ControlKind::Playback ? playback : mute) {
                ImportedMovie set;
                std::string why;
                text += "  " + name;
                if (LoadControlSet(kind, name, set, &why))
                    text += "  " + std::to_string(set.WidthPixels()) + "x" + std::to_string(set.HeightPixels());
                else
                    text += "  (unreadable: " + why + ")";
                text += "\n";
            }
        }
    } else return usageError(kList, "unknown list '" + what + "' (transitions, effects, filters, camera or controls)");
    std::cout << text;
    std::cout.flush();
    return std::cout ? kExitOk : kExitFailure;
}

}  // namespace

}  // namespace quillet::cli
