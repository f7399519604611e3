// What stands under the section's name, right or wrong, as other programs of the user make it: in a runtime folder
// of the process's own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tallowmere::fuzz {

/// How others hold the file.
enum class Hold { None, InUse, BeingMade, Count };
/// What the name stands for.
enum class Entry { File, Nothing, Folder, Pipe, Link, Twice, Count };

class SectionFile {
  public:
    /// Makes the folder and a file of the section's size that somebody holds, its bytes zero.
    SectionFile();
    ~SectionFile();
    SectionFile(const SectionFile&) = delete;
    SectionFile& operator=(const SectionFile&) = delete;

    /// Replaces what is there by a new file of this size, held, the user's alone. Where the old one is mapped it
    /// stays as it is, and nobody holds it.
    void replace(std::size_t size);
    /// What the name leads to from now on: the file, or something else beside it.
    void setEntry(Entry entry);
    void setHold(Hold hold);
    void setMode(unsigned mode);
    /// Makes the file shorter. Its bytes are not to be touched any more, whoever has mapped them.
    void cut(std::size_t size);

    /// True when a program that has it open may go on looking at it: of the right size, in use, the user's alone, with
    /// one name, whichever that is.
    [[nodiscard]] bool isHeld() const noexcept;
    /// True when a program finds it, too.
    [[nodiscard]] bool fits() const noexcept { return isHeld() && entry_ == Entry::File; }
    /// The file's bytes, at most those of a section; none once it is cut.
    [[nodiscard]] std::span<std::byte> bytes() const noexcept { return bytes_; }

  private:
    [[nodiscard]] std::string pathOf(const char* name) const { return folder_ + "/" + name; }
    void clear();

    std::string folder_;
    int file_ = -1;
    std::span<std::byte> bytes_;
    std::size_t size_ = 0;
    Entry entry_ = Entry::Nothing;
    Hold hold_ = Hold::None;
    unsigned mode_ = 0600;
};

/// Where this process has mapped a section for reading, as of the last time; null before.
[[nodiscard]] const std::byte* lastMappedForReading() noexcept;

} // namespace tallowmere::fuzz
