// Prints each power whose dBm come out otherwise than by libm's logarithm, then how many were compared.
#include "bob/bob_power.h"

#include <cmath>
#include <cstdio>
#include <cstring>

int main() {
    unsigned power = 1; // none at all is no matter of logarithms
    for (; power <= UINT16_MAX; power++) {
        char wanted[16];
        char computed[16];
        snprintf(wanted, sizeof wanted, "%.2f", 10.0 * (log(power / 10000.0) / 2.302585092994046));
        snprintf(computed, sizeof computed, "%.2f", bob_power_to_dbm(static_cast<uint16_t>(power)));
        if (strcmp(computed, wanted) != 0) {
            printf("%u: %s instead of %s\n", power, computed, wanted);
        }
    }
    printf("%u powers\n", power - 1);
}
