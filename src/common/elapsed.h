// Durations as the commands print them.
#ifndef VXCLI_COMMON_ELAPSED_H
#define VXCLI_COMMON_ELAPSED_H

#include <sys/time.h>

// The time of day now.
timeval elapsed_start();

// Seconds from `start` to now, to the microsecond.
double elapsed_seconds(const timeval &start);

#endif
