#pragma once

#include "util/Object.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// One error of a text. The component hands it to the host unread; its members are for the host's
/// error list and for whoever prints errors.
class ParseError : public virtual Object {
public:
    /// The kind of the error: a number above 0 that stays the same from release to release.
    virtual std::int32_t number() const = 0;

    /// Where the error stands in the text as the author sees it: line and column from 1, the
    /// column in UTF-16 units.
    virtual std::int32_t line() const = 0;
    virtual std::int32_t column() const = 0;

    /// The same place as an offset from 0 in UTF-16 units, and the length in units of what is
    /// wrong there, 0 for a place between two characters.
    virtual std::int32_t position() const = 0;
    virtual std::int32_t length() const = 0;

    /// The whole line of the source that holds the place, without its line end.
    virtual std::u16string sourceLine() const = 0;

    /// What is wrong, in words for the author: what stands there, what could, and the near miss.
    virtual std::u16string reason() const = 0;

    /// The next error of the same text in the order of places; none after the last.
    virtual std::shared_ptr<ParseError> next() const = 0;
};

} // namespace tessaly
