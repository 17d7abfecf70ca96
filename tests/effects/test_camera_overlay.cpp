#include <gtest/gtest.h>

#include "effects/CameraEffect.h"
#include "effects/OverlayEffect.h"
#include "effects/overlays/Bubbles.h"
#include "effects/overlays/OldMovie.h"
#include "support/XmlText.h"

using namespace quillet;
using quillet::test::ParsedXml;

namespace {

PanZoomEffect panZoom(int32_t x, int32_t y, double zoom) {
    PanZoomEffect e;
    e.SetMove(x, y, zoom);
    return e;
}

}  // namespace

TEST(CameraEffect, DescribesPanInPixelsAndZoomInPercent) {
    EXPECT_EQ(CameraEffect().Describe(), "");
    EXPECT_EQ(panZoom(0, 0, 1.0).Describe(), "None");
    EXPECT_EQ(panZoom(0, 0, 1.5).Describe(), "Zoom (150)");
    EXPECT_EQ(panZoom(0, 0, 0.333).Describe(), "Zoom (33)");
    EXPECT_EQ(panZoom(0, 0, 1.0000001).Describe(), "Zoom (100)");  // not exactly 1.0
    EXPECT_EQ(panZoom(-30, 0, 1.0).Describe(), "Pan (-1, 0)");
    EXPECT_EQ(panZoom(19, -19, 1.0).Describe(), "Pan (0, 0)");  // a pan below a pixel still counts
    EXPECT_EQ(panZoom(200, 45, 2.0).Describe(), "Pan (10, 2); Zoom (200)");
}

// The written form and round trip of both kinds are in the stored full project (tests/model).
TEST(CameraEffect, StillCameraIgnoresPanAndClonesKeepTheMove) {
    auto clone = panZoom(-300, 120, 1.0 / 3.0).Clone();
    EXPECT_NE(dynamic_cast<PanZoomEffect*>(clone.get()), nullptr);
    EXPECT_EQ(clone->Describe(), "Pan (-15, 6); Zoom (33)");

    ParsedXml still("<camera_fx name=\"none\" duration=\"250\" pan_x=\"40\" />");
    auto s = ReadCameraEffect(still.first());
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->name(), "none");
    EXPECT_EQ(dynamic_cast<PanZoomEffect*>(s.get()), nullptr);
    EXPECT_EQ(s->duration, 250u);
}

TEST(CameraEffect, ReaderKeepsMissingValuesAndRejectsUnknownNames) {
    ParsedXml partial("<camera_fx name=\"pan_zoom\" pan_y=\"-7\" zoom=\"wide\" />");
    auto e = ReadCameraEffect(partial.first());
    auto& pz = dynamic_cast<PanZoomEffect&>(*e);
    EXPECT_EQ(pz.duration, 1000u);
    EXPECT_EQ(pz.panX(), 0);
    EXPECT_EQ(pz.panY(), -7);
    EXPECT_EQ(pz.zoom(), 0.0);  // unreadable reads as 0

    EXPECT_EQ(ReadCameraEffect(ParsedXml("<camera_fx name=\"Pan_Zoom\" />").first()), nullptr);
    EXPECT_EQ(ReadCameraEffect(ParsedXml("<camera_fx duration=\"5\" />").first()), nullptr);
    EXPECT_EQ(ReadCameraEffect(XmlNode()), nullptr);
    for (const auto& prototype : CameraEffectRegistry::instance()) EXPECT_EQ(MakeCameraEffect(prototype->name())->name(), prototype->name());

    CameraEffect still;
    EXPECT_EQ(still.FrameCount(12.0f), 12);
    still.duration = 40;
    EXPECT_EQ(still.FrameCount(12.0f), 0);
}

TEST(OverlayEffect, RegistryLookupAndCreation) {
    // Each effect made by name is played in e2e.test_overlays_playback.
    const auto& r = OverlayEffectRegistry::instance();
    EXPECT_TRUE(r.At(0)->IsNone());  // "None" leads the list
    EXPECT_EQ(r.At(r.count()), nullptr);
    EXPECT_EQ(r.Find("bubbles"), nullptr);  // exact names
    EXPECT_NE(dynamic_cast<const BubblesEffect*>(r.Find("Bubbles")), nullptr);

    auto film = MakeOverlayEffect("Old Movie");
    auto* old = dynamic_cast<OldMovieEffect*>(film.get());
    ASSERT_NE(old, nullptr);
    EXPECT_EQ(old->partIds, (std::array<uint16_t, 3>{0, 0, 0}));

    EXPECT_EQ(MakeOverlayEffect("Rain")->name(), "None");
    EXPECT_TRUE(MakeOverlayEffect("Rain")->IsNone());
    EXPECT_EQ(MakeOverlayEffect("")->name(), "");  // a new slide's unnamed effect stays unnamed
    EXPECT_TRUE(MakeOverlayEffect("")->IsNone());

    film->characterId = 12;
    auto copy = film->Clone();
    EXPECT_EQ(copy->name(), "Old Movie");
    EXPECT_EQ(copy->characterId, 0);
    OverlayEffect unnamed{std::string()};
    EXPECT_EQ(unnamed.Clone()->name(), "");
}
