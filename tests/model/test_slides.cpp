// The in-memory model: slide defaults, orientation, effects lists, the show's
// list operations, total times and the status text.
#include <gtest/gtest.h>

#include "effects/CameraEffect.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "media/Bitmap.h"
#include "media/ImageFilter.h"
#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "model/SlideList.h"
#include "model/SlideShow.h"
#include "settings/AppSettings.h"

using namespace quillet;

namespace {

std::unique_ptr<CameraEffect> still(uint32_t ms) {
    auto m = MakeCameraEffect("none");
    m->duration = ms;
    return m;
}

std::unique_ptr<Transition> transition(const char* name, uint32_t ms) {
    auto t = TransitionRegistry::instance().Find(name)->Clone();
    t->SetDuration(ms);
    return t;
}

// Restores the run's settings after a test changes them.
struct SettingsGuard {
    AppSettings saved = AppSettings::current();
    ~SettingsGuard() { AppSettings::current() = saved; }
};

}  // namespace

TEST(Slide, NewSlideDefaultsComeFromTheSettings) {
    SettingsGuard guard;
    SlideShow show;
    auto plain = show.createSlide(SlideType::Image);
    EXPECT_EQ(plain->image.quality, 80);
    EXPECT_EQ(plain->transitionIn().duration(), 2000u);
    EXPECT_EQ(plain->overlayEffect().name(), "");
    EXPECT_EQ(plain->show(), &show);
    // 2000 ms with the "None" transition is 2000, not 4000.
    EXPECT_EQ(plain->totalTime(), 2000u);

    AppSettings::current().defaultImageQuality = 33;
    AppSettings::current().defaultImageHAlign = AppSettings::AlignEnd;
    AppSettings::current().defaultImageVAlign = AppSettings::AlignStart;
    AppSettings::current().defaultImageScaleToFit = false;
    AppSettings::current().defaultImageAdjustBitmapShift = true;
    plain->duration = 5;
    plain->addCameraEffect(still(10));
    plain->setTransitionIn(transition("Cross Fade", 700));
    plain->reset();  // reads the settings as they are now
    EXPECT_EQ(plain->image.quality, 33);
    EXPECT_EQ(plain->image.hAlign, HAlign::Right);
    EXPECT_EQ(plain->image.vAlign, VAlign::Top);
    EXPECT_FALSE(plain->image.scaleToFit);
    EXPECT_TRUE(plain->image.adjustBitmapShift);
    EXPECT_EQ(plain->duration, 2000u);
    EXPECT_EQ(plain->cameraEffectCount(), 0u);
    EXPECT_EQ(plain->transitionIn().name(), "None");
}

// The corner record under turns and flips is checked on SlideImage (tests/media).
TEST(Slide, RotationSumsAndAbsurdTurns) {
    SlideShow show;
    auto s = show.createSlide(SlideType::Image);
    s->image.width = 300;
    s->image.height = 200;
    s->rotate(270);
    s->rotate(180);
    EXPECT_EQ(s->image.rotation, 90);
    EXPECT_EQ(s->image.width, 200);  // one quarter turn and one half turn: swapped once
    EXPECT_EQ(s->image.height, 300);
    s->rotate(0);
    s->rotate(-90);
    EXPECT_EQ(s->image.rotation, 0);
    EXPECT_EQ(s->image.width, 300);
    s->rotate(-90);
    EXPECT_EQ(s->image.rotation, 270);
    // Absurd turns from a file stay in range and cannot overflow.
    s->rotate(INT32_MAX);
    EXPECT_GE(s->image.rotation, 0);
    EXPECT_LT(s->image.rotation, 360);
    s->rotate(INT32_MIN);
    EXPECT_GE(s->image.rotation, 0);
    EXPECT_LT(s->image.rotation, 360);
}

TEST(Slide, CameraMoveIndexRulesAndTotalTime) {
    SlideShow show;
    auto s = show.createSlide(SlideType::Image);
    EXPECT_EQ(s->addCameraEffect(still(1)), 0);
    EXPECT_EQ(s->addCameraEffect(still(2), 0xFFFFF), 1);
    EXPECT_EQ(s->addCameraEffect(still(3), 1), 1);   // before index 1
    EXPECT_EQ(s->addCameraEffect(still(4), 0), 0);   // front
    EXPECT_EQ(s->addCameraEffect(still(5), -7), 0);  // negative: front
    EXPECT_EQ(s->addCameraEffect(still(6), 5), 5);   // == count: appends
    EXPECT_EQ(s->addCameraEffect(nullptr, 0), -1);
    std::vector<uint32_t> order;
    for (int i = 0; i < 6; ++i) order.push_back(s->cameraMoveAt(i)->duration);
    EXPECT_EQ(order, (std::vector<uint32_t>{5, 4, 1, 3, 2, 6}));
    EXPECT_EQ(s->cameraMoveAt(6), nullptr);
    EXPECT_EQ(s->cameraMoveAt(-1), nullptr);

    s->duration = 1000;
    s->setTransitionIn(transition("Cross Fade", 500));
    EXPECT_EQ(s->totalTime(), 1000u + 500u + 21u);
    // A transition named "None" never counts, whatever its duration.
    s->setTransitionIn(transition("None", 9000));
    EXPECT_EQ(s->totalTime(), 1021u);
    s->setTransitionIn(nullptr);
    EXPECT_EQ(s->transitionIn().name(), "None");
}

TEST(Slide, FiltersAndTheCachedBitmap) {
    SlideShow show;
    auto s = show.createSlide(SlideType::Image);
    EXPECT_FALSE(s->addFilter(nullptr));
    auto filter = ImageFilterRegistry::instance().Create("Solarize");
    ASSERT_TRUE(filter);
    // Without a cached bitmap the filter is only recorded.
    EXPECT_TRUE(s->addFilter(filter->Clone(), true));
    EXPECT_EQ(s->imageFilters().size(), 1u);
    EXPECT_EQ(s->cachedBitmap(), nullptr);

    auto bitmap = std::make_unique<Bitmap>();
    const uint8_t pixels[] = {51, 50, 200, 0, 255, 10};
    ASSERT_TRUE(bitmap->Create(2, 1, 24, pixels));
    s->setCachedBitmap(std::move(bitmap));
    s->image.bitmapWidth = 2;
    s->image.bitmapHeight = 1;
    EXPECT_TRUE(s->addFilter(std::move(filter), true));
    ASSERT_NE(s->cachedBitmap(), nullptr);
    const uint8_t* p = s->cachedBitmap()->pixels();
    EXPECT_EQ(p[0], 204);  // 51 -> 255 - 51
    EXPECT_EQ(p[1], 50);   // 50 stays
    EXPECT_EQ(s->imageFilters().size(), 2u);
    // Adding without applying leaves the picture alone.
    s->addFilter(ImageFilterRegistry::instance().Create("Grayscale"), false);
    EXPECT_EQ(s->cachedBitmap()->pixels()[0], 204);
    s->reset();
    EXPECT_EQ(s->cachedBitmap(), nullptr);
    EXPECT_TRUE(s->imageFilters().empty());
}

TEST(Slide, CopyFromClonesEverything) {
    SlideShow show, copies;
    auto a = show.createSlide(SlideType::Image);
    a->image.src = "/p/a.jpg";
    a->duration = 1234;
    a->setTransitionIn(transition("Sliding Bars", 800));
    a->transitionIn().SetOptionValue(0, 1);
    a->setOverlayEffect(MakeOverlayEffect("Snow"));
    a->addCameraEffect(still(300));
    auto pz = MakeCameraEffect("pan_zoom");
    static_cast<PanZoomEffect&>(*pz).SetMove(0, 0, 1.5);
    a->addCameraEffect(std::move(pz));
    a->addFilter(ImageFilterRegistry::instance().Create("Sepia"));
    Caption c;
    c.text = "hello";
    a->captions.items.push_back(c);
    a->sound.include = true;
    a->sound.sounds.push_back(SoundClip{"/s.wav"});
    a->clickAction.enable = true;
    a->popup.menubar = true;
    a->rotate(90);

    auto b = copies.createSlide(SlideType::Blank);
    b->addCameraEffect(still(1));  // replaced, not kept
    b->copyFrom(*a);
    Slide* original = a.get();
    Slide* copy = b.get();
    show.append(std::move(a));
    copies.append(std::move(b));
    // Every saved field, and the picture's in-memory ones, are equal.
    const PublishSettings publish;
    EXPECT_EQ(ProjectText(copies, publish), ProjectText(show, publish));
    EXPECT_TRUE(copy->image == original->image);
    // The copies are independent.
    copy->transitionIn().SetDuration(1);
    copy->cameraMoveAt(0)->duration = 1;
    EXPECT_EQ(original->transitionIn().duration(), 800u);
    EXPECT_EQ(original->cameraMoveAt(0)->duration, 300u);
}

TEST(Slide, ClearingASizeMarksTheShowChanged) {
    SlideShow show;
    auto s = show.createSlide(SlideType::Image);
    EXPECT_EQ(s->image.height, 240);  // a slide without a picture covers the stage
    s->setWidth(100);
    EXPECT_EQ(show.changeCount(), 0u);
    s->setWidth(0);
    EXPECT_EQ(show.changeCount(), 1u);
    s->setWidth(0);  // already clear
    EXPECT_EQ(show.changeCount(), 1u);
    s->setHeight(0);
    EXPECT_EQ(show.changeCount(), 2u);
}

TEST(SlideShow, ListOperations) {
    SlideShow show;
    EXPECT_EQ(show.first(), nullptr);
    EXPECT_EQ(show.last(), nullptr);
    EXPECT_FALSE(show.insert(nullptr, 0));
    std::vector<Slide*> made;
    for (int i = 0; i < 3; ++i) {
        auto s = show.createSlide(SlideType::Image);
        s->duration = static_cast<uint32_t>(i);
        made.push_back(s.get());
        EXPECT_TRUE(show.insert(std::move(s), 7));  // beyond the end: appends
    }
    auto front = show.createSlide(SlideType::Blank);
    Slide* frontPtr = front.get();
    show.insert(std::move(front), -3);
    auto middle = show.createSlide(SlideType::Blank);
    Slide* middlePtr = middle.get();
    show.insert(std::move(middle), 2);
    // front, 0, middle, 1, 2
    EXPECT_EQ(show.count(), 5);
    EXPECT_EQ(show.first(), frontPtr);
    EXPECT_EQ(show.slideAt(2), middlePtr);
    EXPECT_EQ(show.last(), made[2]);
    EXPECT_EQ(show.indexOf(made[1]), 3);
    EXPECT_EQ(show.indexOf(nullptr), -1);
    EXPECT_EQ(show.slideAt(5), nullptr);
    EXPECT_EQ(show.slideAt(-1), nullptr);
    EXPECT_EQ(show.next(made[2]), frontPtr);      // wraps
    EXPECT_EQ(show.previous(frontPtr), made[2]);  // wraps
    EXPECT_EQ(show.next(frontPtr), made[0]);
    SlideShow other;
    auto stranger = other.createSlide(SlideType::Image);
    EXPECT_EQ(show.next(stranger.get()), nullptr);
    EXPECT_EQ(show.previous(stranger.get()), nullptr);

    EXPECT_FALSE(show.remove(-1));
    EXPECT_FALSE(show.remove(5));
    EXPECT_TRUE(show.remove(2));
    EXPECT_EQ(show.count(), 4);
    EXPECT_EQ(show.slideAt(2), made[1]);

    // A slide made elsewhere belongs to the show once inserted.
    Slide* moved = stranger.get();
    show.insert(std::move(stranger), 0);
    EXPECT_EQ(moved->show(), &show);
}

TEST(SlideShow, TotalTimeStatusTextAndPopup) {
    SlideShow show;
    EXPECT_EQ(show.statusText(), "0 Slides; Total Time: 00:00.00");
    auto s = show.createSlide(SlideType::Image);
    s->duration = 1500;
    show.append(std::move(s));
    EXPECT_EQ(show.statusText(), "1 Slide; Total Time: 00:01.50");
    auto t = show.createSlide(SlideType::Blank);
    t->duration = 123456;
    t->setTransitionIn(transition("Cross Fade", 1000));
    t->addCameraEffect(still(44));
    show.append(std::move(t));
    EXPECT_EQ(show.totalTime(), 1500u + 123456u + 1000u + 44u);
    EXPECT_EQ(show.statusText(), "2 Slides; Total Time: 02:06.00");

    EXPECT_EQ(formatShowTime(0), "00:00.00");
    EXPECT_EQ(formatShowTime(9), "00:00.00");
    EXPECT_EQ(formatShowTime(999), "00:00.99");
    EXPECT_EQ(formatShowTime(59999), "00:59.99");
    EXPECT_EQ(formatShowTime(60000), "01:00.00");
    EXPECT_EQ(formatShowTime(6000000), "100:00.00");

    EXPECT_FALSE(show.hasPopup());
    show.slideAt(1)->clickAction.popup = true;
    EXPECT_FALSE(show.hasPopup());  // popup without the action switched on
    show.slideAt(1)->clickAction.enable = true;
    EXPECT_TRUE(show.hasPopup());
}

TEST(SlideShow, StageSizeResetAndRefit) {
    SlideShow show;
    EXPECT_FALSE(show.setWidth(0));
    EXPECT_FALSE(show.setHeight(-5));
    EXPECT_FALSE(show.setWidth(SlideShow::kMaxStageSize + 1));
    EXPECT_EQ(show.width(), 320);
    EXPECT_TRUE(show.setSize(640, 480));
    auto s = show.createSlide(SlideType::Image);
    s->image.sourceWidth = 100;
    s->image.sourceHeight = 50;
    show.append(std::move(s));
    show.refitAll();
    EXPECT_EQ(show.slideAt(0)->image.width, 640);
    EXPECT_EQ(show.slideAt(0)->image.height, 320);
    EXPECT_EQ(show.slideAt(0)->image.y, 80);

    // Reset gives a new show in every saved field, stage and bounds included.
    show.fps = 30;
    show.muteControl.align = ControlPlacement::Align::Custom;
    show.bgFrameLeft = 3;
    show.reset();
    const PublishSettings publish;
    EXPECT_EQ(ProjectText(show, publish), ProjectText(SlideShow(), publish));
}

// The rows' wording is checked whole through `quillet show` (CliShow); here
// what that show does not reach.
TEST(SlideList, RowTexts) {
    SlideShow show;
    auto s = show.createSlide(SlideType::Image);
    s->captions.items.emplace_back();
    s->addCameraEffect(still(100));
    s->sound.sounds.push_back(SoundClip{"/a.mp3"});
    EXPECT_EQ(slideRowText(*s, 3).extras, "Has captions; pan/zoom");  // sound not switched on
    auto b = show.createSlide(SlideType::Blank);
    b->image.src = "/ignored.jpg";
    EXPECT_EQ(slideRowText(*b, 12).path, "Path: N/A");
    EXPECT_EQ(slideRowText(*b, 12).extras, "");
}
