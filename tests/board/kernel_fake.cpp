// The kernel's side of an I2C bus and of a flash partition, preloaded in front of the board library: FAKE_I2C and
// FAKE_MTD name files that become device nodes. Requests are noted in the file of the same name with ".log": with
// "!" if they fail, with "unlocked" if the node's lock is not held. Numbers may be hexadecimal; absent: 0.
//
//   FAKE_I2C    holds the 256 registers of device 0x51; nobody else answers
//   FAKE_FUNCS  what the adapter can do, as I2C_FUNCS says it; FAKE_LIMIT: the longest message, 0: any
//   FAKE_BUSY   so many requests after a write are not acknowledged
//   FAKE_MTD    the cells; FAKE_ERASE, FAKE_WRITE: sizes; FAKE_BAD: the bad block; FAKE_STUCK: a cell that no erase
//               sets
//   FAKE_ERROR  the errno of all requests

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <mtd/mtd-user.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#define PRELOADED extern "C" __attribute__((visibility("default")))

static uint32_t setting(const char *name, uint32_t absent = 0) {
    const char *text = getenv(name);
    return text != nullptr ? static_cast<uint32_t>(strtoul(text, nullptr, 0)) : absent;
}

static bool look(int dir, const char *path, struct stat *status, int flags) {
    return path != nullptr && syscall(SYS_newfstatat, dir, path, status, flags) == 0;
}

static constexpr char bus[] = "FAKE_I2C";
static constexpr char flash[] = "FAKE_MTD";

// Which node that is, or null.
static const char *node_of(int dir, const char *path, int flags) {
    struct stat status = {};
    struct stat mine = {};
    for (const char *node : {bus, flash}) {
        if (look(AT_FDCWD, getenv(node), &mine, 0) && look(dir, path, &status, flags) &&
            mine.st_ino == status.st_ino) {
            return node;
        }
    }
    return nullptr;
}

static char said[2048]; // of the request at hand

__attribute__((format(printf, 1, 2))) static void say(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const size_t length = strlen(said);
    vsnprintf(said + length, sizeof said - length, format, arguments);
    va_end(arguments);
}

// Ends a request: 0, or -1 and the error.
static int answer(const char *node, uint32_t error) {
    const int other = static_cast<int>(syscall(SYS_openat, AT_FDCWD, getenv(node), O_RDONLY | O_CLOEXEC));
    const bool locked = flock(other, LOCK_EX | LOCK_NB) != 0;
    close(other);
    char path[512];
    snprintf(path, sizeof path, "%s.log", getenv(node));
    FILE *log = fopen(path, "ae");
    fprintf(log, "%s%s%s\n", said, error != 0 ? " !" : "", locked ? "" : " unlocked");
    fclose(log);
    said[0] = '\0';
    errno = error != 0 ? static_cast<int>(error) : errno;
    return error != 0 ? -1 : 0;
}

// ---- I2C ----

static uint8_t next_register;
static uint32_t busy;
static uint16_t slave;

// A message to the chip, or from it. False: not acknowledged.
static bool message(int fd, const i2c_msg &each) {
    const bool read = (each.flags & I2C_M_RD) != 0;
    say(read ? " + r %02x" : "w %02x", each.addr);
    if (each.addr != 0x51 || busy > 0) {
        busy -= busy > 0 ? 1 : 0;
        return false;
    }
    for (uint32_t i = 0; i < each.len; i++) {
        if (!read) {
            say(" %02x", each.buf[i]);
        }
        if (!read && i == 0) {
            next_register = each.buf[0];
        } else if ((read ? pread(fd, each.buf + i, 1, next_register)
                         : pwrite(fd, each.buf + i, 1, next_register)) == 1) {
            next_register++;
        }
    }
    if (read) {
        say(" %u", each.len);
    }
    busy = !read && each.len > 1 ? setting("FAKE_BUSY") : busy;
    return true;
}

static int raw_request(int fd, const i2c_rdwr_ioctl_data &request) {
    i2c_msg *end = request.msgs + request.nmsgs;
    const uint32_t limit = setting("FAKE_LIMIT", 512);
    if (std::any_of(request.msgs, end, [=](const i2c_msg &each) { return each.len > limit; })) {
        return answer(bus, EOPNOTSUPP);
    }
    const bool ok = std::all_of(request.msgs, end, [=](const i2c_msg &each) { return message(fd, each); });
    return answer(bus, ok ? 0 : ENXIO) == 0 ? static_cast<int>(request.nmsgs) : -1;
}

static int smbus_request(int fd, const i2c_smbus_ioctl_data &request) {
    const bool sized = request.size == I2C_SMBUS_I2C_BLOCK_DATA;
    const bool read = request.read_write == I2C_SMBUS_READ;
    const uint8_t count = sized ? request.data->block[0] : 0;
    say("smbus ");
    if (count > I2C_SMBUS_BLOCK_MAX || sized != (count > 0) ||
        (!sized && (read || request.size != I2C_SMBUS_BYTE))) {
        return answer(bus, EINVAL);
    }
    uint8_t out[1 + I2C_SMBUS_BLOCK_MAX] = {request.command};
    std::copy_n(request.data->block + 1, read ? 0 : count, out + 1);
    const bool ok = message(fd, {slave, 0, static_cast<uint16_t>(read ? 1 : 1 + count), out}) &&
                    (!read || message(fd, {slave, I2C_M_RD, count, request.data->block + 1}));
    return answer(bus, ok ? 0 : EREMOTEIO);
}

// ---- flash ----

static uint8_t cells[0x40000]; // two of the largest erase blocks

static int erase(int fd, const erase_info_user &range) {
    say("erase %x %x", range.start, range.length);
    uint8_t stuck = 0xFF;
    const uint32_t at = setting("FAKE_STUCK", UINT32_MAX);
    const uint32_t block = setting("FAKE_ERASE", 1);
    const bool ok = range.start % block == 0 && range.length == block && pread(fd, &stuck, 1, at) >= 0 &&
                    pwrite(fd, memset(cells, 0xFF, sizeof cells), block, range.start) > 0 &&
                    (stuck == 0xFF || pwrite(fd, &stuck, 1, at) == 1);
    return answer(flash, ok ? 0 : EINVAL);
}

// Programming never sets a bit. Pages are programmed whole, once, in their block's order.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the system's headers use reserved names

PRELOADED ssize_t write(int fd, const void *data, size_t size) {
    if (node_of(fd, "", AT_EMPTY_PATH) != flash) {
        return syscall(SYS_write, fd, data, size);
    }
    const size_t page = setting("FAKE_WRITE", 1);
    const size_t block = setting("FAKE_ERASE", 1);
    const off_t place = lseek(fd, 0, SEEK_CUR);
    const size_t start = static_cast<size_t>(place);
    const size_t looked_at = page > 1 ? (start + size + block - 1) / block * block - start : size;
    const uint8_t *fresh = static_cast<const uint8_t *>(data);
    say("program %zx %zx", start, size);
    bool ok = start % page == 0 && size % page == 0 &&
              pread(fd, cells, looked_at, place) == static_cast<ssize_t>(looked_at);
    for (size_t i = 0; ok && i < looked_at; i++) {
        ok = page > 1 ? cells[i] == 0xFF : (fresh[i] & ~cells[i]) == 0;
    }
    return answer(flash, ok ? 0 : EIO) == 0 ? syscall(SYS_write, fd, data, size) : -1;
}

// ---- what the library calls ----

static int serve(int fd, unsigned long request, void *argument) {
    const uint32_t page = setting("FAKE_WRITE");
    switch (request) {
    case I2C_FUNCS:
        *static_cast<unsigned long *>(argument) = setting("FAKE_FUNCS");
        return 0;
    case I2C_SLAVE:
        slave = static_cast<uint16_t>(reinterpret_cast<uintptr_t>(argument));
        return 0;
    case I2C_RDWR:
        return raw_request(fd, *static_cast<i2c_rdwr_ioctl_data *>(argument));
    case I2C_SMBUS:
        return smbus_request(fd, *static_cast<i2c_smbus_ioctl_data *>(argument));
    case MEMGETINFO:
        *static_cast<mtd_info_user *>(argument) = {.type = MTD_NORFLASH,
                                                   .flags = MTD_CAP_NORFLASH,
                                                   .size = static_cast<uint32_t>(lseek(fd, 0, SEEK_END)),
                                                   .erasesize = setting("FAKE_ERASE"),
                                                   .writesize = page,
                                                   .oobsize = 0,
                                                   .padding = 0};
        return 0;
    case MEMERASE:
        return erase(fd, *static_cast<erase_info_user *>(argument));
    default: // MEMGETBADBLOCK
        errno = EOPNOTSUPP;
        return page == 1 ? -1
                         : static_cast<int>(*static_cast<loff_t *>(argument) == setting("FAKE_BAD", UINT32_MAX));
    }
}

PRELOADED int ioctl(int fd, unsigned long request, ...) {
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    const char *node = node_of(fd, "", AT_EMPTY_PATH);
    if (node == nullptr) {
        return static_cast<int>(syscall(SYS_ioctl, fd, request, argument));
    }
    const uint32_t error = setting("FAKE_ERROR");
    return error != 0 ? answer(node, error) : serve(fd, request, argument);
}

PRELOADED int fstatat(int dir, const char *path, struct stat *status, int flags) {
    const bool found = look(dir, path, status, flags);
    if (const char *node = node_of(dir, path, flags); found && node != nullptr) {
        status->st_mode = S_IFCHR | 0600;
        status->st_rdev = makedev(node == bus ? 89 : 90, 0);
    }
    return found ? 0 : -1;
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)
