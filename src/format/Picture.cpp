#include "format/Picture.h"

#include <utility>

namespace tessaly {

namespace {

/// The little-endian number of `size` bytes at `offset`.
std::uint32_t numberAt(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t size) {
    std::uint32_t number = 0;
    for (std::size_t i = size; i > 0; --i) {
        number = number << 8 | bytes[offset + i - 1];
    }
    return number;
}

/// After the file header of a .bmp; in a .ico where the first entry of its directory says.
std::size_t infoHeaderOffset(PictureKind kind, std::span<const std::uint8_t> bytes) {
    return kind == PictureKind::Bitmap ? 14 : numberAt(bytes, 18, 4);
}

} // namespace

Picture::Picture(PictureKind kind, std::u16string name, std::span<const std::uint8_t> bytes)
    : m_kind(kind)
    , m_name(std::move(name))
    , m_bytes(bytes) {
    const auto header = bytes.subspan(infoHeaderOffset(kind, bytes));
    // The header of an icon counts the rows of the colours and those of the mask.
    const std::uint32_t images = kind == PictureKind::Icon ? 2 : 1;
    m_width = static_cast<std::int32_t>(numberAt(header, 4, 4));
    m_height = static_cast<std::int32_t>(numberAt(header, 8, 4) / images);
    m_bitsPerPixel = static_cast<std::int32_t>(numberAt(header, 14, 2));
}

} // namespace tessaly
