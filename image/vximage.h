// What the parts of vximage share: an image in memory, and how vximage complains.
#ifndef VXIMAGE_H
#define VXIMAGE_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "bob/bob_checksum.h"
#include "bob/bob_chip.h"
#include "bob/bob_image.h"

// ---- messages ----

// One line on standard error, "vximage: " in front and a newline behind.
[[gnu::format(printf, 1, 2)]] void complain(const char *format, ...);

// ---- texts ----

// The text from `start` up to `end`, or as much of it as there is. (substr() may throw, so it needs libstdc++.)
inline std::string_view slice(std::string_view text, size_t start, size_t end = SIZE_MAX) {
    end = std::min(end, text.size());
    start = std::min(start, end);
    return {text.data() + start, end - start};
}

// ---- files ----

inline constexpr size_t FILE_LIMIT = size_t{256} * 1024; // many times the largest text file

// All of the file ("-": standard input), in a buffer that the next call overwrites. Nothing after a complaint.
std::optional<std::string_view> file_read(const char *path);

// Makes the file hold `data`, all at once or not at all ("-": standard output). A file that was there keeps its
// mode and owner. False after a complaint.
bool file_write(const char *path, std::string_view data);

// What is to be written, put together. What does not fit the limit is cut off and makes `ok` false.
struct output_s {
    std::array<char, FILE_LIMIT> data;
    size_t size;
    bool ok;

    void clear();
    void add(std::string_view text);
    [[gnu::format(printf, 2, 3)]] void add_format(const char *format, ...);
    std::string_view text() const { return {data.data(), size}; }
};
extern output_s output;

// ---- images ----

// The chips that an image may be of, as bits: 1 << chip type.
using chip_set = uint32_t;

inline constexpr size_t RECORD_LIMIT = 2048; // no record is larger

// For each byte of a record: where in the text its value stands. 0: the text does not set it.
using text_places = std::array<uint32_t, RECORD_LIMIT>;

struct image_s {
    const char *name; // for messages
    std::string_view contents;
    bool is_flash = false; // a record, taken out of a partition
    bool is_text = false;
    chip_set chips = 0;      // all that it may be of: they share a record
    int32_t chip_type = 0;   // the one of them that fits best: its record holds the image
    int32_t rival = -1;      // one that fits as well and whose checks ask for something else
    text_places places = {}; // of a text

    const bob_image_s &layout() const { return *bob_chip(chip_type).image; }
    std::span<uint8_t> record() const { return bob_record(layout()); }
};

// The chip of this name in any case, nothing for a name that no chip with a record has.
std::optional<int32_t> chip_of_name(std::string_view name);

// "UX3361, UX3362S or UX3365"
const char *chip_names(chip_set chips);

// The chips with this layout.
chip_set chips_of(const bob_image_s &layout);

// Loads an image of either form; `chips` are those that it may be of. Nothing after a complaint. There is one
// image at a time: the record is vxcli's own instance.
image_s *image_load(const char *path, chip_set chips);

// "text", "record" or "record in flash"
const char *form_name(const image_s &image);

// How many of the checks as this chip fail.
size_t count_wrong(int32_t chip_type);

// Registers of a section, and the table that they are in.
struct section_registers_s {
    size_t count; // the rest of the section exists in files only
    enum { a0, a2_lower, table, files_only } page;
    uint8_t number; // of a table
};
section_registers_s section_registers(const bob_image_s &layout, const bob_section_s &section);

// ---- text form ----

// The chips whose sections are the ones that the text has. 0 after a complaint, which takes a name.
chip_set text_chips(const char *name, std::string_view text, chip_set chips);

// Fills the record as vxcli would. False after a complaint about every line that vxcli would skip or misread.
bool text_take(const char *name, std::string_view text, const bob_image_s &layout, text_places &places);

// ---- commands ----

struct options_s {
    chip_set chips;
    bool drop; // what the text form cannot hold
};

inline constexpr int EXIT_GOOD = 0;
inline constexpr int EXIT_WRONG_SUM = 1;
inline constexpr int EXIT_UNUSABLE = 2;

// Each takes the words behind the command and returns the exit status.
int command_show(const options_s &options, std::span<char *const> words);
int command_check(const options_s &options, std::span<char *const> words);
int command_convert(const options_s &options, std::span<char *const> words);
int command_fix(const options_s &options, std::span<char *const> words);

#endif
