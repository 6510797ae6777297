#include "common/mac_word.h"

#include <cstdlib>
#include <cstring>

mac_address word_to_mac(const char *word) {
    char text[32] = {}; // a longer word is cut
    strncpy(text, word, sizeof text - 1);
    mac_address mac = {};
    const char *piece = text;
    for (uint8_t &byte : mac) {
        byte = static_cast<uint8_t>(strtol(piece, nullptr, 16));
        piece = strchr(piece, ':');
        if (piece == nullptr) {
            break;
        }
        piece++;
    }
    return mac;
}
