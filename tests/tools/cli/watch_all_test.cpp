#include "tests/tools/cli/command_fixture.hpp"
#include "tools/commands/all_view.hpp"
#include "tools/commands/reading_table.hpp"
#include "tools/commands/screen_text.hpp"

#include <gmock/gmock.h>

#include <functional>
#include <set>
#include <sstream>

namespace tallowmere::test {
namespace {

using platform::Key;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using tools::AllRound;
using tools::AllView;
using tools::ScreenText;
using tools::Style;

TEST(ScreenText, LinesAreShortenedToTheWidthAndTheRows) {
    ScreenText screen({12, 4});
    EXPECT_EQ(screen.columns(), 11U);
    screen.put(0, Style::Bold, "0123456789abcdef");
    screen.put(1, Style::Plain, "0123456789\u6C34");
    screen.put(4, Style::Plain, "below");
    EXPECT_EQ(screen.lines(), (std::vector<std::string>{"0123456789\u2026", "0123456789\u2026", "", ""}));
}

TEST(ScreenText, FramePutsEachLineAtItsRow) {
    ScreenText screen({80, 4});
    screen.put(1, Style::Reverse, "two");
    EXPECT_EQ(screen.frame(), "\x1b[1;1H\x1b[0m\x1b[K\x1b[2;1H\x1b[7mtwo\x1b[0m\x1b[K"
                              "\x1b[3;1H\x1b[0m\x1b[K\x1b[4;1H\x1b[0m\x1b[K");
}

TEST(ScreenText, AbsurdSizesAreBroughtIntoRange) {
    EXPECT_EQ(ScreenText({-5, 0}).rows(), 4U);
    EXPECT_EQ(ScreenText({0, 2'000'000'000}).rows(), 1000U);
    EXPECT_EQ(ScreenText({2'000'000'000, 5}).columns(), 999U);
}

Key character(const std::string& text) {
    return {Key::Kind::Character, text};
}
Key special(Key::Kind kind) {
    return {kind, {}};
}

class AllViewTest : public CommandTest {
  protected:
    std::vector<std::string> draw(platform::ScreenSize size = {100, 24}) {
        AllRound round{"Own boat", machine.now, boatsInUse(area()), true, {}};
        for (const tools::Reading& reading : tools::readEverything(&area(), view.boat(), machine.now))
            round.rows.push_back({reading, rate});
        ScreenText screen(size);
        view.draw(screen, round);
        return screen.lines();
    }
    /// The names in the order of the rows.
    std::vector<std::string> names(platform::ScreenSize size = {100, 24}) {
        std::vector<std::string> found;
        const auto lines = draw(size);
        for (std::size_t row = 2; row + 1 < lines.size() && !lines[row].empty(); ++row)
            found.push_back(lines[row].substr(5, lines[row].find(' ', 5) - 5));
        return found;
    }
    void type(const std::string& text) {
        for (const char c : text) (void)view.handle(character(std::string(1, c)));
    }

    AllView view{0};
    tools::WriteRate rate;
};

TEST_F(AllViewTest, ShowsChannelsWithAValueByNumber) {
    store(ZAN_AWS, 12);
    store(ZAN_BSP, 6.4);
    const auto lines = draw();
    EXPECT_THAT(lines[0], HasSubstr("Own boat  2025-11-22T00:00:00Z  3 with a value, by number"));
    EXPECT_THAT(lines[1], StartsWith("No.  Channel"));
    EXPECT_EQ(names(), (std::vector<std::string>{"Time", "BSP", "AWS"}));
    EXPECT_THAT(lines, Contains(HasSubstr("6.40  kt")));
    EXPECT_THAT(lines.back(), HasSubstr("q quit"));
}

TEST_F(AllViewTest, KeysSortByNameAgeAndNumber) {
    store(ZAN_BSP, 6.4);
    passSeconds(3);
    store(ZAN_AWS, 12);
    type("n");
    EXPECT_EQ(names(), (std::vector<std::string>{"AWS", "BSP", "Time"}));
    type("a");
    EXPECT_EQ(names(), (std::vector<std::string>{"Time", "AWS", "BSP"}));
    type("c");
    EXPECT_EQ(names(), (std::vector<std::string>{"Time", "BSP", "AWS"}));
}

TEST_F(AllViewTest, SearchKeepsWhatHasTheText) {
    store(ZAN_BSP, 6.4);
    store(ZAN_AWS, 12);
    type("/w");
    EXPECT_THAT(draw().back(), HasSubstr("/w_"));
    EXPECT_EQ(names(), (std::vector<std::string>{"AWS"}));
    (void)view.handle(special(Key::Kind::Enter));
    EXPECT_EQ(names(), (std::vector<std::string>{"AWS"}));
    EXPECT_TRUE(view.handle(special(Key::Kind::Escape)));
    EXPECT_EQ(names().size(), 3U);
    type("/bspx");
    EXPECT_TRUE(names().empty());
    (void)view.handle(special(Key::Kind::Backspace));
    EXPECT_EQ(names(), (std::vector<std::string>{"BSP"}));
}

TEST_F(AllViewTest, LettersOfTheSearchAreNoCommands) {
    store(ZAN_BSP, 6.4);
    type("/");
    EXPECT_TRUE(view.handle(character("q")));
    (void)view.handle(special(Key::Kind::Escape));
    EXPECT_FALSE(view.handle(character("q")));
}

TEST_F(AllViewTest, SearchTextIsMadePrintable) {
    holder();
    type("/");
    (void)view.handle(character("\x1b"));
    (void)view.handle(character("\xC2\x9B"));
    (void)view.handle(character("\xFF"));
    for (int i = 0; i < 100; ++i) (void)view.handle(character("\u6C34"));
    for (const std::string& line : draw()) EXPECT_TRUE(isHarmless(line));
    for (int i = 0; i < 100; ++i) (void)view.handle(special(Key::Kind::Backspace));
    EXPECT_THAT(draw().back(), StartsWith("/_"));
}

TEST_F(AllViewTest, AllChannelsAreShownOnRequestAndScrolled) {
    store(ZAN_BSP, 6.4);
    type("v");
    EXPECT_THAT(draw()[0], HasSubstr("414 channels"));
    const platform::ScreenSize size{100, 8}; // five rows
    EXPECT_THAT(draw(size)[2], StartsWith("  0"));
    (void)view.handle(special(Key::Kind::PageDown));
    EXPECT_THAT(draw(size)[2], StartsWith("  5"));
    (void)view.handle(special(Key::Kind::Down));
    (void)view.handle(special(Key::Kind::Up));
    (void)view.handle(special(Key::Kind::Up));
    EXPECT_THAT(draw(size)[2], StartsWith("  4"));
    (void)view.handle(special(Key::Kind::End));
    EXPECT_THAT(draw(size)[6], StartsWith("413"));
    (void)view.handle(special(Key::Kind::PageDown));
    EXPECT_THAT(draw(size)[6], StartsWith("413"));
    (void)view.handle(special(Key::Kind::Home));
    (void)view.handle(special(Key::Kind::PageUp));
    EXPECT_THAT(draw(size)[2], StartsWith("  0"));
    (void)view.handle(special(Key::Kind::End));
    type("v"); // two rows are left
    EXPECT_EQ(names(size), (std::vector<std::string>{"Time", "BSP"}));
}

TEST_F(AllViewTest, BoatsInUseAreGoneThroughInTurn) {
    store(ZAN_BSP, 6.4);
    store(ZAN_BSP, 5.0, 2);
    (void)draw();
    type("b");
    EXPECT_EQ(view.boat(), 1);
    type("bb");
    EXPECT_EQ(view.boat(), 0);
    type("B");
    EXPECT_EQ(view.boat(), 2);
    EXPECT_THAT(draw(), Contains(HasSubstr("5.00  kt")));
}

TEST_F(AllViewTest, ABoatBeyondTheBoatsInUseComesBack) {
    holder();
    view = AllView(99);
    (void)draw();
    type("b");
    EXPECT_EQ(view.boat(), 0);
}

TEST_F(AllViewTest, RateSourceAndMarkHaveColumns) {
    store(ZAN_BSP, 6.4);
    for (std::int32_t& cell : area().alternates.cells[0]) cell = ZAN_BSP;
    rate = {true, 19.96, true, true};
    passSeconds(60);
    EXPECT_THAT(draw(), Contains(HasSubstr("stale  BSP        20.0+  2 levels")));
    rate = {};
    EXPECT_THAT(draw(), Not(Contains(HasSubstr("2 levels"))));
}

TEST_F(AllViewTest, NamesTheStatesAsJsonDoes) {
    store(ZAN_BSP, 6.4);
    store(ZAN_STBD_LAT, 50);
    passSeconds(5);
    store(ZAN_AWS, 12);
    passSeconds(8);
    EXPECT_THAT(draw(), Contains(HasSubstr("13 s  stale")));
    EXPECT_THAT(draw(), Contains(HasSubstr("8.0 s  fresh")));
    EXPECT_THAT(draw(), Contains(HasSubstr("13 s  timeless")));
}

TEST_F(AllViewTest, OnANarrowScreenWhatIsSeenOfTheWritersStays) {
    store(ZAN_BSP, 6.4);
    store(ZAN_STBD_LAT, 50);
    writeText(area().settings[ZAN_BSP].shortName, u"A long name 123");
    for (std::int32_t& cell : area().alternates.cells[0]) cell = ZAN_BSP;
    rate = {true, 19.96, true, true};
    for (const int wide : {500, 100, 80, 70, 60}) {
        const auto lines = draw({wide, 24});
        EXPECT_THAT(lines[1], ::testing::EndsWith("Writes/s")) << wide;
        EXPECT_THAT(lines[3], ::testing::EndsWith("20.0+  2 levels")) << wide;
        EXPECT_THAT(lines[3], HasSubstr("A long name 123")) << wide;
    }
    EXPECT_THAT(draw({500, 24})[1], HasSubstr("Source"));
    EXPECT_THAT(draw({60, 24})[1], Not(HasSubstr("Source")));
}

TEST_F(AllViewTest, NoNumberIsShownInPartHoweverNarrowTheScreen) {
    store(ZAN_AWA, -57);
    store(ZAN_BSP, 6.4);
    store(ZAN_LAT, 50.5);
    area().settings[ZAN_AWA].precision = 1;
    const std::set<std::string> whole{"2025-11-22T00:00:00Z", "-57.0", "6.40", "50\u00B030.000'N", "\u2026"};
    for (const bool marked : {false, true}) {
        rate = {true, 10.8, true, marked};
        for (int wide = 10; wide <= 120; ++wide) {
            const auto lines = draw({wide, 24});
            if (lines[1].starts_with("Window too") || lines[1].starts_with("Window t\u2026")) continue;
            const bool numbered = lines[1].starts_with("No.");
            const bool rates = lines[1].ends_with("Writes/s");
            for (std::size_t row = 2; row < lines.size() - 1 && !lines[row].empty(); ++row) {
                std::istringstream words(lines[row]);
                std::string word;
                for (int skipped = 0; skipped < (numbered ? 2 : 1); ++skipped) words >> word;
                words >> word;
                EXPECT_TRUE(whole.contains(word)) << wide << ": " << lines[row];
                EXPECT_EQ(lines[row].find("10.8+") != std::string::npos, rates) << wide << ": " << lines[row];
                EXPECT_EQ(lines[row].ends_with("  2 levels"), marked) << wide << ": " << lines[row];
            }
        }
    }
}

TEST_F(AllViewTest, OnANarrowScreenTheClockGivesWayToTheNumbers) {
    store(ZAN_AWA, -57);
    rate = {true, 10.8, true, true};
    EXPECT_THAT(draw({40, 24}), Contains(StartsWith("AWA      -57.0     10.8+  2 levels")));
    EXPECT_THAT(draw({40, 24}), Contains(StartsWith("Time         \u2026     10.8+  2 levels")));
    EXPECT_THAT(draw({30, 24}), Contains(StartsWith("AWA      -57.0  2 levels")));
    EXPECT_EQ(draw({20, 24})[1], "Window too narrow");
    EXPECT_EQ(draw({20, 24})[2], "");
}

TEST_F(AllViewTest, WithoutASectionSaysSo) {
    ScreenText screen({80, 10});
    view.draw(screen, {"Own boat", machine.now, 0, false, {}});
    EXPECT_THAT(screen.lines()[2], HasSubstr("no shared data"));
    type("b");
    EXPECT_EQ(view.boat(), 0);
}

TEST_F(AllViewTest, AClosedTerminalEnds) {
    EXPECT_FALSE(view.handle(special(Key::Kind::Closed)));
    type("/");
    EXPECT_FALSE(view.handle(special(Key::Kind::Closed)));
}

/// Gives keys at set times, and lets time pass.
class FakeKeyboard final : public platform::Keyboard {
  public:
    FakeKeyboard(MemoryMachine& machine, std::function<std::optional<Key>(int)> keys)
        : machine_(machine), keys_(std::move(keys)) {}
    std::optional<Key> next(unsigned milliseconds) override {
        auto key = keys_(++asked_);
        if (!key) machine_.now += std::int64_t{milliseconds} * 10'000;
        return key;
    }

  private:
    MemoryMachine& machine_;
    std::function<std::optional<Key>(int)> keys_;
    int asked_ = 0;
};

class WatchAll : public CommandTest {
  protected:
    CommandRun watch(std::vector<std::string> more, std::function<std::optional<Key>(int)> keys) {
        std::vector<std::string> arguments{"tallowmere", "watch", "--all"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        std::ostringstream out;
        std::ostringstream err;
        tools::CommandContext context{platform, out, err, stop, true};
        context.screenSize = [] { return platform::ScreenSize{120, 10}; };
        if (keys)
            context.keyboard = [&]() -> std::unique_ptr<platform::Keyboard> {
                return std::make_unique<FakeKeyboard>(machine, keys);
            };
        const int code = tools::runProgram(context, arguments);
        return {code, out.str(), err.str()};
    }
};

TEST_F(WatchAll, EndsByKeyAndLeavesTheSecondScreen) {
    store(ZAN_BSP, 6.4);
    const CommandRun result = watch({}, [](int n) { return n == 3 ? std::optional(character("q")) : std::nullopt; });
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, StartsWith("\x1b[?1049h\x1b[?25l"));
    EXPECT_THAT(result.out, HasSubstr("6.40  kt"));
    EXPECT_TRUE(result.out.ends_with("\x1b[?25h\x1b[?1049l"));
}

TEST_F(WatchAll, DrawsEachIntervalAndAfterAKey) {
    holder();
    const auto frames = [](const std::string& out) {
        int count = 0;
        for (std::size_t at = out.find("\x1b[1;1H"); at != out.npos; at = out.find("\x1b[1;1H", at + 1)) ++count;
        return count;
    };
    // 40 looks of 50 ms are two seconds: drawn at 0, 1 and 2.
    const auto end = [](int n) { return n > 40 ? std::optional(character("q")) : std::nullopt; };
    EXPECT_EQ(frames(watch({}, end).out), 3);
    const auto keys = [&](int n) { return n == 10 ? std::optional(character("n")) : end(n); };
    EXPECT_EQ(frames(watch({}, keys).out), 3) << "at 0, the key at 0.45, 1.45";
    EXPECT_EQ(frames(watch({"--count", "2"}, [](int) { return std::optional<Key>(); }).out), 2);
}

TEST_F(WatchAll, TakesNoPart) {
    bool held = true;
    (void)watch({"--count", "2"}, [&](int) {
        held = sectionExists();
        return std::optional<Key>();
    });
    EXPECT_FALSE(held);
    EXPECT_TRUE(machine.errorsShown.empty());
}

TEST_F(WatchAll, FindsTheSectionThatComesAndTheNextOne) {
    const CommandRun result = watch({}, [this](int n) {
        if (n == 20) store(ZAN_BSP, 6.4);
        return n == 80 ? std::optional(character("q")) : std::nullopt;
    });
    EXPECT_LT(result.out.find("no shared data"), result.out.find("6.40  kt"));
    EXPECT_NE(result.out.find("6.40  kt"), std::string::npos);
}

TEST_F(WatchAll, WithoutAKeyboardEndsWhenAsked) {
    holder();
    machine.onSleep = [this](unsigned) { stop = true; };
    EXPECT_EQ(watch({}, nullptr).code, 0);
}

TEST_F(WatchAll, RatesOfTwoWritersAreShown) {
    store(ZAN_BSP, 6);
    const CommandRun result = watch({}, [this](int n) {
        if (n % 4 == 0) store(ZAN_BSP, n % 8 == 0 ? 6.0 : 7.0);
        return n == 120 ? std::optional(character("q")) : std::nullopt;
    });
    EXPECT_THAT(result.out, HasSubstr("5.0  2 levels"));
}

TEST_F(WatchAll, NamedChannelsAreWrongUsage) {
    EXPECT_EQ(watch({"BSP"}, nullptr).code, 2);
}

TEST_F(WatchAll, HostileSectionAddsNoEscapeSequence) {
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        fillWithNoise(area(), seed);
        AllView view(static_cast<BoatIndex>(seed - 1));
        AllRound round{"Boat", machine.now, 100, true, {}};
        for (const tools::Reading& reading : tools::readEverything(&area(), view.boat(), machine.now))
            round.rows.push_back({reading, {}});
        ScreenText screen({500, 500});
        view.draw(screen, round);
        for (const std::string& line : screen.lines()) EXPECT_TRUE(isHarmless(line)) << line;
    }
}

} // namespace
} // namespace tallowmere::test
