#pragma once

/// All that a host needs: the classes of the component, their events, and the interfaces of what a
/// host lends to it.
///
/// The public members of the classes are virtual, though nothing derives from them: a host that got
/// an object from the loaded library reaches its members through the object and links no code of
/// the component. What is not virtual is inline.

#include "display/IDisplay.h"
#include "display/cWMLDisplay.h"
#include "document/DocumentType.h"
#include "document/IValidate.h"
#include "document/WirelessDocument.h"
#include "document/WirelessDocumentEvents.h"
#include "document/cWMLValidate.h"
#include "document/clWMLEventProxy.h"
#include "document/colDocuments.h"
#include "external/Controls.h"
#include "external/DOM.h"
#include "external/FileSystemObject.h"
#include "external/ForwardingPlatform.h"
#include "external/HTMLDocument.h"
#include "external/ModalForm.h"
#include "external/ParseError.h"
#include "external/PictureStore.h"
#include "external/Platform.h"
#include "external/Ravikit.h"
#include "format/ComponentPictures.h"
#include "format/IFormat.h"
#include "format/Picture.h"
#include "format/cWMLFormat.h"
#include "format/clWMLFormat.h"
#include "format/colWMLFormats.h"
#include "project/clProject.h"
#include "project/clProjectEvents.h"
#include "util/EventSource.h"
#include "util/Failure.h"
#include "util/Object.h"
#include "util/Value.h"
