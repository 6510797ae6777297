// vximage: shows, checks, converts and repairs calibration images of the transceiver.
#include "vximage.h"

#include "escaped.h"

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

static constexpr char USAGE[] = R"(usage: vximage show [--chip NAME] FILE
       vximage check [--chip NAME] FILE...
       vximage convert [--chip NAME] [--drop] IN OUT
       vximage fix [--chip NAME] FILE [OUT]

Works on calibration images of the transceiver in both forms: the binary record that vxcli saves (also as it is in a
virtual unit's flash/bob) and the factory's text file. Its checks are vxcli's own.

  show      prints an image page by page
  check     says of each checksum whether it is right, and if not, what it should be
  convert   turns a record into a text file, a text file into a record
  fix       puts the right checksums in

  --chip NAME   what chip the image is of, where the image does not tell:
)";

static constexpr char USAGE_END[] = R"(
The file "-" is standard input or standard output. "vximage show --help" and so on tell more about each command.
Exit status: 0 all is well; 1 a checksum is wrong (check); 2 the input or the command line cannot be used.
)";

static constexpr char USAGE_SHOW[] = R"(usage: vximage show [--chip NAME] FILE

Prints the image FILE page by page: A0, A2 lower and each table, 16 registers a line. A byte that is checked has "*"
in front of it if it is right and "!" if it is wrong; the checks are below their page. Bytes that exist in files only,
not in the chip, follow their table: its chksum byte and what is reserved.
)";

static constexpr char USAGE_CHECK[] = R"(usage: vximage check [--chip NAME] FILE...

Makes every check that vxcli makes before it trusts an image, one line each. Lines with "note:" do not count: about
chksum bytes, which vxcli computes anew when it loads an image, and about registers that a text file leaves out, which
are loaded as 0x00. An image of a UX3361, UX3362S or UX3365 is checked as the one that it fits.

A text file consists of sections: a line with a keyword (a0_tab, a2_lower, a2_mod ...) and then lines "0x10=0x5A;".
Numbers may be hexadecimal, decimal or octal (leading 0). Empty lines, lines that begin with ";", "#" or "//" and hold
no keyword, and anything behind the ";" are comments. What vxcli would skip or misread is an error here: a line that is
none of these, a blank beside "=", a missing ";", a register outside its section, before the first section or set
twice, a value above 0xFF, a second assignment on a line, an unknown keyword, a keyword on a line with "=" or ";", two
keywords on a line, a control character, a line of more than 127 characters.

Exit status: 0 all images are right; 1 a checksum is wrong; 2 a FILE is no image.
)";

static constexpr char USAGE_CONVERT[] = R"(usage: vximage convert [--chip NAME] [--drop] IN OUT

Writes the record IN as a text file, or the text file IN as a record. The text has all registers of the chip and those
of the record's other bytes that vxcli would not come to by itself, so the way back leads to the same record. A record
that is made from a text is the one that vxcli makes, with fresh chksum bytes.

  --drop   leave out bytes that have no place in the text form (the last 104 of a UX3320 record), if they are not 0x00

A UX3320 or UX3320S text file needs --chip: the two have the same sections. OUT is replaced in one step.
)";

static constexpr char USAGE_FIX[] = R"(usage: vximage fix [--chip NAME] FILE [OUT]

Puts the right checksums, markers and chksum bytes into the image FILE, or into OUT, a copy of it, and says what
changed. In a text file only values change; a register that it leaves out is added at the end. The file is replaced in
one step and keeps its mode. An image that could be of a UX3361 or of a UX3365 needs --chip: they sum differently.
A flash partition needs OUT, where its record goes.
)";

struct command_s {
    const char *name;
    size_t least;
    size_t most;
    int (*run)(const options_s &options, std::span<char *const> words);
    const char *usage;
};

static constexpr command_s COMMANDS[] = {
    {"show", 1, 1, command_show, USAGE_SHOW},
    {"check", 1, SIZE_MAX, command_check, USAGE_CHECK},
    {"convert", 2, 2, command_convert, USAGE_CONVERT},
    {"fix", 1, 2, command_fix, USAGE_FIX},
};

void complain(const char *format, ...) {
    char text[PATH_MAX + 512];
    va_list words;
    va_start(words, format);
    vsnprintf(text, sizeof text, format, words);
    va_end(words);
    fprintf(stderr, "vximage: %s\n", escaped(text).text);
}

static int say_usage(const command_s *command) {
    if (command != nullptr) {
        fputs(command->usage, stdout);
    } else {
        printf("%s                %s\n%s", USAGE, chip_names(~chip_set{}), USAGE_END);
    }
    return EXIT_GOOD;
}

// Takes the options out of `words` and leaves the others in front. Nothing after a complaint, or a plea for help.
struct parsed_s {
    options_s options = {~chip_set{}, false};
    size_t count = 0;
    bool help = false;
};

static std::optional<parsed_s> parse(std::span<char *> words, const command_s &command) {
    parsed_s result;
    bool options_end = false;
    for (size_t i = 0; i < words.size(); i++) {
        const std::string_view word = words[i];
        if (options_end || word.size() < 2 || word[0] != '-') {
            words[result.count++] = words[i];
        } else if (word == "--") {
            options_end = true;
        } else if (word == "--help" || word == "-h") {
            result.help = true;
        } else if (word == "--drop" && command.run == command_convert) {
            result.options.drop = true;
        } else if (word == "--chip" && i + 1 < words.size()) {
            const std::optional<int32_t> chip = chip_of_name(words[++i]);
            if (!chip) {
                complain("no chip \"%s\" with a calibration image: there are %s", words[i],
                         chip_names(~chip_set{}));
                return std::nullopt;
            }
            result.options.chips = chip_set{1} << *chip;
        } else {
            complain(word == "--chip" ? "%s: a name must follow: see \"vximage %s --help\""
                                      : "unknown option %s: see \"vximage %s --help\"",
                     words[i], command.name);
            return std::nullopt;
        }
    }
    return result;
}

static int run_command(const command_s &command, std::span<char *> words) {
    const std::optional<parsed_s> parsed = parse(words, command);
    if (!parsed) {
        return EXIT_UNUSABLE;
    }
    if (parsed->help) {
        return say_usage(&command);
    }
    if (parsed->count < command.least || parsed->count > command.most) {
        complain("%.*s", static_cast<int>(strcspn(command.usage, "\n")), command.usage);
        return EXIT_UNUSABLE;
    }
    return command.run(parsed->options, words.first(parsed->count));
}

static int dispatch(std::span<char *> words) {
    if (words.empty()) {
        complain("no command: see \"vximage --help\"");
        return EXIT_UNUSABLE;
    }
    static char help[] = "--help";
    if (strcmp(words[0], "help") == 0 && words.size() == 2) {
        words[0] = words[1]; // "help show": "show --help"
        words[1] = help;
    }
    for (const char *word : {"help", "--help", "-h"}) {
        if (strcmp(words[0], word) == 0) {
            return say_usage(nullptr);
        }
    }
    for (const command_s &command : COMMANDS) {
        if (strcmp(words[0], command.name) == 0) {
            return run_command(command, words.subspan(1));
        }
    }
    complain("unknown command \"%s\": there are show, check, convert and fix", words[0]);
    return EXIT_UNUSABLE;
}

int main(int argc, char *argv[]) {
    // A standard stream that is closed must not become the image's file.
    for (int fd = 0; fd >= 0 && fd <= STDERR_FILENO;) {
        fd = open("/dev/null", O_RDONLY);
        if (fd > STDERR_FILENO) {
            close(fd);
        }
    }
    const int status = dispatch(std::span(argv, static_cast<size_t>(argc)).subspan(argc > 0 ? 1 : 0));
    if (fflush(stdout) != 0 || ferror(stdout) != 0) {
        complain("cannot write to standard output");
        return EXIT_UNUSABLE;
    }
    return status;
}
