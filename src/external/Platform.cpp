#include "external/Platform.h"

#include "util/Lasting.h"

#include <cstddef>
#include <utility>

namespace tessaly {

namespace {

struct Installed {
    std::shared_ptr<Platform> platform;
    std::size_t objects = 0; ///< how many a default platform consists of; 0 for a host's
};

Installed& installed() {
    static auto& platform = lasting<Installed>();
    return platform;
}

} // namespace

std::shared_ptr<Platform> Platform::current() {
    if (!installed().platform) {
        const std::size_t before = liveCount();
        const std::shared_ptr<Platform> platform = makeDefaultPlatform();
        installed() = {platform, liveCount() - before};
    }
    return installed().platform;
}

void Platform::install(std::shared_ptr<Platform> platform) {
    // The old one goes last: its end may ask for the platform in force.
    const Installed old = std::exchange(installed(), {std::move(platform)});
}

void Platform::dropIdleDefault() {
    const Installed& now = installed();
    if (now.objects != 0 && now.objects == liveCount() && now.platform.use_count() == 1) {
        install(nullptr);
    }
}

} // namespace tessaly
