#include "stream_checks.h"

#include "check.h"
#include "memory_watch.h"

#include "vxattribute/samples.h"
#include "vxcore/error_exception.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"
#include "vxserialize/string_target.h"
#include "vxserialize/text_reader.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vxfuzz {

using namespace vxattribute;

vxcore::RefCountPtr<vxserialize::MemoryList const> cut(std::string_view bytes, unsigned int first,
                                                       unsigned int second) {
    auto list = vxserialize::MemoryList::create();
    while (!bytes.empty()) {
        auto const size = static_cast<unsigned int>(std::min<std::size_t>(first, bytes.size()));
        list->append(*vxserialize::MemoryList::create(bytes.data(), size));
        bytes.remove_prefix(size);
        std::swap(first, second);
    }
    return list;
}

bool ReaderInput::parse(unsigned char const * data, std::size_t size) {
    if (size < 5) {
        return false;
    }
    pieces = data[0];
    bool const repeats = data[1] >= 0xF0;
    shapes = 0xAAu << 24 | static_cast<unsigned int>(data[2]) << 16 |
             static_cast<unsigned int>(data[3]) << 8 | data[4];
    do {
        bytes.append(reinterpret_cast<char const *>(data) + 5, size - 5);
    } while (repeats && !bytes.empty() && bytes.size() < 16384);
    return true;
}

std::string binary_of(std::function<void(vxserialize::Writer &)> const & write) {
    vxserialize::MemoryWriter writer;
    write(writer);
    auto const list = writer.close_and_detach_memory_list();
    std::string bytes(list->size(), '\0');
    list->read_at(0, bytes.data(), list->size());
    return bytes;
}

std::string text_of(std::function<void(vxserialize::Writer &)> const & write) {
    std::string text;
    vxserialize::StringTarget target(text);
    vxserialize::TextWriter writer(target, {});
    write(writer);
    writer.close();
    return text;
}

std::string write_binary(AttributeValue const & value) {
    return binary_of([&value](auto & writer) { write_attribute_value(writer, value); });
}

std::string write_text(AttributeValue const & value) {
    return text_of([&value](auto & writer) { write_attribute_value(writer, value); });
}

namespace {

AttributeValue read_one(vxserialize::Reader & reader) {
    AttributeValue value;
    read_attribute_value(reader, value);
    check(reader.next_type() == vxserialize::eElement_None, "nothing follows the value");
    return value;
}

AttributeValue read_binary(std::string const & bytes) {
    vxserialize::MemoryReader reader(cut(bytes, 5, 64));
    return read_one(reader);
}

AttributeValue read_text(std::string const & text) {
    ViewStream stream(text, false);
    vxserialize::TextReader reader(stream, 50);
    return read_one(reader);
}

/// Returns true when the value holds a NaN. Such a value equals nothing, not even its copy.
bool holds_nan(AttributeValue const & value) {
    bool found = false;
    visit_elements(value, [&found]<typename T>(std::span<T const> elements) {
        if constexpr (std::is_same_v<T, double>) {
            found = std::any_of(elements.begin(), elements.end(),
                                [](double number) { return std::isnan(number); });
        } else if constexpr (std::is_same_v<T, AttributeMap>) {
            for (AttributeMap const & map : elements) {
                found = found || std::any_of(map.begin(), map.end(), [](auto const & element) {
                            return holds_nan(element.second);
                        });
            }
        }
    });
    return found;
}

void check_same(AttributeValue const & a, AttributeValue const & b) {
    check((a == b) == !holds_nan(a), "a value equals its copy unless a NaN is in it");
    check(a.compare(b) == 0 && b.compare(a) == 0, "a value and its copy compare as 0");
    check(a.hash() == b.hash(), "a value and its copy have the same hash");
}

/// Writes in one form. Returns false when the value nests too deep.
template <typename Write>
bool try_write(Write write, AttributeValue const & value, std::string & result) {
    try {
        result = write(value);
        return true;
    } catch (vxcore::ErrorException const & e) {
        check(e.info()->code() == vxserialize::error::vxserialize_depth,
              "a value is written unless it nests too deep");
        return false;
    }
}

void check_value(AttributeValue const & value, std::size_t size) {
    check_same(value, vxtest::deep_copy(value));
    // Enough for one line per byte of data, indented as deep as the readers allow.
    check(to_text(value).size() <= 65536 + 2048 * size, "a value renders within bounds");
}

void check_order(AttributeValue const & a, AttributeValue const & b) {
    int const order = a.compare(b);
    int const reverse = b.compare(a);
    check((order < 0) == (reverse > 0) && (order > 0) == (reverse < 0), "order is antisymmetric");
    check(!(a == b) || order == 0, "equal values compare as 0");
}

/// The targets of reading. A failed read must keep what they hold.
struct Targets {
    AttributeValue value = make_list<std::string>({"kept", "as it was"});
    Attribute attribute{"kept", 1000};
    MutableAttributeMap map = make_map({{"kept", true}});
};

AttributeValue read_shape(vxserialize::Reader & reader, unsigned int shape, Targets & targets) {
    if (shape == 0) {
        targets.attribute.read(reader);
        return targets.attribute.value();
    }
    if (shape == 1) {
        targets.map.read(reader);
        return targets.map;
    }
    read_attribute_value(reader, targets.value);
    return targets.value;
}

ReadResult read_all(vxserialize::Reader & reader, unsigned int shapes) {
    ReadResult result;
    Targets targets;
    while (reader.next_type() != vxserialize::eElement_None) {
        Targets const before = targets;
        try {
            result.values.push_back(read_shape(reader, shapes & 3, targets));
        } catch (vxcore::ErrorException const & e) {
            result.failure = e.what();
            check(result.failure.size() < 1000, "messages are of a modest size");
            // The name is not compared: it is read first, so a failure may leave a new one.
            check(targets.value.compare(before.value) == 0 &&
                      targets.attribute.value().compare(before.attribute.value()) == 0 &&
                      targets.map.compare(before.map) == 0,
                  "a failure leaves the target as it was");
            break;
        }
        shapes = shapes >> 2 | shapes << 30;
    }
    return result;
}

ReadResult read_watched(vxserialize::Reader & reader, ReaderInput const & input) {
    MemoryWatch const watch;
    ReadResult result = read_all(reader, input.shapes);
    // The promise is 128 bytes for each byte of data. The constant is for the reader's own tables.
    check(watch.peak() <= 128 * input.bytes.size() + 65536,
          "memory stays within 128 times the data");
    return result;
}

/// Copies the bytes to a block of exactly their size, so that a read past them or a result that
/// refers to them is noticed.
ReadResult read_borrowed(ReaderInput const & input) {
    std::vector<char> const bytes(input.bytes.begin(), input.bytes.end());
    vxserialize::MemoryReader reader{vxcore::ByteView(bytes)};
    return read_watched(reader, input);
}

} // namespace

ReadResult check_reading(vxserialize::Reader & reader, ReaderInput const & input) {
    std::size_t const size = input.bytes.size();
    ReadResult result = read_watched(reader, input);
    std::vector<AttributeValue> const & values = result.values;
    // Checking a value costs ten times as much as reading it, so only a few are checked.
    for (std::size_t i = 0; i < values.size() && i < 8; ++i) {
        check_value(values[i], size);
        check_order(values[i], values[i / 2]);
        check_round_trip(values[i]);
    }
    return result;
}

void check_borrowed(ReaderInput const & input, ReadResult const & expected) {
    ReadResult const borrowed = read_borrowed(input);
    check(borrowed.values.size() == expected.values.size() && borrowed.failure == expected.failure,
          "borrowed bytes are read as far as a list is, with the same failure");
    for (std::size_t i = 0; i < borrowed.values.size(); ++i) {
        check_same(borrowed.values[i], expected.values[i]);
    }
}

bool check_round_trip(AttributeValue const & value) {
    std::string binary;
    std::string text;
    bool const written = try_write(write_binary, value, binary);
    check(try_write(write_text, value, text) == written,
          "both forms have the same limit of nesting");
    if (!written) {
        return false;
    }
    AttributeValue const fromBinary = read_binary(binary);
    AttributeValue const fromText = read_text(text);
    check_same(value, fromBinary);
    check_same(value, fromText);
    check(write_binary(fromBinary) == binary, "binary form, read and written again, is the same");
    check(write_text(fromText) == text, "text form, read and written again, is the same");
    check(write_binary(fromText) == binary, "both forms carry the same value");
    return true;
}

} // namespace vxfuzz
