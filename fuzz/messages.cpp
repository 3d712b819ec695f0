/// Reads messages from arbitrary bytes that come in pieces. Each must be taken or refused as by a
/// reader that gets nothing else, in whatever pieces, and after whatever messages.

#include "check.h"
#include "known_packages.h"
#include "memory_watch.h"

#include "vxattribute/message.h"
#include "vxcore/error_exception.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

using namespace vxattribute;
using vxfuzz::check;

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

namespace {

/// An input: the sizes of two pieces that alternate, 1 to 16 bytes each (a byte); bits 0 and 1 for
/// the packages that the reader knows, bit 2 for its limit (a byte); the stream.
struct MessagesInput {
    MessagesInput(unsigned char const * data, std::size_t size)
        : pieces{1u + (data[0] & 15u), 1u + (data[0] >> 4)},
          limit((data[1] & 4) != 0 ? 40 : 1 << 20),
          stream(reinterpret_cast<char const *>(data) + 2, size - 2) {
        AttributeNamePackageSet::Composer composer;
        for (std::size_t i = 0; i < 2; ++i) {
            composer.add((data[1] >> i & 1) != 0 ? vxfuzz::known_packages()[i] : nullptr);
        }
        packages = composer.compose();
    }

    MessageReader reader() const { return MessageReader(packages, {limit}); }

    std::size_t pieces[2];
    unsigned int limit;
    std::string_view stream;
    AttributeNamePackageSet::Ptr packages;
};

/// The frames of a stream, each with its head. One above the limit is there as soon as its head is.
struct Frames {
    Frames(std::string_view stream, std::size_t limit) {
        while (stream.size() >= 4) {
            std::size_t size = 0;
            for (char const c : stream.substr(0, 4)) {
                size = size << 8 | static_cast<unsigned char>(c);
            }
            if (size <= limit && stream.size() - 4 < size) {
                break;
            }
            endsInside = stream.size() - 4 < size;
            all.push_back(stream.substr(0, 4 + size));
            stream.remove_prefix(all.back().size());
        }
        endsInside = endsInside || !stream.empty();
    }

    std::vector<std::string_view> all;
    bool endsInside = false;
};

/// What a call of `next` did.
struct Outcome {
    explicit Outcome(MessageReader & reader) {
        try {
            map = reader.next();
        } catch (vxcore::ErrorException const & e) {
            code = e.info()->code().view();
            check(e.info()->text().size() < 1000, "messages are of a modest size");
        }
    }

    bool is_none() const { return !map && code.empty(); }

    bool is_same(Outcome const & other) const {
        return code == other.code && map.has_value() == other.map.has_value() &&
               (!map || AttributeValue(*map).compare(*other.map) == 0);
    }

    std::optional<AttributeMap> map;
    std::string code;
};

/// Feeds the stream in pieces. Calls `check_one` with each outcome.
template <typename CheckOne>
void read_pieces(MessagesInput const & input, MessageReader & reader, CheckOne const & check_one) {
    std::string_view left = input.stream;
    for (std::size_t i = 0; !left.empty(); ++i) {
        std::string_view const piece = left.substr(0, input.pieces[i % 2]);
        left.remove_prefix(piece.size());
        reader.feed(piece);
        for (Outcome outcome(reader); !outcome.is_none(); outcome = Outcome(reader)) {
            check_one(outcome);
        }
        check(reader.buffered() < input.limit + 4, "a complete message is taken");
    }
}

void check_written(AttributeMap const & map, MessagesInput const & input) {
    std::string bytes;
    vxcore::StringSink sink(bytes);
    write_message(sink, map, input.packages);
    MessageReader reader(input.packages);
    reader.feed(bytes);
    check(AttributeValue(*reader.next()).compare(map) == 0, "a message is read as written");
    reader.finish();
}

void check_messages(MessagesInput const & input) {
    Frames const frames(input.stream, input.limit);
    MessageReader reader = input.reader();
    std::size_t count = 0;
    read_pieces(input, reader, [&](Outcome const & outcome) {
        check(count < frames.all.size(), "there are no more messages than frames");
        MessageReader alone = input.reader();
        alone.feed(frames.all[count++]);
        check(outcome.is_same(Outcome(alone)), "a message is the same alone");
        if (outcome.map) {
            check_written(*outcome.map, input);
        }
    });
    check(count == frames.all.size(), "each frame is taken or refused");
    bool isEnd = true;
    try {
        reader.finish();
    } catch (vxcore::ErrorException const &) {
        isEnd = false;
    }
    check(isEnd != frames.endsInside, "an end inside a message is noticed, and no other");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    MessagesInput const input(data, size);
    check_messages(input);
    MessageReader reader = input.reader();
    vxfuzz::MemoryWatch const watch;
    read_pieces(input, reader, [](Outcome const &) {});
    check(watch.peak() <= 128 * size + 65536, "memory stays within 128 times the stream");
    return 0;
}
