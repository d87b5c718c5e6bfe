#pragma once

#include "entry/ClassFactory.h"

#include <cstdint>
#include <memory>

/// The functions that libtessaly.so exports. A host finds them by their names after dlopen; most
/// hosts leave that to ComponentRuntime (platform/runtime/ComponentRuntime.h).
///
/// Host and library are built from the same headers by the same compiler: objects, strings and
/// failures cross the border as they are, and what the library gave may not be used, nor dropped,
/// once it has been unloaded. That is why everything a host can hold counts in DllCanUnloadNow; a
/// caught Failure and a std::weak_ptr do not count.

namespace tessaly {

/// What DllGetClassObject and DllCanUnloadNow answer.
enum class EntryResult : std::int32_t {
    Ok = 0,
    No = 1,           ///< the library is still in use
    UnknownClass = 2, ///< the library has no such class
    NotCreatable = 3, ///< it has, but only the component makes its objects
};

} // namespace tessaly

extern "C" {

/// Stores in `factory` the class object for the class identifier `classId`, 36 characters in small
/// letters as in entry/ClassTable.h. Gives an EntryResult: Ok, or UnknownClass or NotCreatable with
/// `factory` left alone.
[[gnu::visibility("default")]] std::int32_t
DllGetClassObject(const char* classId, std::shared_ptr<tessaly::ClassFactory>* factory);

/// An EntryResult: Ok if no object, no Subscription, no class object and no lock of LockServer is
/// left, No otherwise. Where only the default platform is left it is dropped.
[[gnu::visibility("default")]] std::int32_t DllCanUnloadNow();

/// Enters the classes that can be made into the class registry `registryFile`, a path of the
/// system, or into the user's own if that is null, with the path of this library. Gives 0, or ends
/// with a Failure that names the file.
[[gnu::visibility("default")]] std::int32_t DllRegisterServer(const char* registryFile);

/// Takes the library's entries out again, and leaves the registry as if they had never been in it.
/// A library that is not registered changes nothing. Result and failures as above.
[[gnu::visibility("default")]] std::int32_t DllUnregisterServer(const char* registryFile);
}
