// Copying another movie into a show (control sets, imported preloaders): a
// movie of real tags that refer to each other (a bitmap fill, a button, a
// text field on its font, a sprite, a mask) is copied behind ids and depths
// already in use, written, read back, and every reference must still land on
// the character it meant, with no id defined twice.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "effects/SlideRender.h"
#include "movie/MovieImport.h"
#include "support/TempDir.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

using namespace quillet;

namespace {

// Ids 3..9, on purpose not from 1. What each id is, by a name the checks use.
const std::map<std::string, uint16_t> kIds = {{"square", 3}, {"bitmap", 4}, {"filled", 5}, {"button", 6},
                                               {"font", 7},   {"field", 8},  {"clip", 9}};

void WriteTemplate(const std::string& path) {
    SwfWriter w;
    w.Setup(2000, 800, 12.0f, 6);
    ASSERT_TRUE(w.Open(path, true));
    w.AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor(1, 2, 3)));
    const SwfRect box(0, 200, 0, 200);
    w.AddTag(DefineShapeTag::Rectangle(kIds.at("square"), box, SwfFillStyle::MakeSolid(SwfColor(9, 9, 9))));
    auto bitmap = std::make_unique<DefineBitsLosslessTag>();
    bitmap->SetId(kIds.at("bitmap"));
    bitmap->width = 1;
    bitmap->height = 1;
    bitmap->zlibData = {0x78, 0x9C, 0x63, 0x60, 0x64, 0x62, 0x06, 0x00, 0x00, 0x0E, 0x00, 0x07};
    w.AddTag(std::move(bitmap));
    w.AddTag(DefineShapeTag::Rectangle(kIds.at("filled"), box, SwfFillStyle::MakeBitmap(kIds.at("bitmap"), SwfMatrix())));
    auto button = std::make_unique<DefineButton2Tag>(kIds.at("button"));
    for (uint16_t id : {kIds.at("square"), kIds.at("filled")}) {
        SwfButtonRecord r;
        r.characterId = id;
        button->records.push_back(r);
    }
    w.AddTag(std::move(button));
    auto font = std::make_unique<DefineFont2Tag>(kIds.at("font"));
    font->name = "x";
    w.AddTag(std::move(font));
    auto field = std::make_unique<DefineEditTextTag>(kIds.at("field"));
    field->hasFont = true;
    field->fontId = kIds.at("font");
    w.AddTag(std::move(field));
    auto clip = std::make_unique<DefineSpriteTag>(kIds.at("clip"));
    clip->Add(PlaceObject2Tag::Place(1, kIds.at("square")));
    clip->Add(PlaceObject2Tag::Place(2, kIds.at("button")));
    clip->Add(std::make_unique<ShowFrameTag>());
    w.AddTag(std::move(clip));
    w.AddTag(PlaceObject2Tag::Place(1, kIds.at("clip")));
    auto mask = PlaceObject2Tag::Place(2, kIds.at("square"));
    mask->clipDepth = 4;
    w.AddTag(std::move(mask));
    w.AddTag(PlaceObject2Tag::Place(3, kIds.at("field")));
    w.AddTag(std::make_unique<ShowFrameTag>());
    w.AddTag(std::make_unique<RemoveObject2Tag>(2));
    w.AddTag(std::make_unique<ShowFrameTag>());
    w.AddTag(std::make_unique<EndTag>());
    w.Close();
    ASSERT_TRUE(w.Good());
}

struct Seen {
    std::multiset<uint16_t> defined;
    std::vector<uint16_t> used;
    std::set<uint16_t> depths;  // of the main timeline, clip depths included
    int backgrounds = 0;
};

void Collect(const std::vector<std::unique_ptr<SwfTag>>& tags, Seen& seen, bool main) {
    for (const auto& tag : tags) {
        if (tag->Code() == SwfTagCode::SetBackgroundColor) ++seen.backgrounds;
        if (tag->HasId()) seen.defined.insert(tag->GetId());
        if (auto* p = dynamic_cast<const PlaceObject2Tag*>(tag.get())) {
            if (p->characterId) seen.used.push_back(*p->characterId);
            if (main) seen.depths.insert(p->depth);
            if (main && p->clipDepth) seen.depths.insert(*p->clipDepth);
        }
        if (auto* r = dynamic_cast<const RemoveObject2Tag*>(tag.get()); r && main) seen.depths.insert(r->depth);
        if (auto* b = dynamic_cast<const DefineButton2Tag*>(tag.get()))
            for (const auto& rec : b->records) seen.used.push_back(rec.characterId);
        if (auto* t = dynamic_cast<const DefineEditTextTag*>(tag.get())) seen.used.push_back(t->fontId);
        if (auto* s = dynamic_cast<const SwfDefineShapeBase*>(tag.get()))
            for (const auto& fill : s->shape.fillStyles)
                if (fill.IsBitmap()) seen.used.push_back(fill.bitmapId);
        if (auto* s = dynamic_cast<const DefineSpriteTag*>(tag.get())) Collect(s->Tags(), seen, false);
    }
}

TEST(MovieImport, CopiesKeepEveryReferenceBehindTheIdsAndDepthsInUse) {
    test::TempDir dir;
    WriteTemplate(dir.file("set.swf"));
    ImportedMovie movie;
    std::string error;
    ASSERT_TRUE(ReadImportedMovie(dir.file("set.swf"), movie, &error)) << error;

    struct Case {
        const char* name;
        bool asSprite;
        uint32_t idsAfter;               // 10 in use before; the template spans 7 ids
        uint32_t depthsAfter;            // 5 in use before; its highest depth is 4 (the mask's)
        std::set<uint16_t> mainDepths;   // on the show's main timeline
    };
    const Case cases[] = {
        {"into the timeline", false, 17, 9, {6, 7, 8, 9}},
        {"as a sprite", true, 18, 5, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SwfWriter w;
        w.Setup(6400, 4800, 12.0f, 6);
        const std::string out = dir.file(std::string(c.name) + ".swf");
        ASSERT_TRUE(w.Open(out, true));
        uint32_t ids = 10, depths = 5;
        MovieContext ctx{w, 12.0f, ids, depths};
        std::set<uint16_t> placed;
        if (c.asSprite) CopyAsSprite(FreshCopy(movie), ctx);
        else CopyIntoTimeline(FreshCopy(movie), ctx, &placed);
        w.AddTag(std::make_unique<ShowFrameTag>());
        w.AddTag(std::make_unique<EndTag>());
        w.Close();
        EXPECT_EQ(ids, c.idsAfter);
        EXPECT_EQ(depths, c.depthsAfter);

        SwfReader reader;
        ASSERT_TRUE(reader.ReadFile(out)) << reader.Error();
        Seen seen;
        Collect(reader.Tags(), seen, true);
        EXPECT_EQ(seen.backgrounds, 0) << "the template's own background colour must not be copied";
        EXPECT_EQ(std::set<uint16_t>(seen.defined.begin(), seen.defined.end()).size(), seen.defined.size());
        EXPECT_EQ(*seen.defined.begin(), 11);
        EXPECT_EQ(*seen.defined.rbegin(), c.idsAfter);
        for (uint16_t id : seen.used) EXPECT_TRUE(seen.defined.count(id)) << "id " << id << " is not defined";
        EXPECT_EQ(seen.depths, c.mainDepths);
        if (!c.asSprite) EXPECT_EQ(placed, (std::set<uint16_t>{6, 7, 8}));
    }
}

TEST(MovieImport, RefusesMoviesWithTagsWhoseIdsCannotBeMoved) {
    test::TempDir dir;
    SwfWriter w;
    w.Setup(2000, 800, 12.0f, 8);
    ASSERT_TRUE(w.Open(dir.file("raw.swf"), true));
    w.AddTag(std::make_unique<SwfRawTag>(SwfTagCode::DefineShape4, std::vector<uint8_t>{1, 0, 0, 0}));
    w.AddTag(std::make_unique<EndTag>());
    w.Close();
    ImportedMovie movie;
    std::string error;
    EXPECT_FALSE(ReadImportedMovie(dir.file("raw.swf"), movie, &error));
    EXPECT_NE(error.find("DefineShape4"), std::string::npos) << error;
    EXPECT_FALSE(ReadImportedMovie(dir.file("missing.swf"), movie, &error));
}

}  // namespace
