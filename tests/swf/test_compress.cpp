// Compression and expansion of movie files, their error codes, and the
// command-line faces: quillet compress / expand / info.
#include <gtest/gtest.h>

#include <zlib.h>

#include <filesystem>
#include <map>

#include "support/TempDir.h"
#include "swf/SwfCompress.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"
#include "swf/tags/JpegTags.h"

using namespace quillet;
using quillet::test::TempDir;
using quillet::test::readFile;
using quillet::test::runCommand;
using quillet::test::writeFile;

namespace {

// A small movie with some incompressible bulk.
std::string WriteMovie(const std::string& path, int frames = 3, size_t bulk = 5000) {
    SwfWriter w;
    w.Setup(6400, 4800, 12, 6);
    EXPECT_TRUE(w.Open(path, true));
    w.AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor(0, 0, 0)));
    std::vector<uint8_t> noise(bulk);
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

std::string Cli(const TempDir& dir, const std::string& args, int* status) {
    std::string out;
    *status = runCommand(quillet::test::ScratchUserEnvironment(dir) + QUILLET_CLI + " " + args, &out, true);
    return out;
}

// A compressed movie whose length field says `declared` bytes, holding a
// zlib stream of `zeros` zero bytes (a few kilobytes that inflate far).
void WriteInflatingMovie(const std::string& path, uint32_t declared, size_t zeros) {
    std::string head = "CWS\x0a";
    for (int i = 0; i < 4; ++i) head += static_cast<char>(declared >> (8 * i));
    const std::vector<uint8_t> body(zeros, 0);
    const std::vector<uint8_t> packed = ZlibCompress(body.data(), body.size());
    writeFile(path, head + std::string(packed.begin(), packed.end()));
}

std::map<std::string, std::string> FolderContents(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    for (auto& e : std::filesystem::directory_iterator(folder))
        files[e.path().filename().string()] = e.is_regular_file() ? readFile(e.path().string()) : "(folder)";
    return files;
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

    // Compressing a compressed movie fails without error 2 and creates nothing.
    SetSwfLastError(0);
    std::string error;
    EXPECT_FALSE(CompressSwf(dir.file("c.swf"), dir.file("cc.swf"), false, &error));
    EXPECT_EQ(SwfLastError(), 0);
    EXPECT_EQ(error, dir.file("c.swf") + ": already compressed (it begins with CWS)");
    EXPECT_FALSE(std::filesystem::exists(dir.file("cc.swf")));

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
    EXPECT_FALSE(ExpandSwf(dir.file("c.swf"), dir.file("c.swf"), false));
    EXPECT_EQ(SwfLastError(), kSwfErrorDestination);

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
    Cli(dir, "compress " + dir.file("a.swf") + " " + dir.file("c.swf"), &status);
    EXPECT_EQ(status, 0);
    std::string out = Cli(dir, "compress " + dir.file("a.swf") + " " + dir.file("c.swf"), &status);
    EXPECT_EQ(status, 1);
    EXPECT_NE(out.find(dir.file("c.swf") + ": already exists"), std::string::npos) << out;
    Cli(dir, "compress " + dir.file("a.swf") + " " + dir.file("c.swf") + " --overwrite", &status);
    EXPECT_EQ(status, 0);
    Cli(dir, "expand " + dir.file("c.swf") + " " + dir.file("b.swf"), &status);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(readFile(dir.file("b.swf")), plain);
    out = Cli(dir, "expand " + dir.file("a.swf") + " " + dir.file("x.swf"), &status);
    EXPECT_EQ(status, 1);
    EXPECT_NE(out.find(dir.file("a.swf") + ": not a compressed movie"), std::string::npos) << out;
    Cli(dir, "compress " + dir.file("a.swf"), &status);
    EXPECT_EQ(status, 2);

    out = Cli(dir, "info " + dir.file("c.swf"), &status);
    EXPECT_EQ(status, 0) << out;
    EXPECT_NE(out.find("CWS version 6"), std::string::npos) << out;
    EXPECT_NE(out.find("frames: 4"), std::string::npos) << out;
    EXPECT_NE(out.find("DefineBitsJPEG2"), std::string::npos) << out;
    out = Cli(dir, "info --json " + dir.file("a.swf"), &status);
    EXPECT_EQ(status, 0);
    EXPECT_NE(out.find("\"signature\": \"FWS\""), std::string::npos) << out;
    EXPECT_NE(out.find("\"frameRect\": {\"xMin\": 0, \"xMax\": 6400, \"yMin\": 0, \"yMax\": 4800}"), std::string::npos);
    EXPECT_NE(out.find("{\"code\": 21, \"name\": \"DefineBitsJPEG2\", \"offset\": 25, \"length\": 5002, \"id\": 1}"),
              std::string::npos)
        << out;
    writeFile(dir.file("cut.swf"), plain.substr(0, 100));
    out = Cli(dir, "info " + dir.file("cut.swf"), &status);
    EXPECT_EQ(status, 1);
    EXPECT_NE(out.find(dir.file("cut.swf") + ": the length field says"), std::string::npos) << out;
    Cli(dir, "info", &status);
    EXPECT_EQ(status, 2);
}

TEST(SwfCli, FailuresLeaveTheDestinationAsItWas) {
    TempDir dir, user;
    WriteMovie(dir.file("a.swf"));
    WriteMovie(dir.file("big.swf"), 1, 400000);  // compresses to more than the file-size limit below
    ASSERT_TRUE(CompressSwf(dir.file("a.swf"), dir.file("c.swf"), false));
    const std::string packed = readFile(dir.file("c.swf"));
    writeFile(dir.file("cut.swf"), packed.substr(0, packed.size() / 2));
    WriteInflatingMovie(dir.file("huge.swf"), 0xFFFFFFFF, 16 << 20);
    WriteInflatingMovie(dir.file("liar.swf"), 1000, 16 << 20);
    writeFile(dir.file("old.swf"), "the old movie");
    std::filesystem::create_directories(dir.file("tmp"));
    const auto before = FolderContents(dir.path());

    // Run in the scratch folder, so messages name the files as given here.
    const std::string huge = "huge.swf: the movie declares 4294967295 bytes uncompressed; the limit is " +
                             std::to_string(kSwfMaxMovieBytes);
    const std::string liar = "liar.swf: the compressed data expand beyond the declared length of 1000 bytes";
    struct Case {
        const char* args;
        std::string message;
        const char* limit = "";
    } cases[] = {
        {"expand c.swf old.swf", "old.swf: already exists (use --overwrite to replace it)"},
        {"compress c.swf old.swf --overwrite", "c.swf: already compressed (it begins with CWS)"},
        {"compress c.swf new.swf --overwrite", "c.swf: already compressed (it begins with CWS)"},
        {"expand cut.swf old.swf --overwrite", "cut.swf: the compressed data are damaged or cut short"},
        {"expand huge.swf old.swf --overwrite", huge},
        {"expand huge.swf new.swf", huge},
        {"expand liar.swf old.swf --overwrite", liar},
        {"info huge.swf", huge},
        {"info liar.swf", liar},
        {"compress big.swf old.swf --overwrite", "old.swf: cannot write: File too large", "ulimit -f 100;"},
    };
    for (const Case& c : cases) {
        std::string out;
        const int status = runCommand("cd '" + dir.path().string() + "' && export TMPDIR=\"$PWD/tmp\" && (" + c.limit +
                                          quillet::test::ScratchUserEnvironment(user) + QUILLET_CLI + " " + c.args + ")",
                                      &out, true);
        EXPECT_EQ(status, 1) << c.args << "\n" << out;
        EXPECT_EQ(out, "quillet: " + c.message + "\n") << c.args;
        EXPECT_EQ(FolderContents(dir.path()), before) << c.args;  // nothing changed, nothing left behind
        EXPECT_TRUE(std::filesystem::is_empty(dir.file("tmp"))) << c.args;
    }
}
