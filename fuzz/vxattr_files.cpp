/// Runs the program vxattr in this process over files of arbitrary bytes: each command that reads,
/// with the options that affect reading and output.

#include "check.h"
#include "known_key.h"
#include "memory_watch.h"
#include "program_run.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

using vxfuzz::check;
using vxfuzz::MemoryFile;
using vxfuzz::ProgramResult;
using Arguments = std::vector<std::string>;

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

namespace {

constexpr unsigned int oneMebibyte = 1 << 20;

struct Files {
    MemoryFile first{"first"};
    MemoryFile second{"second"};
    MemoryFile output{"converted"};
    MemoryFile key16{"key16"};
    MemoryFile key32{"key32"};

    Files() {
        for (MemoryFile * const file : {&key16, &key32}) {
            vxcrypto::Key const key = vxfuzz::key_of_size(file == &key16 ? 16 : 32);
            file->assign({reinterpret_cast<char const *>(key.data()), key.size()});
        }
    }
};

Files & files() {
    static Files all;
    return all;
}

/// An input: the command, the flags, the size of the second file (a byte each), the second file and
/// the first one.
struct FilesInput {
    bool parse(unsigned char const * data, std::size_t size) {
        if (size < 3) {
            return false;
        }
        command = data[0];
        flags = data[1];
        std::string_view const rest(reinterpret_cast<char const *>(data) + 3, size - 3);
        second = rest.substr(0, data[2]);
        first = rest.substr(second.size());
        return true;
    }

    bool has(unsigned int bit) const { return (flags >> bit & 1) != 0; }

    /// Returns the second file as a word of the command line.
    std::string text() const { return std::string(second.substr(0, second.find('\0'))); }

    std::string const & key() const { return (has(7) ? files().key32 : files().key16).path(); }

    unsigned int command = 0;
    unsigned int flags = 0;
    std::string_view first;
    std::string_view second;
};

void append(Arguments & arguments, Arguments const & more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
}

Arguments read_options(FilesInput const & input) {
    static constexpr char const * forms[] = {"", "json", "binary", "text"};
    Arguments options;
    if (char const * const form = forms[input.flags & 3]; *form != '\0') {
        append(options, {"--from", form});
    }
    if (input.has(2)) {
        append(options, {"--package", files().second.path()});
    }
    if (input.has(3)) {
        options.emplace_back("--strict");
    }
    return options;
}

Arguments write_options(FilesInput const & input, char const * form) {
    Arguments options{"--to", form};
    if (input.has(4)) {
        options.emplace_back("--sorted");
    }
    if (input.has(5)) {
        append(options, {"--indent", "2"});
    }
    if (input.has(6)) {
        append(options, {"--wrap", "wrapped"});
    }
    return options;
}

Arguments trace_options(FilesInput const & input) {
    Arguments options;
    if (input.has(4)) {
        append(options, {"--no-types", "--bare-scalars", "--visible"});
    }
    if (input.has(5)) {
        append(options, {"--max-elements", "2", "--max-string", "5", "--max-dump", "7",
                         "--dump-line", "3", "--multiline-from", "2"});
    }
    return options;
}

/// Returns the option that selects the value at one path, or no option when the second file is
/// empty.
Arguments name_option(FilesInput const & input) {
    std::string const text = input.text();
    return text.empty() ? Arguments() : Arguments{"--name=" + text};
}

bool has_control_bytes(std::string_view text) {
    return std::any_of(text.begin(), text.end(),
                       [](unsigned char c) { return (c < ' ' && c != '\n') || c == 0x7F; });
}

/// Runs a command line that is valid whatever the files hold. Checks its result, memory and output.
ProgramResult run(FilesInput const & input, Arguments const & arguments) {
    std::size_t const size = input.first.size() + input.second.size();
    vxfuzz::MemoryWatch const watch;
    ProgramResult result = vxfuzz::run_program(arguments);
    check(watch.peak() <= 1024 * size + 4 * oneMebibyte, "memory stays within the files");
    check(result.exit == 0 || result.exit == 1, "a valid command line is accepted");
    check(result.exit == 0 || !result.errors.empty() || !result.output.empty(),
          "a failure has a reason");
    check(!has_control_bytes(result.errors), "messages have no control bytes");
    check(result.errors.size() <= 8192 + 64 * size, "messages are of a modest size");
    check(result.output.size() <= 65536 + 4096 * size, "the output stays within the files");
    return result;
}

void check_visible(ProgramResult const & result) {
    check(!has_control_bytes(result.output), "output for people has no control bytes");
}

/// Reads the output of a conversion again. Sorted output must come out the same.
void check_converted(FilesInput const & input, Arguments const & read, Arguments const & write,
                     std::string const & converted) {
    files().output.assign(converted);
    // A --from among the read options names the form of the first file, so it is dropped.
    Arguments again{"convert", files().output.path(), "-", "--from", write[1]};
    Arguments const options(read.begin() + ((input.flags & 3) != 0 ? 2 : 0), read.end());
    append(again, options);
    append(again, write);
    ProgramResult const second = run(input, again);
    check(second.exit == 0, "what was written is read");
    if (input.has(4)) {
        check(second.output == converted, "what is read again is written the same");
    }
}

void convert(FilesInput const & input, char const * form) {
    Arguments const read = read_options(input);
    Arguments const write = write_options(input, form);
    Arguments arguments{"convert", files().first.path(), "-"};
    append(arguments, read);
    append(arguments, write);
    ProgramResult const result = run(input, arguments);
    bool const isJson = write[1] == "json";
    if (result.exit == 0 && write[1] != "trace" && (!isJson || input.has(6))) {
        check_converted(input, read, write, result.output);
    }
}

/// Seals the first file, then verifies, opens and rekeys the result.
void seal(FilesInput const & input) {
    Arguments arguments{"seal", files().first.path(), "-", "--key-file", input.key()};
    append(arguments, read_options(input));
    append(arguments, {"--to", "binary", "--annotation=note"});
    ProgramResult const sealed = run(input, arguments);
    if (sealed.exit != 0) {
        return;
    }
    files().output.assign(sealed.output);
    std::string const & path = files().output.path();
    check(run(input, {"verify", path, "--key-file", input.key()}).exit == 0,
          "what was sealed is verified");
    check(run(input, {"open", path, "--show", "--key-file", input.key()}).exit == 0,
          "what was sealed is opened");
    check(run(input, {"rekey", path, "-", "--to", "text", "--key-file", input.key(),
                      "--new-key-file", files().key16.path()})
                  .exit == 0,
          "what was sealed is sealed anew");
}

void open(FilesInput const & input) {
    Arguments arguments{"open", files().first.path(), "--key-file", input.key()};
    append(arguments, name_option(input));
    append(arguments, read_options(input));
    if (input.has(6)) {
        arguments.emplace_back("--show");
        append(arguments, trace_options(input));
    } else if (input.has(5)) {
        append(arguments, {"--as-key", "/dev/null"});
    } else {
        append(arguments, {"--to", "json", "/dev/null"});
    }
    run(input, arguments);
}

/// Runs the command with the options that select how the first file is read.
ProgramResult with_read_options(FilesInput const & input, Arguments arguments) {
    append(arguments, read_options(input));
    return run(input, arguments);
}

void show(FilesInput const & input) {
    Arguments arguments{"show", files().first.path()};
    append(arguments, trace_options(input));
    with_read_options(input, arguments);
}

void get(FilesInput const & input) {
    Arguments arguments{"get", "--to", input.has(4) ? "json" : input.has(5) ? "trace" : "plain"};
    append(arguments, read_options(input));
    append(arguments, {"--", files().first.path(), "a", input.text() + '/', input.text() + "/0/a"});
    run(input, arguments);
}

void check_names(FilesInput const & input) {
    std::string const & names = files().second.path();
    Arguments arguments{"check", files().first.path(), "--names", names};
    if (input.has(6)) {
        append(arguments, {"--optional", names});
    }
    check_visible(with_read_options(input, arguments));
}

void verify(FilesInput const & input) {
    Arguments arguments{"verify", files().first.path(), "--key-file", input.key()};
    append(arguments, name_option(input));
    check_visible(with_read_options(input, arguments));
}

void package(FilesInput const & input) {
    std::string const & first = files().first.path();
    std::string const & second = files().second.path();
    if (input.has(6)) {
        run(input, {"package", "show", first, second});
        return;
    }
    Arguments arguments{"package", "make", "-", first, second};
    if (input.has(5)) {
        arguments.emplace_back("--stream");
    }
    with_read_options(input, arguments);
}

void run_command(FilesInput const & input) {
    std::string const & first = files().first.path();
    std::string const & second = files().second.path();
    switch (input.command % 16) {
    case 0:
        return convert(input, "binary");
    case 1:
        return convert(input, "text");
    case 2:
        return convert(input, "json");
    case 3:
        return convert(input, "trace");
    case 4:
        return show(input);
    case 5:
        return check_visible(with_read_options(input, {"stat", first}));
    case 6:
        return check_visible(run(input, {"inspect", first}));
    case 7:
        return check_visible(run(input, {"inspect", first, "--package", second}));
    case 8:
        return get(input);
    case 9:
        return check_visible(with_read_options(input, {"diff", first, second}));
    case 10:
        return check(with_read_options(input, {"diff", first, first}).output.empty(),
                     "a file does not differ from itself");
    case 11:
        return check_names(input);
    case 12:
        return open(input);
    case 13:
        return verify(input);
    case 14:
        return package(input);
    default:
        return seal(input);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    FilesInput input;
    if (!input.parse(data, size)) {
        return 0;
    }
    files().first.assign(input.first);
    files().second.assign(input.second);
    run_command(input);
    return 0;
}
