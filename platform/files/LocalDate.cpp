#include "platform/files/LocalDate.h"

#include "util/Lasting.h"

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace tessaly {

namespace {

/// tzset looks at the disk each time; this does so only where `TZ` is another one.
void followTimeZone() {
    static std::mutex mutex;
    static auto& known = lasting<std::optional<std::string>>();
    const char* const zone = std::getenv("TZ");
    std::string now = zone == nullptr ? std::string() : std::string(1, '=') + zone;
    const std::lock_guard lock(mutex);
    if (known != now) {
        known = std::move(now);
        tzset();
    }
}

} // namespace

Date localDate(std::time_t moment) {
    using namespace std::chrono;
    constexpr sys_days dayZero = 1899y / December / 30d;
    std::tm local = {};
    followTimeZone();
    localtime_r(&moment, &local);
    const year_month_day date{year(local.tm_year + 1900),
                              month(static_cast<unsigned>(local.tm_mon) + 1),
                              day(static_cast<unsigned>(local.tm_mday))};
    const auto days = (sys_days(date) - dayZero).count();
    const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
    return static_cast<Date>(days) + seconds / 86400.0;
}

} // namespace tessaly
