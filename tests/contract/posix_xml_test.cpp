// Documents that want to be expensive.
#include "platform/platform.hpp"
#include "tests/contract/posix_surroundings.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

namespace tallowmere::test {
namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20;

class PosixXml : public testing::Test {
  protected:
    struct Outcome {
        std::size_t elements = 0;
        std::size_t attributes = 0;
    };
    [[nodiscard]] Outcome read(const std::filesystem::path& file) const {
        Outcome outcome;
        const auto reader = platform::hostPlatform().openXml(file.u16string());
        platform::XmlElement element;
        while (reader != nullptr && reader->next(element)) {
            ++outcome.elements;
            outcome.attributes += element.attributes.size();
        }
        return outcome;
    }
    [[nodiscard]] Outcome readText(const std::string& document) const {
        writeBytes(surroundings_.top() / "document.xml", document);
        return read(surroundings_.top() / "document.xml");
    }
    static std::string repeated(std::string_view part, std::size_t bytes = kMebibyte) {
        std::string text;
        while (text.size() < bytes) text += part;
        return text;
    }

    PosixSurroundings surroundings_;
};

TEST_F(PosixXml, AMebibyteOfAnythingIsReadAsFarAsItIsProper) {
    std::string attributes;
    for (int i = 0; attributes.size() < kMebibyte; ++i) attributes += " a" + std::to_string(i) + "='1'";
    const struct {
        const char* what;
        std::string document;
        std::size_t elements;
    } cases[] = {
        {"a comment", "<a><!--" + repeated("x ") + "--><b/></a>", 2},
        {"an attribute", "<a><b x='" + repeated("y") + "'/></a>", 2},
        {"an attribute of references", "<a><b x='" + repeated("&amp;") + "'/></a>", 2},
        {"attributes", "<a><b" + attributes + "/></a>", 2},
        {"a name", "<" + repeated("n") + "/>", 1},
        {"text", "<a>" + repeated("text ") + "<b/></a>", 2},
        {"references", "<a>" + repeated("&#65;") + "<b/></a>", 2},
        {"character data", "<a><![CDATA[" + repeated("]") + "]]><b/></a>", 2},
        {"an instruction", "<a><?go " + repeated("?") + "?><b/></a>", 2},
        {"line feeds", repeated("\n") + "<a/>", 1},
        {"brackets", repeated("<"), 0},
        {"open comments", "<a>" + repeated("<!-"), 1},
        {"NUL bytes", std::string(kMebibyte, '\0'), 0},
        {"a tag without end", "<a " + repeated("x='1' "), 0},
        {"a document type", "<!DOCTYPE a [" + repeated("<!ENTITY e 'x'>") + "]><a/>", 0},
    };
    for (const auto& each : cases) {
        const Outcome outcome = readText(each.document);
        EXPECT_EQ(outcome.elements, each.elements) << each.what;
    }
}

TEST_F(PosixXml, AMebibyteOfElementsIsReadToItsEnd) {
    const Outcome outcome = readText("<a>" + repeated("<b/>") + "</a>");
    EXPECT_EQ(outcome.elements, 1 + kMebibyte / 4);
}

TEST_F(PosixXml, ALongTagIsDeliveredWhole) {
    std::string attributes;
    for (int i = 0; i < 50'000; ++i) attributes += " a" + std::to_string(i) + "='1'";
    EXPECT_EQ(readText("<a" + attributes + "/>").attributes, 50'000U);
}

TEST_F(PosixXml, ALargeDocumentIsReadToItsEnd) {
    constexpr std::string_view kElement = "<b x='0123456789012345678901234567890123456789'/>\n";
    constexpr std::size_t kElements = 200'000;
    const Outcome outcome = readText("<a>" + repeated(kElement, kElements * kElement.size()) + "<c y='1'/></a>");
    EXPECT_EQ(outcome.elements, kElements + 2);
    EXPECT_EQ(outcome.attributes, kElements + 1);
}

TEST_F(PosixXml, AGibibyteIsAbsentAtOnce) {
    const std::filesystem::path file = surroundings_.top() / "huge.xml";
    writeBytes(file, "<a><b/><c x='");
    std::filesystem::resize_file(file, std::uintmax_t{1} << 30);
    EXPECT_EQ(platform::hostPlatform().openXml(file.u16string()), nullptr);
}

TEST_F(PosixXml, ATagAsLongAsTheLargestDocumentIsGivenUp) {
    const std::string start = "<a><b/><c x='";
    const auto largest = static_cast<std::size_t>(platform::kLargestDocument);
    const std::filesystem::path file = surroundings_.top() / "large.xml";
    writeBytes(file, start + std::string(largest - start.size(), 'x'));
    const Outcome outcome = read(file);
    EXPECT_EQ(outcome.elements, 2U);
    writeBytes(file, start);
    std::filesystem::resize_file(file, largest); // a NUL is malformed at once
    EXPECT_EQ(read(file).elements, 2U);
}

/// Others may go on writing a document that is open; who waits for its end must not wait for theirs.
TEST_F(PosixXml, ADocumentThatGrowsIsReadUpToTheLimit) {
    constexpr std::string_view kElement = "<b x='0123456789'/>\n";
    const auto largest = static_cast<std::size_t>(platform::kLargestDocument);
    const std::filesystem::path file = surroundings_.top() / "grows.xml";
    writeBytes(file, "<a>" + repeated(kElement));
    const auto reader = platform::hostPlatform().openXml(file.u16string());
    platform::XmlElement element;
    ASSERT_TRUE(reader != nullptr && reader->next(element));
    std::ofstream(file, std::ios::binary | std::ios::app) << repeated(kElement, largest);
    std::size_t elements = 0;
    while (reader->next(element)) ++elements;
    EXPECT_GT(elements, kMebibyte / kElement.size()); // what came later was read too
    EXPECT_LE(elements, largest / kElement.size());
    EXPECT_TRUE(reader->malformed());
    EXPECT_FALSE(reader->next(element));
}

TEST_F(PosixXml, APipeIsNoDocument) {
    const std::filesystem::path pipe = surroundings_.top() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(platform::hostPlatform().openXml(pipe.u16string()), nullptr);
}

TEST_F(PosixXml, NamesEndAtTheirLastColon) {
    writeBytes(surroundings_.top() / "document.xml", "<a:b:c x:y:z='1'/>");
    const auto reader = platform::hostPlatform().openXml((surroundings_.top() / "document.xml").u16string());
    platform::XmlElement element;
    ASSERT_TRUE(reader != nullptr && reader->next(element));
    EXPECT_EQ(element.name, u"c");
    EXPECT_EQ(element.attributes.at(0).name, u"z");
}

} // namespace
} // namespace tallowmere::test
