// A board as vxstatus reads it: whatever is missing or damaged, there is something to show, and nothing is waited
// for or changed.
#ifndef STATUS_READ_H
#define STATUS_READ_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// An attribute for showing: its text, "?" if there is none, "damaged" if it cannot be read or is no printable line
// of at most 63 characters.
struct shown_attribute {
    char text[64];
    bool ok;
};

shown_attribute read_attribute(int board, const char *path);

// The attribute DIRECTORY/NAME.
shown_attribute read_attribute(int board, const char *directory, const char *name);

// Whether the attribute is as many decimal numbers as `numbers` has room for, with blanks between them.
bool to_numbers(const shown_attribute &shown, std::span<uint32_t> numbers);

// Whether the text is plain ASCII without control characters.
bool is_printable(std::string_view text);

// Reads a file from its beginning. The count of bytes, `bytes.size()` at most; -1 if it is no plain file or cannot
// be read.
ptrdiff_t read_bytes(int board, const char *path, std::span<char> bytes);

// Takes the first line off the text, which is not empty.
std::string_view take_line(std::string_view *text);

// What is behind the first `count` characters; empty if there are no more.
std::string_view text_behind(std::string_view text, size_t count);

// The value of the first line KEY=value; a null pointer in the view if there is none.
std::string_view find_field(std::string_view text, std::string_view key);

// Names in a directory, with numbers in them in their order; hidden ones are left out.
struct name_list {
    char names[64][32];
    size_t count;
    bool damaged; // the directory is there but cannot be read
};

name_list list_names(int board, const char *directory);

// Where a link leads to. False if it is none.
bool read_link(int board, const char *path, std::span<char> target);

#endif
