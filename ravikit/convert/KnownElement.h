#pragma once

#include "ravikit/xml/Tree.h"

#include <cstdint>

namespace ravikit {

/// An element of the page that the source knows.
struct KnownElement {
    std::uint32_t page = 0;        ///< its node of the page
    Tree::Id source = Tree::none;  ///< its element of the source
    std::uint32_t parent = 0;      ///< the known element around it, by number; itself if none
    std::uint32_t firstAnchor = 0; ///< the anchors in it, as numbers in `anchors`
    std::uint32_t behindAnchors = 0;
    bool isUnchanged = false; ///< the page shows what it was made to show
    bool isCopy = false;      ///< another one on the page is the real one
    bool isAnchor =
        false; ///< stands in its parent as in the source, in the same order as the others
};

} // namespace ravikit
