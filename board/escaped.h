// A text for a message or a listing, be it a file's name: nothing in it reaches the terminal's control, or begins a
// line.
#ifndef VXBOARD_ESCAPED_H
#define VXBOARD_ESCAPED_H

#include <climits>
#include <cstdio>
#include <string_view>

struct escaped {
    char text[4 * PATH_MAX]; // as vxboard does it: \x0a

    explicit escaped(std::string_view raw) : text() {
        char *end = text;
        for (const char c : raw) {
            if (end + sizeof "\\x0a" > text + sizeof text) {
                break;
            }
            const bool is_control = static_cast<unsigned char>(c) < ' ' || c == 0x7F;
            end += snprintf(end, sizeof "\\x0a", is_control ? "\\x%02x" : "%c", static_cast<unsigned char>(c));
        }
    }
};

#endif
