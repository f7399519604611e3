// What loading and unloading the library asks of the process in which it happens, and what it leaves behind.
#include "tests/process/windows/process_fixture.hpp"
#include "tests/support/windows/holdings.hpp"

#include <tallowmere/tallowmere.h>

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

namespace tallowmere::test {
namespace {

constexpr int kFirstLoads = 30; // until the system's own libraries have all that they keep
constexpr int kLoads = 100;
constexpr std::size_t kPrivateSlack = std::size_t{256} * 1024; // that a heap may take once, and not at each load

/// The library loaded into this process.
class LoadedLibrary {
  public:
    explicit LoadedLibrary(const std::filesystem::path& file = ClientProcess::library())
        : module_(::LoadLibraryW(file.c_str())) {
        if (module_ == nullptr) return;
        set_ = find<decltype(&::SetZanVar)>("SetZanVar");
        get_ = find<decltype(&::GetZanVar)>("GetZanVar");
    }
    ~LoadedLibrary() {
        if (module_ != nullptr) ::FreeLibrary(module_);
    }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    /// True when what is written is read. Allocates nothing.
    [[nodiscard]] bool works() const {
        double value = 0;
        std::uint16_t source = 0;
        return set_ != nullptr && get_ != nullptr && set_(ZAN_BSP, 6.5, 0) != 0 &&
               get_(ZAN_BSP, &value, 0, &source) != 0 && value == 6.5;
    }
    /// True for an address in the library's code or data.
    [[nodiscard]] bool contains(DWORD64 address) const {
        MODULEINFO module{};
        ::GetModuleInformation(::GetCurrentProcess(), module_, &module, sizeof module);
        const auto first = reinterpret_cast<DWORD64>(module.lpBaseOfDll);
        return address >= first && address < first + module.SizeOfImage;
    }

  private:
    template <class Function> [[nodiscard]] Function find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module_, name)));
    }
    HMODULE module_;
    decltype(&::SetZanVar) set_ = nullptr;
    decltype(&::GetZanVar) get_ = nullptr;
};

bool libraryIsThere() {
    return ::GetModuleHandleW(ClientProcess::library().c_str()) != nullptr;
}

int threadCount() {
    const HANDLE all = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = ::Thread32First(all, &entry); more; more = ::Thread32Next(all, &entry))
        if (entry.th32OwnerProcessID == ::GetCurrentProcessId()) ++count;
    ::CloseHandle(all);
    return count;
}

/// What the process holds.
struct Holdings {
    std::size_t handles = 0;
    std::size_t views = 0;        // mapped regions
    std::size_t images = 0;       // regions of modules
    std::size_t heapBytes = 0;    // given out by all heaps
    std::size_t privateBytes = 0; // memory of its own, added up: Wine's sum leaves out what was never touched
    int threads = 0;
};

Holdings holdings() {
    Holdings now;
    now.threads = threadCount();
    now.handles = handleCount(::GetCurrentProcessId());
    now.heapBytes = bytesOfAllHeaps();
    forEachRegion([&now](const MEMORY_BASIC_INFORMATION& region) {
        if (region.Type == MEM_MAPPED) ++now.views;
        if (region.Type == MEM_IMAGE) ++now.images;
        if (region.Type == MEM_PRIVATE && region.State == MEM_COMMIT) now.privateBytes += region.RegionSize;
    });
    return now;
}

int wantedLoads() {
    const char* const wanted = std::getenv("TALLOWMERE_LOADS");
    return wanted != nullptr ? std::atoi(wanted) : kLoads;
}

class Loading : public WindowsProcesses {
  protected:
    void SetUp() override {
        WindowsProcesses::SetUp();
        if (HasFatalFailure()) return;
        settings_->set(L"Sys_v3", number(2.5));
        writeConfigFile("boats.xml", R"(<boats><boat id="3" name="Falcon"/></boats>)");
        writeConfigFile("channels.xml", R"(<channels><channel id="172" user="Vane"/></channels>)");
        writeConfigFile("alternate.csv", "117,1,2,3\r\n");
    }
};

TEST_F(Loading, AgainAndAgainLeavesNoHandleViewOrMemory) {
    for (int i = 0; i < kFirstLoads; ++i) ASSERT_TRUE(LoadedLibrary().works());
    const int loads = wantedLoads();
    const Holdings before = holdings();
    for (int i = 0; i < loads; ++i) ASSERT_TRUE(LoadedLibrary().works()) << i;
    const Holdings after = holdings();

    std::printf("loads: %d; handles %zu, %zu; views %zu, %zu; regions of modules %zu, %zu; heap %zu, %zu bytes; "
                "private %zu, %zu bytes\n",
                loads, before.handles, after.handles, before.views, after.views, before.images, after.images,
                before.heapBytes, after.heapBytes, before.privateBytes, after.privateBytes);
    EXPECT_FALSE(libraryIsThere());
    EXPECT_FALSE(SectionView::sectionIsThere());
    EXPECT_GT(before.handles, 0U);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_EQ(after.views, before.views);
    EXPECT_EQ(after.images, before.images);
    EXPECT_EQ(after.threads, before.threads);
    // A piece of memory lost by each load would be more than a byte.
    EXPECT_LT(after.heapBytes, before.heapBytes + static_cast<std::size_t>(loads));
    // Memory beside the heaps comes in pages: one lost by each of 100 loads is 400 KiB.
    EXPECT_LT(after.privateBytes, before.privateBytes + kPrivateSlack);
}

TEST_F(Loading, MakesNoThread) {
    const int before = threadCount();
    {
        const LoadedLibrary library;
        EXPECT_TRUE(library.works());
        EXPECT_EQ(threadCount(), before);
    }
    EXPECT_EQ(threadCount(), before);
}

/// Threads that stand still in the midst of the library's own code.
class StandingThreads {
  public:
    explicit StandingThreads(const LoadedLibrary& library) : library_(library) {
        for (int i = 0; i < 4; ++i) threads_.push_back(::CreateThread(nullptr, 0, callOn, this, 0, nullptr));
        for (const HANDLE thread : threads_) stopInside(thread);
    }
    ~StandingThreads() {
        mayEnd_ = true;
        for (const HANDLE thread : threads_) {
            ::ResumeThread(thread);
            ::WaitForSingleObject(thread, INFINITE);
            ::CloseHandle(thread);
        }
    }
    StandingThreads(const StandingThreads&) = delete;
    StandingThreads& operator=(const StandingThreads&) = delete;

  private:
    // Calls that allocate nothing: who stands with the process's heap in his hands holds everybody up.
    static DWORD WINAPI callOn(void* owner) {
        const auto& self = *static_cast<StandingThreads*>(owner);
        while (!self.mayEnd_) (void)self.library_.works();
        return 0;
    }
    void stopInside(HANDLE thread) const {
        CONTEXT context{};
        context.ContextFlags = CONTEXT_CONTROL;
        for (;;) {
            ::SuspendThread(thread);
            if (::GetThreadContext(thread, &context) && library_.contains(context.Rip)) return;
            ::ResumeThread(thread);
            ::SwitchToThread();
        }
    }

    const LoadedLibrary& library_;
    std::atomic<bool> mayEnd_ = false;
    std::vector<HANDLE> threads_;
};

TEST_F(Loading, NeitherItNorACallWaitsForThreadsThatStandInsideTheLibrary) {
    // Another file is another library to the system, which does all that a first loading does.
    const std::filesystem::path second = folder_ / "second.dll";
    std::filesystem::copy_file(ClientProcess::library(), second);
    {
        const LoadedLibrary library;
        ASSERT_TRUE(library.works());
        const StandingThreads standing(library); // who waited for one of them would not end
        std::thread([&] { EXPECT_TRUE(library.works()); }).join();
        EXPECT_TRUE(LoadedLibrary(second).works());
        EXPECT_EQ(::GetModuleHandleW(second.c_str()), nullptr);
    }
    EXPECT_FALSE(libraryIsThere());
}

TEST_F(Loading, ByManyThreadsAtOnceGivesAllOneLibraryThatGoesWithTheLast) {
    std::vector<std::thread> threads;
    std::atomic<int> working = 0;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int load = 0; load < 20; ++load)
                if (LoadedLibrary().works()) ++working;
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(working, 80);
    EXPECT_FALSE(libraryIsThere());
    EXPECT_FALSE(SectionView::sectionIsThere());
}

TEST_F(Loading, NeedsNoMessageQueueAndPostsNothing) {
    std::thread([] {
        const LoadedLibrary library;
        EXPECT_TRUE(library.works());
        MSG message{};
        EXPECT_FALSE(::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
    }).join();
}

} // namespace
} // namespace tallowmere::test
