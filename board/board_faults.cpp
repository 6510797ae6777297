#include "board_faults.h"

#include "board_dir.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

static constexpr size_t faults_size = 8192;
static constexpr long any = -1;
static constexpr long always = -1;

struct fault_rule {
    char operation[64];
    long device;
    long reg;
    long skip;
    long times;
    long result;
};

// Puts the number behind "key=" into `value` if `word` is of that key. False if it is not, or is no number.
static bool take_number(const char *word, const char *key, long *value) {
    size_t length = strlen(key);
    if (strncmp(word, key, length) != 0 || word[length] != '=' || word[length + 1] == '\0') {
        return false;
    }
    char *end = nullptr;
    long number = strtol(word + length + 1, &end, 0);
    if (*end != '\0' || number < 0 || number > INT32_MAX) {
        return false;
    }
    *value = number;
    return true;
}

// False if the line is not a rule.
static bool parse_rule(const char *line, size_t length, fault_rule *rule) {
    char text[256];
    if (length >= sizeof text) {
        return false;
    }
    std::copy_n(line, length, text);
    text[length] = '\0';
    text[strcspn(text, "#")] = '\0';

    char *rest = nullptr;
    const char *word = strtok_r(text, " \t\r", &rest);
    if (word == nullptr || strlen(word) >= sizeof rule->operation) {
        return false;
    }
    *rule = {.operation = {}, .device = any, .reg = any, .skip = 0, .times = 1, .result = 6};
    std::copy_n(word, strlen(word) + 1, rule->operation);
    while ((word = strtok_r(nullptr, " \t\r", &rest)) != nullptr) {
        if (strcmp(word, "times=always") == 0) {
            rule->times = always;
        } else if (!take_number(word, "dev", &rule->device) && !take_number(word, "reg", &rule->reg) &&
                   !take_number(word, "skip", &rule->skip) && !take_number(word, "times", &rule->times) &&
                   !take_number(word, "result", &rule->result)) {
            return false;
        }
    }
    return true;
}

static bool matches(const fault_rule &rule, const fault_point &point) {
    if (strcmp(rule.operation, point.operation) != 0) {
        return false;
    }
    if (!point.transfer) {
        return rule.device == any && rule.reg == any;
    }
    return (rule.device == any || static_cast<uint32_t>(rule.device) == point.device) &&
           (rule.reg == any || static_cast<uint32_t>(rule.reg) == point.reg);
}

// Writes a rule as it stands now: the words that are not the defaults. Returns the length, newline included.
static size_t print_rule(const fault_rule &rule, char *line, size_t size) {
    size_t end = 0;
    auto add = [&](const char *key, const char *value) {
        if (end < size) {
            end += static_cast<size_t>(snprintf(line + end, size - end, "%s%s", key, value));
        }
    };
    auto add_number = [&](const char *key, long number, long unless) {
        char text[24];
        snprintf(text, sizeof text, "%ld", number);
        if (number != unless) {
            add(key, text);
        }
    };
    auto add_address = [&](const char *key, long address) {
        char text[24];
        snprintf(text, sizeof text, "%02lx", static_cast<unsigned long>(address));
        if (address != any) {
            add(key, text);
        }
    };
    add(rule.operation, "");
    add_address(" dev=0x", rule.device);
    add_address(" reg=0x", rule.reg);
    add_number(" skip=", rule.skip, 0);
    if (rule.times == always) {
        add(" times=", "always");
    } else {
        add_number(" times=", rule.times, 1);
    }
    add_number(" result=", rule.result, 6);
    add("\n", "");
    return end < size ? end : size - 1;
}

// What one matching call does to a rule. True if the rule fires.
static bool count_call(fault_rule *rule) {
    if (rule->skip > 0) {
        rule->skip--;
        return false;
    }
    if (rule->times > 0) {
        rule->times--;
    }
    return true;
}

// What came of showing a call to the rules.
struct fault_walk {
    bool fired;
    bool changed; // a rule counted, so the file has to be rewritten
    int32_t result;
    size_t length; // of the file afterwards
};

// Shows the call to the rules in `text` and puts the file as it is afterwards into `after`, which has room for it.
static fault_walk walk_rules(const char *text, size_t length, const fault_point &point, std::span<char> after) {
    fault_walk walk = {};
    for (const char *line = text, *end = text + length; line < end;) {
        const void *newline = memchr(line, '\n', static_cast<size_t>(end - line));
        const char *next = newline == nullptr ? end : static_cast<const char *>(newline) + 1;
        size_t whole = static_cast<size_t>(next - line);
        fault_rule rule;
        if (!walk.fired && parse_rule(line, newline == nullptr ? whole : whole - 1, &rule) &&
            matches(rule, point) && rule.times != 0) {
            fault_rule before = rule;
            if (count_call(&rule)) {
                walk.fired = true;
                walk.result = static_cast<int32_t>(rule.result);
            }
            if (rule.skip != before.skip || rule.times != before.times) {
                walk.changed = true;
                char *out = after.data() + walk.length;
                walk.length += rule.times == 0 ? 0 : print_rule(rule, out, after.size() - walk.length);
                line = next;
                continue;
            }
        }
        std::copy_n(line, whole, after.data() + walk.length);
        walk.length += whole;
        line = next;
    }
    return walk;
}

static bool file_exists(int dir, const char *name) {
    board_fd file(openat(dir, name, O_RDONLY | O_CLOEXEC));
    return file.fd >= 0;
}

bool fault_strikes(int board, const fault_point &point, int32_t *result) {
    if (!file_exists(board, "faults")) {
        return false; // by far the most frequent case: no lock for it
    }
    board_fd lock(dir_lock(board, "."));
    board_fd file(openat(board, "faults", O_RDONLY | O_CLOEXEC));
    if (lock.fd < 0 || file.fd < 0) {
        return false;
    }
    char text[faults_size];
    ptrdiff_t length = file_read(file.fd, {reinterpret_cast<uint8_t *>(text), sizeof text});
    if (length <= 0 || static_cast<size_t>(length) == sizeof text) {
        return false;
    }
    // A rule that is written anew grows by a few digits at most, so twice the size holds every outcome.
    char after[2 * faults_size];
    fault_walk walk = walk_rules(text, static_cast<size_t>(length), point, after);
    if (walk.changed) {
        file_replace(board, "faults", {reinterpret_cast<const uint8_t *>(after), walk.length});
    }
    if (walk.fired) {
        *result = walk.result;
    }
    return walk.fired;
}
