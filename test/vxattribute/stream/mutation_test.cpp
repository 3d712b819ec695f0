// The rule under test: whatever the bytes, reading a value ends. Either it raises an error and
// leaves the target as it was, or the value that it read survives being written and read again.

#include "support/allocation.h"

#include "vxattribute/samples.h"
#include "vxattribute/stream/forwarding_streams.h"
#include "vxattribute/value_forms.h"
#include "vxcore/error_exception.h"

#include <future>

namespace {

using namespace vxattribute;
using vxtest::read_binary;
using vxtest::read_text;
using vxtest::write_binary;
using vxtest::write_text;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(NDEBUG)
#define VX_SLOW_BUILD 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VX_SLOW_BUILD 1
#endif
#endif

#ifdef VX_SLOW_BUILD
constexpr unsigned int mutations = 25'000;
#else
constexpr unsigned int mutations = 500'000; // per form
#endif

using Write = std::string (*)(AttributeValue const & value);
using Read = void (*)(std::string const & bytes, AttributeValue & target);

/// Reads a value, and returns what was raised, or "" if nothing was.
std::string failure_of(vxserialize::Reader & reader, AttributeValue & target) {
    try {
        read_attribute_value(reader, target);
    } catch (vxcore::ErrorException const & e) {
        return e.what();
    }
    return "";
}

/// Reads in line and by virtual calls, which must not differ.
void read_both_ways(vxtest::ListPtr const & bytes, AttributeValue & target) {
    vxserialize::MemoryReader plain(bytes);
    vxserialize::MemoryReader inner(bytes);
    vxtest::ForwardingReader forwarding(inner);
    AttributeValue other = target;
    std::string const failure = failure_of(forwarding, other);
    ASSERT_EQ(failure_of(plain, target), failure);
    ASSERT_EQ(write_binary(target), write_binary(other));
    if (failure.empty()) {
        ASSERT_EQ(plain.bytes_left(), inner.bytes_left());
    }
}

/// Every fourth stream is read in both ways first, in segments of few bytes.
void read_binary_often_both_ways(std::string const & bytes, AttributeValue & target) {
    AttributeValue value = target;
    bool const isBoth = bytes.size() % 4 == 0;
    if (isBoth) {
        auto const segment = static_cast<unsigned int>(1 + bytes.size() / 4 % 9);
        read_both_ways(vxtest::list_of(bytes, segment), value);
    }
    read_binary(bytes, target);
    ASSERT_TRUE(!isBoth || value.compare(target) == 0);
}

/// Expects a value that was read to survive being written and read again. A value with a NaN does
/// not equal its deep copy, nor what was read again.
void expect_round_trip(Write write, Read read, AttributeValue const & value) {
    std::string const written = write(value);
    AttributeValue again;
    read(written, again);
    EXPECT_EQ(write(again), written);
    EXPECT_EQ(again == value, value == vxtest::deep_copy(value));
    EXPECT_EQ(again.compare(value), 0);
    EXPECT_EQ(again.hash(), value.hash());
}

/// Returns the number of failures. `marks` are bytes with a meaning in the form; a part of `number`
/// replaces bytes of the stream.
unsigned int read_mutated(Write write, Read read, char const * marks, char const * number) {
    AttributeValue const kept = make_list<std::string>({"kept", "as it was"});
    std::vector<std::string> streams;
    for (vxtest::Sample const & sample : vxtest::samples()) {
        streams.push_back(write(sample.value));
    }
    std::mt19937 random(20261124);
    unsigned int failures = 0;
    for (unsigned int round = 0; round < mutations; ++round) {
        std::string data = streams[round % streams.size()];
        vxtest::mutate(data, random, marks, number);
        AttributeValue target = kept;
        try {
            read(data, target);
        } catch (vxcore::ErrorException const &) {
            ++failures;
            EXPECT_EQ(target, kept) << testing::PrintToString(data);
            continue;
        }
        SCOPED_TRACE(testing::PrintToString(data));
        expect_round_trip(write, read, target);
    }
    return failures;
}

TEST(Mutation, MutatedStreamsNeverDoMoreThanFail) {
    auto binary =
        std::async(std::launch::async, read_mutated, write_binary, read_binary_often_both_ways,
                   "\x01\x40\x8C\x8E\xA2\xC3\xEC\xF0\xF7\xF8", "\xFF\xFF\xFF\xFF");
    unsigned int const text =
        read_mutated(write_text, read_text, "0<>[](){}#@,:%unT-. ", "4294967296");
    for (unsigned int const failures : {text, binary.get()}) {
        EXPECT_GT(failures, mutations / 4);
        EXPECT_LT(failures, mutations);
    }
}

TEST(Mutation, BinaryStreamsAreTheSameInLineAndByCalls) {
    MutableAttributeMap samples;
    samples.add("long", std::string(300, 'x')).add("sixty-four", std::string(64, 'y'));
    for (vxtest::Sample const & sample : vxtest::samples()) {
        samples.add(std::string(sample.name) + std::to_string(samples.size()), sample.value);
    }
    AttributeValue const all = AttributeMap(samples);
    std::string const bytes = write_binary(all);
    vxserialize::MemoryWriter writer;
    vxtest::ForwardingWriter forwarding(writer);
    write_attribute_value(forwarding, all);
    EXPECT_EQ(vxtest::bytes_of(writer.close_and_detach_memory_list()), bytes);

    for (std::size_t at = 0; at < bytes.size(); ++at) {
        SCOPED_TRACE(at);
        AttributeValue value;
        read_both_ways(vxtest::list_of(bytes.substr(0, at)), value); // cut off
        auto const list =
            vxserialize::MemoryList::create(bytes.data(), static_cast<unsigned int>(at));
        list->append(*vxtest::list_of(bytes.substr(at)));
        read_both_ways(list, value);
        EXPECT_EQ(value, all);
    }
    AttributeValue value;
    vxtest::fail_each_allocation([&] { read_binary(bytes, value); },
                                 [&] { EXPECT_TRUE(value.is_null()); });
    EXPECT_EQ(value, all);
}

// Each map is one byte of the stream. A holder of its own would take more than 128 bytes of memory.
TEST(Mutation, EmptyMapsOfAStreamHaveNoHolderOfTheirOwn) {
    std::string const bytes = "\x8C\xEC\xFF" + std::string(255, '\xA0');
    AttributeValue value;
    long const before = vxtest::live_blocks();
    read_binary(bytes, value);
    EXPECT_LT(vxtest::live_blocks() - before, 20);
    EXPECT_EQ(value.size(), 255u);
}

} // namespace
