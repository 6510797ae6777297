// System information: configuration files in flash, firmware images and versions, the user's configuration, NAT.

#include "board_call.h"
#include "flash.h"
#include "flash_store.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <ftw.h>

static constexpr char sys_directory[] = "sys";
static constexpr char user_directory[] = "/userconfig/config";

// ---- configuration files ----

static constexpr flash_store backup_store = {.partition = "backup", .magic = flash_backup};
static constexpr flash_store preconf_store = {.partition = "preconf", .magic = flash_preconf};
static constexpr size_t config_size = 65536; // more than a bank holds

static int32_t get_config(const char *operation, const flash_store &store, const char *path) {
    if (path == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(operation, [&store, path](int board) -> int32_t {
        uint8_t config[config_size];
        size_t length = 0;
        const int32_t result = flash_store_read(board, store, config, &length);
        if (result != LIBVX_RET_OK) {
            return result;
        }
        const board_fd file(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
        if (file.fd < 0) {
            return LIBVX_RET_FILE_OPEN_FAIL;
        }
        return file_write(file.fd, {config, length}) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

static int32_t save_config(const char *operation, const flash_store &store, const char *path) {
    if (path == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(operation, [&store, path](int board) -> int32_t {
        const board_fd file(open(path, O_RDONLY | O_CLOEXEC));
        if (file.fd < 0) {
            return LIBVX_RET_FILE_OPEN_FAIL;
        }
        uint8_t config[config_size];
        const ptrdiff_t length = file_read(file.fd, config);
        if (length < 0) {
            return LIBVX_RET_FILE_READ_FAIL;
        }
        if (static_cast<size_t>(length) == sizeof config) {
            return LIBVX_RET_FAIL;
        }
        return flash_store_write(board, store, {config, static_cast<size_t>(length)});
    });
}

int32_t libvx_sys_getBackupConfig(const char *path) {
    return get_config(__func__, backup_store, path);
}

int32_t lib_sys_saveBackupConfig(const char *path) {
    return save_config(__func__, backup_store, path);
}

int32_t libvx_sys_getPreConfig(const char *path) {
    return get_config(__func__, preconf_store, path);
}

int32_t lib_sys_savePreConfig(const char *path) {
    return save_config(__func__, preconf_store, path);
}

int32_t libvx_sys_eraseBackupConfig(void) {
    return board_call(__func__, [](int board) { return flash_store_erase(board, backup_store); });
}

int32_t libvx_sys_erasePreConfig(void) {
    return board_call(__func__, [](int board) { return flash_store_erase(board, preconf_store); });
}

// ---- firmware ----

static attr_state read_sys(int board, const char *name, std::span<char> text) {
    const board_fd sys(openat(board, sys_directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return attr_read(sys.fd, name, text);
}

static int32_t get_text(const char *operation, const char *name, char *buf) {
    if (buf == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(operation, [=](int board) {
        char text[LIBVX_SYS_TEXT_SIZE + 1]; // one more for the newline of the file
        if (read_sys(board, name, text) != attr_state::ok || strlen(text) >= LIBVX_SYS_TEXT_SIZE) {
            return LIBVX_RET_FAIL;
        }
        memcpy(buf, text, strlen(text) + 1);
        return LIBVX_RET_OK;
    });
}

int32_t libvx_sys_getFwVersion(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "fw_version", buf);
}

int32_t libvx_sys_getBootVersion(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "boot_version", buf);
}

// The firmware's version is what there is to know of it.
int32_t libvx_sys_getFwInfo(void) {
    char version[LIBVX_SYS_TEXT_SIZE];
    return get_text(__func__, "fw_version", version);
}

int32_t libvx_sys_getMainImageMtd(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "main_image", buf);
}

int32_t libvx_sys_eraseBackupImageMtd(void) {
    return board_call(__func__, [](int board) {
        char main_image[16];
        if (read_sys(board, "main_image", main_image) != attr_state::ok) {
            return LIBVX_RET_FAIL;
        }
        const bool first_is_main = strcmp(main_image, "image0") == 0;
        if (!first_is_main && strcmp(main_image, "image1") != 0) {
            return LIBVX_RET_FAIL; // rather none erased than the one in use
        }
        const flash_partition image(board, first_is_main ? "image1" : "image0");
        if (image.size == 0) {
            return LIBVX_RET_FILE_OPEN_FAIL;
        }
        return flash_erase(image, 0, image.size) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

// ---- the user's configuration, NAT ----

// Everything below the directory goes, the directory itself (level 0) stays.
static int remove_entry(const char *path, const struct stat *, int, struct FTW *place) {
    return place->level == 0 ? 0 : remove(path);
}

int32_t libvx_sys_restoredefault(void) {
    return board_call(__func__, [](int) {
        const int open_at_once = 8;
        return nftw(user_directory, remove_entry, open_at_once, FTW_DEPTH | FTW_PHYS) == 0
                   ? LIBVX_RET_OK
                   : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

// There are no rules to see; `nat_flushes` counts how often they were dropped.
int32_t libvx_sys_vxnatFlush(void) {
    return board_call(__func__, [](int board) {
        const board_fd sys(dir_lock(board, sys_directory));
        uint32_t count = 0;
        const bool ok = sys.fd >= 0 && attr_read_number(sys.fd, "nat_flushes", UINT32_MAX, &count) &&
                        attr_write(sys.fd, "nat_flushes", "%u", count + 1);
        return ok ? LIBVX_RET_OK : LIBVX_RET_FAIL;
    });
}
