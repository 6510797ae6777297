// The transceiver ("BOSA on board") group: its command table and the commands about the driver's status.

#include "vxcli.h"

#include "bob/bob_chip.h"
#include "bob/bob_diag.h"
#include "bob/bob_lifecycle.h"
#include "bob/bob_mod_lut.h"
#include "bob/bob_prbs.h"
#include "bob/bob_register.h"
#include "bob/bob_status.h"
#include "bob/bob_table.h"

#include <cstdio>
#include <cstring>

static int32_t bob_driver(int32_t, const char *const[], const char *) {
    int32_t status = 0;
    get_bob_driver_status(&status);
    printf("bob:bob driver init %s.\n", status == 1 ? "SUCCESS" : "FAIL");
    return 0;
}

static int32_t bob_iic_get(int32_t, const char *const[], const char *) {
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    int32_t status = 0;
    get_bob_driver_status(&status);
    printf("Bob chip_type: %s\n", bob_chip(chip_type).name);
    printf("vxcli bob iic_get %s\n", status == 1 ? "start" : "stop");
    return 0;
}

// Changes the status only: the chip and the other commands take no notice.
static int32_t bob_iic_set(int32_t argc, const char *const argv[], const char *) {
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    if (argc < 2) {
        printf("Please specify start or stop.\n");
        return -1;
    }
    const bool start = strcmp(argv[1], "start") == 0;
    if (!start && strcmp(argv[1], "stop") != 0) {
        // Deliberately not a failure.
        printf("vxcli bob iic_set value not correct. should be [start/stop].\n");
        return 0;
    }
    set_bob_driver_status(start ? 1 : 0);
    printf("Bob chip_type: %s\n", bob_chip(chip_type).name);
    printf("vxcli bob iic_set OK\n");
    return 0;
}

// The help texts are kept to the letter, those copied from other commands included: they are listed by
// scripts.
constinit const vxcli_cmd_t bob_cmds[] = {
    {"read", bob_read, 0, "read : read bob data from flash"},
    {"opt", bob_get_opt, 0, "opt : get optical diagnostic parameters"},
    {"save", bob_save, 0, "save : save bob data to flash"},
    {"get", bob_get, 0, "get : get register value"},
    {"set", bob_set, 0, "set : set register value"},
    {"init", bob_init, 0, "init : init bob"},
    {"restore", bob_restore, 0, "restore : restore bob cfg to default"},
    {"driver", bob_driver, 0, "show : show bob init result"},
    {"generate_mod", bob_generate_mod_lut, 0, "generate_mod : generate mod lut"},
    {"prbs_set", bob_prbs_set, 0, "prbs_set : prbs_mode set "},
    {"prbs_get", bob_prbs_get, 0, "prbs_get : prbs_mode get "},
    {"-sprbsrxbist", bob_set_prbs_rx_bist, 0, "-sprbsrxbist :  set rx prbs "},
    {"-gprbscounter", bob_get_prbs_counter, 0, "-gprbscounter : get prbs counter "},
    {"prbs_set_rxtx", bob_prbs_rxtx_set, 0, "prbs_set : prbs_mode set"},
    {"-sprbsrxtxbist", bob_set_prbs_rxtx_bist, 0, "-sprbsrxbist : set rx prbs"},
    {"-prbscounter_show", bob_prbs_counter_show, 0, "-prbscounter_show : get prbs counter show"},
    {"add", bob_add, 0, "add : redir add printk"},
    {"iic_set", bob_iic_set, 0, "iic_set : start/stop bob driver"},
    {"iic_get", bob_iic_get, 0, "iic_get : get bob driver status"},
    {"read_reg", bob_read_reg, 0, "read_reg : read one register value"},
    {"write_reg", bob_write_reg, 0, "write_reg : write one register value"},
    {"read_regs", bob_read_regs, 0, "read_regs : read more than one register value"},
    {"write_regs", bob_write_regs, 0, "write_regs : write more than one register value"},
    {"table_sel", bob_table_sel, 0, "table_sel : select A2 table"},
    {"write_all_datas_to_flash", bob_save, 0, "save : save bob data to flash"},
    {"catv", bob_get_catv, 0, "catv : get catv diagnostic parameters"},
    {"catvrf", bob_set_catvrf, 0, "catvrf : set catv rf diagnostic parameters"},
    {"catvoa", bob_set_catvoa, 0, "catvoa : set catv oa diagnostic parameters"},
    {nullptr, nullptr, 0, nullptr},
};
