// Sources that need no network: files, and names that are none.
#include "tests/support/temporary_folder.hpp"
#include "tools/feed/source.hpp"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace tallowmere::feed {
namespace {

using testing::HasSubstr;

void ignore(std::string_view) {}

std::string errorFor(const std::string& name) {
    const OpenedSource opened = openSource(name, ignore);
    EXPECT_EQ(opened.source, nullptr) << name;
    EXPECT_EQ(opened.badName, name.starts_with("udp:") || name.starts_with("tcp:")) << name;
    return opened.error;
}

TEST(SourceNames, BadPortsAreRefusedWithAnExample) {
    for (const char* const name : {"udp:", "udp:0", "udp:65536", "udp:-1", "udp:abc", "udp:10110x"}) {
        EXPECT_THAT(errorFor(name), HasSubstr(name));
        EXPECT_THAT(errorFor(name), HasSubstr("udp:10110"));
    }
    for (const char* const name : {"tcp:", "tcp:host", "tcp:host:", "tcp:host:0", "tcp::10110", "tcp:host:70000"}) {
        EXPECT_THAT(errorFor(name), HasSubstr(name));
        EXPECT_THAT(errorFor(name), HasSubstr("tcp:192.168.0.10:10110"));
    }
}

class Files : public testing::Test {
  protected:
    static std::string utf8(const std::filesystem::path& path) {
        const std::u8string text = path.u8string();
        return {text.begin(), text.end()};
    }

    const test::TemporaryFolder temporary;
    const std::filesystem::path& folder = temporary.path();
};

TEST_F(Files, AreReadToTheirEnd) {
    const std::filesystem::path file = folder / std::filesystem::path(u8"Wettfahrt \u00e4.nmea");
    std::string content(100'000, 'x');
    content[70'000] = '\r';
    content[70'001] = '\n';
    content[80'000] = '\x1a';
    std::ofstream(file, std::ios::binary) << content;
    const OpenedSource opened = openSource(utf8(file), ignore);
    ASSERT_NE(opened.source, nullptr) << opened.error;
    EXPECT_TRUE(opened.source->isRecording());
    std::string bytes;
    while (opened.source->read(bytes, std::chrono::milliseconds(1)) == Source::State::Data) {
    }
    EXPECT_EQ(bytes, content);
    EXPECT_EQ(opened.source->read(bytes, std::chrono::milliseconds(1)), Source::State::End);
}

TEST_F(Files, EmptyFileEndsAtOnce) {
    std::ofstream(folder / "empty.nmea").flush();
    const OpenedSource opened = openSource(utf8(folder / "empty.nmea"), ignore);
    ASSERT_NE(opened.source, nullptr);
    std::string bytes;
    EXPECT_EQ(opened.source->read(bytes, std::chrono::milliseconds(1)), Source::State::End);
}

TEST_F(Files, MissingFileAndFolderAreRefusedByName) {
    const std::string missing = utf8(folder / "none.nmea");
    EXPECT_THAT(errorFor(missing), HasSubstr(missing));
    EXPECT_THAT(errorFor(missing), HasSubstr("no such file"));
    EXPECT_THAT(errorFor(utf8(folder)), HasSubstr("it is a folder"));
    EXPECT_FALSE(errorFor("").empty());
}

} // namespace
} // namespace tallowmere::feed
