#include "model/ProjectFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "effects/CameraEffect.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "media/ImageFilter.h"
#include "model/PathResolve.h"
#include "model/PublishSettings.h"
#include "model/SlideShow.h"
#include "io/OutputFile.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace fs = std::filesystem;

namespace {

// ---------------------------------------------------------------- writing

// Control set names come from our own template folders and are written as
// they stand; a name holding markup characters is escaped so that the file
// stays readable.
void writeSetName(XmlWriter& w, const char* name, const std::string& value) {
    if (value.find_first_of("\"<&") == std::string::npos)
        w.attributeRaw(name, value);
    else
        w.attribute(name, value);
}

// The crop rectangle as it applies to the picture now: corners in order and
// inside the picture. Without a known picture size it is written as held.
CropRect currentCrop(const SlideImage& image) {
    CropRect r = image.cropRect;
    const int dw = displayedWidth(image), dh = displayedHeight(image);
    if (dw <= 0 || dh <= 0) return r;
    if (r.right < r.left) std::swap(r.left, r.right);
    if (r.bottom < r.top) std::swap(r.top, r.bottom);
    r.left = std::max(r.left, 0);
    r.top = std::max(r.top, 0);
    r.right = std::min(r.right, dw);
    r.bottom = std::min(r.bottom, dh);
    return r;
}

void writeSlide(XmlWriter& w, const Slide& s) {
    const SlideImage& im = s.image;
    const bool blank = s.type == SlideType::Blank;
    w.write("<slide");
    w.attributeRaw("type", slideTypeKeyword(s.type));
    w.attribute("src", blank ? std::string() : im.src);
    w.attribute("width", im.width);
    w.attribute("height", im.height);
    w.attribute("x", im.x);
    w.attribute("y", im.y);
    w.attribute("quality", im.quality);
    w.attributeRaw("image_type", imageTypeKeyword(im.imageType));
    w.attribute("duration", static_cast<unsigned>(s.duration));
    w.attribute("scale_to_fit", im.scaleToFit);
    w.attribute("keep_aspect_ratio", im.keepAspectRatio);
    w.attribute("auto_align", im.autoAlign);
    w.attributeRaw("h_align", hAlignKeyword(im.hAlign));
    w.attributeRaw("v_align", vAlignKeyword(im.vAlign));
    w.attribute("crop", im.crop);
    const CropRect crop = currentCrop(im);
    w.attribute("crop_left", crop.left);
    w.attribute("crop_top", crop.top);
    w.attribute("crop_right", crop.right);
    w.attribute("crop_bottom", crop.bottom);
    w.attribute("flip_vertical", im.flipVertical);
    w.attribute("flip_horizontal", im.flipHorizontal);
    w.attribute("rotate", im.rotation);
    w.write(" >\n");

    w.write("<transition_in>\n");
    WriteTransition(w, s.transitionIn());
    w.write("</transition_in>\n");

    w.write("<swf_fx");
    w.attribute("name", s.overlayEffect().name());
    w.write(" />\n");

    w.write("<image_filters>\n");
    for (const auto& f : s.imageFilters()) WriteFilterElement(w, *f);
    w.write("</image_filters>\n");

    s.clickAction.write(w);

    w.write("<pan_zoom>\n");
    for (const auto& m : s.cameraEffects()) m->WriteXml(w);
    w.write("</pan_zoom>\n");

    s.captions.Write(w);
    s.sound.Write(w);
    s.popup.write(w);
    w.write("</slide>\n");
}

// ---------------------------------------------------------------- reading

struct LoadContext {
    std::string folder;  // the project's folder, for relative paths
    const LoadOptions& options;
    std::vector<std::string> relocatedFolders;  // remembered through "Relocate"
    std::string error;
};

template <typename T>
void readKeyword(const XmlNode& e, const char* name, T& out, bool (*parse)(const std::string&, T&)) {
    if (auto text = e.string(name)) parse(*text, out);
}

bool isFile(const std::string& path) {
    std::error_code ec;
    return !path.empty() && fs::is_regular_file(path, ec);
}

void readSlide(const XmlNode& e, Slide& s, const LoadContext& ctx) {
    SlideImage& im = s.image;
    if (auto type = e.string("type")) {
        // An unknown type leaves the slide an image slide.
        if (*type == "blank")
            s.type = SlideType::Blank;
        else if (*type == "image")
            s.type = SlideType::Image;
    }
    // Orientation first: turning swaps the sizes and turns the crop
    // rectangle, while the file holds them as they are after the turn.
    bool flag = false;
    if (e.readBool("flip_vertical", flag) && flag) s.setFlipVertical(true);
    if (e.readBool("flip_horizontal", flag) && flag) s.setFlipHorizontal(true);
    int degrees = 0;
    if (e.readInt("rotate", degrees)) s.rotate(degrees);

    if (e.readString("src", im.src)) im.src = resolveAgainst(ctx.folder, im.src);
    // A slide written without its sizes (by hand) is measured and fitted
    // when it is exported, not stretched to the stage it was created on.
    const bool hasWidth = e.readInt("width", im.width);
    const bool hasHeight = e.readInt("height", im.height);
    if (!hasWidth || !hasHeight) im.width = im.height = 0;
    e.readInt("x", im.x);
    e.readInt("y", im.y);
    e.readInt("quality", im.quality);
    readKeyword(e, "image_type", im.imageType, imageTypeFromKeyword);
    e.readUnsigned("duration", s.duration);
    e.readBool("scale_to_fit", im.scaleToFit);
    e.readBool("keep_aspect_ratio", im.keepAspectRatio);
    e.readBool("auto_align", im.autoAlign);
    readKeyword(e, "h_align", im.hAlign, hAlignFromKeyword);
    readKeyword(e, "v_align", im.vAlign, vAlignFromKeyword);
    e.readBool("crop", im.crop);
    e.readInt("crop_left", im.cropRect.left);
    e.readInt("crop_top", im.cropRect.top);
    e.readInt("crop_right", im.cropRect.right);
    e.readInt("crop_bottom", im.cropRect.bottom);

    for (const XmlNode& c : e.children()) {
        const std::string name = c.name();
        if (name == "transition_in") {
            if (XmlNode t = c.firstChild())
                if (auto transition = ReadTransition(t)) s.setTransitionIn(std::move(transition));
        } else if (name == "swf_fx") {
            // A name no effect bears reads as "None".
            std::string effect;
            if (c.readString("name", effect)) s.setOverlayEffect(MakeOverlayEffect(effect));
        } else if (name == "caption_data") {
            s.captions.Read(c);
        } else if (name == "sound_data") {
            s.sound.Read(c, ctx.folder);
        } else if (name == "popup_data") {
            s.popup.read(c);
        } else if (name == "click_actions") {
            s.clickAction.read(c);
        } else if (name == "image_filters") {
            for (const XmlNode& f : c.children())
                if (auto filter = ReadFilterElement(f)) s.addFilter(std::move(filter), false);
        } else if (name == "pan_zoom") {
            for (const XmlNode& m : c.children())
                if (auto move = ReadCameraEffect(m)) s.addCameraEffect(std::move(move), Slide::kAppend);
        }
    }
}

enum class PictureOutcome { Keep, Drop, Fail };

// Finds the picture of an image slide whose file is missing: first in the
// folders relocated to during this load, then by asking the user.
PictureOutcome findPicture(Slide& s, LoadContext& ctx) {
    if (s.type != SlideType::Image || isFile(s.image.src)) return PictureOutcome::Keep;
    const std::string missing = s.image.src;
    MissingPictureHandler* handler = ctx.options.handler;
    if (!handler) {
        ctx.error = "The image file " + missing + " could not be found.";
        return PictureOutcome::Fail;
    }
    const std::string name = fs::path(missing).filename().string();
    for (const std::string& folder : ctx.relocatedFolders) {
        std::string candidate = (fs::path(folder) / name).string();
        if (!name.empty() && isFile(candidate)) {
            s.image.src = candidate;
            return PictureOutcome::Keep;
        }
    }
    switch (handler->ask(missing)) {
        case MissingPictureHandler::Choice::DontRelocate:
            return PictureOutcome::Drop;
        case MissingPictureHandler::Choice::Cancel:
            ctx.error = "Loading was cancelled: the image file " + missing + " could not be found.";
            return PictureOutcome::Fail;
        case MissingPictureHandler::Choice::Replace:
            if (auto chosen = handler->chooseImage(missing)) {
                s.image.src = *chosen;
                return PictureOutcome::Keep;
            }
            return PictureOutcome::Drop;
        case MissingPictureHandler::Choice::Relocate:
            if (auto folder = handler->chooseFolder(name)) {
                std::string candidate = (fs::path(*folder) / name).string();
                if (!name.empty() && isFile(candidate)) {
                    s.image.src = candidate;
                    ctx.relocatedFolders.push_back(*folder);
                    return PictureOutcome::Keep;
                }
            }
            handler->notRelocated(missing);
            return PictureOutcome::Drop;
    }
    return PictureOutcome::Drop;
}

bool readSlides(const XmlNode& e, SlideShow& show, LoadContext& ctx) {
    const std::vector<XmlNode> children = e.children();
    if (show.count() + children.size() > ctx.options.maxSlides) {
        ctx.error = "the project holds more than " + std::to_string(ctx.options.maxSlides) + " slides";
        return false;
    }
    for (const XmlNode& c : children) {
        // Every child is a slide whatever its name; each starts as an image slide.
        std::unique_ptr<Slide> slide = show.createSlide(SlideType::Image);
        readSlide(c, *slide, ctx);
        switch (findPicture(*slide, ctx)) {
            case PictureOutcome::Keep: show.append(std::move(slide)); break;
            case PictureOutcome::Drop: break;
            case PictureOutcome::Fail: return false;
        }
    }
    return true;
}

bool readSlideShow(const XmlNode& e, SlideShow& show, LoadContext& ctx) {
    e.readBool("use_compression", show.useCompression);
    e.readBool("disable_print", show.disablePrint);
    int size = 0;
    if (e.readInt("height", size)) show.setHeight(size);
    if (e.readInt("width", size)) show.setWidth(size);
    show.showBoundsLeft = 0;
    show.showBoundsTop = 0;
    show.showBoundsRight = show.width();
    show.showBoundsBottom = show.height();
    e.readInt("show_bounds_left", show.showBoundsLeft);
    e.readInt("show_bounds_right", show.showBoundsRight);
    e.readInt("show_bounds_top", show.showBoundsTop);
    e.readInt("show_bounds_bottom", show.showBoundsBottom);
    double fps = 0;
    if (e.readDouble("fps", fps) && fps >= 1.0 && fps <= 120.0) show.fps = static_cast<float>(fps);
    if (show.showBoundsRight <= show.showBoundsLeft) {
        show.showBoundsLeft = 0;
        show.showBoundsRight = show.width();
    }
    e.readUnsigned("bg_color", show.bgColor);
    e.readBool("use_bg_image", show.useBgImage);
    if (e.readString("bg_image", show.bgImage)) show.bgImage = resolveAgainst(ctx.folder, show.bgImage);
    e.readInt("bg_image_quality", show.bgImageQuality);
    e.readInt("bg_image_width", show.bgImageWidth);
    e.readInt("bg_image_height", show.bgImageHeight);
    e.readBool("bg_image_scale_to_fit", show.bgImageScaleToFit);
    e.readBool("bg_image_tile", show.bgImageTile);
    readKeyword(e, "bg_frame", show.bgFrame, frameFromKeyword);
    e.readUnsigned("bg_frame_color", show.bgFrameColor);
    e.readString("bg_frame_pattern", show.bgFramePattern);
    if (e.readString("bg_frame_custom_pattern", show.bgFrameCustomPattern))
        show.bgFrameCustomPattern = resolveAgainst(ctx.folder, show.bgFrameCustomPattern);
    e.readInt("bg_frame_left", show.bgFrameLeft);
    e.readInt("bg_frame_right", show.bgFrameRight);
    e.readInt("bg_frame_top", show.bgFrameTop);
    e.readInt("bg_frame_bottom", show.bgFrameBottom);
    e.readBool("controls", show.controls.enabled);
    e.readInt("controls_x", show.controls.x);
    e.readInt("controls_y", show.controls.y);
    e.readInt("controls_width", show.controls.width);
    e.readInt("controls_height", show.controls.height);
    e.readString("control_set", show.controls.controlSet);
    readKeyword(e, "control_align", show.controls.align, controlAlignFromKeyword);
    e.readBool("mute_control", show.muteControl.enabled);
    e.readInt("mute_control_x", show.muteControl.x);
    e.readInt("mute_control_y", show.muteControl.y);
    e.readInt("mute_control_width", show.muteControl.width);
    e.readInt("mute_control_height", show.muteControl.height);
    e.readString("mute_control_set", show.muteControl.controlSet);
    readKeyword(e, "mute_control_align", show.muteControl.align, controlAlignFromKeyword);

    for (const XmlNode& c : e.children()) {
        const std::string name = c.name();
        if (name == "slides") {
            if (!readSlides(c, show, ctx)) return false;
        } else if (name == "swf_data") {
            show.swfData.Read(c, ctx.folder);
        } else if (name == "caption_data") {
            show.captions.Read(c);
        } else if (name == "sound_data") {
            show.sound.Read(c, ctx.folder);
        }
    }
    return true;
}

bool loadDocument(const XmlReader& reader, const std::string& folder, SlideShow& show, PublishSettings& publish,
                  std::string* error, const LoadOptions& options) {
    XmlNode root;
    for (const XmlNode& c : reader.documentElement().children()) {
        if (c.name() == "quillet") {
            root = c;
            break;
        }
    }
    if (!root) {
        if (error) *error = "not a Quillet project: the file holds no quillet element";
        return false;
    }

    // Read into the caller's show with its old contents set aside, so that
    // its own slide preparation runs and a failure can put everything back.
    SlideShow saved;
    saved.swapContents(show);
    show.reset();
    PublishSettings readPublish;
    LoadContext ctx{folder, options, {}, {}};
    bool ok = true;
    for (const XmlNode& c : root.children()) {
        const std::string name = c.name();
        if (name == "slide_show") {
            ok = readSlideShow(c, show, ctx);
            if (!ok) break;
        } else if (name == "publish_data") {
            readPublish.Read(c, folder);
        }
    }
    if (!ok) {
        show.reset();
        show.swapContents(saved);
        if (error) *error = ctx.error;
        return false;
    }
    publish = std::move(readPublish);
    return true;
}

}  // namespace

void WriteSlideShow(XmlWriter& w, const SlideShow& s) {
    w.write("<slide_show");
    w.attribute("width", s.width());
    w.attribute("height", s.height());
    w.attributeReal("fps", s.fps);
    w.attribute("use_compression", s.useCompression);
    w.attribute("disable_print", s.disablePrint);
    w.attribute("show_bounds_left", s.showBoundsLeft);
    w.attribute("show_bounds_right", s.showBoundsRight);
    w.attribute("show_bounds_top", s.showBoundsTop);
    w.attribute("show_bounds_bottom", s.showBoundsBottom);
    w.attribute("bg_color", s.bgColor);
    w.attribute("use_bg_image", s.useBgImage);
    w.attribute("bg_image", s.bgImage);
    w.attribute("bg_image_quality", s.bgImageQuality);
    w.attribute("bg_image_width", s.bgImageWidth);
    w.attribute("bg_image_height", s.bgImageHeight);
    w.attribute("bg_image_scale_to_fit", s.bgImageScaleToFit);
    w.attribute("bg_image_tile", s.bgImageTile);
    w.attributeRaw("bg_frame", frameKeyword(s.bgFrame));
    w.attribute("bg_frame_color", s.bgFrameColor);
    w.attribute("bg_frame_pattern", s.bgFramePattern);
    w.attribute("bg_frame_custom_pattern", s.bgFrameCustomPattern);
    w.attribute("bg_frame_left", s.bgFrameLeft);
    w.attribute("bg_frame_right", s.bgFrameRight);
    w.attribute("bg_frame_top", s.bgFrameTop);
    w.attribute("bg_frame_bottom", s.bgFrameBottom);
    w.attribute("controls", s.controls.enabled);
    w.attribute("controls_x", s.controls.x);
    w.attribute("controls_y", s.controls.y);
    w.attribute("controls_width", s.controls.width);
    w.attribute("controls_height", s.controls.height);
    writeSetName(w, "control_set", s.controls.controlSet);
    w.attributeRaw("control_align", controlAlignKeyword(s.controls.align));
    w.attribute("mute_control", s.muteControl.enabled);
    w.attribute("mute_control_x", s.muteControl.x);
    w.attribute("mute_control_y", s.muteControl.y);
    w.attribute("mute_control_width", s.muteControl.width);
    w.attribute("mute_control_height", s.muteControl.height);
    writeSetName(w, "mute_control_set", s.muteControl.controlSet);
    // The mute button's custom placement is written as an empty value (and so
    // reads back as the default placement).
    w.attributeRaw("mute_control_align", s.muteControl.align == ControlPlacement::Align::Custom
                                             ? ""
                                             : controlAlignKeyword(s.muteControl.align));
    w.write(">\n");

    w.write("<slides>\n");
    for (const auto& slide : s.slides()) writeSlide(w, *slide);
    w.write("</slides>\n");
    s.swfData.Write(w);
    s.captions.Write(w);
    s.sound.Write(w);
    w.write("</slide_show>\n");
}

std::string ProjectText(const SlideShow& show, const PublishSettings& publish) {
    std::ostringstream out;
    XmlWriter w;
    w.open(out);
    w.write("<quillet");
    w.attribute("version_major", 1u);
    w.attribute("version_minor", 119u);
    w.write(">\n");
    WriteSlideShow(w, show);
    publish.Write(w);
    w.write("</quillet>\n");
    w.close();
    return std::move(out).str();
}

bool SaveProject(const std::string& path, const SlideShow& show, const PublishSettings& publish,
                 std::string* error) {
    std::string why;
    if (!WriteFileAtomically(path, ProjectText(show, publish), &why)) {
        if (error) *error = "the project could not be saved: " + why;
        return false;
    }
    return true;
}

bool LoadProjectText(std::string_view text, const std::string& projectFolder, SlideShow& show,
                     PublishSettings& publish, std::string* error, const LoadOptions& options) {
    // Our files carry no encoding attribute and are read in the ansi mode,
    // whatever a file read earlier in this run declared.
    setCurrentTextEncoding(TextEncoding::Ansi);
    XmlReader reader;
    if (!reader.loadBuffer(text)) {
        if (error) *error = reader.error();
        return false;
    }
    return loadDocument(reader, projectFolder, show, publish, error, options);
}

bool LoadProject(const std::string& path, SlideShow& show, PublishSettings& publish, std::string* error,
                 const LoadOptions& options) {
    auto fail = [&](std::string problem) {
        if (error) *error = std::move(problem);
        return false;
    };
    std::error_code ec;
    fs::file_status status = fs::status(path, ec);
    if (!fs::exists(status)) return fail(kProjectNotFound);
    if (fs::is_directory(status)) return fail("the project could not be opened: it is a folder, not a file");
    if (!fs::is_regular_file(status)) return fail("the project could not be opened: it is not a regular file");
    uintmax_t size = fs::file_size(path, ec);
    if (!ec && size > options.maxFileSize)
        return fail("the file is too large to be a project (" + std::to_string(size) + " bytes)");

    std::ifstream in(path, std::ios::binary);
    if (!in) return fail("the project could not be opened: the file cannot be read");
    std::string text;
    if (!ec) text.reserve(static_cast<size_t>(size));
    char buf[1 << 16];
    while (in.read(buf, sizeof buf) || in.gcount() > 0) {
        text.append(buf, static_cast<size_t>(in.gcount()));
        if (text.size() > options.maxFileSize)
            return fail("the file is too large to be a project (more than " + std::to_string(options.maxFileSize) +
                        " bytes)");
    }
    if (in.bad()) return fail("the project could not be opened: the file cannot be read");

    std::string folder = fs::absolute(fs::path(path), ec).parent_path().string();
    return LoadProjectText(text, folder, show, publish, error, options);
}

}  // namespace quillet
