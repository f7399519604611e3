// The real program, in processes of its own, on the real platform. This process holds the section.
#include "core/ccore.hpp"
#include "tools/commands/reading.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tallowmere::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

bool onWindows() {
    return platform::hostPlatform().separator() == u'\\';
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct ProgramRun {
    int code;
    std::string out;
    std::string err;
};

ProgramRun run(const std::string& arguments) {
    static int number = 0;
    const std::string stem = "program_test_" + std::to_string(++number);
    const std::filesystem::path out = stem + ".out";
    const std::filesystem::path err = stem + ".err";
    const std::string program = std::filesystem::absolute(TALLOWMERE_PROGRAM).make_preferred().string();
    std::string command = "\"" + program + "\" " + arguments + " > " + out.string() + " 2> " + err.string();
    if (onWindows()) command = "\"" + command + "\""; // its shell takes the outermost quotes away
    const int status = std::system(command.c_str());
    ProgramRun result{status >= 256 ? status / 256 : status, contentOf(out), contentOf(err)};
    std::filesystem::remove(out);
    std::filesystem::remove(err);
    return result;
}

TEST(Program, StatusWithoutASectionMakesNone) {
    const ProgramRun result = run("status");
    EXPECT_EQ(result.code, 1) << result.err;
    EXPECT_THAT(result.out, HasSubstr("none"));
    EXPECT_EQ(platform::hostPlatform().openSection(sectionName(), kSharedAreaBytes), nullptr);
}

TEST(Program, ValueSetByOneProcessIsReadByAnother) {
    CCore holder(false);
    ASSERT_NE(holder.area(), nullptr);
    const ProgramRun written = run("set BSP 6.4");
    EXPECT_EQ(written.code, 0) << written.err;
    EXPECT_THAT(written.err, IsEmpty());
    const ProgramRun read = run("get BSP");
    EXPECT_EQ(read.code, 0) << read.err;
    EXPECT_THAT(read.out, HasSubstr("6.40  kt"));
    EXPECT_EQ(tools::readChannel(holder.values(), ZAN_BSP, 0, platform::hostPlatform().now()).value, "6.40");
}

TEST(Program, ValueIsGoneWithTheLastProcess) {
    EXPECT_EQ(run("set BSP 6.4").code, 0);
    EXPECT_THAT(run("get BSP").out, HasSubstr("BSP  -  kt"));
}

TEST(Program, StatusSeesTheSectionOfAnotherProcess) {
    CCore holder(false);
    const ProgramRun result = run("status");
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("ZanCore_363_253336, made by "));
}

TEST(Program, WatchIntoAFileIsPlain) {
    CCore holder(false);
    const ProgramRun result = run("watch BSP AWA --count 2 --interval 0.05");
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2);
    EXPECT_THAT(result.out, HasSubstr("\tAWA\t-\t\u00B0\t-\t"));
    EXPECT_EQ(result.out.find('\x1b'), std::string::npos);
}

TEST(Program, WrongUsageHasItsOwnCode) {
    EXPECT_EQ(run("get").code, 2);
    EXPECT_EQ(run("get nosuchchannel").code, 1);
}

TEST(Program, ArgumentsBeyondAsciiArriveWhole) {
    // The shell is called in the narrow character set; what the program prints is UTF-8.
    const std::string typed = platform::hostPlatform().narrow(u"qq\u00E4qq", 16);
    if (typed.find('?') != std::string::npos) GTEST_SKIP() << "no such character in this code page";
    EXPECT_THAT(run("get " + typed).err, HasSubstr("\"qq\u00E4qq\""));
}

} // namespace
} // namespace tallowmere::test
