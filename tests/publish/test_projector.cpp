// Projector layouts, the player-command copy of the movie and BinHex.
#include <gtest/gtest.h>

#include <zlib.h>

#include <string>

#include "publish/BinHex.h"
#include "publish/Projector.h"
#include "swf/SwfReader.h"
#include "swf/actions/UrlActions.h"
#include "swf/tags/DoActionTag.h"

using namespace std::string_literals;

namespace quillet {
namespace {

std::string bytes(std::initializer_list<int> list) {
    std::string s;
    for (int b : list) s += static_cast<char>(b);
    return s;
}

TEST(Projector, TrailersInEachPlayersOrder) {
    struct Case {
        size_t movieSize;
        std::string macTail, winTail;
    };
    const Case cases[] = {
        {74565, bytes({0x00, 0x01, 0x23, 0x45, 0xFA, 0x12, 0x34, 0x56}),
         bytes({0x56, 0x34, 0x12, 0xFA, 0x45, 0x23, 0x01, 0x00})},
        {0, bytes({0, 0, 0, 0, 0xFA, 0x12, 0x34, 0x56}), bytes({0x56, 0x34, 0x12, 0xFA, 0, 0, 0, 0})},
        {256, bytes({0, 0, 1, 0, 0xFA, 0x12, 0x34, 0x56}), bytes({0x56, 0x34, 0x12, 0xFA, 0, 1, 0, 0})},
    };
    const std::string player = "MZ-player\0image"s;
    for (const Case& c : cases) {
        std::string movie(c.movieSize, 'm');
        for (const std::string& out : {WindowsProjectorBytes(player, movie), MacProjectorDataFork(player, movie)}) {
            ASSERT_EQ(out.size(), player.size() + movie.size() + 8) << c.movieSize;
            EXPECT_EQ(out.substr(0, player.size()), player);
            EXPECT_EQ(out.substr(player.size(), movie.size()), movie);
        }
        EXPECT_EQ(WindowsProjectorBytes(player, movie).substr(player.size() + movie.size()), c.winTail) << c.movieSize;
        EXPECT_EQ(MacProjectorDataFork(player, movie).substr(player.size() + movie.size()), c.macTail) << c.movieSize;
    }
}

// A one-frame movie: stage rectangle, 12 fps, one frame, ShowFrame, End;
// optionally led by a FileAttributes record.
std::string tinyMovie(bool compressed, bool fileAttributes) {
    std::string body = bytes({0x78, 0x00, 0x05, 0x5F, 0x00, 0x00, 0x0F, 0xA0, 0x00, 0x00, 0x0C, 0x01, 0x00});
    if (fileAttributes) body += bytes({0x44, 0x11, 0x00, 0x00, 0x00, 0x00});
    body += bytes({0x40, 0x00, 0x00, 0x00});
    uint32_t length = static_cast<uint32_t>(body.size() + 8);
    std::string head = std::string(compressed ? "CWS" : "FWS") + static_cast<char>(fileAttributes ? 8 : 6);
    for (int k = 0; k < 4; ++k) head += static_cast<char>((length >> (8 * k)) & 0xFF);
    if (!compressed) return head + body;
    uLongf size = compressBound(body.size());
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(body.data()), body.size());
    return head + packed.substr(0, size);
}

TEST(Projector, PlayerCommandsLeadTheFirstFrame) {
    struct Case {
        bool compressed, fileAttributes;
        ProjectorSettings options;
        const char* values[3];  // fullscreen, showmenu, allowscale
    };
    const Case cases[] = {
        {false, false, {.fullscreen = true, .allowscale = true, .showmenu = true}, {"true", "true", "true"}},
        {true, false, {.fullscreen = false, .allowscale = true, .showmenu = false}, {"false", "false", "true"}},
        {true, true, {.fullscreen = true, .allowscale = false, .showmenu = true}, {"true", "true", "false"}},
    };
    for (const Case& c : cases) {
        std::string out, error;
        bool added = AddPlayerCommands(tinyMovie(c.compressed, c.fileAttributes), c.options, out, &error);
        ASSERT_TRUE(added) << error;
        EXPECT_EQ(out[0], c.compressed ? 'C' : 'F');
        SwfReader reader;
        ASSERT_TRUE(reader.ReadMemory(reinterpret_cast<const uint8_t*>(out.data()), out.size())) << reader.Error();
        auto& tags = reader.Tags();
        size_t first = c.fileAttributes ? 1 : 0;
        ASSERT_EQ(tags.size(), first + 3);  // the script, ShowFrame, End
        if (c.fileAttributes) {
            EXPECT_EQ(tags[0]->Code(), 69);
        }
        auto* script = dynamic_cast<DoActionTag*>(tags[first].get());
        ASSERT_NE(script, nullptr);
        const char* commands[] = {"FSCommand:fullscreen", "FSCommand:showmenu", "FSCommand:allowscale"};
        ASSERT_EQ(script->actions.size(), 3u);
        for (int k = 0; k < 3; ++k) {
            auto* get = dynamic_cast<ActionGetURL*>(&script->actions[k]);
            ASSERT_NE(get, nullptr);
            EXPECT_EQ(get->url, commands[k]);
            EXPECT_EQ(get->target, c.values[k]);
        }
        EXPECT_EQ(tags[first + 1]->Code(), 1);
    }
    std::string out, error;
    for (const std::string& bad : {std::string("GIF89a..."), tinyMovie(false, false).substr(0, 12)})
        EXPECT_FALSE(AddPlayerCommands(bad, ProjectorSettings{true, true, true}, out, &error));
}

TEST(BinHex, CrcAndRuns) {
    // The CRC-16 with polynomial 0x1021 from zero (known check value of "123456789").
    EXPECT_EQ(BinHexCrc("123456789"), 0x31C3);
    MacFile file;
    file.name = "A";
    std::string data = std::string(300, 'x') + "\x90\x90" + "abc";
    file.dataFork = data;
    std::string text = EncodeBinHex(file);
    EXPECT_EQ(text.rfind("(This file must be converted with BinHex 4.0)\n", 0), 0u);
    size_t start = text.find(':'), end = text.rfind(':');
    ASSERT_LT(start, end);
    // 300 equal bytes take two runs: far fewer characters than bytes.
    EXPECT_LT(end - start, 80u);
    for (size_t i = text.find('\n') + 1; i < text.size();) {
        size_t eol = text.find('\n', i);
        EXPECT_LE(eol - i, 64u);
        i = eol + 1;
    }
}

}  // namespace
}  // namespace quillet
