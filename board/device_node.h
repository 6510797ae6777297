// Real hardware in the board: a device node that an entry of the board leads to.
#ifndef DEVICE_NODE_H
#define DEVICE_NODE_H

// Why a device does not do what it is asked for.
enum class node_state {
    ok,
    missing, // no node there, or no device behind it (any more)
    denied,  // no permission
    refused, // not a node of this kind, or the device cannot do it
};

// The state's word in the trace.
const char *node_word(node_state state);

// The state that the errno of a system call on a device tells of.
node_state node_failure(int error);

inline constexpr unsigned node_i2c = 89; // major numbers of the kernel's drivers
inline constexpr unsigned node_mtd = 90;

// Opens the character device of this driver that `name` in `dir` leads to, for reading and writing, and waits for
// its lock, which closing gives back. Returns a descriptor that the caller owns, or -1 and the reason in `state`.
// Nothing but such a device is opened: with other files opening alone may block or set something off.
int node_open(int dir, const char *name, unsigned driver, node_state *state);

#endif
