#include "bob/bob_diag.h"

#include "bob/bob_power.h"
#include "common/words.h"
#include "libvx.h"

#include <cstdio>

int32_t bob_get_opt(int32_t, const char *const[], const char *) {
    libvx_pon_ctcOptDiag_t diag = {};
    libvx_ponApi_eponGetOptDiag(&diag);
    printf("TxPwr \t%d \t(%.2f dBm)\n", int{diag.txPwr}, bob_power_to_dbm(diag.txPwr));
    printf("RxPwr \t%d \t(%.2f dBm)\n", int{diag.rxPwr}, bob_power_to_dbm(diag.rxPwr));
    // The question marks and the missing parenthesis are as the stations know them.
    printf("Temp \t%d \t(%d ???\n", int{diag.temp}, diag.temp / 256);
    printf("Vcc \t%d \t(%d mV)\n", int{diag.vcc}, diag.vcc / 10);
    printf("Bias \t%d \t(%d mA)\n", int{diag.txBias}, diag.txBias / 500);
    return 0;
}

int32_t bob_get_catv(int32_t, const char *const[], const char *) {
    libvx_pon_catvDiag_t diag = {};
    libvx_ponApi_gponGetCatvDiag(&diag);
    printf("Input Optical Power      \t%d \t(%.1f dBm)\n", int{diag.optPwr}, diag.optPwr * 0.1);
    printf("Output Level             \t%d \t(%d dBmV)\n", int{diag.outLvl}, diag.outLvl - 60);
    printf("Temperature              \t%d \t(%d Celsius)\n", int{diag.temp}, int{diag.temp});
    printf("RF Switch                \t%d \t(%d)\n", int{diag.rfSwitch}, int{diag.rfSwitch});
    printf("Output Level Attenuation \t%d \t(%d dBm)\n", int{diag.outAtte}, int{diag.outAtte});
    return 0;
}

// The value word of the two CATV settings; nothing after a message. Both ask for "rf": the text is shared.
static std::optional<int32_t> take_catv_value(int32_t argc, const char *const argv[]) {
    if (argc < 2) {
        printf("Please specify rf.\n");
        return std::nullopt;
    }
    const std::optional<int64_t> value = word_to_i64(argv[1]);
    if (!value) {
        printf("number invalid. ex: 0, 1, 2 ...\n");
        return std::nullopt;
    }
    return static_cast<int32_t>(*value);
}

int32_t bob_set_catvrf(int32_t argc, const char *const argv[], const char *) {
    const std::optional<int32_t> value = take_catv_value(argc, argv);
    if (!value) {
        return -1;
    }
    libvx_ponApi_gponSetCatvRf(*value);
    printf("RF Switch                \t(%d)\n", *value);
    return 0;
}

int32_t bob_set_catvoa(int32_t argc, const char *const argv[], const char *) {
    const std::optional<int32_t> value = take_catv_value(argc, argv);
    if (!value) {
        return -1;
    }
    libvx_ponApi_gponSetCatvOutAtte(*value);
    printf("Output Level Attenuation \t%d \n", *value);
    return 0;
}

// A leftover that only prints; scripts wait for its text.
int32_t bob_add(int32_t, const char *const[], const char *) {
    printf("ttyconsole: tty console start\n");
    printf("OKredir add printk success!\n");
    return 0;
}
