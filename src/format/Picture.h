#pragma once

#include "external/PictureStore.h"

#include <cstdint>
#include <span>
#include <string>

namespace tessaly {

/// One picture of the component: what IFormat's `icon` and `iconSmall` give as an opaque object,
/// and what a form of the component shows.
class Picture final : public Object {
public:
    PictureKind kind() const { return m_kind; }

    /// The name in the store, in the store's own letters.
    const std::u16string& name() const { return m_name; }

    /// In pixels; of an icon of several sizes, the first and largest.
    std::int32_t width() const { return m_width; }
    std::int32_t height() const { return m_height; }

    /// The depth of the colours, without the mask.
    std::int32_t bitsPerPixel() const { return m_bitsPerPixel; }

    /// The whole file, as it would stand on a disk: a .ico for an icon, a .bmp for a bitmap. The
    /// bytes are the component's and outlive the object.
    std::span<const std::uint8_t> bytes() const { return m_bytes; }

private:
    friend class ComponentPictures;
    friend ObjectRef warningPicture();
    Picture(PictureKind kind, std::u16string name, std::span<const std::uint8_t> bytes);

    PictureKind m_kind;
    std::u16string m_name;
    std::span<const std::uint8_t> m_bytes;
    std::int32_t m_width;
    std::int32_t m_height;
    std::int32_t m_bitsPerPixel;
};

} // namespace tessaly
