// What is derived from the description of the commands: manual page, completion, document, exit codes.
#include "tests/tools/cli/command_fixture.hpp"
#include "tools/commands/exit_codes.hpp"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <regex>

namespace tallowmere::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class ProgramText : public CommandTest {
  protected:
    static std::string document() {
        std::ifstream file(TALLOWMERE_SOURCE "/docs/commands.md");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// Every match's first group.
    static std::vector<std::string> all(const std::string& text, const std::string& pattern) {
        std::vector<std::string> found;
        const std::regex expression(pattern);
        for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
            found.push_back((*match)[1]);
        return found;
    }
    /// The commands as the completion has them, "calibration show" among them.
    std::vector<std::string> commands() { return all(run({"completion", "bash"}).out, "\n    '([a-z ]+)'\\)\n"); }
};

TEST_F(ProgramText, ManualPageHasEveryCommandAndOption) {
    const CommandRun result = run({"manual"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    for (const char* name : {"list", "get", "set", "watch", "status", "calibration eval", "check", "feed", "simulate",
                             "record", "play", "plot", "completion", "manual"})
        EXPECT_THAT(result.out, HasSubstr(std::string(".SS \\fB") + name + "\\fR")) << name;
    EXPECT_THAT(result.out, HasSubstr("\\fB\\-\\-interval\\fR \\fISECONDS\\fR"));
    EXPECT_THAT(result.out, HasSubstr("[\\fICHANNEL\\fR...]"));
    for (const tools::exit_code::Meaning& meaning : tools::exit_code::kAll)
        EXPECT_THAT(result.out, HasSubstr("\\fB" + std::to_string(meaning.code) + "\\fR"));
}

TEST_F(ProgramText, ManualPageIsAscii) {
    for (const char c : run({"manual"}).out) EXPECT_LT(static_cast<unsigned char>(c), 0x80);
}

TEST_F(ProgramText, CompletionKnowsChannelsAndItems) {
    const CommandRun result = run({"completion", "bash"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("    'BSP'\n"));
    EXPECT_THAT(result.out, HasSubstr("    'Wind weight'\n"));
    EXPECT_THAT(result.out, HasSubstr("operands='channel...'"));
    EXPECT_EQ(run({"completion", "tcsh"}).code, 2);
    EXPECT_FALSE(sectionExists());
}

TEST_F(ProgramText, DocumentHasEveryCommandAndOption) {
    const std::string text = document();
    ASSERT_GT(commands().size(), 15U);
    for (const std::string& command : commands()) {
        if (command == "calibration") continue; // its own commands are there
        EXPECT_THAT(text, HasSubstr("tallowmere " + command)) << command;
        std::vector<std::string> words = all(command + " ", "([a-z]+) ");
        words.push_back("--help");
        for (const std::string& option : all(run(words).out, "(--[a-z]+)"))
            EXPECT_THAT(text, HasSubstr(option)) << command;
    }
}

TEST_F(ProgramText, DocumentAndHelpHaveTheExitCodes) {
    const std::string text = document();
    const std::string help = run({"--help"}).out;
    for (const tools::exit_code::Meaning& meaning : tools::exit_code::kAll) {
        EXPECT_THAT(text, HasSubstr("| " + std::to_string(meaning.code) + " | " + meaning.text + " |"));
        EXPECT_THAT(help, HasSubstr(std::to_string(meaning.code) + "  " + meaning.text));
    }
}

class ExitCode : public CommandTest {};

TEST_F(ExitCode, DoneIsZero) {
    store(ZAN_BSP, 6.4);
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{{"get", "BSP"},
                                                                                           {"get", "AWA"}, // no value
                                                                                           {"set", "BSP", "6"},
                                                                                           {"watch", "--count", "1"},
                                                                                           {"status"},
                                                                                           {"list", "--boats"},
                                                                                           {"calibration", "list"},
                                                                                           {"check"},
                                                                                           {"manual"},
                                                                                           {"completion", "bash"},
                                                                                           {"--help"}})
        EXPECT_EQ(run(arguments).code, tools::exit_code::kDone) << arguments.front();
}

TEST_F(ExitCode, NotFoundIsOne) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"status"}, {"list", "--vars"}, {"get", "BSP"}, {"watch", "--count", "1"}})
        EXPECT_EQ(run(arguments).code, tools::exit_code::kNotFound) << arguments.front();
    holder();
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"get", "nosuch"},
                                               {"set", "Time", "1"},   // refused
                                               {"set", "AWS", "1000"}, // cleared
                                               {"watch", "nosuch"},
                                               {"calibration", "show", "nosuch"},
                                               {"calibration", "eval", "20", "1"},
                                               {"calibration", "plot", "nosuch"},
                                               {"plot", "nosuch.csv", "BSP"},
                                               {"play", "nosuch.csv"},
                                               {"record", "nosuch"}})
        EXPECT_EQ(run(arguments).code, tools::exit_code::kNotFound) << arguments.front();
    machine.addFile(u"C:\\ProgramData\\Tallowmere\\calibration\\ZAN_CAL_Bsp.txt", "x");
    EXPECT_EQ(run({"check"}).code, tools::exit_code::kNotFound);
}

TEST_F(ExitCode, WrongUsageIsTwo) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{{},
                                                                                           {"nosuch"},
                                                                                           {"get"},
                                                                                           {"set", "BSP", "fast"},
                                                                                           {"check", "nosuch"},
                                                                                           {"watch", "BSP", "--all"},
                                                                                           {"completion"},
                                                                                           {"calibration"}})
        EXPECT_EQ(run(arguments).code, tools::exit_code::kUsage);
}

TEST_F(ExitCode, SystemFailureIsThree) {
    machine.failAlways(Step::CreateSection);
    EXPECT_EQ(run({"set", "BSP", "1"}).code, tools::exit_code::kSystem);
}

} // namespace
} // namespace tallowmere::test
