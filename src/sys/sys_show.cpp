#include "sys/sys_show.h"

#include "libvx.h"
#include "sys/sys_field.h"

#include <cstdio>
#include <cstring>

int32_t sys_show(int32_t, const char *const[], const char *) {
    for (const sys_field_s &field : sys_fields()) {
        if (field.show_command != nullptr) {
            field.show_command(SYS_SHOW_COUNT, &field.command, nullptr);
        } else if (field.shown) {
            sys_print_field(field);
        }
    }
    return 0;
}

int32_t sys_delete(int32_t, const char *const argv[], const char *) {
    char name[64] = {}; // a longer word is cut before it is compared
    strncpy(name, argv[1], sizeof name - 1);
    const sys_field_s *field = sys_find_field(name);
    int32_t result = -1;
    if (field == nullptr || field->clear == sys_clear::never) {
        printf("Patameter is invalid: %s\n", name);
    } else if (field->clear == sys_clear::by_key) {
        result = libvx_sys_setValueEmpty(field->key, "");
    } else {
        result = field->set_text("");
    }
    printf("sys delete %s %s\n", name, result == 0 ? "success" : "fail");
    return 0;
}
