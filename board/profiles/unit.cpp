#include "unit.h"

static constexpr unit_field home_gateway_fields[] = {
    {"ModelName", "VX5200-HGU4"},
    {"ModelId", "H4"},
    {"EquipmentId", "VX5200-HGU4"},
    {"FitId", "conf-vx5200-hgu"},
    {"HwVersion", "V2.1"},
    {"TYPE", "HGU"},
    {"MAC_NUM", "8"},
    {"10GeNum", "0"},
    {"2GeNum", "1"},
    {"GeNum", "4"},
    {"FeNum", "0"},
    {"UsbNum", "1"},
    {"FxsNum", "2"},
    {"SlicType", "SI3228x"},
    {"SlicMode", "standby"},
    {"SlicDcType", "0"},
    {"WifiNum", "2"},
    {"WifiSsid", "VX-HGU4"},
    {"WifiPasswd", "change-me"},
    {"PhyPortMap", "0,1,2,3"},
    {"DeviceType", "1"},
    {"CatvNum", "1"},
};

static constexpr unit_field single_family_fields[] = {
    {"ModelName", "VX5200-SFU1"},
    {"ModelId", "S1"},
    {"EquipmentId", "VX5200-SFU1"},
    {"FitId", "conf-vx5200-sfu"},
    {"HwVersion", "V1.4"},
    {"TYPE", "SFU"},
    {"MAC_NUM", "2"},
    {"10GeNum", "0"},
    {"2GeNum", "0"},
    {"GeNum", "1"},
    {"FeNum", "0"},
    {"UsbNum", "0"},
    {"FxsNum", "0"},
    {"WifiNum", "0"},
    {"PhyPortMap", "0,1,2,3"},
    {"DeviceType", "0"},
    {"CatvNum", "0"},
};

// The same on every unit.
static constexpr unit_field common_fields[] = {
    {"OUI", "025658"},      {"Vendor", "Velmarix"}, {"VendorId", "VXLM"},     {"UserName", "user"},
    {"UserPasswd", "user"}, {"Area", "10"},         {"Province", "1"},        {"Language", "English"},
    {"LOID", "subscriber"}, {"LOID_Passwd", "0"},   {"GPON_Passwd", "00000"}, {"RemoteLogin", "0"},
    {"InversePhyLed", "0"}, {"ExdbgMode", "0"},     {"MfgMode", "0"},         {"PDate", "2022-01-01"},
};

// Addresses are locally administered.
static constexpr unit_field home_gateway_serials[] = {
    {"MAC", "02:56:58:10:20:30"}, {"SN", "VX5H2201000042"}, {"GPON_SN", "VXLM10203042"}};
static constexpr unit_field single_family_serials[] = {
    {"MAC", "02:56:58:40:50:60"}, {"SN", "VX5S2201000007"}, {"GPON_SN", "VXLM40506007"}};
static constexpr unit_field no_serials[] = {
    {"MAC", "02:56:58:00:00:00"}, {"SN", "00000000000000"}, {"GPON_SN", "VXLM00000000"}};

static constexpr const char *home_gateway_leds[] = {"pwr_led",  "pon_led",  "los_led", "lan_led",    "wps_led",
                                                    "wlan_led", "fxs1_led", "int_led", "dnlink_led", "fxs2_led"};
static constexpr const char *single_family_leds[] = {"pwr_led", "pon_led", "los_led", "lan_led"};

// Numbers 14 and 15 are the PON and the CPU. The home gateway's 10G port is not brought out.
static constexpr const char *home_gateway_ports[] = {"port0", "port1", "port2",  "port3",
                                                     "port4", "port5", "port14", "port15"};
static constexpr const char *home_gateway_phone_lines[] = {"line0", "line1"};
static constexpr const char *single_family_ports[] = {"port0", "port14", "port15"};

constinit const unit_kind home_gateway = {.prefix = "",
                                          .fields = home_gateway_fields,
                                          .serials = home_gateway_serials,
                                          .leds = home_gateway_leds,
                                          .tconts = "32\n",
                                          .eth_ports = "5\n",
                                          .ports = home_gateway_ports,
                                          .mac_table_size = "16384\n",
                                          .phone_lines = home_gateway_phone_lines};
constinit const unit_kind single_family_unit = {.prefix = "sfu-",
                                                .fields = single_family_fields,
                                                .serials = single_family_serials,
                                                .leds = single_family_leds,
                                                .tconts = "16\n",
                                                .eth_ports = "1\n",
                                                .ports = single_family_ports,
                                                .mac_table_size = "2048\n",
                                                .phone_lines = {}};

static void print_fields(std::span<const unit_field> fields, FILE *file) {
    for (const unit_field &field : fields) {
        fprintf(file, "%s=%s\n", field.key, field.value);
    }
}

void unit_print_sysinfo(const unit_kind &kind, const char *pon_mode, bool individual, FILE *file) {
    print_fields(individual ? kind.serials : std::span(no_serials), file);
    fprintf(file, "MODE=%s\n", pon_mode);
    print_fields(kind.fields, file);
    print_fields(common_fields, file);
}
