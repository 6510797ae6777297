// MAC addresses as words of the command line.
#ifndef VXCLI_COMMON_MAC_WORD_H
#define VXCLI_COMMON_MAC_WORD_H

#include <array>
#include <cstdint>

// Most significant byte first.
using mac_address = std::array<uint8_t, 6>;

// The hexadecimal pieces between the colons of the word's first 31 characters, a byte each: a larger number wraps,
// anything else reads as 0. Missing bytes are 0, and pieces behind the sixth do not count.
mac_address word_to_mac(const char *word);

#endif
