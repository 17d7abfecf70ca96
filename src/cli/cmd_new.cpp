// quillet new IMAGES... -o SHOW.qpj: a show made from pictures, one slide
// each, with the user's defaults for new slides.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>

#include "cli/Command.h"
#include "cli/TerminalProgress.h"
#include "effects/CaptionDefaults.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "media/Exif.h"
#include "media/FramePatterns.h"
#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "movie/ControlSets.h"
#include "model/SlideShow.h"
#include "settings/AppSettings.h"

namespace quillet::cli {
namespace {

int runNew(const std::vector<std::string>& args);

const Command kNew{"new",
                   "new IMAGES... -o SHOW.qpj [--stage WxH] [--fps N] [--duration MS] [--transition NAME[:OPTION=VALUE,...] | "
                   "--random-transitions] [--exif] [--captions name|date] [--music FILE] [--overlay NAME] "
                   "[--controls SET] [--mute-control SET] [--preloader | --preloader-import FILE] [--loop none|forever|N] "
                   "[--background-image FILE [--tile-background]] [--frame KIND[:PATTERN] [--frame-color RRGGBB] "
                   "[--frame-width N]]",
                   "make a show of one slide per picture", runNew, 10};
CommandRegistrar registrar(kNew);

constexpr const char* kNotFound = "The image could not be added because the file was not found.";
constexpr const char* kNotAnImage =
    "Unable to add the slide. The file may not be a valid image file or may not be supported. Please read the "
    "help file for all supported file formats.";

// A whole decimal number, nothing else.
bool parseInt(const std::string& text, long& out) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    out = std::strtol(text.c_str(), &end, 10);
    return errno == 0 && *end == '\0';
}

bool parseStage(const std::string& text, int& w, int& h) {
    const size_t x = text.find_first_of("xX");
    if (x == std::string::npos) return false;
    long a, b;
    if (!parseInt(text.substr(0, x), a) || !parseInt(text.substr(x + 1), b)) return false;
    if (a < 1 || b < 1 || a > SlideShow::kMaxStageSize || b > SlideShow::kMaxStageSize) return false;
    w = static_cast<int>(a);
    h = static_cast<int>(b);
    return true;
}

// A file given on the command line, stored absolute; empty when it is not there.
std::string existingFile(const std::string& path) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) return {};
    return std::filesystem::absolute(path, ec).lexically_normal().string();
}

// How the show loops, and what lies around its slides. An error names the
// option and what it accepts; a missing file is named with the problem.
std::string setShowLook(const ParsedArgs& parsed, SlideShow& show) {
    if (const std::string* loop = parsed.value("--loop")) {
        long passes = 0;
        if (*loop == "none") show.swfData.loop = SwfData::Loop::None;
        else if (*loop == "forever") show.swfData.loop = SwfData::Loop::Forever;
        else if (parseInt(*loop, passes) && passes >= 1 && passes <= 0x7FFFFFFF) {
            show.swfData.loop = SwfData::Loop::Times;
            show.swfData.loopCount = static_cast<int>(passes);
        } else {
            return "--loop wants 'none', 'forever' or a number of passes (1 or more)";
        }
    }
    if (const std::string* file = parsed.value("--background-image")) {
        show.bgImage = existingFile(*file);
        if (show.bgImage.empty()) return *file + ": the file does not exist";
        show.useBgImage = true;
        show.bgImageTile = parsed.has("--tile-background");
        show.bgImageScaleToFit = !show.bgImageTile;
        show.bgImageWidth = show.width();
        show.bgImageHeight = show.height();
    } else if (parsed.has("--tile-background")) {
        return "--tile-background goes with --background-image";
    }
    const std::string* frame = parsed.value("--frame");
    if (!frame) {
        if (parsed.value("--frame-color") || parsed.value("--frame-width")) return "--frame-color and --frame-width go with --frame";
        return {};
    }
    const size_t colon = frame->find(':');
    if (!frameFromKeyword(frame->substr(0, colon), show.bgFrame) || show.bgFrame == SlideShow::Frame::None)
        return "--frame wants color_flat, color, color_hilite, metal, pattern:NAME (" +
               [] {
                   std::string names;
                   for (const std::string& n : FramePatternNames()) names += (names.empty() ? "" : ", ") + n;
                   return names;
               }() +
               ") or pattern_custom:FILE";
    const std::string detail = colon == std::string::npos ? std::string() : frame->substr(colon + 1);
    if (show.bgFrame == SlideShow::Frame::Pattern) {
        if (detail.empty() || MakeFramePattern(detail).empty()) return "--frame pattern wants pattern:NAME with a built-in pattern's name";
        show.bgFramePattern = detail;
    } else if (show.bgFrame == SlideShow::Frame::PatternCustom) {
        show.bgFrameCustomPattern = existingFile(detail);
        if (show.bgFrameCustomPattern.empty()) return "--frame pattern_custom wants pattern_custom:FILE with a picture that exists";
    }
    if (const std::string* color = parsed.value("--frame-color")) {
        char* end = nullptr;
        const unsigned long rgb = std::strtoul(color->c_str(), &end, 16);
        if (color->size() != 6 || *end != '\0') return "--frame-color wants six hexadecimal digits RRGGBB";
        show.bgFrameColor = static_cast<uint32_t>(rgb);
    }
    if (const std::string* width = parsed.value("--frame-width")) {
        long w = 0;
        if (!parseInt(*width, w) || w < 0 || w > SlideShow::kMaxStageSize) return "--frame-width wants pixels, 0 or more";
        show.bgFrameLeft = show.bgFrameTop = show.bgFrameRight = show.bgFrameBottom = static_cast<int>(w);
    }
    return {};
}

int runNew(const std::vector<std::string>& args) {
    ParsedArgs parsed = parseArgs(args, {"-o", "--output", "--stage", "--fps", "--duration", "--transition", "--captions", "--music",
                                         "--overlay", "--controls", "--mute-control", "--preloader-import", "--loop",
                                         "--background-image", "--frame", "--frame-color", "--frame-width"},
                                  {"--random-transitions", "--exif", "--preloader", "--tile-background"});
    if (!parsed.error.empty()) return usageError(kNew, parsed.error);
    if (parsed.positional.empty()) return usageError(kNew, "expected at least one picture");
    std::string out;
    if (const std::string* o = parsed.value("-o")) out = *o;
    if (const std::string* o = parsed.value("--output")) out = *o;
    if (out.empty()) return usageError(kNew, "expected -o SHOW.qpj");

    // Settings first: new slides take their picture defaults from them.
    AppSettings& settings = AppSettings::current();
    std::string settingsError;
    if (!settings.load(&settingsError)) printError(settingsFilePath(), settingsError);

    SlideShow show;
    if (const std::string* stage = parsed.value("--stage")) {
        int w, h;
        if (!parseStage(*stage, w, h))
            return usageError(kNew, "--stage wants WIDTHxHEIGHT, each 1 to " + std::to_string(SlideShow::kMaxStageSize));
        show.setSize(w, h);
    }
    show.showBoundsLeft = 0;
    show.showBoundsTop = 0;
    show.showBoundsRight = show.width();
    show.showBoundsBottom = show.height();
    if (std::string why = setShowLook(parsed, show); !why.empty()) return usageError(kNew, why);
    if (const std::string* fps = parsed.value("--fps")) {
        char* end = nullptr;
        const double v = std::strtod(fps->c_str(), &end);
        if (fps->empty() || *end != '\0' || !(v >= 1.0 && v <= 120.0))
            return usageError(kNew, "--fps wants a frame rate from 1 to 120");
        show.fps = static_cast<float>(v);
    }
    long duration = -1;
    if (const std::string* d = parsed.value("--duration")) {
        if (!parseInt(*d, duration) || duration < 0 || duration > 0x7FFFFFFF)
            return usageError(kNew, "--duration wants milliseconds (a whole number, 0 or more)");
    }
    // "Push" or "Push:direction=left,..." with the keywords of the project file.
    std::unique_ptr<Transition> chosen;
    // One caption per slide: the picture's name or the day it was taken.
    // The show's music plays from the first slide to the end, repeating if
    // the show outlasts it. A file that is not there is refused before anything is written.
    if (const std::string* music = parsed.value("--music")) {
        std::error_code ec;
        if (!std::filesystem::is_regular_file(*music, ec)) {
            printError(*music, "the file does not exist");
            return kExitFailure;
        }
        SoundClip clip;
        clip.src = std::filesystem::absolute(*music, ec).lexically_normal().string();
        clip.loop = true;
        show.sound.include = true;
        show.sound.sounds = {clip};
    }
    const std::string* captions = parsed.value("--captions");
    if (captions && *captions != "name" && *captions != "date")
        return usageError(kNew, "--captions wants 'name' or 'date'");
    // Every slide gets the overlay effect of that exact name.
    const OverlayEffect* overlay = nullptr;
    if (const std::string* name = parsed.value("--overlay")) {
        overlay = OverlayEffectRegistry::instance().Find(*name);
        if (!overlay) {
            std::string names;
            for (size_t i = 0; i < OverlayEffectRegistry::instance().count(); ++i)
                names += std::string(i ? ", " : "") + "'" + OverlayEffectRegistry::instance().At(i)->name() + "'";
            return usageError(kNew, "no overlay effect called '" + *name + "' (one of " + names + ")");
        }
    }
    // Playback and mute controls from the installed sets (see 'quillet list controls').
    const std::pair<const char*, ControlKind> controlOptions[] = {{"--controls", ControlKind::Playback},
                                                                  {"--mute-control", ControlKind::Mute}};
    for (const auto& [option, kind] : controlOptions) {
        const std::string* name = parsed.value(option);
        if (!name) continue;
        ImportedMovie set;
        std::string why;
        if (!LoadControlSet(kind, *name, set, &why)) {
            printError(why);
            return kExitFailure;
        }
        ControlPlacement& placement = kind == ControlKind::Playback ? show.controls : show.muteControl;
        placement.enabled = true;
        placement.controlSet = *name;
        placement.width = set.WidthPixels();
        placement.height = set.HeightPixels();
    }
    if (parsed.has("--preloader") || parsed.value("--preloader-import")) show.swfData.preload = true;
    if (const std::string* file = parsed.value("--preloader-import")) {
        ImportedMovie preloader;
        std::string why;
        if (!ReadImportedMovie(*file, preloader, &why)) {
            printError(*file, why);
            return kExitFailure;
        }
        std::error_code ec;
        show.swfData.preloadImportSrc = std::filesystem::absolute(*file, ec).lexically_normal().string();
    }
    const bool random = parsed.has("--random-transitions");
    if (const std::string* choice = parsed.value("--transition")) {
        if (random) return usageError(kNew, "--transition and --random-transitions exclude each other");
        const size_t colon = choice->find(':');
        const std::string name = choice->substr(0, colon);
        const Transition* prototype = TransitionRegistry::instance().Find(name);
        if (!prototype) return usageError(kNew, "no transition called '" + name + "' (see 'quillet list transitions')");
        chosen = prototype->CreateInstance();
        std::string rest = colon == std::string::npos ? std::string() : choice->substr(colon + 1);
        while (colon != std::string::npos) {
            const size_t comma = rest.find(',');
            const std::string pair = rest.substr(0, comma);
            const size_t equals = pair.find('=');
            if (equals == std::string::npos)
                return usageError(kNew, "--transition wants NAME or NAME:option=value,... ('" + pair + "' has no '=')");
            std::string why;
            if (!chosen->options().SetFromText(pair.substr(0, equals), pair.substr(equals + 1), why))
                return usageError(kNew, chosen->name() + ": " + why);
            if (comma == std::string::npos) break;
            rest = rest.substr(comma + 1);
        }
    }
    if (random) std::srand(static_cast<unsigned>(std::time(nullptr)));

    AssignOptions assign;
    assign.stageWidth = show.width();
    assign.stageHeight = show.height();
    assign.applyExif = parsed.has("--exif") || settings.readExifData;

    bool allAdded = true;
    TerminalProgress progress;
    progress.setRange(0, static_cast<int>(parsed.positional.size()));
    int index = 0;
    for (const std::string& picture : parsed.positional) {
        ++index;
        progress.setMainText("Processing " + std::to_string(index) + " of " + std::to_string(parsed.positional.size()));
        progress.step(index);
        if (progress.cancelled()) {
            progress.finish();
            printError("cancelled; nothing written");
            return kExitFailure;
        }
        // Stored absolute, so the project opens from wherever it is saved.
        std::error_code ec;
        std::filesystem::path absolute = std::filesystem::absolute(picture, ec);
        const std::string path = ec ? picture : absolute.lexically_normal().string();

        auto slide = show.createSlide(SlideType::Image);
        std::string why;
        const AssignFailure failure = AssignPicture(slide->image, path, assign, &why);
        if (failure != AssignFailure::None) {
            progress.finish();
            printError(picture, failure == AssignFailure::NotFound ? kNotFound : kNotAnImage);
            allAdded = false;
            continue;
        }
        if (duration >= 0) slide->duration = static_cast<uint32_t>(duration);
        if (random) slide->setTransitionIn(TransitionRegistry::instance().Random()->CreateInstance());
        else if (chosen) slide->setTransitionIn(chosen->Clone());
        if (overlay) slide->setOverlayEffect(overlay->Create());
        if (captions) {
            const std::string text = *captions == "name" ? PictureNameText(path) : PictureDateText(path);
            if (!text.empty()) slide->captions.items.push_back(MakePictureCaption(text, show.height()));
        }
        show.append(std::move(slide));
    }
    progress.finish();

    // Published files are named after the project ("trip.qpj" gives "trip.swf", "trip.html").
    PublishSettings publish;
    publish.setBaseFilename(std::filesystem::path(out).stem().string());
    std::string error;
    if (!SaveProject(out, show, publish, &error)) {
        printError(out, error);
        return kExitFailure;
    }
    std::cout << out << ": " << show.statusText() << "\n";
    return allAdded ? kExitOk : kExitFailure;
}

}  // namespace
}  // namespace quillet::cli
