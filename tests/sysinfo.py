"""The sys group: its fields as the factory knows them, and runs of it in a few lines:

    assert sys(unit, "genum 4", "genum") == [(0, "sys genum success\\n"), (0, line("GE Num:", 4))]
"""

from shlex import quote
from typing import NamedTuple

from bench import FAIL, answers

_FILLER = " \xe9\xff=#;%s ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789 abcdefghijklmnopqrstuvwxyz"

# In the order of `show`: command | label | value (none: as long as fits) | name in messages | setter | room for a text,
# # for a number, - for a text of a form of its own | how `delete` clears it: by the setter, by key | "hidden" from show
_TABLE = """
mac|Mac Address:|02:AB:CD:FF:FF:FE|mac|BaseMac|-|key
macnum|Mac Num:|3|macnum|MacNum|#|key
oui|OUI:||oui|Oui|31|setter
sn|SN:||sn|Sn|64|setter
model|Model Name:||model|Model|31|setter
modelid|Model Id:||modelid|ModelId|31|setter
vendor|Vendor:||vendor|Vendor|31|setter
vendorid|Vendor Id:||vendorid|VendorId|31|setter
equipmentid|EquipmentId:||equipmentid|EquitementId|31|setter
FitId|FIT Id:||FIT id|FitId|63|key
hwversion|Hardware Version:||hwversion|HwVersion|31|setter
version|Software Version:|V7.0.1||||
bootversion|Boot Version:|V9.1||||
username|User Name:||username|UserName|31|setter
userpw|User Password:||userpw|UserPw|31|setter
area|Area:||area|Area|31|setter
province|Province:||province|Province|31|setter
language|Language:|Japanese|language|Language|-|setter
ponmode|Sys Pon Mode:|XEPON|ponmode|PonMode|-|key
onutype|Sys Pon Type:|MDU|onutype|PonType|-|key
gponsn|Gpon SN:|ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789 abcdefghijklmnopqrstuvwxyz|gponsn|GponSn|64|setter
gponpw|Gpon Password:||gponpw|GponPwd|31|setter
mfg|Mfg Mode:|13|mfg|MfgMode|#|key
10genum|10GE Num:|14|genum|10GeEthNum|#|
2genum|2GE Num:|15|genum|2GeEthNum|#|
genum|GE Num:|16|genum|GeEthNum|#|key
fenum|FE Num:|17|fenum|FeEthNum|#|key
usbnum|USB Num:|18|usbnum|UsbNum|#|key
fxsnum|FXS Num:|19|fxsnum|FxsNum|#|key
slictype|Slic Type:||slictype|SlicType|24|
slicmode|Slic Mode:||slicmode|SlicMode|24|
wifinum|WiFi Num:|-20|wifinum|WifiNum|#|key
wifissid|WiFi SSID:||wifissid|WifiSsid|31|setter
wifipwd|WiFi Passwd:||wifipwd|WifiPwd|31|setter
phyportmap|Phy Port Map:|10,20,30,40|phy port map|PhyPortMap|-|setter
PDate|Production Date||production date|ProductionDate|31|key
devtype|Device Type:|2147483647|device type|DeviceType|#|key
catvnum|catv Num:|-2147483648|CatvNum|CatvNum|#|
loid|LOID Name:||loid|Loid|31|setter|hidden
loidpw|LOID Password:||loidpw|LoidPwd|31|setter|hidden
remotelogin|RemoteLogin:|23|remotelogin|RemoteLoginConfig|#|key|hidden
inversephyled|Inverse PHY Led:|24|inversephyled|InversePhyLed|#||hidden
slicdc|Slic DC Type:|25|slicdc|SlicDcType|#||hidden
ExdbgMode|Exdbg Mode:|26|Exdbg|ExdbgMode|#||hidden
"""


class Field(NamedTuple):
    word: str
    label: str
    value: str
    named: str
    setter: str  # behind libvx_sys_set; empty for what cannot be set
    room: str
    cleared: str
    hidden: str = ""

    @property
    def set_to_value(self):  # what is behind a number does not count
        return f"{self.word} {quote(self.value + ('x9 ' if self.room == '#' else ''))}"


def _field(row):
    field = Field(*row.split("|"))
    return field._replace(value=field.value or (field.word + _FILLER)[:int(field.room)])


FIELDS = [_field(row) for row in _TABLE.split("\n") if row]
SETTABLE = [field for field in FIELDS if field.setter]
TEXTS = [field for field in FIELDS if field.room.isdigit()]


def line(label, value=""):
    return f"{label:<24} {value}\n"


def lines(fields=FIELDS):
    return [line(field.label, field.value) for field in fields]


def unset(fields):
    """The lines of empty fields: numbers that the library gives as such read 0, and two fields print nothing."""
    return ["" if field.word in ("FitId", "PDate") else
            line(field.label, 0 if field.word in ("fxsnum", "devtype", "inversephyled", "slicdc") else "") for field in fields]


def said(fields, result="success"):
    return [(0, f"sys {field.named} {result}\n") for field in fields]


def replies(words, *templates):
    """For each of the words, one after the other: what is said about it, with the word in the place of {}."""
    return [(int(text.endswith(FAIL)), text.replace("{}", word)) for word in words for text in templates]


def each(command, words, *more):
    """For each of the words: the command with it, then `more` commands."""
    return [line for word in words for line in (f"{command} {quote(word)}", *more)]


def sys(unit, *commands, **how):
    """answers() of this group."""
    return answers(unit, commands, "sys", **how)


def calls(unit, beginning="libvx_"):
    """The library operations in the trace, without the beginning that they have in common."""
    names = [entry.fields[0] for entry in unit.trace() if entry.kind == "call"]
    return [name.removeprefix(beginning) for name in names if name.startswith(beginning)]


def info(unit):
    """The file with the fields."""
    return unit.unit("etc/vx_sys_info")
