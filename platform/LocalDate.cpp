#include "platform/LocalDate.h"

#include <chrono>

namespace tessaly {

Date localDate(std::time_t moment) {
    using namespace std::chrono;
    constexpr sys_days dayZero = 1899y / December / 30d;
    std::tm local = {};
    tzset();
    localtime_r(&moment, &local);
    const year_month_day date{year(local.tm_year + 1900),
                              month(static_cast<unsigned>(local.tm_mon) + 1),
                              day(static_cast<unsigned>(local.tm_mday))};
    const auto days = (sys_days(date) - dayZero).count();
    const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
    return static_cast<Date>(days) + seconds / 86400.0;
}

} // namespace tessaly
