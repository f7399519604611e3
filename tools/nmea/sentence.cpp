#include "tools/nmea/sentence.hpp"

#include <algorithm>

namespace tallowmere::nmea {
namespace {

bool isUpper(char character) noexcept {
    return character >= 'A' && character <= 'Z';
}
bool isUpperOrDigit(char character) noexcept {
    return isUpper(character) || (character >= '0' && character <= '9');
}

bool isStandardAddress(std::string_view address) noexcept {
    return address.size() == 5 && address.front() != 'P' && isUpperOrDigit(address[0]) && isUpperOrDigit(address[1]) &&
           std::all_of(address.begin() + 2, address.end(), isUpper);
}

std::string_view withoutBlanks(std::string_view text) noexcept {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

Sentence::Sentence(char start, std::string_view body) noexcept : start_(start) {
    std::size_t comma = body.find(',');
    address_ = body.substr(0, comma);
    type_ = address_;
    if (isStandardAddress(address_)) {
        talker_ = address_.substr(0, 2);
        type_ = address_.substr(2);
    }
    while (comma != std::string_view::npos && count_ < kMostFields) {
        body.remove_prefix(comma + 1);
        comma = body.find(',');
        fields_[count_++] = withoutBlanks(body.substr(0, comma));
    }
}

std::string_view Sentence::field(std::size_t index) const noexcept {
    return index < std::min(count_, kMostFields) ? fields_[index] : std::string_view();
}

} // namespace tallowmere::nmea
