#pragma once

#include "external/ParseError.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// The events of a clProject. This object represents a Corvane project. A project consists of a
/// grouping of WML decks. other information associated with a project include the path, author etc.
///
/// All but OnSetCurrentDocument and OnDocAdd are events of the current document, passed on as they
/// are; see __WirelessDocument. Arguments go by reference.
class __clProject {
public:
    virtual ~__clProject() = default;

    virtual void OnRefresh() = 0;
    /// Another document is current now.
    virtual void OnSetCurrentDocument() = 0;
    virtual void OnViewChange() = 0;
    virtual void OnParseError(std::shared_ptr<ParseError>& err) = 0;
    virtual void OnClearErrors() = 0;
    virtual void OnDocDirty() = 0;
    /// The host's addDocument has run for `strDocName`.
    virtual void OnDocAdd(std::u16string& strDocName) = 0;
    virtual void OnUTag(std::u16string& strTagName) = 0;
    virtual void OnAdd2UndoStack(std::int32_t& lStart, std::u16string& txt, std::u16string& delText,
                                 std::int32_t& action) = 0;
};

} // namespace tessaly
