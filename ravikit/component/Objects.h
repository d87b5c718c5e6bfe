#pragma once

#include "external/DOM.h"
#include "external/FileSystemObject.h"
#include "external/Ravikit.h"

#include <memory>

namespace tessaly {

/// The markup library's objects as the component's interfaces. DTD files are looked at through
/// `files`, which the objects share.
std::shared_ptr<IXMLDOMDocument2> makeEmptyDOMDocument();
std::shared_ptr<Ravik> makeRavik(std::shared_ptr<FileSystemObject> files);
std::shared_ptr<Tolmek> makeTolmek(std::shared_ptr<FileSystemObject> files);

} // namespace tessaly
