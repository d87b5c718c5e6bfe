#include "util/Failure.h"

#include <utility>

namespace tessaly {

std::u16string describe(FailureCode code) {
    switch (code) {
    case FailureCode::InvalidArgument:
        return u"Invalid procedure call or argument";
    case FailureCode::Overflow:
        return u"Overflow";
    case FailureCode::OutOfMemory:
        return u"Out of memory";
    case FailureCode::OutOfRange:
        return u"Subscript out of range";
    case FailureCode::TypeMismatch:
        return u"Type mismatch";
    case FailureCode::LibraryNotLoaded:
        return u"Library cannot be loaded";
    case FailureCode::BadFileName:
        return u"Bad file name or number";
    case FailureCode::FileNotFound:
        return u"File not found";
    case FailureCode::BadFileMode:
        return u"Bad file mode";
    case FailureCode::DeviceError:
        return u"Device I/O error";
    case FailureCode::FileExists:
        return u"File already exists";
    case FailureCode::DiskFull:
        return u"Disk full";
    case FailureCode::PastEndOfFile:
        return u"Input past end of file";
    case FailureCode::PermissionDenied:
        return u"Permission denied";
    case FailureCode::DiskNotReady:
        return u"Disk not ready";
    case FailureCode::PathNotFound:
        return u"Path not found";
    case FailureCode::ObjectNotSet:
        return u"Object variable not set";
    case FailureCode::InvalidFileFormat:
        return u"Invalid file format";
    case FailureCode::ResourceNotFound:
        return u"Resource not found";
    case FailureCode::CannotCreateObject:
        return u"Object cannot be created";
    case FailureCode::EntryPointNotFound:
        return u"Entry point not found";
    case FailureCode::KeyInUse:
        return u"This key is already associated with an element of this collection";
    }
    return u"Unknown failure";
}

Failure::Failure(FailureCode code)
    : Failure(code, describe(code)) {}

Failure::Failure(FailureCode code, std::u16string description)
    : m_code(code)
    , m_description(std::move(description))
    , m_what(std::to_string(static_cast<std::int32_t>(code)) + ": ") {
    for (const char16_t unit : m_description) {
        m_what.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
}

} // namespace tessaly
