// The calibration over the life of the unit: init, save, restore, read.
#ifndef VXCLI_BOB_LIFECYCLE_H
#define VXCLI_BOB_LIFECYCLE_H

#include <cstdint>

// Identifies the chip and, when it has no EEPROM of its own, loads a calibration image into it: the working
// image, else its backup, else the factory default. Leaves its findings in the status files. 0, also when the
// transfer into the chip failed (the driver status then says so); -1 when there is no chip or no image.
int32_t bob_initialize();

// Command handlers.
int32_t bob_init(int32_t argc, const char *const argv[], const char *help);
int32_t bob_save(int32_t argc, const char *const argv[], const char *help);
int32_t bob_restore(int32_t argc, const char *const argv[], const char *help);
int32_t bob_read(int32_t argc, const char *const argv[], const char *help);

#endif
