#include "common/elapsed.h"

#include <cstdint>

timeval elapsed_start() {
    timeval now = {};
    gettimeofday(&now, nullptr);
    return now;
}

double elapsed_seconds(const timeval &start) {
    const timeval end = elapsed_start();
    const int64_t nanoseconds =
        int64_t{end.tv_sec - start.tv_sec} * 1000000000 + int64_t{end.tv_usec - start.tv_usec} * 1000;
    return static_cast<double>(nanoseconds) / 1e9;
}
