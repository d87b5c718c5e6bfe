#pragma once

#include "ravikit/validity/Dtd.h"

/// The library's own DTD, compiled once.
inline const std::shared_ptr<const ravikit::Dtd>& wmlDtd() {
    static const auto dtd = ravikit::Dtd::compileBuiltIn();
    return dtd;
}
