// Owners of what the system gives out, one kind each. Move-only; each kind knows the value that stands for
// nothing and the call that gives it back. Private to this folder.
#pragma once

#include "platform/windows/system.hpp"

#include <objbase.h>

namespace tallowmere::platform {

/// Owns one value of a kind, or nothing. One thread at a time.
template <class Kind> class Unique {
  public:
    using Value = typename Kind::Value;

    Unique() noexcept = default;
    explicit Unique(Value value) noexcept : value_(value) {}
    Unique(Unique&& other) noexcept : value_(other.release()) {}
    Unique& operator=(Unique&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    ~Unique() { reset(); }

    explicit operator bool() const noexcept { return value_ != Kind::nothing(); }
    [[nodiscard]] Value get() const noexcept { return value_; }
    Value operator->() const noexcept { return value_; }

    /// Gives the value up, not back.
    [[nodiscard]] Value release() noexcept {
        const Value value = value_;
        value_ = Kind::nothing();
        return value;
    }

    /// Gives back what is owned, if anything, and owns `value`. The thread's last error stays, so that it
    /// can be asked for after an owner is gone.
    void reset(Value value = Kind::nothing()) noexcept {
        if (value_ != Kind::nothing()) {
            const DWORD error = ::GetLastError();
            Kind::giveBack(value_);
            ::SetLastError(error);
        }
        value_ = value;
    }

    /// Where a call stores the value that it gives out. What was owned before is given back.
    [[nodiscard]] Value* receive() noexcept {
        reset();
        return &value_;
    }

  private:
    Value value_ = Kind::nothing();
};

struct SectionKind {
    using Value = HANDLE;
    static Value nothing() noexcept { return nullptr; }
    static void giveBack(Value handle) noexcept { ::CloseHandle(handle); }
};

struct ViewKind {
    using Value = void*;
    static Value nothing() noexcept { return nullptr; }
    static void giveBack(Value view) noexcept { ::UnmapViewOfFile(view); }
};

struct FileKind {
    using Value = HANDLE;
    static Value nothing() noexcept { return INVALID_HANDLE_VALUE; }
    static void giveBack(Value handle) noexcept { ::CloseHandle(handle); }
};

struct KeyKind {
    using Value = HKEY;
    static Value nothing() noexcept { return nullptr; }
    static void giveBack(Value key) noexcept { ::RegCloseKey(key); }
};

/// Belongs to the thread that made it; given back on that thread.
struct WindowKind {
    using Value = HWND;
    static Value nothing() noexcept { return nullptr; }
    static void giveBack(Value window) noexcept { ::DestroyWindow(window); }
};

template <class Interface> struct ComKind {
    using Value = Interface*;
    static Value nothing() noexcept { return nullptr; }
    static void giveBack(Value object) noexcept { object->Release(); }
};

/// Memory that the shell's functions give out.
template <class T> struct TaskMemoryKind {
    using Value = T*;
    static Value nothing() noexcept { return nullptr; }
    static void giveBack(Value memory) noexcept { ::CoTaskMemFree(memory); }
};

/// Memory that older functions give out.
template <class T> struct LocalMemoryKind {
    using Value = T*;
    static Value nothing() noexcept { return nullptr; }
    static void giveBack(Value memory) noexcept { ::LocalFree(memory); }
};

using UniqueSection = Unique<SectionKind>;
using UniqueView = Unique<ViewKind>;
using UniqueFile = Unique<FileKind>;
using UniqueKey = Unique<KeyKind>;
using UniqueWindow = Unique<WindowKind>;
template <class Interface> using UniqueCom = Unique<ComKind<Interface>>;
template <class T> using UniqueTaskMemory = Unique<TaskMemoryKind<T>>;
template <class T> using UniqueLocalMemory = Unique<LocalMemoryKind<T>>;

} // namespace tallowmere::platform
