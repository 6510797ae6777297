// The board's own files. Input: parts that end with a byte 0xFE, each the path of a file of the board, a line end
// and its contents; a part without a line end is a command instead. Then comes a round of commands that read and
// change what is in the directories of these files.

#include "harness.h"

#include <string_view>

static constexpr char separator = '\xFE';
static constexpr int parts_max = 12;

struct reader_row {
    std::string_view directory; // of the board; "": run whatever was written
    std::string_view commands;
};
static constexpr reader_row readers[] = {
    {"", "bob opt\nsys ponmode\nimage check\n"},
    {"switch",
     "port stats 1\nport status 1\nport status 5\nport pause 1\nport rate 1\nport storm 1\nport qos 1\n"
     "port proto show\nport proto arp 1 1 100\nport protoact 1 show\nport trafficen 1\nport admin 1\nport mode 1 "
     "100M full\nport showwanport\n"
     "port setwanport 1 1\nport reset\nport qos 1 wrr 1 2 3 4 5 6 7 8\nswitch listmac 1\n"
     "switch addmac 1 100 02:00:5e:10:00:01\nswitch delmac 1 100 02:00:5e:10:00:01\nswitch listmac 1\n"
     "switch addcpumac 02:00:5e:10:00:02 192.168.1.1 lan\nswitch delcpumac 02:00:5e:10:00:02 192.168.1.1 lan\n"
     "switch clrmac 1\nport status 1\n"},
    {"pon", "epon status\nepon stats\nepon qos 1\nepon rate 1\nepon qrate 1 1\nepon rate 1 1 1000\nepon tx 0\n"
            "epon rogue 1\nepon qos 1 sp\ngpon status\ngpon stats\ngpon qos 1\ngpon rate 1\ngpon qrate 1 1\n"
            "gpon state 1\ngpon tx 0\nsys ponmode\nsys ponmode gpon\nsys rogue 1 1 1\n"},
    {"i2c", "bob init\nbob read_regs 0x50 0 256\nbob read_regs 0x51 0 256\nbob table_sel 0x80\nbob get 1 0x51 0x80 "
            "0x80 128\n"
            "bob write_reg 0x51 0x10 0x55\nbob save\nbob restore\nbob opt\nbob generate_mod\n"},
    {"flash",
     "bob read\nbob init\nbob save\nsys load\nsys save\nsys getbackup /tmp/x\nsys savebackup /tmp/x\n"
     "sys eraseslave\nwlan show_info\nwlan validate_cal_data_2g\nwlan write_cal_data_5g\nsys erasebackup\n"},
    {"sys",
     "sys version\nsys bootversion\nsys show\nimage check\nsys eraseslave\nsys flushnat\nsys button 1\nsys load\n"},
    {"led", "sys led 1\nsys led_event LED_PON BLINK 100\nsys led_event_list\n"},
    {"optics", "bob catv\nbob catvrf 1\nbob catvoa 3\n"},
    {"serdes", "bob prbs_set 1\nbob prbs_get\nbob -gprbscounter 3\nbob -prbscounter_show\n"},
    {"voice", "voice show\nvoice debug 3 /tmp/log\nvoice ring on 1\nvoice register 1\nvoice calltest 123\n"
              "voice update1 1\nvoice omcisipagent 0\nvoice test on\n"},
    {"mem", "sys ps mode0\nsys ps off\n"},
    {"unit", "bob init\nbob driver\nbob iic_get\nsys show\nsys ethwan\nsys load\nwlan show_info\n"},
    {"shell", "dnsmasq dump\ndnsmasq log enable\n"},
};

struct unmade_row {
    const char *path;
    const char *contents; // a line that suits it
};

static std::string fresh_part() {
    if (draw_below(4) == 0) {
        return draw_line();
    }
    static constexpr unmade_row unmade[] = {
        {"faults", "libvx_ponApi_i2cWrite dev=0x51 reg=0x7f skip=2 times=9 result=3\n"},
        {"faults", "libvx_ponApi_i2cRead times=always result=2147483647\n"},
        {"trace", ""},
        {"shell", "  42 root dnsmasq\n"},
        {"switch/cpu_mac", "02:00:5e:10:00:02 192.168.1.1 0 -1 -1\n"},
        {"switch/port1/mac_table", "02:00:5e:10:00:01 100\n"},
        {"switch/port1/qos", "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17\n"},
        {"switch/port1/link_config", "0 3 2\n"},
        {"switch/port1/pause", "1 1 65535\n"},
        {"switch/port1/stats/dsOcts", "18446744073709551615\n"},
        {"switch/port1/proto_arp", "3\n"},
        {"switch/proto/arp_ingress", "1 2500000\n"},
        {"pon/epon/llid1/qos", "2 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17\n"},
        {"pon/epon/llid1/rate", "1 1024000\n"},
        {"pon/gpon/tcont1/qos", "2 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 256\n"},
        {"pon/epon/stats/dsOcts", "18446744073709551616\n"},
        {"i2c/1/busy", "1800000001.000000000\n"},
        {"mem/0x20100080", "4294967295\n"},
        {"unit/etc/vx_sys_info", "PhyPortMap=4,3,2,1\n"},
        {"unit/var/bob_chip_type", "15\n"},
        {"unit/var/bob_e2prom_status", "1\n"},
        {"unit/var/vx_bob_a0.bin", "AAAAAAAAAAAAAAAA"},
        {"unit/userconfig/config/ethwan", "eth0"},
    };
    static const char *const contents[] = {"0\n",          "1\n",      "255\n",    "65535\n",  "65536\n",
                                           "4294967295\n", "-1\n",     "",         "\n",       "x\n",
                                           "1 2 3\n",      "image1\n", "ux3320\n", "gn25l95\n"};
    const auto &files = board_files();
    const bool is_made = !files.empty() && draw_below(2) == 0;
    const unmade_row &row = unmade[draw_below(std::size(unmade))];
    const std::string path = is_made ? files[draw_below(static_cast<uint32_t>(files.size()))] : row.path;
    const char *line = is_made || draw_below(4) == 0 ? contents[draw_below(std::size(contents))] : row.contents;
    std::string text = path + "\n";
    static constexpr uint32_t lengths[] = {1, 1, 8, 300}; // lists have limits, too
    for (uint32_t times = 1 + draw_below(lengths[draw_below(std::size(lengths))]); times > 0; times--) {
        text += line;
    }
    return text;
}

size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size, unsigned seed) {
    return change_parts(data, size, max_size, seed, separator, fresh_part);
}

static void run_lines(std::string_view lines) {
    while (!lines.empty()) {
        run_line(take_part(&lines, '\n'));
    }
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    board_reset("ux3361-mt7915");
    std::vector<std::string> touched = {""};
    std::string_view input = as_text(data, size);
    for (int i = 0; i < parts_max && !input.empty(); i++) {
        std::string_view part = take_part(&input, separator);
        if (part.find('\n') == std::string_view::npos) {
            run_line(part);
            continue;
        }
        std::string_view path = take_part(&part, '\n');
        board_put(path, part);
        touched.emplace_back(take_part(&path, '/'));
    }
    for (const reader_row &row : readers) {
        if (std::ranges::find(touched, row.directory) != touched.end()) {
            run_lines(row.commands);
        }
    }
    return 0;
}
