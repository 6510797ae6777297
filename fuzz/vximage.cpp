// vximage, on files in memory. Input: a byte that says which chip is named on the command line (or none) and
// whether bytes may be dropped, then the image, in either form or as it is in flash.

#include "harness.h"

#include "flash_format.h"
#include "vximage.h"

#include <cstring>
#include <map>
#include <memory>

int vximage_main(int argc, char *argv[]);

static std::map<std::string, std::string> files;

// In place of the program's own, which work on the disk. What is read has no byte to spare.
std::optional<std::string_view> file_read(const char *path) {
    static std::unique_ptr<char[]> buffer;
    const std::string &contents = files[path];
    buffer = std::make_unique_for_overwrite<char[]>(contents.size());
    memcpy(buffer.get(), contents.data(), contents.size());
    return std::string_view(buffer.get(), contents.size());
}

bool file_write(const char *path, std::string_view data) {
    files[path] = data;
    return true;
}

static int run(std::vector<std::string> words, const std::vector<std::string> &options) {
    words.insert(words.begin(), "vximage");
    words.insert(words.begin() + 2, options.begin(), options.end());
    std::vector<char *> argv;
    argv.reserve(words.size());
    for (std::string &word : words) {
        argv.push_back(word.data());
    }
    const int status = vximage_main(static_cast<int>(argv.size()), argv.data());
    must(status >= 0 && status <= 2, "vximage exits with 0, 1 or 2");
    return status;
}

static void convert_and_back(const std::vector<std::string> &options, bool drop) {
    std::vector<std::string> with_drop = options;
    if (drop) {
        with_drop.emplace_back("--drop");
    }
    if (run({"convert", "in", "other"}, with_drop) != 0 || run({"convert", "other", "back"}, options) != 0) {
        must(files["other"].empty() || options.empty(), "what was converted is an image");
        return;
    }
    const bool in_is_record = files["other"].size() > RECORD_LIMIT; // any text that vximage writes is longer
    if (in_is_record) {
        const std::string_view record = flash_contents(files["in"], flash_bob).value_or(files["in"]);
        must(drop || files["back"] == record, "a record comes back as it was");
    } else {
        must(run({"convert", "back", "again"}, options) == 0 && files["again"] == files["other"],
             "so does a text's record");
    }
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static constexpr const char *chips[] = {"",       "UX3320",  "UX3320S",  "UX3361", "UX3362S",
                                            "UX3365", "GN25L95", "GN28L97B", "GN28L95"};
    std::string_view input = as_text(data, size);
    const uint8_t choice = take_byte(&input);
    std::vector<std::string> options;
    if (const size_t chip = choice / 2 % std::size(chips); chip != 0) {
        options = {"--chip", chips[chip]};
    }
    files = {{"in", std::string(input)}};
    const int status = run({"check", "in"}, options);
    must(run({"show", "in"}, options) == (status == 2 ? 2 : 0), "what can be checked can be shown");
    if (run({"fix", "in", "fixed"}, options) == 0) {
        must(status != 2 && run({"check", "fixed"}, options) == 0, "what is fixed is right");
    }
    convert_and_back(options, choice % 2 != 0);
    return 0;
}
