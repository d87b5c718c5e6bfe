#include "platform/runtime/RuntimeFailure.h"

#include "platform/files/TextCodec.h"

namespace tessaly {

Failure runtimeFailure(FailureCode code, const std::string& what, const std::string& path,
                       const std::u16string& reason) {
    const std::u16string text = decodeText(what + ' ' + path);
    return {code, reason.empty() ? text : text + u": " + reason};
}

} // namespace tessaly
