// The voice library. BOARD/voice has the log's level and file, and one directory for each phone line: line0, line1.

#include "libvxvoip_api.h"

#include "board_call.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <fcntl.h>

static constexpr char voice_directory[] = "voice";
static constexpr char user_directory[] = "/userconfig/config"; // where the unit keeps the log level
static constexpr uint32_t max_log_level = 4;
static constexpr int32_t max_lines = 8;

static int32_t written(bool ok) {
    return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}

// ---- lines ----

// A line that the unit lacks has no directory.
static int open_line(int voice, int32_t line) {
    if (line < 0 || line >= max_lines) {
        return -1;
    }
    char name[16];
    snprintf(name, sizeof name, "line%d", line);
    return openat(voice, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

// Sets an attribute of a line.
static int32_t set_line(const char *operation, int32_t line, const char *attribute, const char *value) {
    return board_call(operation, [=](int board) -> int32_t {
        const board_fd voice(dir_lock(board, voice_directory));
        const board_fd dir(open_line(voice.fd, line));
        return dir.fd < 0 ? LIBVX_RET_INVALID_PARAMETER : written(attr_write(dir.fd, attribute, "%s", value));
    });
}

int32_t libVoip_phoneRingStart(int32_t line) {
    return set_line(__func__, line, "ringing", "1");
}

int32_t libVoip_phoneRingStop(int32_t line) {
    return set_line(__func__, line, "ringing", "0");
}

int32_t libVoip_Register(int32_t line) {
    return set_line(__func__, line, "registered", "1");
}

int32_t libVoip_unRegister(int32_t line) {
    return set_line(__func__, line, "registered", "0");
}

int32_t libVoip_update_registerStatus(int32_t line) {
    return set_line(__func__, line, "refreshed", "register status");
}

int32_t libVoip_update_callStatus(int32_t line) {
    return set_line(__func__, line, "refreshed", "call status");
}

int32_t libVoip_update_IMSFeature(int32_t line) {
    return set_line(__func__, line, "refreshed", "ims feature");
}

int32_t libVoip_update_callStatistics(int32_t line) {
    return set_line(__func__, line, "refreshed", "call statistics");
}

int32_t libVoip_update_poorQuality(int32_t line) {
    return set_line(__func__, line, "refreshed", "poor quality");
}

int32_t libVoip_Update_Simulation(int32_t line) {
    return set_line(__func__, line, "refreshed", "simulation");
}

int32_t libVoip_omciLineStatus(int32_t line) {
    return set_line(__func__, line, "reported", "line status");
}

int32_t libVoip_omciCallControl(int32_t line) {
    return set_line(__func__, line, "reported", "call control");
}

int32_t libVoip_omciCallControlReset(int32_t line) {
    return set_line(__func__, line, "reported", "call control reset");
}

int32_t libVoip_omciSIPAgent(int32_t line) {
    return set_line(__func__, line, "reported", "sip agent");
}

int32_t libVoip_omciCallInitiation(int32_t line) {
    return set_line(__func__, line, "reported", "call initiation");
}

// Calls `body(dir, line)` for each line until one gives false.
template <typename body_t>
static bool for_lines(int voice, body_t body) {
    bool ok = true;
    for (int32_t line = 0; line < max_lines && ok; line++) {
        const board_fd dir(open_line(voice, line));
        ok = dir.fd < 0 || body(dir.fd, line);
    }
    return ok;
}

// The test takes the phones of all lines.
int32_t libVoip_phoneTest(int32_t on) {
    return board_call(__func__, [on](int board) {
        const board_fd voice(dir_lock(board, voice_directory));
        return written(voice.fd >= 0 && for_lines(voice.fd, [on](int dir, int32_t) {
                           return attr_write(dir, "in_test", "%d", on != 0 ? 1 : 0);
                       }));
    });
}

static bool is_number(const char *text) {
    static constexpr size_t longest = 31;
    const size_t length = strlen(text);
    return length > 0 && length <= longest && strspn(text, "+*#0123456789") == length;
}

// The first line makes the call.
int32_t libVoip_callTest(const char *number) {
    const bool valid = number != nullptr && is_number(number);
    return set_line(__func__, valid ? 0 : -1, "dialled", valid ? number : "");
}

// ---- log ----

// Replaced, not written over: the level outlasts a loss of power.
static bool store_log_level(int32_t level) {
    const board_fd dir(open(user_directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::array<uint8_t, 2> text = {static_cast<uint8_t>('0' + level), '\n'};
    return dir.fd >= 0 && file_replace(dir.fd, "voiceLogLevel", text);
}

static bool is_printable(const char *text) {
    for (; *text != '\0'; text++) {
        if (static_cast<unsigned char>(*text) < ' ' || *text == '\x7f') {
            return false;
        }
    }
    return true;
}

int32_t libVoip_debug_level(int32_t level, const char *file) {
    return board_call(__func__, [=](int board) -> int32_t {
        if (level < 1 || level > static_cast<int32_t>(max_log_level) || file == nullptr ||
            strlen(file) >= LIBVOIP_LOG_FILE_SIZE || !is_printable(file)) {
            return LIBVX_RET_INVALID_PARAMETER;
        }
        const board_fd voice(dir_lock(board, voice_directory));
        return written(voice.fd >= 0 && attr_write(voice.fd, "log_file", "%s", file) &&
                       attr_write(voice.fd, "log_level", "%d", level) && store_log_level(level));
    });
}

// ---- TR-104 ----

// What an attribute of a line becomes: an object's parameter, and for 0 and 1 their names.
struct parameter_row {
    const char *object; // the instance number of the line is between the two
    const char *parameter;
    const char *attribute;
    const char *off;
    const char *on; // null: the text itself
};

static constexpr parameter_row parameters[] = {
    {"VoiceProfile.1.Line", "Status", "registered", "Disabled", "Up"},
    {"VoiceProfile.1.Line", "RingState", "ringing", "Idle", "Ringing"},
    {"VoiceProfile.1.Line", "LastDialled", "dialled", nullptr, nullptr},
    {"VoiceProfile.1.Line", "LastRefreshed", "refreshed", nullptr, nullptr},
    {"VoiceProfile.1.Line", "LastReported", "reported", nullptr, nullptr},
    {"PhyInterface", "Tests.TestState", "in_test", "None", "Requested"},
};

static bool print_parameter(int dir, const char *path, const char *attribute, const char *off, const char *on) {
    char text[LIBVOIP_LOG_FILE_SIZE + 1] = {};
    const attr_state state = attr_read(dir, attribute, text);
    if (state == attr_state::damaged) {
        return false;
    }
    const char *value = state == attr_state::ok ? text : "";
    if (on != nullptr) {
        value = strcmp(value, "1") == 0 ? on : off;
    }
    printf("VoiceService.1.%s = %s\n", path, value);
    return true;
}

// Instances are numbered from 1.
static bool print_line(int dir, int32_t line) {
    bool ok = true;
    for (const parameter_row &row : parameters) {
        char path[64];
        snprintf(path, sizeof path, "%s.%d.%s", row.object, line + 1, row.parameter);
        ok = ok && print_parameter(dir, path, row.attribute, row.off, row.on);
    }
    return ok;
}

int32_t libVoip_show(void) {
    return board_call(__func__, [](int board) {
        const board_fd voice(dir_lock(board, voice_directory));
        const bool ok = voice.fd >= 0 && print_parameter(voice.fd, "LogLevel", "log_level", nullptr, nullptr) &&
                        print_parameter(voice.fd, "LogFile", "log_file", nullptr, nullptr) &&
                        for_lines(voice.fd, print_line);
        return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_READ_FAIL;
    });
}
