// Each of the user's files missing, something else, empty, huge or noise, on the real system: it leaves its
// default, and the others are read.
#include "tests/bad_input/started_files.hpp"
#include "tests/support/case_count.hpp"

#include <atomic>
#include <random>
#include <thread>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

class BadFiles : public FilesTest {};

TEST_F(BadFiles, GoodOnesAreAllRead) {
    EXPECT_EQ(startHost(), allBut(kFiles));
}

TEST_F(BadFiles, AMissingOneAFolderOrAnEmptyOneLeavesItsDefault) {
    CaseCount cases("files");
    for (std::size_t i = 0; i < kFiles; ++i) {
        const fs::path file = path(kGoodFiles[i].path);
        fs::remove(file);
        ++cases;
        EXPECT_EQ(startHost(), allBut(i)) << "missing: " << file;
        fs::create_directory(file);
        ++cases;
        EXPECT_EQ(startHost(), allBut(i)) << "a folder: " << file;
        fs::remove(file);
        write(kGoodFiles[i].path, "");
        ++cases;
        EXPECT_EQ(startHost(), allBut(i)) << "empty: " << file;
        write(kGoodFiles[i].path, kGoodFiles[i].content);
    }
    EXPECT_EQ(startHost(), allBut(kFiles));
}

/// Zeros behind the content, up to this size. A document is refused above its limit, and one that is damaged is
/// read up to there; a text's first lines are read whatever follows.
TEST_F(BadFiles, AHugeOneHoldsNobodyUpAndLeavesTheOthers) {
    CaseCount cases("files");
    constexpr std::uintmax_t kLimit = 16U << 20;
    constexpr std::uintmax_t k4GiB = std::uintmax_t{1} << 32; // small to who looks at 32 bits of it
    for (const std::uintmax_t size : {kLimit, kLimit + 1, 4 * kLimit, k4GiB, k4GiB + 100}) {
        for (std::size_t i = 0; i < kFiles; ++i) {
            ++cases;
            SCOPED_TRACE(std::string(kGoodFiles[i].path) + " " + std::to_string(size));
            fs::resize_file(path(kGoodFiles[i].path), size); // sparse
            const bool document = i < 2;
            EXPECT_EQ(startHost(), allBut(document && size > kLimit ? i : kFiles));
            write(kGoodFiles[i].path, kGoodFiles[i].content);
        }
    }
}

TEST_F(BadFiles, NoiseIsNoSetting) {
    CaseCount cases("files");
    std::mt19937 random(20251122);
    for (std::size_t i = 0; i < kFiles; ++i) {
        for (const std::size_t size : {1U, 100U, 10'000U, 300'000U}) {
            ++cases;
            std::string noise(size, '\0');
            for (char& byte : noise) byte = static_cast<char>(random() | 0x80); // no digit, no tag
            write(kGoodFiles[i].path, noise);
            EXPECT_EQ(startHost(), allBut(i)) << kGoodFiles[i].path << " " << size;
        }
        write(kGoodFiles[i].path, kGoodFiles[i].content);
    }
}

TEST_F(BadFiles, AFileInPlaceOfAFolderLeavesAllDefaults) {
    CaseCount cases("folders");
    for (const char* folder : {"config", "calibration"}) {
        fs::rename(machine.folder() / folder, machine.folder() / "aside");
        std::ofstream(machine.folder() / folder) << "no folder";
        Taken expected;
        for (std::size_t i = 0; i < kFiles; ++i)
            expected.file[i] = !std::string(kGoodFiles[i].path).starts_with(folder);
        ++cases;
        EXPECT_EQ(startHost(), expected) << folder;
        fs::remove(machine.folder() / folder);
        fs::rename(machine.folder() / "aside", machine.folder() / folder);
    }
}

/// A text's place in the file is told by each of its bytes: wherever it is cut, what is read is a front of it.
/// Through Wine the reader of documents, the first two, may never come back from one that is cut.
std::size_t firstThatMayBeCut() {
    return platform::hostPlatform().separator() == u'\\' ? 2 : 0;
}

TEST_F(BadFiles, ADocumentCutAnywhereIsReadUpToThere) {
    CaseCount cases("cuts");
    for (std::size_t i = firstThatMayBeCut(); i < kFiles; ++i) {
        const std::string content = kGoodFiles[i].content;
        for (std::size_t size = 0; size < content.size(); ++size) {
            ++cases;
            write(kGoodFiles[i].path, content.substr(0, size));
            const Taken taken = startHost();
            EXPECT_FALSE(taken.foreign) << content.substr(0, size);
            for (std::size_t other = 0; other < kFiles; ++other)
                if (other != i) {
                    EXPECT_TRUE(taken.file[other]) << content.substr(0, size);
                }
        }
        write(kGoodFiles[i].path, content);
    }
}

/// Somebody cuts, replaces and lengthens a file all the while: what is read is the file at some moment, and the
/// others are read whole. What the system refuses meanwhile is not done.
TEST_F(BadFiles, OnesThatChangeWhileTheyAreReadDoNoHarm) {
    CaseCount cases("starts");
    const auto repeated = [](const char* head, int times, const std::string& line, const char* tail) {
        std::string content = head;
        for (int i = 0; i < times; ++i) content += line;
        return content + tail;
    };
    const auto curve = [&](std::size_t i) { return repeated(kGoodFiles[i].content, 20'000, "! nothing\n", ""); };
    const std::string contents[kFiles] = {
        repeated("<boats>", 4'000, "<boat id=\"3\" name=\"Falcon\"/>", "</boats>"),
        repeated("<channels>", 4'000, "<channel id=\"180\" user=\"Keel depth\"/>", "</channels>"),
        repeated("", 4'000, kGoodFiles[2].content, ""), curve(3), curve(4)};
    for (std::size_t i = firstThatMayBeCut(); i < kFiles; ++i) {
        std::atomic<bool> over = false;
        const char* const file = kGoodFiles[i].path;
        std::thread changer([&] {
            const std::string other = std::string(file) + ".other";
            while (!over) {
                std::error_code ignored;
                write(file, contents[i]);
                fs::resize_file(path(file), contents[i].size() / 2, ignored);
                write(other.c_str(), contents[i]);
                fs::rename(path(other.c_str()), path(file), ignored);
                for (int k = 0; k < 3; ++k) std::ofstream(path(file), std::ios::binary | std::ios::app) << contents[i];
                fs::remove(path(file), ignored);
            }
        });
        for (int start = 0; start < 40; ++start) {
            ++cases;
            const Taken taken = startHost();
            EXPECT_FALSE(taken.foreign) << file;
            for (std::size_t other = 0; other < kFiles; ++other)
                if (other != i) {
                    EXPECT_TRUE(taken.file[other]) << kGoodFiles[other].path << " beside " << file;
                }
        }
        over = true;
        changer.join();
        write(file, kGoodFiles[i].content);
    }
    EXPECT_EQ(startHost(), allBut(kFiles));
}

} // namespace
} // namespace tallowmere::test
