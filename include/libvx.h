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

#ifdef __cplusplus
}
#endif

#endif
