// The manufacturing fields as data. A row says everything about one field; reading, setting, showing and
// clearing are written once for all of them.
#ifndef VXCLI_SYS_FIELD_H
#define VXCLI_SYS_FIELD_H

#include <cstdint>
#include <span>

#include "libvx.h"
#include "vxcli.h"

// How `delete` clears a field: with the empty text as its value.
enum class sys_clear : uint8_t { never, by_setter, by_key };

// A value is read with `get_number` or `get_text` where there is one, else under `key`. A field without a setter
// is read only, or has a command of its own that sets it.
struct sys_field_s {
    const char *command;         // the word that `delete` knows it by, too
    const char *label = nullptr; // null: it has no line, not even in `show`
    const char *key = nullptr;   // in the library's store
    int32_t (*get_text)(char *buffer) = nullptr;
    int32_t (*get_number)() = nullptr;
    void (*fill_empty)(std::span<char> value) = nullptr; // what stands in for a text that is not set
    int32_t (*set_text)(const char *value) = nullptr;
    int32_t (*set_number)(int32_t value) = nullptr;
    const char *subject = nullptr; // the name in "sys ... success" and "sys ... fail"; null: the command word
    vxcli_handler_t show_command = nullptr;  // the command that `show` prints it with, if not its line alone
    int32_t key_size = LIBVX_SYS_SHORT_SIZE; // of the buffer for a text read under `key`, with its NUL
    bool prints_empty = true;                // false: an empty text prints no line at all
    sys_clear clear = sys_clear::never;
    bool shown = true; // by `show`
};

// The word count with which `show` calls a field's own command.
inline constexpr int32_t SYS_SHOW_COUNT = 100;

// All fields, in the order of `show`.
std::span<const sys_field_s> sys_fields();

// The row of the command `name`, or null.
const sys_field_s *sys_find_field(const char *name);

// Reads the field and prints its line.
void sys_print_field(const sys_field_s &field);

// Prints "sys <subject> success", or "fail" for a result that is not 0.
void sys_report(const char *subject, int32_t result);

// The command handler of the fields; argv[0] is the word of a row. Without an argument, or when the row has no
// setter, prints the field, else sets it to the first argument. A refused value is no failure of the command:
// always returns 0.
int32_t sys_field(int32_t argc, const char *const argv[], const char *help);

#endif
