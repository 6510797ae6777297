// Real flash partitions, by the kernel's MTD interface. Whatever fails is in the trace.
#ifndef FLASH_DEVICE_H
#define FLASH_DEVICE_H

#include "device_node.h"
#include "flash.h"

// Opens the node that the partition's link leads to; its size stays 0 if that fails.
void flash_device_open(flash_partition *partition);

// As flash_read and so on; the range lies inside the partition. Blocks that are marked bad are left alone: the
// operation fails.
bool flash_device_read(const flash_partition &partition, uint32_t offset, std::span<uint8_t> data);
bool flash_device_erase_block(const flash_partition &partition, uint32_t block);
bool flash_device_program(const flash_partition &partition, uint32_t offset, std::span<const uint8_t> data);

// Notes in the trace what could not be done, where and with how many bytes. Returns false.
bool flash_device_failed(const flash_partition &partition, node_state state, const char *action, uint32_t offset,
                         size_t length);

#endif
