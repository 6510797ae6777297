// How contents are kept in a partition: a bank begins with a header of three little-endian 32-bit numbers, magic,
// length and CRC-32 of the contents, and the contents are behind it. A partition has two banks, of which the first
// one that is whole counts. For flash_store, which writes it, and for programs that look at it.
#ifndef VXBOARD_FLASH_FORMAT_H
#define VXBOARD_FLASH_FORMAT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

inline constexpr uint32_t flash_banks = 2;            // contents that are cut short leave the old ones
inline constexpr uint32_t flash_bank_header = 12;     // bytes in front of the contents
inline constexpr uint32_t flash_bob = 0x31424F42;     // the magic of each partition: "BOB1"
inline constexpr uint32_t flash_sysinfo = 0x31535953; // "SYS1"
inline constexpr uint32_t flash_backup = 0x314B4142;  // "BAK1"
inline constexpr uint32_t flash_preconf = 0x31455250; // "PRE1"

struct flash_bank {
    uint32_t magic;
    uint32_t length; // of the contents
    uint32_t crc;
};

// The header's numbers as they are in flash.
inline void flash_put_header(const flash_bank &bank, std::span<uint8_t, flash_bank_header> header) {
    size_t at = 0;
    for (const uint32_t number : {bank.magic, bank.length, bank.crc}) {
        for (unsigned shift = 0; shift < 32; shift += 8) {
            header[at++] = static_cast<uint8_t>(number >> shift);
        }
    }
}

inline flash_bank flash_get_header(std::span<const uint8_t, flash_bank_header> header) {
    const auto number = [&](size_t at) {
        return header[at] | uint32_t{header[at + 1]} << 8 | uint32_t{header[at + 2]} << 16 |
               uint32_t{header[at + 3]} << 24;
    };
    return {number(0), number(4), number(8)};
}

// The CRC-32 of what `crc` is that of, 0 at first, with `data` behind it.
inline uint32_t flash_crc32(uint32_t crc, std::span<const uint8_t> data) {
    crc = ~crc;
    for (const uint8_t byte : data) {
        crc ^= byte;
        for (int bit = 0; bit < 8; bit++) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~crc;
}

// The contents of a whole partition, if there are any.
inline std::optional<std::string_view> flash_contents(std::string_view partition, uint32_t magic) {
    const std::span flash(reinterpret_cast<const uint8_t *>(partition.data()), partition.size());
    const size_t size = flash.size() / flash_banks;
    for (size_t start = 0; size >= flash_bank_header && start + size <= flash.size(); start += size) {
        const flash_bank bank = flash_get_header(flash.subspan(start).first<flash_bank_header>());
        const auto room = flash.subspan(start, size).subspan(flash_bank_header);
        if (bank.magic == magic && bank.length <= room.size() &&
            flash_crc32(0, room.first(bank.length)) == bank.crc) {
            return std::string_view(partition.data() + start + flash_bank_header, bank.length);
        }
    }
    return std::nullopt;
}

#endif
