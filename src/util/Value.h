#pragma once

#include "util/Object.h"

#include <cstdint>
#include <string>
#include <variant>

namespace tessaly {

/// Days since 30 December 1899, local time; the fraction is the time of day.
using Date = double;

/// A value together with its kind. The first kind means that no value was given. It stands where a
/// member takes a position or a key, an optional flag, or the name of a picture.
using Value = std::variant<std::monostate, bool, std::int32_t, double, std::u16string, ObjectRef>;

/// False for a Value that holds nothing.
inline bool isGiven(const Value& value) {
    return !std::holds_alternative<std::monostate>(value);
}

/// True only for the Boolean True and for a number other than 0.
inline bool isTrue(const Value& value) {
    if (const bool* flag = std::get_if<bool>(&value)) {
        return *flag;
    }
    if (const std::int32_t* number = std::get_if<std::int32_t>(&value)) {
        return *number != 0;
    }
    if (const double* number = std::get_if<double>(&value)) {
        return *number != 0;
    }
    return false;
}

} // namespace tessaly
