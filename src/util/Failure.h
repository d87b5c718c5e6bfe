#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace tessaly {

/// The numbers of failures, as the platform's scripting services use them.
enum class FailureCode : std::int32_t {
    InvalidArgument = 5,
    Overflow = 6,
    OutOfMemory = 7,
    OutOfRange = 9,
    TypeMismatch = 13,
    LibraryNotLoaded = 48,
    FileNotFound = 53,
    BadFileMode = 54,
    DeviceError = 57,
    FileExists = 58,
    DiskFull = 61,
    PastEndOfFile = 62,
    BadFileName = 52,
    PermissionDenied = 70,
    DiskNotReady = 71,
    PathNotFound = 76,
    ObjectNotSet = 91,
    InvalidFileFormat = 321,
    ResourceNotFound = 326,
    CannotCreateObject = 429,
    EntryPointNotFound = 453,
    KeyInUse = 457,
};

/// The usual description of `code`, without a full stop.
std::u16string describe(FailureCode code);

/// The one exception type of the component and of everything that its interfaces stand for.
class Failure : public std::exception {
public:
    explicit Failure(FailureCode code);
    Failure(FailureCode code, std::u16string description);

    FailureCode code() const noexcept { return m_code; }
    std::int32_t number() const noexcept { return static_cast<std::int32_t>(m_code); }
    const std::u16string& description() const noexcept { return m_description; }

    /// Number and description in ASCII, for a debugger or a log; other characters as '?'.
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    FailureCode m_code;
    std::u16string m_description;
    std::string m_what;
};

} // namespace tessaly
