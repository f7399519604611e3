#include "tests/contract/posix_surroundings.hpp"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere::test {

namespace fs = std::filesystem;

PosixSurroundings::PosixSurroundings() {
    std::string pattern = (fs::temp_directory_path() / "tallowmere-XXXXXX").string();
    top_ = ::mkdtemp(pattern.data());
    for (const fs::path& folder : {runtime(), config(), data()}) ::mkdir(folder.c_str(), 0700);
    setVariable("XDG_RUNTIME_DIR", runtime());
    setVariable("XDG_CONFIG_HOME", config());
    setVariable("XDG_DATA_HOME", data());
    setVariable("HOME", top_);
}

PosixSurroundings::~PosixSurroundings() {
    while (!before_.empty()) {
        const auto [name, value] = std::move(before_.back());
        before_.pop_back();
        value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
    }
    std::error_code ignored;
    fs::remove_all(top_, ignored);
}

void PosixSurroundings::setVariable(const char* name, const std::optional<std::string>& value) {
    const char* old = std::getenv(name);
    before_.emplace_back(name, old != nullptr ? std::optional<std::string>(old) : std::nullopt);
    value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
}

void PosixSurroundings::giveTo(uid_t user) const {
    const auto give = [user](const fs::path& path) {
        if (::lchown(path.c_str(), user, user) != 0) throw fs::filesystem_error("lchown", path, {});
    };
    give(top_);
    for (const fs::path& path : fs::recursive_directory_iterator(top_)) give(path);
}

void PosixSurroundings::writeSettings(const std::string& bytes) const {
    fs::create_directories(settingsFile().parent_path());
    writeBytes(settingsFile(), bytes);
    // Whatever the mask of who runs the tests, the group writes to neither.
    for (const fs::path& path : {settingsFile().parent_path(), settingsFile()})
        fs::permissions(path, fs::perms::group_write | fs::perms::others_write, fs::perm_options::remove);
}

std::string PosixSurroundings::readSettings() const {
    return readBytes(settingsFile());
}

std::string readBytes(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeBytes(const fs::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

} // namespace tallowmere::test
