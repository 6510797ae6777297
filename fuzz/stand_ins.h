// Stand-ins for the calls that redirect.h takes away, those about open files: memory_board.cpp has them. The others
// are in stand_ins.cpp; nobody else calls them.
#ifndef FUZZ_STAND_INS_H
#define FUZZ_STAND_INS_H

#include <sys/types.h>

extern "C" {
int fuzz_open(const char *path, int flags, ...);
int fuzz_close(int fd);
ssize_t fuzz_read(int fd, void *data, size_t size);
ssize_t fuzz_write(int fd, const void *data, size_t size);
off_t fuzz_lseek(int fd, off_t offset, int whence);
int fuzz_access(const char *path, int mode);
}

#endif
