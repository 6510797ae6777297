// Bus writes and waits that are only noted, in the place of libvx's and libc's own.
#ifndef FAKE_LIBVX_H
#define FAKE_LIBVX_H

#include <string>
#include <vector>

// What was done to the bus and how long was waited, oldest first: "w 51 7c 4", "wait 5000". Numbers of the bus in
// hexadecimal, lengths and waits in decimal.
extern std::vector<std::string> fake_log;

// The number of the write that fails, counted from 1; 0: none.
extern int fake_failing_write;

#endif
