#include "line_file.h"

#include "board_dir.h"

#include "libvx.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>

static constexpr char blanks[] = " \t\r";

line_file::line_file(int dir, const char *name, uint32_t lines) : text(nullptr) {
    const size_t size = size_t{lines} * line_file_width + 1;
    auto *room = static_cast<char *>(malloc(size));
    const attr_state state = room != nullptr ? attr_read(dir, name, {room, size}) : attr_state::damaged;
    if (state == attr_state::missing) {
        *room = '\0';
    }
    if (state != attr_state::damaged) {
        text = room;
    } else {
        free(room);
    }
}

line_file::~line_file() {
    free(text);
}

const char *line_after(const char *line) {
    line += strcspn(line, "\n");
    return *line == '\n' ? line + 1 : line;
}

bool line_is_empty(const char *line) {
    line += strspn(line, blanks);
    return *line == '\n' || *line == '\0';
}

static bool is_same(const char *line, const char *wanted) {
    for (;;) {
        line += strspn(line, blanks);
        wanted += strspn(wanted, blanks);
        const size_t length = strcspn(line, " \t\r\n");
        if (length != strcspn(wanted, " \t\r\n") || strncasecmp(line, wanted, length) != 0) {
            return false;
        }
        if (length == 0) {
            return true;
        }
        line += length;
        wanted += length;
    }
}

// Moves the lines that are not empty and not `unwanted` to the front, each with its newline, for which the text
// must have room. Returns where they end; `kept` and `gone` count.
static char *take_out(char *text, const char *unwanted, uint32_t *kept, uint32_t *gone) {
    char *end = text;
    for (const char *next = text; *next != '\0';) {
        const char *each = next;
        next = line_after(each);
        if (line_is_empty(each)) {
            continue;
        }
        if (is_same(each, unwanted)) {
            ++*gone;
            continue;
        }
        const size_t length = strcspn(each, "\n");
        const bool last = each[length] == '\0';
        memmove(end, each, length);
        end += length;
        *end++ = '\n';
        ++*kept;
        if (last) {
            break;
        }
    }
    return end;
}

static int32_t change(int dir, const char *name, const char *line, uint32_t lines, bool add) {
    const line_file file(dir, name, lines + 1); // what is added has room, too
    if (file.text == nullptr) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    uint32_t kept = 0;
    uint32_t gone = 0;
    char *end = take_out(file.text, line, &kept, &gone);
    if (add && gone > 0) {
        return LIBVX_RET_OK;
    }
    const size_t length = strlen(line) + 1; // with the newline
    const char *limit = file.text + size_t{lines + 1} * line_file_width;
    if (add ? kept >= lines || end + length > limit : gone == 0) {
        return LIBVX_RET_FAIL;
    }
    if (add) {
        end += snprintf(end, length + 1, "%s\n", line);
    }
    const auto *bytes = reinterpret_cast<const uint8_t *>(file.text);
    return file_replace(dir, name, {bytes, static_cast<size_t>(end - file.text)}) ? LIBVX_RET_OK
                                                                                  : LIBVX_RET_FILE_WRITE_FAIL;
}

int32_t line_add(int dir, const char *name, const char *line, uint32_t lines) {
    return change(dir, name, line, lines, true);
}

int32_t line_remove(int dir, const char *name, const char *line, uint32_t lines) {
    return change(dir, name, line, lines, false);
}
