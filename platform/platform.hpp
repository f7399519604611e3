// The seam: everything the library asks of the operating system, in this project's own nouns.
//
// Three implementations: platform/windows, platform/posix (CMake picks one) and the in-memory one of
// tests/contract, whose every step can be made to fail. One suite, tests/contract, holds for all.
//
// Text is UTF-16 (`char16_t`; `wchar_t` has four bytes on Linux). A path is text with the platform's
// own separator. Operating-system types and headers stay inside the implementations.
//
// Failures: an absent thing is a null pointer, an empty optional or false; nothing is reported.
// Functions without `noexcept` may throw std::bad_alloc and nothing else.
// Threads: a Platform may be called from any thread; the objects that it makes belong to one thread at
// a time. Start-up runs under the loader lock on Windows: no implementation loads a module, starts a
// thread or waits for one, beyond what the call itself demands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere::platform {

/// Bias of local time: UTC = local time + bias, in minutes, as Windows counts it.
struct TimeZone {
    int bias = 0;          // outside daylight saving
    int daylightBias = 0;  // added to `bias` while daylight saving holds
    bool daylight = false; // daylight saving holds now
};

/// A named piece of memory that processes of one logon share, zero-filled when made. It is there while
/// any process owns it, however others ended; the next one after the last finds a new, zeroed one.
/// Destruction unmaps the view and lets the section go.
class SharedSection {
  public:
    virtual ~SharedSection() = default;
    SharedSection(const SharedSection&) = delete;
    SharedSection& operator=(const SharedSection&) = delete;

    /// The mapped bytes, page-aligned, or null when only the mapping failed.
    [[nodiscard]] virtual std::byte* view() const noexcept = 0;
    /// True when the section was there before this call opened it.
    [[nodiscard]] virtual bool existed() const noexcept = 0;
    /// Account name of the user who made the section; empty when it can't be told.
    [[nodiscard]] virtual std::u16string maker() const = 0;

  protected:
    SharedSection() = default;
};

/// A section mapped for reading only, by somebody who takes no part in its life: it ends when the last process
/// that owns a SharedSection of it ends, however many look at it. The mapping stays readable after that, with
/// the bytes that were there last, until destruction.
class SectionLook {
  public:
    virtual ~SectionLook() = default;
    SectionLook(const SectionLook&) = delete;
    SectionLook& operator=(const SectionLook&) = delete;

    /// The mapped bytes, page-aligned; never null.
    [[nodiscard]] virtual const std::byte* view() const noexcept = 0;
    /// True while a process owns this very section; false once the last one has ended, also when there is a new
    /// section under its name. Asks the system.
    [[nodiscard]] virtual bool isOwned() const noexcept = 0;
    /// Account name of the user who made the section; empty when it can't be told.
    [[nodiscard]] virtual std::u16string maker() const = 0;

  protected:
    SectionLook() = default;
};

/// Types of settings values, numbered as the Windows registry numbers them. A stored value may have any
/// other number.
enum class SettingsType : std::uint32_t {
    None = 0,
    String = 1,
    ExpandString = 2,
    Binary = 3,
    Dword = 4,
    MultiString = 7,
};

struct SettingsInfo {
    SettingsType type;
    std::size_t size; // bytes
};

/// An open key of the user's settings.
class SettingsKey {
  public:
    virtual ~SettingsKey() = default;
    SettingsKey(const SettingsKey&) = delete;
    SettingsKey& operator=(const SettingsKey&) = delete;

    /// Type and size of a value. Empty when there is none.
    [[nodiscard]] virtual std::optional<SettingsInfo> describe(const std::u16string& name) const = 0;
    /// Copies a value's bytes to the front of `buffer`, the rest of which stays. Empty, with `buffer`
    /// undefined, when there is no such value or it is larger than `buffer`.
    [[nodiscard]] virtual std::optional<SettingsInfo> read(const std::u16string& name,
                                                           std::span<std::byte> buffer) const = 0;
    /// The names of all values, in no order; the case of their letters may not be the stored one. Empty also
    /// where that can't be told.
    [[nodiscard]] virtual std::vector<std::u16string> names() const { return {}; }
    /// Sets a value; a failure is ignored. A string is stored with its terminator.
    virtual void writeString(const std::u16string& name, const std::u16string& text) = 0;
    virtual void writeDword(const std::u16string& name, std::uint32_t value) = 0;

  protected:
    SettingsKey() = default;
};

/// A file open for reading from its start. Other processes may go on writing it.
class FileReader {
  public:
    virtual ~FileReader() = default;
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    /// Fills the front of `buffer`; the number of bytes read, 0 at the end and after a failure.
    [[nodiscard]] virtual std::size_t read(std::span<char> buffer) noexcept = 0;

  protected:
    FileReader() = default;
};

struct XmlAttribute {
    std::u16string name;  // local name
    std::u16string value; // may be empty
};

struct XmlElement {
    std::u16string name;                  // local name
    std::vector<XmlAttribute> attributes; // in document order, without those from a schema default
};

/// Documents above this size count as absent: somebody waits for the program to start. One that grows beyond it while
/// it is read is malformed there.
inline constexpr std::int64_t kLargestDocument = std::int64_t{16} << 20; // bytes

/// A forward reader of an XML document's elements. Document types are refused; a document of more than
/// 256 levels is malformed.
class XmlReader {
  public:
    virtual ~XmlReader() = default;
    XmlReader(const XmlReader&) = delete;
    XmlReader& operator=(const XmlReader&) = delete;

    /// Moves to the next start tag (or empty-element tag), in document order. False at the end of the
    /// document and from the first place on where it is malformed.
    [[nodiscard]] virtual bool next(XmlElement& element) = 0;
    /// The line, counted from 1, of the element that `next` gave last, or of the place where it ended. 0 when
    /// it can't be told.
    [[nodiscard]] virtual std::size_t line() const noexcept = 0;
    /// True once `next` has ended at a place where the document is malformed.
    [[nodiscard]] virtual bool malformed() const noexcept = 0;

  protected:
    XmlReader() = default;
};

/// What reaches a host application's main window.
struct HostMessage {
    std::uint32_t message = 0;
    std::uint64_t wParam = 0;
    std::int64_t lParam = 0;
    friend bool operator==(const HostMessage&, const HostMessage&) = default;
};

class Platform {
  public:
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    // --- clock and time zone

    /// The precise wall clock: 100 ns units since 1601-01-01 UTC.
    [[nodiscard]] virtual std::int64_t now() const noexcept = 0;
    /// The user's time zone now. Empty when it can't be told.
    [[nodiscard]] virtual std::optional<TimeZone> timeZone() const noexcept = 0;
    virtual void sleepMilliseconds(unsigned milliseconds) const noexcept = 0;

    // --- section

    /// Makes the section or opens the one that is there, and maps it whole for reading and writing. Null
    /// when it can neither be made nor opened; an object without a view when it can't be mapped.
    [[nodiscard]] virtual std::unique_ptr<SharedSection> openOrCreateSection(const std::u16string& name,
                                                                             std::size_t bytes) const = 0;
    /// Opens and maps the section only if it is there. Null when it is not, or can't be mapped.
    [[nodiscard]] virtual std::unique_ptr<SharedSection> openSection(const std::u16string& name,
                                                                     std::size_t bytes) const = 0;

    /// Maps the section for reading if it is there, owned by a process and exactly of this size (on Windows: in
    /// pages). Never makes one, waits for nobody. Null otherwise.
    [[nodiscard]] virtual std::unique_ptr<SectionLook> lookAtSection(const std::u16string& name,
                                                                     std::size_t bytes) const = 0;

    // --- settings of the current user; `path` has backslashes on every platform

    /// Opens a key for reading and writing, never making one. Null when that fails.
    [[nodiscard]] virtual std::unique_ptr<SettingsKey> openSettings(const std::u16string& path) const = 0;
    /// Opens a key for reading and writing, making it and its parents where missing. Null on failure.
    [[nodiscard]] virtual std::unique_ptr<SettingsKey> createSettings(const std::u16string& path) const = 0;

    // --- files and folders; a path ends at its first NUL

    /// The separator that joins names into a path.
    [[nodiscard]] virtual char16_t separator() const noexcept = 0;
    /// True when file names that differ in case only name different files.
    [[nodiscard]] virtual bool caseSensitivePaths() const noexcept = 0;
    /// The folder for data of programs (per machine on Windows, per user on Linux). Empty on failure.
    [[nodiscard]] virtual std::u16string programDataFolder() const = 0;
    /// Path of this process's main executable: on Windows at most 259 characters, which its functions cut it to, on
    /// Linux whole. Empty on failure.
    [[nodiscard]] virtual std::u16string hostExecutable() const = 0;
    /// True when any file-system object has this name.
    [[nodiscard]] virtual bool exists(const std::u16string& path) const = 0;
    [[nodiscard]] virtual bool isDirectory(const std::u16string& path) const = 0;
    /// Makes one folder, not its parents; a failure is ignored.
    virtual void makeDirectory(const std::u16string& path) const = 0;
    /// Opens a file for reading. Null when that fails or it is not a regular file.
    [[nodiscard]] virtual std::unique_ptr<FileReader> openFile(const std::u16string& path) const = 0;
    /// Opens a document for reading, denying other writers where the system can. Null when the path names
    /// no regular file, it is larger than kLargestDocument, or opening fails.
    [[nodiscard]] virtual std::unique_ptr<XmlReader> openXml(const std::u16string& path) const = 0;
    /// Appends a line to a text file that others may read and write at the same time, making the file
    /// where missing: the text and the platform's line end in one write. False when it can't be opened.
    virtual bool appendLine(const std::u16string& path, std::string_view line) const = 0;

    // --- notices

    /// Shows an error to the user. On Windows a modal message box that returns when the user closes it.
    virtual void showError(const std::u16string& message) const = 0;
    /// Asks the calling thread's message loop to end, with exit code 0.
    virtual void postQuit() const noexcept = 0;
    /// Posts a message to the window that the handle names, without waiting for it to be handled.
    /// Non-zero on success.
    [[nodiscard]] virtual int postToHost(std::uint64_t window, const HostMessage& message) const noexcept = 0;

    // --- text

    /// Text in the thread's narrow character set (its ANSI code page on Windows, UTF-8 on Linux), at most
    /// `maxBytes` long. What has no narrow form becomes '?'; a UTF-8 character is never cut in two.
    [[nodiscard]] virtual std::string narrow(std::u16string_view text, std::size_t maxBytes) const = 0;
    /// The reverse. What is no text in the narrow character set becomes U+FFFD on Linux and what the
    /// system makes of it on Windows.
    [[nodiscard]] virtual std::u16string widen(std::string_view text) const = 0;

  protected:
    constexpr Platform() = default;
    ~Platform() = default; // never owned through this class
};

/// The operating system's own implementation. Usable during static initialisation, and never destroyed.
[[nodiscard]] Platform& hostPlatform() noexcept;

} // namespace tallowmere::platform
