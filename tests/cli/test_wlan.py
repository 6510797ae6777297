"""Wi-Fi calibration: slots and header in flash, the drivers' files, which chips are fitted."""

import pytest

from bench import FAIL, answers

MEDIATEK = "/etc/wireless/mediatek/"
SLOTS = {  # in order of display: driver's file, offset, size, scratch file
    "mt7603": (MEDIATEK + "MT7603_EEPROM.bin", 0x0000, 0x200, "/tmp/MT7603_tmp.bin"),
    "mt7613": (MEDIATEK + "MT7663_EEPROM.bin", 0x1000, 0x600, "/tmp/MT7663_tmp.bin"),
    "mt7615": (MEDIATEK + "MT7615_EEPROM.bin", 0x2000, 0x400, "/tmp/MT7615_tmp.bin"),
    "mt7915": (MEDIATEK + "MT7915_EEPROM.bin", 0x3000, 0xE00, "/tmp/MT7915_tmp.bin"),
    "mt7916": (MEDIATEK + "MT7916_EEPROM.bin", 0x4000, 0x1000, "/tmp/MT7916_tmp.bin"),
    "wav600": ("/lib/firmware/cal_wlan0.bin", 0x5000, 0x400, "/tmp/cal_wlan0.bin"),
    "rsv": ("/tmp/rsv", 0x6000, 0x1000, "/tmp/rsv"),
    "header": ("/tmp/cali_header.bin", 0x7000, 0x100, "/tmp/cali_header.bin"),
}
NONE = "(NOT FOUND!)"
PROFILES = {  # the chips of the 2.4 and the 5 GHz band, all chips
    "ux3361": (NONE, NONE, []),
    "ux3361-mt7613-mt7603": ("mt7603", "mt7613", ["mt7613", "mt7603"]),
    "ux3361-wav600": ("wav600", "wav600", ["wav600"]),
}
USAGE = "Usage: e2p_in_flash 2g|5g Addr[=Value] \n" + FAIL
INVALID = "cali data in flash is invalidate!\n" + USAGE
NO_CHIP = "unknown chip name!\n" + USAGE
LOAD_FAILED = "load cali data faild!\n"
GET, SAVE = "libvx_sys_get_wlan_caldata", "libvx_sys_save_wlan_caldata"


def wlan(unit, *commands, stderr=""):
    return answers(unit, commands, "wlan", stderr=stderr)


def say(unit, words, stderr=""):
    """The output of a command that succeeds."""
    [(status, out)] = wlan(unit, words, stderr=stderr)
    assert status == 0, out
    return out


def flash(unit, contents=None):
    path = unit.path / "flash/hwconfig"
    if contents is not None:
        path.write_bytes(contents)
    return path.read_bytes()


def file(unit, path):
    return unit.unit(path.lstrip("/"))


def data_of(unit, chip):
    return flash(unit)[SLOTS[chip][1]:][:SLOTS[chip][2]]


def put(contents, offset, data):
    return contents[:offset] + bytes(data) + contents[offset + len(data):]


def word(number):
    return number.to_bytes(4, "little")


def entry(name, data):
    return name.encode().ljust(8, b"\0") + b"".join(map(word, (SLOTS[name][1], SLOTS[name][2], sum(data))))


def header(*entries, ver=0x01000000, length=60, total=None, magic=b"VXCaliInfo"):
    table = b"".join(entries).ljust(60, b"\0")
    total = sum(table[:length]) if total is None else total
    return magic.ljust(16, b"\0") + word(ver) + word(length) + word(total) + table


def with_header(contents, *entries, **fields):
    return put(contents, 0x7000, header(*entries, **fields).ljust(0x100, b"\xff"))


unmatched, got = "no match chip [{}] header found!\n".format, "get {} cal data from flash ok!\n{}".format


def numbers(chip, data):
    return f"{chip} 0x{SLOTS[chip][1]:04X}:0x{SLOTS[chip][2]:04X}:0x{sum(data):04X} "


def renewed(chip, data):
    return f"renew_cali_info_header ok! {numbers(chip, data)}\n"


def info(chip_2g, chip_5g, tail):
    rows = "".join(f"{chip:7} | 0x{offset:04X} | 0x{size:04X} | {path}\n" for chip, (path, offset, size, _) in SLOTS.items())
    return (f"Cur 2G chip is:{chip_2g}\nCur 5G chip is:{chip_5g}\n\nmtd partition name  :hwconfig\n"
            f"  CHIP  | OFFSET |  SIZE  | CAL BIN PATH\n{rows}\n{tail}")


def shown(band, chip, data):
    return f"{band} Cali Header {numbers(chip, data)}calc:0x{sum(data):04X}\n"


REFUSED, MISMATCH = "invalid {}, use default : {}\n".format, "checksum mismatch!, use default : {}\n".format
UNKNOWN, VALID = 'known wifi card "{}"\nPlease use under chip\n\n'.format, "validate {} cal data from flash ok!\n".format
CLEANED, WRITTEN = "clean {} cal data {}!\n".format, "write {} cal data to flash {}!\n".format


@pytest.mark.parametrize("profile", PROFILES)
def test_profiles(board, profile):
    """Both bands of each profile: its driver files, its flash and the header agree."""
    unit, (chip_2g, chip_5g, chips) = board(profile), PROFILES[profile]
    files = {chip: file(unit, SLOTS[chip][0]).read_bytes() for chip in chips}
    contents, tail = b"\xff" * 0x10000, unmatched(NONE) * 2
    for chip, data in files.items():
        contents = put(contents, SLOTS[chip][1], data)
    if chips:
        contents = with_header(contents, *(entry(chip, data) for chip, data in files.items()))
        tail = shown("2G", chip_2g, files[chip_2g]) + shown("5G", chip_5g, files[chip_5g])
    assert flash(unit) == contents
    assert say(unit, "show_info") == info(chip_2g, chip_5g, tail)
    for band, chip in (("2g", chip_2g), ("5g", chip_5g)):
        said = got(chip, VALID(chip)) if chips else UNKNOWN(NONE) + info(NONE, NONE, tail)
        assert say(unit, f"validate_cal_data_{band}") == f"validate_cal_data_{band} chip:{chip}\n{said}"
    assert flash(unit) == contents


def test_which_chip_is_fitted(board):
    unit = board("ux3361")
    devices = unit.unit("proc/bus/pci/devices")
    for lines, chip_2g, chip_5g in [
        ("0100\t14c37615\t0", "mt7615", "mt7615"), ("14c37663", NONE, "mt7613"), ("14c37906", "mt7916", "mt7916"),
        ("14C37915\n14c3 7915\n791514c3\n14c3791", NONE, NONE), ("14c37906\n14c37603\n14c37663", "mt7603", "mt7613"),
        ("x" * 1015 + "14c37915", "mt7915", "mt7915"), ("x" * 1016 + "14c37915", NONE, NONE),
    ]:
        devices.write_text(lines)
        assert say(unit, "show_info") == info(chip_2g, chip_5g, unmatched(chip_2g) + unmatched(chip_5g)), lines
    devices.unlink()
    complaint = "fail to open file /proc/bus/pci/devices\n" * 6  # one for each known chip
    assert say(unit, "show_info", complaint * 2) == info(NONE, NONE, unmatched(NONE) * 2)
    assert wlan(unit, "e2p_in_flash 2g 0", stderr=complaint) == [(1, NO_CHIP)]


def test_words(board):
    unit = board("ux3361-mt7613-mt7603")
    before, data_5g = flash(unit), data_of(unit, "mt7613")
    commands = [f"{action}_cal_data" for action in ("clean", "write", "validate")]
    unit.trace()
    assert wlan(unit, *commands) == [(0, "")] * 3 and unit.trace() == []
    assert all(out.startswith(UNKNOWN("MT7603")) for _, out in wlan(unit, *(f"{command}_2g MT7603 mt7603" for command in commands)))
    assert flash(unit) == before
    # A chip that is named counts, whatever band the command is for; further words do not.
    assert say(unit, "validate_cal_data_5g mt7603 mt7613") == got("mt7603", VALID("mt7603"))
    assert say(unit, "write_cal_data_5g") == "write_cal_data_5g chip:mt7613\n" + renewed("mt7613", data_5g) + WRITTEN("mt7613", "ok")


@pytest.mark.parametrize("chip", SLOTS)
def test_clean_write_and_validate_a_slot(board, chip):
    """Of a partition that is full, comparing all of it: what is around the slot stays."""
    path, offset, size, temp = SLOTS[chip]
    unit, around = board("ux3361"), bytes(i % 253 + 1 for i in range(0x10000))
    flash(unit, around)
    assert say(unit, f"clean_cal_data {chip}", None) == renewed(chip, b"") + CLEANED(chip, "ok")
    assert flash(unit) == with_header(put(around, offset, bytes(size)), entry(chip, b""))
    assert file(unit, "/tmp/emptyfile").read_bytes() == bytes(4096)
    if chip == "header":  # its entry tells the sum of what was there before
        assert say(unit, "validate_cal_data header") == got(chip, MISMATCH(path))
        return
    assert say(unit, f"validate_cal_data {chip}") == got(chip, REFUSED(temp, path))
    file(unit, path).parent.mkdir(parents=True, exist_ok=True)
    for length in (5000, size, 3):  # longer than the slot, as long, shorter
        data = bytes(i * 11 % 255 + 1 for i in range(length))
        stored = data[:size].ljust(size, b"\xff")
        file(unit, path).write_bytes(data)
        assert say(unit, f"write_cal_data {chip}") == renewed(chip, stored) + WRITTEN(chip, "ok")
        assert flash(unit) == with_header(put(around, offset, stored), entry(chip, stored))
    assert say(unit, f"validate_cal_data {chip}") == got(chip, VALID(chip))
    assert file(unit, path).read_bytes() == file(unit, temp).read_bytes() == stored


# A header, what validate says to it, the entries of the one that is written then: those of the loaded one and the new
# one. None: it is kept as it is, as the chip's entry is in it; []: there is no room.
DATA = bytes(range(1, 129)) * 28
GOOD, FOREIGN = entry("mt7915", DATA), b"\xffbcdefgh" + bytes(12)  # a name without a NUL
OTHERS = [entry(chip, bytes([i])) for i, chip in enumerate(("mt7603", "mt7613", "wav600"))]
UNMATCHED = unmatched("mt7915")
HEADERS = [
    (header(GOOD), "", None),
    (header(GOOD, length=0), UNMATCHED, [GOOD]),
    (header(OTHERS[2], bytes(20), FOREIGN), UNMATCHED, [OTHERS[2], GOOD, FOREIGN]),
    (header(*OTHERS[:2], b"\0" + FOREIGN[1:]), UNMATCHED, []),  # a name that only begins with a NUL is not free
    (header(OTHERS[0], GOOD, ver=1, length=61, total=1), "unknown version! [0x0001]\n", [GOOD]),
    (header(OTHERS[0], GOOD, length=61, total=1), "invalied len ! [61]\n", [GOOD]),
    (header(GOOD, length=0xFFFFFFFF), "invalied len ! [-1]\n", [GOOD]),
    (header(OTHERS[0], total=9), f"headerself checksum mismatch! [0x0009] [0x{sum(OTHERS[0]):04X}]\n", [GOOD]),
]


@pytest.mark.parametrize("block, said, entries", HEADERS)
def test_headers(board, block, said, entries):
    unit = board("ux3361-mt7915")
    file(unit, SLOTS["mt7915"][0]).write_bytes(b"as it was")
    before = put(put(b"\xff" * 0x10000, 0x3000, DATA), 0x7000, block)
    flash(unit, before)
    tail = shown("2G", "mt7915", DATA) + shown("5G", "mt7915", DATA) if entries is None else said * 2
    assert say(unit, "show_info") == info("mt7915", "mt7915", tail) and flash(unit) == before
    after = with_header(before, *entries) if entries else before
    if entries is not None:
        said += VALID("mt7915")
        said += renewed("mt7915", DATA) if entries else "no match chip [mt7915] found  or too many chips header!\n"
    assert say(unit, "validate_cal_data mt7915") == got("mt7915", said or VALID("mt7915"))
    assert flash(unit) == after and file(unit, SLOTS["mt7915"][0]).read_bytes() == DATA


@pytest.mark.parametrize("first, offset, size, total, said", [  # the data's first byte; the entry
    (0x00, 0x3000, 0xE00, None, MISMATCH),  # comes before the look at the first byte
    (0x00, 0x3000, 4, 0x7C, REFUSED),
    (0xFF, 0x3000, 1, 0xFF, REFUSED),
    (0x15, 0x3000, 4, 0x91, VALID),  # the header's size counts, not the slot's
    (0x15, 0xFFFFFFFF, 0xE00, None, VALID),  # the slot's place counts, not the header's
])
def test_damaged_data(board, first, offset, size, total, said):
    unit, (path, _, _, temp) = board("ux3361-mt7915"), SLOTS["mt7915"]
    driver, total = file(unit, path), sum(data_of(unit, "mt7915")) if total is None else total
    contents = with_header(put(flash(unit), 0x3000, [first]), b"mt7915\0\0" + word(offset) + word(size) + word(total))
    flash(unit, contents)
    driver.write_bytes(b"as it was")
    valid = said == VALID
    said = VALID("mt7915") if valid else said(path) if said == MISMATCH else said(temp, path)
    assert say(unit, "validate_cal_data mt7915") == got("mt7915", said)
    assert driver.read_bytes() == (data_of(unit, "mt7915") if valid else b"as it was") and flash(unit) == contents
    if not valid:
        assert wlan(unit, "e2p_in_flash 2g 1000") == [(1, got("mt7915", said + INVALID))]


def test_words_in_flash(board):
    unit = board("ux3361-mt7613-mt7603")
    data, other = bytearray(data_of(unit, "mt7603")), data_of(unit, "mt7613")
    ok = got("mt7603", VALID("mt7603"))
    too_long, no_band = ok + "invalied input!\n" + USAGE, "unknown band\n" + USAGE
    for words, said in [("", USAGE), ("2g", USAGE), ("2g 0 1", USAGE), ("2 0", no_band), (f"2g {'0' * 32}", too_long)]:
        assert wlan(unit, "e2p_in_flash " + words) == [(1, said)], words
    for words, address in [("2G 0", 0), ("2g 0x1FE", 0x1FE), (f"2g {'0' * 29}3e", 0x3E), ("2g 1FF", 0x1FF),
                           ("2g FFFF", 0xFFFF), ("2g 10010", 0x10), ("2g xyz", 0)]:
        value = int.from_bytes(data[address:address + 2], "little")
        assert say(unit, "e2p_in_flash " + words) == f"{ok}e2p in flash 0x{address:04X}=0x{value:04X}\n", words
    for words, address, value in [("0x10=0xABCD", 0x10, 0xABCD), ("11=12345", 0x11, 0x2345), ("=5a=7", 0, 0x5A),
                                  ("1ff=7788", 0x1FF, 0x7788), ("ffff=1", 0xFFFF, 1), ("20=", 0x20, 0)]:
        new = value.to_bytes(2, "little")
        data = (data[:address] + new + data[address + 2:])[:0x200] if address < 0x200 else data
        before = flash(unit)
        assert say(unit, "e2p_in_flash 2g " + words) == (ok + renewed("mt7603", data) + WRITTEN("mt7603", "ok") +
                                                        f"save e2p in flash 0x{address:04X}=>0x{value:04X}\n")
        # The driver's file takes what does not fit the slot; the other chip keeps its entry.
        driver = file(unit, SLOTS["mt7603"][0]).read_bytes()
        assert driver[:0x200] == data and driver[address:address + 2] == new
        assert flash(unit) == with_header(put(before, 0, data), entry("mt7613", other), entry("mt7603", data))


BACK_FAILED, RENEW_FAILED = "get mt7915 cal data from flash faild!\n", "renew_cali_info_header failed!\n"


@pytest.mark.parametrize("rule, command, status, said, changed", [
    (GET, "clean_cal_data mt7915", 0, LOAD_FAILED + CLEANED("mt7915", "ok"), True),
    (SAVE + " skip=1", "clean_cal_data mt7915", 0, RENEW_FAILED + CLEANED("mt7915", "ok"), True),
    (GET, "validate_cal_data mt7915", 0, BACK_FAILED, False),
    (GET + " skip=1 times=2", "validate_cal_data mt7915", 0, got("mt7915", LOAD_FAILED + VALID("mt7915") + LOAD_FAILED), False),
    (SAVE, "e2p_in_flash 2g 0=1", 1, got("mt7915", VALID("mt7915") + WRITTEN("mt7915", "faild") +
                                         "save cali data to flash failed!\n" + USAGE), False),
])
def test_the_library_fails(board, rule, command, status, said, changed):
    unit = board("ux3361-mt7915")
    before = flash(unit)
    unit.fault(rule)
    assert wlan(unit, command, stderr=None) == [(status, said)] and unit.faults() == []
    assert flash(unit) == (put(before, 0x3000, bytes(0xE00)) if changed else before)


def test_driver_file_that_is_a_directory(board):
    unit = board("ux3361-mt7915")
    before, ok, driver = flash(unit), got("mt7915", VALID("mt7915")), file(unit, SLOTS["mt7915"][0])
    driver.unlink()
    driver.mkdir()
    assert wlan(unit, "write_cal_data mt7915", "validate_cal_data mt7915", "e2p_in_flash 5g 0=1") == [
        (0, WRITTEN("mt7915", "faild")), (0, ok), (1, ok + "internal error e2p_in_flash:531\n" + USAGE)]
    assert flash(unit) == before
