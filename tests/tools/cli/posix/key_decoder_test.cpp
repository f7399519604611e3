#include "platform/posix/key_decoder.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace tallowmere::test {
namespace {

using platform::Key;
using platform::posix::KeyDecoder;

std::vector<Key::Kind> kindsOf(std::string_view bytes) {
    KeyDecoder decoder;
    decoder.add(bytes);
    std::vector<Key::Kind> kinds;
    while (const auto key = decoder.take(true)) kinds.push_back(key->kind);
    return kinds;
}

using Kinds = std::vector<Key::Kind>;

TEST(KeyDecoder, CharactersComeOneByOne) {
    KeyDecoder decoder;
    decoder.add("a\xE6\xB0\xB4"
                "b");
    EXPECT_EQ(decoder.take(false)->text, "a");
    EXPECT_EQ(decoder.take(false)->text, "\u6C34");
    EXPECT_EQ(decoder.take(false)->text, "b");
    EXPECT_FALSE(decoder.take(false));
}

TEST(KeyDecoder, SequencesAreKeys) {
    using enum Key::Kind;
    EXPECT_EQ(kindsOf("\x1b[A\x1b[B\x1bOA\x1bOB"), (Kinds{Up, Down, Up, Down}));
    EXPECT_EQ(kindsOf("\x1b[5~\x1b[6~"), (Kinds{PageUp, PageDown}));
    EXPECT_EQ(kindsOf("\x1b[H\x1b[F\x1b[1~\x1b[4~\x1b[7~\x1b[8~\x1bOH\x1bOF"),
              (Kinds{Home, End, Home, End, Home, End, Home, End}));
    EXPECT_EQ(kindsOf("\r\n\x7f\b"), (Kinds{Enter, Enter, Backspace, Backspace}));
}

TEST(KeyDecoder, SequenceInPiecesIsOneKey) {
    KeyDecoder decoder;
    for (const char* piece : {"\x1b", "[", "5"}) {
        decoder.add(piece);
        EXPECT_FALSE(decoder.take(false));
        EXPECT_TRUE(decoder.isWaiting());
    }
    decoder.add("~");
    EXPECT_EQ(decoder.take(false)->kind, Key::Kind::PageUp);
    EXPECT_FALSE(decoder.isWaiting());
}

TEST(KeyDecoder, LoneEscapeIsAKeyOnceNothingFollows) {
    KeyDecoder decoder;
    decoder.add("\x1b");
    EXPECT_FALSE(decoder.take(false));
    EXPECT_EQ(decoder.take(true)->kind, Key::Kind::Escape);
    EXPECT_FALSE(decoder.take(true));
}

TEST(KeyDecoder, EscapeBeforeACharacterIsTwoKeys) {
    EXPECT_EQ(kindsOf("\x1bq"), (Kinds{Key::Kind::Escape, Key::Kind::Character}));
}

TEST(KeyDecoder, OtherSequencesAreSkipped) {
    EXPECT_EQ(kindsOf("\x1b[15~\x1b[C\x1b[1;5Aq"), (Kinds{Key::Kind::Up, Key::Kind::Character}));
    EXPECT_EQ(kindsOf("\x01\x02\tq"), (Kinds{Key::Kind::Character}));
    EXPECT_EQ(kindsOf("\x80\xBFq"), (Kinds{Key::Kind::Character}));
    EXPECT_TRUE(kindsOf("\x1b[12").empty());
    EXPECT_TRUE(kindsOf("\xE6\xB0").empty());
    EXPECT_TRUE(kindsOf("\x1b[" + std::string(100, '1')).empty());
}

TEST(KeyDecoder, EveryPairOfBytesComesToAnEnd) {
    for (int first = 0; first < 256; ++first)
        for (int second = 0; second < 256; ++second) {
            const char bytes[] = {static_cast<char>(first), static_cast<char>(second)};
            EXPECT_LE(kindsOf({bytes, 2}).size(), 2U);
        }
}

} // namespace
} // namespace tallowmere::test
