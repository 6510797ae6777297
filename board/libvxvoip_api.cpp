// The voice library of the virtual board. It has no operation yet; programs that need the library can load it.

#include "libvxvoip_api.h"
