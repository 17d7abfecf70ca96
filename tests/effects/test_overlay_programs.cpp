#include <gtest/gtest.h>

#include <stdexcept>

#include "effects/OverlayEffect.h"
#include "effects/SlideRender.h"
#include "effects/overlays/OverlayScript.h"
#include "swf/SwfActions.h"
#include "swf/SwfWriter.h"

using namespace quillet;

namespace {

// Where each branch of the program lands: the string pushed by the action at
// the target (every label in these programs is followed by a push of its own
// name), or "END" past the last action.
std::vector<std::string> Landings(const SwfActionList& list) {
    std::vector<std::string> out;
    for (size_t i = 0; i < list.size(); ++i) {
        int offset = 0;
        if (auto* jump = dynamic_cast<ActionJump*>(&list[i])) offset = jump->offset;
        else if (auto* test = dynamic_cast<ActionIf*>(&list[i])) offset = test->offset;
        else continue;
        const long target = static_cast<long>(list.ByteSize(0, i + 1)) + offset;
        std::string landed = "nowhere";
        for (size_t j = 0; j <= list.size(); ++j) {
            if (static_cast<long>(list.ByteSize(0, j)) != target) continue;
            if (j == list.size()) landed = "END";
            else if (auto* push = dynamic_cast<ActionPush*>(&list[j]); push && !push->values.empty())
                landed = push->values[0].text;
            break;
        }
        out.push_back(landed);
    }
    return out;
}

}  // namespace

TEST(OverlayScript, BranchesLandOnTheirLabels) {
    struct Case {
        const char* program;
        std::vector<std::string> landings;
    };
    const Case cases[] = {
        // forward over a statement, and to the very end
        {"x 1 < ifnot:a\ny := 2\na:\n'a' pop\nif:end\n'b' pop\nend:", {"a", "END"}},
        // a loop: the test jumps forward out of it, the jump goes back to its head
        {"i := 0\nloop:\n'loop' pop\ni 3 < ifnot:done\ni := i 1 +\njump:loop\ndone:\n'done' pop", {"done", "loop"}},
        // a label on the first action, statements split by ';'
        {"top:; 'top' pop; jump:top; jump:next; 'skipped' pop; next:; 'next' pop", {"top", "next"}},
    };
    for (const Case& c : cases) EXPECT_EQ(Landings(AssembleOverlayScript(c.program)), c.landings) << c.program;

    for (const char* bad : {"jump:nowhere", "x := 1 @", "'' ._colour := 1", "1 2 := 3"})
        EXPECT_THROW(AssembleOverlayScript(bad), std::logic_error) << bad;
}

// Every effect's programs assemble at stage sizes and frame rates far apart
// (their numbers are filled in from both), each effect takes fresh ids from
// the movie's counter and records its sprite, the last one defined.
TEST(OverlayEffect, DefinesAndPlacesOnAnyStage) {
    struct Stage {
        int w, h;
        float fps;
    };
    for (const Stage stage : {Stage{640, 480, 12}, Stage{96, 64, 60}, Stage{2880, 1800, 1}}) {
        for (size_t i = 0; i < OverlayEffectRegistry::instance().count(); ++i) {
            auto effect = OverlayEffectRegistry::instance().At(i)->Create();
            SwfWriter movie(false);
            movie.Setup(stage.w * 20, stage.h * 20, stage.fps, 6);
            uint32_t ids = 7, depths = 0;
            MovieContext ctx{movie, stage.fps, ids, depths};
            ASSERT_NO_THROW(effect->Define(ctx)) << effect->name() << " " << stage.w << "x" << stage.h;
            if (effect->IsNone()) {
                EXPECT_EQ(ids, 7u);
                EXPECT_EQ(effect->characterId, 0);
                continue;
            }
            // The sprite is the last character defined (it refers to the others).
            EXPECT_EQ(effect->characterId, ids) << effect->name();
            EXPECT_GT(ids, 8u) << effect->name();
        }
    }
}
