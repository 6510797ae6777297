#include "bob/bob_power.h"

#include <limits>

// The logarithm is computed here because libm would be loaded at every start of the tool, for `bob opt` alone:
// 50 us and 300 KiB.
double bob_power_to_dbm(uint16_t power) {
    static constexpr double LN2 = 0.6931471805599453;
    static constexpr double LN10 = 2.302585092994046;
    static constexpr int LAST_TERM = 21; // what follows it is below the last bit
    if (power == 0) {
        return -std::numeric_limits<double>::infinity();
    }
    double mantissa = power / 10000.0;
    int exponent = 0;
    while (mantissa < 0.7) {
        mantissa *= 2;
        exponent--;
    }
    while (mantissa > 1.4) {
        mantissa /= 2;
        exponent++;
    }
    // ln m = 2 (s + s^3/3 + s^5/5 + ...)
    const double s = (mantissa - 1) / (mantissa + 1);
    double sum = 0;
    for (int term = LAST_TERM; term > 0; term -= 2) {
        sum = sum * s * s + 1.0 / term;
    }
    return 10.0 * ((exponent * LN2 + 2 * s * sum) / LN10);
}
