// What the torture program asks of the operating system: other processes of itself, the shared library at run
// time, how long a call really took, what a process holds.
#pragma once

#include <tallowmere/tallowmere.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere::torture {

/// What a process holds of the machine.
struct Usage {
    std::uint64_t privateBytes = 0;  // memory of its own
    std::uint64_t residentBytes = 0; // memory in use, shared pages included
    std::uint64_t handles = 0;       // open descriptors or handles
};

/// Another process of this program, with a line of words to and from it. Killed at the latest with this object,
/// and by itself once nobody is at the other end any more.
class Process {
  public:
    explicit Process(const std::vector<std::string>& arguments);
    ~Process();
    Process(Process&& other) noexcept;
    Process& operator=(Process&&) = delete;
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void say(const std::string& line);
    /// The next line that it says. Throws when it says none for a minute or has ended: it hangs or has crashed.
    std::string hear();
    /// What it has said so far, lines or not; waits for nothing.
    std::string overheard();
    /// Ends it at once. False when it had ended before.
    bool kill();
    /// Ends its input and waits for its end, a minute at most: its exit code.
    int finish();
    [[nodiscard]] Usage usage() const;

  private:
    struct State;
    State* state_;
};

/// A shared library while it is loaded.
class Module {
  public:
    /// Loads it; throws where that fails.
    explicit Module(const char* path);
    ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// Its function of that name; throws where there is none.
    template <class Function> [[nodiscard]] Function function(const char* name) const {
        return reinterpret_cast<Function>(find(name));
    }

  private:
    using AnyFunction = void (*)();
    [[nodiscard]] AnyFunction find(const char* name) const;

    void* handle_;
};

/// Tallowmere's own while it is loaded, by its eleven names.
class Library {
    Module module_{TALLOWMERE_LIBRARY};

  public:
    decltype(&GetZanVar) getZanVar = module_.function<decltype(&GetZanVar)>("GetZanVar");
    decltype(&GetZanVar2) getZanVar2 = module_.function<decltype(&GetZanVar2)>("GetZanVar2");
    decltype(&SetZanVar) setZanVar = module_.function<decltype(&SetZanVar)>("SetZanVar");
    decltype(&SetZanVar2) setZanVar2 = module_.function<decltype(&SetZanVar2)>("SetZanVar2");
    decltype(&GetSysVar) getSysVar = module_.function<decltype(&GetSysVar)>("GetSysVar");
};

/// A moment as this thread sees it. What the thread did not compute between two of them it waited for, or the
/// machine gave the processor to somebody else.
struct Moment {
    std::int64_t wall = 0;      // ns
    std::int64_t computing = 0; // ns of processor time
    std::int64_t waits = 0;     // times that the thread gave up the processor
    std::int64_t preempted = 0; // times that it was taken away

    [[nodiscard]] static Moment now();
    /// False where only `wall` is precise.
    [[nodiscard]] static bool tellsComputing();
    friend Moment operator-(const Moment& a, const Moment& b) {
        return {a.wall - b.wall, a.computing - b.computing, a.waits - b.waits, a.preempted - b.preempted};
    }
};

/// What a user has set.
enum class UserFiles {
    kNone,
    kUsual, // settings and files of a usual size (user_files.hpp)
};

/// Settings, files and a section of this process's own and of those that it starts, as far as the system has
/// such; gone with this object.
class Surroundings {
  public:
    explicit Surroundings(UserFiles files = UserFiles::kNone);
    ~Surroundings();
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// From now on this thread goes before others, where this user may ask for that. False otherwise.
bool comeFirst();
void sleepMicroseconds(std::int64_t microseconds);
/// Reads a line of this process's input. Empty when there is no more.
std::optional<std::string> readLine();
/// True when a line of input waits, or its end.
bool inputWaits();
/// Tells whoever started this process that it runs; before any other word.
void greet();
/// Says words to whoever started this process.
void say(const std::string& words);

} // namespace tallowmere::torture
