#include <set>

#include <gtest/gtest.h>

#include "effects/Transition.h"
#include "effects/transitions/ColorFade.h"
#include "effects/transitions/SlidingBars.h"
#include "effects/transitions/Spin.h"
#include "support/XmlText.h"

using namespace quillet;
using quillet::test::ParsedXml;
using quillet::test::WrittenText;

namespace {

const TransitionRegistry& registry() { return TransitionRegistry::instance(); }

std::unique_ptr<Transition> make(const std::string& name) {
    const Transition* prototype = registry().Find(name);
    EXPECT_NE(prototype, nullptr) << name;
    return prototype ? prototype->Clone() : nullptr;
}

std::string line(const Transition& t) {
    return WrittenText([&](XmlWriter& w) { WriteTransition(w, t); });
}

std::unique_ptr<Transition> reread(const std::string& text) {
    ParsedXml xml(text);
    EXPECT_TRUE(xml.ok()) << xml.error() << "\n" << text;
    return ReadTransition(xml.first());
}

struct Named : Transition {
    explicit Named(std::string name) : Transition(std::move(name)) {}
};

}  // namespace

TEST(TransitionRegistry, LookupFoldsCaseAndIndexesAreBounded) {
    // The object found carries the registry's spelling.
    ASSERT_NE(registry().Find("wipe on 2"), nullptr);
    EXPECT_EQ(registry().Find("wipe on 2")->name(), "Wipe On 2");
    EXPECT_EQ(registry().Find("CROSS FADE"), registry().Find("Cross Fade"));
    EXPECT_EQ(registry().Find("Cross  Fade"), nullptr);
    EXPECT_EQ(registry().Find(""), nullptr);
    EXPECT_EQ(registry().At(-1), nullptr);
    EXPECT_EQ(registry().At(static_cast<int>(registry().count())), nullptr);
}

TEST(TransitionRegistry, AddSortsByBytesAndKeepsEqualNamesInArrivalOrder) {
    TransitionRegistry r;
    auto first = std::make_unique<Named>("B");
    auto second = std::make_unique<Named>("B");
    const Transition* firstB = first.get();
    const Transition* secondB = second.get();
    r.Add(std::make_unique<Named>("b"));
    r.Add(std::move(first));
    r.Add(std::make_unique<Named>("A"));
    r.Add(nullptr);
    r.Add(std::move(second));
    r.Add(std::make_unique<Named>("a"));
    r.Add(std::make_unique<Named>("\xe9t\xe9"));  // a high byte sorts after ASCII
    ASSERT_EQ(r.count(), 6u);
    EXPECT_EQ(r.At(0)->name(), "A");
    EXPECT_EQ(r.At(1), firstB);
    EXPECT_EQ(r.At(2), secondB);
    EXPECT_EQ(r.At(3)->name(), "a");
    EXPECT_EQ(r.At(4)->name(), "b");
    EXPECT_EQ(r.At(5)->name(), "\xe9t\xe9");

    // Only the first 256 bytes take part in the comparison.
    TransitionRegistry longNames;
    const std::string stem(256, 'x');
    longNames.Add(std::make_unique<Named>(stem + "b"));
    longNames.Add(std::make_unique<Named>(stem + "a"));
    EXPECT_EQ(longNames.At(0)->name(), stem + "b");

    EXPECT_EQ(TransitionRegistry().Random(), nullptr);
}

TEST(Transition, DurationListenersAndFrameCount) {
    Transition t;
    EXPECT_EQ(t.name(), "None");
    int calls = 0;
    const size_t token = t.AddListener([&](const Transition& changed) {
        ++calls;
        EXPECT_EQ(&changed, &t);
    });
    t.SetDuration(2000);  // unchanged: silent
    EXPECT_EQ(calls, 0);
    t.SetDuration(1500);
    EXPECT_EQ(calls, 1);
    auto copy = t.Clone();  // listeners stay with the original
    copy->SetDuration(100);
    EXPECT_EQ(calls, 1);
    t.RemoveListener(token);
    t.SetDuration(10);
    EXPECT_EQ(calls, 1);

    auto fade = make("Cross Fade");
    EXPECT_EQ(fade->FrameCount(12.0f), 24);
    fade->SetDuration(0);
    EXPECT_EQ(fade->FrameCount(12.0f), 0);
    fade->SetDuration(1041);  // 12.492 frames
    EXPECT_EQ(fade->FrameCount(12.0f), 12);
    fade->SetDuration(1042);  // 12.504 frames
    EXPECT_EQ(fade->FrameCount(12.0f), 13);
    fade->SetDuration(1000);
    EXPECT_EQ(fade->FrameCount(12.5f), 13);  // 12.5 rounds up
    EXPECT_EQ(fade->FrameCount(0.0f), 0);
    // The label's wording and rounding: SlideList.RowTexts and CliShow.
}

// CreateInstance of every class is taken by reading (TransitionXml below).
TEST(Transition, CloneKeepsClassAndOptionsAndResetRestoresDefaults) {
    auto bars = make("Sliding Bars");
    auto* b = dynamic_cast<SlidingBarsTransition*>(bars.get());
    ASSERT_NE(b, nullptr);
    b->SetOptionValue(0, 7);
    b->SetOptionValue(1, 3);
    b->SetDuration(900);
    auto clone = bars->Clone();
    auto* c = dynamic_cast<SlidingBarsTransition*>(clone.get());
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->direction(), 7);
    EXPECT_EQ(c->barCount(), 3);
    EXPECT_EQ(c->duration(), 900u);
    c->ResetOptions();
    EXPECT_EQ(c->direction(), 0);
    EXPECT_EQ(c->barCount(), 10);
    EXPECT_EQ(c->duration(), 900u);  // not an option
}

// Every saved option of every class survives a write and a read, except the
// two historical mismatches, which come back as the default.
TEST(TransitionXml, EveryOptionRoundTripsExceptTheKnownMismatches) {
    using Kind = OptionKind;
    int checked = 0;
    for (size_t i = 0; i < registry().count(); ++i) {
        const Transition* prototype = registry().At(static_cast<int>(i));
        const auto options = prototype->Options();
        for (size_t k = 0; k < options.size(); ++k) {
            const OptionSpec& o = options[k];
            SCOPED_TRACE(prototype->name() + " / option " + std::to_string(k) + " " + o.label);
            EXPECT_DOUBLE_EQ(prototype->OptionValue(k), o.defaultValue);
            std::vector<double> values;
            switch (o.kind) {
                case Kind::List:
                    for (size_t v = 0; v < o.items.size(); ++v) values.push_back(static_cast<double>(v));
                    break;
                case Kind::Integer: values = {-1234, 987654}; break;
                case Kind::Real: values = {2.75, 0.0}; break;
                case Kind::Bool: values = {o.defaultValue == 0 ? 1.0 : 0.0}; break;
                case Kind::Color: values = {0x123456, 0}; break;
            }
            for (double value : values) {
                auto t = prototype->Clone();
                t->SetDuration(750);
                const bool changed = t->SetOptionValue(k, value);
                EXPECT_EQ(changed, value != o.defaultValue) << value;
                auto back = reread(line(*t));
                ASSERT_NE(back, nullptr);
                EXPECT_EQ(back->name(), prototype->name());
                EXPECT_EQ(back->duration(), 750u);
                double expected = value;
                const std::string attribute = o.attribute ? o.attribute : "";
                if (attribute.empty()) expected = o.defaultValue;  // not saved
                if (prototype->name() == "Checker" && attribute == "direction" && value >= 4 && value <= 15) expected = 0;
                if (prototype->name() == "Window" && attribute == "type" && value == 2) expected = 0;
                EXPECT_DOUBLE_EQ(back->OptionValue(k), expected) << line(*t);
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 150);
}

TEST(TransitionXml, ReaderKeywordTablesAndMismatches) {
    // Checker: the reader knows the vertical and spiral forms that the writer never writes.
    auto checker = reread("<transition name=\"Checker\" type=\"drop_random\" direction=\"vertical_top_to_bottom_right\" />");
    ASSERT_NE(checker, nullptr);
    EXPECT_EQ(checker->OptionValue(0), 7);
    EXPECT_EQ(checker->OptionValue(1), 4);
    checker = reread("<transition name=\"Checker\" direction=\"spiral_bottom_right_ccw\" />");
    EXPECT_EQ(checker->OptionValue(1), 15);
    checker->SetOptionValue(1, 4);
    EXPECT_NE(line(*checker).find("direction=\"horizontal_top_to_bottom_right\""), std::string::npos);
    checker->SetOptionValue(1, 8);
    EXPECT_NE(line(*checker).find("direction=\"horizontal_spiral_top_left_cw\""), std::string::npos);
    checker->SetOptionValue(1, 16);
    EXPECT_NE(line(*checker).find("direction=\"random\""), std::string::npos);

    // Window: "rectangle_close" is written but not read; "rectangle_open" is.
    auto window = reread("<transition name=\"Window\" type=\"rectangle_close\" />");
    EXPECT_EQ(window->OptionValue(0), 0);
    window = reread("<transition name=\"Window\" type=\"rectangle_open\" />");
    EXPECT_EQ(window->OptionValue(0), 3);
    window->SetOptionValue(0, 2);
    EXPECT_NE(line(*window).find("type=\"rectangle_close\""), std::string::npos);

    // Push and the wipes number their diagonals differently.
    auto push = reread("<transition name=\"Push\" direction=\"to_top_left\" />");
    auto wipe = reread("<transition name=\"Wipe On\" direction=\"to_top_left\" />");
    EXPECT_EQ(push->OptionValue(0), 4);
    EXPECT_EQ(wipe->OptionValue(0), 7);
    auto wipe2 = reread("<transition name=\"Wipe On 2\" direction=\"diag_to_top_left\" />");
    EXPECT_EQ(wipe2->OptionValue(0), 11);

    // Keywords compare exactly; an unknown one keeps the prototype's value.
    EXPECT_EQ(reread("<transition name=\"Push\" direction=\"Left\" />")->OptionValue(0), 2);
    EXPECT_EQ(reread("<transition name=\"Zoom In\" direction=\"sideways\" />")->OptionValue(0), 0);

    // Color: a plain unsigned decimal, lowest byte red.
    auto color = reread("<transition name=\"Color Fade\" fade_color=\"255\" />");
    EXPECT_EQ(dynamic_cast<ColorFadeTransition&>(*color).fadeColor(), 0xFFu);

    // Spin: the single-precision count and the direction flag.
    auto spin = reread("<transition name=\"Spin In\" spins=\"0\" clockwise=\"FALSE\" />");
    auto& s = dynamic_cast<SpinTransition&>(*spin);
    EXPECT_EQ(s.spins(), 0.0f);
    EXPECT_FALSE(s.clockwise());
    EXPECT_EQ(s.OptionValue(1), 1);  // the "Counter-Clockwise" box is ticked
    s.SetOptionValue(1, 0);
    EXPECT_FALSE(s.SetOptionValue(1, 0));
    EXPECT_TRUE(s.SetOptionValue(1, 1));
    EXPECT_FALSE(s.clockwise());
    EXPECT_FALSE(s.SetOptionValue(0, 0.0));
    EXPECT_TRUE(s.SetOptionValue(0, 1e-9));  // compared exactly
}

TEST(TransitionXml, ReaderNamesAndDurations) {
    EXPECT_EQ(reread("<transition duration=\"100\" />"), nullptr);
    EXPECT_EQ(reread("<transition name=\"Dissolve\" />"), nullptr);
    EXPECT_EQ(ReadTransition(XmlNode()), nullptr);

    auto t = reread("<transition name=\"cross fade\" duration=\"350\" />");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->name(), "Cross Fade");
    EXPECT_EQ(line(*t), "<transition name=\"Cross Fade\" duration=\"350\" />\n");

    EXPECT_EQ(reread("<transition name=\"Fade In\" />")->duration(), 2000u);
    EXPECT_EQ(reread("<transition name=\"Fade In\" duration=\"soon\" />")->duration(), 0u);
    EXPECT_EQ(reread("<transition name=\"NONE\" duration=\"10\" />")->name(), "None");

    // Options missing from the element keep the prototype's values.
    auto move = reread("<transition name=\"Slide In From\" final_y=\"40\" />");
    EXPECT_EQ(move->OptionValue(0), 0);
    EXPECT_EQ(move->OptionValue(1), 40);
    EXPECT_EQ(move->OptionValue(4), 1);
}

TEST(TransitionOptions, ControlIdsDistinctAndListsClamped) {
    // Every control id within one class is distinct.
    for (size_t i = 0; i < registry().count(); ++i) {
        std::set<int> ids;
        size_t controls = 0;
        for (const auto& o : registry().At(static_cast<int>(i))->Options()) {
            if (o.controlId == 0) continue;  // kept in memory only, no control
            ids.insert(o.controlId);
            ++controls;
            if (o.labelId) {
                ids.insert(o.labelId);
                ++controls;
            }
        }
        EXPECT_EQ(ids.size(), controls) << registry().At(static_cast<int>(i))->name();
    }

    // A list selection beyond the items is clamped to the last one.
    auto bar = make("Sliding Bars");
    EXPECT_TRUE(bar->SetOptionValue(0, 99));
    EXPECT_EQ(bar->OptionValue(0), 9);
    EXPECT_FALSE(bar->SetOptionValue(0, 9));
    EXPECT_FALSE(bar->SetOptionValue(5, 1));
}
