#pragma once

#include "util/Object.h"

namespace tessaly {

/// A document's validator. Decks are judged by WirelessDocument::checkValidity, not by this.
class IValidate : public virtual Object {
public:
    virtual void validate() = 0;
};

} // namespace tessaly
