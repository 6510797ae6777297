#include "trace_line.h"

#include "text_front.h"

#include <charconv>

// Takes the next word off the text; empty at the end.
static std::string_view take_word(std::string_view *text) {
    const size_t start = text->find_first_not_of(' ');
    text->remove_prefix(start == std::string_view::npos ? text->size() : start);
    const std::string_view word = text_front(*text, text->find(' '));
    text->remove_prefix(word.size());
    return word;
}

// The whole word as a number; with a base of 16 it may begin with 0x.
template <typename number_t>
static bool to_number(std::string_view word, number_t *number, int base = 10) {
    if (base == 16 && text_front(word, 2) == "0x") {
        word.remove_prefix(2);
    }
    const char *end = word.data() + word.size();
    const std::from_chars_result result = std::from_chars(word.data(), end, *number, base);
    return result.ec == std::errc() && result.ptr == end;
}

template <typename number_t>
static bool take_number(std::string_view *text, number_t *number, int base = 10) {
    return to_number(take_word(text), number, base);
}

static bool at_end(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

bool trace_parse_line(std::string_view text, traced_line *line) {
    const std::string_view time = take_word(&text);
    const size_t point = time.find('.');
    std::string_view fraction = time;
    fraction.remove_prefix(point == std::string_view::npos ? time.size() : point + 1);
    uint32_t seconds = 0;
    uint32_t micros = 0;
    if (fraction.size() != 6 || !to_number(text_front(time, point), &seconds) || !to_number(fraction, &micros) ||
        !take_number(&text, &line->process)) {
        return false;
    }
    line->time_us = int64_t{seconds} * 1'000'000 + micros;
    line->kind = take_word(&text);
    text.remove_prefix(text.starts_with(' ') ? 1 : 0);
    line->rest = text;
    return !line->kind.empty();
}

bool trace_parse_transfer(std::string_view rest, traced_transfer *transfer) {
    if (!take_number(&rest, &transfer->bus)) {
        return false;
    }
    const std::string_view direction = take_word(&rest);
    transfer->write = direction == "write";
    if ((!transfer->write && direction != "read") || !take_number(&rest, &transfer->device, 16) ||
        !take_number(&rest, &transfer->reg, 16) || !take_number(&rest, &transfer->length)) {
        return false;
    }
    transfer->outcome = take_word(&rest);
    if (transfer->reg > 0xFF || transfer->length > sizeof transfer->bytes || transfer->outcome.empty()) {
        return false;
    }
    for (transfer->count = 0; !at_end(rest); transfer->count++) {
        if (transfer->count == transfer->length || !take_number(&rest, &transfer->bytes[transfer->count], 16)) {
            return false;
        }
    }
    return transfer->count == transfer->length ||
           (transfer->count == 0 && !transfer->write && transfer->outcome != "ok");
}

bool trace_parse_call(std::string_view rest, traced_call *call) {
    call->operation = take_word(&rest);
    return take_number(&rest, &call->result) && at_end(rest);
}

bool trace_parse_mem(std::string_view rest, traced_mem *mem) {
    return take_number(&rest, &mem->address, 16) && take_number(&rest, &mem->low) &&
           take_number(&rest, &mem->width) && take_number(&rest, &mem->value, 16) &&
           take_number(&rest, &mem->result) && at_end(rest);
}

bool trace_parse_wait(std::string_view rest, int64_t *wait_us) {
    return take_number(&rest, wait_us) && *wait_us >= 0 && at_end(rest);
}
