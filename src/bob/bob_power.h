// Optical power as people read it.
#ifndef VXCLI_BOB_POWER_H
#define VXCLI_BOB_POWER_H

#include <cstdint>

// A power in units of 0.1 microwatt as dBm: minus infinity for none.
double bob_power_to_dbm(uint16_t power);

#endif
