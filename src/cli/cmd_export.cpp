// quillet export SHOW.qpj [-o OUT.swf] [--uncompressed]
#include <filesystem>
#include <iostream>

#include "cli/Command.h"
#include "cli/TerminalProgress.h"
#include "io/DiskCache.h"
#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "model/SlideShow.h"
#include "movie/MovieExporter.h"
#include "settings/AppSettings.h"

namespace quillet::cli {
namespace {

int runExport(const std::vector<std::string>& args);

const Command kExport{"export", "export SHOW.qpj [-o OUT.swf] [--uncompressed] [--no-cache]",
                      "compile a show into an SWF movie (default: SHOW.swf beside the project)", runExport, 20};
CommandRegistrar registrar(kExport);

int runExport(const std::vector<std::string>& args) {
    ParsedArgs parsed = parseArgs(args, {"-o", "--output"}, {"--uncompressed", "--no-cache"});
    if (!parsed.error.empty()) return usageError(kExport, parsed.error);
    if (parsed.positional.size() != 1) return usageError(kExport, "expected one project file");
    const std::string& project = parsed.positional[0];
    std::string out;
    if (const std::string* o = parsed.value("-o")) out = *o;
    if (const std::string* o = parsed.value("--output")) out = *o;
    if (out.empty()) out = std::filesystem::path(project).replace_extension(".swf").string();

    // The user's settings decide, for instance, the bitmap-shift of every slide.
    AppSettings& settings = AppSettings::current();
    settings.load();
    SlideShow show;
    PublishSettings publish;
    std::string error;
    if (!LoadProject(project, show, publish, &error)) {
        printError(project, error);
        return kExitFailure;
    }

    ExportOptions options;
    options.forceUncompressed = parsed.has("--uncompressed");
    options.bitmapShift = settings.defaultImageAdjustBitmapShift;
    if (!parsed.has("--no-cache")) options.cacheFolder = DiskCache::DefaultFolder();
    TerminalProgress progress;
    ExportResult result = MovieExporter(show).ExportMovie(out, &progress, options);
    progress.finish();
    for (const auto& w : result.warnings) printError(project, w);
    if (result.cancelled) {
        printError(out, "export cancelled; the file holds a movie of the first " +
                            std::to_string(result.slidesWritten) + " slide(s)");
        return kExitFailure;
    }
    if (!result.ok) {
        printError(out, result.error);
        return kExitFailure;
    }
    std::cout << out << ": " << show.count() << " slides, " << result.frameCount << " frames, "
              << std::filesystem::file_size(out) << " bytes\n";
    return kExitOk;
}

}  // namespace
}  // namespace quillet::cli
