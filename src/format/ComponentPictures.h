#pragma once

#include "external/PictureStore.h"

#include <memory>

namespace tessaly {

/// The pictures that are part of the component. Names are compared without regard to case; what it
/// gives is a Picture.
class ComponentPictures final : public PictureStore {
public:
    ObjectRef picture(const Value& name, PictureKind kind) override;
};

/// The store for a platform to hand out.
std::shared_ptr<PictureStore> componentPictures();

} // namespace tessaly
