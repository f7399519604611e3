// Without a section the library's log goes to the root folder, where root may write. What a test leaves there goes
// with it.
#pragma once

#include <filesystem>
#include <set>

namespace tallowmere::test {

class RootLog {
  public:
    RootLog() : before_(logs()) {}
    ~RootLog() {
        std::error_code ignored;
        for (const std::filesystem::path& log : logs())
            if (!before_.contains(log)) std::filesystem::remove(log, ignored);
    }
    RootLog(const RootLog&) = delete;
    RootLog& operator=(const RootLog&) = delete;

  private:
    static std::set<std::filesystem::path> logs() {
        std::set<std::filesystem::path> found;
        for (const auto& entry : std::filesystem::directory_iterator("/"))
            if (entry.path().filename().string().starts_with("log_system_")) found.insert(entry.path());
        return found;
    }
    std::set<std::filesystem::path> before_;
};

} // namespace tallowmere::test
