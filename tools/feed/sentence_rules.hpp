// Which sentence goes to which channels: one small function a sentence. The table in docs/feed.md says the
// same in words.
#pragma once

#include "tools/feed/own_boat.hpp"
#include "tools/nmea/sentence.hpp"

#include <string_view>

namespace tallowmere::feed {

/// Writes what a sentence says. False, with nothing written, when the sentence itself says that its data is
/// not valid.
using SentenceRule = bool (*)(const nmea::Sentence& sentence, OwnBoat& boat);

/// The rule of a sentence, by the type of a standard one ("RMC") or the whole address of this program's own ("PTLMT");
/// null when the feed has none.
[[nodiscard]] SentenceRule ruleFor(const nmea::Sentence& sentence) noexcept;

/// A status field: 'A' or 'D' is valid; an empty or missing one too, for many devices leave it out.
[[nodiscard]] bool statusIsValid(std::string_view status) noexcept;
/// A positioning mode: everything but 'N' ("not valid"), and empty or missing from devices older than it.
[[nodiscard]] bool modeIsValid(std::string_view mode) noexcept;

// position_sentences.cpp
bool applyRmc(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyGga(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyGll(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyVtg(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyZda(const nmea::Sentence& sentence, OwnBoat& boat);
// heading_sentences.cpp
bool applyHdg(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyHdm(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyHdt(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyRot(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyRsa(const nmea::Sentence& sentence, OwnBoat& boat);
// wind_sentences.cpp
bool applyMwv(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyVwr(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyVwt(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyMwd(const nmea::Sentence& sentence, OwnBoat& boat);
// water_sentences.cpp
bool applyVhw(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyVlw(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyDbt(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyDpt(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyMtw(const nmea::Sentence& sentence, OwnBoat& boat);
// weather_sentences.cpp
bool applyMda(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyXdr(const nmea::Sentence& sentence, OwnBoat& boat);
// start_sentences.cpp
bool applyStartLine(const nmea::Sentence& sentence, OwnBoat& boat);
bool applyStartTimes(const nmea::Sentence& sentence, OwnBoat& boat);

} // namespace tallowmere::feed
