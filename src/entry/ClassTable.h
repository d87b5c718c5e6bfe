#pragma once

#include "util/Object.h"

#include <span>
#include <string_view>

namespace tessaly {

/// One public class of the component. The identifiers never change.
struct ClassRecord {
    std::string_view name; ///< under which the class is registered
    std::string_view id;
    ObjectRef (*make)(); ///< null if a host cannot make the class's objects
};

std::span<const ClassRecord> publicClasses();

} // namespace tessaly
