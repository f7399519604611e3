#include "platform/posix/files.hpp"

#include "platform/posix/file_write.hpp"
#include "platform/posix/text.hpp"

#include <array>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>

namespace tallowmere::platform::posix {
namespace {

/// A path as the system takes it: up to its first NUL.
std::string systemPath(const std::u16string& path) {
    return narrowText(path.substr(0, path.find(u'\0')));
}

/// The kind of object that a path leads to; 0 when there is none.
mode_t kindOf(const std::u16string& path) {
    struct stat status {};
    return ::stat(systemPath(path).c_str(), &status) == 0 ? status.st_mode & S_IFMT : 0;
}

bool isRegular(const Descriptor& file) noexcept {
    struct stat status {};
    return file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode);
}

class DescriptorReader final : public FileReader {
  public:
    explicit DescriptorReader(Descriptor file) noexcept : file_(std::move(file)) {}
    [[nodiscard]] std::size_t read(std::span<char> buffer) noexcept override { return readWhole(file_.get(), buffer); }

  private:
    Descriptor file_;
};

} // namespace

Descriptor openRegularFile(const std::u16string& path) {
    Descriptor file(::open(systemPath(path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    return isRegular(file) ? std::move(file) : Descriptor();
}

std::size_t readWhole(int file, std::span<char> buffer) noexcept {
    std::size_t done = 0;
    while (done < buffer.size()) {
        const ssize_t count = ::read(file, buffer.data() + done, buffer.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

std::u16string executablePath() {
    std::array<char, PATH_MAX> path{};
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    return length > 0 ? widenText({path.data(), static_cast<std::size_t>(length)}) : std::u16string();
}

bool pathExists(const std::u16string& path) {
    return kindOf(path) != 0;
}

bool pathIsDirectory(const std::u16string& path) {
    return kindOf(path) == S_IFDIR;
}

void makeOneDirectory(const std::u16string& path) {
    ::mkdir(systemPath(path).c_str(), S_IRWXU);
}

std::unique_ptr<FileReader> openFileReader(const std::u16string& path) {
    Descriptor file = openRegularFile(path);
    if (!file) return nullptr;
    return std::make_unique<DescriptorReader>(std::move(file));
}

bool appendLineToFile(const std::u16string& path, std::string_view line) {
    const std::string whole = std::string(line) + '\n';
    const Descriptor file(::open(systemPath(path).c_str(),
                                 O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY,
                                 S_IRUSR | S_IWUSR));
    if (!isRegular(file)) return false;
    return writeInOneCall(file.get(), whole) == static_cast<ssize_t>(whole.size());
}

} // namespace tallowmere::platform::posix
