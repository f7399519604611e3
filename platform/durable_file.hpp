// A file that grows at its end and is brought to the disk on demand. Not part of the shared library.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tallowmere::platform {

class DurableFile {
  public:
    virtual ~DurableFile() = default;
    DurableFile(const DurableFile&) = delete;
    DurableFile& operator=(const DurableFile&) = delete;

    /// Appends the bytes. False when not all of them could be written; what was then lies in the file.
    [[nodiscard]] virtual bool write(std::string_view bytes) noexcept = 0;
    /// Returns when everything written so far stands on the disk, whatever happens to the machine afterwards.
    /// False when that can't be had.
    [[nodiscard]] virtual bool sync() noexcept = 0;

  protected:
    DurableFile() = default;
};

/// Makes a file that others may read meanwhile. Null when there is one of that name, or it can't be made.
[[nodiscard]] std::unique_ptr<DurableFile> makeDurableFile(const std::u16string& path);

} // namespace tallowmere::platform
