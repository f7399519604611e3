#include "tests/contract/platform_fixture.hpp"

#include <algorithm>
#include <array>

namespace tallowmere::test {
namespace {

class FilesContract : public ContractTest {
  protected:
    /// All bytes of a file, taken in pieces of this size.
    [[nodiscard]] std::optional<std::string> readAll(const std::u16string& path, std::size_t piece = 4096) {
        const auto reader = platform.openFile(path);
        if (reader == nullptr) return std::nullopt;
        std::string bytes;
        std::vector<char> buffer(piece);
        while (const std::size_t count = reader->read(buffer)) bytes.append(buffer.data(), count);
        return bytes;
    }
};

TEST_P(FilesContract, TheProgramDataFolderIsAFolder) {
    EXPECT_TRUE(platform.isDirectory(platform.programDataFolder()));
}

TEST_P(FilesContract, TheHostExecutableHasAPathWithFolders) {
    const std::u16string path = platform.hostExecutable();
    EXPECT_NE(path.find(platform.separator()), path.npos);
    EXPECT_NE(path.back(), platform.separator());
}

TEST_P(FilesContract, ExistsTellsFilesAndFoldersFromNothing) {
    fixture->putFile(inFolder(u"file"), "x");
    EXPECT_TRUE(platform.exists(inFolder(u"file")));
    EXPECT_TRUE(platform.exists(fixture->folder()));
    EXPECT_FALSE(platform.exists(inFolder(u"nothing")));
    EXPECT_FALSE(platform.exists(u""));
}

TEST_P(FilesContract, IsDirectoryTellsFoldersFromFilesAndNothing) {
    fixture->putFile(inFolder(u"file"), "x");
    EXPECT_TRUE(platform.isDirectory(fixture->folder()));
    EXPECT_FALSE(platform.isDirectory(inFolder(u"file")));
    EXPECT_FALSE(platform.isDirectory(inFolder(u"nothing")));
    EXPECT_FALSE(platform.isDirectory(u""));
}

TEST_P(FilesContract, CaseCountsWhereThePlatformSaysSo) {
    fixture->putFile(inFolder(u"Mixed"), "x");
    EXPECT_EQ(platform.exists(inFolder(u"mIXED")), !platform.caseSensitivePaths());
}

TEST_P(FilesContract, MakeDirectoryMakesOneLevel) {
    platform.makeDirectory(inFolder(u"one"));
    EXPECT_TRUE(platform.isDirectory(inFolder(u"one")));
    const std::u16string deep = joined(inFolder(u"missing"), u"below");
    platform.makeDirectory(deep);
    EXPECT_FALSE(platform.exists(deep));
    EXPECT_FALSE(platform.exists(inFolder(u"missing")));
}

TEST_P(FilesContract, MakeDirectoryIgnoresWhatIsThereAndAnEmptyPath) {
    fixture->putFile(inFolder(u"file"), "x");
    platform.makeDirectory(inFolder(u"file"));
    EXPECT_FALSE(platform.isDirectory(inFolder(u"file")));
    platform.makeDirectory(fixture->folder());
    platform.makeDirectory(u"");
    EXPECT_TRUE(platform.isDirectory(fixture->folder()));
}

TEST_P(FilesContract, AFileIsReadByteForByteInPiecesOfAnySize) {
    std::string bytes;
    for (int i = 0; i < 10'000; ++i) bytes += static_cast<char>(i * 7);
    bytes += "\r\n\x1A\n\r";
    fixture->putFile(inFolder(u"bytes"), bytes);
    for (const std::size_t piece : {1U, 3U, 4096U, 100'000U}) EXPECT_EQ(readAll(inFolder(u"bytes"), piece), bytes);
}

TEST_P(FilesContract, ReadingPastTheEndGivesNothingAgainAndAgain) {
    fixture->putFile(inFolder(u"short"), "abc");
    const auto reader = platform.openFile(inFolder(u"short"));
    ASSERT_NE(reader, nullptr);
    std::array<char, 8> buffer{};
    EXPECT_EQ(reader->read(buffer), 3U);
    EXPECT_EQ(reader->read(buffer), 0U);
    EXPECT_EQ(reader->read(buffer), 0U);
}

TEST_P(FilesContract, AnEmptyFileIsOpenedAndHasNoBytes) {
    fixture->putFile(inFolder(u"empty"), "");
    EXPECT_EQ(readAll(inFolder(u"empty")), "");
}

TEST_P(FilesContract, OnlyAFileIsOpened) {
    EXPECT_EQ(platform.openFile(fixture->folder()), nullptr);
    EXPECT_EQ(platform.openFile(inFolder(u"nothing")), nullptr);
    EXPECT_EQ(platform.openFile(u""), nullptr);
}

TEST_P(FilesContract, APathEndsAtItsFirstNul) {
    const std::u16string path = inFolder(u"file");
    fixture->putFile(path, "abc");
    const std::u16string longer = path + std::u16string(u"\0.txt", 5);
    EXPECT_EQ(readAll(longer), "abc");
    EXPECT_TRUE(platform.exists(longer));
    EXPECT_NE(platform.openXml(longer), nullptr);
    EXPECT_FALSE(platform.exists(std::u16string(1, u'\0') + path));
}

TEST_P(FilesContract, NamesMayHaveAnyCharacters) {
    const std::u16string path = inFolder(u"gr\u00FC\u00DFe \u4E2D \U0001F6A2.txt");
    ASSERT_TRUE(platform.appendLine(path, "x"));
    EXPECT_TRUE(platform.exists(path));
    EXPECT_EQ(readAll(path), "x" + std::string(fixture->lineEnd()));
}

TEST_P(FilesContract, AppendedLinesFollowEachOther) {
    const std::string end(fixture->lineEnd());
    EXPECT_TRUE(platform.appendLine(inFolder(u"log"), "one"));
    EXPECT_TRUE(platform.appendLine(inFolder(u"log"), ""));
    EXPECT_TRUE(platform.appendLine(inFolder(u"log"), "three"));
    EXPECT_EQ(fixture->fileBytes(inFolder(u"log")), "one" + end + end + "three" + end);
}

TEST_P(FilesContract, ALineIsAppendedWhileOthersReadTheFile) {
    ASSERT_TRUE(platform.appendLine(inFolder(u"log"), "one"));
    const auto reader = platform.openFile(inFolder(u"log"));
    ASSERT_NE(reader, nullptr);
    EXPECT_TRUE(platform.appendLine(inFolder(u"log"), "two"));
}

TEST_P(FilesContract, NothingIsAppendedToAFolderOrInAMissingOne) {
    EXPECT_FALSE(platform.appendLine(fixture->folder(), "x"));
    EXPECT_FALSE(platform.appendLine(joined(inFolder(u"missing"), u"log"), "x"));
    EXPECT_FALSE(platform.exists(inFolder(u"missing")));
}

TALLOWMERE_CONTRACT(FilesContract);

} // namespace
} // namespace tallowmere::test
