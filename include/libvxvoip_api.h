/*
 * The voice library's C boundary. The conventions are those of libvx.h; it declares no operation as yet,
 * because vxcli has no voice command as yet.
 */
#ifndef LIBVXVOIP_API_H
#define LIBVXVOIP_API_H

#include "libvx.h"

#endif
