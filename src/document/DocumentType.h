#pragma once

#include <cstdint>

namespace tessaly {

/// The kinds of document. Only dcWML has services. A value outside the list can be held too.
enum DocumentType : std::int32_t {
    dcWML = 0,
    dcHTML = 1,
    dcXHTML = 2,
    dcCHTML = 3,
    dcHDML = 4,
    dcText = 5,
    dcXML = 6,
    dcRes1 = 7,
    dcRes2 = 8,
};

/// The views of a document. One that has not been given a view yet holds 0.
enum enumView : std::int32_t {
    vPLain = 1,  ///< shown by the browser control, as HTML
    vMarkup = 2, ///< shown by the rich-text control, as WML source
};

} // namespace tessaly
