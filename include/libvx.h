/*
 * The device library's C boundary, as far as vxcli calls it.
 *
 * Conventions of every operation: the result is a libvx_retCode_t, or a plain int32_t of the same sense: 0 is
 * success, anything else failure, and callers tell no failure from another. Results come back through
 * out-parameters whose storage the caller owns; an operation that fails leaves them as they were, unless its
 * comment says otherwise. The library keeps no pointer that it was given.
 */
#ifndef LIBVX_H
#define LIBVX_H

#include <stdint.h> /* NOLINT(modernize-deprecated-headers): this is C, too */

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define LIBVX_API __attribute__((visibility("default")))
#define LIBVX_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define LIBVX_API
#define LIBVX_PRINTF(text, first)
#endif

typedef enum libvx_retCode_s {
    LIBVX_RET_OK = 0,
    LIBVX_RET_INVALID_PARAMETER = 1,
    LIBVX_RET_MEM_ALLOCATE_FAIL = 2,
    LIBVX_RET_FILE_OPEN_FAIL = 3,
    LIBVX_RET_FILE_READ_FAIL = 4,
    LIBVX_RET_FILE_WRITE_FAIL = 5,
    LIBVX_RET_FAIL = 6,
    LIBVX_RET_MAX = 7 /* count of codes, never returned */
} libvx_retCode_t;

/* ---- logging ---- */

/* The library's message level; 1 and above enables error logging. Read it directly, change it only through
 * libvx_setDebugLevel. */
extern LIBVX_API int32_t libvx_DbgLevel;

LIBVX_API void libvx_setDebugLevel(int32_t level);

/* Logs one message: `tag` is its kind ("libvx Error"), `file`, `func` and `line` say where it was raised. */
LIBVX_API void libvx_logPrint(const char *tag, const char *file, const char *func, int32_t line, const char *format,
                              ...) LIBVX_PRINTF(5, 6);

/* ---- PON services: the I2C bus to the transceiver, optical diagnostics ---- */

/* Reads `len` registers (0 to 256) from `regaddr` (0 to 255) of the device at the 7-bit address `devaddr`, in
 * one transfer, into `data`, which holds at least `len` bytes. */
LIBVX_API int32_t libvx_ponApi_i2cRead(uint32_t bus, uint32_t devaddr, uint32_t regaddr, uint8_t *data,
                                       uint32_t len);

/* Writes `len` registers (0 to 256) from `regaddr`, in one transfer. The chip's page size and write time are
 * the caller's business. */
LIBVX_API int32_t libvx_ponApi_i2cWrite(uint32_t bus, uint32_t devaddr, uint32_t regaddr, const uint8_t *data,
                                        uint32_t len);

/* The transceiver's diagnostics in the raw units of its diagnostics page. */
typedef struct libvx_pon_ctcOptDiag_s {
    int16_t temp;    /* 1/256 degree Celsius */
    uint16_t vcc;    /* 100 microvolt */
    uint16_t txBias; /* 2 microampere */
    uint16_t txPwr;  /* 0.1 microwatt */
    uint16_t rxPwr;  /* 0.1 microwatt */
} libvx_pon_ctcOptDiag_t;

LIBVX_API int32_t libvx_ponApi_eponGetOptDiag(libvx_pon_ctcOptDiag_t *diag);

/* The CATV (RF video overlay) receiver's diagnostics. */
typedef struct libvx_pon_catvDiag_s {
    int16_t optPwr;   /* input optical power, 0.1 dBm */
    uint16_t outLvl;  /* RF output level, dBmV + 60 */
    uint16_t temp;    /* degrees Celsius */
    uint8_t rfSwitch; /* RF output switch state */
    uint8_t outAtte;  /* output level attenuation step */
} libvx_pon_catvDiag_t;

LIBVX_API int32_t libvx_ponApi_gponGetCatvDiag(libvx_pon_catvDiag_t *diag);

/* Set the RF output switch and the output attenuation step; values beyond 8 bits are refused. */
LIBVX_API int32_t libvx_ponApi_gponSetCatvRf(int32_t value);
LIBVX_API int32_t libvx_ponApi_gponSetCatvOutAtte(int32_t value);

/* ---- system information: the transceiver's calibration image ---- */

/* Brings the stored image back into the working image file /var/velmarix_bob.bin. A failure, such as an empty
 * store, leaves that file as it was. */
LIBVX_API int32_t libvx_sys_getBob(void);

/* Stores the working image file /var/velmarix_bob.bin for good. */
LIBVX_API int32_t libvx_sys_saveBob(void);

/* ---- system information: the Wi-Fi chips' calibration ----
 *
 * Copies of `size` bytes from `offset` of a flash partition, both in bytes, to and from the file at `path`. A range
 * that does not lie inside the partition is refused, and nothing is changed then. */

/* The file is created or replaced, and holds exactly the range. */
LIBVX_API int32_t libvx_sys_get_wlan_caldata(const char *partition, uint32_t offset, uint32_t size,
                                             const char *path);

/* What is in the partition around the range stays. Of a longer file the first `size` bytes count; behind the end of
 * a shorter one the rest of the range comes out erased, 0xFF. A failure while the flash is being written leaves the
 * range undefined. */
LIBVX_API int32_t libvx_sys_save_wlan_caldata(const char *partition, uint32_t offset, uint32_t size,
                                              const char *path);

/* ---- system information: the store of manufacturing fields ----
 *
 * Texts by key, in /etc/vx_sys_info, backed by flash. A typed setter stores at once, so that the next process
 * reads the new value; libvx_sys_saveSysInfo makes it last. A setter refuses a text that does not fit the
 * reader's buffer or has control characters in it, and stores nothing then. The empty text clears a field.
 */

/* Buffer sizes in bytes, with the terminating NUL. */
#define LIBVX_SYS_SHORT_SIZE 25  /* numbers, names of modes, all keys not listed below */
#define LIBVX_SYS_TEXT_SIZE 32   /* texts of the dedicated getters; GPON_Passwd, LOID, LOID_Passwd, PDate */
#define LIBVX_SYS_FIT_ID_SIZE 64 /* FitId */
#define LIBVX_SYS_SERIAL_SIZE 65 /* GPON_SN, the product serial number */

/* Loads the fields from flash into the store's file, whatever the flash holds. */
LIBVX_API int32_t libvx_sys_getSysInfo(void);

/* Writes the store's file to flash. */
LIBVX_API int32_t libvx_sys_saveSysInfo(void);

/* Reads the text under `key` into `buf` of `size` bytes, with its NUL; the empty text for a field that is not
 * set. A text that does not fit is cut. */
LIBVX_API int32_t libvx_sys_getValueEmpty(const char *key, char *buf, int32_t size);

/* Stores `value` under `key`, whether or not the field was set before. */
LIBVX_API int32_t libvx_sys_setValueEmpty(const char *key, const char *value);

/* Texts. A getter fills the whole text with its NUL and gives the empty text for a field that is not set. The
 * setters without a getter here are read by key: GPON_Passwd, LOID, LOID_Passwd, GPON_SN, FitId, SlicType,
 * SlicMode, Language, PDate. None of the setters judges the form of its text. */
LIBVX_API int32_t libvx_sys_getModel(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setModel(const char *value);
LIBVX_API int32_t libvx_sys_getModelId(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setModelId(const char *value);
LIBVX_API int32_t libvx_sys_getVendor(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setVendor(const char *value);
LIBVX_API int32_t libvx_sys_getVendorId(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setVendorId(const char *value);
LIBVX_API int32_t libvx_sys_getEquitementId(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setEquitementId(const char *value);
LIBVX_API int32_t libvx_sys_getOui(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setOui(const char *value);
LIBVX_API int32_t libvx_sys_getHwVersion(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setHwVersion(const char *value);
LIBVX_API int32_t libvx_sys_getArea(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setArea(const char *value);
LIBVX_API int32_t libvx_sys_getProvince(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setProvince(const char *value);
LIBVX_API int32_t libvx_sys_getUserName(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setUserName(const char *value);
LIBVX_API int32_t libvx_sys_getUserPw(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setUserPw(const char *value);
LIBVX_API int32_t libvx_sys_getWifiSsid(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setWifiSsid(const char *value);
LIBVX_API int32_t libvx_sys_getWifiPwd(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setWifiPwd(const char *value);
LIBVX_API int32_t libvx_sys_getPhyPortMap(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_setPhyPortMap(const char *value);
LIBVX_API int32_t libvx_sys_getSn(char buf[LIBVX_SYS_SERIAL_SIZE]);
LIBVX_API int32_t libvx_sys_setSn(const char *value);
LIBVX_API int32_t libvx_sys_setGponSn(const char *value);
LIBVX_API int32_t libvx_sys_setGponPwd(const char *value);
LIBVX_API int32_t libvx_sys_setLoid(const char *value);
LIBVX_API int32_t libvx_sys_setLoidPwd(const char *value);
LIBVX_API int32_t libvx_sys_setLanguage(const char *value);
LIBVX_API int32_t libvx_sys_setFitId(const char *value);
LIBVX_API int32_t libvx_sys_setProductionDate(const char *value);
LIBVX_API int32_t libvx_sys_setSlicType(const char *value);
LIBVX_API int32_t libvx_sys_setSlicMode(const char *value);

/* Numbers. A getter's result is the value itself, 0 for a field that is not set or cannot be read. All but the
 * last two setters are read by key as well, in decimal: MAC_NUM, RemoteLogin, 10GeNum, 2GeNum, GeNum, FeNum,
 * UsbNum, WifiNum, CatvNum, ExdbgMode, MfgMode, FxsNum, DeviceType. */
LIBVX_API int32_t libvx_sys_getMacNum(void);
LIBVX_API int32_t libvx_sys_setMacNum(int32_t value);
LIBVX_API int32_t libvx_sys_setRemoteLoginConfig(int32_t value);
LIBVX_API int32_t libvx_sys_set10GeEthNum(int32_t value);
LIBVX_API int32_t libvx_sys_set2GeEthNum(int32_t value);
LIBVX_API int32_t libvx_sys_setGeEthNum(int32_t value);
LIBVX_API int32_t libvx_sys_setFeEthNum(int32_t value);
LIBVX_API int32_t libvx_sys_setUsbNum(int32_t value);
LIBVX_API int32_t libvx_sys_getWifiNum(void);
LIBVX_API int32_t libvx_sys_setWifiNum(int32_t value);
LIBVX_API int32_t libvx_sys_setCatvNum(int32_t value);
LIBVX_API int32_t libvx_sys_setExdbgMode(int32_t value);
LIBVX_API int32_t libvx_sys_getMfgMode(void);
LIBVX_API int32_t libvx_sys_setMfgMode(int32_t value);
LIBVX_API int32_t libvx_sys_getFxsNum(void);
LIBVX_API int32_t libvx_sys_setFxsNum(int32_t value);
LIBVX_API int32_t libvx_sys_getDeviceType(void);
LIBVX_API int32_t libvx_sys_setDeviceType(int32_t value);
LIBVX_API int32_t libvx_sys_getInversePhyLed(void);
LIBVX_API int32_t libvx_sys_setInversePhyLed(int32_t value);
LIBVX_API int32_t libvx_sys_getSlicDcType(void);
LIBVX_API int32_t libvx_sys_setSlicDcType(int32_t value);

/* The base MAC address, most significant byte first; read as text under the key MAC (xx:xx:xx:xx:xx:xx). */
LIBVX_API int32_t libvx_sys_getBaseMac(uint8_t mac[6]);
LIBVX_API int32_t libvx_sys_setBaseMac(const uint8_t mac[6]);

/* The PON technology; read as text under the key MODE. */
typedef enum libvx_sys_pon_mode {
    LIBVX_SYS_MODE_EPON = 0,
    LIBVX_SYS_MODE_GPON = 1,
    LIBVX_SYS_MODE_XGPON = 2,
    LIBVX_SYS_MODE_XGSPON = 3,
    LIBVX_SYS_MODE_XEPON = 4,
    LIBVX_SYS_MODE_XESPON = 5,
    LIBVX_SYS_MODE_ETHER = 6,
    LIBVX_SYS_MODE_AUTO = 7
} libvx_sys_pon_mode;

LIBVX_API int32_t libvx_sys_setPonMode(libvx_sys_pon_mode mode);

/* Stores an automatic selection by its name (auto_a, auto_s, group_0 to group_9, in any case), as given. */
LIBVX_API int32_t libvx_sys_setPonModestr(const char *name);

/* The unit's role; read as text under the key TYPE. */
typedef enum libvx_sys_pon_type {
    LIBVX_SYS_TYPE_SFU = 0,
    LIBVX_SYS_TYPE_HGU = 1,
    LIBVX_SYS_TYPE_MDU = 2,
    LIBVX_SYS_TYPE_HGW = 3
} libvx_sys_pon_type;

LIBVX_API int32_t libvx_sys_setPonType(libvx_sys_pon_type type);

/* ---- system information: firmware, partitions, services ---- */

/* Reads the firmware information; a failure says that there is none. */
LIBVX_API int32_t libvx_sys_getFwInfo(void);

LIBVX_API int32_t libvx_sys_getFwVersion(char buf[LIBVX_SYS_TEXT_SIZE]);
LIBVX_API int32_t libvx_sys_getBootVersion(char buf[LIBVX_SYS_TEXT_SIZE]);

/* Copy a configuration file from and to its flash partition. The file at `path` is created or replaced. */
LIBVX_API int32_t libvx_sys_getBackupConfig(const char *path);
LIBVX_API int32_t lib_sys_saveBackupConfig(const char *path);
LIBVX_API int32_t libvx_sys_getPreConfig(const char *path);
LIBVX_API int32_t lib_sys_savePreConfig(const char *path);

LIBVX_API int32_t libvx_sys_eraseBackupConfig(void);
LIBVX_API int32_t libvx_sys_erasePreConfig(void);

/* The name of the firmware image partition that is in use. */
LIBVX_API int32_t libvx_sys_getMainImageMtd(char buf[LIBVX_SYS_TEXT_SIZE]);

/* Erases the firmware image partition that is not in use. */
LIBVX_API int32_t libvx_sys_eraseBackupImageMtd(void);

/* Puts the user configuration back to the manufacturer's default. */
LIBVX_API int32_t libvx_sys_restoredefault(void);

/* Drops the accelerated NAT rules. */
LIBVX_API int32_t libvx_sys_vxnatFlush(void);

/* ---- LEDs and buttons ---- */

typedef enum libvx_sys_led_name {
    LED_PWR = 0,
    LED_PON = 1,
    LED_LOS = 2,
    LED_LAN = 3,
    LED_WPS = 4,
    LED_WLAN = 5,
    LED_FXS1 = 6,
    LED_WAN = 7,
    LED_DNLINK = 8,
    LED_FXS2 = 9,
    LED_END = 10 /* count of LEDs, no LED */
} libvx_sys_led_name;

/* All LEDs on (1) or off (0). */
LIBVX_API int32_t libvx_sys_led(int32_t on);

/* One LED: `state` is 0 off, 1 on, 2 blinking; `timer` is the blink timer in milliseconds, given for every
 * state. */
LIBVX_API int32_t libvx_sys_setLed(libvx_sys_led_name led, int32_t state, int32_t timer);

/* Prints the LEDs that the device tree declares, on standard output through stdio. */
LIBVX_API int32_t display_dts_led_list_all(void);

/* Puts a LED, or a group of LEDs that has a name of its own, into one of its configurations with `value`. */
LIBVX_API int32_t libvx_led_config_set(const char *ledName, const char *config, int32_t value);

/* The button test on (1) or off (0). */
LIBVX_API int32_t libvx_sys_button(int32_t on);

/* ---- PON services: mode, rogue detection ---- */

/* The mode that the PON stack works in, a libvx_sys_pon_mode or a number that the caller does not know. */
LIBVX_API int32_t libvx_ponApi_getPonMode(uint32_t *mode);
LIBVX_API int32_t libvx_ponApi_setPonMode(libvx_sys_pon_mode mode);

/* The unit's own rogue-ONU detection: on or off, shutting the transmitter down by itself or not, and whether a
 * detection made before is cleared. 0 and 1 each. */
LIBVX_API int32_t libvx_ponApi_setPonSelfRogueDetect(int32_t enable, int32_t autoShutdownEnable,
                                                     int32_t stateClear);

/* ---- system information: what the unit has ----
 *
 * The result is the count itself, 0 for none or one that cannot be told. Numbers run from 0 to the count less 1. */

LIBVX_API int32_t libvx_sys_getLlidNum(void);
LIBVX_API int32_t libvx_sys_getTcontNum(void);
LIBVX_API int32_t libvx_sys_getQueueNumPerLlidTcont(void);

/* Ethernet ports. */
LIBVX_API int32_t libvx_sys_getEthNum(void);

/* ---- queue scheduling and rate limits ----
 *
 * Of an LLID, a T-CONT or a switch port, always for eight queues: prio[i] and weight[i] belong to queue i. A limit
 * has an enable flag, 0 or 1, and a rate, which is kept also while the flag is 0. */

/* The scheduling mode. */
typedef enum libvx_pon_queue_types {
    LIBVX_PON_QUEUE_SP = 0,    /* strict priority */
    LIBVX_PON_QUEUE_WRR = 1,   /* weighted round robin */
    LIBVX_PON_QUEUE_SP_WRR = 2 /* mixed */
} libvx_pon_queue_types;

#define LIBVX_QUEUES 8

/* ---- PON services: the EPON link ---- */

/* The optics' transmitter and receiver on (1) or off (0). The result is a status byte, 0 for success. */
LIBVX_API uint8_t libvx_ponApi_eponOptTxCtl(uint8_t enable);
LIBVX_API uint8_t libvx_ponApi_eponOptRxCtl(uint8_t enable);

/* Rogue-ONU behaviour on (1) or off (0). The result is a status byte, 0 for success. */
LIBVX_API uint8_t libvx_ponApi_eponSetRogueOnu(uint32_t enable);

/* Link state: the result is the value itself. */
LIBVX_API uint8_t libvx_ponApi_eponIsLosExisted(void); /* 1 when there is no signal */
LIBVX_API uint32_t libvx_ponApi_eponGetFecMode(void);
LIBVX_API uint8_t libvx_ponApi_eponGetFecStatus(void);
LIBVX_API uint8_t libvx_ponApi_eponGetRegStatus(uint8_t link); /* the registration state; `link` is always 0 */

/* Counters of the link: ds is downstream, us upstream. Size buckets count frames of up to 64, 65 to 127, 128 to
 * 255, 256 to 511, 512 to 1023 and 1024 to 1518 bytes. */
typedef struct libvx_pon_eponStats_s {
    uint64_t dsDropEvents, usDropEvents, dsOcts, usOcts, dsPkts, usPkts, dsBcastPkts, usBcastPkts, dsBcastOcts,
        dsMcastPkts, usMcastPkts, dsMcastOcts, dsCrcErrPkts, usCrcErrPkts, dsUnderSzPkts, usUnderSzPkts,
        dsOverSzPkts, usOverSzPkts, dsFragments, usFragments, dsJabbers, usJabbers, dsPkts64, dsPkts127, dsPkts255,
        dsPkts511, dsPkts1023, dsPkts1518, usPkts64, usPkts127, usPkts255, usPkts511, usPkts1023, usPkts1518,
        dsDiscards, usDiscards, dsDiscardOcts, usDiscardOcts, dsErr, usErr, statusChgTime;
} libvx_pon_eponStats_t;

LIBVX_API void libvx_ponApi_eponGetStats(libvx_pon_eponStats_t *stats);

LIBVX_API int32_t libvx_ponApi_eponGetQueue(uint16_t llid, uint32_t *mode, uint8_t prio[LIBVX_QUEUES],
                                            uint8_t weight[LIBVX_QUEUES]);
LIBVX_API int32_t libvx_ponApi_eponSetQueue(uint16_t llid, uint16_t mode, const uint8_t prio[LIBVX_QUEUES],
                                            const uint8_t weight[LIBVX_QUEUES]);

/* Upstream limits in kbps. */
LIBVX_API int32_t libvx_ponApi_eponGetLlidRateLimit(uint16_t llid, uint32_t *en, uint32_t *rate);
LIBVX_API int32_t libvx_ponApi_eponSetLlidRateLimit(uint16_t llid, uint32_t en, uint32_t rate);
LIBVX_API int32_t libvx_ponApi_eponGetQueueRateLimit(uint16_t llid, uint16_t queue, uint32_t *en, uint32_t *rate);
LIBVX_API int32_t libvx_ponApi_eponSetQueueRateLimit(uint16_t llid, uint16_t queue, uint32_t en, uint32_t rate);

/* ---- PON services: the GPON link ---- */

/* The optics' transmitter and receiver on (1) or off (0). The result is a status byte, 0 for success. */
LIBVX_API uint8_t libvx_ponApi_gponOptTxCtl(uint8_t enable);
LIBVX_API uint8_t libvx_ponApi_gponOptRxCtl(uint8_t enable);

/* Rogue-ONU behaviour on (1) or off (0). */
LIBVX_API int32_t libvx_ponApi_gponSetRogueOnu(int32_t enable);

/* The activation state, 1 to 7 for O1 to O7; the result of the getter is the state itself. Only O1 and O7 can be
 * set. */
LIBVX_API int32_t libvx_ponApi_gponGetPonStaus(void);
LIBVX_API int32_t libvx_ponApi_gponSetPonStaus(int32_t state);

/* Link state: the result is the value itself. */
LIBVX_API int32_t libvx_ponApi_gponGetLosStatus(void); /* 1 when there is no signal */
LIBVX_API int32_t libvx_ponApi_gponGetFecStatus(void);

/* Counters of the link, as those of EPON. Their order is the library's, not the one they are shown in. */
typedef struct libvx_pon_gponStats_s {
    uint64_t dsDropEvents, usDropEvents, dsOcts, usOcts, dsPkts, usPkts, dsBcastPkts, usBcastPkts, dsBcastOcts,
        dsMcastOcts, dsMcastPkts, usMcastPkts, dsCrcErrPkts, usCrcErrPkts, dsUnderSzPkts, usUnderSzPkts,
        dsOverSzPkts, usOverSzPkts, dsFragments, usFragments, dsJabbers, usJabbers, dsPkts_l64, dsPkts_64_127,
        dsPkts_128_255, dsPkts_256_511, dsPkts_512_1023, dsPkts_1024_1518, usPkts_l64, usPkts_64_127,
        usPkts_128_255, usPkts_256_511, usPkts_512_1023, usPkts_1024_1518, dsDiscards, usDiscards, dsDiscardOcts,
        usDiscardOcts, dsErr, usErr, fecErr, hecErr, bipErr, frmCnt, dsGemCnt, dsGemPlCnt, usGemCnt, usGemPlCnt;
} libvx_pon_gponStats_t;

LIBVX_API int32_t libvx_ponApi_gponGetStats(libvx_pon_gponStats_t *stats);

LIBVX_API int32_t libvx_ponApi_gponGetQueue(uint16_t tcont, uint32_t *mode, uint8_t prio[LIBVX_QUEUES],
                                            uint8_t weight[LIBVX_QUEUES]);
LIBVX_API int32_t libvx_ponApi_gponSetQueue(uint16_t tcont, uint16_t mode, const uint8_t prio[LIBVX_QUEUES],
                                            const uint8_t weight[LIBVX_QUEUES]);

/* Upstream limits in kbps. */
LIBVX_API int32_t libvx_ponApi_gponGetTcontRateLimit(uint16_t tcont, uint32_t *en, uint32_t *rate);
LIBVX_API int32_t libvx_ponApi_gponSetTcontRateLimit(uint16_t tcont, uint32_t en, uint32_t rate);
LIBVX_API int32_t libvx_ponApi_gponGetQueueRateLimit(uint16_t tcont, uint16_t queue, uint32_t *en, uint32_t *rate);
LIBVX_API int32_t libvx_ponApi_gponSetQueueRateLimit(uint16_t tcont, uint16_t queue, uint32_t en, uint32_t rate);

/* ---- switch services: ports ----
 *
 * Callers check no upper bound of a port number: an operation fails for a port that the switch does not have. */

typedef enum libvx_swith_port_id {
    LIBVX_SW_PORT_LAN0 = 0,
    LIBVX_SW_PORT_LAN1 = 1,
    LIBVX_SW_PORT_LAN2 = 2,
    LIBVX_SW_PORT_LAN3 = 3,
    LIBVX_SW_PORT_LAN4 = 4,
    LIBVX_SW_PORT_10G = 5,
    LIBVX_SW_PORT_PON = 14,
    LIBVX_SW_PORT_CPU = 15
} libvx_swith_port_id;

/* Counters of a port, as those of the PON links. */
typedef struct libvx_switch_ctcPmData_s {
    uint64_t dsDropEvents, usDropEvents, dsOcts, usOcts, dsPkts, usPkts, dsBcastPkts, usBcastPkts, dsMcastPkts,
        usMcastPkts, dsCrcErrPkts, usCrcErrPkts, dsUnderSzPkts, usUnderSzPkts, dsOverSzPkts, usOverSzPkts,
        dsFragments, usFragments, dsJabbers, usJabbers, dsPkts64, dsPkts_64_127, dsPkts_128_255, dsPkts_256_511,
        dsPkts_512_1023, dsPkts_1024_1518, usPkts64, usPkts_64_127, usPkts_128_255, usPkts_256_511, usPkts_512_1023,
        usPkts_1024_1518, dsDiscards, usDiscards, dsErr, usErr, statusChgTime;
} libvx_switch_ctcPmData_t;

LIBVX_API void libvx_switchApi_ethGetPmData(uint8_t port, libvx_switch_ctcPmData_t *data);

typedef enum libvx_switch_port_speed_types {
    LIBVX_SW_PORT_SPEED_AUTO = 0,
    LIBVX_SW_PORT_SPEED_10M = 1,
    LIBVX_SW_PORT_SPEED_100M = 2,
    LIBVX_SW_PORT_SPEED_1000M = 3,
    LIBVX_SW_PORT_SPEED_2500M = 4
} libvx_switch_port_speed_types;

typedef enum libvx_switch_port_duplex_types {
    LIBVX_SW_PORT_DUPLEX_AUTO = 0,
    LIBVX_SW_PORT_DUPLEX_HALF = 1,
    LIBVX_SW_PORT_DUPLEX_FULL = 2
} libvx_switch_port_duplex_types;

/* The link as it is: `link` is 1 when it is up, speed and duplex are of the types above, 0 when unknown. */
LIBVX_API int32_t libvx_switchApi_portGetLinkStatus(uint16_t port, uint32_t *link, uint32_t *speed,
                                                    uint32_t *duplex);

/* The link as it shall be. `action` is 0 to force speed and duplex, 1 to negotiate and advertise them, 2 to reset
 * the port to them. */
LIBVX_API int32_t libvx_switchApi_portSetLinkCfg(uint16_t port, uint32_t action, uint32_t speed, uint32_t duplex);

/* Forwarding of traffic and the administrative state, 0 off, 1 on. */
LIBVX_API int32_t libvx_switchApi_portGetTrafficEn(uint16_t port, uint32_t *state);
LIBVX_API int32_t libvx_switchApi_portSetTrafficEn(uint16_t port, uint32_t state);
LIBVX_API int32_t libvx_switchApi_portGetAdmin(uint16_t port, uint32_t *state);
LIBVX_API int32_t libvx_switchApi_portSetAdmin(uint16_t port, uint32_t state);

/* Flow control by direction, 0 off, 1 on; the pause time is in quanta of 512 bit times. */
LIBVX_API int32_t libvx_switchApi_portGetPause(uint16_t port, uint32_t *tx, uint32_t *rx, uint16_t *pausetime);
LIBVX_API int32_t libvx_switchApi_portSetPause(uint16_t port, uint32_t tx, uint32_t rx, uint16_t pausetime);

/* Limits in kbps; `dir` is 0 for ingress (rx), 1 for egress (tx). */
LIBVX_API int32_t libvx_switchApi_portGetRateLimit(uint16_t port, uint32_t dir, uint32_t *en, uint32_t *rate);
LIBVX_API int32_t libvx_switchApi_portSetRateLimit(uint16_t port, uint32_t dir, uint32_t en, uint32_t rate);

/* Storm limits in packets per second; `type` is 0 broadcast, 1 multicast, 2 unicast, `dir` always 0. */
LIBVX_API int32_t libvx_switchApi_portGetStormRateLimit(uint16_t port, uint32_t type, uint32_t dir, uint32_t *en,
                                                        uint32_t *rate);
LIBVX_API int32_t libvx_switchApi_portSetStormRateLimit(uint16_t port, uint32_t type, uint32_t dir, uint32_t en,
                                                        uint32_t rate);

/* Egress queues; the mode is a libvx_pon_queue_types. */
LIBVX_API int32_t libvx_switchApi_portGetQueue(uint16_t port, uint32_t *mode, uint8_t prio[LIBVX_QUEUES],
                                               uint8_t weight[LIBVX_QUEUES]);
LIBVX_API int32_t libvx_switchApi_portSetQueue(uint16_t port, uint32_t mode, const uint8_t prio[LIBVX_QUEUES],
                                               const uint8_t weight[LIBVX_QUEUES]);

/* Whether a LAN port serves as WAN port (1) or not (0). */
LIBVX_API int32_t libvx_switchApi_portGetWanPort(uint16_t port, uint8_t *iswan);
LIBVX_API int32_t libvx_switchApi_portSetWanPort(uint16_t port, uint8_t iswan);

/* The number of a LAN port's PHY, by the unit's PHY port map. `lanIndex` runs from 0. The result is the number
 * itself, negative for a port that the map does not have. */
LIBVX_API int32_t libvx_switchApi_ethPortNum2PhyPortNum(int32_t lanIndex);

/* ---- switch services: protocol packets ----
 *
 * Protocols: 0 DHCP broadcast, 1 ARP, 2 ICMPv4, 3 ICMPv6, 4 IGMP, 5 MLD, 6 PPPoE, 7 TCP ACK, 8 multicast, 9 TCP
 * SYN, 10 IEEE 1905; 255 sets all of them. */

/* The limit of the queue that takes a protocol's packets to the CPU, in frames per second, for the whole switch;
 * the direction is 1 for ingress, 0 for egress. Note the order of the setter: the flag comes before the
 * direction. */
LIBVX_API int32_t libvx_switchApi_GetProtoQueueLimit(uint32_t proto, uint32_t up, uint32_t *en, uint32_t *rate);
LIBVX_API int32_t libvx_switchApi_SetProtoQueueLimit(uint32_t proto, uint32_t en, uint32_t up, uint32_t rate);

/* What a port does with a protocol's packets: 0 forwards them, 1 traps them to the CPU, 2 drops them, 3 copies them
 * to the CPU. */
LIBVX_API int32_t libvx_switchApi_GetProtoAction(uint16_t port, uint32_t proto, uint32_t *action);
LIBVX_API int32_t libvx_switchApi_SetProtoAction(uint16_t port, uint32_t proto, uint32_t action);

/* ---- switch services: MAC addresses ---- */

typedef struct libvx_switch_macEntry_s {
    uint8_t portId;
    uint8_t mode; /* always 0 */
    uint16_t vlan;
    uint8_t mac[6];
} libvx_switch_macEntry_t;

/* The port's entries. `*table` is one block of memory of `*count` entries, which the caller releases with free();
 * it may be null when there are none. A failure hands over no memory. */
LIBVX_API int32_t libvx_switchApi_getMacTable(uint16_t port, uint16_t *count, libvx_switch_macEntry_t **table);

/* Forgets the port's entries. */
LIBVX_API int32_t libvx_switchApi_clearMacTable(uint16_t port);

/* Add one entry, delete the one of the same port, VLAN and address. */
LIBVX_API int32_t libvx_switchApi_addMacEntry(const libvx_switch_macEntry_t *entry);
LIBVX_API int32_t libvx_switchApi_delMacEntry(const libvx_switch_macEntry_t *entry);

/* Rules that take traffic for a MAC address with an IP address to the CPU. `unit` is always 0. `ipv4` is in host
 * byte order and 0 for an IPv6 rule, `ipv6` is 16 bytes in network byte order and null for an IPv4 rule; `iswan` is
 * 0 for the LAN, 1 for a WAN, 2 for the TR-069 management WAN. The two ports are -1 for any. */
LIBVX_API int32_t libvx_switchApi_addCpuMac(uint8_t unit, const uint8_t mac[6], uint32_t ipv4, const uint8_t *ipv6,
                                            uint8_t iswan, int32_t portA, int32_t portB);
LIBVX_API int32_t libvx_switchApi_delCpuMac(uint8_t unit, const uint8_t mac[6], uint32_t ipv4, const uint8_t *ipv6,
                                            uint8_t iswan, int32_t portA, int32_t portB);

/* ---- registers of the system-on-chip ---- */

/* Reads the 32-bit register at a physical address, replaces `width` bits from `lowBit` on (0 is the least
 * significant) by `value`, which must fit, and writes it back. */
LIBVX_API int32_t vx_mem_modify(uint32_t address, uint32_t lowBit, uint32_t width, uint32_t value);

/* ---- validators: non-zero when the text is valid ---- */

/* xx:xx:xx:xx:xx:xx, six groups of two hexadecimal digits. */
LIBVX_API int32_t libvx_is_valid_macAddr(const char *text);

/* 16 hexadecimal digits, or 4 characters and 8 hexadecimal digits, or ASCII of any other length up to 64. */
LIBVX_API int32_t libvx_is_valid_gponSN(const char *text);

/* x,x,x,x, four numbers. */
LIBVX_API int32_t libvx_is_valid_phyPortMap(const char *text);

/* A usable IPv4 address in dotted form. */
LIBVX_API int32_t libvx_is_valid_ipv4Addr(const char *text);

#ifdef __cplusplus
}
#endif

#endif
