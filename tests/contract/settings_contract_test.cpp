#include "tests/contract/platform_fixture.hpp"

#include <algorithm>
#include <array>
#include <cstring>

namespace tallowmere::test {

using platform::SettingsInfo;
using platform::SettingsKey;
using platform::SettingsType;

namespace {

std::string bytesOf(std::u16string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

class SettingsContract : public ContractTest {
  protected:
    /// The value's bytes as `read` gives them into a buffer of just its size.
    static std::optional<std::string> valueBytes(const SettingsKey& key, const std::u16string& name) {
        const std::optional<SettingsInfo> info = key.describe(name);
        if (!info) return std::nullopt;
        std::vector<std::byte> buffer(info->size);
        const std::optional<SettingsInfo> read = key.read(name, buffer);
        if (!read || read->size != info->size || read->type != info->type) return std::nullopt;
        return std::string(reinterpret_cast<const char*>(buffer.data()), buffer.size());
    }
    static std::optional<SettingsType> typeOf(const SettingsKey& key, const std::u16string& name) {
        const std::optional<SettingsInfo> info = key.describe(name);
        return info ? std::optional(info->type) : std::nullopt;
    }

    std::u16string path = fixture->settingsPath();
};

TEST_P(SettingsContract, AKeyThatIsNotThereIsNotOpenedAndNotMade) {
    EXPECT_EQ(platform.openSettings(path), nullptr);
    EXPECT_EQ(platform.openSettings(path), nullptr);
}

TEST_P(SettingsContract, ACreatedKeyIsThereAndEmpty) {
    ASSERT_NE(platform.createSettings(path), nullptr);
    const auto key = platform.openSettings(path);
    ASSERT_NE(key, nullptr);
    EXPECT_FALSE(key->describe(u"Anything"));
    std::array<std::byte, 8> buffer{};
    EXPECT_FALSE(key->read(u"Anything", buffer));
}

TEST_P(SettingsContract, CreatingAKeyMakesItsParents) {
    ASSERT_NE(platform.createSettings(path + u"\\one\\two"), nullptr);
    EXPECT_NE(platform.openSettings(path + u"\\one\\two"), nullptr);
    EXPECT_NE(platform.openSettings(path + u"\\one"), nullptr);
    EXPECT_NE(platform.openSettings(path), nullptr);
    EXPECT_EQ(platform.openSettings(path + u"\\two"), nullptr);
    EXPECT_EQ(platform.openSettings(path + u"\\one\\tw"), nullptr);
}

TEST_P(SettingsContract, CreatingAKeyThatIsThereKeepsItsValues) {
    platform.createSettings(path)->writeDword(u"Number", 5);
    const auto key = platform.createSettings(path);
    ASSERT_NE(key, nullptr);
    EXPECT_TRUE(key->describe(u"Number"));
}

TEST_P(SettingsContract, WrittenTextIsAStringWithItsTerminator) {
    const std::u16string texts[] = {u"",
                                    u"plain",
                                    u"C:\\Boat \"One\"\\",
                                    u"a line\r\nand another",
                                    u"semi;colon [bracket] = %d",
                                    u"gr\u00FC\u00DFe \u4E2D \U0001F6A2",
                                    {u'a', 0xD800, u'b'},
                                    std::u16string(300, u'x')};
    for (const std::u16string& text : texts) {
        platform.createSettings(path)->writeString(u"Text", text);
        const auto key = platform.openSettings(path);
        ASSERT_NE(key, nullptr);
        EXPECT_EQ(typeOf(*key, u"Text"), SettingsType::String);
        EXPECT_EQ(valueBytes(*key, u"Text"), bytesOf(text + u'\0'));
    }
}

TEST_P(SettingsContract, AWrittenNumberHasFourBytes) {
    for (const std::uint32_t number : {0U, 1U, 0x12345678U, 0xFFFFFFFFU}) {
        platform.createSettings(path)->writeDword(u"Number", number);
        const auto key = platform.openSettings(path);
        ASSERT_NE(key, nullptr);
        EXPECT_EQ(typeOf(*key, u"Number"), SettingsType::Dword);
        EXPECT_EQ(valueBytes(*key, u"Number"), std::string(reinterpret_cast<const char*>(&number), sizeof number));
    }
}

TEST_P(SettingsContract, AKeySeesWhatItHasWrittenItself) {
    const auto key = platform.createSettings(path);
    ASSERT_NE(key, nullptr);
    key->writeDword(u"Number", 3);
    EXPECT_EQ(typeOf(*key, u"Number"), SettingsType::Dword);
}

TEST_P(SettingsContract, WritingAgainReplacesTypeAndBytes) {
    const auto key = platform.createSettings(path);
    ASSERT_NE(key, nullptr);
    key->writeString(u"Value", u"a long text");
    key->writeDword(u"Value", 1);
    EXPECT_EQ(typeOf(*platform.openSettings(path), u"Value"), SettingsType::Dword);
    key->writeString(u"Value", u"t");
    EXPECT_EQ(valueBytes(*platform.openSettings(path), u"Value"), bytesOf(std::u16string(u"t\0", 2)));
}

TEST_P(SettingsContract, TwoOpenKeysDoNotUndoEachOther) {
    const auto one = platform.createSettings(path);
    const auto two = platform.createSettings(path);
    one->writeDword(u"One", 1);
    two->writeDword(u"Two", 2);
    one->writeDword(u"Three", 3);
    const auto key = platform.openSettings(path);
    for (const char16_t* name : {u"One", u"Two", u"Three"}) EXPECT_TRUE(key->describe(name));
}

TEST_P(SettingsContract, NamesGoWithoutRegardToCase) {
    platform.createSettings(path)->writeDword(u"MixedCase", 8);
    std::u16string upper = path;
    std::ranges::transform(upper, upper.begin(), [](char16_t c) {
        return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
    });
    const auto key = platform.openSettings(upper);
    ASSERT_NE(key, nullptr);
    EXPECT_TRUE(key->describe(u"mIXEDcASE"));
    key->writeDword(u"MIXEDCASE", 9);
    const std::uint32_t nine = 9;
    EXPECT_EQ(valueBytes(*platform.openSettings(path), u"MixedCase"),
              std::string(reinterpret_cast<const char*>(&nine), sizeof nine));
}

TEST_P(SettingsContract, KeysDoNotShareValues) {
    platform.createSettings(path)->writeDword(u"Here", 1);
    platform.createSettings(path + u"\\below")->writeDword(u"There", 1);
    EXPECT_FALSE(platform.openSettings(path)->describe(u"There"));
    EXPECT_FALSE(platform.openSettings(path + u"\\below")->describe(u"Here"));
}

TEST_P(SettingsContract, AValueMayHaveAnEmptyName) {
    platform.createSettings(path)->writeString(u"", u"default");
    EXPECT_EQ(valueBytes(*platform.openSettings(path), u""), bytesOf(std::u16string(u"default\0", 8)));
}

TEST_P(SettingsContract, EveryTypeAndSizeIsGivenAsItIsStored) {
    std::vector<PlatformFixture::Setting> settings;
    for (const unsigned type : {0U, 1U, 2U, 3U, 4U, 5U, 7U, 11U, 0x1234U}) {
        std::vector<std::string> contents = {std::string("A\0B\0\0\0\0\0", 8)};
        for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 5U, 7U, 8U, 9U, 16U})
            contents.push_back(std::string("\x01\x80\xFF\x00 abcdefghijklmn", 19).substr(0, size));
        for (const std::string& bytes : contents) {
            const std::string name = "t" + std::to_string(type) + "n" + std::to_string(settings.size());
            settings.push_back({std::u16string(name.begin(), name.end()), static_cast<SettingsType>(type), bytes});
        }
    }
    std::erase_if(settings, [this](const auto& each) { return !fixture->canPut(each); });
    fixture->putSettings(path, settings);
    const auto key = platform.openSettings(path);
    ASSERT_NE(key, nullptr);
    for (const PlatformFixture::Setting& each : settings) {
        SCOPED_TRACE(std::string(each.name.begin(), each.name.end()));
        EXPECT_EQ(typeOf(*key, each.name), each.type);
        EXPECT_EQ(valueBytes(*key, each.name), each.bytes);
    }
}

TEST_P(SettingsContract, ABufferThatIsTooSmallGivesNothingAndALargerOneKeepsItsRest) {
    fixture->putSettings(path, {{u"Bytes", SettingsType::Binary, "12345678"}, {u"None", SettingsType::Binary, ""}});
    const auto key = platform.openSettings(path);
    ASSERT_NE(key, nullptr);
    std::array<std::byte, 12> buffer{};
    buffer.fill(std::byte{0x55});
    EXPECT_FALSE(key->read(u"Bytes", std::span(buffer).first(7)));
    EXPECT_FALSE(key->read(u"Bytes", {}));
    buffer.fill(std::byte{0x55});
    const std::optional<SettingsInfo> info = key->read(u"Bytes", buffer);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->size, 8U);
    EXPECT_EQ(std::memcmp(buffer.data(), "12345678\x55\x55\x55\x55", 12), 0);
    const std::optional<SettingsInfo> nothing = key->read(u"None", buffer);
    ASSERT_TRUE(nothing);
    EXPECT_EQ(nothing->size, 0U);
    EXPECT_EQ(std::memcmp(buffer.data(), "12345678\x55\x55\x55\x55", 12), 0);
}

TEST_P(SettingsContract, AKeyOfManyValuesGivesEach) {
    std::vector<PlatformFixture::Setting> settings;
    for (std::size_t i = 0; i < 300; ++i) {
        const std::string number = std::to_string(i);
        settings.push_back({u"Value" + std::u16string(number.begin(), number.end()), SettingsType::Binary,
                            std::string(i % 9, static_cast<char>(i & 0xFF))});
    }
    fixture->putSettings(path, settings);
    const auto key = platform.openSettings(path);
    ASSERT_NE(key, nullptr);
    for (const PlatformFixture::Setting& each : settings) EXPECT_EQ(valueBytes(*key, each.name), each.bytes);
    EXPECT_FALSE(key->describe(u"Value"));
    EXPECT_TRUE(key->describe(u"vALUE299"));
}

TEST_P(SettingsContract, LargeValuesAndLongNamesAreGivenAmongSmallOnes) {
    const std::u16string longName(200, u'n');
    const std::vector<PlatformFixture::Setting> settings = {
        {u"Small", SettingsType::Dword, std::string("\1\0\0\0", 4)},
        {u"Large", SettingsType::Binary, std::string(70'000, 'x')},
        {u"Middle", SettingsType::Binary, std::string(1024, 'y')},
        {u"Longer", SettingsType::String, std::string(1022, 'z') + std::string(4, '\0')},
        {longName, SettingsType::Dword, std::string("\2\0\0\0", 4)},
        {u"Last", SettingsType::Dword, std::string("\3\0\0\0", 4)}};
    fixture->putSettings(path, settings);
    const auto key = platform.openSettings(path);
    ASSERT_NE(key, nullptr);
    for (const PlatformFixture::Setting& each : settings) {
        EXPECT_EQ(typeOf(*key, each.name), each.type);
        EXPECT_EQ(valueBytes(*key, each.name), each.bytes);
    }
    std::array<std::byte, 8> buffer{};
    EXPECT_FALSE(key->read(u"Large", buffer));
}

TEST_P(SettingsContract, AKeyThatHasBeenReadSeesWhatItWritesThen) {
    const auto key = platform.createSettings(path);
    ASSERT_NE(key, nullptr);
    key->writeDword(u"Number", 3);
    const auto read = platform.openSettings(path);
    EXPECT_EQ(typeOf(*read, u"Number"), SettingsType::Dword);
    read->writeString(u"Number", u"three");
    read->writeDword(u"Other", 4);
    EXPECT_EQ(valueBytes(*read, u"Number"), bytesOf(std::u16string(u"three\0", 6)));
    EXPECT_EQ(typeOf(*read, u"Other"), SettingsType::Dword);
}

TALLOWMERE_CONTRACT(SettingsContract);

} // namespace
} // namespace tallowmere::test
