// The front of a text. Unlike substr it cannot throw, which would need the C++ library.
#ifndef VXBOARD_TEXT_FRONT_H
#define VXBOARD_TEXT_FRONT_H

#include <algorithm>
#include <string_view>

// At most `count` characters; npos: all.
inline std::string_view text_front(std::string_view text, size_t count) {
    return {text.data(), std::min(count, text.size())};
}

#endif
