// The rows of vxstatus: a label, and items that go on in further lines where they would run over the edge.
#ifndef STATUS_ROW_H
#define STATUS_ROW_H

#include "status_read.h"

#include <cstddef>
#include <span>

inline constexpr int label_width = 10;

struct status_row {
    size_t column;
    bool empty;
};

status_row begin_row(const char *label);
void add_item(status_row *row, const char *format, ...) __attribute__((format(printf, 2, 3)));

// A row without items says `none`.
void end_row(status_row *row, const char *none = "none");

// The word of a number that counts from 0; the text itself if it has none.
const char *word_of(const shown_attribute &shown, std::span<const char *const> words);

#endif
