#include "sys/sys_field.h"

#include "common/words.h"
#include "sys/sys_pon.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

// ---- the library's operations as the rows hold them ----
// Each is a jump of our own, so that the loader looks an operation up when it is first called, not all of them
// whenever the program starts.

template <int32_t (*operation)(char *)>
static int32_t text(char *buffer) {
    return operation(buffer);
}

template <int32_t (*operation)()>
static int32_t number() {
    return operation();
}

template <int32_t (*operation)(const char *)>
static int32_t to_text(const char *value) {
    return operation(value);
}

template <int32_t (*operation)(int32_t)>
static int32_t to_number(int32_t value) {
    return operation(value);
}

// Units differ in the circuit by their number of telephone ports.
static void slic_type_of_ports(std::span<char> value) {
    const int32_t ports = libvx_sys_getFxsNum();
    if (ports == 1 || ports == 2) {
        snprintf(value.data(), value.size(), "%s", ports == 1 ? "SI3219x" : "SI3228x");
    }
}

// ---- the fields ----
// The spelling of labels and messages is kept to the letter: the factory's parsers depend on it.

static constexpr sys_field_s FIELDS[] = {
    {.command = "mac", .label = "Mac Address:", .key = "MAC", .clear = sys_clear::by_key},
    {.command = "macnum",
     .label = "Mac Num:",
     .key = "MAC_NUM",
     .set_number = to_number<libvx_sys_setMacNum>,
     .clear = sys_clear::by_key},
    {.command = "oui",
     .label = "OUI:",
     .get_text = text<libvx_sys_getOui>,
     .set_text = to_text<libvx_sys_setOui>,
     .clear = sys_clear::by_setter},
    {.command = "sn",
     .label = "SN:",
     .get_text = text<libvx_sys_getSn>,
     .set_text = to_text<libvx_sys_setSn>,
     .clear = sys_clear::by_setter},
    {.command = "model",
     .label = "Model Name:",
     .get_text = text<libvx_sys_getModel>,
     .set_text = to_text<libvx_sys_setModel>,
     .clear = sys_clear::by_setter},
    {.command = "modelid",
     .label = "Model Id:",
     .get_text = text<libvx_sys_getModelId>,
     .set_text = to_text<libvx_sys_setModelId>,
     .clear = sys_clear::by_setter},
    {.command = "vendor",
     .label = "Vendor:",
     .get_text = text<libvx_sys_getVendor>,
     .set_text = to_text<libvx_sys_setVendor>,
     .clear = sys_clear::by_setter},
    {.command = "vendorid",
     .label = "Vendor Id:",
     .get_text = text<libvx_sys_getVendorId>,
     .set_text = to_text<libvx_sys_setVendorId>,
     .clear = sys_clear::by_setter},
    {.command = "equipmentid",
     .label = "EquipmentId:",
     .get_text = text<libvx_sys_getEquitementId>,
     .set_text = to_text<libvx_sys_setEquitementId>,
     .clear = sys_clear::by_setter},
    {.command = "FitId",
     .label = "FIT Id:",
     .key = "FitId",
     .set_text = to_text<libvx_sys_setFitId>,
     .subject = "FIT id",
     .key_size = LIBVX_SYS_FIT_ID_SIZE,
     .prints_empty = false,
     .clear = sys_clear::by_key},
    {.command = "hwversion",
     .label = "Hardware Version:",
     .get_text = text<libvx_sys_getHwVersion>,
     .set_text = to_text<libvx_sys_setHwVersion>,
     .clear = sys_clear::by_setter},
    {.command = "version", .label = "Software Version:", .get_text = text<libvx_sys_getFwVersion>},
    {.command = "bootversion", .label = "Boot Version:", .get_text = text<libvx_sys_getBootVersion>},
    {.command = "username",
     .label = "User Name:",
     .get_text = text<libvx_sys_getUserName>,
     .set_text = to_text<libvx_sys_setUserName>,
     .clear = sys_clear::by_setter},
    {.command = "userpw",
     .label = "User Password:",
     .get_text = text<libvx_sys_getUserPw>,
     .set_text = to_text<libvx_sys_setUserPw>,
     .clear = sys_clear::by_setter},
    {.command = "area",
     .label = "Area:",
     .get_text = text<libvx_sys_getArea>,
     .set_text = to_text<libvx_sys_setArea>,
     .clear = sys_clear::by_setter},
    {.command = "province",
     .label = "Province:",
     .get_text = text<libvx_sys_getProvince>,
     .set_text = to_text<libvx_sys_setProvince>,
     .clear = sys_clear::by_setter},
    {.command = "language",
     .label = "Language:",
     .key = "Language",
     .set_text = to_text<libvx_sys_setLanguage>,
     .clear = sys_clear::by_setter},
    {.command = "ponmode",
     .label = "Sys Pon Mode:",
     .key = "MODE",
     .show_command = sys_pon_mode,
     .clear = sys_clear::by_key},
    {.command = "onutype", .label = "Sys Pon Type:", .key = "TYPE", .clear = sys_clear::by_key},
    {.command = "gponsn",
     .label = "Gpon SN:",
     .key = "GPON_SN",
     .set_text = to_text<libvx_sys_setGponSn>,
     .key_size = LIBVX_SYS_SERIAL_SIZE,
     .clear = sys_clear::by_setter},
    {.command = "gponpw",
     .label = "Gpon Password:",
     .key = "GPON_Passwd",
     .set_text = to_text<libvx_sys_setGponPwd>,
     .key_size = LIBVX_SYS_TEXT_SIZE,
     .clear = sys_clear::by_setter},
    {.command = "mfg",
     .label = "Mfg Mode:",
     .key = "MfgMode",
     .set_number = to_number<libvx_sys_setMfgMode>,
     .clear = sys_clear::by_key},
    // The three speeds answer with the same words, and only one of them can be deleted.
    {.command = "10genum",
     .label = "10GE Num:",
     .key = "10GeNum",
     .set_number = to_number<libvx_sys_set10GeEthNum>,
     .subject = "genum"},
    {.command = "2genum",
     .label = "2GE Num:",
     .key = "2GeNum",
     .set_number = to_number<libvx_sys_set2GeEthNum>,
     .subject = "genum"},
    {.command = "genum",
     .label = "GE Num:",
     .key = "GeNum",
     .set_number = to_number<libvx_sys_setGeEthNum>,
     .clear = sys_clear::by_key},
    {.command = "fenum",
     .label = "FE Num:",
     .key = "FeNum",
     .set_number = to_number<libvx_sys_setFeEthNum>,
     .clear = sys_clear::by_key},
    {.command = "usbnum",
     .label = "USB Num:",
     .key = "UsbNum",
     .set_number = to_number<libvx_sys_setUsbNum>,
     .clear = sys_clear::by_key},
    {.command = "fxsnum",
     .label = "FXS Num:",
     .key = "FxsNum",
     .get_number = number<libvx_sys_getFxsNum>,
     .set_number = to_number<libvx_sys_setFxsNum>,
     .clear = sys_clear::by_key},
    {.command = "slictype",
     .label = "Slic Type:",
     .key = "SlicType",
     .fill_empty = slic_type_of_ports,
     .set_text = to_text<libvx_sys_setSlicType>},
    {.command = "slicmode", .label = "Slic Mode:", .key = "SlicMode", .set_text = to_text<libvx_sys_setSlicMode>},
    {.command = "wifinum",
     .label = "WiFi Num:",
     .key = "WifiNum",
     .set_number = to_number<libvx_sys_setWifiNum>,
     .clear = sys_clear::by_key},
    {.command = "wifissid",
     .label = "WiFi SSID:",
     .get_text = text<libvx_sys_getWifiSsid>,
     .set_text = to_text<libvx_sys_setWifiSsid>,
     .clear = sys_clear::by_setter},
    {.command = "wifipwd",
     .label = "WiFi Passwd:",
     .get_text = text<libvx_sys_getWifiPwd>,
     .set_text = to_text<libvx_sys_setWifiPwd>,
     .clear = sys_clear::by_setter},
    {.command = "phyportmap",
     .label = "Phy Port Map:",
     .get_text = text<libvx_sys_getPhyPortMap>,
     .set_text = to_text<libvx_sys_setPhyPortMap>,
     .subject = "phy port map",
     .clear = sys_clear::by_setter},
    // The one label without a colon.
    {.command = "PDate",
     .label = "Production Date",
     .key = "PDate",
     .set_text = to_text<libvx_sys_setProductionDate>,
     .subject = "production date",
     .key_size = LIBVX_SYS_TEXT_SIZE,
     .prints_empty = false,
     .clear = sys_clear::by_key},
    {.command = "devtype",
     .label = "Device Type:",
     .key = "DeviceType",
     .get_number = number<libvx_sys_getDeviceType>,
     .set_number = to_number<libvx_sys_setDeviceType>,
     .subject = "device type",
     .clear = sys_clear::by_key},
    {.command = "catvnum",
     .label = "catv Num:",
     .key = "CatvNum",
     .set_number = to_number<libvx_sys_setCatvNum>,
     .subject = "CatvNum"},
    // From here on: not in the list that production records are made of.
    {.command = "loid",
     .label = "LOID Name:",
     .key = "LOID",
     .set_text = to_text<libvx_sys_setLoid>,
     .key_size = LIBVX_SYS_TEXT_SIZE,
     .clear = sys_clear::by_setter,
     .shown = false},
    {.command = "loidpw",
     .label = "LOID Password:",
     .key = "LOID_Passwd",
     .set_text = to_text<libvx_sys_setLoidPwd>,
     .key_size = LIBVX_SYS_TEXT_SIZE,
     .clear = sys_clear::by_setter,
     .shown = false},
    {.command = "remotelogin",
     .label = "RemoteLogin:",
     .key = "RemoteLogin",
     .set_number = to_number<libvx_sys_setRemoteLoginConfig>,
     .clear = sys_clear::by_key,
     .shown = false},
    {.command = "inversephyled",
     .label = "Inverse PHY Led:",
     .get_number = number<libvx_sys_getInversePhyLed>,
     .set_number = to_number<libvx_sys_setInversePhyLed>,
     .shown = false},
    {.command = "slicdc",
     .label = "Slic DC Type:",
     .get_number = number<libvx_sys_getSlicDcType>,
     .set_number = to_number<libvx_sys_setSlicDcType>,
     .shown = false},
    {.command = "ExdbgMode",
     .label = "Exdbg Mode:",
     .key = "ExdbgMode",
     .set_number = to_number<libvx_sys_setExdbgMode>,
     .subject = "Exdbg",
     .shown = false},
    // Can be cleared but has no command of its own.
    {.command = "ForceTelnet", .key = "ForceTelnet", .clear = sys_clear::by_key, .shown = false},
};

// The largest value with its NUL.
static constexpr int32_t VALUE_SIZE = LIBVX_SYS_SERIAL_SIZE;

// Function pointers are left out: in a sanitizer build g++ takes none of them for a constant.
static consteval bool fields_are_sound() {
    return std::ranges::all_of(FIELDS, [](const sys_field_s &field) {
        return field.key_size <= VALUE_SIZE && (field.label != nullptr || !field.shown) &&
               (field.key != nullptr || field.clear != sys_clear::by_key);
    });
}
static_assert(fields_are_sound());

std::span<const sys_field_s> sys_fields() {
    return FIELDS;
}

const sys_field_s *sys_find_field(const char *name) {
    const auto *field =
        std::ranges::find_if(FIELDS, [name](const auto &row) { return strcmp(row.command, name) == 0; });
    return field != std::end(FIELDS) ? field : nullptr;
}

void sys_print_field(const sys_field_s &field) {
    if (field.get_number != nullptr) {
        printf("%-24s %d\n", field.label, field.get_number());
        return;
    }
    // A value that cannot be read prints as one that is not set.
    std::array<char, VALUE_SIZE> value = {};
    if (field.get_text != nullptr) {
        field.get_text(value.data());
    } else {
        libvx_sys_getValueEmpty(field.key, value.data(), field.key_size);
    }
    if (value[0] == '\0' && field.fill_empty != nullptr) {
        field.fill_empty(value);
    }
    if (value[0] != '\0' || field.prints_empty) {
        printf("%-24s %s\n", field.label, value.data());
    }
}

void sys_report(const char *subject, int32_t result) {
    printf("sys %s %s\n", subject, result == 0 ? "success" : "fail");
}

int32_t sys_field(int32_t argc, const char *const argv[], const char *) {
    const sys_field_s &field = *sys_find_field(argv[0]);
    const bool settable = field.set_text != nullptr || field.set_number != nullptr;
    if (argc == 1 || !settable) {
        sys_print_field(field);
        return 0;
    }
    const int32_t result =
        field.set_text != nullptr ? field.set_text(argv[1]) : field.set_number(word_to_signed_decimal(argv[1]));
    sys_report(field.subject != nullptr ? field.subject : field.command, result);
    return 0;
}
