#pragma once

#include <cstdint>
#include <string_view>

namespace ravikit {

/// The elements of a page that the conversion tells apart.
enum class PageTag : std::uint8_t {
    None, ///< a text
    Other,
    // Blocks.
    Body,
    Html,
    Div,
    P,
    Pre,
    Table,
    Tbody,
    Tr,
    Td,
    Th,
    Caption,
    H1,
    H2,
    H3,
    H4,
    H5,
    H6,
    Ul,
    Ol,
    Li,
    Dl,
    Dt,
    Dd,
    Center,
    OtherBlock, ///< has nothing about it but that it is a block
    Hr,
    Br,
    // Inline.
    Span,
    Font,
    A,
    B,
    I,
    U,
    Em,
    Strong,
    Big,
    Small,
    Img,
    Input,
    Select,
    Optgroup,
    Option,
    Ins,
    Quiet, ///< an empty inline element such as `wbr`
    // Not for reading.
    Dropped,  ///< `object`, `meta` and the like
    Media,    ///< `video` and the like: shows what is not in the page's text
    RawText,  ///< `script` and `style`: what stands inside is no markup
    NeedsHtml ///< an element with parsing rules of its own
};

/// The element of this name, in any case of letters; `isVoid`: nothing can stand in it.
struct KnownTag {
    PageTag tag = PageTag::Other;
    bool isVoid = false;
};
KnownTag knownTag(std::u16string_view name);

inline PageTag pageTagOf(std::u16string_view name) {
    return knownTag(name).tag;
}

constexpr bool isBlockTag(PageTag tag) {
    return tag >= PageTag::Body && tag <= PageTag::Br;
}

} // namespace ravikit
