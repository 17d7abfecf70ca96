// quillet publish SHOW.qpj [--output DIR] [--replace | --no-replace] [--players DIR]
//                 [--targets LIST] [--base NAME] [--no-cache]
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>

#include "cli/Command.h"
#include "cli/TerminalProgress.h"
#include "io/DiskCache.h"
#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "model/SlideShow.h"
#include "publish/Publisher.h"
#include "publish/RufflePage.h"
#include "settings/AppSettings.h"

namespace quillet::cli {
namespace {

int runPublish(const std::vector<std::string>& args);

const Command kPublish{"publish",
                       "publish SHOW.qpj [--output DIR] [--replace | --no-replace] [--players DIR] "
                       "[--targets swf,html,ruffle,mac,win,...] [--base NAME] [--no-cache]",
                       "write the show's selected publish targets (movie, pages, projectors) into its output folder",
                       runPublish, 25};
CommandRegistrar registrar(kPublish);

// The replace question as a line of text on the terminal.
class TextPrompts : public PublishPrompts {
public:
    explicit TextPrompts(TerminalProgress& progress) : progress_(progress) {}
    ReplaceReply AskReplace(const std::string& question) override {
        progress_.finish();
        for (;;) {
            std::cerr << question << "\n"
                      << "  r = Replace, d = Don't Replace, s = Stop; add a for Apply To All (ra, da): " << std::flush;
            std::string line;
            if (!std::getline(std::cin, line)) return {ReplaceAnswer::Stop, false};
            if (line == "r") return {ReplaceAnswer::Replace, false};
            if (line == "ra") return {ReplaceAnswer::Replace, true};
            if (line == "d") return {ReplaceAnswer::DontReplace, false};
            if (line == "da") return {ReplaceAnswer::DontReplace, true};
            if (line == "s") return {ReplaceAnswer::Stop, false};
        }
    }

private:
    TerminalProgress& progress_;
};

// The keywords of --targets, in the targets' order.
struct TargetKeyword {
    const char* keyword;
    bool PublishSettings::*flag = nullptr;
    PublishTarget PublishSettings::*target = nullptr;
};
const TargetKeyword kTargetKeywords[] = {
    {"swf", nullptr, &PublishSettings::swf},
    {"flv", nullptr, &PublishSettings::flv},
    {"html", nullptr, &PublishSettings::html},
    {"ruffle", nullptr, &PublishSettings::rufflePage},
    {"mac", nullptr, &PublishSettings::macProjector},
    {"win", nullptr, &PublishSettings::winProjector},
    {"quicktime", nullptr, &PublishSettings::quicktime},
    {"screensaver", nullptr, &PublishSettings::screensaver},
    {"installer", &PublishSettings::publishInstaller, nullptr},
};

bool& targetFlag(PublishSettings& s, const TargetKeyword& k) { return k.flag ? s.*k.flag : (s.*k.target).publish; }

// Replaces the project's selection by the listed targets; "" when all are known.
std::string selectTargets(PublishSettings& s, const std::string& list) {
    for (const TargetKeyword& k : kTargetKeywords) targetFlag(s, k) = false;
    size_t at = 0;
    while (at <= list.size()) {
        size_t comma = std::min(list.find(',', at), list.size());
        std::string word = list.substr(at, comma - at);
        bool known = false;
        for (const TargetKeyword& k : kTargetKeywords)
            if (word == k.keyword) known = targetFlag(s, k) = true;
        if (!known) {
            std::string allowed;
            for (const TargetKeyword& k : kTargetKeywords) allowed += std::string(allowed.empty() ? "" : ", ") + k.keyword;
            return "unknown target \"" + word + "\" (one of " + allowed + ")";
        }
        at = comma + 1;
    }
    return "";
}

std::string joined(const std::vector<std::string>& names) {
    std::string out;
    for (const std::string& n : names) out += (out.empty() ? "" : ", ") + n;
    return out;
}

int runPublish(const std::vector<std::string>& args) {
    ParsedArgs parsed =
        parseArgs(args, {"--output", "--players", "--targets", "--base"}, {"--replace", "--no-replace", "--no-cache"});
    if (!parsed.error.empty()) return usageError(kPublish, parsed.error);
    if (parsed.positional.size() != 1) return usageError(kPublish, "expected one project file");
    if (parsed.has("--replace") && parsed.has("--no-replace"))
        return usageError(kPublish, "--replace and --no-replace exclude each other");
    const std::string& project = parsed.positional[0];

    AppSettings& settings = AppSettings::current();
    settings.load();
    SlideShow show;
    PublishSettings publish;
    std::string error;
    if (!LoadProject(project, show, publish, &error)) {
        printError(project, error);
        return kExitFailure;
    }
    if (const std::string* o = parsed.value("--output")) publish.output = *o;
    if (const std::string* b = parsed.value("--base")) publish.setBaseFilename(*b);
    if (const std::string* t = parsed.value("--targets")) {
        std::string problem = selectTargets(publish, *t);
        if (!problem.empty()) return usageError(kPublish, problem);
    }

    // A replace flag answers the question for every target; without one a
    // terminal is asked and a pipe keeps existing files.
    bool flagged = parsed.has("--replace") || parsed.has("--no-replace");
    bool replace = parsed.has("--replace");
    for (PublishTarget* t : {&publish.swf, &publish.flv, &publish.html, &publish.rufflePage, &publish.macProjector,
                             &publish.winProjector, &publish.quicktime, &publish.screensaver})
        t->replace = replace;
    publish.replaceInstaller = replace;

    TerminalProgress progress;
    TextPrompts prompts(progress);
    PublishOptions options;
    if (!flagged && isatty(STDIN_FILENO) && isatty(STDERR_FILENO)) options.prompts = &prompts;
    options.addresses = {settings.publishPlayerDownloadUrl, settings.publishPluginPageUrl};
    options.playersFolder = settings.publishPlayersPath;
    if (const std::string* p = parsed.value("--players")) options.playersFolder = *p;
    options.rufflePlayer = FindRufflePlayer();
    options.exportOptions.bitmapShift = settings.defaultImageAdjustBitmapShift;
    if (!parsed.has("--no-cache")) options.exportOptions.cacheFolder = DiskCache::DefaultFolder();
    options.progress = &progress;

    PublishResult result = Publish(publish, show, options);
    progress.finish();
    for (const std::string& w : result.warnings) printError(project, w);
    for (const std::string& name : result.notAvailable)
        printError(project, "the " + name + " target is not available in this version; the others are built");
    if (!result.skipped.empty())
        printError(publish.output, "kept the existing files of: " + joined(result.skipped) +
                                       " (--replace replaces them)");
    for (const std::string& path : result.written) std::cout << "wrote " << path << "\n";
    for (const PublishMessage& m : result.messages) {
        if (m.caption == kPublishErrorCaption) {
            // The message as the program words it, then what it concerns.
            printError(m.detail.empty() ? m.text : m.text + " (" + m.detail + ")");
        } else {
            std::cout << m.text << "\n";
        }
    }
    return result.ok ? kExitOk : kExitFailure;
}

}  // namespace
}  // namespace quillet::cli
