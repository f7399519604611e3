// What the documents say that calls do to a section and answer, over bytes of its own. Calls no code of the
// library; meant to be plain, not fast.
#pragma once

#include "fuzz/support/places.hpp"
#include "fuzz/support/watched_section.hpp"

#include <cstdint>
#include <string>

namespace tallowmere::fuzz {

/// A value record: its first eight bytes, the lowest being the kind, and its payload.
struct ModelRecord {
    std::uint64_t header = 0;
    std::uint64_t payload = 0;
};

struct ModelReading {
    bool holds = false;
    bool touchesValue = false; // the caller's value is written
    double value = 0.0;
    std::uint16_t source = 0;
};

class SectionModel {
  public:
    explicit SectionModel(WatchedSection& watched) noexcept : watched_(watched) {}

    std::int64_t now = 0; // what the clock says to the next call
    int postResult = 1;

    // --- the exported functions
    std::uint8_t setVar(std::uint16_t channel, double value, std::uint16_t boat);
    std::uint8_t setVar2(std::uint16_t channel, const ModelRecord& record, std::uint16_t boat);
    ModelReading getVar(std::uint16_t channel, std::uint16_t boat) const;
    bool getVar2(std::uint16_t channel, std::uint16_t boat, ModelRecord& record, std::uint16_t& source) const;
    void setUserName(std::uint16_t index, std::string_view name);
    /// Null bytes behind the name; empty when nothing is written.
    std::string name(std::uint16_t channel) const;
    bool sysVar(std::uint16_t index, double& value) const;
    bool sysBool(std::uint16_t index, std::uint8_t& flag) const;
    int manOverboard(double latitude, double longitude);

    // --- of hosts
    bool setVariable(std::size_t index, double value);
    void setFlag(std::size_t index, std::uint8_t value);
    void setInteger(std::size_t index, std::int32_t value);
    std::uint16_t resolve(std::uint16_t channel, bool mayRecurse) const;

    // --- a new section
    void create();
    void stampTime();

    template <class T> [[nodiscard]] T get(std::size_t offset) const {
        T value;
        std::memcpy(&value, watched_.expected() + offset, sizeof value);
        return value;
    }
    template <class T> void set(std::size_t offset, T value) { watched_.expect(offset, &value, sizeof value); }
    /// At most `room` - 1 characters and a terminator; the rest of the field stays.
    void setText(std::size_t offset, std::size_t room, std::u16string_view text);
    [[nodiscard]] std::u16string text(std::size_t offset, std::size_t room) const;

  private:
    [[nodiscard]] std::int16_t storedClass(std::size_t channel) const;
    [[nodiscard]] std::int16_t unitClass(std::size_t channel) const;
    [[nodiscard]] int storageKind(std::size_t channel) const;
    [[nodiscard]] static ModelRecord none(int kind);
    [[nodiscard]] static bool holds(int kind, const ModelRecord& record);
    [[nodiscard]] ModelRecord fromDouble(std::size_t channel, double value) const;
    [[nodiscard]] bool toDouble(std::size_t channel, const ModelRecord& record, double& value) const;
    [[nodiscard]] bool fetch(std::size_t channel, std::size_t boat, ModelRecord& record) const;
    [[nodiscard]] bool ownNumber(std::size_t channel, double& value) const;

    bool admits(std::uint16_t channel, std::uint16_t boat, std::uint8_t& answer) const;
    bool store(std::size_t channel, ModelRecord record, std::size_t boat);
    double numberRules(std::size_t channel, double value, std::size_t boat);
    double derivedFrom(std::size_t channel, double value, std::size_t boat);
    void toe(std::size_t boat, double port, double starboard);
    void rate(std::size_t source, std::size_t target, std::size_t flag, double value, std::size_t boat);
    bool put(std::size_t channel, const ModelRecord& record, std::size_t boat);
    void putWithFreeHeader(std::size_t channel, std::uint64_t payload, std::size_t boat);
    [[nodiscard]] std::uint16_t chooseCell(std::size_t row) const;

    WatchedSection& watched_;
};

} // namespace tallowmere::fuzz
