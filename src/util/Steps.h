#pragma once

#include "util/Attempt.h"

#include <utility>

namespace tessaly {

/// The steps of a routine that lets no failure out and tells the user of those that the user can
/// fix: a file or folder that is closed to writing, a disk that is not there.
class Steps {
public:
    /// Runs `action`. False if it failed with PermissionDenied or DiskNotReady; the user has then
    /// been shown the failure's own description, and the routine goes on. Any other failure ends
    /// the routine silently: control goes back to `runSteps`.
    template <class Action>
    bool operator()(Action&& action) {
        const std::optional<Failure> failure = attempt(std::forward<Action>(action));
        if (failure) {
            m_failed = true;
            showOrEnd(*failure);
        }
        return !failure;
    }

    /// True once a step has failed.
    bool failed() const { return m_failed; }

private:
    static void showOrEnd(const Failure& failure);

    bool m_failed = false;
};

/// Shows `failure` in a message box with the critical icon: its description, nothing else.
void showFailure(const Failure& failure);

/// Runs `routine`, which gets the Steps to run its steps with and gives True or False. True if it
/// gave True and no step failed on the way, shown or not.
template <class Routine>
bool runSteps(Routine&& routine) {
    Steps step;
    bool result = false;
    const std::optional<Failure> ended = attempt([&] { result = routine(step); });
    return result && !ended && !step.failed();
}

} // namespace tessaly
