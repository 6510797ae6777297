#include "common/rate_limit.h"

bool take_rate_limit(const char *const words[], uint32_t max_rate, const char *help, rate_limit_s *limit) {
    return take_number(words[0], 1, help, &limit->en) && take_number(words[1], max_rate, help, &limit->rate);
}

void print_rate_limit(const char *what, const rate_limit_s &limit, const char *unit) {
    printf("%s rate limit en = %d, rate = %d%s\n", what, static_cast<int>(limit.en), static_cast<int>(limit.rate),
           unit);
}
