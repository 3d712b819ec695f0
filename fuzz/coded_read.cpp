/// Reads coded streams of arbitrary bytes, in both forms, with decoders that know all, some or none
/// of the packages.

#include "known_packages.h"
#include "read_all.h"
#include "stream_checks.h"

#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"
#include "vxserialize/text_reader.h"

using namespace vxattribute;

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

namespace {

/// How this target reads an input, taken from the bits of `ReaderInput::shapes`.
struct Mode {
    explicit Mode(unsigned int shapes) noexcept
        : hasTable((shapes & 3) == 1), packages(shapes >> 2 & 3), isStrict((shapes & 16) != 0),
          isText((shapes & 32) != 0) {}

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

/// Writes the value with coded names, after a table of mappings if `hasTable`, and reads it back.
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
        vxfuzz::read_all(
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
        check_values(reader, mode, input.bytes.size());
    } else {
        unsigned int const first = input.pieces == 0 ? 0xFFFFFFFF : 1 + (input.pieces & 15);
        vxserialize::MemoryReader reader(vxfuzz::cut(input.bytes, first, 1 + (input.pieces >> 4)));
        check_values(reader, mode, input.bytes.size());
    }
    return 0;
}
