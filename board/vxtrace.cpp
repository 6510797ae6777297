// Shows a trace readably: vxtrace FILE. "vxboard trace --help" tells what is in the columns and how the time on the
// bus is counted.

#include "escaped.h"
#include "text_front.h"
#include "trace_line.h"
#include "trace_sums.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>

static constexpr uint32_t device_a0 = 0x50;
static constexpr uint32_t device_a2 = 0x51;
static constexpr uint32_t table_select = 0x7F;  // register of A2; those above are the table's
static constexpr int64_t shortest_pause = 1000; // in microseconds

static constexpr int unknown = -1;

// What the next line is seen in the light of.
struct trace_view {
    trace_sums sums;
    uint32_t process;
    int64_t waited_us; // by the line before, if that was a wait
    int16_t tables[8]; // selected on each bus; what is on buses above is not followed
};

// ---- output ----

static void print_text(std::string_view text) {
    for (const char c : text) {
        putchar(static_cast<unsigned char>(c) < ' ' || c == 0x7F ? '?'
                                                                 : c); // nothing reaches the terminal's control
    }
}

// False after a complaint.
static bool write_out() {
    const bool ok = fflush(stdout) == 0 && ferror(stdout) == 0;
    if (!ok) {
        fprintf(stderr, "vxtrace: cannot write what is shown: %s\n", strerror(errno));
    }
    return ok;
}

// The columns in front, without times.
static void print_what(const char *what) {
    printf("%22s  %-6s ", "", what);
}

static void print_span(const char *what, int64_t us) {
    printf("%-6s %lld.%03lld ms\n", what, static_cast<long long>(us / 1000), static_cast<long long>(us % 1000));
}

// The time of a line since the first one and the gap since the line before. Of the gap, what waiting does not
// explain is a pause.
static void print_times(trace_view *view, const traced_line &line) {
    trace_sums *sums = &view->sums;
    const bool first = sums->lines == 0;
    sums->first_us = first ? line.time_us : sums->first_us;
    const int64_t gap = first ? 0 : line.time_us - sums->last_us;
    const int64_t pause = gap - view->waited_us;
    if (pause >= shortest_pause) {
        sums->pauses++;
        sums->paused_us += pause;
        printf("%22s  ", "");
        print_span("pause", pause);
    }
    if (first || line.process != view->process) {
        print_what("process");
        printf("%u\n", line.process);
    }
    view->process = line.process;
    view->waited_us = 0;
    sums->last_us = line.time_us;
    print_seconds(line.time_us - sums->first_us, 11);
    if (first) {
        printf("%11s", "");
    } else {
        print_seconds(gap, 11);
    }
    printf("  ");
}

// ---- bus transfers ----

// Registers 0x80 and up of A2 show the table that was written to, or read from, the select register last.
static void follow_table(trace_view *view, const traced_transfer &transfer) {
    const uint32_t place = table_select - transfer.reg;
    if (transfer.outcome == "ok" && transfer.device == device_a2 && transfer.reg <= table_select &&
        place < transfer.count && transfer.bus < std::size(view->tables)) {
        view->tables[transfer.bus] = transfer.bytes[place];
    }
}

// One row of at most 16 registers from `first`; the columns up to the bytes.
static void print_place(const trace_view &view, const traced_transfer &transfer, uint32_t first, uint32_t count) {
    char table[8] = "";
    first &= 0xFF; // behind the last register comes the first
    if (transfer.device == device_a2 && first + count > table_select + 1) {
        const int selected = transfer.bus < std::size(view.tables) ? view.tables[transfer.bus] : unknown;
        snprintf(table, sizeof table, selected == unknown ? "?" : "0x%02x", static_cast<unsigned>(selected));
    }
    printf("%-6s 0x%02x  ", table, first);
}

static void print_transfer(const trace_view &view, const traced_transfer &transfer) {
    char device[16] = "A0";
    if (transfer.device != device_a0) {
        snprintf(device, sizeof device, transfer.device == device_a2 ? "A2" : "0x%02x", transfer.device);
    }
    printf("%-6s %-3u  %-4s ", transfer.write ? "write" : "read", transfer.bus, device);
    const bool ok = transfer.outcome == "ok";
    uint32_t done = 0;
    do {
        const uint32_t count = std::min<uint32_t>(transfer.length - done, 16);
        if (done > 0) {
            printf("%41s", "");
        }
        print_place(view, transfer, transfer.reg + done, transfer.count == 0 ? transfer.length : count);
        for (uint32_t i = done; i < done + count && i < transfer.count; i++) {
            printf(i == done ? "%02x" : " %02x", transfer.bytes[i]);
        }
        done += count;
        if (ok || transfer.count > 0) {
            putchar('\n');
        }
    } while (done < transfer.count);
    if (!ok) {
        if (transfer.count > 0) {
            printf("%54s", "");
        } else {
            printf("%u %s: ", transfer.length, transfer.length == 1 ? "byte" : "bytes");
        }
        print_text(transfer.outcome);
        printf(": %s\n", outcome_means(transfer.outcome));
    }
}

// ---- lines ----

static bool show_transfer(trace_view *view, const traced_line &line) {
    traced_transfer transfer;
    if (!trace_parse_transfer(line.rest, &transfer)) {
        return false;
    }
    print_times(view, line);
    print_transfer(*view, transfer);
    follow_table(view, transfer);
    count_transfer(&view->sums, transfer);
    return true;
}

static bool show_call(trace_view *view, const traced_line &line) {
    traced_call call;
    if (!trace_parse_call(line.rest, &call)) {
        return false;
    }
    print_times(view, line);
    printf("%-6s ", "call");
    print_text(call.operation);
    printf(" -> %d\n", call.result);
    return true;
}

static bool show_wait(trace_view *view, const traced_line &line) {
    int64_t us = 0;
    if (!trace_parse_wait(line.rest, &us)) {
        return false;
    }
    print_times(view, line);
    print_span("wait", us);
    view->waited_us = us;
    view->sums.waits++;
    view->sums.waited_us += us;
    return true;
}

static bool show_mem(trace_view *view, const traced_line &line) {
    traced_mem mem;
    if (!trace_parse_mem(line.rest, &mem)) {
        return false;
    }
    print_times(view, line);
    printf("%-6s 0x%08x[", "mem", mem.address);
    if (mem.width != 1) {
        printf("%lld:", 0LL + mem.low + mem.width - 1);
    }
    printf("%u] = 0x%x -> %d\n", mem.low, mem.value, mem.result);
    return true;
}

// A switch-off and on takes no time of its own: its stamp may be of another clock. Table 0 is selected afterwards.
static bool show_power_cycle(trace_view *view, const traced_line &) {
    print_what("power");
    printf("off and on\n");
    std::ranges::fill(view->tables, int16_t{0});
    return true;
}

struct kind_row {
    const char *kind;
    bool (*show)(trace_view *, const traced_line &);
};

static constexpr kind_row kinds[] = {
    {"i2c", show_transfer},
    {"call", show_call},
    {"wait", show_wait},
    {"mem", show_mem},
    {"power-cycle", show_power_cycle},
};

// Any other kind, such as run, is text.
static bool show_text(trace_view *view, const traced_line &line) {
    print_times(view, line);
    print_text(line.kind);
    printf("%*s ", line.kind.size() < 6 ? 6 - static_cast<int>(line.kind.size()) : 0, "");
    print_text(line.rest);
    putchar('\n');
    return true;
}

static void show_line(trace_view *view, std::string_view text, uint64_t number, bool whole) {
    traced_line line = {};
    const auto is_kind = [&](const kind_row &row) { return line.kind == row.kind; };
    bool shown = false;
    if (whole && trace_parse_line(text, &line)) {
        const kind_row *row = std::ranges::find_if(kinds, is_kind);
        shown = row == std::end(kinds) ? show_text(view, line) : row->show(view, line);
    }
    if (!shown) {
        print_what("?");
        printf("line %llu: ", static_cast<unsigned long long>(number));
        print_text(text_front(text, 64));
        printf("%s\n", text.size() > 64 ? "..." : "");
        view->sums.first_damaged = view->sums.damaged == 0 ? number : view->sums.first_damaged;
        view->sums.damaged++;
    }
    view->sums.lines += shown ? 1 : 0;
}

// Shows all lines of the file. One that is too long is cut. False if the file cannot be read to its end.
static bool show_lines(FILE *file, trace_view *view) {
    char text[trace_line_max];
    size_t length = 0;
    bool whole = true;
    uint64_t number = 1;
    int c = 0;
    while ((c = getc_unlocked(file)) != EOF) {
        if (c == '\n') {
            show_line(view, {text, length}, number++, whole);
            length = 0;
            whole = true;
        } else if (length < sizeof text) {
            text[length++] = static_cast<char>(c);
        } else {
            whole = false;
        }
    }
    if (length > 0) {
        show_line(view, {text, length}, number, whole);
    }
    return ferror(file) == 0;
}

// ---- the whole ----

static int show_trace(FILE *file, const char *name) {
    static trace_view view;
    std::ranges::fill(view.tables, int16_t{unknown});
    printf("%11s%11s  %-6s %-4s %-4s %-6s %-5s %s\n", "time", "gap", "what", "bus", "dev", "table", "reg", "bytes");
    const bool read = show_lines(file, &view);
    print_sums(view.sums);
    if (!write_out()) {
        return 2;
    }
    const trace_sums &sums = view.sums;
    if (!read) {
        fprintf(stderr, "vxtrace: cannot read %s to its end\n", escaped(name).text);
    } else if (sums.damaged != 0) {
        fprintf(
            stderr, "vxtrace: %s: %llu %s no sense, the first is line %llu; marked with \"?\", not in the sums\n",
            escaped(name).text, static_cast<unsigned long long>(sums.damaged),
            sums.damaged == 1 ? "line makes" : "lines make", static_cast<unsigned long long>(sums.first_damaged));
    }
    return read && sums.damaged == 0 ? 0 : 2;
}

int main(int argc, char *argv[]) {
    if (argc == 2 && (strcmp(argv[1], "--help") == 0 || strcmp(argv[1], "-h") == 0)) {
        printf("usage: vxtrace FILE\n\nShows a trace, as \"vxboard trace DIR show\" does; - is standard input.\n"
               "\"vxboard trace --help\" tells more.\n");
        return write_out() ? 0 : 2;
    }
    if (argc != 2) {
        fprintf(stderr, "vxtrace: takes the file of a trace: vxtrace FILE\n");
        return 2;
    }
    FILE *file = strcmp(argv[1], "-") == 0 ? stdin : fopen(argv[1], "re");
    if (file != nullptr) {
        ungetc(getc(file), file); // a directory can be opened, but not read
    }
    if (file == nullptr || ferror(file) != 0) {
        const char *why = strerror(errno);
        fprintf(stderr, "vxtrace: cannot read %s: %s; give it the file \"trace\" of a board\n",
                escaped(argv[1]).text, why);
        return 2;
    }
    const int status = show_trace(file, argv[1]);
    fclose(file);
    return status;
}
