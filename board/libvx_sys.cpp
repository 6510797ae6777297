// System information: the transceiver's calibration image in the flash partition `bob`.

#include "board_call.h"
#include "flash.h"

#include "libvx.h"

#include <fcntl.h>

// The partition holds a header and the image behind it. The header is programmed last, so an interrupted store
// leaves none. All fields are little-endian 32-bit numbers: magic, the image's length and its CRC-32.
static constexpr uint32_t store_magic = 0x31424F42; // "BOB1"
static constexpr uint32_t header_size = 12;
static constexpr size_t store_size = 16384; // the largest partition, and so the largest image with its header

static constexpr char image_dir[] = "/var";
static constexpr char image_name[] = "velmarix_bob.bin";

static uint32_t crc32(std::span<const uint8_t> data) {
    uint32_t crc = 0xFFFFFFFF;
    for (uint8_t byte : data) {
        crc ^= byte;
        for (int bit = 0; bit < 8; bit++) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~crc;
}

static void put_u32(uint8_t *place, uint32_t value) {
    for (int i = 0; i < 4; i++) {
        place[i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

static uint32_t get_u32(const uint8_t *place) {
    return place[0] | static_cast<uint32_t>(place[1]) << 8 | static_cast<uint32_t>(place[2]) << 16 |
           static_cast<uint32_t>(place[3]) << 24;
}

static int32_t save_bob(int board) {
    board_fd dir(open(image_dir, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    board_fd file(openat(dir.fd, image_name, O_RDONLY | O_CLOEXEC));
    if (file.fd < 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    uint8_t image[store_size];
    ptrdiff_t length = file_read(file.fd, image);
    if (length < 0) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    const std::span<const uint8_t> stored(image, static_cast<size_t>(length));
    const flash_partition bob(board, "bob");
    if (bob.size == 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    if (stored.size() > store_size - header_size || stored.size() + header_size > bob.size) {
        return LIBVX_RET_FAIL;
    }
    uint8_t header[header_size];
    put_u32(header, store_magic);
    put_u32(header + 4, static_cast<uint32_t>(stored.size()));
    put_u32(header + 8, crc32(stored));
    // The erase takes the header's block first: from there on the old image is gone.
    bool ok = flash_erase(bob, 0, header_size + static_cast<uint32_t>(stored.size())) &&
              flash_program(bob, header_size, stored) && flash_program(bob, 0, header);
    return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}

static int32_t get_bob(int board) {
    const flash_partition bob(board, "bob");
    uint8_t header[header_size];
    if (!flash_read(bob, 0, header)) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    uint8_t image[store_size];
    uint32_t length = get_u32(header + 4);
    if (get_u32(header) != store_magic || length > sizeof image) {
        return LIBVX_RET_FAIL;
    }
    const std::span<uint8_t> stored(image, length);
    if (!flash_read(bob, header_size, stored) || crc32(stored) != get_u32(header + 8)) {
        return LIBVX_RET_FAIL;
    }
    board_fd dir(open(image_dir, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.fd < 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    return file_replace(dir.fd, image_name, stored) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}

int32_t libvx_sys_getBob(void) {
    return board_call(__func__, get_bob);
}

int32_t libvx_sys_saveBob(void) {
    return board_call(__func__, save_bob);
}
