// Keys typed at the terminal, one by one, and the room on its screen. For the command-line program; not part of
// the shared library.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tallowmere::platform {

struct Key {
    enum class Kind : std::uint8_t {
        Character,
        Enter,
        Escape,
        Backspace,
        Up,
        Down,
        PageUp,
        PageDown,
        Home,
        End,
        Closed, // there is no terminal any more, and no further key
    };
    Kind kind = Kind::Character;
    std::string text; // of a character: UTF-8, not checked
};

/// Standard input as single keys that are not echoed. Ctrl-C goes on asking the program to end (stopRequested);
/// stopping the program from the keyboard (Ctrl-Z) is off. Destruction gives the terminal back as it was, and so
/// does, on Linux, a second request to end, which also shows the cursor and leaves the second screen.
class Keyboard {
  public:
    virtual ~Keyboard() = default;
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    /// The next key; empty when none is typed for so long, or a signal has come.
    [[nodiscard]] virtual std::optional<Key> next(unsigned milliseconds) = 0;

  protected:
    Keyboard() = default;
};

/// Null when standard input is no terminal. One at a time.
[[nodiscard]] std::unique_ptr<Keyboard> openKeyboard();

struct ScreenSize {
    int columns = 80;
    int rows = 24;
};

/// Of the terminal at standard output, now; 80 columns and 24 rows when they can't be told.
[[nodiscard]] ScreenSize screenSize() noexcept;

} // namespace tallowmere::platform
