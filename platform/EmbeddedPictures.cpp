#include "platform/EmbeddedPictures.h"

#include "util/Failure.h"

namespace tessaly {

ObjectRef EmbeddedPictures::picture(const Value& /*name*/, PictureKind /*kind*/) {
    throw Failure(FailureCode::ResourceNotFound);
}

} // namespace tessaly
