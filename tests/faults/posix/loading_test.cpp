// Loading the shared library while a request for memory fails, whoever made it: the loader, the run-time
// libraries, the parser or the library's own start. Each time in a process of its own.
#include "tests/contract/posix_children.hpp"
#include "tests/contract/posix_surroundings.hpp"
#include "tests/faults/posix/failing_heap.hpp"
#include "tests/faults/root_log.hpp"
#include "tests/support/case_count.hpp"

#include <tallowmere/tallowmere.h>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace tallowmere::test {
namespace {

// How a child ends.
enum Ended { kWorks = 0, kNotLoaded = 1, kNoSection = 2, kOver = 3, kWrong = 10 };

template <class Function> Function* find(void* library, const char* name) {
    return reinterpret_cast<Function*>(::dlsym(library, name));
}

/// Either everything works or everything answers that there is nothing.
int judge(void* library) {
    auto* const setVar = find<std::uint8_t(std::uint16_t, double, std::uint16_t)>(library, "SetZanVar");
    auto* const getVar =
        find<std::uint8_t(std::uint16_t, double*, std::uint16_t, std::uint16_t*)>(library, "GetZanVar");
    auto* const getName = find<void(std::uint16_t, char*)>(library, "GetZanVarName");
    auto* const getSysVar = find<std::uint8_t(std::uint16_t, double*)>(library, "GetSysVar");
    auto* const getSysBool = find<std::uint8_t(std::uint16_t, std::uint8_t*)>(library, "GetSysBool");
    auto* const boats = find<int()>(library, "GetBoatNum");
    auto* const channels = find<int()>(library, "GetZanVarNum");
    auto* const mob = find<int(double, double)>(library, "SetMOB");
    if (!setVar || !getVar || !getName || !getSysVar || !getSysBool || !boats || !channels || !mob) return kWrong;
    if (boats() != 100 || channels() != 414 || mob(1.0, 2.0) != 0) return kWrong + 1;
    char name[16];
    getName(1, name);
    if (std::string(name) != "BSP") return kWrong + 2;
    std::uint8_t flag = 77;
    double length = 0;
    double value = -1;
    std::uint16_t source = 0;
    const bool stored = setVar(1, 6.5, 0) != 0;
    const bool read = getVar(1, &value, 0, &source) != 0;
    if (getSysBool(5, &flag) != 1 || source != 1) return kWrong + 3;
    const bool hasLength = getSysVar(0, &length) != 0;
    if (stored != read || stored != hasLength) return kWrong + 4;
    if (!stored) return length == 32767.0 && flag == 0 && value == -1 ? kNoSection : kWrong + 5;
    if (value != 6.5 || flag > 1) return kWrong + 6;
    return length == 20.5 || length == 15.85 ? kWorks : kWrong + 7;
}

/// folder   with the section
int loadWithFailing(const std::filesystem::path& folder, std::size_t nth, bool andAllLater) {
    const int nothing = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nothing, STDERR_FILENO);
    ::close(nothing);
    failHeap(nth, andAllLater);
    void* const library = ::dlopen(TALLOWMERE_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (endFailingHeap() < nth) return kOver;
    int ended = library != nullptr ? judge(library) : kNotLoaded;
    if (library != nullptr && ::dlclose(library) != 0) ended = kWrong + 8;
    return mappingsBelow(folder) == 0 ? ended : kWrong + 9;
}

class LoadingWithoutMemory : public ::testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(, LoadingWithoutMemory, ::testing::Bool(),
                         [](const auto& each) { return std::string(each.param ? "FromOneRequestOn" : "OneRequest"); });

TEST_P(LoadingWithoutMemory, GivesALibraryThatWorksOrHasNoValueOrNone) {
    CaseCount cases("failing requests for memory");
    CaseCount works("of them: the library works");
    CaseCount without("of them: it has no value");
    CaseCount none("of them: the loader refuses it");
    const RootLog log;
    const PosixSurroundings surroundings;
    surroundings.writeSettings("[HKCU\\Software\\Tallowmere\\core]\r\n\"Sys_v0\"=hex:00,00,00,00,00,80,34,40\r\n");
    std::filesystem::create_directories(surroundings.data() / "Tallowmere" / "config");
    writeBytes(surroundings.data() / "Tallowmere" / "config" / "boats.xml",
               "<boats><boat id=\"3\" name=\"Falcon\"/></boats>");
    for (std::size_t n = 1;; ++n) {
        Child child([&](const Child::Line&) { return loadWithFailing(surroundings.top(), n, GetParam()); });
        const int ended = child.finish();
        if (ended == kOver) break;
        ++cases;
        if (ended == kWorks) ++works;
        if (ended == kNoSection) ++without;
        if (ended == kNotLoaded) ++none;
        ASSERT_TRUE(ended == kWorks || ended == kNoSection || ended == kNotLoaded) << n << ": " << ended;
    }
    EXPECT_GT(cases.count(), 50U);
    EXPECT_GT(works.count(), 10U);
    EXPECT_GT(none.count(), 1U);
}

} // namespace
} // namespace tallowmere::test
