#include "platform/durable_file.hpp"
#include "tests/support/temporary_folder.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tallowmere::platform {
namespace {

class DurableFileTest : public ::testing::Test {
  protected:
    [[nodiscard]] std::string bytes() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / u"durable_\u00E4.txt";
};

TEST_F(DurableFileTest, WhatIsWrittenCanBeReadByOthersMeanwhile) {
    const auto file = makeDurableFile(path.u16string());
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->write("one\n") && file->write("") && file->write("two\n") && file->sync());
    EXPECT_EQ(bytes(), "one\ntwo\n");
}

TEST_F(DurableFileTest, AFileThatIsThereIsLeftAlone) {
    std::ofstream(path) << "old";
    EXPECT_EQ(makeDurableFile(path.u16string()), nullptr);
    EXPECT_EQ(bytes(), "old");
}

TEST_F(DurableFileTest, WhatCanNotBeMadeIsNull) {
    EXPECT_EQ(makeDurableFile(u""), nullptr);
    EXPECT_EQ(makeDurableFile((path / u"below").u16string()), nullptr);
    EXPECT_EQ(makeDurableFile(path.u16string() + u'\0' + u"x"), nullptr);
}

} // namespace
} // namespace tallowmere::platform
