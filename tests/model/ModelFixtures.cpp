#include "ModelFixtures.h"

#include "effects/CameraEffect.h"
#include "effects/Transition.h"
#include "media/ImageFilter.h"
#include "model/PublishSettings.h"
#include "model/SlideShow.h"
#include "support/TempDir.h"

namespace quillet::test {

void writeTinyBmp(const std::string& path) {
    std::string b;
    auto u16 = [&](unsigned v) { b += static_cast<char>(v & 255), b += static_cast<char>((v >> 8) & 255); };
    auto u32 = [&](unsigned v) { u16(v & 0xFFFF), u16(v >> 16); };
    b += "BM";
    u32(70), u32(0), u32(54);                 // file size, reserved, pixel offset
    u32(40), u32(2), u32(2), u16(1), u16(24);  // header size, 2x2, 1 plane, 24 bits
    u32(0), u32(16), u32(2835), u32(2835), u32(0), u32(0);
    for (int row = 0; row < 2; ++row) b += std::string("\x00\x00\xff\x00\xff\x00\x00\x00", 8);
    writeFile(path, b);
}

namespace {

// Gives every option of a transition or filter a value other than its default.
template <class Effect>
void changeOptions(Effect& effect) {
    const OptionTable options = effect.Options();
    for (size_t i = 0; i < options.size(); ++i) {
        const OptionSpec& o = options[i];
        double v = o.defaultValue;
        switch (o.kind) {
            case OptionKind::List:
                v = o.items.size() > 1 ? static_cast<double>(o.items.size() - 1) : 0;
                if (v == o.defaultValue) v = 0;
                break;
            case OptionKind::Integer: v = o.defaultValue + 3; break;
            case OptionKind::Real: v = o.defaultValue + 0.5; break;
            case OptionKind::Bool: v = o.defaultValue != 0 ? 0 : 1; break;
            case OptionKind::Color: v = 0x336699; break;
        }
        effect.SetOptionValue(i, v);
    }
}

}  // namespace

void buildFullShow(SlideShow& show, PublishSettings& publish, const std::string& folder) {
    show.reset();
    show.setSize(640, 480);
    show.fps = 12.5f;
    show.useCompression = true;
    show.disablePrint = true;
    show.showBoundsLeft = 5;
    show.showBoundsTop = 6;
    show.showBoundsRight = 600;
    show.showBoundsBottom = 470;
    show.bgColor = 0x102030;
    show.useBgImage = true;
    show.bgImage = folder + "/back & \"ground\".bmp";
    show.bgImageQuality = 70;
    show.bgImageWidth = 641;
    show.bgImageHeight = 481;
    show.bgImageScaleToFit = false;
    show.bgImageTile = true;
    show.bgFrame = SlideShow::Frame::PatternCustom;
    show.bgFrameColor = 0xABCDEF;
    show.bgFramePattern = "Marble";
    show.bgFrameCustomPattern = folder + "/pattern.bmp";
    show.bgFrameLeft = 1;
    show.bgFrameTop = 2;
    show.bgFrameRight = 3;
    show.bgFrameBottom = 4;
    show.controls = {"Classic", ControlPlacement::Align::Custom, 11, 12, 13, 14, true};
    show.muteControl = {"Round", ControlPlacement::Align::TopLeft, 21, 22, 23, 24, true};

    SwfData& d = show.swfData;
    d.movieStartAction = SwfData::StartAction::PlayAfterPause;
    d.pauseTime = 1500;
    d.preload = true;
    d.preloadImportSrc = folder + "/preloader.swf";
    d.preloadAmount = 40;
    d.preloadText = "Wait <please> & see";
    d.preloadTextColor = 0xFF8800;
    d.preloadFont.height = -20;
    d.preloadFont.weight = 700;
    d.preloadFont.italic = 1;
    d.loop = SwfData::Loop::Times;
    d.loopCount = 3;
    d.mouseClickAction = {true, 1, "http://example.com/next.swf", "_top"};
    d.movieEndAction = {true, 2, "http://example.com/end", "_parent"};

    Caption showCaption;
    showCaption.text = "The whole show";
    showCaption.effect = "Fade In";
    show.captions.items.push_back(showCaption);
    show.sound.include = true;
    show.sound.playUntilNextSound = true;
    show.sound.sounds.push_back({folder + "/music.mp3", 100, 60000, false, true, 22050, 96, false, true});

    const TransitionRegistry& transitions = TransitionRegistry::instance();
    const ImageFilterRegistry& filters = ImageFilterRegistry::instance();
    // One slide per transition, every transition with options changed.
    for (size_t i = 0; i < transitions.count(); ++i) {
        const bool blank = i % 5 == 4;
        auto s = show.createSlide(blank ? SlideType::Blank : SlideType::Image);
        SlideImage& im = s->image;
        if (!blank) {
            im.src = folder + "/pic" + std::to_string(i) + (i == 1 ? " \xe9t\xe9 & co" : "") + ".bmp";
            writeTinyBmp(im.src);
        }
        s->duration = 1000 + static_cast<uint32_t>(i) * 10;
        im.width = 100 + static_cast<int>(i);
        im.height = 80;
        im.x = -3;
        im.y = 7;
        im.quality = 50 + static_cast<int>(i);
        im.imageType = static_cast<ImageType>(i % 9);
        im.scaleToFit = i % 2 == 0;
        im.keepAspectRatio = i % 3 == 0;
        im.autoAlign = i % 4 == 0;
        im.hAlign = static_cast<HAlign>(i % 3);
        im.vAlign = static_cast<VAlign>((i + 1) % 3);
        im.crop = i % 2 == 1;
        im.cropRect = {1, 2, 30, 40};
        if (i % 6 == 1) s->setFlipVertical(true);
        if (i % 7 == 2) s->setFlipHorizontal(true);
        s->rotate(static_cast<int>(i % 4) * 90);

        auto t = transitions.At(static_cast<int>(i))->Clone();
        t->SetDuration(500 + static_cast<uint32_t>(i));
        changeOptions(*t);
        s->setTransitionIn(std::move(t));

        // Filters: a few per slide, all of them across the show.
        for (size_t k = i; k < filters.count(); k += transitions.count()) {
            auto f = filters.At(k)->Clone();
            changeOptions(*f);
            s->addFilter(std::move(f));
        }
        if (i == 0)
            for (size_t k = transitions.count(); k < filters.count(); ++k) s->addFilter(filters.At(k)->Clone());

        ClickAction& c = s->clickAction;
        c.enable = i % 2 == 0;
        c.type = static_cast<ClickAction::Type>(i % 8);
        c.jumpTo = static_cast<int>(i) + 1;
        c.target = "_blank";
        c.url = "http://example.com/?a=1&b=\"2\"";
        c.popup = i % 3 == 0;
        c.pauseAfter = true;
        c.loadUrlOnDisplay = i % 2 == 1;
        c.onDisplayLoadUrl = "http://example.com/shown";
        c.onDisplayLoadTarget = "_top";

        if (i % 3 != 2) {
            auto pz = std::make_unique<PanZoomEffect>();
            pz->duration = 2500;
            pz->SetMove(-30 * static_cast<int>(i), 45, 1.25 + 0.001 * static_cast<double>(i));
            s->addCameraEffect(std::move(pz));
            auto stillCamera = MakeCameraEffect("none");
            stillCamera->duration = 700;
            s->addCameraEffect(std::move(stillCamera));
        }
        if (i % 2 == 0) {
            Caption cap;
            cap.kind = static_cast<int32_t>(i % 4 == 0 ? 0 : 1);
            cap.importSource = folder + "/caption.glw";
            cap.text = "Caption\r\nline two \xfc";
            cap.fontName = "DejaVu Sans";
            cap.fontSize = 18 + static_cast<int>(i);
            cap.italic = true;
            cap.bold = i % 4 == 0;
            cap.color = 0x00FF00;
            cap.alpha = 80;
            cap.x = 10;
            cap.y = -20;
            cap.hAlign = Caption::Right;
            cap.vAlign = Caption::Top;
            cap.alignToDoc = false;
            cap.tracking = 2;
            cap.leading = -1;
            cap.startTime = 250;
            cap.duration = 1750;
            cap.showTillNext = false;
            cap.effect = CaptionEffectNames()[i % CaptionEffectNames().size()];
            s->captions.items.push_back(cap);
            cap.text = "second";
            s->captions.items.push_back(cap);
        }
        if (i % 4 == 1) {
            s->sound.include = true;
            s->sound.sounds.push_back({folder + "/voice.wav", 0, 3000, true, false, 11025, 32, false, false});
            s->sound.sounds.push_back({folder + "/bell.aiff", 10, 20, false, true, 44100, 320, true, true});
        }
        s->popup = {200 + static_cast<int>(i), 150, 10, 20, true, false, true, false, true, false, true};
        show.append(std::move(s));
    }

    publish.reset();
    publish.output = folder + "/out";
    publish.useDefaultBaseFilename = false;
    publish.setBaseFilename("My Show");
    publish.swf.publish = true;
    publish.flv.publish = true;  // written from the movie's flag, which is also true
    publish.html.publish = true;
    publish.macProjector.publish = true;
    publish.winProjector.publish = false;
    publish.quicktime.publish = true;
    publish.screensaver.publish = true;
    publish.publishInstaller = true;
    publish.installerFilename = "Setup & Go.exe";
    HtmlSettings& h = publish.htmlSettings;
    h.swf = "My Show.swf";
    h.origWidth = 640;
    h.origHeight = 480;
    h.width = 100;
    h.height = 90;
    h.bgcolor = 0x336699;
    h.autoPlay = false;
    h.loop = false;
    h.displayMenu = false;
    h.deviceFont = true;
    h.popupFunction = true;
    h.dimensionType = HtmlSettings::Percent;
    h.quality = HtmlSettings::AutoLow;
    h.windowMode = HtmlSettings::Transparent;
    h.htmlAlign = HtmlSettings::HBottom;
    h.scale = HtmlSettings::ExactFit;
    h.flashAlign = HtmlSettings::FBottomRight;
    publish.macProjectorSettings = {true, false, true};
    publish.winProjectorSettings = {false, true, false};
}

}  // namespace quillet::test
