#include "platform/files/FileErrors.h"

#include <cerrno>

namespace tessaly {

namespace {

FailureCode codeOf(int error, FailureCode missing) {
    switch (error) {
    case ENOENT:
        return missing;
    case ENOTDIR:
    case ELOOP:
        return FailureCode::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
    case EISDIR:
        return FailureCode::PermissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return FailureCode::DiskFull;
    case ENODEV:
    case ENXIO:
    case ENOMEDIUM:
    case ESTALE:
    case ENOTCONN:
        return FailureCode::DiskNotReady;
    case EEXIST:
    case ENOTEMPTY:
        return FailureCode::FileExists;
    case ENAMETOOLONG:
    case EINVAL:
    case EILSEQ:
        return FailureCode::BadFileName;
    case ENOMEM:
        return FailureCode::OutOfMemory;
    default:
        return FailureCode::DeviceError;
    }
}

} // namespace

Failure failureOf(int error, FailureCode missing) {
    return Failure(codeOf(error, missing));
}

void failByErrno(FailureCode missing) {
    throw failureOf(errno, missing);
}

} // namespace tessaly
