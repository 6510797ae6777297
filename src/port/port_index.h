// How the commands of the group name a port. Neither way has an upper bound: the library knows its ports.
#ifndef VXCLI_PORT_INDEX_H
#define VXCLI_PORT_INDEX_H

#include "common/arguments.h"

#include <cstdint>

// Any number but a negative one.
bool port_accepts_number(const char *word, int32_t *index);

// The same, and "pon" for the PON port.
bool port_accepts_number_or_pon(const char *word, int32_t *index);

inline constexpr index_rule_s PORT = {"port", port_accepts_number};
inline constexpr index_rule_s PORT_OR_PON = {"port", port_accepts_number_or_pon};

#endif
