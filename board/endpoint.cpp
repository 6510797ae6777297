#include "endpoint.h"

#include "attr_numbers.h"
#include "board_call.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static constexpr uint32_t upstream_rate_max = 1024000; // kbps
static constexpr size_t numbers_max = 1 + 2 * LIBVX_QUEUES;

endpoint_path::endpoint_path(endpoint of, const char *attribute) {
    snprintf(text, sizeof text, "%s%u%s%s", of.kind.name, of.number, *attribute != '\0' ? "/" : "", attribute);
}

bool endpoint_exists(int dir, endpoint of) {
    if (of.kind.count == nullptr) {
        return faccessat(dir, endpoint_path(of, "").text, F_OK, 0) == 0;
    }
    uint32_t count = 0;
    return attr_read_number(dir, of.kind.count, UINT16_MAX, &count) && of.number < count;
}

int32_t endpoint_read(int dir, endpoint of, const char *attribute, std::span<uint32_t> numbers) {
    uint64_t values[numbers_max];
    const std::span<uint64_t> wanted(values, numbers.size());
    if (attribute == nullptr || !endpoint_exists(dir, of)) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    if (!attr_read_numbers(dir, endpoint_path(of, attribute).text, wanted) ||
        std::ranges::any_of(wanted, [](uint64_t value) { return value > UINT32_MAX; })) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    std::ranges::transform(wanted, numbers.begin(), [](uint64_t value) { return static_cast<uint32_t>(value); });
    return LIBVX_RET_OK;
}

int32_t endpoint_write(int dir, endpoint of, const char *attribute, std::span<const bounded_number> numbers) {
    uint32_t values[numbers_max];
    const auto bad = [](const bounded_number &number) { return number.value > number.max; };
    if (attribute == nullptr || std::ranges::any_of(numbers, bad) || !endpoint_exists(dir, of)) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    std::ranges::transform(numbers, values, &bounded_number::value);
    const endpoint_path path(of, "");
    mkdirat(dir, path.text, 0755); // the first attribute of an endpoint that is only counted
    const board_fd own(openat(dir, path.text, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return own.fd >= 0 && attr_write_numbers(own.fd, attribute, {values, numbers.size()})
               ? LIBVX_RET_OK
               : LIBVX_RET_FILE_WRITE_FAIL;
}

// ---- attributes ----

int32_t endpoint_get(const char *operation, endpoint of, const char *attribute,
                     std::initializer_list<uint32_t *> numbers) {
    if (std::ranges::find(numbers, nullptr) != numbers.end()) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(operation, [=](int board) {
        const board_fd dir(dir_lock(board, of.kind.directory));
        uint32_t values[numbers_max];
        const int32_t result = endpoint_read(dir.fd, of, attribute, {values, numbers.size()});
        if (result == LIBVX_RET_OK) {
            const uint32_t *value = values;
            for (uint32_t *number : numbers) {
                *number = *value++;
            }
        }
        return result;
    });
}

static int32_t set_numbers(const char *operation, endpoint of, const char *attribute,
                           std::span<const bounded_number> numbers) {
    return board_call(operation, [=](int board) {
        const board_fd dir(dir_lock(board, of.kind.directory));
        return endpoint_write(dir.fd, of, attribute, numbers);
    });
}

int32_t endpoint_set(const char *operation, endpoint of, const char *attribute,
                     std::initializer_list<bounded_number> numbers) {
    return set_numbers(operation, of, attribute, {numbers.begin(), numbers.size()});
}

// ---- queue schedules: the mode, eight priorities, eight weights ----

int32_t schedule_get(const char *operation, endpoint of, uint32_t *mode, uint8_t *prio, uint8_t *weight) {
    if (mode == nullptr || prio == nullptr || weight == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(operation, [=](int board) {
        const board_fd dir(dir_lock(board, of.kind.directory));
        uint32_t values[1 + 2 * LIBVX_QUEUES];
        const int32_t result = endpoint_read(dir.fd, of, "qos", values);
        if (result != LIBVX_RET_OK) {
            return result;
        }
        const std::span<const uint32_t> queues = std::span(values).subspan(1);
        if (std::ranges::any_of(queues, [](uint32_t value) { return value > UINT8_MAX; })) {
            return int32_t{LIBVX_RET_FILE_READ_FAIL};
        }
        *mode = values[0];
        for (size_t i = 0; i < LIBVX_QUEUES; i++) {
            prio[i] = static_cast<uint8_t>(queues[i]);
            weight[i] = static_cast<uint8_t>(queues[LIBVX_QUEUES + i]);
        }
        return int32_t{LIBVX_RET_OK};
    });
}

int32_t schedule_set(const char *operation, endpoint of, uint32_t mode, const uint8_t *prio,
                     const uint8_t *weight) {
    if (prio == nullptr || weight == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    bounded_number numbers[1 + 2 * LIBVX_QUEUES];
    numbers[0] = {mode, LIBVX_PON_QUEUE_SP_WRR};
    for (size_t i = 0; i < LIBVX_QUEUES; i++) {
        numbers[1 + i] = {prio[i], UINT8_MAX};
        numbers[1 + LIBVX_QUEUES + i] = {weight[i], UINT8_MAX};
    }
    return set_numbers(operation, of, "qos", numbers);
}

// ---- upstream rate limits ----

int32_t upstream_get(const char *operation, endpoint of, uint32_t *en, uint32_t *rate) {
    return endpoint_get(operation, of, "rate", {en, rate});
}

int32_t upstream_set(const char *operation, endpoint of, uint32_t en, uint32_t rate) {
    return endpoint_set(operation, of, "rate", {{en, 1}, {rate, upstream_rate_max}});
}

struct queue_attribute {
    const char *name; // null: there is no such queue
    char text[16];

    explicit queue_attribute(uint16_t queue) : name(nullptr) {
        const board_fd board(board_open());
        uint32_t queues = 0;
        if (board.fd >= 0 && attr_read_number(board.fd, "pon/queues", UINT16_MAX, &queues) && queue < queues) {
            snprintf(text, sizeof text, "queue%u_rate", unsigned{queue});
            name = text;
        }
    }
};

int32_t queue_upstream_get(const char *operation, endpoint of, uint16_t queue, uint32_t *en, uint32_t *rate) {
    return endpoint_get(operation, of, queue_attribute(queue).name, {en, rate});
}

int32_t queue_upstream_set(const char *operation, endpoint of, uint16_t queue, uint32_t en, uint32_t rate) {
    return endpoint_set(operation, of, queue_attribute(queue).name, {{en, 1}, {rate, upstream_rate_max}});
}

// ---- single numbers ----

uint32_t number_get(const char *operation, const char *directory, const char *attribute, uint32_t max) {
    uint32_t number = 0;
    board_call(operation, [&](int board) {
        const board_fd dir(dir_lock(board, directory));
        const bool ok = dir.fd >= 0 && attr_read_number(dir.fd, attribute, max, &number);
        return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_READ_FAIL;
    });
    return number;
}

int32_t flag_set(const char *operation, const char *directory, const char *attribute, uint32_t value) {
    return board_call(operation, [=](int board) {
        if (value > 1) {
            return LIBVX_RET_INVALID_PARAMETER;
        }
        return attr_set_number(board, directory, attribute, value) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}
