// The lines of a trace, as board_trace writes them: TIME PROCESS KIND ...
#ifndef TRACE_LINE_H
#define TRACE_LINE_H

#include <cstddef>
#include <cstdint>
#include <string_view>

inline constexpr size_t trace_line_max = 1024; // bytes, without the newline

struct traced_line {
    int64_t time_us; // since 1970
    uint32_t process;
    std::string_view kind; // i2c, call, ...
    std::string_view rest; // what follows the kind
};

struct traced_transfer {
    uint32_t bus;
    bool write;
    uint32_t device;
    uint32_t reg; // the first one
    uint32_t length;
    std::string_view outcome; // "ok", or why not
    uint8_t bytes[256];
    size_t count; // of bytes: `length`, or none after a read that failed
};

struct traced_call {
    std::string_view operation;
    int32_t result;
};

// A change of the bits `low` to `low + width - 1` of a register.
struct traced_mem {
    uint32_t address;
    uint32_t low;
    uint32_t width;
    uint32_t value;
    int32_t result;
};

// Each is false if the text makes no sense as such; the result is undefined then. What is found refers to the text.
bool trace_parse_line(std::string_view text, traced_line *line);
bool trace_parse_transfer(std::string_view rest, traced_transfer *transfer);
bool trace_parse_call(std::string_view rest, traced_call *call);
bool trace_parse_mem(std::string_view rest, traced_mem *mem);
bool trace_parse_wait(std::string_view rest, int64_t *wait_us);

#endif
