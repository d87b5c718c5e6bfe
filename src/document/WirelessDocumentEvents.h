#pragma once

#include "external/ParseError.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// The events of a WirelessDocument. Arguments go by reference.
class __WirelessDocument {
public:
    virtual ~__WirelessDocument() = default;

    virtual void OnRefresh() = 0;
    virtual void OnViewChange() = 0;

    /// The text was refused by a check or by the converter; `err` is the reason.
    virtual void OnParseError(std::shared_ptr<ParseError>& err) = 0;

    /// The text passed a check: earlier errors can be forgotten.
    virtual void OnClearErrors() = 0;

    /// The document was marked as changed, perhaps not for the first time.
    virtual void OnDocDirty() = 0;

    /// An element that the host asked for was found; `strTagName` is the name as it was asked for.
    virtual void OnUTag(std::u16string& strTagName) = 0;

    /// At `lStart` (from 0) the text `delText` was replaced by `txt`. `action` is the kind of the
    /// change.
    virtual void OnAdd2UndoStack(std::int32_t& lStart, std::u16string& txt, std::u16string& delText,
                                 std::int32_t& action) = 0;
};

} // namespace tessaly
