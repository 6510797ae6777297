// The board directory as the library sees it: where it is, its attributes, its locks.
//
// An attribute is a small text file. Whoever changes one holds the lock of the directory that it is in, and the
// change is a single step, so that neither a reader without the lock (cat) nor a writer that is killed meets or
// leaves half of one.
#ifndef BOARD_DIR_H
#define BOARD_DIR_H

#include <cstddef>
#include <cstdint>
#include <span>

// An open file or directory, closed at the end of its scope; fd is negative if it could not be opened.
struct board_fd {
    int fd;

    explicit board_fd(int opened) : fd(opened) {}
    board_fd(const board_fd &) = delete;
    board_fd &operator=(const board_fd &) = delete;
    ~board_fd();
};

// Opens the board that VXBOARD names. Returns a descriptor that the caller owns, or -1. It is opened for every
// operation anew: nothing is held between operations, so threads and forked processes need no care.
int board_open();

// Waits for the lock of an open file, which closing it gives back. Returns `fd`; or -1, with `fd` closed, if there
// is none to have.
int fd_lock(int fd);

// Opens the directory `name` ("." for `dir` itself) and waits for its lock, which closing gives back. The
// descriptor is the caller's; -1 if the directory is not there.
int dir_lock(int dir, const char *name);

// Reads up to data.size() bytes. Returns how many there were, or -1.
ptrdiff_t file_read(int fd, std::span<uint8_t> data);

// Writes all of `data`; false if it could not.
bool file_write(int fd, std::span<const uint8_t> data);

// The same at an offset; false unless all bytes could be read or written.
bool file_read_at(int fd, uint32_t offset, std::span<uint8_t> data);
bool file_write_at(int fd, uint32_t offset, std::span<const uint8_t> data);

// Puts a file with `data` in the place of `name` in `dir`, mode 0644 whatever the umask. The caller holds a lock
// that keeps other writers of `name` away. A failure leaves the file as it was. `synced`: also a crash of the host
// leaves the old or the new file; that costs milliseconds.
bool file_replace(int dir, const char *name, std::span<const uint8_t> data, bool synced = false);

enum class attr_state { ok, missing, damaged };

// Reads an attribute into `text`, ended by a NUL, without its final newline. It is damaged if it cannot be read,
// does not fit or is no text; `text` is then undefined.
attr_state attr_read(int dir, const char *name, std::span<char> text);

// Reads a decimal attribute of 0 to `max`. A missing or empty one counts as 0; false for anything else.
bool attr_read_number(int dir, const char *name, uint32_t max, uint32_t *value);

// Sets an attribute to the formatted text and a newline (together at most 64 characters). False leaves it as it
// was.
bool attr_write(int dir, const char *name, const char *format, ...) __attribute__((format(printf, 3, 4)));

// The same for what changes with every transfer: replacing a file costs ten times as much on a journalling file
// system. A text of the same length goes over the old one with a single write, so a reader without the lock must
// take it in a single read (as cat does, the shell's read does not).
bool attr_update(int dir, const char *name, const char *format, ...) __attribute__((format(printf, 3, 4)));

// Sets a number in the board's directory `directory`, under the lock of that directory. False leaves it as it was.
bool attr_set_number(int board, const char *directory, const char *name, uint32_t value);

#endif
