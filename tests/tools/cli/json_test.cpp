#include "tests/tools/cli/command_fixture.hpp"
#include "tools/commands/exit_codes.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>

namespace tallowmere::test {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Json : public CommandTest {
  protected:
    /// What a command prints, which must be one JSON text.
    json answer(const std::vector<std::string>& arguments, int code = 0) {
        const CommandRun result = run(arguments);
        EXPECT_EQ(result.code, code) << result.err;
        EXPECT_TRUE(isHarmless(result.out));
        json parsed = json::parse(result.out, nullptr, false);
        EXPECT_FALSE(parsed.is_discarded()) << result.out;
        return parsed;
    }
    json channel(const std::string& name, const std::string& boat = "0") {
        return answer({"get", name, "--boat", boat, "--json"}).at("channels").at(0);
    }
    void putRaw(ChannelIndex index, double value) {
        storeRecord(area().fullBlocks[0].current[index], Record::ofNumber(value));
        area().fullBlocks[0].stamps[index] = machine.now;
        area().boatCount = std::max<std::uint32_t>(readOnce(area().boatCount), 1);
    }
};

TEST_F(Json, NumbersHaveAllTheirBits) {
    const double value = 6.4000000000000012;
    store(ZAN_BSP, value);
    const json found = channel("BSP").at("value");
    ASSERT_TRUE(found.is_number());
    EXPECT_EQ(std::bit_cast<std::uint64_t>(found.get<double>()), std::bit_cast<std::uint64_t>(value));
}

TEST_F(Json, AValueComesWithUnitAgeAndState) {
    store(ZAN_BSP, 6.4);
    passSeconds(2.5);
    const json found = channel("bsp");
    EXPECT_EQ(found.at("channel"), ZAN_BSP);
    EXPECT_EQ(found.at("name"), "BSP");
    EXPECT_EQ(found.at("boat"), 0);
    EXPECT_EQ(found.at("unit"), "kt");
    EXPECT_EQ(found.at("state"), "fresh");
    EXPECT_EQ(found.at("age_seconds"), 2.5);
    EXPECT_EQ(found.at("written_at"), "2025-11-22T00:00:00.0000000Z");
    EXPECT_EQ(found.at("source"), ZAN_BSP);
    EXPECT_EQ(found.at("source_name"), "BSP");
    EXPECT_TRUE(found.at("note").is_null());
    EXPECT_TRUE(found.at("moment").is_null());
    passSeconds(60);
    EXPECT_EQ(channel("BSP").at("state"), "stale");
}

TEST_F(Json, WhatIsMissingIsNull) {
    holder();
    const json found = channel("BSP");
    EXPECT_EQ(found.at("state"), "none");
    for (const char* field : {"value", "note", "age_seconds", "written_at"})
        EXPECT_TRUE(found.at(field).is_null()) << field;
    EXPECT_EQ(found.at("unit"), "kt");
}

TEST_F(Json, WhatIsNoNumberIsNullAndSaid) {
    const std::pair<double, const char*> cases[] = {{std::numeric_limits<double>::quiet_NaN(), "nan"},
                                                    {std::numeric_limits<double>::infinity(), "inf"},
                                                    {-std::numeric_limits<double>::infinity(), "-inf"}};
    for (const auto& [value, note] : cases) {
        putRaw(ZAN_BSP, value);
        const json found = channel("BSP");
        EXPECT_TRUE(found.at("value").is_null()) << note;
        EXPECT_EQ(found.at("note"), note);
        EXPECT_EQ(found.at("state"), "fresh");
    }
}

TEST_F(Json, AMomentIsDaysAndUtc) {
    store(ZAN_TIME, 0); // any write stamps the clock
    store(ZAN_BSP, 6);
    const json found = channel("0");
    EXPECT_EQ(found.at("unit"), "days");
    EXPECT_EQ(found.at("value"), 45983.0); // 2025-11-22
    EXPECT_EQ(found.at("moment"), "2025-11-22T00:00:00.0000000Z");
}

TEST_F(Json, AnAlternatingChannelNamesItsSource) {
    store(ZAN_BSP, 6.4);
    for (std::int32_t& cell : area().alternates.cells[0]) cell = ZAN_BSP;
    const json found = channel("117");
    EXPECT_EQ(found.at("channel"), 117);
    EXPECT_EQ(found.at("source"), ZAN_BSP);
    EXPECT_EQ(found.at("source_name"), "BSP");
    EXPECT_EQ(found.at("value"), 6.4);
}

TEST_F(Json, GetTellsWhoseValuesAndWhen) {
    store(ZAN_BSP, 6, 3);
    const json found = answer({"get", "BSP", "AWA", "--boat", "3", "--json"});
    EXPECT_EQ(found.at("boat"), 3);
    EXPECT_EQ(found.at("replay"), false);
    EXPECT_EQ(found.at("read_at"), "2025-11-22T00:00:00.0000000Z");
    EXPECT_EQ(found.at("channels").size(), 2U);
}

TEST_F(Json, SetShowsWhatStandsThere) {
    holder();
    const json found = answer({"set", "BSP", "6.4", "--json"});
    EXPECT_EQ(found.at("value"), 6.4);
    EXPECT_EQ(run({"set", "BSP", "x", "--json"}).code, 2);
}

TEST_F(Json, WatchPrintsALineForEachChange) {
    holder();
    int sleeps = 0;
    machine.onSleep = [&](unsigned milliseconds) {
        machine.now += std::int64_t{milliseconds} * 10'000;
        if (++sleeps == 3) store(ZAN_BSP, 6.5000000001);
        if (sleeps == 5) store(ZAN_BSP, 6.5000000002); // the same text, another value
    };
    store(ZAN_BSP, 6.4);
    terminal = true; // lines there too
    const CommandRun result = run({"watch", "BSP", "AWA", "--count", "4", "--interval", "0.1", "--json"});
    std::istringstream lines(result.out);
    std::vector<json> found;
    for (std::string line; std::getline(lines, line);) found.push_back(json::parse(line));
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[1].at("name"), "AWA");
    EXPECT_TRUE(found[1].at("value").is_null());
    EXPECT_EQ(found[2].at("value"), 6.5000000001);
    EXPECT_EQ(found[3].at("value"), 6.5000000002);
    EXPECT_EQ(found[3].at("read_at"), "2025-11-22T00:00:00.3000000Z");
}

TEST_F(Json, WatchAllBeginsWithWhatHoldsAValue) {
    store(ZAN_BSP, 6.4);
    store(ZAN_AWS, 12, 1);
    const CommandRun own = run({"watch", "--all", "--count", "1", "--json"});
    EXPECT_EQ(std::count(own.out.begin(), own.out.end(), '\n'), 2); // and the clock
    EXPECT_THAT(own.out, HasSubstr("\"BSP\""));
    // Boat 1 begins as zeros, which nobody has written.
    const CommandRun other = run({"watch", "--all", "--boat", "1", "--count", "1", "--json"});
    EXPECT_EQ(std::count(other.out.begin(), other.out.end(), '\n'), 2);
}

TEST_F(Json, ListIsAnArray) {
    holder();
    const json channels = answer({"list", "--json"});
    ASSERT_EQ(channels.size(), 414U);
    EXPECT_EQ(channels[ZAN_BSP].at("name"), "BSP");
    EXPECT_EQ(channels[ZAN_BSP].at("unit"), "kt");
    for (const ChannelIndex each : {ZAN_BSP, ZAN_TIME, ZAN_TMTOGUN, ZAN_FORESTAY}) // as get says
        EXPECT_EQ(channels[each].at("unit"), channel(std::to_string(each)).at("unit")) << each;
    EXPECT_EQ(channels[ZAN_TMTOGUN].at("unit"), "days");
    EXPECT_EQ(answer({"list", "--boats", "--json"}).size(), 100U);
    EXPECT_EQ(answer({"list", "--flags", "--json"}).size(), 60U);
    area().systemVariables[3] = std::numeric_limits<double>::quiet_NaN();
    const json variables = answer({"list", "--vars", "--json"});
    EXPECT_EQ(variables.at("variables").size(), 80U);
    EXPECT_EQ(variables.at("integers").size(), 13U);
    EXPECT_TRUE(variables.at("variables").at(3).at("value").is_null());
    EXPECT_EQ(variables.at("variables").at(3).at("note"), "nan");
}

TEST_F(Json, StatusHasTheSameFieldsWithAndWithoutASection) {
    const json none = answer({"status", "--json"}, 1);
    EXPECT_EQ(none.at("present"), false);
    EXPECT_TRUE(none.at("boats").is_null());
    store(ZAN_BSP, 6.4);
    const json some = answer({"status", "--json"});
    EXPECT_EQ(some.at("present"), true);
    EXPECT_EQ(some.at("maker"), "skipper");
    EXPECT_EQ(some.at("own_boat").at("live"), 1);
    EXPECT_TRUE(some.at("host_window").is_null());
    std::vector<std::string> names;
    for (const auto& [name, value] : none.items()) names.push_back(name);
    for (const auto& [name, value] : some.items()) EXPECT_THAT(names, ::testing::Contains(name));
    EXPECT_EQ(none.size(), some.size());
}

TEST_F(Json, CalibrationIsToldWhole) {
    machine.addFile(u"C:\\ProgramData\\Tallowmere\\calibration\\ZAN_CAL_Bsp.txt", "0 10\n0 0 1\n20 0 3\n");
    const json items = answer({"calibration", "list", "--json"});
    ASSERT_EQ(items.size(), 20U);
    EXPECT_EQ(items[2].at("name"), "Bsp");
    EXPECT_EQ(items[2].at("rows"), 2);
    EXPECT_EQ(items[2].at("columns"), 2);
    EXPECT_EQ(items[2].at("problems"), 0);
    EXPECT_TRUE(items[3].at("problems").is_null()); // no file

    const json shown = answer({"calibration", "show", "Bsp", "--json"});
    EXPECT_EQ(shown.at("table").at(1).at("row_value"), 20.0);
    EXPECT_EQ(shown.at("table").at(1).at("knots").at(1), (json{{"x", 10.0}, {"y", 3.0}}));

    const json found = answer({"calibration", "eval", "Bsp", "10", "20", "--json"});
    EXPECT_EQ(found.at("table"), 3.0);
    EXPECT_EQ(found.at("stored"), (json{{"accepted", true}, {"value", 10.0}}));
    EXPECT_EQ(found.at("stored_if_in_use"), (json{{"accepted", true}, {"value", 13.0}}));
}

TEST_F(Json, CheckCountsAndTellsProblems) {
    EXPECT_EQ(answer({"check", "--json"}).at("count"), 0);
    machine.addFile(u"C:\\ProgramData\\Tallowmere\\calibration\\ZAN_CAL_Bsp.txt", "0 10\n0 0 x\n");
    const json found = answer({"check", "Bsp", "--json"}, 1);
    ASSERT_GE(found.at("count"), 1);
    EXPECT_EQ(found.at("problems").size(), found.at("count"));
    EXPECT_EQ(found.at("problems").at(0).at("line"), 2);
    EXPECT_THAT(found.at("problems").at(0).at("place").get<std::string>(), HasSubstr("ZAN_CAL_Bsp.txt"));
}

TEST_F(Json, AHostileSectionYieldsJson) {
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        fillWithNoise(area(), seed);
        (void)answer({"status", "--json"});
        for (const char* what : {"--boats", "--vars", "--flags"}) (void)answer({"list", what, "--json"});
        (void)answer({"list", "--json"});
        (void)answer({"get", "0", "1", "50", "117", "172", "200", "413", "--json"});
    }
}

/// All names of fields in a JSON value.
void collect(const json& value, std::set<std::string>& names) {
    for (const auto& [name, below] : value.items()) {
        if (value.is_object()) names.insert(name);
        if (below.is_structured()) collect(below, names);
    }
}

TEST_F(Json, EveryFieldIsInTheDocument) {
    machine.addFile(u"C:\\ProgramData\\Tallowmere\\calibration\\ZAN_CAL_Bsp.txt", "0 10\n0 0 x\n");
    store(ZAN_BSP, 6.4);
    std::set<std::string> names;
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"get", "BSP"},
                                               {"watch", "BSP", "--count", "1"},
                                               {"list"},
                                               {"list", "--boats"},
                                               {"list", "--vars"},
                                               {"list", "--flags"},
                                               {"status"},
                                               {"calibration", "list"},
                                               {"calibration", "show", "Bsp"},
                                               {"calibration", "eval", "Bsp", "5", "0"},
                                               {"check"}}) {
        std::vector<std::string> asJson = arguments;
        asJson.push_back("--json");
        collect(json::parse(run(asJson).out), names);
    }
    std::ifstream file(TALLOWMERE_SOURCE "/docs/commands.md");
    const std::string document(std::istreambuf_iterator<char>(file), {});
    EXPECT_GT(names.size(), 50U);
    for (const std::string& name : names) EXPECT_THAT(document, HasSubstr("`" + name + "`"));
}

} // namespace
} // namespace tallowmere::test
