#pragma once

#include "document/IValidate.h"

namespace tessaly {

/// The validator of a WML document, made by the document alone. It has nothing to do: the document
/// judges its text itself.
class cWMLValidate final : public IValidate {
public:
    void validate() override {}

private:
    friend class WirelessDocument;
    cWMLValidate() = default;
};

} // namespace tessaly
