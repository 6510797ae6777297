// The system information group: its command table and the commands that are single calls into the device
// library.

#include "vxcli.h"

#include "common/words.h"
#include "libvx.h"
#include "sys/sys_ethwan.h"
#include "sys/sys_field.h"
#include "sys/sys_identity.h"
#include "sys/sys_info.h"
#include "sys/sys_panel.h"
#include "sys/sys_pon.h"
#include "sys/sys_power.h"
#include "sys/sys_show.h"

#include <cstdio>

// Copies between a file and a partition. What comes of it is not reported, and any other number of paths than
// one does nothing.
template <int32_t (*operation)(const char *)>
static int32_t sys_copy(int32_t argc, const char *const argv[], const char *) {
    if (argc == 2) {
        operation(argv[1]);
    }
    return 0;
}

// What comes of an erase is not reported either.
template <int32_t (*operation)()>
static int32_t sys_erase(int32_t, const char *const[], const char *) {
    operation();
    return 0;
}

static int32_t sys_erase_slave(int32_t, const char *const[], const char *) {
    libvx_sys_eraseBackupImageMtd();
    printf("sys eraseslave success\n");
    return 0;
}

static int32_t sys_flush_nat(int32_t, const char *const[], const char *) {
    libvx_sys_vxnatFlush();
    printf("sys flushnat success\n");
    return 0;
}

static int32_t sys_restore_default(int32_t, const char *const[], const char *) {
    return libvx_sys_restoredefault();
}

// The manufacturing mode and the button test go together, also when the mode could not be stored.
static int32_t sys_mfg(int32_t argc, const char *const argv[], const char *help) {
    const int32_t result = sys_field(argc, argv, help);
    if (argc > 1) {
        libvx_sys_button(word_to_signed_decimal(argv[1]));
    }
    return result;
}

// Dies of a real segmentation fault, so that the crash-report tool has something to report.
static int32_t sys_segv(int32_t, const char *const[], const char *) {
    // The compiler may not know that this is null, or it would leave the store out.
    int32_t *volatile nowhere = nullptr;
    // cppcheck-suppress nullPointer
    *static_cast<volatile int32_t *>(nowhere) = 0; // NOLINT(clang-analyzer-core.NullDereference)
    __builtin_trap();
}

// The help texts are kept to the letter, misspelt and mismatched ones included: they are listed by scripts.
constinit const vxcli_cmd_t sys_cmds[] = {
    {"mac", sys_mac, 0, "mac [mac address]: get/set system mac"},
    {"macnum", sys_field, 0, "macnum [num]: get/set mac number"},
    {"ponmode", sys_pon_mode, 0, "ponmode [epon|gpon|xgpon|xgspon|xepon|xespon|ETHER|auto]: get/set pon mode"},
    {"onutype", sys_onu_type, 0, "onutype [sfu|hgu]: get/set onu type"},
    {"gponsn", sys_gponsn, 0, "gponsn [SN str]: get/set GPON SN"},
    {"gponpw", sys_field, 0, "gponpw [****]: get/set GPON passwd"},
    {"loid", sys_field, 0, "loid [str]: get/set loid name"},
    {"loidpw", sys_field, 0, "loidpw [str]: get/set loid password"},
    {"remotelogin", sys_field, 0, "remotelogin [0|1]: get/set remotelogin config"},
    {"model", sys_field, 0, "model [str]: get/set model name"},
    {"hwversion", sys_field, 0, "hwversion [str]: get/set hardware version"},
    {"language", sys_language, 0, "language [str]: get/set language"},
    {"vendor", sys_field, 0, "vendor [str]: get/set vendor name"},
    {"oui", sys_field, 0, "oui [str]: get/set oui"},
    {"sn", sys_field, 0, "sn [str]: get/set serial number"},
    {"area", sys_field, 0, "area [str]: get/set area code number"},
    {"province", sys_field, 0, "province [str]: get/set province code number"},
    {"username", sys_field, 0, "username [str]: get/set user name"},
    {"userpw", sys_field, 0, "userpw [str]: get/set user password"},
    {"vendorid", sys_field, 0, "vendorid [str]: get/set vendor id for epon"},
    {"modelid", sys_field, 0, "modelId [str]: get/set model id for epon"},
    {"equipmentid", sys_field, 0, "equipmentid [str]: get/set equipmentid for gpon"},
    {"FitId", sys_field, 0, "FitId [str]:get/set Fit id for choose dts,when load kernel in FIT format"},
    {"10genum", sys_field, 0, "10genum [num]: get/set 10-Giga Ethernet port number"},
    {"2genum", sys_field, 0, "2genum [num]: get/set 2.5-Giga Ethernet port number"},
    {"genum", sys_field, 0, "genum [num]: get/set Giga Ethernet port number"},
    {"fenum", sys_field, 0, "fenum [num]: get/set Fast Ethernet port number"},
    {"usbnum", sys_field, 0, "usbnum [num]: get/set USB port number"},
    {"fxsnum", sys_field, 0, "fxsnum [num]: get/set FXS port number"},
    {"slictype", sys_field, 0, "slictype [name]: get/set slic type"},
    {"wifinum", sys_field, 0, "wifinum [num]: get/set WiFi module number"},
    {"devtype", sys_field, 0, "deviceType [num]: get/set Device type"},
    {"phyportmap", sys_phyportmap, 0, "phyportmap [str]: get/set phy port map"},
    {"inversephyled", sys_field, 0, "inversephyled [0|1]: get/set phy led mode"},
    {"wifissid", sys_field, 0, "wifissid [str]: get/set WiFi SSID"},
    {"wifipwd", sys_field, 0, "wifipwd [str]: get/set WiFi password (preshare key)"},
    {"flushnat", sys_flush_nat, 0, "flush nat rule"},
    {"bootversion", sys_field, 0, "version get bootloader software version"},
    {"version", sys_field, 0, "version get software version"},
    {"mfg", sys_mfg, 0, "mfg [0|1]: get/set manufacture mode"},
    {"ExdbgMode", sys_field, 0, "ExdbgMode [0|1] get/set dbg mode: use dbg config info "},
    {"PDate", sys_field, 0, "production date,format: 2022-01-01"},
    {"save", sys_save, 0, "save: save system manufacture info to flash"},
    {"load", sys_load, 0, "load: load system manufacture info from flash"},
    {"restoredefault", sys_restore_default, 0, "restoredefault : restore user config to manufacture default"},
    {"led", sys_led, 1, "led <1|0>: turn on/off all led"},
    {"led_event", sys_led_event, 3,
     "led_event <LED_EVENT> <LED_STATE> <BLINK-timer> \n"
     "\t\tLED_EVENT: \n"
     "\t\t\tLED_PWR\n\t\t\tLED_PON\n\t\t\tLED_LOS\n\t\t\tLED_LAN\n\t\t\tLED_WPS\n\t\t\tLED_WLAN\n"
     "\t\t\tLED_FXS1\n\t\t\tLED_FXS2\n\t\t\tLED_WAN/LED_INT\n\t\t\tLED_DNLINK\n"
     "\t\tLED_STATE:\n"
     "\t\t\tOFF/ON/BLINK"},
    {"led_event_list", sys_led_event_list, 0, "led_event_list"},
    {"button", sys_button, 1, "button <1|0>: turn on/off button test"},
    {"eraseslave", sys_erase_slave, 0, "eraseslave: erase salve image block"},
    {"show", sys_show, 0, "show: show all available information"},
    {"delete", sys_delete, 1, "delete <param>: delete current parameter value"},
    {"rogue", sys_rogue, 3, "rogue <en> <auto shutdown en> <state clear>: Config self rogue onu detect"},
    {"segv", sys_segv, 0, "trigger a segv for vxcli, used to test usermode debug tool"},
    {"getbackup", sys_copy<libvx_sys_getBackupConfig>, 0,
     "getbackup <filepath>:get config file from backup partition"},
    {"savebackup", sys_copy<lib_sys_saveBackupConfig>, 0,
     "savebackup <filepath>:save config file into backup partition"},
    {"getpreconf", sys_copy<libvx_sys_getPreConfig>, 0,
     "getpreconf <filepath>:get preconf file from preconf partition"},
    {"savepreconf", sys_copy<lib_sys_savePreConfig>, 0,
     "savepreconf <filepath>:save preconf file into preconf partition"},
    {"erasebackup", sys_erase<libvx_sys_eraseBackupConfig>, 0, "erase backup partition"},
    {"erasepreconf", sys_erase<libvx_sys_erasePreConfig>, 0, "erase preconf partition"},
    {"ps", sys_power_save, 1, "<mode:prepare/mode1/mode0/off>"},
    {"slicdc", sys_field, 0, "slicdc [num]: get/set Slic DC profile number"},
    {"slicmode", sys_field, 0, "slicmode [standby|active]: get/set slic mode"},
    {"ethwan", sys_ethwan, 0, "ethwan [ethwan name]: get/set ethwan"},
    {"catvnum", sys_field, 0, "catvnum [num]: get/set CATV port number"},
    {nullptr, nullptr, 0, nullptr},
};
