#include "attr_numbers.h"

#include "board_dir.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

static constexpr char separators[] = " \t\r\n";

// Takes a number off the text. False if none is there or it has more than 64 bits.
static bool take_number(const char **text, uint64_t *number) {
    *text += strspn(*text, separators);
    const size_t digits = strspn(*text, "0123456789");
    errno = 0;
    *number = strtoull(*text, nullptr, 10);
    *text += digits;
    return digits > 0 && errno == 0 && (**text == '\0' || strchr(separators, **text) != nullptr);
}

bool attr_read_numbers(int dir, const char *name, std::span<uint64_t> numbers) {
    char text[512];
    const attr_state state = attr_read(dir, name, text);
    const char *rest = text;
    if (state == attr_state::missing || (state == attr_state::ok && text[strspn(text, separators)] == '\0')) {
        std::ranges::fill(numbers, 0);
        return true;
    }
    bool ok = state == attr_state::ok;
    for (uint64_t &number : numbers) {
        ok = ok && take_number(&rest, &number);
    }
    return ok && rest[strspn(rest, separators)] == '\0';
}

bool attr_write_numbers(int dir, const char *name, std::span<const uint32_t> numbers) {
    char text[30 * 11 + 1];
    size_t length = 0;
    for (const uint32_t number : numbers.first(std::min(numbers.size(), sizeof text / 11))) {
        length += static_cast<size_t>(snprintf(text + length, 12, "%u ", number));
    }
    text[length - 1] = '\n';
    return file_replace(dir, name, {reinterpret_cast<const uint8_t *>(text), length});
}

bool counters_read(int dir, const char *directory, const char *names, std::span<uint64_t> counters) {
    for (uint64_t &counter : counters) {
        char path[64];
        const size_t length = strcspn(names, " ");
        snprintf(path, sizeof path, "%s/%.*s", directory, static_cast<int>(length), names);
        if (!attr_read_numbers(dir, path, {&counter, 1})) {
            return false;
        }
        names += length + (names[length] == ' ' ? 1 : 0);
    }
    return true;
}
