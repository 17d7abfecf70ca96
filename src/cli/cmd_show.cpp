// quillet show SHOW.qpj: the main window's status line and slide list as text.
#include <iostream>

#include "cli/Command.h"
#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "model/SlideList.h"
#include "model/SlideShow.h"

namespace quillet::cli {

namespace {

int runShow(const std::vector<std::string>& args);

const Command kShow{"show", "show SHOW.qpj", "print the status line and the slide list of a project", runShow, 20};
const CommandRegistrar registrar(kShow);

int runShow(const std::vector<std::string>& args) {
    ParsedArgs parsed = parseArgs(args, {}, {});
    if (!parsed.error.empty()) return usageError(kShow, parsed.error);
    if (parsed.positional.size() != 1) return usageError(kShow, "expected one project file");
    const std::string& path = parsed.positional[0];

    SlideShow show;
    PublishSettings publish;
    std::string error;
    if (!LoadProject(path, show, publish, &error)) {  // a batch run: no relocate dialog
        printError(path, error);
        return kExitFailure;
    }

    std::cout << show.statusText() << "\n";
    // Each slide's transition row stands directly above it, the first slide's
    // included: that transition plays too (it brings the first slide in over
    // the background) and counts in the total time.
    for (int i = 0; i < show.count(); ++i) {
        const Slide& slide = *show.slideAt(i);
        SlideRowText row = slideRowText(slide, i + 1);
        std::cout << transitionRowText(slide) << "\n" << row.title << "\n" << row.path << "\n" << row.extras << "\n";
    }
    std::cout.flush();
    if (!std::cout) {
        printError("cannot write the slide list");
        return kExitFailure;
    }
    return kExitOk;
}

}  // namespace

}  // namespace quillet::cli
