// How registry texts are read and changed.
#include "platform/posix/registry_complaints.hpp"
#include "platform/posix/registry_document.hpp"

#include <gtest/gtest.h>

namespace tallowmere::platform::posix {
namespace {

constexpr char16_t kKey[] = u"Software\\Tallowmere\\core";
const std::string kHeader = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string kKeyLine = "[HKEY_CURRENT_USER\\Software\\Tallowmere\\core]\r\n";

/// One value of the key in a text, shown as its type and its bytes in hexadecimal; "none" without it.
std::string valueIn(const std::string& text, std::u16string_view name = u"v") {
    const std::optional<RegistryValues> values = RegistryDocument(text).values(kKey);
    if (!values) return "no key";
    const auto found = values->find(foldName(name));
    if (found == values->end()) return "none";
    std::string shown = std::to_string(static_cast<unsigned>(found->second.type)) + ":";
    for (const std::byte byte : found->second.bytes) {
        shown += "0123456789abcdef"[std::to_integer<unsigned>(byte) >> 4];
        shown += "0123456789abcdef"[std::to_integer<unsigned>(byte) & 15U];
    }
    return shown;
}
std::string valueOf(const std::string& line, std::u16string_view name = u"v") {
    return valueIn(kHeader + kKeyLine + line, name);
}

TEST(RegistryText, AStringHasItsTerminator) {
    EXPECT_EQ(valueOf("\"v\"=\"AB\"\r\n"), "1:410042000000");
    EXPECT_EQ(valueOf("\"v\"=\"\"\r\n"), "1:0000");
}

TEST(RegistryText, BackslashesStandBeforeQuotesAndBackslashes) {
    EXPECT_EQ(valueOf(R"("v"="\\\"")"), "1:5c0022000000");
    EXPECT_EQ(valueOf(R"("v"="\n")"), "1:5c006e000000"); // before anything else it is itself
    EXPECT_EQ(valueOf("\"q\\\"\\\\\"=dword:1", u"q\"\\"), "4:01000000");
}

TEST(RegistryText, StringsAreUtf8) {
    EXPECT_EQ(valueOf("\"v\"=\"\xC3\xBC\""), "1:fc000000");
    EXPECT_EQ(valueOf("\"v\"=\"\xFF\""), "1:fdff0000");
    EXPECT_EQ(valueOf("\"\xC3\xBC\"=dword:1", u"\u00FC"), "4:01000000");
}

TEST(RegistryText, ADwordHasFourBytesLowestFirst) {
    EXPECT_EQ(valueOf("\"v\"=dword:12345678"), "4:78563412");
    EXPECT_EQ(valueOf("\"v\"=dword:FF"), "4:ff000000");
    EXPECT_EQ(valueOf("\"v\"=DWORD:ffffffff"), "4:ffffffff");
}

TEST(RegistryText, BytesMayHaveAnyTypeAndNumber) {
    EXPECT_EQ(valueOf("\"v\"=hex:00,ff,7F"), "3:00ff7f");
    EXPECT_EQ(valueOf("\"v\"=hex:"), "3:");
    EXPECT_EQ(valueOf("\"v\"=hex(0):"), "0:");
    EXPECT_EQ(valueOf("\"v\"=hex(1):41"), "1:41");
    EXPECT_EQ(valueOf("\"v\"=hex(b):01,02"), "11:0102");
    EXPECT_EQ(valueOf("\"v\"=hex(ffffffff):01"), "4294967295:01");
    EXPECT_EQ(valueOf("\"v\"=hex(4):01"), "4:01");
}

TEST(RegistryText, BytesGoOnInTheNextLine) {
    EXPECT_EQ(valueOf("\"v\"=hex:01,\\\r\n  02,03,\\\r\n  04\r\n"), "3:01020304");
    EXPECT_EQ(valueOf("\"v\"=hex:01,\\\n  02\n\"w\"=dword:5\n", u"w"), "4:05000000");
    EXPECT_EQ(valueOf("\"v\"=hex:01,\\"), "3:01"); // cut there
}

TEST(RegistryText, AStringThatEndsInABackslashIsNotContinued) {
    const std::string lines = "\"v\"=\"C:\\\\\"\r\n\"w\"=dword:1\r\n\"x\"=\"bad\\\r\n\"y\"=dword:2\r\n";
    EXPECT_EQ(valueOf(lines), "1:43003a005c000000");
    EXPECT_EQ(valueOf(lines, u"w"), "4:01000000");
    EXPECT_EQ(valueOf(lines, u"x"), "none");
    EXPECT_EQ(valueOf(lines, u"y"), "4:02000000");
}

TEST(RegistryText, TheValueWithoutNameIsAnAt) {
    EXPECT_EQ(valueOf("@=\"A\"", u""), "1:41000000");
    EXPECT_EQ(valueOf("\"\"=\"A\"", u""), "1:41000000");
}

TEST(RegistryText, BlanksAndCommentsDoNoHarm) {
    EXPECT_EQ(valueOf("  \"v\" =\t\"A\"  ; why\r\n"), "1:41000000");
    EXPECT_EQ(valueOf("\"v\"=dword:1 ;x"), "4:01000000");
    EXPECT_EQ(valueOf("; \"v\"=dword:1\r\n"), "none");
    EXPECT_EQ(valueOf("\"v\"=\"a;b\""), "1:61003b0062000000");
}

TEST(RegistryText, AMalformedEntryIsSkippedAndTheRestStays) {
    for (const char* bad : {"\"v\"",
                            "\"v\"=",
                            "\"v\"=5",
                            "\"v\"=\"open",
                            "\"v\"=\"a\" b",
                            "v=\"a\"",
                            "\"v\"=dword:",
                            "\"v\"=dword:xyz",
                            "\"v\"=dword:123456789",
                            "\"v\"=dword:-1",
                            "\"v\"=hex:1g",
                            "\"v\"=hex:123",
                            "\"v\"=hex:01 02",
                            "\"v\"=hex(:01",
                            "\"v\"=hex():01",
                            "\"v\"=hex(1)01",
                            "\"v\"=hex(123456789):01",
                            "\"v\"=-5",
                            "\"v\"=qword:1",
                            "=",
                            "\"",
                            "@",
                            "\\",
                            "]",
                            "[",
                            "\"v\"=hex:,",
                            "\"v\"=hex:01,,02"}) {
        EXPECT_EQ(valueOf(std::string(bad) + "\r\n\"w\"=dword:2\r\n", u"v"), "none") << bad;
        EXPECT_EQ(valueOf(std::string(bad) + "\r\n\"w\"=dword:2\r\n", u"w"), "4:02000000") << bad;
    }
}

TEST(RegistryText, LineEndsOfBothKindsAreTaken) {
    EXPECT_EQ(valueIn("[HKEY_CURRENT_USER\\Software\\Tallowmere\\core]\n\"v\"=dword:1\n"), "4:01000000");
    EXPECT_EQ(valueIn("[HKEY_CURRENT_USER\\Software\\Tallowmere\\core]\r\n\"v\"=dword:1"), "4:01000000");
}

TEST(RegistryText, NeitherFirstLineNorCaseNorLongRootIsNeeded) {
    EXPECT_EQ(valueIn("[hkcu\\SOFTWARE\\tallowmere\\CORE]\n\"V\"=dword:1\n"), "4:01000000");
}

TEST(RegistryText, OtherRootsAndKeysDoNotCount) {
    for (const char* key : {"HKEY_LOCAL_MACHINE\\Software\\Tallowmere\\core", "Software\\Tallowmere\\core",
                            "HKEY_CURRENT_USERS\\Software\\Tallowmere\\core", "HKCU\\Software\\Tallowmere\\core2",
                            "HKCU\\Software\\Tallowmere"})
        EXPECT_EQ(valueIn("[" + std::string(key) + "]\n\"v\"=dword:1\n"), "no key") << key;
    EXPECT_EQ(valueOf("[HKCU\\Other]\n\"v\"=dword:1\n"), "none");
    EXPECT_EQ(valueOf("[HKCU\\Software\\Tallowmere\\core\\below]\n\"v\"=dword:1\n"), "none");
    EXPECT_EQ(valueOf("[HKLM\\Software]\n\"v\"=dword:1\n"), "none");
}

TEST(RegistryText, AKeyMayComeInSeveralPieces) {
    EXPECT_EQ(valueOf("\"w\"=dword:1\n[HKCU\\Other]\n" + kKeyLine + "\"v\"=dword:2\n", u"w"), "4:01000000");
    EXPECT_EQ(valueOf("\"w\"=dword:1\n[HKCU\\Other]\n" + kKeyLine + "\"v\"=dword:2\n"), "4:02000000");
}

TEST(RegistryText, TheLastOfSeveralCounts) {
    EXPECT_EQ(valueOf("\"v\"=dword:1\n\"V\"=\"A\"\n"), "1:41000000");
    EXPECT_EQ(valueOf("\"v\"=dword:1\n\"v\"=oops\n"), "4:01000000");
}

TEST(RegistryText, DeletionsAreObeyed) {
    EXPECT_EQ(valueOf("\"v\"=dword:1\n\"v\"=-\n"), "none");
    EXPECT_EQ(valueOf("\"v\"=-\n\"v\"=dword:1\n"), "4:01000000");
    EXPECT_EQ(valueOf("\"v\"=dword:1\n[-HKEY_CURRENT_USER\\Software\\Tallowmere\\core]\n"), "no key");
    EXPECT_EQ(valueOf("\"v\"=dword:1\n[-HKCU\\software]\n"), "no key");
    EXPECT_EQ(valueOf("\"v\"=dword:1\n[-HKCU\\Software\\Tall]\n"), "4:01000000");
    EXPECT_EQ(valueOf("\"v\"=dword:1\n[-HKLM\\Software]\n"), "4:01000000");
    EXPECT_EQ(valueOf("\"v\"=dword:1\n[-HKCU\\Software]\n" + kKeyLine + "\"w\"=dword:1\n"), "none");
    EXPECT_EQ(valueOf("[-HKCU\\Software\\Tallowmere\\core]\n\"v\"=dword:1\n"), "no key"); // no key to be in
}

TEST(RegistryText, AnEmptyTextHasNoKey) {
    EXPECT_EQ(valueIn(""), "no key");
}

TEST(RegistryText, FilesInEachEncodingAreTaken) {
    const std::string text = kHeader + kKeyLine + "\"v\"=\"\xC3\xBC\xF0\x9F\x9A\xA2\"\r\n";
    const std::u16string wide = u"[HKCU\\Software\\Tallowmere\\core]\r\n\"v\"=\"\u00FC\U0001F6A2\"\r\n";
    std::string little = "\xFF\xFE";
    std::string big = "\xFE\xFF";
    for (const char16_t unit : wide) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        little += {low, high};
        big += {high, low};
    }
    for (const std::string& bytes : {text, "\xEF\xBB\xBF" + text, little, big, little + "x"})
        EXPECT_EQ(valueIn(decodeRegistryFile(bytes)), "1:fc003dd8a2de0000");
}

// An hour for a reader that goes through the rest of the text at each line, so its end is the verdict.
TEST(RegistryText, AMillionBytesOfTheWorstEntriesAreReadToTheirEnd) {
    std::string many = kHeader + kKeyLine;
    for (int i = 0; many.size() < (1U << 20); ++i) many += "\"n" + std::to_string(i) + "\"=-\n@=\"\"\n";
    const std::string deep = kKeyLine + "\"v\"=hex:" + std::string(1 << 20, '\\');
    std::string continued = kKeyLine + "\"v\"=hex:";
    while (continued.size() < (1U << 20)) continued += "\\\n";
    std::string keys;
    while (keys.size() < (1U << 20)) keys += "[\n]\n";
    for (const std::string& text :
         {many, deep, continued, keys, std::string(1 << 20, '"'), std::string(1 << 20, '\0')}) {
        const std::optional<RegistryValues> values = RegistryDocument(text).values(kKey);
        EXPECT_EQ(values.has_value(), text.find(kKeyLine) != text.npos);
    }
}

/// The text after setting the value "v" of the key to 5.
std::string withFive(const std::string& text) {
    RegistryDocument document(text);
    EXPECT_TRUE(document.setValue(kKey, u"v", writeDwordLine(u"v", 5)));
    EXPECT_EQ(valueIn(document.text()), "4:05000000");
    return document.text();
}
const std::string kFive = "\"v\"=dword:00000005";

TEST(RegistryChange, AnEmptyTextGetsFirstLineAndKey) {
    EXPECT_EQ(withFive(""), kHeader + kKeyLine + kFive + "\r\n");
}

TEST(RegistryChange, AValueIsReplacedWhereItStands) {
    EXPECT_EQ(withFive(kHeader + kKeyLine + "\"u\"=\"x\"\r\n\"V\"=hex:01,\\\r\n  02\r\n\"w\"=\"y\"\r\n"),
              kHeader + kKeyLine + "\"u\"=\"x\"\r\n" + kFive + "\r\n\"w\"=\"y\"\r\n");
}

TEST(RegistryChange, ANewValueGoesBehindTheLastOfItsKey) {
    EXPECT_EQ(withFive(kKeyLine + "\"u\"=\"x\"\r\n\r\n[HKCU\\Other]\r\n\"v\"=\"z\"\r\n"),
              kKeyLine + "\"u\"=\"x\"\r\n" + kFive + "\r\n\r\n[HKCU\\Other]\r\n\"v\"=\"z\"\r\n");
}

TEST(RegistryChange, CommentsAndLinesThatMakeNoSenseStay) {
    EXPECT_EQ(withFive("; mine\r\nwhat?\r\n" + kKeyLine + "; why\r\n\"v\"=dword:1\r\n\"v\"=bad\r\n[oops\r\n"),
              "; mine\r\nwhat?\r\n" + kKeyLine + "; why\r\n" + kFive + "\r\n\"v\"=bad\r\n[oops\r\n");
}

TEST(RegistryChange, BytesThatAreNoTextStay) {
    EXPECT_EQ(withFive("; \xFF\xC0\r\n" + kKeyLine), "; \xFF\xC0\r\n" + kKeyLine + kFive + "\r\n");
}

TEST(RegistryChange, TheTextsOwnLineEndIsKept) {
    EXPECT_EQ(withFive("; mine\n[HKCU\\Software\\Tallowmere\\core]\n"),
              "; mine\n[HKCU\\Software\\Tallowmere\\core]\n" + kFive + "\n");
}

TEST(RegistryChange, AMissingLastLineEndIsAdded) {
    EXPECT_EQ(withFive(kKeyLine + "\"u\"=\"x\""), kKeyLine + "\"u\"=\"x\"\r\n" + kFive + "\r\n");
    EXPECT_EQ(withFive(kKeyLine + "\"v\"=\"x\""), kKeyLine + kFive + "\r\n");
    EXPECT_EQ(withFive("; mine"), "; mine\r\n\r\n" + kKeyLine + kFive + "\r\n");
}

TEST(RegistryChange, AByteListCutOffAtTheEndDoesNotSwallowWhatFollows) {
    for (const std::string end : {"", "\r\n", " \r\n"}) {
        const std::string cut = kKeyLine + "\"u\"=hex:01,02,\\" + end;
        const std::string changed = withFive(cut);
        EXPECT_EQ(valueIn(changed, u"u"), "3:0102") << end.size();
        EXPECT_EQ(valueIn(changed, u"u"), valueIn(cut, u"u")) << end.size();
    }
}

TEST(RegistryChange, WhatIsDeletedFurtherDownIsWrittenBelowThat) {
    withFive(kKeyLine + "\"v\"=dword:1\r\n\"v\"=-\r\n");
    withFive(kKeyLine + "\"v\"=dword:1\r\n[-HKCU\\Software]\r\n");
    withFive(kKeyLine + "\"v\"=dword:1\r\n[-HKCU\\Software]\r\n[HKCU\\Software\\Tallowmere\\CORE]\r\n");
    withFive(kKeyLine + "\"v\"=dword:1\r\n[HKCU\\Other]\r\n" + kKeyLine + "\"v\"=\"later\"\r\n");
}

TEST(RegistryChange, TextsThatFitNoLineAreWrittenAsBytes) {
    EXPECT_EQ(writeStringLine(u"v", u"a\n"), "\"v\"=hex(1):61,00,0a,00,00,00");
    EXPECT_EQ(writeStringLine(u"v", std::u16string(u"\0", 1)), "\"v\"=hex(1):00,00,00,00");
    EXPECT_EQ(writeStringLine(u"v", std::u16string{0xD800}), "\"v\"=hex(1):00,d8,00,00");
    EXPECT_EQ(writeStringLine(u"v\"\\", u"\"\\"), R"("v\"\\"="\"\\")");
    EXPECT_EQ(writeStringLine(u"", u"x"), "@=\"x\"");
}

TEST(RegistryChange, NamesThatFitNoLineAreNotWritten) {
    RegistryDocument document;
    for (const std::u16string& name : {std::u16string(u"a\nb"), std::u16string(u"a\0b", 3), std::u16string{0xDC00}}) {
        EXPECT_FALSE(document.setValue(kKey, name, writeDwordLine(name, 1)));
        EXPECT_FALSE(document.setValue(kKey, name, writeStringLine(name, u"x")));
        EXPECT_FALSE(document.addKey(name));
    }
    EXPECT_EQ(document.text(), "");
}

TEST(RegistryText, AQuotedTextThatEndsInABackslashIsNone) {
    EXPECT_EQ(valueOf("\"v\"=\"A\\"), "none");
    EXPECT_EQ(valueOf("\"v\\"), "none");
}

TEST(RegistryText, AListOfAnyTypeWithWrongBytesIsNone) {
    EXPECT_EQ(valueOf("\"v\"=hex(3):zz"), "none");
}

TEST(RegistryText, AKeyMayEndInABackslash) {
    EXPECT_EQ(valueIn(kHeader + "[HKCU\\Software\\Tallowmere\\core\\]\r\n\"v\"=dword:1\r\n"), "4:01000000");
}

TEST(RegistryText, AKeyLineMayEndWithTheUsersRoot) {
    EXPECT_EQ(valueIn(kHeader + kKeyLine + "\"v\"=dword:1\r\n[-HKEY_CURRENT_USER]\r\n"), "no key");
    EXPECT_EQ(valueIn(kHeader + "[HKEY_CURRENT_USER]\r\n\"v\"=dword:1\r\n"), "no key");
    EXPECT_EQ(valueIn(kHeader + "[HKEY_CURRENT_USERS\\Software\\Tallowmere\\core]\r\n\"v\"=dword:1\r\n"), "no key");
}

TEST(RegistryDocument, WritesIntoATextOfEmptyLines) {
    RegistryDocument document("\n");
    EXPECT_TRUE(document.setValue(kKey, u"v", writeDwordLine(u"v", 7)));
    EXPECT_EQ(valueIn(document.text()), "4:07000000");
}

TEST(RegistryDocument, DoesNotMakeAKeyWhoseNameFitsNoLine) {
    RegistryDocument document(kHeader);
    EXPECT_FALSE(document.setValue(u"Soft\nware", u"v", writeDwordLine(u"v", 7)));
    EXPECT_EQ(document.text(), kHeader);
}

/// The complaints about a text, each as "LINE what".
std::vector<std::string> complaintsAbout(const std::string& text) {
    std::vector<std::string> shown;
    for (const SettingsComplaint& complaint : registryComplaints(text, u"file"))
        shown.push_back(std::to_string(complaint.line) + " " + complaint.what);
    return shown;
}

TEST(RegistryComplaints, AnExportedTextIsProper) {
    EXPECT_TRUE(complaintsAbout("").empty());
    EXPECT_TRUE(complaintsAbout(kHeader + kKeyLine + "\"v\"=\"AB\"\r\n@=\"\"\r\n; remark\r\n  \t\r\n" +
                                "\"w\"=hex:00,\\\r\n  01\r\n[-HKEY_CURRENT_USER\\Gone]\r\n")
                    .empty());
}

TEST(RegistryComplaints, LinesThatMakeNoSenseAreToldWithTheirNumber) {
    EXPECT_EQ(complaintsAbout(kHeader + kKeyLine + "\"v\"=hex:00,\\\r\n  01\r\nv=1\r\n\"w\"=dword:xyz\r\n[HKCU\\a\r\n"),
              (std::vector<std::string>{"6 is neither a key nor a value", "7 is neither a key nor a value",
                                        "8 is a key without its closing bracket"}));
}

TEST(RegistryComplaints, AValueSetTwiceIsTold) {
    EXPECT_EQ(
        complaintsAbout(kHeader + kKeyLine + "\"v\"=dword:1\n\"w\"=dword:1\n\"V\"=dword:2\n[HKCU\\a]\n\"v\"=dword:1\n"),
        (std::vector<std::string>{"6 sets the value of line 4 again"}));
}

TEST(RegistryComplaints, AValueDeletedBeforeItIsSetIsProper) {
    EXPECT_TRUE(complaintsAbout(kHeader + kKeyLine + "\"v\"=-\n\"v\"=dword:1\n").empty());
}

TEST(RegistryComplaints, ValuesThatBelongToNoKeyOfTheUserAreTold) {
    EXPECT_EQ(complaintsAbout("\"v\"=dword:1\n[HKEY_LOCAL_MACHINE\\a]\n\"v\"=dword:1\n[-HKCU\\a]\n\"v\"=dword:1"),
              (std::vector<std::string>{"1 is a value before the first key",
                                        "2 is a key that does not lie below HKEY_CURRENT_USER",
                                        "5 is a value of a key that is deleted"}));
}

} // namespace
} // namespace tallowmere::platform::posix
