#pragma once

#include "external/Platform.h"
#include "util/Object.h"

#include <memory>

namespace tessaly {

/// The class object of one class of a loadable library: makes the class's objects, and speaks for
/// the library as a whole.
class ClassFactory : public Object {
public:
    /// A new object of the class. Object is a base of each class that can be made, so that
    /// std::static_pointer_cast leads to it. Fails as its constructor does.
    virtual ObjectRef CreateInstance() = 0;

    /// Keeps the library loaded although it has no objects, until as many calls with False have
    /// followed as there were with True. Further ones have no effect.
    virtual void LockServer(bool bLock) = 0;

    /// Platform::current and Platform::install of the library, which has one of its own. A host
    /// with windows or files of its own installs its platform before it makes its first object, and
    /// takes it back (none) before the library is unloaded if it refers to objects of the library.
    virtual std::shared_ptr<Platform> platform() = 0;
    virtual void platform(std::shared_ptr<Platform> platform) = 0;
};

} // namespace tessaly
