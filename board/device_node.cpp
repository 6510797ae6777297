#include "device_node.h"

#include "board_dir.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

const char *node_word(node_state state) {
    switch (state) {
    case node_state::ok:
        return "ok";
    case node_state::missing:
        return "missing";
    case node_state::denied:
        return "denied";
    case node_state::refused:
        break;
    }
    return "refused";
}

node_state node_failure(int error) {
    switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO: // a node whose driver is not loaded
        return node_state::missing;
    case EACCES:
    case EPERM:
        return node_state::denied;
    default:
        return node_state::refused;
    }
}

int node_open(int dir, const char *name, unsigned driver, node_state *state) {
    struct stat status = {};
    if (fstatat(dir, name, &status, 0) != 0) {
        *state = node_failure(errno);
        return -1;
    }
    if (!S_ISCHR(status.st_mode) || major(status.st_rdev) != driver) {
        *state = node_state::refused;
        return -1;
    }
    const int node = fd_lock(openat(dir, name, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    *state = node >= 0 ? node_state::ok : node_failure(errno);
    return node;
}
