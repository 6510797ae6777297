#include "chip_bus.h"

#include "board_dir.h"
#include "chip_models.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>

// The chip as it stands, and the page in hand: a transfer touches one or two pages, each opened once.
struct chip_state {
    int bus;
    const chip_model *chip;
    bool eeprom;
    uint8_t latch; // the selected table

    int page_fd = -1;
    chip_page page = 0;
    uint8_t bytes[256] = {};
    size_t dirty_from = 0; // registers of the page that are yet to be stored: none if from == to
    size_t dirty_to = 0;

    explicit chip_state(int bus_dir) : bus(bus_dir), chip(nullptr), eeprom(false), latch(0) {}
    chip_state(const chip_state &) = delete;
    chip_state &operator=(const chip_state &) = delete;
    ~chip_state() { board_fd closing(page_fd); }
};

static bool load_chip(chip_state *state) {
    char name[32];
    uint32_t eeprom = 0;
    uint32_t latch = 0;
    if (attr_read(state->bus, "chip", name) != attr_state::ok || (state->chip = chip_find(name)) == nullptr ||
        !attr_read_number(state->bus, "eeprom", 1, &eeprom) ||
        !attr_read_number(state->bus, "table", 255, &latch)) {
        return false;
    }
    state->eeprom = eeprom != 0;
    state->latch = static_cast<uint8_t>(latch);
    return true;
}

static bool store_page(chip_state *state) {
    std::span<const uint8_t> bytes(state->bytes);
    bool ok = state->dirty_from == state->dirty_to ||
              file_write_at(state->page_fd, static_cast<uint32_t>(state->dirty_from),
                            bytes.subspan(state->dirty_from, state->dirty_to - state->dirty_from));
    state->dirty_from = state->dirty_to = 0;
    return ok;
}

// Takes a page into the hand, putting the one there back first.
static bool take_page(chip_state *state, chip_page page, bool write) {
    if (state->page_fd >= 0 && state->page == page) {
        return true;
    }
    if (state->page_fd >= 0) {
        board_fd closing(state->page_fd);
        bool stored = store_page(state);
        state->page_fd = -1;
        if (!stored) {
            return false;
        }
    }
    state->page = page;
    state->page_fd = openat(state->bus, chip_page_file(page).text, (write ? O_RDWR : O_RDONLY) | O_CLOEXEC);
    return state->page_fd >= 0 && file_read_at(state->page_fd, 0, {state->bytes, chip_page_size(page)});
}

struct chip_place {
    chip_page page;
    uint8_t index;
};

static chip_place place_of(const chip_state &state, uint32_t device, uint8_t reg) {
    if (device == chip_a0) {
        return {chip_page_a0, reg};
    }
    if (reg < chip_table_base) {
        return {chip_page_a2_low, reg};
    }
    return {state.latch, static_cast<uint8_t>(reg - chip_table_base)};
}

static bool read_registers(chip_state *state, const bus_transfer &transfer) {
    uint8_t reg = transfer.reg;
    for (uint32_t i = 0; i < transfer.len; i++, reg++) { // the address runs on from 255 to 0
        if (transfer.device == chip_a2 && reg == chip_table_select) {
            transfer.read_data[i] = state->latch;
            continue;
        }
        chip_place place = place_of(*state, transfer.device, reg);
        if (!take_page(state, place.page, false)) {
            return false;
        }
        transfer.read_data[i] = state->bytes[place.index];
    }
    return true;
}

// `data_written` tells whether the chip has anything to do afterwards: selecting a table takes it no time.
static bool write_registers(chip_state *state, const bus_transfer &transfer, bool *data_written) {
    const uint8_t in_page = static_cast<uint8_t>(state->chip->write_page - 1);
    uint8_t reg = transfer.reg;
    for (uint32_t i = 0; i < transfer.len; i++) {
        uint8_t value = transfer.write_data[i];
        if (transfer.device == chip_a2 && reg == chip_table_select) {
            state->latch = chip_has_table(*state->chip, value) ? value : state->latch;
        } else {
            *data_written = true;
            chip_place place = place_of(*state, transfer.device, reg);
            if (!take_page(state, place.page, true)) {
                return false;
            }
            if (!chip_read_only(*state->chip, place.page, place.index)) {
                state->bytes[place.index] = value;
                bool clean = state->dirty_from == state->dirty_to;
                state->dirty_from = clean ? place.index : std::min<size_t>(state->dirty_from, place.index);
                state->dirty_to = clean ? place.index + 1U : std::max<size_t>(state->dirty_to, place.index + 1U);
            }
        }
        // The write address wraps inside the chip's page.
        reg = static_cast<uint8_t>((reg & ~in_page) | ((reg + 1) & in_page));
    }
    return store_page(state);
}

static constexpr int64_t second = 1'000'000'000; // in nanoseconds

static int64_t nanoseconds(const timespec &time) {
    return static_cast<int64_t>(time.tv_sec) * second + time.tv_nsec;
}

// When the last write ends, in nanoseconds; 0 if nothing is known of one.
static int64_t busy_until(int bus) {
    char text[40];
    if (attr_read(bus, "busy", text) != attr_state::ok) {
        return 0;
    }
    char *end = nullptr;
    long long seconds = strtoll(text, &end, 10);
    if (seconds < 0 || seconds >= INT64_MAX / second || *end != '.') {
        return 0;
    }
    long long rest = strtoll(end + 1, &end, 10);
    return rest >= 0 && rest < second && *end == '\0' ? seconds * second + rest : 0;
}

// Starting a process takes a unit longer than any write. On a faster machine, or with a clock that stands still, a
// write that another process left behind therefore counts as over when the first transfer of this one comes: this
// is when it would have ended. -1 before the first transfer, 0 once this process has written something itself.
static int64_t left_behind = -1;

// True while a write is still going on.
static bool still_writing(const chip_state &state, const timespec &now) {
    const int64_t until = busy_until(state.bus);
    if (left_behind < 0) {
        left_behind = until;
    }
    const int64_t left = until - nanoseconds(now);
    // More than one write ahead: the clock was set back, and the file is stale.
    return until != left_behind && left > 0 &&
           left <= int64_t{1000} * std::max(state.chip->a0_write_us, state.chip->a2_write_us);
}

static bool begin_writing(const chip_state &state, uint32_t device, const timespec &now) {
    uint32_t write_us = device == chip_a0 ? state.chip->a0_write_us : state.chip->a2_write_us;
    if (write_us == 0) {
        return true;
    }
    left_behind = 0;
    int64_t until = nanoseconds(now) + int64_t{1000} * write_us;
    return attr_update(state.bus, "busy", "%lld.%09lld", static_cast<long long>(until / second),
                       static_cast<long long>(until % second));
}

bus_outcome chip_transfer(int bus, const bus_transfer &transfer, const timespec &now) {
    chip_state state(bus);
    if (!load_chip(&state) || (transfer.device != chip_a0 && transfer.device != chip_a2) ||
        (transfer.device == chip_a0 && state.chip->a0_needs_eeprom && !state.eeprom)) {
        return bus_outcome::nak;
    }
    if (still_writing(state, now)) {
        return bus_outcome::busy;
    }
    if (!transfer.write) {
        return read_registers(&state, transfer) ? bus_outcome::ok : bus_outcome::nak;
    }
    const uint8_t latch = state.latch;
    bool data_written = false;
    bool ok = write_registers(&state, transfer, &data_written);
    if (state.latch != latch) {
        ok = attr_update(bus, "table", "%u", state.latch) && ok;
    }
    if (data_written) {
        ok = begin_writing(state, transfer.device, now) && ok;
    }
    return ok ? bus_outcome::ok : bus_outcome::nak;
}
