#include "movie/MovieExporter.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "effects/CaptionSprite.h"
#include "effects/FontFace.h"
#include "effects/SlideRender.h"
#include "io/DiskCache.h"
#include "io/TempFolder.h"
#include "media/Exif.h"
#include "media/ImageImporter.h"
#include "media/Progress.h"
#include "model/Slide.h"
#include "model/SlideShow.h"
#include "movie/ControlSets.h"
#include "movie/MovieScripts.h"
#include "movie/MovieSounds.h"
#include "movie/PicturePipeline.h"
#include "movie/Preloader.h"
#include "movie/ShowBackground.h"
#include "movie/ShowButtons.h"
#include "movie/SlideActions.h"
#include "movie/SlideStep.h"
#include "swf/SwfCompress.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

const char* const kFrameLimitWarning =
    "The slide show SWF output exceeds the 16,000 frame limit in the Flash Player. The Flash Player will ignore all "
    "frames past 16,000. Please reduce the number of slides or durations.";

namespace {

namespace fs = std::filesystem;

bool Cancelled(const ProgressSink* progress) { return progress && progress->cancelled(); }

// The picture settings a slide is exported with. A slide read back from a
// project keeps exactly the rectangle that was saved; only one whose sizes
// are missing (a project written by hand) is measured and fitted here.
SlideImage ExportedImage(const Slide& slide, const SlideShow& show, bool bitmapShift) {
    SlideImage image = slide.image;
    image.adjustBitmapShift = bitmapShift;
    if (image.width > 0 && image.height > 0) return image;
    ImageImporter importer;
    int w = 0, h = 0;
    // A picture that cannot be read is reported when the slide is written.
    if (!importer.Open(image.src) || !importer.GetNaturalSize(w, h)) return image;
    image.sourceWidth = w;
    image.sourceHeight = h;
    if (!image.crop) image.cropRect = {0, 0, displayedWidth(image), displayedHeight(image)};
    if (!image.scaleToFit) {
        image.width = image.crop ? image.cropRect.width() : displayedWidth(image);
        image.height = image.crop ? image.cropRect.height() : displayedHeight(image);
    }
    FitSlideImage(image, show.width(), show.height());
    return image;
}

// What the head copies in or builds from outside the show: the preloader and
// the control sets. Read before anything is written, so that a missing or
// broken one fails the export with nothing touched.
struct HeadParts {
    bool preload = false;
    Preloader preloader;
    bool controls = false, mute = false;
    ImportedMovie controlSet, muteSet;

    bool Prepare(const SlideShow& show, FontCatalog& fonts, std::string* error) {
        preload = show.swfData.preload;
        if (preload && !preloader.Prepare(show, fonts, error)) return false;
        controls = show.controls.enabled;
        if (controls && !LoadControlSet(ControlKind::Playback, show.controls.controlSet, controlSet, error))
            return false;
        mute = show.muteControl.enabled;
        if (mute && !LoadControlSet(ControlKind::Mute, show.muteControl.controlSet, muteSet, error)) return false;
        return true;
    }
    // Scripts copied from another movie play by the rules of its version.
    uint8_t Version() const {
        uint8_t v = preload ? preloader.ImportedVersion() : 0;
        if (controls) v = std::max(v, controlSet.header.version);
        if (mute) v = std::max(v, muteSet.header.version);
        return v;
    }
};

// Everything written before the first slide: background, the preloader's
// frames, the show's functions and start action, the playback and mute
// controls, the show's click button, the pause before it plays.
void WriteHead(SwfWriter& writer, const SlideShow& show, const ShowBackdrop& backdrop, HeadParts& parts, uint32_t& ids,
               uint32_t& depths) {
    writer.AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor::FromRgb(show.bgColor)));
    // The players leave a frame labelled "!#p" out of their print menu.
    if (show.disablePrint) writer.AddTag(std::make_unique<FrameLabelTag>("!#p"));
    MovieContext ctx{writer, show.fps, ids, depths};
    if (parts.preload) {
        parts.preloader.Write(ctx);
        parts.preloader.WriteRemoval(ctx);
    }
    const bool controls = show.controls.enabled;
    SwfActionList start = BuildStartScript(show, controls);
    if (start.size() > 0 || controls) {
        writer.AddTag(std::make_unique<DoActionTag>(std::move(start)));
        writer.AddTag(std::make_unique<ShowFrameTag>());
    }
    if (parts.controls) PlaceControlSet(ControlKind::Playback, FreshCopy(parts.controlSet), show.controls, ctx);
    if (parts.mute) PlaceControlSet(ControlKind::Mute, FreshCopy(parts.muteSet), show.muteControl, ctx);
    WriteBackdrop(ctx, show, backdrop);
    if (show.swfData.mouseClickAction.enable) WriteClickButton(ctx, show.swfData.mouseClickAction);
    for (int i = StartPauseFrames(show); i > 0; --i) writer.AddTag(std::make_unique<ShowFrameTag>());
}

void WriteTail(SwfWriter& writer, const SlideShow& show) {
    const bool controls = show.controls.enabled;
    SwfActionList end = BuildEndScript(show, controls);
    if (end.size() > 0 || controls) writer.AddTag(std::make_unique<DoActionTag>(std::move(end)));
    writer.AddTag(std::make_unique<ShowFrameTag>());
}

SlideStepInput StepInput(const SlideShow& show, const Slide& slide, const SlideImage& image, int index,
                         BitmapCharacter* picture, const std::string& movieFolder) {
    SlideStepInput in;
    in.slide = &slide;
    in.image = &image;
    in.index = index;
    in.picture = slide.type == SlideType::Image ? picture : nullptr;
    in.backgroundColor = show.bgColor;
    in.stageWidth = show.width();
    in.stageHeight = show.height();
    in.movieFolder = movieFolder;
    SlideActionInput actions{&slide.clickAction, &slide.popup, index, show.count(), show.controls.enabled};
    // A show that waits for a click waits with its first slide on the stage;
    // its gate lies above the slide's own button.
    const bool gate = index == 1 && show.swfData.movieStartAction == SwfData::StartAction::StopOnFirstFrame;
    if (gate || slide.clickAction.enable || slide.clickAction.loadUrlOnDisplay) {
        in.onShown = [actions, gate](MovieContext& ctx, const SlideOnStage& shown, std::vector<uint16_t>& leaving) {
            if (uint16_t depth = WriteSlideClick(ctx, shown, actions)) leaving.push_back(depth);
            WriteDisplayUrl(ctx, actions);
            if (gate) WriteStartGate(ctx, actions.controls);
        };
    }
    return in;
}

// Every caption is noted before anything is written, so that each face is
// defined once with all the characters the movie draws in it.
void CollectCaptions(const SlideShow& show, CaptionWriter& captions) {
    for (size_t i = 0; i < show.captions.items.size(); ++i)
        captions.Collect(show.captions.items[i], CaptionName(static_cast<int>(i) + 1, 0));
    for (int s = 0; s < show.count(); ++s) {
        const auto& items = show.slideAt(s)->captions.items;
        for (size_t i = 0; i < items.size(); ++i)
            captions.Collect(items[i], CaptionName(static_cast<int>(i) + 1, s + 1));
    }
}

// The show's own captions, placed with the first slide at the top depths and
// never removed; their times count from the first slide's first frame.
void PlaceShowCaptions(const SlideShow& show, CaptionWriter& captions, MovieContext ctx) {
    for (size_t i = 0; i < show.captions.items.size(); ++i)
        captions.Place(show.captions.items[i], CaptionName(static_cast<int>(i) + 1, 0), ctx,
                       static_cast<uint16_t>(kShowCaptionTopDepth - i));
}

std::string Thousands(uint32_t n) {
    std::string digits = std::to_string(n);
    for (int i = static_cast<int>(digits.size()) - 3; i > 0; i -= 3) digits.insert(static_cast<size_t>(i), ",");
    return digits;
}

// Writes the whole show into a writer that was never opened: it counts the
// frames, ids and depths the movie will take without writing a byte (every
// picture is taken to succeed, which takes the most ids). Empty when the
// show fits the file's 16-bit fields, else what is over.
std::string CheckLimits(const SlideShow& show, const std::vector<SlideImage>& images, uint8_t version,
                        const ShowBackdrop& backdrop, FontCatalog& fonts, HeadParts& parts) {
    SwfWriter counter(false);
    counter.Setup(PixelsToTwips(show.width()), PixelsToTwips(show.height()), show.fps, version);
    uint32_t ids = 0, depths = 0;
    WriteHead(counter, show, backdrop, parts, ids, depths);
    CaptionWriter captions(fonts);
    CollectCaptions(show, captions);
    PlaceShowCaptions(show, captions, MovieContext{counter, show.fps, ids, depths});
    // The show's captions take the top depths.
    depths += static_cast<uint32_t>(show.captions.items.size());
    ids += MovieSounds::MaxCharacters(show);
    SlideStep step(counter, show.fps, ids, depths);
    step.SetCaptions(&captions);
    SlideOnStage previous;
    bool havePrevious = false;
    for (int i = 1; i <= show.count(); ++i) {
        const Slide& slide = *show.slideAt(i - 1);
        const SlideImage& image = images[static_cast<size_t>(i - 1)];
        BitmapCharacter stand;
        stand.ok = true;
        stand.type = image.imageType;
        stand.width = static_cast<uint32_t>(std::max(image.width, 0));
        stand.height = static_cast<uint32_t>(std::max(image.height, 0));
        previous = step.WriteSlide(StepInput(show, slide, image, i, &stand, {}), havePrevious ? &previous : nullptr);
        havePrevious = true;
        // Past the limits nothing more needs counting.
        if (counter.TotalFrames() > kMovieFieldLimit || ids > kMovieFieldLimit || depths > kMovieFieldLimit) break;
    }
    WriteTail(counter, show);
    auto over = [](const char* what, uint32_t n) {
        return std::string("the show would need ") + (n > 10 * kMovieFieldLimit ? "more than " : "") +
               Thousands(std::min<uint32_t>(n, 10 * kMovieFieldLimit)) + " " + what + "; a movie holds at most " +
               Thousands(kMovieFieldLimit) + " (shorten the slides, lower the frame rate or split the show)";
    };
    if (counter.TotalFrames() > kMovieFieldLimit) return over("frames", counter.TotalFrames());
    if (ids > kMovieFieldLimit) return over("characters", ids);
    if (depths > kMovieFieldLimit) return over("depths", depths);
    return {};
}

}  // namespace

MovieExporter::MovieExporter(const SlideShow& show) : show_(show) {}

ExportResult MovieExporter::ExportMovie(const std::string& path, ProgressSink* progress, const ExportOptions& options) {
    ExportResult result;
    const int count = show_.count();
    if (progress) {
        progress->setRange(0, count);
        progress->setMainText("Exporting Slide Show...");
    }
    const bool compress = show_.useCompression && !options.forceUncompressed;

    std::vector<SlideImage> images;
    images.reserve(static_cast<size_t>(count));
    for (const auto& slide : show_.slides())
        images.push_back(slide->type == SlideType::Image ? ExportedImage(*slide, show_, options.bitmapShift)
                                                         : slide->image);

    // Version 5 plays everything a show needs; a picture loaded at play time
    // needs 6, and so does a compressed movie.
    uint8_t version = 5;
    for (size_t i = 0; i < images.size(); ++i)
        if (show_.slideAt(static_cast<int>(i))->type == SlideType::Image &&
            images[i].imageType == ImageType::JpegExternal)
            version = 6;
    if (compress && version < 6) version = 6;

    // Refused before anything is written.
    const ShowBackdrop backdrop = PrepareBackdrop(show_);
    FontCatalog fonts;
    HeadParts parts;
    if (!parts.Prepare(show_, fonts, &result.error)) return result;
    version = std::max(version, parts.Version());
    result.error = CheckLimits(show_, images, version, backdrop, fonts, parts);
    if (!result.error.empty()) return result;

    // A compressed movie is written plain into the private temporary folder
    // first; a plain one goes straight beside its target.
    std::string target = path;
    if (compress) {
        target = PrivateTempFile("export-" + std::to_string(reinterpret_cast<uintptr_t>(this)) + ".swf",
                                 &result.error);
        if (target.empty()) return result;
        if (!options.overwrite && fs::exists(path)) {
            result.error = "the file exists already";
            return result;
        }
    }
    SwfWriter writer(false);
    writer.Setup(PixelsToTwips(show_.width()), PixelsToTwips(show_.height()), show_.fps, version);
    if (!writer.Open(target, options.overwrite || compress)) {
        result.error = writer.Error().empty() ? "cannot create the file" : writer.Error();
        return result;
    }
    uint32_t nextCharacterId = 0, nextDepth = 0;
    WriteHead(writer, show_, backdrop, parts, nextCharacterId, nextDepth);
    result.warnings.insert(result.warnings.end(), backdrop.warnings.begin(), backdrop.warnings.end());

    std::unique_ptr<DiskCache> cache;
    if (!options.cacheFolder.empty()) cache = std::make_unique<DiskCache>(options.cacheFolder, options.cacheMaxBytes);
    std::vector<PictureJob> jobs;
    for (int i = 0; i < count; ++i) {
        const Slide* slide = show_.slideAt(i);
        PictureJob job;
        if (slide->type == SlideType::Image) {
            job.image = &images[static_cast<size_t>(i)];
            job.filters = &slide->imageFilters();
        }
        jobs.push_back(job);
    }
    PipelineOptions pipe;
    pipe.threads = options.threads;
    pipe.memoryBudget = options.memoryBudget;
    pipe.cache = cache.get();
    pipe.progress = progress;
    PicturePipeline pictures(std::move(jobs), pipe);

    CaptionWriter captions(fonts);
    CollectCaptions(show_, captions);
    PlaceShowCaptions(show_, captions, MovieContext{writer, show_.fps, nextCharacterId, nextDepth});
    SlideStep step(writer, show_.fps, nextCharacterId, nextDepth);
    step.SetCaptions(&captions);
    MovieSounds sounds(writer, nextCharacterId, progress);
    sounds.SetCache(cache.get());
    sounds.StartShow(show_);
    const std::string movieFolder = fs::path(path).parent_path().string();
    SlideOnStage previous;
    bool havePrevious = false;
    for (int i = 1; i <= count; ++i) {
        if (Cancelled(progress)) {
            result.cancelled = true;
            break;
        }
        // The text is held to 31 characters, as the progress window shows it.
        char text[48];
        std::snprintf(text, sizeof text, "Processing %d of %d", i, count);
        text[31] = '\0';
        if (progress) {
            progress->setMainText(text);
            progress->setSecondaryText("Writing slide...");
        }
        BitmapCharacter picture = pictures.Next();
        if (picture.cancelled || Cancelled(progress)) {
            result.cancelled = true;
            break;
        }
        const Slide& slide = *show_.slideAt(i - 1);
        if (slide.type == SlideType::Image && !picture.ok) result.warnings.push_back(picture.error);
        sounds.StartSlide(slide.sound);
        previous = step.WriteSlide(StepInput(show_, slide, images[static_cast<size_t>(i - 1)], i, &picture, movieFolder),
                                   havePrevious ? &previous : nullptr);
        havePrevious = true;
        result.slidesWritten = i;
        if (progress) progress->step(i);
    }
    const PipelineStats stats = pictures.Stats();
    result.picturesPrepared = stats.prepared;
    result.picturesFromCache = stats.fromCache;
    if (cache) cache->Trim();
    for (std::string& line : captions.Warnings()) result.warnings.push_back(std::move(line));

    // What is written so far stays a valid movie of the slides done.
    for (std::string& line : sounds.Warnings()) result.warnings.push_back(std::move(line));
    if (sounds.Cancelled()) result.cancelled = true;
    if (!result.cancelled) {
        sounds.EndShow(show_.swfData.loop != SwfData::Loop::None);
        WriteTail(writer, show_);
    }
    writer.AddTag(std::make_unique<EndTag>());
    writer.SetNextCharacterId(static_cast<uint16_t>(nextCharacterId));
    result.fileLength = writer.Close();
    result.frameCount = writer.FrameCount();
    if (!writer.Good()) {
        result.cancelled = false;
        result.error = writer.Error().empty() ? "writing the movie failed" : writer.Error();
        return result;
    }
    if (compress) {
        const bool compressed = CompressSwf(target, path, true);
        std::error_code ec;
        fs::remove(target, ec);
        if (!compressed && !result.cancelled) {
            result.exportError = 8;
            result.error = "cannot write the compressed movie";
            return result;
        }
    }
    if (result.cancelled) {
        result.error = "cancelled";
        return result;
    }
    if (result.frameCount > kPlayerFrameLimit) result.warnings.push_back(kFrameLimitWarning);
    result.ok = true;
    return result;
}

}  // namespace quillet
