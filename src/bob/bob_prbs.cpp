#include "bob/bob_prbs.h"

#include "bob/bob_chip.h"
#include "bob/bob_status.h"
#include "common/shell.h"
#include "common/words.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

static constexpr char SERDES_NODE[] = "/dev/vxserdes";

// Requests of the SerDes driver. What their argument points to is said behind each.
static constexpr unsigned long SERDES_SET_TX_PRBS = 0x40085401;   // the mode's text, as typed
static constexpr unsigned long SERDES_GET_STATE = 0x40085402;     // int32_t: mode, or non-zero for a ready checker
static constexpr unsigned long SERDES_SET_RX_BIST = 0x40085403;   // int32_t: mode to enable, mode + 6 to disable
static constexpr unsigned long SERDES_START_COUNT = 0x40085404;   // no argument
static constexpr unsigned long SERDES_READ_COUNT = 0x40085406;    // uint32_t
static constexpr unsigned long SERDES_SET_RXTX_PRBS = 0x40085407; // as SERDES_SET_TX_PRBS
static constexpr unsigned long SERDES_SET_RXTX_BIST = 0x40085408; // as SERDES_SET_RX_BIST

static constexpr uint32_t MAX_MODE = 6;
static constexpr uint32_t MAX_SECONDS = 30;
static constexpr uint32_t COUNTER_OVERFLOW = 0x7FFFFFFF;

static constexpr char PRBS_USAGE[] =
    "Usage: vxcli bob prbs_set [0:close prbs, 1:epon prbs, 2:gpon prbs, 3:xepon prbs, 4:xgpon prbs, 5:xespon "
    "prbs, 6:xgspon prbs]\n"
    "Usage: vxcli bob prbs_get\n"
    "Usage: vxcli bob -sprbsrxbist [1:epon prbs, 2:gpon prbs, 3:xepon prbs, 4:xgpon prbs, 5:xespon prbs, "
    "6:xgspon prbs] [0:disbale; 1:enable]\n"
    "Usage: vxcli bob -gprbscounter [sec]";

static constexpr char NOT_READY[] =
    "VXGetPrbsCounters Error: RXBIST is not rx_ready, please check the configuration";

static int32_t usage_after(const char *message) {
    if (message != nullptr) {
        printf("%s\n", message);
    }
    printf("%s\n", PRBS_USAGE);
    return -1;
}

// The chip's row, or null after a message. An unknown chip only earns a line: the test needs the SerDes, not the
// chip.
static const bob_chip_s *prbs_chip(const char *unknown_line) {
    int32_t chip_type = 0;
    if (get_bob_chip_type(&chip_type) != 0) {
        printf("Check bosa chip type fail!\n");
        return nullptr;
    }
    const bob_chip_s &chip = bob_chip(chip_type);
    if (&chip == &bosaChips[BOB_UNKNOWN]) {
        printf("%s\n", unknown_line);
    }
    return &chip;
}

// The open driver node, or a negative number after a message.
static int open_serdes() {
    const int node = open(SERDES_NODE, O_RDWR);
    if (node < 0) {
        printf("failed to open %s\n", SERDES_NODE);
    }
    return node;
}

// ---- pattern generator ----

// What sets the two generator commands apart; the misspelling is the stations'.
struct generator_s {
    unsigned long request;
    const char *empty_message;
    const char *unknown_line;
    bool names_chip;
    const char *result_name;
};

static constexpr generator_s TX_GENERATOR = {SERDES_SET_TX_PRBS,
                                             "prbs_txset prbs_mode invalid. ex: 0, 1, 2, 3, 4, 5, 6",
                                             "bob:BOSA Chip Type: Unknown.", true, "prbs_set"};
static constexpr generator_s RXTX_GENERATOR = {SERDES_SET_RXTX_PRBS,
                                               "prbs_RXTXset prbs_mode invalid. ex: 1, 2, 3, 4, 5, 6",
                                               "bob: BOSA Chip Type: Unknonw.", false, "prbs_RXTX_set"};

static int32_t set_generator(int32_t argc, const char *const argv[], const generator_s &generator) {
    if (argc != 2) {
        return usage_after(nullptr);
    }
    if (argv[1][0] == '\0') {
        return usage_after(generator.empty_message);
    }
    const bob_chip_s *chip = prbs_chip(generator.unknown_line);
    if (chip == nullptr) {
        return -1;
    }
    if (generator.names_chip) {
        printf("Bob chip_type: %s\n", chip->name);
    }
    const int node = open_serdes();
    if (node < 0) {
        return -1;
    }
    // The driver judges the text.
    const bool set = ioctl(node, generator.request, argv[1]) == 0;
    printf("vxcli bob %s %s\n", generator.result_name, set ? "OK" : "fail");
    close(node);
    return set ? 0 : -1;
}

int32_t bob_prbs_set(int32_t argc, const char *const argv[], const char *) {
    return set_generator(argc, argv, TX_GENERATOR);
}

int32_t bob_prbs_rxtx_set(int32_t argc, const char *const argv[], const char *) {
    return set_generator(argc, argv, RXTX_GENERATOR);
}

int32_t bob_prbs_get(int32_t, const char *const[], const char *) {
    const bob_chip_s *chip = prbs_chip("bob:BOSA Chip Type: Unknown.");
    if (chip == nullptr) {
        return -1;
    }
    printf("Bob chip_type: %s\n", chip->name);
    const int node = open_serdes();
    if (node < 0) {
        return -1;
    }
    int32_t mode = -1;
    const bool got = ioctl(node, SERDES_GET_STATE, &mode) == 0;
    if (got) {
        printf("vxcli bob prbs_get %d\n", mode);
    } else {
        printf("vxcli bob prbs_get fail\n");
    }
    close(node);
    return got ? 0 : -1;
}

// ---- checker ----

// The two checker commands share all texts but these.
struct checker_s {
    unsigned long request;
    const char *unknown_line;
    const char *input_line; // in front of the mode
    const char *input_between;
};

static constexpr checker_s RX_CHECKER = {SERDES_SET_RX_BIST, "bob:BOSA Chip Type: Unknown.",
                                         "vxcli bob sprbsrxbist input:prbsMode=", ",RxbistEnable="};
static constexpr checker_s RXTX_CHECKER = {SERDES_SET_RXTX_BIST, "bob: BOSA Chip Type: Unknown.",
                                           "vxcli bob sprbsrxbist input: prbsMode=", ", RxbistEnable="};

static int32_t set_checker(int32_t argc, const char *const argv[], const checker_s &checker) {
    if (argc != 3) {
        return usage_after(nullptr);
    }
    const std::optional<uint32_t> mode = word_to_u32(argv[1]);
    if (!mode || *mode < 1 || *mode > MAX_MODE) {
        return usage_after("bob_set_prbs_rx_bist prbs_mode invalid. ex: 1, 2, 3, 4, 5, 6");
    }
    const std::optional<int64_t> enable_number = word_to_i64(argv[2]);
    if (!enable_number) {
        return usage_after("bob_set_prbs_rx_bist enable invalid. ex: 0, 1");
    }
    const bool enable = *enable_number != 0;
    if (prbs_chip(checker.unknown_line) == nullptr) {
        return -1;
    }
    printf("%s%d%s%d\n", checker.input_line, static_cast<int>(*mode), checker.input_between, enable ? 1 : 0);
    const int node = open_serdes();
    if (node < 0) {
        printf("Close tm_sample_dev fail!\n");
        return -1;
    }
    const int32_t value = static_cast<int32_t>(enable ? *mode : *mode + MAX_MODE);
    const bool set = ioctl(node, checker.request, &value) == 0;
    if (!set) {
        printf("ioctl s_prbs_rx_bist error\n");
    }
    close(node);
    printf("Close tm_sample_dev %s!\n", set ? "success" : "fail");
    return set ? 0 : -1;
}

int32_t bob_set_prbs_rx_bist(int32_t argc, const char *const argv[], const char *) {
    return set_checker(argc, argv, RX_CHECKER);
}

int32_t bob_set_prbs_rxtx_bist(int32_t argc, const char *const argv[], const char *) {
    return set_checker(argc, argv, RXTX_CHECKER);
}

// ---- timed error count ----

// Makes one request; after a failure prints its lines.
static int32_t count_request(int node, unsigned long request, void *argument, const char *failure) {
    const int32_t result = ioctl(node, request, argument);
    if (result != 0) {
        printf("%s\n%s\n", failure, NOT_READY);
    }
    return result;
}

// Sets *ready to the checker's state and, when it is ready, starts the count and prints where it begins.
static int32_t start_count(int node, bool *ready) {
    int32_t state = -1;
    int32_t result = count_request(node, SERDES_GET_STATE, &state, "ioctl prbs_get error");
    *ready = state != 0;
    if (result != 0 || !*ready) {
        return result;
    }
    result = count_request(node, SERDES_START_COUNT, nullptr, "ioctl g_prbs_counter error");
    if (result != 0) {
        return result;
    }
    int32_t counter = -1;
    result = count_request(node, SERDES_READ_COUNT, &counter, "ioctl prbs_counter_show before error");
    if (result == 0) {
        printf("VXGetPrbsCounters counter before timer = %d\n", counter);
        printf("Close tm_sample_dev success!\n");
    }
    return result;
}

int32_t bob_get_prbs_counter(int32_t argc, const char *const argv[], const char *) {
    if (argc != 2) {
        return usage_after(nullptr);
    }
    const bob_chip_s *chip = prbs_chip("bob:BOSA Chip Type: Unknown.");
    if (chip == nullptr) {
        return -1;
    }
    printf("Bob chip_type: %s\n", chip->name);
    const std::optional<uint32_t> seconds = word_to_u32(argv[1]);
    if (!seconds || *seconds < 1 || *seconds > MAX_SECONDS) {
        return usage_after("bob_get_prbs_counter sec invalid. ex: 1-30");
    }
    const int node = open_serdes();
    if (node < 0) {
        printf("%s\n", NOT_READY);
        return -1;
    }
    bool ready = false;
    const int32_t result = start_count(node, &ready);
    close(node);
    if (result != 0) {
        return result;
    }
    if (!ready) {
        printf("%s\n", NOT_READY);
        return 0;
    }
    shell_run("sleep %d && vxcli bob -prbscounter_show &", static_cast<int>(*seconds));
    return 0;
}

int32_t bob_prbs_counter_show(int32_t argc, const char *const[], const char *) {
    if (argc != 1) {
        return usage_after(nullptr);
    }
    const int node = open_serdes();
    if (node < 0) {
        return -1;
    }
    uint32_t counter = 0;
    const int32_t result = ioctl(node, SERDES_READ_COUNT, &counter);
    if (result != 0) {
        printf("ioctl prbs_counter_show error\n");
        close(node);
        return result;
    }
    close(node);
    if (counter >= COUNTER_OVERFLOW) {
        printf("VXGetPrbsCounters Error: Overflow detected\n");
        return 0;
    }
    printf("PrbsCounterGetHandler counter after timer = %u\n", counter);
    printf("VXGetPrbsCounters counter: %u.\n", counter);
    return 0;
}
