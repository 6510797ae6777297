// The voice group: its command table and the handlers, each of which hands its words to the voice library. What
// comes of the operations is not looked at: every command succeeds.

#include "vxcli.h"

#include "common/shell.h"
#include "common/words.h"
#include "libvxvoip_api.h"

#include <cstdio>
#include <cstring>

static constexpr uint32_t MAX_LOG_LEVEL = 4;

static int32_t voice_debug_level(int32_t argc, const char *const argv[], const char *) {
    if (argc == 1) {
        shell_run("cat /userconfig/config/voiceLogLevel");
        return 0;
    }
    const uint32_t level = word_to_decimal(argv[1]);
    if (level == 0 || level > MAX_LOG_LEVEL) {
        printf("invalid log level %d, value should be 1-4\n", static_cast<int32_t>(level));
        return 0;
    }
    char file[LIBVOIP_LOG_FILE_SIZE] = {};
    if (argc > 2) {
        snprintf(file, sizeof file, "%s", argv[2]); // a longer name is cut
    }
    libVoip_debug_level(static_cast<int32_t>(level), file);
    return 0;
}

static int32_t voice_show(int32_t, const char *const[], const char *) {
    libVoip_show();
    return 0;
}

static int32_t voice_callTest(int32_t, const char *const argv[], const char *) {
    libVoip_callTest(argv[1]);
    return 0;
}

// The commands about one line, whose number is the first word. Which numbers there are, the library knows.
template <int32_t (*operation)(int32_t line)>
static int32_t voice_line(int32_t, const char *const argv[], const char *) {
    operation(word_to_signed_decimal(argv[1]));
    return 0;
}

static constexpr vxcli_handler_t voice_updateRegister = voice_line<libVoip_update_registerStatus>;
static constexpr vxcli_handler_t voice_updateCallStatus = voice_line<libVoip_update_callStatus>;
static constexpr vxcli_handler_t voice_updateIMSFeature = voice_line<libVoip_update_IMSFeature>;
static constexpr vxcli_handler_t voice_updateCallStat = voice_line<libVoip_update_callStatistics>;
static constexpr vxcli_handler_t voice_updatePoorQuality = voice_line<libVoip_update_poorQuality>;
static constexpr vxcli_handler_t voice_updateSimulation = voice_line<libVoip_Update_Simulation>;
static constexpr vxcli_handler_t voice_Register = voice_line<libVoip_Register>;
static constexpr vxcli_handler_t voice_unRegister = voice_line<libVoip_unRegister>;
static constexpr vxcli_handler_t voice_omciLineStatus = voice_line<libVoip_omciLineStatus>;
static constexpr vxcli_handler_t voice_omciCallControl = voice_line<libVoip_omciCallControl>;
static constexpr vxcli_handler_t voice_omciCallControlReset = voice_line<libVoip_omciCallControlReset>;
static constexpr vxcli_handler_t voice_omciSIPAgent = voice_line<libVoip_omciSIPAgent>;
static constexpr vxcli_handler_t voice_omciCallInitiation = voice_line<libVoip_omciCallInitiation>;

// Any word with "on" in it switches on, any other one with "off" in it switches off: stations use such words.
enum class voice_switch { on, off, neither };

static voice_switch word_to_switch(const char *word) {
    if (strstr(word, "on") != nullptr) {
        return voice_switch::on;
    }
    return strstr(word, "off") != nullptr ? voice_switch::off : voice_switch::neither;
}

static int32_t voice_Ring(int32_t, const char *const argv[], const char *) {
    const int32_t line = word_to_signed_decimal(argv[2]);
    switch (word_to_switch(argv[1])) {
    case voice_switch::on:
        libVoip_phoneRingStart(line);
        break;
    case voice_switch::off:
        libVoip_phoneRingStop(line);
        break;
    case voice_switch::neither:
        break;
    }
    return 0;
}

static int32_t voice_Test(int32_t, const char *const argv[], const char *) {
    const voice_switch wanted = word_to_switch(argv[1]);
    if (wanted != voice_switch::neither) {
        libVoip_phoneTest(wanted == voice_switch::on ? 1 : 0);
    }
    return 0;
}

// Several help texts name another command than their row does; they are kept as scripts know them.
constinit const vxcli_cmd_t voice_cmds[] = {
    {"debug", voice_debug_level, 0,
     "debug <level 1|2|3|4> <filename:/userconfig/config/voicelog>: change voice log level"},
    {"show", voice_show, 0, "show : show voice tr104 parameters"},
    {"update1", voice_updateRegister, 1, "update : update register status"},
    {"update2", voice_updateCallStatus, 1, "update : update call status"},
    {"update3", voice_updateIMSFeature, 1, "update : update ims feature"},
    {"update4", voice_updateCallStat, 1, "update : update call statistics"},
    {"update5", voice_updatePoorQuality, 1, "update : update poor quality"},
    {"calltest", voice_callTest, 1, "calltest number : do calltest"},
    {"update6", voice_updateSimulation, 1, "update : update simulation"},
    {"register", voice_Register, 1, "register : send register"},
    {"unregister", voice_unRegister, 1, "unregister : send de-register"},
    {"omcilinestatus", voice_omciLineStatus, 1, "linestatus : G.988 9.9.11"},
    {"omcicallcontrol", voice_omciCallControl, 1, "call control : G.988 9.9.12"},
    {"omcicallcontrolReset", voice_omciCallControlReset, 1, "call control Reset: G.988 9.9.12"},
    {"omcisipagent", voice_omciSIPAgent, 1, "sip agent :  G.988 9.9.14"},
    {"omcicallinitiation", voice_omciCallInitiation, 1, "call initiation :  G.988 9.9.15"},
    {"ring", voice_Ring, 2, "ring [on|off] [0|1|2]"},
    {"test", voice_Test, 1, "test [on|off]"},
    {nullptr, nullptr, 0, nullptr},
};
