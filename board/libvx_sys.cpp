// System information: the transceiver's calibration image in the flash partition `bob`.

#include "board_call.h"
#include "flash_store.h"

#include "libvx.h"

#include <fcntl.h>

static constexpr flash_store bob_store = {.partition = "bob", .magic = flash_bob};
static constexpr size_t bob_size = 16384; // the largest partition

static constexpr char image_dir[] = "/var";
static constexpr char image_name[] = "velmarix_bob.bin";

static int32_t save_bob(int board) {
    board_fd dir(open(image_dir, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    board_fd file(openat(dir.fd, image_name, O_RDONLY | O_CLOEXEC));
    if (file.fd < 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    uint8_t image[bob_size];
    const ptrdiff_t length = file_read(file.fd, image);
    if (length < 0) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    if (static_cast<size_t>(length) == sizeof image) {
        return LIBVX_RET_FAIL; // no partition holds that much, and there may be more of it
    }
    return flash_store_write(board, bob_store, {image, static_cast<size_t>(length)});
}

static int32_t get_bob(int board) {
    // Two at once would replace the file through the same new one.
    const board_fd dir(dir_lock(AT_FDCWD, image_dir));
    if (dir.fd < 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    uint8_t image[bob_size];
    size_t length = 0;
    const int32_t result = flash_store_read(board, bob_store, image, &length);
    if (result != LIBVX_RET_OK) {
        return result;
    }
    return file_replace(dir.fd, image_name, {image, length}) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}

int32_t libvx_sys_getBob(void) {
    return board_call(__func__, get_bob);
}

int32_t libvx_sys_saveBob(void) {
    return board_call(__func__, save_bob);
}
