// How long each reader takes for inputs of one mebibyte that are made to be slow. Ends with 1 when one takes more
// than a second of processor time, and names it. The times are those of the fuzz targets: a reader with all that its
// target checks, under the sanitizers.
#include "fuzz/support/target.hpp"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

namespace tallowmere::fuzz {
namespace {

constexpr std::size_t kBytes = 1 << 20;
constexpr double kLongestMilliseconds = 1000.0; // of the processor

struct Slow {
    std::string name;
    std::string text;
};

std::string repeated(std::string_view piece, std::string_view front = {}, std::string_view back = {}) {
    std::string text(front);
    while (text.size() + piece.size() + back.size() <= kBytes) text += piece;
    return text += back;
}

std::vector<Slow> anyText() {
    return {{"line feeds", repeated("\n")},
            {"carriage returns", repeated("\r")},
            {"zero bytes", repeated(std::string_view("\0", 1))},
            {"digits", repeated("9")},
            {"digits after a point", repeated("0", "0.")},
            {"short numbers", repeated("1 ")},
            {"numbers and line feeds", repeated("1\n")},
            {"commas", repeated(",")},
            {"blanks", repeated(" ")},
            {"quotes", repeated("\"")},
            {"backslashes", repeated("\\")},
            {"bytes of no text", repeated("\xFF")},
            {"four-byte characters", repeated("\xF0\x9F\x9A\xA4")}};
}

std::vector<Slow> xmlTexts(const std::string& root, const std::string& element) {
    const std::string open = "<" + root + ">";
    const std::string close = "</" + root + ">";
    std::string attributes = open + "<" + element;
    for (int number = 0; attributes.size() + 30 < kBytes; ++number)
        attributes += " a" + std::to_string(number) + "=\"\"";
    return {{"empty elements", repeated("<" + element + "/>", open, close)},
            {"elements with all attributes",
             repeated("<" + element + " id=\"9\" name=\"n\" mmsi=\"1\" log=\"1\"/>", open, close)},
            {"nesting", repeated("<a>", open)},
            {"nesting of 200 levels over and over",
             [&] {
                 std::string tower;
                 for (int level = 0; level < 200; ++level) tower += "<a>";
                 for (int level = 0; level < 200; ++level) tower += "</a>";
                 return repeated(tower, open, close);
             }()},
            {"an element of many attributes", attributes + "/>" + close},
            {"an element of many attributes, not ended", attributes},
            {"one long attribute", repeated("x", open + "<" + element + " id=\"1\" name=\"", "\"/>" + close)},
            {"an attribute not ended", repeated("x", open + "<" + element + " id=\"1\" name=\"")},
            {"a long name of an element", repeated("x", open + "<")},
            {"character references", repeated("&#65;", open + "<" + element + " id=\"1\" user=\"", "\"/>" + close)},
            {"a comment not ended", repeated("-x", open + "<!--")},
            {"comments", repeated("<!---->", open, close)},
            {"section not ended", repeated("]]", open + "<![CDATA[")},
            {"name spaces", repeated("<x:" + element + " xmlns:x=\"u\" x:id=\"1\"/>", open, close)},
            {"instructions", repeated("<?a?>", open, close)},
            {"UTF-16", [&] {
                 std::string wide("\xFF\xFE");
                 for (const char c : repeated("<" + element + "/>", open).substr(0, kBytes / 2 - 1)) wide += {c, '\0'};
                 return wide;
             }()}};
}

std::vector<Slow> registryTexts() {
    const std::string key = "[HKEY_CURRENT_USER\\Software\\Tallowmere\\core]\n";
    std::string names = key;
    for (int number = 0; names.size() + 30 < kBytes; ++number) names += "\"n" + std::to_string(number) + "\"=\"\"\n";
    return {{"keys", repeated(key)},
            {"keys deleted", repeated("[-HKCU]\n" + key)},
            {"names", names},
            {"one value again and again", repeated("\"Sys_v0\"=hex:0\n", key)},
            {"one long byte list", repeated("00,", key + "\"Sys_v0\"=hex:")},
            {"continued lines", repeated("\\\n", key + "\"Sys_v0\"=hex:")},
            {"continued bytes", repeated("00,\\\n", key + "\"Sys_v0\"=hex:")},
            {"one long string", repeated("x", key + "\"DataFolder\"=\"", "\"\n")},
            {"escapes", repeated("\\\\", key + "\"DataFolder\"=\"", "\"\n")},
            {"strings not ended", repeated("\"a\n", key)},
            {"closing brackets", repeated("]", "[HKCU")},
            {"UTF-16", [&] {
                 std::string wide("\xFF\xFE");
                 for (const char c : names.substr(0, kBytes / 2 - 1)) wide += {c, '\0'};
                 return wide;
             }()}};
}

std::vector<Slow> tableTexts() {
    return {{"rows of ten", repeated("0,1,2,3,4,5,6,7,8,9\n")},
            {"rows of tabs", repeated("0\t1\t2\t3\t4\t5\t6\t7\t8\t9\n")},
            {"falling pairs", repeated("9 8 7 6 5 4 3 2 1\n", "5 4 3\n")},
            {"falling rows",
             [] {
                 std::string text = "1 2 3\n";
                 for (int row = 100'000; text.size() + 20 < kBytes; --row) text += std::to_string(row) + " 1 2 3\n";
                 return text;
             }()},
            {"one long row", repeated("1 2 ", "5 4 3\n")},
            {"rows of 512 knots",
             [] {
                 std::string row = "3";
                 for (int knot = 0; knot < 512; ++knot) row += " 1 2";
                 return repeated(row + "\n", "5 4 3\n");
             }()},
            {"long numbers", repeated(std::string(1000, '7') + " ")},
            {"exponents", repeated("1e-308 ")},
            {"comments", repeated("!\n")}};
}

std::vector<Slow> nmeaTexts() {
    return {{"starts", repeated("$")},
            {"starts and ends", repeated("$*")},
            {"stars", repeated("*")},
            {"merged sentences", repeated("$IIHDT,302,T*24")},
            {"sentences", repeated("$IIHDT,302,T*24\r\n")},
            {"sentences of commas", repeated("$IIXDR," + std::string(900, ',') + "*00\n")},
            {"unknown sentences",
             [] {
                 std::string text;
                 for (int number = 0; text.size() + 20 < kBytes; ++number)
                     text += "$P" + std::to_string(number) + "*00\n";
                 return text;
             }()},
            {"reports", repeated("!AIVDM,1,1,,A,13aG?P0P00PD;88MD5MTDww@2<0L,0*23\r\n")},
            {"times", repeated("$IIZDA,194310,14,07,2008,00,00*00\n$IIZDA,194311,14,07,2008,00,00*00\n")},
            {"tag blocks", repeated("\\s:a*00\\$IIHDT,302,T*24\n")},
            {"tag blocks not ended", repeated("\\")}};
}

/// Milliseconds of the processor, whatever else the machine does.
double timeOf(void (*target)(Bytes), const std::string& text) {
    const std::clock_t start = std::clock();
    target({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// False when an input took too long, three times: a processor that two share is the slower one for both.
bool measure(const char* reader, void (*target)(Bytes), std::vector<Slow> inputs) {
    const std::vector<Slow> more = anyText();
    inputs.insert(inputs.end(), more.begin(), more.end());
    double longest = 0.0;
    bool quick = true;
    std::string slowest;
    target({}); // what is made once
    for (const Slow& input : inputs) {
        double time = timeOf(target, input.text);
        for (int again = 0; again < 2 && time > kLongestMilliseconds; ++again)
            time = std::min(time, timeOf(target, input.text));
        if (time > kLongestMilliseconds) {
            quick = false;
            std::printf("%s: %.1f ms for '%s'\n", reader, time, input.name.c_str());
        }
        if (time <= longest) continue;
        longest = time;
        slowest = input.name;
    }
    std::printf("%-12s %3zu inputs, longest %7.1f ms (%s)\n", reader, inputs.size(), longest, slowest.c_str());
    return quick;
}

} // namespace
} // namespace tallowmere::fuzz

int main() {
    using namespace tallowmere::fuzz;
    bool quick = measure("boats", boats, xmlTexts("boats", "boat"));
    quick &= measure("channels", channels, xmlTexts("channels", "channel"));
    quick &= measure("alternate", alternate, tableTexts());
    quick &= measure("calibration", calibration, tableTexts());
    quick &= measure("registry", registry, registryTexts());
    quick &= measure("nmea", nmea, nmeaTexts());
    return quick ? 0 : 1;
}
