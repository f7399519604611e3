#include "tests/process/windows/process_fixture.hpp"

#include <array>
#include <fstream>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

constexpr int kPolls = 500;
constexpr DWORD kPollMilliseconds = 10;

/// A client that has just ended may still be on its way out.
bool sectionGoes() {
    for (int i = 0; i < kPolls && SectionView::sectionIsThere(); ++i) ::Sleep(kPollMilliseconds);
    return !SectionView::sectionIsThere();
}

fs::path newFolder() {
    std::array<wchar_t, MAX_PATH + 1> parent{};
    ::GetTempPathW(static_cast<DWORD>(parent.size()), parent.data());
    fs::path folder = fs::path(parent.data()) / ("TallowmereTest" + std::to_string(::GetCurrentProcessId()));
    fs::remove_all(folder);
    fs::create_directory(folder);
    return folder;
}

} // namespace

void WindowsProcesses::SetUp() {
    ASSERT_TRUE(sectionGoes()) << "a running program holds the section: end it first";
    settings_.emplace();
    folder_ = newFolder();
    settings_->set(L"DataFolder", text(folder_.wstring()));
    defaultFolderWasThere_ = fs::exists(defaultFolder());
}

void WindowsProcesses::TearDown() {
    settings_.reset();
    if (folder_.empty()) return;
    fs::remove_all(folder_);
    if (!defaultFolderWasThere_) fs::remove_all(defaultFolder());
}

void WindowsProcesses::writeConfigFile(const std::string& name, std::string_view content) const {
    fs::create_directories(folder_ / "config");
    std::ofstream(folder_ / "config" / name, std::ios::binary) << content;
}

fs::path WindowsProcesses::defaultFolder() {
    std::array<wchar_t, MAX_PATH> programData{};
    ::GetEnvironmentVariableW(L"ProgramData", programData.data(), static_cast<DWORD>(programData.size()));
    return fs::path(programData.data()) / "Tallowmere";
}

} // namespace tallowmere::test
