// What vxstatus shows of a board's flash, and of the manufacturing information, which may be there only.
#ifndef STATUS_FLASH_H
#define STATUS_FLASH_H

void show_unit(int board);
void show_flash(int board);

#endif
