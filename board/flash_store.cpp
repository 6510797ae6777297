#include "flash_store.h"

#include "flash.h"

#include "libvx.h"

#include <algorithm>

// New contents go into the bank that does not hold the old ones, whose bank is erased then. Cut short in between,
// both are whole, and the first of them counts, be it the old or the new one.

static uint32_t bank_size(const flash_partition &partition) {
    const uint32_t size = partition.size / flash_banks;
    if (size < partition.block && partition.size != 0) {
        flash_too_small(partition, flash_banks * partition.block);
    }
    return size - size % partition.block;
}

// Where contents are found.
struct bank_contents {
    int32_t result; // LIBVX_RET_OK; LIBVX_RET_FAIL: none that are whole; LIBVX_RET_FILE_READ_FAIL
    uint32_t start; // of their bank
    uint32_t length;
};

static bank_contents look_at_bank(const flash_partition &partition, uint32_t magic, uint32_t start, uint32_t size) {
    uint8_t header[flash_bank_header];
    if (!flash_read(partition, start, header)) {
        return {LIBVX_RET_FILE_READ_FAIL, 0, 0};
    }
    const auto [found, length, whole_crc] = flash_get_header(header);
    if (found != magic || length > size - flash_bank_header) {
        return {LIBVX_RET_FAIL, 0, 0};
    }
    uint32_t crc = 0;
    uint8_t piece[flash_block];
    for (uint32_t done = 0; done < length;) {
        const uint32_t count = std::min(length - done, flash_block);
        if (!flash_read(partition, start + flash_bank_header + done, {piece, count})) {
            return {LIBVX_RET_FILE_READ_FAIL, 0, 0};
        }
        crc = flash_crc32(crc, {piece, count});
        done += count;
    }
    return {crc == whole_crc ? LIBVX_RET_OK : LIBVX_RET_FAIL, start, length};
}

static bank_contents find_contents(const flash_partition &partition, const flash_store &store) {
    const uint32_t size = bank_size(partition);
    bank_contents found = {LIBVX_RET_FILE_READ_FAIL, 0, 0};
    for (uint32_t bank = 0; size != 0 && bank < flash_banks && found.result != LIBVX_RET_OK; bank++) {
        found = look_at_bank(partition, store.magic, bank * size, size);
    }
    return found;
}

int32_t flash_store_read(int board, const flash_store &store, std::span<uint8_t> room, size_t *length) {
    const flash_partition partition(board, store.partition);
    const bank_contents found = find_contents(partition, store);
    if (found.result != LIBVX_RET_OK) {
        return found.result;
    }
    if (found.length > room.size()) {
        return LIBVX_RET_FAIL;
    }
    *length = found.length;
    return flash_read(partition, found.start + flash_bank_header, room.first(found.length))
               ? LIBVX_RET_OK
               : LIBVX_RET_FILE_READ_FAIL;
}

// The header comes last. Flash with pages takes each of them once, the first one first: there the header goes with
// the contents, and it is their CRC that tells of a store that was cut short.
static bool program_bank(const flash_partition &partition, uint32_t start, std::span<const uint8_t> header,
                         std::span<const uint8_t> data) {
    if (partition.page == 1) {
        return flash_program(partition, start + flash_bank_header, data) && flash_program(partition, start, header);
    }
    uint8_t pages[flash_page_max]; // the first ones, as many as fit
    const size_t whole = sizeof pages - sizeof pages % partition.page;
    const size_t with = std::min(data.size(), whole - header.size());
    std::ranges::copy(data.first(with), std::ranges::copy(header, pages).out);
    const size_t together = header.size() + with;
    return flash_program(partition, start, {pages, together}) &&
           flash_program(partition, start + static_cast<uint32_t>(together), data.subspan(with));
}

int32_t flash_store_write(int board, const flash_store &store, std::span<const uint8_t> data) {
    const flash_partition partition(board, store.partition);
    if (partition.size == 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    const uint32_t size = bank_size(partition);
    if (size == 0) {
        return LIBVX_RET_FAIL;
    }
    if (data.size() > size - flash_bank_header) {
        flash_too_small(partition, flash_banks * (flash_bank_header + static_cast<uint32_t>(data.size())));
        return LIBVX_RET_FAIL;
    }
    const bank_contents old = find_contents(partition, store);
    const bool takes_second = old.result == LIBVX_RET_OK && old.start == 0;
    const uint32_t start = takes_second ? size : 0;
    const uint32_t other = takes_second ? 0 : size;
    uint8_t header[flash_bank_header];
    flash_put_header({store.magic, static_cast<uint32_t>(data.size()), flash_crc32(0, data)}, header);
    // The erase takes the header's block first: from there on what was in the bank is gone.
    const bool ok = flash_erase(partition, start, flash_bank_header + static_cast<uint32_t>(data.size())) &&
                    program_bank(partition, start, header, data) &&
                    flash_erase(partition, other, flash_bank_header);
    return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}

int32_t flash_store_erase(int board, const flash_store &store) {
    const flash_partition partition(board, store.partition);
    if (partition.size == 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    return flash_erase(partition, 0, partition.size) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}
