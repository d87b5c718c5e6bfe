#include "util/Steps.h"

#include "external/Platform.h"

namespace tessaly {

void showFailure(const Failure& failure) {
    Platform::current()->MsgBox(failure.description(), MsgBoxFlags::Critical, defaultCaption);
}

void Steps::showOrEnd(const Failure& failure) {
    switch (failure.code()) {
    case FailureCode::PermissionDenied:
    case FailureCode::DiskNotReady:
        showFailure(failure);
        return;
    default:
        throw Failure(failure);
    }
}

} // namespace tessaly
