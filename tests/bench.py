"""The ten chips as the bench knows them, written down independently of the tool: the records' layouts, the sums over them
and the exact sequences on the bus, in a small notation that events() turns into trace lines:

    @81            table 0x81 selected
    a2_mod:105     the section's first 105 registers written in the chip's chunks, with its wait after whole chunks
    a2_mod+88:1    one register from 0x88, out of the section's image
    6e=48          a register of A2 written
    ?80:7          7 registers of A2 read from 0x80; ?a0 all of A0
    ~10            10 ms waited
    !getBob        a call of libvx
"""

import re
from typing import NamedTuple

WORKING = "/var/velmarix_bob.bin"
BACKUP = "/userconfig/config/velmarix_backup_bob.bin"
A0_SHADOW = "/var/vx_bob_a0.bin"

# section@offset:registers; of a section's place in the record only its registers exist in the chip.
_GN_TABLES = "a2_lut2@{}:128 a2_mod@{}:128 a2_bias@{}:128 a2_apcapd@{}:128"
RECORDS = {
    "bob_data_ux_s": (1000, "a0_tab@0:256 a2_lower@256:128 a2_lut3@384:115 a2_bias@512:105 a2_mod@640:105 a2_apd@768:105"),
    "bob_data_ux3320s_s": (896, "a0_tab@0:256 a2_lower@256:128 a2_lut3@384:125 a2_bias@512:105 a2_mod@640:105 a2_apd@768:105"),
    "bob_data_ux3361_s": (1792, "a2_lower@0:128 a2_table81@128:107 a2_table82@256:107 a2_table83@384:107 a2_table80@512:128"
                          " a2_table84@768:128 a2_table85@1024:128 a2_table86@1280:43 a2_table87@1408:9 a0_tab@1536:256"),
    "bob_data_gn_s": (1024, "a0_tab@0:256 a2_lower@256:128 a2_lut0@384:128 " + _GN_TABLES.format(512, 640, 768, 896)),
    "bob_data_gn28l97_s": (1226, "a0_tab@0:256 a2_lower@256:128 a2_table80@384:128 a2_table81@512:128 a2_table82@640:128"
                           " a2_table83@768:128 a2_table84@896:128 a2_table85@1024:128 a2_table86@1152:64 a2_tableFF@1216:10"),
    "bob_data_gn28l95_s": (1408, "a0_tab@0:256 a2_lower@256:128 " + _GN_TABLES.format(384, 512, 640, 768) +
                           " a2_trim@896:128 a2_eyemax@1024:128 a2_rxineq@1152:128 a2_curdark@1280:128"),
}

# Registers whose sum a table's sum byte holds; that byte stands behind the section's registers.
_CURVES = {"a2_bias": ["80-e8"], "a2_mod": ["80-e8"], "a2_apd": ["80-e8"]}
_UX336X = {"a2_table80": ["81-b6", "b8-e5"], "a2_table81": ["80-e8"], "a2_table82": ["80-e8"], "a2_table83": ["80-e8"],
           "a2_table84": ["80-d3", "d6-dd", "e3-e6"], "a2_table85": ["80-94", "a0-aa", "b0-b7", "c0-d4"],
           "a2_table86": ["80-a9"]}
SUMS = {
    "ux3320": {"a2_lut3": ["82-d2"], **_CURVES},
    "ux3320s": {"a2_lut3": ["81-a0", "a2-d2"], **_CURVES},
    "ux3361": _UX336X,
    "ux3362s": _UX336X,
    "ux3365": {**_UX336X, "a2_table84": ["80-d3", "d6-dd", "e3-e6", "eb-ee"]},
}

_UX3320S_WRITE = ("a0_tab:128 ~5 @4 ~10 a2_bias:105 ~5 @5 ~10 a2_mod:105 ~5 @6 ~10 a2_apd:105 ~5 @3 ~10 a2_lut3:125"
                  " ~5 @0 ~10 a2_lower:128 ~5 6e=48 ~5 6e=08")
_UX336X_WRITE = ("a0_tab:128 @81 ~10 a2_table81:107 ~10 @82 ~10 a2_table82:107 ~10 @83 ~10 a2_table83:107 ~10"
                 " @84 ~10 a2_table84:128 ~10 @85 ~10 a2_table85:128 ~10 @86 ~10 a2_table86:43 ~10"
                 " @87 ~10 a2_table87:9 ~10 @0 ~10 a2_lower:128 ~10 @80 ~10 {} ~10 6e=48 ~10 6e=08 ~10")
_UX336X_HELD = _UX336X_WRITE.format("a2_table80/9d:128") + " a2_table80+9d:1"
_GN25L95_WRITE = "@4 a2_mod:128 @5 a2_bias:128 @6 a2_apcapd:128 @2 a2_lut2:128 @0 a2_lower:128"
_LUT81_WRITE = ("@81 a2_table81+80:8 a2_table81+89:1 a2_table81+8b:5 a2_table81+90:112 a2_table81+88:1 a2_table81+8a:1"
                " @80 a2_table80:128")
_GN28L97_REST = "@82 a2_table82:128 @83 a2_table83:128 @84 a2_table84:128 @85 a2_table85:128 @86 a2_table86:64"
_GN28L95_WRITE = ("@4 a2_mod:128 @5 a2_bias:128 @6 a2_apcapd:128 @7 a2_trim:128 @8 a2_eyemax:128 @9 a2_rxineq:128"
                  " @a a2_curdark:128 @2 a2_lut2:128 @0 a2_lower:128 ~10 @2 ?ae:1 a2_lut2/ae+ae:1 ~10 a2_lut2+ae:1")

_UX_READ = "?a0 @4 ?80:105 @5 ?80:105 @6 ?80:105 @3 ?80:128 @0 ?00:128"
_UX336X_READ = ("?a0 @81 ?80:107 @82 ?80:107 @83 ?80:107 @84 ?80:128 @85 ?80:128 @86 ?80:43 @87 ?80:9 @80 ?80:128"
                " @0 ?00:128")
_GN28L97_READ = ("@81 ?80:128 @82 ?80:128 @83 ?80:128 @84 ?80:128 @85 ?80:128 @86 ?80:64 @ff ?80:10 @80 ?80:128"
                 " @0 ?00:128")
_GN28L95_READ = "".join(f"@{table} ?80:128 " for table in "456789a2") + "@0 ?00:128"
_GN25L95_READ = "@4 ?80:128 @5 ?80:128 @6 ?80:128 @2 ?80:128 @0 ?00:128"

PROBES = ["@87 ?80:7 ?7f:1", "@ff ?80:7 ?7f:1", "@ff ?80:7 ?7f:1", "@3 ?d0:1 ?7f:1", "@2 ?d1:1 ?7f:1"]
_FIND_UX3320 = " ".join(PROBES[:4]) + " ?f5:7 @3 ?f0:1"


class Chip(NamedTuple):
    type: int
    name: str
    file: str  # below /etc
    record: str
    saved_as: str  # by the messages of `save`
    chunk: tuple  # registers, milliseconds of wait after a whole chunk
    find: str  # what identification does until it knows, and the EEPROM flag
    write: str
    read: str

    @property
    def default(self):
        return "/etc/" + self.file

    @property
    def size(self):
        return RECORDS[self.record][0]

    @property
    def gn(self):
        return self.chunk == (8, 0)

    @property
    def sections(self):
        places = [word.replace("@", " ").replace(":", " ").split() for word in RECORDS[self.record][1].split()]
        return {name: (int(offset), int(registers)) for name, offset, registers in places}


def _probed(count, flag):
    return " ".join(PROBES[:count]) + " " + flag


_FIND_336X, _FIND_28L97 = _probed(1, "@80 ?fe:1"), _probed(2, "@81 ?89:1")
_FIND_25L95, _FIND_28L95 = _probed(5, "@2 ?c0:1"), _probed(3, "@2 ?c7:1")
_L = "velmarix_default_bob"
CHIPS = {
    "ux3320": Chip(0, "UX3320", _L + ".bin", "bob_data_ux_s", "ux3320", (256, 0), _FIND_UX3320,
                   "a0_tab:128 @4 a2_bias:105 @5 a2_mod:105 @6 a2_apd:105 @3 a2_lut3:93 @0 a2_lower:128 6e=48 ~5 6e=08",
                   _UX_READ),
    "ux3320s": Chip(3, "UX3320S", _L + "_ux3320s.bin", "bob_data_ux3320s_s", "ux3320s", (16, 10), _FIND_UX3320,
                    _UX3320S_WRITE, _UX_READ),
    "ux3361": Chip(2, "UX3361", _L + "_ux3361.bin", "bob_data_ux3361_s", "ux3361", (16, 10), _FIND_336X, _UX336X_HELD,
                   _UX336X_READ),
    "ux3362s": Chip(9, "UX3362S", _L + "_ux3362s.bin", "bob_data_ux3361_s", "ux3361", (16, 10), _FIND_336X,
                    _UX336X_WRITE.format("a2_table80:128"), _UX336X_READ),
    "ux3365": Chip(11, "UX3365", _L + "_ux3365.bin", "bob_data_ux3361_s", "ux3361", (16, 10), _FIND_336X, _UX336X_HELD,
                   _UX336X_READ),
    "gn25l95": Chip(1, "GN25L95", "vx_default_bob_gn25l95.bin", "bob_data_gn_s", "GN25L95", (8, 0), _FIND_25L95,
                    _GN25L95_WRITE, _GN25L95_READ),
    "gn25l95d": Chip(5, "GN25L95D", _L + "_gn25l95d.bin", "bob_data_gn_s", "GN25L95D", (8, 0), _FIND_25L95,
                     _GN25L95_WRITE, _GN25L95_READ),
    "gn28l97b": Chip(4, "GN28L97B", _L + "_gn28l97.bin", "bob_data_gn28l97_s", "GN28L97B", (8, 0), _FIND_28L97,
                     f"{_LUT81_WRITE} {_GN28L97_REST} @ff a2_tableFF:10 @0 a2_lower:123 @0", _GN28L97_READ),
    "gn28l96": Chip(8, "GN28L96", _L + "_gn28l96.bin", "bob_data_gn28l97_s", "GN28L96", (8, 0), _FIND_28L97,
                    f"{_LUT81_WRITE} @0 a2_lower:123 {_GN28L97_REST}", _GN28L97_READ),
    "gn28l95": Chip(6, "GN28L95", _L + "_gn28l95.bin", "bob_data_gn28l95_s", "gn28l95", (8, 0), _FIND_28L95,
                    _GN28L95_WRITE, _GN28L95_READ),
}

SUPPLY = "~1000 ?60:10 !eponGetOptDiag"


def _transfer(way, device, reg, length, data=b""):
    return " ".join([f"1 {way} 0x{device:02x} 0x{reg:02x} {length} ok", *(f"{byte:02x}" for byte in data)])


def _written(chip, image, word):
    """A section's registers, in chunks: section[/REG: its bit 0 clear][+REG: from there]:LENGTH."""
    place, length = word.split(":")
    place, _, first = place.partition("+")
    section, _, held = place.partition("/")
    base = 0 if section in ("a0_tab", "a2_lower") else 0x80
    data = bytearray(section_of(chip, image, section))
    if held:
        data[int(held, 16) - base] &= 0xFE
    reg, end = int(first, 16) if first else base, 0
    end = reg + int(length)
    while reg < end:
        count = min(chip.chunk[0], end - reg)
        device = 0x50 if section == "a0_tab" else 0x51
        yield _transfer("write", device, reg, count, data[reg - base:reg - base + count])
        if count == chip.chunk[0] and chip.chunk[1]:
            yield f"wait {chip.chunk[1] * 1000}"
        reg += count


def events(chip, script, image=b""):
    """What the trace must show: bus transfers (data of reads left out), calls (results left out) and waits."""
    for word in script.split():
        if word[0] == "@":
            yield _transfer("write", 0x51, 0x7F, 1, [int(word[1:], 16)])
        elif word[0] == "~":
            yield f"wait {int(word[1:]) * 1000}"
        elif word[0] == "!":
            yield f"call libvx_{'ponApi' if 'Opt' in word else 'sys'}_{word[1:]}"
        elif word == "?a0":
            yield _transfer("read", 0x50, 0, 256)
        elif word[0] == "?":
            reg, length = word[1:].split(":")
            yield _transfer("read", 0x51, int(reg, 16), int(length))
        elif "=" in word:
            reg, value = (int(number, 16) for number in word.split("="))
            yield _transfer("write", 0x51, reg, 1, [value])
        else:
            yield from _written(chip, image, word)


def seen(board):
    """The board's trace in the words of events()."""
    for line in board.trace():
        if line.kind == "i2c":
            yield " ".join(line.fields[:6] if line.fields[1] == "read" else line.fields)
        else:
            yield " ".join([line.kind, line.fields[0]])


def section_of(chip, image, section):
    offset, registers = chip.sections[section]
    return image[offset:offset + registers]


def table_sums(profile, image):
    """Section: the sum that its sum byte must hold."""
    chip = CHIPS[profile]
    result = {}
    for section, ranges in SUMS.get(profile, {}).items():
        reg = section_of(chip, image, section)
        ends = [[int(end, 16) - 0x80 for end in part.split("-")] for part in ranges]
        result[section] = sum(sum(reg[first:last + 1]) for first, last in ends) % 256
    return result


def image_of_text(profile, text):
    """The record that a factory text file makes, its tables' sum bytes included."""
    chip = CHIPS[profile]
    image = bytearray(chip.size)
    for line in text.splitlines():
        if "=" not in line:
            offset, base = chip.sections[line][0], 0 if line in ("a0_tab", "a2_lower") else 0x80
            continue
        reg, value = (int(number, 16) for number in line.rstrip(";").split("="))
        image[offset + reg - base] = value
    for section, total in table_sums(profile, image).items():
        offset, registers = chip.sections[section]
        image[offset + registers] = total
    return bytes(image)


def factory_image(profile, board):
    return image_of_text(profile, board.unit(CHIPS[profile].default[1:]).read_text())


_TABLES = {"a2_lut2": 2, "a2_lut3": 3, "a2_apd": 6, "a2_apcapd": 6, "a2_trim": 7, "a2_eyemax": 8, "a2_rxineq": 9,
           "a2_curdark": 10}


def registers(profile, section):
    """The name of the board's page file that holds a section's registers; None for the section that no chip has."""
    if section in ("a0_tab", "a2_lower", "a2_lut0"):
        return {"a0_tab": "a0.bin", "a2_lower": "a2_low.bin"}.get(section)
    # The families have the modulation and the bias curve the other way round.
    swapped = {"a2_mod": 4, "a2_bias": 5} if CHIPS[profile].gn else {"a2_bias": 4, "a2_mod": 5}
    return f"table_{int(section[-2:], 16) if 'table' in section else {**_TABLES, **swapped}[section]:02x}.bin"


# ---- running vxcli ----

FAIL = "Execute Command Fail\n"


def answers(unit, commands, group="bob", first="", **how):
    """Runs vxcli with each of these command lines of a group, all in one view, after what is to be done `first`: a list
    of (status, output)."""
    script = first + "\n" + "".join(f"vxcli {group} {words}; echo \"#=$?\"\n" for words in commands)
    parts = re.split(r"#=(\d+)\n", unit.run("sh", stdin=script, **how).out)
    return [(int(status), out) for out, status in zip(parts[0::2], parts[1::2])]


def loaded(chip, source=None):
    """What `init` says when everything goes well, from the factory's file or another source."""
    tried = [WORKING, BACKUP, chip.default]
    missing = "".join(f"open file: {path} fail!\nbob:read data from {path} fail.\n"
                      for path in tried[:tried.index(source or chip.default)])
    return f"bob:BOSA Chip Type: {chip.name}.\n{missing}bob:read data from {source or chip.default}\n"


def stored(board):
    """The image in the board's persistent store, None if there is none."""
    flash = (board.path / "flash" / "bob").read_bytes()
    bank = flash[flash[:4] != b"BOB1" and len(flash) // 2:]
    return bank[12:12 + int.from_bytes(bank[4:8], "little")] if bank[:4] == b"BOB1" else None
