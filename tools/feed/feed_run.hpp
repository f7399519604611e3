// The loop of a running feed.
#pragma once

#include "tools/feed/feed.hpp"
#include "tools/feed/reporter.hpp"
#include "tools/feed/source.hpp"

#include <atomic>
#include <functional>

namespace tallowmere::feed {

struct RunOptions {
    double speed = 1.0; // of a recording: 1 as recorded, 2 twice as fast, 0 as fast as possible
};

/// Feeds until the source ends, fails, or `stop` becomes true. `everyTurn` is called many times a second.
/// False when the source failed; its error() says why.
bool runFeed(Feed& feed, Source& source, const RunOptions& options, const std::atomic<bool>& stop, Reporter& reporter,
             const std::function<void()>& everyTurn);

} // namespace tallowmere::feed
