#pragma once

#include "external/DOM.h"
#include "ravikit/xml/Tree.h"

#include <memory>

namespace tessaly {

/// A DOM document over `tree`, which it and every node taken from it keep alive.
std::shared_ptr<IXMLDOMDocument2> makeDOMDocument(std::shared_ptr<const ravikit::Tree> tree);

} // namespace tessaly
