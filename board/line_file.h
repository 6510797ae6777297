// Lists kept in text files, one entry a line. Lines are the same if they have the same words, whatever the case of
// the letters and however many blanks are between them: they may have been written by hand. Empty lines do not
// count.
#ifndef LINE_FILE_H
#define LINE_FILE_H

#include <cstdint>

inline constexpr uint32_t line_file_width = 96; // more than any line has, with its newline

// The lines of the file `name`, which may be missing.
struct line_file {
    char *text; // ended by a NUL, released at the end of the scope; null if the file could not be read

    // `lines`: how many the file may have, so far as its size tells.
    line_file(int dir, const char *name, uint32_t lines);
    line_file(const line_file &) = delete;
    line_file &operator=(const line_file &) = delete;
    ~line_file();
};

// The line behind this one, or the end of the text.
const char *line_after(const char *line);

bool line_is_empty(const char *line);

// Change a list in a single step; the caller holds the lock of `dir`. Each returns a libvx_retCode_t and changes
// nothing if it fails. Adding a line that is there does nothing; with `lines` lines a list is full. Removing one
// that is not there fails.
int32_t line_add(int dir, const char *name, const char *line, uint32_t lines);
int32_t line_remove(int dir, const char *name, const char *line, uint32_t lines);

#endif
