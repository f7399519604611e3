#include "tests/support/memory_platform.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>
#include <random>

namespace tallowmere::test {

using namespace platform;

namespace {

constexpr std::array<const char*, 23> kStepNames{
    "TimeZone",      "CreateSection", "MapSection",        "OpenSettings",   "CreateSettings", "DescribeValue",
    "ReadValue",     "WriteValue",    "ProgramDataFolder", "HostExecutable", "Exists",         "IsDirectory",
    "MakeDirectory", "OpenFile",      "ReadFile",          "OpenXml",        "NextElement",    "AppendLine",
    "ShowError",     "PostQuit",      "PostToHost",        "Narrow",         "Widen"};

/// Page-aligned zeros, as a mapping is.
struct Memory {
    explicit Memory(std::size_t size)
        : bytes(size), start(new (std::align_val_t{4096}) std::byte[size](),
                             [](std::byte* first) { ::operator delete[](first, std::align_val_t{4096}); }) {}
    std::size_t bytes;
    std::shared_ptr<std::byte> start; // shared with those who look without owning
};

char16_t lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

std::u16string lowered(std::u16string text) {
    std::transform(text.begin(), text.end(), text.begin(), lower);
    return text;
}

template <class Map> auto findName(Map& map, const std::u16string& name, bool caseSensitive) {
    if (caseSensitive) return map.find(name);
    return std::find_if(map.begin(), map.end(),
                        [&](const auto& entry) { return lowered(entry.first) == lowered(name); });
}

/// A path ends at its first NUL.
template <class Machine> auto findFile(Machine& machine, const std::u16string& path) {
    return findName(machine.files, path.substr(0, path.find(u'\0')), machine.caseSensitive);
}

bool isHighSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

std::string utf8Of(char32_t c) {
    const auto byte = [](char32_t bits) { return static_cast<char>(bits); };
    if (c < 0x80) return {byte(c)};
    if (c < 0x800) return {byte(0xC0 | c >> 6), byte(0x80 | (c & 0x3F))};
    if (c < 0x10000) return {byte(0xE0 | c >> 12), byte(0x80 | (c >> 6 & 0x3F)), byte(0x80 | (c & 0x3F))};
    return {byte(0xF0 | c >> 18), byte(0x80 | (c >> 12 & 0x3F)), byte(0x80 | (c >> 6 & 0x3F)), byte(0x80 | (c & 0x3F))};
}

/// Notes what happened. What finds no memory goes unnoted: some steps must not throw.
template <class T, class... Of> void note(std::vector<T>& notes, Of&&... of) noexcept {
    try {
        notes.emplace_back(std::forward<Of>(of)...);
    } catch (const std::bad_alloc&) { // NOLINT(bugprone-empty-catch): see above
    }
}

/// Tells this process's files from those of a test that runs beside it.
const unsigned ownNumber = std::random_device{}();

/// A file of this object's own, gone with it.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& bytes) : TemporaryFile() {
        std::ofstream(path_, std::ios::binary) << bytes; // may throw: by now the destructor will run
    }
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    TemporaryFile() {
        static int number = 0;
        path_ = std::filesystem::temp_directory_path() /
                ("tallowmere-" + std::to_string(ownNumber) + "-" + std::to_string(++number) + ".xml");
    }
    std::filesystem::path path_;
};

class MemorySection final : public SharedSection {
  public:
    MemorySection(std::shared_ptr<Memory> memory, bool existed, bool mapped)
        : memory_(std::move(memory)), existed_(existed), mapped_(mapped) {}
    [[nodiscard]] std::byte* view() const noexcept override { return mapped_ ? memory_->start.get() : nullptr; }
    [[nodiscard]] bool existed() const noexcept override { return existed_; }
    [[nodiscard]] std::u16string maker() const override { return u"skipper"; }

  private:
    std::shared_ptr<Memory> memory_;
    bool existed_;
    bool mapped_;
};

class MemorySectionLook final : public SectionLook {
  public:
    explicit MemorySectionLook(const std::shared_ptr<Memory>& memory) : memory_(memory), start_(memory->start) {}
    [[nodiscard]] const std::byte* view() const noexcept override { return start_.get(); }
    [[nodiscard]] bool isOwned() const noexcept override { return !memory_.expired(); }
    [[nodiscard]] std::u16string maker() const override { return u"skipper"; }

  private:
    std::weak_ptr<Memory> memory_;
    std::shared_ptr<std::byte> start_;
};

} // namespace

struct MemoryMachine::State {
    struct Plan {
        int countdown = 0;
        bool always = false;
    };
    std::array<Plan, kStepNames.size()> plans;
    int anyCountdown = 0;
    int requests = 0;
    std::map<std::u16string, std::weak_ptr<Memory>> sections;
    std::map<std::uint64_t, std::vector<HostMessage>> windows;
    std::uint64_t nextWindow = 0x10001;

    [[nodiscard]] Plan& planOf(Step step) noexcept { return plans[static_cast<std::size_t>(step)]; }

    bool fails(MemoryMachine& machine, Step step) noexcept {
        note(machine.trace, kStepNames[static_cast<std::size_t>(step)]);
        ++requests;
        bool fail = anyCountdown > 0 && --anyCountdown == 0;
        Plan& plan = planOf(step);
        fail = fail || plan.always || (plan.countdown > 0 && --plan.countdown == 0);
        return fail;
    }

    class Key;
    class Reader;
    class Xml;
    class Window;
};

class MemoryMachine::State::Key final : public SettingsKey {
  public:
    Key(MemoryMachine& machine, std::u16string path) : machine_(machine), path_(std::move(path)) {}

    [[nodiscard]] std::optional<SettingsInfo> describe(const std::u16string& name) const override {
        if (machine_.state_->fails(machine_, Step::DescribeValue)) return std::nullopt;
        const MemoryValue* value = find(name);
        if (value == nullptr) return std::nullopt;
        return SettingsInfo{value->type, value->bytes.size()};
    }
    [[nodiscard]] std::optional<SettingsInfo> read(const std::u16string& name,
                                                   std::span<std::byte> buffer) const override {
        if (machine_.state_->fails(machine_, Step::ReadValue)) return std::nullopt;
        const MemoryValue* value = find(name);
        if (value == nullptr || value->bytes.size() > buffer.size()) return std::nullopt;
        if (!value->bytes.empty()) std::memcpy(buffer.data(), value->bytes.data(), value->bytes.size());
        return SettingsInfo{value->type, value->bytes.size()};
    }
    [[nodiscard]] std::vector<std::u16string> names() const override {
        std::vector<std::u16string> names;
        const auto key = findName(machine_.settings, path_, false);
        if (key != machine_.settings.end())
            for (const auto& [name, value] : key->second) names.push_back(name);
        return names;
    }
    void writeString(const std::u16string& name, const std::u16string& text) override {
        if (machine_.state_->fails(machine_, Step::WriteValue)) return;
        machine_.addString(path_, name, text);
    }
    void writeDword(const std::u16string& name, std::uint32_t value) override {
        if (machine_.state_->fails(machine_, Step::WriteValue)) return;
        machine_.addDword(path_, name, value);
    }

  private:
    [[nodiscard]] const MemoryValue* find(const std::u16string& name) const {
        const auto key = findName(machine_.settings, path_, false);
        if (key == machine_.settings.end()) return nullptr;
        const auto value = findName(key->second, name, false);
        return value == key->second.end() ? nullptr : &value->second;
    }
    MemoryMachine& machine_;
    std::u16string path_;
};

class MemoryMachine::State::Reader final : public FileReader {
  public:
    Reader(MemoryMachine& machine, std::string bytes) : machine_(machine), bytes_(std::move(bytes)) {}
    [[nodiscard]] std::size_t read(std::span<char> buffer) noexcept override {
        if (machine_.state_->fails(machine_, Step::ReadFile)) return 0;
        const std::size_t count = std::min(buffer.size(), bytes_.size() - position_);
        std::copy_n(bytes_.data() + position_, count, buffer.data());
        position_ += count;
        return count;
    }

  private:
    MemoryMachine& machine_;
    std::string bytes_;
    std::size_t position_ = 0;
};

/// Reads the document with the real platform's parser, from a temporary file: so the tests above the seam
/// see what the real reader makes of a document.
class MemoryMachine::State::Xml final : public XmlReader {
  public:
    Xml(MemoryMachine& machine, const std::string& bytes)
        : machine_(machine), file_(bytes), reader_(hostPlatform().openXml(file_.path().u16string())) {}
    [[nodiscard]] bool next(XmlElement& element) override {
        if (machine_.state_->fails(machine_, Step::NextElement)) return false;
        return reader_ != nullptr && reader_->next(element);
    }
    [[nodiscard]] std::size_t line() const noexcept override { return reader_ != nullptr ? reader_->line() : 0; }
    [[nodiscard]] bool malformed() const noexcept override { return reader_ != nullptr && reader_->malformed(); }

  private:
    MemoryMachine& machine_;
    TemporaryFile file_;
    std::unique_ptr<XmlReader> reader_; // closed before the file goes
};

class MemoryMachine::State::Window final : public HostWindow {
  public:
    explicit Window(State& state) : state_(state), handle_(state.nextWindow++) { state_.windows[handle_]; }
    ~Window() override { state_.windows.erase(handle_); }
    [[nodiscard]] std::uint64_t handle() const noexcept override { return handle_; }
    [[nodiscard]] std::optional<HostMessage> poll() noexcept override {
        auto& queue = state_.windows[handle_];
        if (queue.empty()) return std::nullopt;
        const HostMessage message = queue.front();
        queue.erase(queue.begin());
        return message;
    }

  private:
    State& state_;
    std::uint64_t handle_;
};

MemoryMachine::MemoryMachine() : state_(std::make_unique<State>()) {
    files[u"C:"] = std::nullopt;
    files[programData] = std::nullopt;
}
MemoryMachine::~MemoryMachine() = default;

void MemoryMachine::addString(const std::u16string& key, const std::u16string& name, std::u16string_view text,
                              int terminators) {
    std::u16string stored(text);
    stored.append(static_cast<std::size_t>(terminators), u'\0');
    addBytes(key, name, SettingsType::String,
             std::string(reinterpret_cast<const char*>(stored.data()), stored.size() * sizeof(char16_t)));
}

void MemoryMachine::addDword(const std::u16string& key, const std::u16string& name, std::uint32_t value) {
    addBytes(key, name, SettingsType::Dword, std::string(reinterpret_cast<const char*>(&value), sizeof value));
}

void MemoryMachine::addDouble(const std::u16string& key, const std::u16string& name, double value) {
    addBytes(key, name, SettingsType::Binary, std::string(reinterpret_cast<const char*>(&value), sizeof value));
}

void MemoryMachine::addBytes(const std::u16string& key, const std::u16string& name, SettingsType type,
                             std::string bytes) {
    settings[key][name] = MemoryValue{type, std::move(bytes)};
}

void MemoryMachine::addFile(const std::u16string& path, std::string bytes) {
    for (std::size_t at = path.find(separator); at != std::u16string::npos; at = path.find(separator, at + 1))
        files.try_emplace(path.substr(0, at), std::nullopt);
    files[path] = std::move(bytes);
}

void MemoryMachine::failOnce(Step step, int nth) {
    state_->planOf(step).countdown = nth;
}
void MemoryMachine::failAlways(Step step) {
    state_->planOf(step).always = true;
}
void MemoryMachine::failNever() {
    state_->plans = {};
    state_->anyCountdown = 0;
}
void MemoryMachine::failAnyOnce(int nth) {
    state_->anyCountdown = nth;
    state_->requests = 0;
}
int MemoryMachine::requests() const {
    return state_->requests;
}

std::byte* MemoryMachine::section(const std::u16string& name) const {
    const auto found = state_->sections.find(name);
    const auto memory = found == state_->sections.end() ? nullptr : found->second.lock();
    return memory ? memory->start.get() : nullptr;
}

std::shared_ptr<void> MemoryMachine::holdSection(const std::u16string& name, std::size_t bytes) {
    auto memory = state_->sections[name].lock();
    if (!memory) {
        memory = std::make_shared<Memory>(bytes);
        state_->sections[name] = memory;
    }
    return memory;
}

std::unique_ptr<HostWindow> MemoryMachine::makeWindow() {
    return std::make_unique<State::Window>(*state_);
}

std::int64_t MemoryPlatform::now() const noexcept {
    machine_.now += machine_.tick;
    return machine_.now;
}

std::optional<TimeZone> MemoryPlatform::timeZone() const noexcept {
    if (machine_.state_->fails(machine_, Step::TimeZone)) return std::nullopt;
    return machine_.zone;
}

void MemoryPlatform::sleepMilliseconds(unsigned milliseconds) const noexcept {
    note(machine_.sleeps, milliseconds);
    if (machine_.onSleep) machine_.onSleep(milliseconds);
}

std::unique_ptr<SharedSection> MemoryPlatform::openOrCreateSection(const std::u16string& name,
                                                                   std::size_t bytes) const {
    if (machine_.state_->fails(machine_, Step::CreateSection)) return nullptr;
    std::weak_ptr<Memory>& entry = machine_.state_->sections[name];
    auto memory = entry.lock();
    const bool existed = memory != nullptr;
    if (!existed) {
        memory = std::make_shared<Memory>(bytes);
        entry = memory;
    }
    const bool mapped = !machine_.state_->fails(machine_, Step::MapSection) && memory->bytes >= bytes;
    return std::make_unique<MemorySection>(std::move(memory), existed, mapped);
}

std::unique_ptr<SharedSection> MemoryPlatform::openSection(const std::u16string& name, std::size_t bytes) const {
    if (machine_.state_->fails(machine_, Step::CreateSection)) return nullptr;
    auto memory = machine_.state_->sections[name].lock();
    if (!memory || memory->bytes < bytes || machine_.state_->fails(machine_, Step::MapSection)) return nullptr;
    return std::make_unique<MemorySection>(std::move(memory), true, true);
}

std::unique_ptr<SectionLook> MemoryPlatform::lookAtSection(const std::u16string& name, std::size_t bytes) const {
    if (machine_.state_->fails(machine_, Step::CreateSection)) return nullptr;
    const auto memory = machine_.state_->sections[name].lock();
    if (!memory || memory->bytes != bytes || machine_.state_->fails(machine_, Step::MapSection)) return nullptr;
    return std::make_unique<MemorySectionLook>(memory);
}

std::unique_ptr<SettingsKey> MemoryPlatform::openSettings(const std::u16string& path) const {
    if (machine_.state_->fails(machine_, Step::OpenSettings)) return nullptr;
    const auto key = findName(machine_.settings, path, false);
    if (key == machine_.settings.end()) return nullptr;
    return std::make_unique<MemoryMachine::State::Key>(machine_, key->first);
}

std::unique_ptr<SettingsKey> MemoryPlatform::createSettings(const std::u16string& path) const {
    if (machine_.state_->fails(machine_, Step::CreateSettings)) return nullptr;
    auto key = findName(machine_.settings, path, false);
    if (key == machine_.settings.end()) {
        for (std::size_t at = path.find(u'\\'); at != path.npos; at = path.find(u'\\', at + 1))
            if (findName(machine_.settings, path.substr(0, at), false) == machine_.settings.end())
                machine_.settings.try_emplace(path.substr(0, at));
        key = machine_.settings.try_emplace(path).first;
    }
    return std::make_unique<MemoryMachine::State::Key>(machine_, key->first);
}

std::u16string MemoryPlatform::programDataFolder() const {
    return machine_.state_->fails(machine_, Step::ProgramDataFolder) ? std::u16string() : machine_.programData;
}

std::u16string MemoryPlatform::hostExecutable() const {
    return machine_.state_->fails(machine_, Step::HostExecutable) ? std::u16string() : machine_.hostExecutable;
}

bool MemoryPlatform::exists(const std::u16string& path) const {
    if (machine_.state_->fails(machine_, Step::Exists)) return false;
    return findFile(machine_, path) != machine_.files.end();
}

bool MemoryPlatform::isDirectory(const std::u16string& path) const {
    if (machine_.state_->fails(machine_, Step::IsDirectory)) return false;
    const auto found = findFile(machine_, path);
    return found != machine_.files.end() && !found->second.has_value();
}

void MemoryPlatform::makeDirectory(const std::u16string& path) const {
    if (machine_.state_->fails(machine_, Step::MakeDirectory)) return;
    const std::size_t cut = path.rfind(machine_.separator);
    if (path.empty() || cut == std::u16string::npos) return;
    const auto parent = findName(machine_.files, path.substr(0, cut), machine_.caseSensitive);
    if (parent == machine_.files.end() || parent->second.has_value()) return;
    machine_.files.try_emplace(path, std::nullopt);
}

std::unique_ptr<FileReader> MemoryPlatform::openFile(const std::u16string& path) const {
    if (machine_.state_->fails(machine_, Step::OpenFile)) return nullptr;
    const auto found = findFile(machine_, path);
    if (found == machine_.files.end() || !found->second.has_value()) return nullptr;
    return std::make_unique<MemoryMachine::State::Reader>(machine_, *found->second);
}

std::unique_ptr<XmlReader> MemoryPlatform::openXml(const std::u16string& path) const {
    if (machine_.state_->fails(machine_, Step::OpenXml)) return nullptr;
    const auto found = findFile(machine_, path);
    if (found == machine_.files.end() || !found->second.has_value()) return nullptr;
    if (found->second->size() > static_cast<std::size_t>(kLargestDocument)) return nullptr;
    return std::make_unique<MemoryMachine::State::Xml>(machine_, *found->second);
}

bool MemoryPlatform::appendLine(const std::u16string& path, std::string_view line) const {
    if (machine_.state_->fails(machine_, Step::AppendLine)) return false;
    const std::size_t cut = path.rfind(machine_.separator);
    if (cut != path.npos && cut != 0) { // a name right below the root needs no folder
        const auto folder = findName(machine_.files, path.substr(0, cut), machine_.caseSensitive);
        if (folder == machine_.files.end() || folder->second.has_value()) return false;
    }
    auto& file = machine_.files.try_emplace(path, std::string()).first->second;
    if (!file.has_value()) return false;
    *file += std::string(line) + (machine_.separator == u'\\' ? "\r\n" : "\n");
    return true;
}

void MemoryPlatform::showError(const std::u16string& message) const {
    if (machine_.state_->fails(machine_, Step::ShowError)) return;
    machine_.errorsShown.push_back(message);
}

void MemoryPlatform::postQuit() const noexcept {
    if (machine_.state_->fails(machine_, Step::PostQuit)) return;
    ++machine_.quitsPosted;
}

int MemoryPlatform::postToHost(std::uint64_t window, const HostMessage& message) const noexcept {
    if (machine_.state_->fails(machine_, Step::PostToHost)) return 0;
    note(machine_.posts, window, message);
    const auto open = machine_.state_->windows.find(window);
    if (open != machine_.state_->windows.end())
        note(open->second, message);
    else if (!machine_.anyWindowExists)
        return 0;
    return machine_.postResult;
}

std::string MemoryPlatform::narrow(std::u16string_view text, std::size_t maxBytes) const {
    if (machine_.state_->fails(machine_, Step::Narrow)) return {};
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char32_t c = text[at];
        if (isHighSurrogate(text[at]) && at + 1 < text.size() && isLowSurrogate(text[at + 1]))
            c = 0x10000 + ((c - 0xD800) << 10) + (text[++at] - 0xDC00U);
        else if (isHighSurrogate(text[at]) || isLowSurrogate(text[at]))
            c = U'?';
        const std::string next = utf8Of(c);
        if (bytes.size() + next.size() > maxBytes) break;
        bytes += next;
    }
    return bytes;
}

/// Only well-formed text is widened exactly; any other byte becomes U+FFFD.
std::u16string MemoryPlatform::widen(std::string_view text) const {
    if (machine_.state_->fails(machine_, Step::Widen)) return {};
    std::u16string wide;
    while (!text.empty()) {
        const auto lead = static_cast<unsigned char>(text.front());
        const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
        char32_t c = length == 1 ? lead : length == 0 ? 0 : lead & (0x7FU >> length);
        bool good = length != 0 && length <= text.size();
        for (std::size_t i = 1; good && i < length; ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            good = (byte & 0xC0) == 0x80;
            c = c << 6 | (byte & 0x3FU);
        }
        good = good && utf8Of(c).size() == length && c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
        if (!good) {
            wide += u'\uFFFD';
            text.remove_prefix(1);
            continue;
        }
        if (c >= 0x10000) {
            wide += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            wide += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            wide += static_cast<char16_t>(c);
        }
        text.remove_prefix(length);
    }
    return wide;
}

} // namespace tallowmere::test
