// Where traffic begins and ends: LLIDs, T-CONTs, switch ports. They are numbered, have attributes of their own in
// the directory of their link or of the switch, and queues with schedules and rate limits, which are the same for
// all.
#ifndef ENDPOINT_H
#define ENDPOINT_H

#include <cstdint>
#include <initializer_list>
#include <span>

struct endpoint_kind {
    const char *directory; // of the board; all that is done holds its lock
    const char *name;      // number 3 has its attributes in NAME3
    const char *count;     // the attribute that counts them; null: those exist that have a directory
};

inline constexpr endpoint_kind epon_llid = {"pon/epon", "llid", "llids"};
inline constexpr endpoint_kind gpon_tcont = {"pon/gpon", "tcont", "tconts"};
inline constexpr endpoint_kind switch_port = {"switch", "port", nullptr};

struct endpoint {
    const endpoint_kind &kind;
    uint32_t number;
};

// Whether there is such an endpoint; `dir` is the kind's directory.
bool endpoint_exists(int dir, endpoint of);

// The path of one of its attributes from the kind's directory, or of its directory if `attribute` is empty.
struct endpoint_path {
    char text[64];

    endpoint_path(endpoint of, const char *attribute);
};

// A number that is to be stored, from 0 to `max`.
struct bounded_number {
    uint32_t value;
    uint32_t max;
};

// Read and set the numbers of an attribute, 17 at most; `dir` is the kind's directory, and locked. Each returns a
// libvx_retCode_t and changes nothing if it fails. An attribute that was never set reads as zeros.
int32_t endpoint_read(int dir, endpoint of, const char *attribute, std::span<uint32_t> numbers);
int32_t endpoint_write(int dir, endpoint of, const char *attribute, std::span<const bounded_number> numbers);

// ---- whole operations ----
// Each is the work of the library operation of that name and returns its result. A null pointer, a null attribute,
// an endpoint or a queue that does not exist and a number out of its range are refused; a getter that fails leaves
// its out-parameters as they were.

int32_t endpoint_get(const char *operation, endpoint of, const char *attribute,
                     std::initializer_list<uint32_t *> numbers);
int32_t endpoint_set(const char *operation, endpoint of, const char *attribute,
                     std::initializer_list<bounded_number> numbers);

// The schedule of the eight queues.
int32_t schedule_get(const char *operation, endpoint of, uint32_t *mode, uint8_t *prio, uint8_t *weight);
int32_t schedule_set(const char *operation, endpoint of, uint32_t mode, const uint8_t *prio, const uint8_t *weight);

// The upstream rate limit of an LLID or a T-CONT, in kbps, and that of one of its queues.
int32_t upstream_get(const char *operation, endpoint of, uint32_t *en, uint32_t *rate);
int32_t upstream_set(const char *operation, endpoint of, uint32_t en, uint32_t rate);
int32_t queue_upstream_get(const char *operation, endpoint of, uint16_t queue, uint32_t *en, uint32_t *rate);
int32_t queue_upstream_set(const char *operation, endpoint of, uint16_t queue, uint32_t en, uint32_t rate);

// A number of the board by itself, which is the result; 0 if it cannot be read.
uint32_t number_get(const char *operation, const char *directory, const char *attribute, uint32_t max);

// A switch, 0 or 1.
int32_t flag_set(const char *operation, const char *directory, const char *attribute, uint32_t value);

#endif
