#include "naming/WarningPicture.h"

#include "DialogPictureFiles.h"
#include "format/Picture.h"

namespace tessaly {

ObjectRef warningPicture() {
    const auto& [file, bytes] = dialogPictureFiles[0];
    return ObjectRef(new Picture(PictureKind::Icon, u"WARNING", bytes));
}

} // namespace tessaly
