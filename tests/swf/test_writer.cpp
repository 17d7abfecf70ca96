// SwfWriter: header, tag header forms, frame counting, labels, muting,
// listeners and the header patch on close.
#include <gtest/gtest.h>

#include "support/TempDir.h"
#include "swf/SwfActions.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

using namespace quillet;
using quillet::test::TempDir;
using quillet::test::readFile;

namespace {

uint32_t U32At(const std::string& s, size_t at) {
    return uint8_t(s[at]) | uint8_t(s[at + 1]) << 8 | uint8_t(s[at + 2]) << 16 | uint32_t(uint8_t(s[at + 3])) << 24;
}
uint16_t U16At(const std::string& s, size_t at) { return uint16_t(uint8_t(s[at]) | uint8_t(s[at + 1]) << 8); }

// Reads the stage rectangle back from a written file.
SwfRect StageOf(const std::string& bytes) {
    SwfInput in(reinterpret_cast<const uint8_t*>(bytes.data()) + 8, bytes.size() - 8);
    SwfRect r;
    r.Read(in);
    return r;
}

}  // namespace

TEST(SwfTagHeader, ShortBelowSixtyThreeBytesLongFromThereAndForScripts) {
    SwfRawTag t62(SwfTagCode::DefineShape, std::vector<uint8_t>(62, 0));
    auto b62 = SerializeTag(t62);
    ASSERT_EQ(b62.size(), 64u);
    EXPECT_EQ(b62[0] | b62[1] << 8, (2 << 6) | 62);

    SwfRawTag t63(SwfTagCode::DefineShape, std::vector<uint8_t>(63, 0));
    auto b63 = SerializeTag(t63);
    ASSERT_EQ(b63.size(), 69u);
    EXPECT_EQ(b63[0] | b63[1] << 8, (2 << 6) | 63);
    EXPECT_EQ(b63[2], 63);

    // A DoAction with a five-byte list still takes the six-byte header.
    DoActionTag action;
    action.actions.Emplace<ActionGotoFrame>(3);  // 5 bytes
    auto ba = SerializeTag(action);
    ASSERT_EQ(ba.size(), 6u + 6u);
    EXPECT_EQ(ba[0] | ba[1] << 8, (12 << 6) | 63);
    EXPECT_EQ(ba[2], 6);  // GotoFrame (5) + end byte
    EXPECT_EQ((std::vector<uint8_t>(ba.begin() + 6, ba.end())), (std::vector<uint8_t>{0x81, 2, 0, 3, 0, 0}));

    DoInitActionTag init(7, SwfActionList());
    EXPECT_EQ(SerializeTag(init).size(), 6u + 3u);

    DefineBitsLosslessTag lossless;  // a short body still takes the long header
    lossless.width = lossless.height = 1;
    lossless.zlibData = {1, 2, 3};
    auto bl = SerializeTag(lossless);
    EXPECT_EQ(bl[0] | bl[1] << 8, (20 << 6) | 63);

    ShowFrameTag frame;
    EXPECT_EQ(SerializeTag(frame), (std::vector<uint8_t>{0x40, 0x00}));
    EndTag end;
    EXPECT_EQ(SerializeTag(end), (std::vector<uint8_t>{0x00, 0x00}));
}

TEST(SwfWriter, HeaderStageFrameRateAndClosePatch) {
    TempDir dir;
    const std::string path = dir.file("a.swf");
    {
        SwfWriter w;
        w.Setup(550 * 20, 400 * 20, 12.0f, 5);
        ASSERT_TRUE(w.Open(path, false));
        EXPECT_EQ(w.HeaderEnd(), 8u + 9u + 4u);
        w.AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor(1, 2, 3)));
        for (int i = 0; i < 3; ++i) EXPECT_EQ(w.AddTag(std::make_unique<ShowFrameTag>()), 2u);
        w.AddTag(std::make_unique<EndTag>());
        ASSERT_NE(w.Background(), nullptr);
        EXPECT_EQ(w.Background()->color, SwfColor(1, 2, 3));
        const uint32_t length = w.Close();
        EXPECT_EQ(length, 21u + 5u + 6u + 2u);
        EXPECT_TRUE(w.Good());
    }
    const std::string bytes = readFile(path);
    EXPECT_EQ(bytes.substr(0, 3), "FWS");
    EXPECT_EQ(bytes[3], 5);
    EXPECT_EQ(U32At(bytes, 4), bytes.size());
    EXPECT_EQ(StageOf(bytes), SwfRect(0, 11000, 0, 8000));
    EXPECT_EQ(uint8_t(bytes[17]), 0);  // 12 fps: fraction 0, then 12
    EXPECT_EQ(uint8_t(bytes[18]), 12);
    EXPECT_EQ(U16At(bytes, 19), 3);  // frame count = ShowFrame tags

    // Overwriting is refused unless asked for.
    SwfWriter again;
    again.Setup(20, 20, 12, 4);
    EXPECT_FALSE(again.Open(path, false));
    EXPECT_TRUE(again.Open(path, true));
    again.Close();
    EXPECT_EQ(readFile(path).size(), 16u);  // a 20-twip stage takes 5 + 4 * 6 bits: 4 bytes

    SwfWriter bad;
    EXPECT_FALSE(bad.Open(dir.file("missing/folder/x.swf"), true));
}

TEST(SwfWriter, MinimumStageReplacesBothDimensions) {
    TempDir dir;
    auto stageFor = [&](int w, int h, bool enforce) {
        SwfWriter writer(enforce);
        writer.Setup(w * 20, h * 20, 12, 6);
        EXPECT_TRUE(writer.Open(dir.file("s.swf"), true));
        writer.Close();
        return StageOf(readFile(dir.file("s.swf")));
    };
    EXPECT_EQ(stageFor(550, 400, false), SwfRect(0, 11000, 0, 8000));
    EXPECT_EQ(stageFor(550, 400, true), SwfRect(0, 12800, 0, 9600));
    EXPECT_EQ(stageFor(800, 400, true), SwfRect(0, 12800, 0, 9600));  // never one dimension alone
    EXPECT_EQ(stageFor(800, 600, true), SwfRect(0, 16000, 0, 12000));
}

TEST(SwfWriter, FrameRateBytesUseADecimalFraction) {
    uint8_t b[2];
    FrameRateBytes(12.0f, b);
    EXPECT_EQ(b[0], 0);
    EXPECT_EQ(b[1], 12);
    FrameRateBytes(12.5f, b);
    EXPECT_EQ(b[0], 50);
    EXPECT_EQ(b[1], 12);
    FrameRateBytes(29.97f, b);
    EXPECT_EQ(b[0], 96);
    EXPECT_EQ(b[1], 29);
}

TEST(SwfWriter, DropsDuplicateLabelsAndSoundsWhenMutedUnlessKept) {
    TempDir dir;
    SwfWriter w;
    w.SetMuted(true);
    w.Setup(2000, 2000, 12, 6);
    ASSERT_TRUE(w.Open(dir.file("m.swf"), true));
    EXPECT_GT(w.AddTag(std::make_unique<FrameLabelTag>("slide_1")), 0u);
    EXPECT_EQ(w.AddTag(std::make_unique<FrameLabelTag>("slide_1")), 0u);
    EXPECT_GT(w.AddTag(std::make_unique<FrameLabelTag>("Slide_1")), 0u);  // case-sensitive

    FrameLabelTag kept("slide_1");
    EXPECT_EQ(w.AddTag(kept), 0u);
    EXPECT_EQ(kept.label, "slide_1");  // still ours, untouched

    DefineSoundTag sound(5);
    sound.data = {1, 2, 3};
    EXPECT_EQ(w.AddTag(sound), 0u);
    EXPECT_EQ(w.AddTag(std::make_unique<StartSoundTag>(5)), 0u);
    EXPECT_EQ(w.AddTag(std::make_unique<SoundStreamHeadTag>()), 0u);
    EXPECT_EQ(w.AddTag(std::make_unique<SoundStreamBlockTag>()), 0u);
    EXPECT_EQ(w.AddTag(std::make_unique<DefineButtonSoundTag>(3)), 0u);
    // SoundStreamHead2 is not among the muted codes.
    EXPECT_GT(w.AddTag(std::make_unique<SoundStreamHead2Tag>()), 0u);
    auto shape = DefineShapeTag::Rectangle(1, SwfRect(0, 200, 0, 200), SwfFillStyle::MakeSolid({255, 0, 0}));
    EXPECT_GT(w.AddTag(std::move(shape)), 0u);
    EXPECT_EQ(w.AddTag(std::unique_ptr<SwfTag>()), 0u);
    w.Close();
}

TEST(SwfWriter, FrameListenersAreToldEachFrameAndAreNotReentrant) {
    TempDir dir;
    SwfWriter w;
    w.Setup(2000, 2000, 12, 6);
    ASSERT_TRUE(w.Open(dir.file("f.swf"), true));
    std::vector<int> seen;
    int nested = 0;
    const int key = w.AddFrameListener([&](uint16_t index) {
        seen.push_back(index);
        // A frame added from inside a listener is written but raises no event.
        if (index == 1) w.AddTag(std::make_unique<ShowFrameTag>());
    });
    w.AddFrameListener([&](uint16_t) { ++nested; });
    for (int i = 0; i < 3; ++i) w.AddTag(std::make_unique<ShowFrameTag>());
    EXPECT_EQ(seen, (std::vector<int>{0, 1, 3}));
    EXPECT_EQ(nested, 3);
    EXPECT_EQ(w.FrameCount(), 4);
    w.RemoveFrameListener(key);
    w.AddTag(std::make_unique<ShowFrameTag>());
    EXPECT_EQ(seen.size(), 3u);
    w.Close();
    EXPECT_EQ(U16At(readFile(dir.file("f.swf")), w.HeaderEnd() - 2), 5);
}

TEST(SwfWriter, OffsetIndexRecordsPlacementsAndRemovals) {
    TempDir dir;
    SwfWriter w;
    w.KeepOffsetIndex(true, true);
    w.Setup(2000, 2000, 12, 6);
    ASSERT_TRUE(w.Open(dir.file("o.swf"), true));
    const uint64_t start = w.HeaderEnd();
    auto place = PlaceObject2Tag::Place(4, 1, SwfMatrix::Translate(20, 20));
    place->name = "sld_1";
    const size_t placed = w.AddTag(std::move(place));
    w.AddTag(std::make_unique<RemoveObject2Tag>(4));
    w.Close();
    const auto& index = w.OffsetIndex();
    ASSERT_EQ(index.size(), 3u);
    EXPECT_EQ(index[0].depth, 4);
    EXPECT_EQ(index[0].offset, start + 3);
    EXPECT_EQ(U16At(readFile(dir.file("o.swf")), index[0].offset), 4);
    EXPECT_TRUE(index[1].isName);
    const std::string bytes = readFile(dir.file("o.swf"));
    EXPECT_EQ(bytes.substr(index[1].offset, 5), "sld_1");
    EXPECT_EQ(index[2].offset, start + placed + 2);
    EXPECT_EQ(U16At(bytes, index[2].offset), 4);  // the depth field of RemoveObject2
}
