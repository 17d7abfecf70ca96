// The movie assembly: what a show becomes, frame by frame and id by id, read
// back through our own SWF reader.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <thread>

#include "effects/CameraEffect.h"
#include "effects/Transition.h"
#include "media/ImageFilter.h"
#include "media/Progress.h"
#include "model/Slide.h"
#include "model/SlideShow.h"
#include "movie/MovieExporter.h"
#include "movie/SlideStep.h"
#include "support/TempDir.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

using namespace quillet;

namespace {

// A small solid picture made by ImageMagick.
std::string MakePicture(const test::TempDir& dir, const std::string& name, const std::string& color) {
    std::string path = dir.file(name);
    EXPECT_EQ(test::runCommand("convert -size 64x48 xc:'" + color + "' '" + path + "'"), 0);
    return path;
}

std::unique_ptr<Slide> ImageSlide(SlideShow& show, const std::string& path, uint32_t duration) {
    auto slide = show.createSlide(SlideType::Image);
    slide->image.src = path;
    slide->duration = duration;
    return slide;
}

void SetTransition(Slide& slide, const char* name, uint32_t ms) {
    auto t = TransitionRegistry::instance().Find(name)->Clone();
    t->SetDuration(ms);
    slide.setTransitionIn(std::move(t));
}

struct Movie {
    SwfReader reader;
    std::vector<uint16_t> codes;
    std::vector<std::string> labels;
};

void ReadMovie(const std::string& path, Movie& m) {
    ASSERT_TRUE(m.reader.ReadFile(path)) << m.reader.Error();
    for (const auto& tag : m.reader.Tags()) {
        m.codes.push_back(tag->Code());
        if (auto* label = dynamic_cast<const FrameLabelTag*>(tag.get())) m.labels.push_back(label->label);
    }
}

// Cancels when the export announces the given slide.
class CancelAt : public ProgressSink {
public:
    explicit CancelAt(int slide) : text_("Processing " + std::to_string(slide) + " of") {}
    void setMainText(const std::string& text) override {
        if (text.rfind(text_, 0) == 0) cancelled_ = true;
    }
    bool cancelled() const override { return cancelled_; }

private:
    std::string text_;
    bool cancelled_ = false;
};

}  // namespace

TEST(Export, EmptyShowWritesBackgroundEndScriptAndOneFrame) {
    test::TempDir dir;
    SlideShow show;
    show.bgColor = 0x336699;
    ExportResult r = MovieExporter(show).ExportMovie(dir.file("empty.swf"));
    ASSERT_TRUE(r.ok) << r.error;
    Movie m;
    ReadMovie(dir.file("empty.swf"), m);
    EXPECT_EQ(m.codes, (std::vector<uint16_t>{SwfTagCode::SetBackgroundColor, SwfTagCode::DoAction,
                                              SwfTagCode::ShowFrame, SwfTagCode::End}));
    EXPECT_EQ(m.reader.Header().frameCount, 1);
    EXPECT_EQ(m.reader.Header().version, 5);
    auto* bg = dynamic_cast<const SetBackgroundColorTag*>(m.reader.Tags()[0].get());
    ASSERT_NE(bg, nullptr);
    EXPECT_EQ(bg->color, SwfColor(0x33, 0x66, 0x99));
}

TEST(Export, FramesIdsAndLabelsFollowTheShow) {
    test::TempDir dir;
    SlideShow show;
    show.setSize(64, 48);
    show.fps = 12;
    // Slide 1: no transition, a 1 s camera move, 2.5 s hold (30 frames, truncated).
    auto s1 = ImageSlide(show, MakePicture(dir, "red.png", "#ff0000"), 2500);
    auto move = std::make_unique<PanZoomEffect>();
    move->duration = 1000;
    move->SetMove(100, 0, 1.5);
    s1->addCameraEffect(std::move(move));
    // Slide 2: a blank slide of 50 ms (no hold frame) behind a 1 s cross fade.
    auto s2 = show.createSlide(SlideType::Blank);
    s2->duration = 50;
    SetTransition(*s2, "Cross Fade", 1000);
    // Slide 3: 1 s fade in, 1 s hold.
    auto s3 = ImageSlide(show, MakePicture(dir, "blue.gif", "#0000ff"), 1000);
    SetTransition(*s3, "Fade In", 1000);
    show.append(std::move(s1));
    show.append(std::move(s2));
    show.append(std::move(s3));

    ExportResult r = MovieExporter(show).ExportMovie(dir.file("show.swf"));
    ASSERT_TRUE(r.ok) << r.error;
    Movie m;
    ReadMovie(dir.file("show.swf"), m);
    // (0 + 12 + 30) + (12 + 0 + 0) + (12 + 0 + 12) + the end frame.
    EXPECT_EQ(m.reader.Header().frameCount, 42 + 12 + 24 + 1);
    EXPECT_EQ(r.frameCount, m.reader.Header().frameCount);
    EXPECT_EQ(m.labels, (std::vector<std::string>{"slidepre_1", "slide_1", "slidepre_2", "slide_2", "slidepre_3",
                                                  "slide_3"}));

    // Character ids run 1, 2, 3... in definition order; every placement
    // refers to a character already defined.
    std::vector<uint16_t> ids;
    std::set<uint16_t> defined;
    for (const auto& tag : m.reader.Tags()) {
        if (tag->HasId()) {
            ids.push_back(tag->GetId());
            defined.insert(tag->GetId());
        }
        if (auto* place = dynamic_cast<const PlaceObject2Tag*>(tag.get()); place && place->characterId) {
            EXPECT_TRUE(defined.count(*place->characterId)) << "character " << *place->characterId;
        }
    }
    ASSERT_FALSE(ids.empty());
    for (size_t i = 0; i < ids.size(); ++i) EXPECT_EQ(ids[i], i + 1);

    // The pan/zoom's last frame leaves slide 1 at zoom 1.5 and moved right.
    const PlaceObject2Tag* last = nullptr;
    for (const auto& tag : m.reader.Tags()) {
        if (auto* label = dynamic_cast<const FrameLabelTag*>(tag.get()); label && label->label == "slidepre_2") break;
        if (auto* place = dynamic_cast<const PlaceObject2Tag*>(tag.get()); place && place->move && place->matrix)
            last = place;
    }
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->matrix->scaleX, 0x18000);
    EXPECT_EQ(last->matrix->translateX, 96);  // 100 twips over 12 frames moves 8 a frame
}

TEST(Export, CancellingDuringSlideThreeLeavesAValidMovieOfTwoSlides) {
    test::TempDir dir;
    SlideShow show;
    show.setSize(64, 48);
    std::string pic = MakePicture(dir, "green.png", "#00ff00");
    for (int i = 0; i < 10; ++i) show.append(ImageSlide(show, pic, 1000));
    CancelAt cancel(3);
    ExportResult r = MovieExporter(show).ExportMovie(dir.file("part.swf"), &cancel);
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(r.slidesWritten, 2);
    Movie m;
    ReadMovie(dir.file("part.swf"), m);
    EXPECT_EQ(m.labels, (std::vector<std::string>{"slidepre_1", "slide_1", "slidepre_2", "slide_2"}));
    EXPECT_EQ(m.codes.back(), SwfTagCode::End);
    EXPECT_EQ(m.reader.Header().frameCount, 24);
}

TEST(Export, CompressionRaisesTheVersionUnlessTurnedOff) {
    test::TempDir dir;
    SlideShow show;
    show.setSize(64, 48);
    show.useCompression = true;
    show.append(ImageSlide(show, MakePicture(dir, "p.png", "#808080"), 500));
    ASSERT_TRUE(MovieExporter(show).ExportMovie(dir.file("c.swf")).ok);
    std::string bytes = test::readFile(dir.file("c.swf"));
    ASSERT_GE(bytes.size(), 8u);
    EXPECT_EQ(bytes.substr(0, 3), "CWS");
    EXPECT_GE(bytes[3], 6);

    ExportOptions plain;
    plain.forceUncompressed = true;
    ASSERT_TRUE(MovieExporter(show).ExportMovie(dir.file("u.swf"), nullptr, plain).ok);
    std::string u = test::readFile(dir.file("u.swf"));
    EXPECT_EQ(u.substr(0, 3), "FWS");
    EXPECT_EQ(u[3], 5);
    // The compressed file's length field is the plain movie's length.
    EXPECT_EQ(bytes.substr(4, 4), u.substr(4, 4));
}

TEST(Export, BadPicturesAndBadDestinationsAreReported) {
    test::TempDir dir;
    SlideShow show;
    show.setSize(64, 48);
    show.append(ImageSlide(show, dir.file("missing.jpg"), 500));
    test::writeFile(dir.file("notapicture.png"), "hello");
    show.append(ImageSlide(show, dir.file("notapicture.png"), 500));
    ExportResult r = MovieExporter(show).ExportMovie(dir.file("show.swf"));
    // The export goes on: both slides show the background.
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_GE(r.warnings.size(), 2u);
    EXPECT_NE(r.warnings[0].find("missing.jpg"), std::string::npos) << r.warnings[0];
    Movie m;
    ReadMovie(dir.file("show.swf"), m);
    EXPECT_EQ(m.labels.size(), 4u);

    ExportResult bad = MovieExporter(show).ExportMovie(dir.file("no/such/folder/show.swf"));
    EXPECT_FALSE(bad.ok);
    EXPECT_FALSE(bad.error.empty());
}

TEST(Export, PicturesLoadedAtPlayTimeAreFoundFromTheMovie) {
    EXPECT_EQ(PictureUrl("/site/pictures/a.jpg", "/site"), "pictures/a.jpg");
    EXPECT_EQ(PictureUrl("/site/a.jpg", "/site/movies"), "../a.jpg");
    EXPECT_EQ(PictureUrl("/site/./x/../a.jpg", "/site/"), "a.jpg");
    // Names that are not plain URL text are escaped byte by byte.
    EXPECT_EQ(PictureUrl("/site/My Photos/day #1 50%?.jpg", "/site"), "My%20Photos/day%20%231%2050%25%3F.jpg");
    EXPECT_EQ(PictureUrl("/site/\xc3\xa9t\xc3\xa9.jpg", "/site"), "%C3%A9t%C3%A9.jpg");
}

TEST(Export, ShowsBeyondTheFileFieldsAreRefusedBeforeWriting) {
    test::TempDir dir;
    struct Case {
        uint32_t durationMs;
        bool refused;
        bool warned;  // the player's 16,000-frame limit
    } cases[] = {
        // Hold frames at 12 fps, plus the end frame.
        {5833334, true, false},   // 70,000 + 1: the header would have said 4,465
        {5461300, true, false},   // 65,535 + 1
        {5461167, false, true},   // 65,534 + 1: the most a movie holds
        {1333340, false, true},   // 16,000 + 1
        {1333300, false, false},  // 15,999 + 1
    };
    for (const Case& c : cases) {
        SlideShow show;
        show.setSize(32, 24);
        show.fps = 12;
        auto blank = show.createSlide(SlideType::Blank);
        blank->duration = c.durationMs;
        show.append(std::move(blank));
        const std::string path = dir.file("old.swf");
        test::writeFile(path, "the user's old movie");
        ExportResult r = MovieExporter(show).ExportMovie(path);
        EXPECT_EQ(r.ok, !c.refused) << c.durationMs << ": " << r.error;
        if (c.refused) {
            EXPECT_NE(r.error.find("65,535"), std::string::npos) << r.error;
            EXPECT_EQ(test::readFile(path), "the user's old movie");
        } else {
            Movie m;
            ReadMovie(path, m);
            EXPECT_EQ(m.reader.Header().frameCount, r.frameCount);
            EXPECT_EQ(r.frameCount, SlideStep::HoldFrames(c.durationMs, 12) + 1);
        }
        const bool warned = !r.warnings.empty() && r.warnings.back() == kFrameLimitWarning;
        EXPECT_EQ(warned, c.warned) << c.durationMs;
    }
    // Nothing but the user's file is left in the folder.
    size_t files = 0;
    for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(dir.path())) ++files;
    EXPECT_EQ(files, 1u);
}

TEST(Export, ExtremeNumbersFromAProjectAreHeldToTheFileRange) {
    test::TempDir dir;
    SlideShow show;
    show.setSize(64, 48);
    auto slide = ImageSlide(show, MakePicture(dir, "p.png", "#808080"), 500);
    slide->image.scaleToFit = false;
    slide->image.autoAlign = false;
    slide->image.width = 64;
    slide->image.height = 48;
    slide->image.x = 200000000;
    slide->image.y = -200000000;
    auto move = std::make_unique<PanZoomEffect>();
    move->duration = 500;
    move->SetMove(2147483647, -2147483647 - 1, 1e12);
    slide->addCameraEffect(std::move(move));
    show.append(std::move(slide));
    auto huge = ImageSlide(show, MakePicture(dir, "q.png", "#808080"), 500);
    huge->image.scaleToFit = false;
    huge->image.width = 200000000;  // no picture of that size is drawn
    huge->image.height = 48;
    show.append(std::move(huge));

    ExportResult r = MovieExporter(show).ExportMovie(dir.file("x.swf"));
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_FALSE(r.warnings.empty());
    EXPECT_NE(r.warnings[0].find("10000"), std::string::npos) << r.warnings[0];
    Movie m;
    ReadMovie(dir.file("x.swf"), m);
    const PlaceObject2Tag* last = nullptr;  // slide 1's last camera frame
    for (const auto& tag : m.reader.Tags()) {
        if (auto* label = dynamic_cast<const FrameLabelTag*>(tag.get()); label && label->label == "slidepre_2") break;
        if (auto* place = dynamic_cast<const PlaceObject2Tag*>(tag.get()); place && place->matrix) last = place;
    }
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->matrix->translateX, kSwfFieldMax);
    EXPECT_EQ(last->matrix->translateY, kSwfFieldMin);
    EXPECT_EQ(last->matrix->scaleX, kSwfFieldMax);
}

TEST(Export, PreparedPicturesComeFromTheCacheUntilTheirSettingsChange) {
    test::TempDir dir;
    SlideShow show;
    show.setSize(64, 48);
    for (const char* color : {"#ff0000", "#00ff00", "#0000ff"})
        show.append(ImageSlide(show, MakePicture(dir, std::string(color + 1) + ".png", color), 500));
    ExportOptions options;
    options.cacheFolder = dir.file("cache");

    ExportResult first = MovieExporter(show).ExportMovie(dir.file("a.swf"), nullptr, options);
    ASSERT_TRUE(first.ok) << first.error;
    EXPECT_EQ(first.picturesPrepared, 3);
    EXPECT_EQ(first.picturesFromCache, 0);

    // A new duration changes no picture; the movie is the same.
    show.slideAt(1)->duration = 1500;
    ExportResult second = MovieExporter(show).ExportMovie(dir.file("b.swf"), nullptr, options);
    ASSERT_TRUE(second.ok);
    EXPECT_EQ(second.picturesPrepared, 0);
    EXPECT_EQ(second.picturesFromCache, 3);
    show.slideAt(1)->duration = 500;
    ASSERT_TRUE(MovieExporter(show).ExportMovie(dir.file("c.swf"), nullptr, options).ok);
    EXPECT_EQ(test::readFile(dir.file("a.swf")), test::readFile(dir.file("c.swf")));

    // A filter on one slide prepares that slide alone.
    show.slideAt(2)->addFilter(ImageFilterRegistry::instance().Create("Grayscale"));
    ExportResult third = MovieExporter(show).ExportMovie(dir.file("d.swf"), nullptr, options);
    EXPECT_EQ(third.picturesPrepared, 1);
    EXPECT_EQ(third.picturesFromCache, 2);

    // A damaged entry is found out and rebuilt; a changed picture file too.
    for (const auto& e : std::filesystem::recursive_directory_iterator(dir.file("cache")))
        if (e.is_regular_file()) {
            std::string bytes = test::readFile(e.path().string());
            bytes[bytes.size() / 2] ^= 0x55;
            test::writeFile(e.path().string(), bytes);
        }
    MakePicture(dir, "ff0000.png", "#ff00ff");
    ExportResult fourth = MovieExporter(show).ExportMovie(dir.file("e.swf"), nullptr, options);
    ASSERT_TRUE(fourth.ok);
    EXPECT_EQ(fourth.picturesPrepared, 3);
    ExportResult fifth = MovieExporter(show).ExportMovie(dir.file("f.swf"), nullptr, options);
    EXPECT_EQ(fifth.picturesFromCache, 3);
    EXPECT_EQ(test::readFile(dir.file("e.swf")), test::readFile(dir.file("f.swf")));

    // Two exports filling one empty cache at once both succeed alike.
    options.cacheFolder = dir.file("shared-cache");
    ExportResult both[2];
    std::thread other([&] { both[1] = MovieExporter(show).ExportMovie(dir.file("g2.swf"), nullptr, options); });
    both[0] = MovieExporter(show).ExportMovie(dir.file("g1.swf"), nullptr, options);
    other.join();
    EXPECT_TRUE(both[0].ok && both[1].ok);
    EXPECT_EQ(test::readFile(dir.file("g1.swf")), test::readFile(dir.file("e.swf")));
    EXPECT_EQ(test::readFile(dir.file("g2.swf")), test::readFile(dir.file("e.swf")));
}
