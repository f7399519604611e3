// How the steps of the start-up stand alone.
#pragma once

namespace tallowmere {

/// Runs one step of the start-up. Out of memory, a step is left unfinished and the next one goes on: what
/// it would have set keeps its default.
template <class Step> void attempt(Step step) noexcept {
    try {
        step();
    } catch (...) { // NOLINT(bugprone-empty-catch): see above
    }
}

} // namespace tallowmere
