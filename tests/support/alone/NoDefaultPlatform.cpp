#include "external/Platform.h"

namespace tessaly {

/// The component's own tests link the component alone and install their own platform.
std::shared_ptr<Platform> makeDefaultPlatform() {
    throw Failure(FailureCode::ObjectNotSet);
}

} // namespace tessaly
