/*
 * The voice library's C boundary, as far as vxcli calls it. The conventions are those of libvx.h.
 *
 * `line` is a phone line's number; which numbers there are, the library knows, and refuses any other.
 */
#ifndef LIBVXVOIP_API_H
#define LIBVXVOIP_API_H

#include "libvx.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The longest name of a log file, in bytes, with its NUL. */
#define LIBVOIP_LOG_FILE_SIZE 64

/* Sets how much is logged, 1 to 4, and where to. The empty text for `file` leaves that to the library. */
LIBVX_API int32_t libVoip_debug_level(int32_t level, const char *file);

/* Prints the TR-104 parameters on standard output. */
LIBVX_API int32_t libVoip_show(void);

/* Calls `number`. */
LIBVX_API int32_t libVoip_callTest(const char *number);

/* Begins the test of the phones (1), ends it (0). */
LIBVX_API int32_t libVoip_phoneTest(int32_t on);

/* Let the phone on a line ring, and be silent again. */
LIBVX_API int32_t libVoip_phoneRingStart(int32_t line);
LIBVX_API int32_t libVoip_phoneRingStop(int32_t line);

/* Have the voice service refresh a status object of a line. */
LIBVX_API int32_t libVoip_update_registerStatus(int32_t line);
LIBVX_API int32_t libVoip_update_callStatus(int32_t line);
LIBVX_API int32_t libVoip_update_IMSFeature(int32_t line);
LIBVX_API int32_t libVoip_update_callStatistics(int32_t line);
LIBVX_API int32_t libVoip_update_poorQuality(int32_t line);
LIBVX_API int32_t libVoip_Update_Simulation(int32_t line);

/* Send a SIP register, a de-register, for a line. */
LIBVX_API int32_t libVoip_Register(int32_t line);
LIBVX_API int32_t libVoip_unRegister(int32_t line);

/* Have a G.988 managed entity of a line reported. */
LIBVX_API int32_t libVoip_omciLineStatus(int32_t line);
LIBVX_API int32_t libVoip_omciCallControl(int32_t line);
LIBVX_API int32_t libVoip_omciCallControlReset(int32_t line);
LIBVX_API int32_t libVoip_omciSIPAgent(int32_t line);
LIBVX_API int32_t libVoip_omciCallInitiation(int32_t line);

#ifdef __cplusplus
}
#endif

#endif
