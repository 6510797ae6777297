// System information: the manufacturing fields, texts in the store under their keys.

#include "board_call.h"
#include "sysinfo_store.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

static constexpr int32_t mac_count_max = 4096; // a unit has a dozen

// ---- what the operations have in common ----

static int32_t get_value(const char *operation, const char *key, char *buf, size_t size) {
    if (buf == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(operation, [=](int) { return sysinfo_get(key, {buf, size}); });
}

static int32_t get_text(const char *operation, const char *key, char *buf) {
    return get_value(operation, key, buf, sysinfo_value_size(key));
}

static int32_t set_text(const char *operation, const char *key, const char *value) {
    return board_call(operation, [=](int) { return sysinfo_set(key, value); });
}

// 0 if the text is no number in the range.
static int32_t number_of(const char *text, int32_t min, int32_t max) {
    char *end = nullptr;
    const long number = strtol(text, &end, 10);
    end += strspn(end, " \t");
    return *end == '\0' && number >= min && number <= max ? static_cast<int32_t>(number) : 0;
}

static int32_t get_number(const char *operation, const char *key, int32_t min = INT32_MIN,
                          int32_t max = INT32_MAX) {
    char text[LIBVX_SYS_SHORT_SIZE] = {}; // a failure reads as a field that is not set
    get_value(operation, key, text, sizeof text);
    return number_of(text, min, max);
}

static int32_t set_number(const char *operation, const char *key, int32_t value, int32_t min = INT32_MIN,
                          int32_t max = INT32_MAX) {
    return board_call(operation, [=](int) {
        char text[LIBVX_SYS_SHORT_SIZE];
        snprintf(text, sizeof text, "%d", value);
        return value >= min && value <= max ? sysinfo_set(key, text) : int32_t{LIBVX_RET_INVALID_PARAMETER};
    });
}

// ---- the store as a whole, fields by key ----

int32_t libvx_sys_getSysInfo(void) {
    return board_call(__func__, sysinfo_load);
}

int32_t libvx_sys_saveSysInfo(void) {
    return board_call(__func__, sysinfo_save);
}

int32_t libvx_sys_getValueEmpty(const char *key, char *buf, int32_t size) {
    return get_value(__func__, key, buf, size > 0 ? static_cast<size_t>(size) : 0);
}

int32_t libvx_sys_setValueEmpty(const char *key, const char *value) {
    return set_text(__func__, key, value);
}

// ---- texts ----

int32_t libvx_sys_getModel(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "ModelName", buf);
}

int32_t libvx_sys_setModel(const char *value) {
    return set_text(__func__, "ModelName", value);
}

int32_t libvx_sys_getModelId(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "ModelId", buf);
}

int32_t libvx_sys_setModelId(const char *value) {
    return set_text(__func__, "ModelId", value);
}

int32_t libvx_sys_getVendor(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "Vendor", buf);
}

int32_t libvx_sys_setVendor(const char *value) {
    return set_text(__func__, "Vendor", value);
}

int32_t libvx_sys_getVendorId(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "VendorId", buf);
}

int32_t libvx_sys_setVendorId(const char *value) {
    return set_text(__func__, "VendorId", value);
}

int32_t libvx_sys_getEquitementId(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "EquipmentId", buf);
}

int32_t libvx_sys_setEquitementId(const char *value) {
    return set_text(__func__, "EquipmentId", value);
}

int32_t libvx_sys_getOui(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "OUI", buf);
}

int32_t libvx_sys_setOui(const char *value) {
    return set_text(__func__, "OUI", value);
}

int32_t libvx_sys_getHwVersion(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "HwVersion", buf);
}

int32_t libvx_sys_setHwVersion(const char *value) {
    return set_text(__func__, "HwVersion", value);
}

int32_t libvx_sys_getArea(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "Area", buf);
}

int32_t libvx_sys_setArea(const char *value) {
    return set_text(__func__, "Area", value);
}

int32_t libvx_sys_getProvince(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "Province", buf);
}

int32_t libvx_sys_setProvince(const char *value) {
    return set_text(__func__, "Province", value);
}

int32_t libvx_sys_getUserName(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "UserName", buf);
}

int32_t libvx_sys_setUserName(const char *value) {
    return set_text(__func__, "UserName", value);
}

int32_t libvx_sys_getUserPw(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "UserPasswd", buf);
}

int32_t libvx_sys_setUserPw(const char *value) {
    return set_text(__func__, "UserPasswd", value);
}

int32_t libvx_sys_getWifiSsid(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "WifiSsid", buf);
}

int32_t libvx_sys_setWifiSsid(const char *value) {
    return set_text(__func__, "WifiSsid", value);
}

int32_t libvx_sys_getWifiPwd(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "WifiPasswd", buf);
}

int32_t libvx_sys_setWifiPwd(const char *value) {
    return set_text(__func__, "WifiPasswd", value);
}

int32_t libvx_sys_getPhyPortMap(char buf[LIBVX_SYS_TEXT_SIZE]) {
    return get_text(__func__, "PhyPortMap", buf);
}

int32_t libvx_sys_setPhyPortMap(const char *value) {
    return set_text(__func__, "PhyPortMap", value);
}

int32_t libvx_sys_getSn(char buf[LIBVX_SYS_SERIAL_SIZE]) {
    return get_text(__func__, "SN", buf);
}

int32_t libvx_sys_setSn(const char *value) {
    return set_text(__func__, "SN", value);
}

int32_t libvx_sys_setGponSn(const char *value) {
    return set_text(__func__, "GPON_SN", value);
}

int32_t libvx_sys_setGponPwd(const char *value) {
    return set_text(__func__, "GPON_Passwd", value);
}

int32_t libvx_sys_setLoid(const char *value) {
    return set_text(__func__, "LOID", value);
}

int32_t libvx_sys_setLoidPwd(const char *value) {
    return set_text(__func__, "LOID_Passwd", value);
}

int32_t libvx_sys_setLanguage(const char *value) {
    return set_text(__func__, "Language", value);
}

int32_t libvx_sys_setFitId(const char *value) {
    return set_text(__func__, "FitId", value);
}

int32_t libvx_sys_setProductionDate(const char *value) {
    return set_text(__func__, "PDate", value);
}

int32_t libvx_sys_setSlicType(const char *value) {
    return set_text(__func__, "SlicType", value);
}

int32_t libvx_sys_setSlicMode(const char *value) {
    return set_text(__func__, "SlicMode", value);
}

// ---- numbers ----

int32_t libvx_sys_getMacNum(void) {
    return get_number(__func__, "MAC_NUM", 0, mac_count_max);
}

int32_t libvx_sys_setMacNum(int32_t value) {
    return set_number(__func__, "MAC_NUM", value, 0, mac_count_max);
}

int32_t libvx_sys_setRemoteLoginConfig(int32_t value) {
    return set_number(__func__, "RemoteLogin", value);
}

int32_t libvx_sys_set10GeEthNum(int32_t value) {
    return set_number(__func__, "10GeNum", value);
}

int32_t libvx_sys_set2GeEthNum(int32_t value) {
    return set_number(__func__, "2GeNum", value);
}

int32_t libvx_sys_setGeEthNum(int32_t value) {
    return set_number(__func__, "GeNum", value);
}

int32_t libvx_sys_setFeEthNum(int32_t value) {
    return set_number(__func__, "FeNum", value);
}

int32_t libvx_sys_setUsbNum(int32_t value) {
    return set_number(__func__, "UsbNum", value);
}

int32_t libvx_sys_getWifiNum(void) {
    return get_number(__func__, "WifiNum");
}

int32_t libvx_sys_setWifiNum(int32_t value) {
    return set_number(__func__, "WifiNum", value);
}

int32_t libvx_sys_setCatvNum(int32_t value) {
    return set_number(__func__, "CatvNum", value);
}

int32_t libvx_sys_setExdbgMode(int32_t value) {
    return set_number(__func__, "ExdbgMode", value);
}

int32_t libvx_sys_getMfgMode(void) {
    return get_number(__func__, "MfgMode");
}

int32_t libvx_sys_setMfgMode(int32_t value) {
    return set_number(__func__, "MfgMode", value);
}

int32_t libvx_sys_getFxsNum(void) {
    return get_number(__func__, "FxsNum");
}

int32_t libvx_sys_setFxsNum(int32_t value) {
    return set_number(__func__, "FxsNum", value);
}

int32_t libvx_sys_getDeviceType(void) {
    return get_number(__func__, "DeviceType");
}

int32_t libvx_sys_setDeviceType(int32_t value) {
    return set_number(__func__, "DeviceType", value);
}

int32_t libvx_sys_getInversePhyLed(void) {
    return get_number(__func__, "InversePhyLed");
}

int32_t libvx_sys_setInversePhyLed(int32_t value) {
    return set_number(__func__, "InversePhyLed", value);
}

int32_t libvx_sys_getSlicDcType(void) {
    return get_number(__func__, "SlicDcType");
}

int32_t libvx_sys_setSlicDcType(int32_t value) {
    return set_number(__func__, "SlicDcType", value);
}
