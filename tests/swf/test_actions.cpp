// Actions: record forms, push values, the constant pool, function bodies and
// the show's play/pause scripts.
#include <gtest/gtest.h>

#include "swf/ShowScripts.h"
#include "swf/SwfActions.h"
#include "swf/SwfTags.h"

using namespace quillet;

namespace {

std::vector<uint8_t> Bytes(const SwfActionList& list, bool withEnd = true) {
    SwfStream s;
    list.Write(s, withEnd);
    return s.Bytes();
}

SwfActionList ReadBack(const std::vector<uint8_t>& bytes) {
    SwfInput in(bytes);
    SwfActionList list;
    EXPECT_TRUE(list.Read(in, true)) << in.error();
    EXPECT_EQ(in.Remaining(), 0u);
    return list;
}

}  // namespace

TEST(SwfActions, RecordSizes) {
    EXPECT_EQ(ActionPlay().RecordSize(), 1u);
    EXPECT_EQ(ActionStop().RecordSize(), 1u);
    EXPECT_EQ(ActionGotoFrame(1).RecordSize(), 5u);
    EXPECT_EQ(ActionWaitForFrame(2, 1).RecordSize(), 6u);
    EXPECT_EQ(ActionSetTarget("").RecordSize(), 4u);
    EXPECT_EQ(ActionGotoFrame2(true).RecordSize(), 4u);
    EXPECT_EQ(SwfRawAction(SwfActionCode::Call).RecordSize(), 3u);  // a code from 0x80 on always has a length

    SwfActionList list;
    list.Emplace<ActionGotoFrame>(0x0102);
    list.Emplace<ActionPlay>();
    EXPECT_EQ(Bytes(list), (std::vector<uint8_t>{0x81, 0x02, 0x00, 0x02, 0x01, 0x06, 0x00}));
    EXPECT_EQ(list.ByteSize(0, 2), 6u);
}

TEST(SwfActions, PushWritesEveryValueTypeAndReadsItBack) {
    SwfActionList list;
    auto& push = list.Emplace<ActionPush>();
    push.String("abc").Float(1.5f).Null().Undefined().Register(3).Boolean(true).Double(1.0).Integer(-2).Constant(7).Constant(300);
    const auto bytes = Bytes(list);
    const std::vector<uint8_t> payload{0, 'a', 'b', 'c', 0,          // string
                                       1, 0x00, 0x00, 0xC0, 0x3F,    // float 1.5
                                       2, 3,                          // null, undefined
                                       4, 3, 5, 1,                    // register 3, true
                                       6, 0x00, 0x00, 0xF0, 0x3F, 0x00, 0x00, 0x00, 0x00,  // 1.0: high word first
                                       7, 0xFE, 0xFF, 0xFF, 0xFF,    // -2
                                       8, 7, 9, 0x2C, 0x01};          // constants
    ASSERT_EQ(bytes.size(), 3 + payload.size() + 1);
    EXPECT_EQ(bytes[0], 0x96);
    EXPECT_EQ(bytes[1] | bytes[2] << 8, static_cast<int>(payload.size()));
    EXPECT_EQ(std::vector<uint8_t>(bytes.begin() + 3, bytes.end() - 1), payload);

    auto back = ReadBack(bytes);
    ASSERT_EQ(back.size(), 1u);
    auto* p = dynamic_cast<ActionPush*>(&back[0]);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->values, push.values);

    std::vector<uint8_t> badType{0x96, 1, 0, 42, 0};
    SwfInput in(badType);
    SwfActionList bad;
    EXPECT_FALSE(bad.Read(in));
    EXPECT_NE(in.error().find("unknown push value type 42"), std::string::npos);
}

TEST(SwfActions, ConstantPoolKeepsOneEntryPerString) {
    SwfConstantPool pool;
    EXPECT_EQ(pool.Add("a"), 0);
    EXPECT_EQ(pool.Add("b"), 1);
    EXPECT_EQ(pool.Add("a"), 0);
    EXPECT_EQ(pool.Count(), 2u);
    EXPECT_EQ(pool.Add("c", 0), 0);  // inserted in front
    EXPECT_EQ(pool.Find("a"), 1);
    EXPECT_EQ(pool.Find("A"), -1);
    EXPECT_EQ(pool.Add("d", 99), 3);  // beyond the count: appended

    SwfActionList list;
    list.Add(std::make_unique<SwfConstantPool>(pool));
    const auto bytes = Bytes(list);
    EXPECT_EQ(bytes, (std::vector<uint8_t>{0x88, 10, 0, 4, 0, 'c', 0, 'a', 0, 'b', 0, 'd', 0, 0}));
    auto back = ReadBack(bytes);
    EXPECT_EQ(dynamic_cast<SwfConstantPool&>(back[0]).strings, pool.strings);
}

TEST(SwfActions, FunctionsAndWithOwnTheBodyThatFollowsThem) {
    SwfActionList list;
    auto& f = list.Emplace<ActionDefineFunction>("f", std::vector<std::string>{"x"});
    f.body.Emplace<ActionPlay>();
    auto& with = f.body.Emplace<ActionWith>();
    with.block.Emplace<ActionStop>();
    list.Emplace<ActionNextFrame>();
    const auto bytes = Bytes(list);
    // 9B len=8: "f\0" 01 00 "x\0" codeSize=7 | Play | 94 02 00 01 00 | Stop | NextFrame | End
    EXPECT_EQ(bytes, (std::vector<uint8_t>{0x9B, 8, 0, 'f', 0, 1, 0, 'x', 0, 7, 0, 0x06, 0x94, 2, 0, 1, 0, 0x07,
                                           0x04, 0x00}));
    auto back = ReadBack(bytes);
    ASSERT_EQ(back.size(), 2u);
    auto& fb = dynamic_cast<ActionDefineFunction&>(back[0]);
    EXPECT_EQ(fb.name, "f");
    EXPECT_EQ(fb.params, std::vector<std::string>{"x"});
    ASSERT_EQ(fb.body.size(), 2u);
    EXPECT_EQ(dynamic_cast<ActionWith&>(fb.body[1]).block.size(), 1u);
    EXPECT_EQ(Bytes(back), bytes);

    // A body that claims more bytes than there are is refused.
    std::vector<uint8_t> bad{0x9B, 5, 0, 0, 0, 0, 50, 0, 0x06, 0x00};
    SwfInput in(bad);
    SwfActionList b;
    EXPECT_FALSE(b.Read(in));
    // So is a list without its end byte, and a payload running past the data.
    std::vector<uint8_t> noEnd{0x06};
    SwfInput in2(noEnd);
    EXPECT_FALSE(SwfActionList().Read(in2));
    std::vector<uint8_t> longPayload{0x81, 9, 0, 1};
    SwfInput in3(longPayload);
    EXPECT_FALSE(SwfActionList().Read(in3));
}

TEST(SwfActions, UrlsJumpsAndFrameActionsRoundTrip) {
    SwfActionList list;
    list.Emplace<ActionGetURL>("http://example.org/", "_blank");
    list.Emplace<ActionGetURL2>(ActionGetURL2::Post, true, false);
    list.Emplace<ActionJump>(-5);
    list.Emplace<ActionIf>(12);
    list.Emplace<ActionGoToLabel>("slide_1");
    list.Emplace<ActionWaitForFrame2>(2);
    list.Emplace<ActionStoreRegister>(1);
    auto& g = list.Emplace<ActionGotoFrame2>(true);
    g.hasSceneBias = true;
    g.sceneBias = 10;
    list.Emplace<ActionGetVariable>();
    list.Emplace<ActionCallMethod>();
    list.Emplace<ActionTrace>();
    list.Add(std::make_unique<SwfRawAction>(0x8F, std::vector<uint8_t>{1, 2, 3}));
    const auto bytes = Bytes(list);
    auto back = ReadBack(bytes);
    EXPECT_EQ(back.size(), list.size());
    EXPECT_EQ(Bytes(back), bytes);
    EXPECT_EQ(dynamic_cast<ActionGetURL2&>(back[1]).method, ActionGetURL2::Post);
    EXPECT_EQ(dynamic_cast<ActionJump&>(back[2]).offset, -5);
    EXPECT_EQ(back[9].Code(), SwfActionCode::CallMethod);
}

// loadMovie into a clip and a POST that loads variables, as players decode the
// flags byte (method in the low bits, the sprite and variables flags at the top).
TEST(SwfActions, GetURL2FlagsByte) {
    SwfActionList list;
    list.Emplace<ActionGetURL2>(ActionGetURL2::None, true, false);
    list.Emplace<ActionGetURL2>(ActionGetURL2::Post, false, true);
    EXPECT_EQ(Bytes(list), (std::vector<uint8_t>{0x9A, 1, 0, 0x40, 0x9A, 1, 0, 0x82, 0}));
    auto back = ReadBack({0x9A, 1, 0, 0x41, 0});
    auto& get = dynamic_cast<ActionGetURL2&>(back[0]);
    EXPECT_EQ(get.method, ActionGetURL2::Get);
    EXPECT_TRUE(get.loadTarget);
    EXPECT_FALSE(get.loadVariables);
}

TEST(ShowScripts, PlayAndPauseFunctionsAndThePlayingFlag) {
    SwfActionList list;
    AppendShowFunctions(list);
    ASSERT_EQ(list.size(), 4u);
    auto& play = dynamic_cast<ActionDefineFunction&>(list[0]);
    auto& pause = dynamic_cast<ActionDefineFunction&>(list[1]);
    EXPECT_EQ(play.name, "slideshow_play");
    EXPECT_EQ(pause.name, "slideshow_pause");

    auto codes = [](const SwfActionList& l) {
        std::vector<uint8_t> c;
        for (const auto& a : l) c.push_back(a->Code());
        return c;
    };
    using C = SwfActionCode;
    EXPECT_EQ(codes(play.body), (std::vector<uint8_t>{C::Push, C::SetVariable, C::SetTarget, C::GotoFrame, C::Play,
                                                      C::SetTarget, C::Play}));
    EXPECT_EQ(codes(pause.body), (std::vector<uint8_t>{C::Push, C::SetVariable, C::SetTarget, C::GotoFrame, C::Play,
                                                       C::SetTarget, C::Stop}));
    EXPECT_EQ(dynamic_cast<ActionSetTarget&>(play.body[2]).target, "show_controls/playpause_btn");
    EXPECT_EQ(dynamic_cast<ActionGotoFrame&>(play.body[3]).frame, 1);
    EXPECT_EQ(dynamic_cast<ActionGotoFrame&>(pause.body[3]).frame, 0);
    EXPECT_EQ(dynamic_cast<ActionSetTarget&>(pause.body[5]).target, "");
    auto& flag = dynamic_cast<ActionPush&>(list[2]);
    EXPECT_EQ(flag.values, (std::vector<SwfPushValue>{SwfPushValue::MakeString("slideshow_playing"),
                                                      SwfPushValue::MakeString("1")}));
    EXPECT_EQ(list[3].Code(), C::SetVariable);

    SwfActionList slide;
    AppendSetCurrentSlide(slide, 12);
    EXPECT_EQ(Bytes(slide), (std::vector<uint8_t>{0x96, 25, 0, 0, 'c', 'u', 'r', 'r', 'e', 'n', 't', '_', 's', 'l',
                                                  'i', 'd', 'e', '_', 'i', 'n', 'd', 'e', 'x', 0, 0, '1', '2', 0,
                                                  0x1D, 0x00}));
}
