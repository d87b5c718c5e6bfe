#pragma once

#include "external/PictureStore.h"

namespace tessaly {

/// The pictures that are built into the program. There are none so far: every name fails with
/// ResourceNotFound.
class EmbeddedPictures : public PictureStore {
public:
    ObjectRef picture(const Value& name, PictureKind kind) override;
};

} // namespace tessaly
