#include "forms.h"
#include "support/allocation.h"

#include <stdexcept>

namespace {

using namespace vxtest;

/// Every kind of element. Elements of lists are one primitive each, so that both forms can be
/// followed.
std::string const sample =
    "[12: null, true, 8080, 300u, 1.5, <0123456789012345678901234567890123456789%250123456789>, "
    "@2026-11-24T14:46:20.5Z, -PT1S, {00000000-0000-0000-0000-000000000000}, #000102, "
    "[2: [-7], 2], (<x> () <y>)]";

/// Returns the code of the failure to read, or "" when there is none.
std::string binary_code(std::string const & bytes, unsigned int segmentSize = 0xFFFFFFFF) {
    return code_of([&] { binary_to_text(bytes, segmentSize); });
}

std::string text_code(std::string const & text, unsigned int bufferSize = 64) {
    return code_of([&] { text_to_binary(text, bufferSize); });
}

std::string const depth = "error.vxserialize.depth";
std::string const count = "error.vxserialize.data.count";

TEST(HostileStream, NestingHasOneLimitEverywhere) {
    for (std::size_t const records : {0u, 1u, 200u, 512u}) {
        std::string const open = std::string(512 - records, '[') + std::string(records, '(');
        std::string const close = std::string(records, ')') + std::string(512 - records, ']');
        std::string const binary = text_to_binary(open + close);
        EXPECT_EQ(binary_to_text(binary), open + close);
        EXPECT_EQ(text_code(open + "()" + close), depth); // of reader
    }
    for (std::size_t const size : {513u, 1'000'000u}) {
        EXPECT_EQ(binary_code(std::string(size, '\xA1') + '\xF0'), depth);
        EXPECT_EQ(binary_code(std::string(size, '\xF7') + std::string(size, '\xF8')), depth);
        EXPECT_EQ(text_code(std::string(size, '[')), depth);
        EXPECT_EQ(text_code(std::string(size, '(')), depth);
    }
}

TEST(HostileStream, WritersStopAtTheLimitAsTheyWere) {
    MemoryWriter memory;
    std::string written;
    StringTarget target(written);
    TextWriter text(target, {});
    for (Writer * const writer : {static_cast<Writer *>(&memory), static_cast<Writer *>(&text)}) {
        for (unsigned int i = 0; i < 512; ++i) {
            writer->begin_list(i == 511 ? 0 : 1);
        }
        EXPECT_EQ(code_of([&] { writer->begin_list(0); }), depth);
        EXPECT_EQ(code_of([&] { writer->begin_record(); }), depth);
        for (unsigned int i = 0; i < 512; ++i) {
            writer->end_list();
        }
    }
    text.close();
    EXPECT_EQ(memory.size(), 512u);
    EXPECT_EQ(written, std::string(512, '[') + std::string(512, ']'));
}

TEST(HostileStream, ShortMemoryLeavesWritersAsTheyWere) {
    static std::string const bytes(1000, 'x');
    static ListPtr const list = list_of(bytes, 300);
    void (*const writes[])(Writer &) = {
        [](Writer & w) { w << bytes; }, [](Writer & w) { w.write_binary(bytes.data(), 1000); },
        [](Writer & w) { w.write_memory_list(*list); },
        [](Writer & w) { w << vxcore::AbsoluteTime(0); }, [](Writer & w) { w << vxcore::Uuid(); }};
    unsigned long failures = 0;
    for (auto const & write : writes) {
        for (std::size_t const before : {240u, 250u}) { // a block ends after the head, or before it
            auto const start = [before](Writer & w) { w << std::string(before, 's'); };
            auto const both = [&](Writer & w) { start(w), write(w); };
            MemoryWriter memory;
            std::string written;
            StringTarget target(written);
            TextWriter text(target, {});
            start(memory), start(text);
            written.reserve(3000);
            unsigned int const size = memory.size();
            failures += vxtest::fail_each_allocation([&] { write(memory); },
                                                     [&] { EXPECT_EQ(memory.size(), size); });
            failures += vxtest::fail_each_allocation([&] { write(text); }, [] {});
            text.close();
            EXPECT_EQ(bytes_of(memory.close_and_detach_memory_list()), write_binary_form(both));
            EXPECT_EQ(written, write_text_form(both));
        }
    }
    EXPECT_GT(failures, 10u);
    MemoryWriter memory;
    memory << 1;
    EXPECT_THROW(memory.write_string(bytes.data(), 0xFFFFFFFF), std::length_error);
    EXPECT_EQ(memory.size(), 1u);
}

TEST(HostileStream, NoCountIsBelievedBeyondTheDataThatIsLeftForIt) {
    EXPECT_EQ(binary_code(from_hex("EFFFFFFFFF F0F0")), count);
    EXPECT_EQ(binary_code(from_hex("A3 F0F0")), count);
    // The outer list still expects two elements, so two of the four bytes left may be of the inner
    // one.
    EXPECT_EQ(binary_code(from_hex("A3 A2 F0F0 F0F0")), "");
    EXPECT_EQ(binary_code(from_hex("A3 A3 F0F0F0 F0")), count);
    EXPECT_EQ(binary_code(from_hex("A2 F7 A2 F0 F8 F0")), count); // and the record its end
    EXPECT_EQ(binary_code(from_hex("A3 A0 A1F0 A3 F0F0F0")), ""); // what is closed owes nothing
    // A list that is too short, which its count alone does not reveal.
    EXPECT_EQ(binary_code(from_hex("F7 A2 40 F8 40")), "error.vxserialize.data.type");
    EXPECT_EQ(text_code("[2: 1, 2, 3"), count); // at once, not when the list is closed
    for (bool const tellsSize : {true, false}) {
        auto const enter = [](Reader & r) { EXPECT_EQ(r.begin_list(), 0u); };
        EXPECT_EQ(code_of([&] { read_text_form("[4294967295: 1, 2]", enter, 16, tellsSize); }),
                  tellsSize ? count : "");
    }
}

TEST(HostileStream, SizesAreCheckedBeforeMemoryIsTaken) {
    for (char const * const hex : {"DFFFFFFFFF61", "DBFFFFFFFF61", "3F61", "DE00", "E7FF", "F300",
                                   "F600", "DC", "EF", "F4"}) {
        EXPECT_EQ(binary_code(from_hex(hex)), "error.vxserialize.data.truncated") << hex;
        EXPECT_EQ(binary_code(from_hex(hex), 1), "error.vxserialize.data.truncated") << hex;
    }
}

TEST(HostileStream, EveryTruncationIsAnError) {
    std::string const bytes = text_to_binary(sample);
    EXPECT_EQ(binary_to_text(bytes, 5), sample);
    for (std::size_t size = 1; size < bytes.size(); ++size) {
        EXPECT_NE(binary_code(bytes.substr(0, size)), "") << size;
        EXPECT_NE(binary_code(bytes.substr(0, size), 3), "") << size;
    }
    for (std::size_t size = 1; size < sample.size(); ++size) {
        EXPECT_NE(text_code(sample.substr(0, size)), "") << size;
    }
}

/// Changes a few bytes at random. The result may be good or bad; reading it must end, and end alike
/// however the data is cut.
TEST(HostileStream, MutationsNeverDoMoreThanFail) {
    std::string const samples[] = {text_to_binary(sample), sample};
    std::string const marks = "[](){}<>#@,:%unp0-.e \xF7\xF8\xA5\xEF\xDF\xFF";
    std::mt19937 random(20261124);
    unsigned int failures = 0;
    for (int round = 0; round < 60'000; ++round) {
        std::string data = samples[round % 2];
        mutate(data, random, marks, round % 2 == 0 ? "\xFF\xFF\xFF\xFF" : "4294967296");
        auto const code = round % 2 == 0 ? binary_code : text_code;
        std::string const result = code(data, 1 + static_cast<unsigned int>(random() % 9));
        EXPECT_EQ(result, code(data, 1000)) << to_hex(data);
        failures += result.empty() ? 0 : 1;
    }
    EXPECT_GT(failures, 30'000u);
}

} // namespace
