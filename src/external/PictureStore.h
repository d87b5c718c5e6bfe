#pragma once

#include "util/Value.h"

#include <cstdint>

namespace tessaly {

/// The two kinds of pictures, each with names of its own.
enum class PictureKind : std::int32_t { Bitmap = 0, Icon = 1 };

/// The read-only pictures of the component.
class PictureStore : public virtual Object {
public:
    /// A new picture object, opaque to the component. A name that the store does not hold, and a
    /// value that is no name, fail with ResourceNotFound.
    virtual ObjectRef picture(const Value& name, PictureKind kind) = 0;
};

} // namespace tessaly
