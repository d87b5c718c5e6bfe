#include "format/ComponentPictures.h"

#include "PictureFiles.h"
#include "format/Picture.h"
#include "util/LetterCase.h"

namespace tessaly {

ObjectRef ComponentPictures::picture(const Value& name, PictureKind kind) {
    const std::u16string_view ending = kind == PictureKind::Icon ? u".ico" : u".bmp";
    if (const auto* wanted = std::get_if<std::u16string>(&name)) {
        for (const auto& [file, bytes] : pictureFiles) {
            const std::u16string_view stem = file.substr(0, file.size() - ending.size());
            if (file.ends_with(ending) && equalIgnoringCase(stem, *wanted)) {
                return ObjectRef(new Picture(kind, std::u16string(stem), bytes));
            }
        }
    }
    throw Failure(FailureCode::ResourceNotFound);
}

std::shared_ptr<PictureStore> componentPictures() {
    return std::make_shared<ComponentPictures>();
}

} // namespace tessaly
