#pragma once

// What the disk and the object must look like after a run in which calls on the file service
// failed, worked out step by step from what each routine promises, without the component.

#include "World.h"

#include <sstream>

namespace fakes {

struct DocumentState {
    std::u16string name;
    std::u16string content;
    bool isDirty = true;
    bool added = true;
    std::u16string newName;

    bool operator==(const DocumentState&) const = default;
};

/// All that a run leaves behind.
struct Outcome {
    std::string result;
    Log messages;
    Files files;
    Paths folders;
    std::u16string projectName;
    std::u16string projectPath;
    std::u16string projectFile;
    Date creationDate = 0;
    bool needSave = false;
    std::vector<DocumentState> documents;

    bool operator==(const Outcome&) const = default;
};

/// What a routine does about a step that failed.
enum class Policy {
    Show,  ///< 70 and 71 are shown and the next step runs; any other code ends the routine
    Drop,  ///< the next step runs
    Throw, ///< the caller gets the failure
};

class Model {
public:
    Model(Outcome start, Fault fault)
        : now(std::move(start))
        , m_fault(fault) {}

    /// One step: its calls on the disk, in their order and with blanks between, and what it does
    /// if all succeed.
    bool step(
        const std::string& calls, const std::function<void()>& effect = [] {}) {
        return stepIf(true, calls, effect);
    }
    /// A step that is not `ready` fails with 91 ahead of its calls.
    bool stepIf(
        bool ready, const std::string& calls, const std::function<void()>& effect = [] {}) {
        std::optional<Failure> failure;
        if (!ready) {
            failure.emplace(FailureCode::ObjectNotSet);
        }
        std::istringstream names(calls);
        for (std::string name; names >> name;) {
            if (!failure && fails()) {
                failure.emplace(m_fault.code, u16("no " + name));
            }
        }
        if (!failure) {
            effect();
            return true;
        }
        handle(*failure);
        return false;
    }

    /// Runs `body` under `policy`. False if a step failed, or `body` said so.
    bool routine(Policy policy, const std::function<bool()>& body) {
        const Policy outerPolicy = std::exchange(m_policy, policy);
        const bool outerFailed = std::exchange(m_failed, false);
        bool result = false;
        try {
            result = body() && (!m_failed || policy == Policy::Drop);
        } catch (const Ended&) {
        }
        m_policy = outerPolicy;
        m_failed = outerFailed;
        return result;
    }

    void show(const std::u16string& description) {
        now.messages.push_back("MsgBox 16 [Corvane professional] " + ascii(description));
    }

    /// True if the next call on the disk fails. For calls whose failure is handled on the spot.
    bool fails() { return m_fault.strikes(++m_calls); }
    std::int32_t calls() const { return m_calls; }

    Outcome now;

private:
    struct Ended {};

    void handle(const Failure& failure) {
        m_failed = true;
        if (m_policy == Policy::Throw) {
            throw Failure(failure);
        }
        if (m_policy == Policy::Show) {
            if (failure.number() != 70 && failure.number() != 71) {
                throw Ended();
            }
            show(failure.description());
        }
    }

    Fault m_fault;
    std::int32_t m_calls = 0;
    Policy m_policy = Policy::Throw;
    bool m_failed = false;
};

} // namespace fakes
