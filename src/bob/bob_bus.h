// Access to the transceiver's registers: bus and device numbers, table selection, paged writes, the A0 shadow
// file.
#ifndef VXCLI_BOB_BUS_H
#define VXCLI_BOB_BUS_H

#include <cstdint>
#include <optional>
#include <span>

inline constexpr uint32_t BOB_BUS = 1;
inline constexpr uint32_t BOB_A0 = 0x50; // serial-ID page
inline constexpr uint32_t BOB_A2 = 0x51; // diagnostics page; registers 0x80 to 0xFF show the selected table
inline constexpr uint32_t BOB_TABLE_SELECT = 0x7F;
inline constexpr uint32_t BOB_A2_UPPER = 0x80;
inline constexpr uint32_t BOB_REGISTERS = 256; // of one device

// The file that stands in for the A0 device of chips that cannot keep that page themselves.
inline constexpr char BOB_A0_FILE[] = "/var/vx_bob_a0.bin";

// One register, one transfer. 0 or the library's failure.
int32_t bob_read_byte(uint32_t device, uint32_t reg, uint8_t *value);
int32_t bob_write_byte(uint32_t device, uint32_t reg, uint8_t value);

// Shows `table` in the upper half of A2. Prints nothing.
int32_t bob_select_table(uint8_t table);

// bob_select_table with a line about a failure.
int32_t bob_switch_table(uint8_t table);

// Writes `len` registers in pieces that never cross a page of 16 registers, 5 ms apart. The first failing
// piece ends the write and gives the result.
int32_t bob_ux33xx_i2cWrite(uint32_t bus_num, uint32_t devaddr, uint32_t regaddr, const uint8_t *data,
                            uint32_t len);

// The same with pages of 8 registers and no waits. Device A0 goes to the shadow file, or, when the chip has
// an EEPROM, register by register with a wait of 5 ms after each.
int32_t bob_gn_i2cWrite(uint32_t bus_num, uint32_t devaddr, uint32_t regaddr, const uint8_t *data, uint32_t len);

// Whether device `devaddr` of this chip type is the shadow file rather than the chip.
bool bob_is_shadowed(int32_t chip_type, uint32_t devaddr);

// Reads a run of registers, from the shadow file if `shadowed`, else from the chip in one transfer. 0, the
// library's failure, or -1 after the shadow file's message.
int32_t bob_read_run(bool shadowed, uint32_t bus, uint32_t device, uint32_t reg, std::span<uint8_t> values);

// Writes a run of registers in the pieces that the chip takes; in one transfer when its paging is not known.
int32_t bob_write_run(int32_t chip_type, uint32_t bus, uint32_t device, uint32_t reg,
                      std::span<const uint8_t> values);

// A data word of a command as a register value. -1 and all above 255 are refused, other negative numbers give their
// low byte: scripts use them.
std::optional<uint8_t> bob_data_word(const char *word);

// Copies `len` bytes from offset `start` of the shadow file to `pData`, which holds them. 0, or -1 after a
// message.
int32_t read_a0_from_file(int32_t start, uint8_t *pData, int32_t len);

// Puts `len` bytes at offset `start` of the shadow file. A missing file is created and then holds just these
// bytes from its beginning, whatever `start` is: the start-up always writes the whole page first. 0, or -1
// after a message.
int32_t write_a0_to_file(int32_t start, const uint8_t *pData, int32_t len);

#endif
