// What set has of a client: it takes part as any program does.
#pragma once

#include "core/ccore.hpp"
#include "tools/commands/command_context.hpp"

namespace tallowmere::tools {

/// A core object of this command. The first program makes and fills the section; that may be this one.
class Client {
  public:
    explicit Client(const CommandContext& context) : context_(context), core_(context.platform, false) {}

    /// True when there is a section; else says on the error stream that there is none.
    [[nodiscard]] bool isConnected() const;
    /// Says on the error stream that nobody else is there, when that is so.
    void warnWhenAlone() const;

    [[nodiscard]] ValueStore& values() noexcept { return core_.values(); }
    [[nodiscard]] SharedArea* area() const noexcept { return core_.area(); }

  private:
    const CommandContext& context_;
    CCore core_;
};

} // namespace tallowmere::tools
