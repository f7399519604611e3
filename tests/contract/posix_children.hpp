// Child processes of a test, forked without exec, that are stopped and killed at will.
#pragma once

#include <filesystem>
#include <functional>
#include <sys/types.h>

namespace tallowmere::test {

/// A forked child that runs a function and ends with its result. Killed at the latest with this object.
class Child {
  public:
    /// The child's end of the line to its parent.
    class Line {
      public:
        Line(int in, int out) : in_(in), out_(out) {}
        void say(char word) const; // never waits for the parent
        void await() const;        // for the parent's go(); ends the process when the parent is gone

      private:
        int in_;
        int out_;
    };
    explicit Child(const std::function<int(const Line&)>& body);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    [[nodiscard]] pid_t id() const { return id_; }
    /// The next word that the child says; 0 when it ended without.
    [[nodiscard]] char hear();
    void go();
    void stop(); // returns once it has stopped
    void carryOn();
    void kill(); // returns once it is gone
    /// Waits for its end; its result, or -1 when a signal ended it.
    int finish();

  private:
    pid_t id_ = -1;
    int in_ = -1;
    int out_ = -1;
};

/// What became of a child that runs a function and is stopped before and after each of its system calls.
enum class Stepped {
    Stopped,     // it stood after that many stops
    Ended,       // its function had ended before
    Failed,      // it carried on from there, and its function's result was not 0
    Unavailable, // this process may not trace its children
};
/// Stops a child after so many such stops, runs `whileStopped` if it stands there, and kills it. Never `Failed`.
[[nodiscard]] Stepped killAfterSystemCalls(int calls, const std::function<void()>& body,
                                           const std::function<void()>& whileStopped);
/// The same, but the child then carries on to its end.
[[nodiscard]] Stepped carryOnAfterSystemCalls(int calls, const std::function<int()>& body,
                                              const std::function<void()>& whileStopped);

/// Runs a function as another user, in a child; its result.
[[nodiscard]] int runAs(uid_t user, const std::function<int()>& body);

/// How many files this process has open.
[[nodiscard]] int openFileCount();

/// How many mappings this process has of files below a folder, removed ones too.
[[nodiscard]] int mappingsBelow(const std::filesystem::path& folder);

} // namespace tallowmere::test
