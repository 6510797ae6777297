// Fault injection: the file `faults` of the board says which operations fail.
//
//   <operation> [dev=0x51] [reg=0x7f] [skip=N] [times=N|always] [result=N]     # comment
//
// An operation is a library operation's name; dev and reg (the first register) narrow a rule down to bus transfers
// to that place. A rule lets `skip` matching calls through (default 0), then fails `times` of them (default 1)
// with `result` (default 6). The file is rewritten as rules count and goes without those that are used up, so it
// always shows what is still armed. A call is shown to the rules from the top; the first that fires decides, and
// those below do not see it. Lines that make no sense never fire and stay. A file above 8 KiB is not looked at.
#ifndef BOARD_FAULTS_H
#define BOARD_FAULTS_H

#include <cstdint>

// What is about to be done. Only a transfer has a device and a register.
struct fault_point {
    const char *operation;
    bool transfer = false;
    uint32_t device = 0;
    uint32_t reg = 0;
};

// True if a rule fires for this call: `result` then holds what the operation has to return.
bool fault_strikes(int board, const fault_point &point, int32_t *result);

#endif
