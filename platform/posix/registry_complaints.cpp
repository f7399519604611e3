#include "platform/posix/registry_complaints.hpp"

#include <algorithm>
#include <map>
#include <utility>

namespace tallowmere::platform::posix {
namespace {

constexpr std::string_view kIgnored = "the line is ignored";
constexpr std::string_view kFirstLines[] = {"Windows Registry Editor Version 5.00", "REGEDIT4"};

std::string_view trimmed(std::string_view line) noexcept {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t start = std::min(line.find_first_not_of(blanks), line.size());
    line.remove_prefix(start);
    return line.substr(0, line.find_last_not_of(blanks) + 1);
}

/// One line may be many lines of the file, where a list of bytes goes on.
std::size_t fileLines(std::string_view line) noexcept {
    return std::max<std::size_t>(1, static_cast<std::size_t>(std::ranges::count(line, '\n')));
}

class StrictReader {
  public:
    explicit StrictReader(const std::u16string& file) : file_(file) {}

    void take(std::string_view line) {
        const std::string_view text = trimmed(line);
        if (const auto key = readKeyLine(line))
            enter(*key);
        else if (!isProperRemark(text))
            takeValue(text, line);
        number_ += fileLines(line);
    }
    [[nodiscard]] std::vector<SettingsComplaint> takeComplaints() { return std::move(complaints_); }

  private:
    enum class Place { BeforeKeys, UsersKey, OtherRoot, DeletedKey };

    [[nodiscard]] bool isProperRemark(std::string_view text) const noexcept {
        return text.empty() || text.front() == ';' ||
               (place_ == Place::BeforeKeys && std::ranges::find(kFirstLines, text) != std::end(kFirstLines));
    }
    void enter(const RegistryKeyLine& key) {
        key_ = key.path;
        place_ = !key.currentUser ? Place::OtherRoot : key.deletes ? Place::DeletedKey : Place::UsersKey;
        if (place_ == Place::OtherRoot)
            complain("is a key that does not lie below HKEY_CURRENT_USER", "the key is ignored with all its values");
    }
    void takeValue(std::string_view text, std::string_view line) {
        if (text.front() == '[') return complain("is a key without its closing bracket", kIgnored);
        const auto value = readValueLine(line);
        if (!value) return complain("is neither a key nor a value", kIgnored);
        if (place_ == Place::UsersKey && !value->deletes) takeName(value->name);
        if (place_ == Place::BeforeKeys) complain("is a value before the first key", kIgnored);
        if (place_ == Place::DeletedKey) complain("is a value of a key that is deleted", kIgnored);
    }
    /// Of two lines for one value the later counts.
    void takeName(const std::u16string& name) {
        const auto [earlier, isNew] = lines_.try_emplace({key_, name}, number_);
        if (!isNew) complain("sets the value of line " + std::to_string(earlier->second) + " again", "this one counts");
        earlier->second = number_;
    }
    void complain(std::string_view what, std::string_view effect) {
        complaints_.push_back({file_, number_, std::string(what), std::string(effect)});
    }

    const std::u16string& file_;
    Place place_ = Place::BeforeKeys;
    std::size_t number_ = 1;
    std::u16string key_;                                                     // folded
    std::map<std::pair<std::u16string, std::u16string>, std::size_t> lines_; // of each key's values
    std::vector<SettingsComplaint> complaints_;
};

} // namespace

std::vector<SettingsComplaint> registryComplaints(std::string_view text, const std::u16string& file) {
    StrictReader reader(file);
    RegistryLines lines(text);
    while (const auto line = lines.next()) reader.take(*line);
    return reader.takeComplaints();
}

} // namespace tallowmere::platform::posix
