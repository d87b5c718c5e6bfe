#pragma once

// The world of a test: what every call to the outside is written into, so that a test compares
// orders as lists. Text in the log is ASCII.

#include "support/Test.h"
#include "tessaly.h"
#include "util/Attempt.h"
#include "util/LetterCase.h"

namespace fakes {

using namespace tessaly;
using support::ascii;
using support::u16;
using Text = std::u16string;
using Log = std::vector<std::string>;

class FakeForm;

/// Paths are one whatever the case of their letters.
struct PathLess {
    bool operator()(const std::u16string& a, const std::u16string& b) const {
        return toLower(a) < toLower(b);
    }
};
using Files = std::map<std::u16string, std::u16string, PathLess>;
using Paths = std::set<std::u16string, PathLess>;

/// The call on the file service that fails, counted from 1 in `World::diskCalls`; none for 0.
struct Fault {
    std::int32_t call = 0;
    FailureCode code{};
    bool onwards = false; // every call from there on fails

    bool strikes(std::int32_t number) const {
        return call > 0 && (number == call || (onwards && number > call));
    }
};

struct World {
    Log log;
    Files files;
    Paths folders;
    Paths readOnly;
    std::map<std::string, FailureCode> fails; // by the name of the call
    Fault fault;
    bool makesNothing = false; // the platform hands out no objects
    std::int32_t diskCalls = 0;
    std::function<void()> onDoEvents;
    std::function<void(FakeForm&)> onShow; // the user at the dialog
    std::vector<MsgBoxAnswer> answers;     // to the questions to come, last one first; then No
    std::vector<std::u16string> typed;     // into the boxes to come, last one first; then nothing

    Log take() { return std::exchange(log, {}); }
    /// The lines that begin with one of `starts`; the log is emptied.
    Log takeOnly(std::initializer_list<const char*> starts) {
        Log taken = take();
        std::erase_if(taken, [&](const std::string& line) {
            return std::none_of(starts.begin(), starts.end(),
                                [&](const char* start) { return line.starts_with(start); });
        });
        return taken;
    }
    /// How often `line` stands in the log, which is emptied.
    std::ptrdiff_t takeCount(const std::string& line) {
        const Log taken = take();
        return std::count(taken.begin(), taken.end(), line);
    }
};

/// The world of the test that runs.
inline World world;

inline std::string ascii(std::int32_t number) {
    return std::to_string(number);
}
inline std::string ascii(bool flag) {
    return flag ? "True" : "False";
}

/// Logs a call, and fails it if the test asked for that.
template <class... Arguments>
void call(const std::string& name, const Arguments&... arguments) {
    std::string line = name;
    ((line += " " + ascii(arguments)), ...);
    world.log.push_back(line);
    const auto failing = world.fails.find(name);
    if (failing != world.fails.end()) {
        throw Failure(failing->second);
    }
}

/// Counts a call on the file service, and fails it if its turn has come.
inline void countDiskCall(const std::string& name) {
    if (world.fault.strikes(++world.diskCalls)) {
        throw Failure(world.fault.code, u16("no " + name));
    }
}

/// The same for a call that gives `value`.
template <class T>
T counted(const std::string& name, T value) {
    countDiskCall(name);
    return value;
}

/// Counts a call and logs it.
template <class... Arguments>
void diskCall(const std::string& name, const Arguments&... arguments) {
    call(name, arguments...);
    countDiskCall(name);
}

/// Takes the last of `list`; `otherwise` if it is empty.
template <class T>
T next(std::vector<T>& list, T otherwise) {
    if (list.empty()) {
        return otherwise;
    }
    T last = list.back();
    list.pop_back();
    return last;
}

/// Logs a call, which gives `value`.
template <class T>
T got(const std::string& name, const T& value) {
    call(name);
    return value;
}
template <class Call>
FailureCode codeOf(Call&& attempted) {
    const auto failed = attempt(attempted);
    return failed ? failed->code() : FailureCode{};
}

} // namespace fakes
