// Every value that the library reads from the user's settings, in every type and size, on the real system: what
// does not fit its rule leaves the default, and no other value.
#include "core/ccore.hpp"
#include "settings/reg_ex.hpp"
#include "tests/channels/raw_section.hpp"
#include "tests/support/case_count.hpp"
#include "tests/support/host_machine.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <optional>

namespace tallowmere::test {
namespace {

enum Type : std::uint32_t {
    kNone = 0,
    kText = 1,
    kExpand = 2,
    kBinary = 3,
    kDword = 4,
    kBigEndian = 5,
    kMulti = 7,
    kQword = 11
};
constexpr std::uint32_t kTypes[] = {kNone, kText, kExpand, kBinary, kDword, kBigEndian, kMulti, kQword, 0x7FFFFFFF};
constexpr std::size_t kSizes[] = {0, 1, 2, 3, 4, 7, 8, 9, 16};
constexpr std::size_t kHuge = 65536;
constexpr char kFiller = 0x41;

/// What a value of this type and size is read as; empty: the default stays.
std::optional<std::u16string> asText(std::uint32_t type, std::size_t size) {
    if (type != kText || size % 2 != 0) return std::nullopt;
    return std::u16string(size / 2, char16_t{0x4141});
}
std::optional<std::int32_t> asInteger(std::uint32_t type, std::size_t size, bool wholeOnly = false) {
    if (type != kDword || size > 4 || (wholeOnly && size != 4)) return std::nullopt;
    std::int32_t value = 0;
    std::memset(&value, kFiller, size);
    return value;
}
std::optional<double> asNumber(std::uint32_t type, std::size_t size) {
    if (type != kBinary || size != 8) return std::nullopt;
    double value = 0;
    std::memset(&value, kFiller, 8);
    return value;
}

class BadSettings : public ::testing::Test {
  protected:
    /// The section of a host that starts with the settings as they are, and its calibration items.
    struct Started {
        std::vector<std::uint8_t> bytes;
        std::vector<std::u16string> files;
        std::vector<std::uint8_t> use, linear;

        [[nodiscard]] RawSection raw() { return RawSection(reinterpret_cast<std::byte*>(bytes.data())); }
    };
    static Started startHost() {
        const auto core = std::make_unique<CCore>(true);
        Started started;
        EXPECT_TRUE(core->madeSection());
        if (core->area() == nullptr) return started;
        started.bytes = RawSection(reinterpret_cast<std::byte*>(core->area())).copy();
        for (const CalibrationItem& item : core->calibration().items()) {
            started.files.push_back(item.file);
            started.use.push_back(item.use);
            started.linear.push_back(item.table.linear);
        }
        return started;
    }

    void setAllTo(std::uint32_t type, const std::string& bytes, bool few) {
        machine.clearSettings();
        machine.set(kCoreKey, u"Database2", type, bytes);
        machine.set(kCoreKey, u"MarksXml", type, bytes);
        for (std::size_t i = 0; i < (few ? 1 : 18); ++i) machine.set(kCoreKey, indexedName(u"Sys_v", i), type, bytes);
        for (std::size_t i = 0; i < (few ? 1 : 34); ++i) machine.set(kCoreKey, indexedName(u"Sys_b", i), type, bytes);
        for (std::size_t i = 0; i < (few ? 1 : 11); ++i) machine.set(kCoreKey, indexedName(u"Sys_i", i), type, bytes);
        for (std::size_t i = 0; i < (few ? 1 : 20); ++i)
            for (const char16_t* prefix : {u"CalFile_", u"CalUse_", u"CalLinear_"})
                machine.set(kCalibrationKey, indexedName(prefix, i), type, bytes);
        machine.set(kCoreKey, u"DataFolder", type, bytes);
    }

    /// Holds what a host made of the settings against the rules. Counts the values.
    static void expectRules(Started& got, Started& plain, std::uint32_t type, std::size_t size, bool few,
                            CaseCount& cases) {
        RawSection raw = got.raw();
        RawSection byDefault = plain.raw();
        const auto text = asText(type, size);
        EXPECT_TRUE(raw.text(place::kDataFolder, 260) == byDefault.text(place::kDataFolder, 260)); // names nothing
        EXPECT_TRUE(raw.text(place::kDatabasePath, 260) ==
                    (text ? text->substr(0, 259) : byDefault.text(place::kDatabasePath, 260)));
        EXPECT_TRUE(raw.text(place::kMarksPath, 260) ==
                    (text && !text->empty() ? text->substr(0, 259)
                     : text                 ? std::u16string() // an empty one leaves the path as it was
                                            : byDefault.text(place::kMarksPath, 260)));
        for (std::size_t i = 0; i < 18; ++i) {
            const auto number = few && i > 0 ? std::nullopt : asNumber(type, size);
            const double expected = number ? (i == 5 ? 10.0 : *number) : byDefault.get<double>(place::variable(i));
            EXPECT_EQ(raw.get<double>(place::variable(i)), expected) << i;
        }
        const auto integer = asInteger(type, size);
        for (std::size_t i = 0; i < 34; ++i) {
            const bool taken = integer && (!few || i == 0);
            EXPECT_EQ(raw.get<std::uint8_t>(place::flag(i)),
                      taken ? (*integer != 0 ? 1 : 0) : byDefault.get<std::uint8_t>(place::flag(i)))
                << i;
        }
        constexpr std::int32_t kHighest[] = {INT32_MAX, 2, 2, 5, 5, 1, 4, INT32_MAX, 2, 4, INT32_MAX};
        for (std::size_t i = 0; i < 11; ++i) {
            const bool taken = integer && (!few || i == 0);
            EXPECT_EQ(raw.get<std::int32_t>(place::integer(i)),
                      taken ? std::min(*integer, kHighest[i]) : byDefault.get<std::int32_t>(place::integer(i)))
                << i;
        }
        for (std::size_t i = 0; i < 20; ++i) {
            const bool taken = !few || i == 0;
            const auto whole = asInteger(type, size, true);
            EXPECT_TRUE(got.files[i] == (taken && text ? *text : plain.files[i])) << i;
            // Item 0 is in use whatever the settings say.
            EXPECT_EQ(got.use[i], taken && whole ? 1 : plain.use[i]) << i;
            EXPECT_EQ(got.linear[i], taken && whole ? 1 : plain.linear[i]) << i;
        }
        for (int i = 0; i < (few ? 9 : 126); ++i) ++cases;
    }

    HostMachine machine;
};

TEST_F(BadSettings, OfEveryTypeAndSizeAreTakenByTheirRuleOrLeaveTheDefault) {
    CaseCount cases("values of one type and size");
    machine.clearSettings();
    Started plain = startHost();
    ASSERT_EQ(plain.files.size(), 20U);
    for (const std::uint32_t type : kTypes) {
        for (const std::size_t size : kSizes) {
            SCOPED_TRACE("type " + std::to_string(type) + ", " + std::to_string(size) + " bytes");
            setAllTo(type, std::string(size, kFiller), false);
            Started got = startHost();
            ASSERT_EQ(got.files.size(), 20U);
            expectRules(got, plain, type, size, false, cases);
        }
        SCOPED_TRACE("type " + std::to_string(type) + ", huge");
        setAllTo(type, std::string(kHuge, kFiller), true);
        Started got = startHost();
        ASSERT_EQ(got.files.size(), 20U);
        expectRules(got, plain, type, kHuge, true, cases);
    }
}

/// The folder's text with none, one and more terminators, one in its midst, and half a character too many.
TEST_F(BadSettings, TextsEndWithTheirBytesOrTheirTerminator) {
    CaseCount cases("texts");
    const std::u16string folder = machine.folder().u16string();
    const auto folderOf = [&](const std::string& bytes) {
        machine.clearSettings();
        machine.set(kCoreKey, u"DataFolder", kText, bytes);
        machine.set(kCoreKey, u"Database2", kText, bytes);
        Started started = startHost();
        ++cases;
        return std::pair(started.raw().text(place::kDataFolder, 260), started.raw().text(place::kDatabasePath, 260));
    };
    for (const std::size_t terminators : {0U, 1U, 2U, 3U, 100U}) {
        const auto [data, database] = folderOf(storedText(folder, terminators));
        EXPECT_TRUE(data == folder && database == folder) << terminators;
    }
    {
        const auto [data, database] = folderOf(storedText(folder + std::u16string(1, u'\0') + u"more"));
        EXPECT_TRUE(data == folder && database == folder);
    }
    for (const std::size_t terminators : {0U, 1U}) {
        const auto [data, database] = folderOf(storedText(folder, terminators) + "x"); // an odd number of bytes
        EXPECT_FALSE(data == folder) << terminators;
        EXPECT_TRUE(database.ends_with(u"Tallowmere.db")) << terminators;
    }
    for (const std::u16string& text :
         {std::u16string(u"\xD800"), std::u16string(u"\xDC00\xD800"), std::u16string(4, u'\xFFFF'),
          std::u16string(32'000, u'/'), std::u16string(u"\x01\x02|<>?*\""), std::u16string(1, u'\0')}) {
        const auto [data, database] = folderOf(storedText(text));
        EXPECT_TRUE(data.ends_with(u"Tallowmere") || text[0] == u'/');
        EXPECT_TRUE(database == text.substr(0, std::min<std::size_t>(259, text.find(u'\0'))));
    }
}

/// Doubles of all sorts go into the section bit by bit, but for the two that have limits.
TEST_F(BadSettings, NumbersOfEverySortAreStoredBitByBitWithinTheirLimits) {
    CaseCount cases("numbers");
    for (const std::uint64_t bits :
         {0x7FF8000000000000ULL, 0x7FF0000000000001ULL, 0xFFF0000000000001ULL, 0x7FF0000000000000ULL,
          0xFFF0000000000000ULL, 0x0000000000000001ULL, 0x8000000000000001ULL, 0x000FFFFFFFFFFFFFULL,
          0x7FEFFFFFFFFFFFFFULL, 0xFFEFFFFFFFFFFFFFULL, 0x8000000000000000ULL, 0x40DFFFC000000000ULL,
          0x40DFFFBFFFFFFFFFULL, 0x40DFFFC000000001ULL}) {
        machine.clearSettings();
        for (std::size_t i = 0; i < 18; ++i)
            machine.set(kCoreKey, indexedName(u"Sys_v", i), kBinary,
                        std::string(reinterpret_cast<const char*>(&bits), 8));
        Started started = startHost();
        RawSection raw = started.raw();
        const auto value = std::bit_cast<double>(bits);
        for (std::size_t i = 0; i < 18; ++i) {
            ++cases;
            double expected = value;
            if (i == 0 && !(value >= 1.0)) expected = 1.0;
            if (i == 5) expected = !(value >= 0.01) ? 0.01 : value > 10.0 ? 10.0 : value;
            EXPECT_EQ(raw.get<std::uint64_t>(place::variable(i)), std::bit_cast<std::uint64_t>(expected)) << i;
        }
    }
}

} // namespace
} // namespace tallowmere::test
