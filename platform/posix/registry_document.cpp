#include "platform/posix/registry_document.hpp"

namespace tallowmere::platform::posix {
namespace {

constexpr std::string_view kFirstLine = "Windows Registry Editor Version 5.00";
constexpr std::string_view kLineEnd = "\r\n"; // where the text has none of its own yet

bool isBelow(std::u16string_view path, std::u16string_view parent) noexcept {
    return parent.empty() || (path.size() > parent.size() && path.starts_with(parent) && path[parent.size()] == u'\\');
}

/// Follows the key that a text's lines are in.
class KeyTracker {
  public:
    explicit KeyTracker(std::u16string_view path) : path_(foldPath(path)) {}

    enum class Event { Nothing, Entered, Below, Deleted };

    /// What a key line means for the key; the lines after it are the key's when this enters it.
    Event follow(const RegistryKeyLine& line) {
        const bool same = line.currentUser && line.path == path_;
        inside_ = same && !line.deletes;
        if (inside_) return Event::Entered;
        if (!line.currentUser) return Event::Nothing;
        if (line.deletes) return same || isBelow(path_, line.path) ? Event::Deleted : Event::Nothing;
        return isBelow(line.path, path_) ? Event::Below : Event::Nothing;
    }
    [[nodiscard]] bool inside() const noexcept { return inside_; }

  private:
    std::u16string path_;
    bool inside_ = false;
};

/// Where a value's line goes.
struct Place {
    std::size_t replaceAt = std::string::npos; // the line that counts now
    std::size_t replaceLength = 0;
    std::size_t insertAt = std::string::npos; // behind the key's last line
};

Place findPlace(const std::string& text, std::u16string_view path, std::u16string_view name) {
    const std::u16string folded = foldName(name);
    KeyTracker key(path);
    Place place;
    RegistryLines lines(text);
    while (const std::optional<std::string_view> line = lines.next()) {
        const auto start = static_cast<std::size_t>(line->data() - text.data());
        if (const std::optional<RegistryKeyLine> keyLine = readKeyLine(*line)) {
            const KeyTracker::Event event = key.follow(*keyLine);
            if (event == KeyTracker::Event::Deleted) place = Place{};
            if (event == KeyTracker::Event::Entered) place.insertAt = start + line->size();
        } else if (key.inside()) {
            const std::optional<RegistryValueLine> value = readValueLine(*line);
            if (!value) continue;
            place.insertAt = start + line->size();
            if (value->name != folded) continue;
            place.replaceAt = start;
            place.replaceLength = line->size();
        }
    }
    return place;
}

/// True when the text's last line, which is ended, asks for another one.
bool asksForMore(std::string_view text) noexcept {
    text.remove_suffix(1);
    const std::size_t last = text.find_last_not_of(" \t\r");
    return last != text.npos && text[last] == '\\';
}

std::string_view lineEndOf(std::string_view text) noexcept {
    const std::size_t end = text.find('\n');
    if (end == text.npos) return kLineEnd;
    return end > 0 && text[end - 1] == '\r' ? "\r\n" : "\n";
}

} // namespace

std::optional<RegistryValues> RegistryDocument::values(std::u16string_view path) const {
    std::optional<RegistryValues> values;
    KeyTracker key(path);
    RegistryLines lines(text_);
    while (const std::optional<std::string_view> line = lines.next()) {
        if (const std::optional<RegistryKeyLine> keyLine = readKeyLine(*line)) {
            const KeyTracker::Event event = key.follow(*keyLine);
            if (event == KeyTracker::Event::Deleted) values.reset();
            if (!values && (event == KeyTracker::Event::Entered || event == KeyTracker::Event::Below)) values.emplace();
        } else if (key.inside()) {
            std::optional<RegistryValueLine> value = readValueLine(*line);
            if (value && value->deletes) values->erase(value->name);
            if (value && !value->deletes)
                values->insert_or_assign(std::move(value->name), RegistryValue{value->type, std::move(value->bytes)});
        }
    }
    return values;
}

void RegistryDocument::startLine() {
    if (text_.empty()) text_.append(kFirstLine).append(kLineEnd);
    if (text_.back() != '\n') text_ += lineEndOf(text_);
    // A byte list that was cut off would take the next line for a part of it.
    if (asksForMore(text_)) text_ += lineEndOf(text_);
}

bool RegistryDocument::addKey(std::u16string_view path) {
    const std::string line = writeKeyLine(path);
    if (line.empty()) return false;
    startLine();
    const std::string end(lineEndOf(text_));
    text_ += end + line + end;
    return true;
}

bool RegistryDocument::setValue(std::u16string_view path, std::u16string_view name, const std::string& line) {
    if (line.empty()) return false;
    Place place = findPlace(text_, path, name);
    if (place.insertAt == std::string::npos) {
        if (!addKey(path)) return false;
        place.insertAt = text_.size();
    }
    const bool atEnd = place.insertAt == text_.size() && place.replaceAt == std::string::npos;
    if (atEnd) startLine();
    const std::string whole = line + std::string(lineEndOf(text_));
    if (place.replaceAt != std::string::npos)
        text_.replace(place.replaceAt, place.replaceLength, whole);
    else
        text_.insert(atEnd ? text_.size() : place.insertAt, whole);
    return true;
}

} // namespace tallowmere::platform::posix
