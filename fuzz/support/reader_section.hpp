// A section as its creator has it, for the targets of files that are read into it.
#pragma once

#include "core/channels/area_defaults.hpp"
#include "core/channels/context.hpp"
#include "fuzz/support/fuzz_platform.hpp"
#include "fuzz/support/target.hpp"
#include "fuzz/support/watched_section.hpp"
#include "settings/data_folders.hpp"

#include <algorithm>

namespace tallowmere::fuzz {

struct ReaderSection {
    /// open   where the reader may write, roughly; everywhere without it
    explicit ReaderSection(std::initializer_list<WatchedSection::Stretch> open = {{0, kSharedAreaBytes}}) {
        platform.section = watched.bytes();
        platform.filesExist = true;
        initialiseArea(*watched.area());
        (void)GetDataFolder(context(), {}); // remembers the folder in the section
        watched.keep();
        watched.closeAllBut(open);
    }
    [[nodiscard]] Context context() noexcept { return Context{platform, watched.area()}; }
    /// After a run: nothing else may have changed.
    void finish(const char* what) noexcept {
        watched.check(what);
        watched.rewind();
    }

    FuzzPlatform platform;
    WatchedSection watched;
};

} // namespace tallowmere::fuzz
