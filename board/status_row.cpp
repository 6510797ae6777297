#include "status_row.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

static constexpr size_t screen_width = 100;

status_row begin_row(const char *label) {
    printf("%-*s ", label_width, label);
    return {.column = label_width + 1, .empty = true};
}

void add_item(status_row *row, const char *format, ...) {
    char text[screen_width];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text - label_width - 2, format, arguments);
    va_end(arguments);
    if (!row->empty) {
        const bool fits = row->column + strlen(", ") + strlen(text) < screen_width;
        printf(fits ? ", " : ",\n           ");
        row->column = fits ? row->column + strlen(", ") : label_width + 1;
    }
    fputs(text, stdout);
    row->column += strlen(text);
    row->empty = false;
}

void end_row(status_row *row, const char *none) {
    puts(row->empty ? none : "");
}

const char *word_of(const shown_attribute &shown, std::span<const char *const> words) {
    uint32_t number = 0;
    return to_numbers(shown, {&number, 1}) && number < words.size() ? words[number] : shown.text;
}
