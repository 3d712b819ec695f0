/// Coded streams, packages and package sets on any bytes, in both forms, by decoders that have all,
/// some or none of the packages.

#include "check.h"
#include "known_packages.h"
#include "memory_watch.h"
#include "stream_checks.h"

#include "vxcore/error_exception.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"
#include "vxserialize/text_reader.h"

using namespace vxattribute;

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

namespace {

/// What `ReaderInput::shapes` says of an input of this target.
struct Mode {
    explicit Mode(unsigned int shapes) noexcept
        : isPackages((shapes & 3) == 2), isSets((shapes & 3) == 3), hasTable((shapes & 3) == 1),
          packages(shapes >> 2 & 3), isStrict((shapes & 16) != 0), isText((shapes & 32) != 0) {}

    bool isPackages;
    bool isSets;
    bool hasTable;
    unsigned int packages; // bit 0: the first one is known, bit 1: the second
    bool isStrict;
    bool isText;
};

AttributeNamePackageSet::Ptr packages_of(unsigned int mask) {
    AttributeNamePackageSet::Composer composer;
    for (std::size_t i = 0; i < 2; ++i) {
        composer.add((mask >> i & 1) != 0 ? vxfuzz::known_packages()[i] : nullptr);
    }
    return mask == 0 ? nullptr : composer.compose();
}

/// Calls `read` until the data ends or fails. `read` takes one object and leaves its target as it
/// was when it raises, which `is_kept` tells.
template <typename Read, typename IsKept>
void read_all(vxserialize::Reader & reader, std::size_t size, Read read, IsKept is_kept) {
    vxfuzz::MemoryWatch const watch;
    while (reader.next_type() != vxserialize::eElement_None) {
        try {
            read();
        } catch (vxcore::ErrorException const & e) {
            vxfuzz::check(std::string_view(e.what()).size() < 1000 + size,
                          "messages are of a modest size");
            vxfuzz::check(is_kept(), "a failure leaves the target as it was");
            break;
        }
    }
    vxfuzz::check(watch.peak() <= 128 * size + 65536, "memory stays within 128 times the data");
}

/// Writes with a table or without and reads back.
AttributeValue recoded(AttributeValue const & value, bool hasTable) {
    auto const set = packages_of(3);
    AttributeNameEncoder encoder(set);
    AttributeNameDecoder decoder(set, true);
    vxserialize::MemoryWriter writer;
    if (hasTable) {
        encoder.write_encoder_mappings(writer);
    }
    write_attribute_value(writer, encoder, value);
    vxserialize::MemoryReader reader = writer.reader();
    if (hasTable) {
        decoder.read_decoder_mappings(reader);
    }
    AttributeValue result;
    read_attribute_value(reader, decoder, result);
    return result;
}

void check_values(vxserialize::Reader & reader, Mode const & mode, std::size_t size) {
    std::vector<AttributeValue> values;
    {
        AttributeNameDecoder decoder(packages_of(mode.packages), mode.isStrict);
        AttributeValue const kept = make_list<std::string>({"kept", "as it was"});
        AttributeValue value = kept;
        bool tableNext = mode.hasTable;
        read_all(
            reader, size,
            [&] {
                if (tableNext) {
                    tableNext = false;
                    decoder.read_decoder_mappings(reader);
                    return;
                }
                read_attribute_value(reader, decoder, value);
                values.push_back(value);
                value = kept;
            },
            [&] { return value == kept; });
    }
    for (std::size_t i = 0; i < values.size() && i < 8; ++i) {
        vxfuzz::check(recoded(values[i], i % 2 == 0).compare(values[i]) == 0,
                      "a value is the same after a coded stream");
    }
}

/// `Pointer` to packages or sets.
template <typename Pointer>
void check_packages(vxserialize::Reader & reader, Pointer const & kept, std::size_t size) {
    std::vector<Pointer> all;
    Pointer pointer = kept;
    read_all(
        reader, size,
        [&] {
            reader >> pointer;
            all.push_back(pointer);
            pointer = kept;
        },
        [&] { return pointer == kept; });
    for (std::size_t i = 0; i < all.size() && i < 8; ++i) {
        vxserialize::MemoryWriter first, second;
        first << all[i];
        vxserialize::MemoryReader again = first.reader();
        again >> pointer;
        second << pointer;
        vxfuzz::check(first.size() == second.size() && again.bytes_left() == 0,
                      "packages are the same after a stream");
        vxfuzz::check((pointer == nullptr) == (all[i] == nullptr) &&
                          (!pointer || pointer->size() == all[i]->size()),
                      "packages have as many members after a stream");
    }
}

void check_stream(vxserialize::Reader & reader, Mode const & mode, std::size_t size) {
    if (mode.isPackages) {
        check_packages(reader, vxfuzz::known_packages()[0], size);
    } else if (mode.isSets) {
        check_packages(reader, packages_of(3), size);
    } else {
        check_values(reader, mode, size);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    vxfuzz::ReaderInput input;
    if (!input.parse(data, size)) {
        return 0;
    }
    Mode const mode(input.shapes);
    vxfuzz::known_packages(); // made before memory is watched
    if (mode.isText) {
        vxfuzz::ViewStream stream(input.bytes, (input.pieces & 0x80) != 0);
        vxserialize::TextReader reader(stream, 1 + (input.pieces & 0x7F));
        check_stream(reader, mode, input.bytes.size());
    } else {
        unsigned int const first = input.pieces == 0 ? 0xFFFFFFFF : 1 + (input.pieces & 15);
        vxserialize::MemoryReader reader(vxfuzz::cut(input.bytes, first, 1 + (input.pieces >> 4)));
        check_stream(reader, mode, input.bytes.size());
    }
    return 0;
}
