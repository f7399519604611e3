#include "platform/durable_file.hpp"

#include "platform/posix/descriptor.hpp"
#include "platform/posix/file_write.hpp"
#include "platform/posix/text.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace tallowmere::platform {
namespace {

using posix::Descriptor;

class DescriptorFile final : public DurableFile {
  public:
    explicit DescriptorFile(Descriptor file) noexcept : file_(std::move(file)) {}

    [[nodiscard]] bool write(std::string_view bytes) noexcept override { return posix::writeWhole(file_.get(), bytes); }

    [[nodiscard]] bool sync() noexcept override { return ::fsync(file_.get()) == 0; }

  private:
    Descriptor file_;
};

/// A new file's name stands in its folder, which is brought to the disk on its own.
void syncFolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == path.npos ? "." : path.substr(0, slash + 1);
    const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor) static_cast<void>(::fsync(descriptor.get())); // some file systems can't; the file is there
}

} // namespace

std::unique_ptr<DurableFile> makeDurableFile(const std::u16string& path) {
    constexpr mode_t readableByAll = 0644; // less what the user's mask takes away
    if (path.find(u'\0') != path.npos) return nullptr;
    const std::string name = posix::narrowText(path);
    Descriptor file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC | O_NOCTTY, readableByAll));
    if (!file) return nullptr;
    syncFolderOf(name);
    return std::make_unique<DescriptorFile>(std::move(file));
}

} // namespace tallowmere::platform
