// Output files written beside their target, and size-checked reads.
#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "io/OutputFile.h"
#include "io/ReadFile.h"
#include "support/TempDir.h"

using namespace quillet;
using quillet::test::readFile;
using quillet::test::TempDir;
using quillet::test::writeFile;

namespace {

int gUmaskCalls = 0;

size_t CountFiles(const std::filesystem::path& folder) {
    size_t files = 0;
    for ([[maybe_unused]] auto& e : std::filesystem::directory_iterator(folder)) ++files;
    return files;
}

}  // namespace

// Counts umask() calls: this definition takes the C library's place for
// everything linked into the test program.
extern "C" mode_t umask(mode_t mask) noexcept {
    ++gUmaskCalls;
    return static_cast<mode_t>(syscall(SYS_umask, mask));
}

TEST(OutputFile, ReplacesOrLeavesTheOldFile) {
    TempDir dir;
    std::string path = dir.file("f.txt");
    writeFile(path, "old");
    chmod(path.c_str(), 0640);
    ASSERT_TRUE(WriteFileAtomically(path, "new contents"));
    EXPECT_EQ(readFile(path), "new contents");
    struct stat st {};
    ASSERT_EQ(stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);  // the permissions stay

    // A name near the length limit still leaves room for the private name.
    const std::string longName = dir.file(std::string(250, 'n'));
    EXPECT_TRUE(WriteFileAtomically(longName, "x"));

    std::string error;
    OutputFile exclusive;
    EXPECT_FALSE(exclusive.Open(path, false));
    EXPECT_EQ(exclusive.Error(), "the file exists already");
    // A folder that does not exist: failure, message, nothing written.
    EXPECT_FALSE(WriteFileAtomically(dir.file("no/such/f.txt"), "x", &error));
    EXPECT_NE(error.find("cannot create"), std::string::npos);
    // A folder or a pipe cannot be replaced by a file; either stays as it was
    // and no private file is left behind.
    std::filesystem::create_directory(dir.file("d"));
    writeFile(dir.file("d/inside"), "x");
    EXPECT_FALSE(WriteFileAtomically(dir.file("d"), "x", &error));
    EXPECT_TRUE(std::filesystem::is_directory(dir.file("d")));
    ASSERT_EQ(mkfifo(dir.file("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(WriteFileAtomically(dir.file("pipe"), "x", &error));
    EXPECT_EQ(error, "it is not a regular file");
    EXPECT_TRUE(std::filesystem::is_fifo(dir.file("pipe")));
    EXPECT_EQ(CountFiles(dir.path()), 4u);
}

TEST(OutputFile, NewFilesTakeTheUmaskWithoutSettingIt) {
    TempDir dir;
    const auto old = static_cast<mode_t>(syscall(SYS_umask, 027));
    gUmaskCalls = 0;
    const bool written = WriteFileAtomically(dir.file("new.txt"), "x");
    OutputFile out;
    const bool opened = out.Open(dir.file("other.txt"), false);
    const bool committed = opened && out.Commit();
    const int calls = gUmaskCalls;
    const auto during = static_cast<mode_t>(syscall(SYS_umask, old));
    ASSERT_TRUE(written && committed) << out.Error();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(during, 027u);
    for (const char* name : {"new.txt", "other.txt"}) {
        struct stat st {};
        ASSERT_EQ(stat(dir.file(name).c_str(), &st), 0);
        EXPECT_EQ(st.st_mode & 0777, 0640u) << name;
    }
}

TEST(ReadFileLimited, ReadsOnlySmallRegularFiles) {
    TempDir dir;
    writeFile(dir.file("ten"), "0123456789");
    writeFile(dir.file("eleven"), "0123456789a");
    std::filesystem::create_directory(dir.file("folder"));
    ASSERT_EQ(mkfifo(dir.file("pipe").c_str(), 0600), 0);
    struct Case {
        const char* name;
        const char* error;  // empty: read
    } cases[] = {
        {"ten", ""},
        {"eleven", "the file is too large (11 bytes; the limit is 10)"},
        {"absent", "the file was not found"},
        {"folder", "not a regular file"},
        {"pipe", "not a regular file"},  // without a writer: must not wait for one
    };
    alarm(20);  // a read that waits for ever ends the program instead
    for (const Case& c : cases) {
        std::vector<uint8_t> bytes{1};
        std::string error;
        const bool ok = ReadFileLimited(dir.file(c.name), 10, bytes, &error);
        EXPECT_EQ(ok, !*c.error) << c.name;
        EXPECT_EQ(error, c.error) << c.name;
        EXPECT_EQ(bytes.size(), ok ? 10u : 0u) << c.name;
    }
    alarm(0);
}
