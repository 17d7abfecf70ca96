// Compression and expansion of movie files, their error codes, and the
// command-line faces: quillet compress / expand / info.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/TempDir.h"
#include "swf/SwfCompress.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

using namespace quillet;
using quillet::test::TempDir;
using quillet::test::readFile;
using quillet::test::runCommand;
using quillet::test::writeFile;

namespace {

// A small movie with some incompressible bulk.
std::string WriteMovie(const std::string& path, int frames = 3) {
    SwfWriter w;
    w.Setup(6400, 4800, 12, 6);
    EXPECT_TRUE(w.Open(path, true));
    w.AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor(0, 0, 0)));
    std::vector<uint8_t> noise(5000);
    uint32_t x = 12345;
    for (auto& b : noise) b = static_cast<uint8_t>((x = x * 1103515245 + 12345) >> 16);
    w.AddTag(std::make_unique<DefineBitsJPEG2Tag>(1, noise));
    w.AddTag(DefineShapeTag::Rectangle(2, SwfRect(0, 2000, 0, 2000), SwfFillStyle::MakeSolid({255, 0, 0})));
    w.AddTag(PlaceObject2Tag::Place(1, 2));
    for (int i = 0; i < frames; ++i) w.AddTag(std::make_unique<ShowFrameTag>());
    w.AddTag(std::make_unique<EndTag>());
    w.Close();
    return readFile(path);
}

uint32_t LengthField(const std::string& b) {
    return uint8_t(b[4]) | uint8_t(b[5]) << 8 | uint8_t(b[6]) << 16 | uint32_t(uint8_t(b[7])) << 24;
}

std::string Cli(const std::string& args, int* status) {
    std::string out;
    *status = runCommand(std::string(QUILLET_CLI) + " " + args + " 2>&1", &out, true);
    return out;
}

}  // namespace

TEST(SwfCompress, CompressThenExpandGivesTheSameBytes) {
    TempDir dir;
    const std::string plain = WriteMovie(dir.file("a.swf"));
    ASSERT_TRUE(CompressSwf(dir.file("a.swf"), dir.file("c.swf"), false));
    const std::string packed = readFile(dir.file("c.swf"));
    EXPECT_EQ(packed.substr(0, 3), "CWS");
    EXPECT_EQ(packed[3], plain[3]);
    EXPECT_EQ(LengthField(packed), plain.size());  // the uncompressed length
    EXPECT_TRUE(IsSwfFile(dir.file("c.swf")));
    EXPECT_TRUE(IsCompressedSwf(dir.file("c.swf")));
    EXPECT_FALSE(IsCompressedSwf(dir.file("a.swf")));

    ASSERT_TRUE(ExpandSwf(dir.file("c.swf"), dir.file("b.swf"), false));
    EXPECT_EQ(readFile(dir.file("b.swf")), plain);

    // The reader takes the compressed file through its private expansion.
    SwfReader reader;
    ASSERT_TRUE(reader.ReadFile(dir.file("c.swf"))) << reader.Error();
    EXPECT_TRUE(reader.Header().compressed);
    EXPECT_EQ(reader.Header().frameCount, 3);
    EXPECT_EQ(reader.Tags().size(), 8u);
    SwfReader memory;
    ASSERT_TRUE(memory.ReadMemory(reinterpret_cast<const uint8_t*>(packed.data()), packed.size()));
    EXPECT_EQ(memory.Tags().size(), 8u);
}

TEST(SwfCompress, ErrorCodesSayWhatWentWrong) {
    TempDir dir;
    WriteMovie(dir.file("a.swf"));
    ASSERT_TRUE(CompressSwf(dir.file("a.swf"), dir.file("c.swf"), false));

    // Compressing a compressed movie fails without error 2 and writes nothing.
    SetSwfLastError(0);
    EXPECT_FALSE(CompressSwf(dir.file("c.swf"), dir.file("cc.swf"), false));
    EXPECT_EQ(SwfLastError(), 0);
    EXPECT_EQ(std::filesystem::file_size(dir.file("cc.swf")), 0u);

    writeFile(dir.file("text.txt"), "just some text\n");
    EXPECT_FALSE(CompressSwf(dir.file("text.txt"), dir.file("t.swf"), true));
    EXPECT_EQ(SwfLastError(), kSwfErrorNotMovie);
    EXPECT_FALSE(CompressSwf(dir.file("missing.swf"), dir.file("t.swf"), true));
    EXPECT_EQ(SwfLastError(), kSwfErrorNotMovie);

    // A folder, or an existing file without overwrite, cannot be the destination.
    std::filesystem::create_directory(dir.file("folder"));
    EXPECT_FALSE(CompressSwf(dir.file("a.swf"), dir.file("folder"), true));
    EXPECT_EQ(SwfLastError(), kSwfErrorDestination);
    EXPECT_FALSE(CompressSwf(dir.file("a.swf"), dir.file("c.swf"), false));
    EXPECT_EQ(SwfLastError(), kSwfErrorDestination);
    EXPECT_TRUE(CompressSwf(dir.file("a.swf"), dir.file("c.swf"), true));

    EXPECT_FALSE(ExpandSwf(dir.file("a.swf"), dir.file("e.swf"), true));
    EXPECT_EQ(SwfLastError(), kSwfErrorNotCompressed);
    SetSwfLastError(0);
    EXPECT_FALSE(IsCompressedSwf(dir.file("missing.swf")));
    EXPECT_EQ(SwfLastError(), kSwfErrorCannotRead);
    EXPECT_FALSE(ExpandSwf(dir.file("c.swf"), dir.file("folder"), true));
    EXPECT_EQ(SwfLastError(), kSwfErrorDestination);

    // A destination prepared with overwrite replaces an existing file by an empty one.
    writeFile(dir.file("old.bin"), "old");
    EXPECT_FALSE(PrepareDestination(dir.file("old.bin"), false));
    EXPECT_TRUE(PrepareDestination(dir.file("old.bin"), true));
    EXPECT_EQ(std::filesystem::file_size(dir.file("old.bin")), 0u);

    // Damaged compressed data: expansion fails.
    std::string packed = readFile(dir.file("c.swf"));
    writeFile(dir.file("cut.swf"), packed.substr(0, packed.size() / 2));
    EXPECT_FALSE(ExpandSwf(dir.file("cut.swf"), dir.file("e.swf"), true));
    EXPECT_FALSE(ExpandSwfLimited(dir.file("c.swf"), dir.file("e.swf"), true, 100));
}

TEST(SwfCli, CompressExpandAndInfo) {
    TempDir dir;
    const std::string plain = WriteMovie(dir.file("a.swf"), 4);
    int status = 0;
    Cli("compress " + dir.file("a.swf") + " " + dir.file("c.swf"), &status);
    EXPECT_EQ(status, 0);
    std::string out = Cli("compress " + dir.file("a.swf") + " " + dir.file("c.swf"), &status);
    EXPECT_EQ(status, 1);
    EXPECT_NE(out.find(dir.file("c.swf") + ": already exists"), std::string::npos) << out;
    Cli("compress " + dir.file("a.swf") + " " + dir.file("c.swf") + " --overwrite", &status);
    EXPECT_EQ(status, 0);
    Cli("expand " + dir.file("c.swf") + " " + dir.file("b.swf"), &status);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(readFile(dir.file("b.swf")), plain);
    out = Cli("expand " + dir.file("a.swf") + " " + dir.file("x.swf"), &status);
    EXPECT_EQ(status, 1);
    EXPECT_NE(out.find(dir.file("a.swf") + ": not a compressed movie"), std::string::npos) << out;
    out = Cli("compress " + dir.file("c.swf") + " " + dir.file("x.swf") + " --overwrite", &status);
    EXPECT_EQ(status, 1);
    EXPECT_NE(out.find("already compressed"), std::string::npos) << out;
    Cli("compress " + dir.file("a.swf"), &status);
    EXPECT_EQ(status, 2);

    out = Cli("info " + dir.file("c.swf"), &status);
    EXPECT_EQ(status, 0) << out;
    EXPECT_NE(out.find("CWS version 6"), std::string::npos) << out;
    EXPECT_NE(out.find("frames: 4"), std::string::npos) << out;
    EXPECT_NE(out.find("DefineBitsJPEG2"), std::string::npos) << out;
    out = Cli("info --json " + dir.file("a.swf"), &status);
    EXPECT_EQ(status, 0);
    EXPECT_NE(out.find("\"signature\": \"FWS\""), std::string::npos) << out;
    EXPECT_NE(out.find("\"frameRect\": {\"xMin\": 0, \"xMax\": 6400, \"yMin\": 0, \"yMax\": 4800}"), std::string::npos);
    EXPECT_NE(out.find("{\"code\": 21, \"name\": \"DefineBitsJPEG2\", \"offset\": 25, \"length\": 5002, \"id\": 1}"),
              std::string::npos)
        << out;
    writeFile(dir.file("cut.swf"), plain.substr(0, 100));
    out = Cli("info " + dir.file("cut.swf"), &status);
    EXPECT_EQ(status, 1);
    EXPECT_NE(out.find(dir.file("cut.swf") + ": the length field says"), std::string::npos) << out;
    Cli("info", &status);
    EXPECT_EQ(status, 2);
}
