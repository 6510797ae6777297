#include "port/port_index.h"

#include "libvx.h"

#include <cstring>

bool port_accepts_number(const char *word, int32_t *index) {
    *index = word_to_signed_decimal(word);
    return *index >= 0;
}

bool port_accepts_number_or_pon(const char *word, int32_t *index) {
    if (strcmp(word, "pon") == 0) {
        *index = LIBVX_SW_PORT_PON;
        return true;
    }
    return port_accepts_number(word, index);
}
