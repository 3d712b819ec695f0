#include "forms.h"

#include <random>
#include <vector>

namespace vxtest {

unsigned int read_anything(Reader & reader) {
    std::string open; // 'l' and 'r'
    std::string text;
    for (unsigned int elements = 0;; ++elements) {
        while (!open.empty() && open.back() == 'l' && !reader.has_next()) {
            open.pop_back();
        }
        switch (reader.next_type()) {
        case eElement_None:
            if (open.empty()) {
                return elements;
            }
            if (open.back() == 'l') {
                reader.read_null(); // raises
            }
            reader.end_record();
            open.pop_back();
            break;
        case eElement_Null:
            reader.read_null();
            break;
        case eElement_Boolean:
            (void)reader.read_bool();
            break;
        case eElement_Integer:
            (void)reader.read_integer();
            break;
        case eElement_Unsigned:
            (void)reader.read_uint();
            break;
        case eElement_Double:
            (void)reader.read_double();
            break;
        case eElement_String:
            if (elements % 2 != 0) {
                (void)reader.read_string_key();
            } else {
                reader.read_string(text);
            }
            break;
        case eElement_AbsoluteTime:
            (void)reader.read_absolute_time();
            break;
        case eElement_RelativeTime:
            (void)reader.read_relative_time();
            break;
        case eElement_Uuid:
            (void)reader.read_uuid();
            break;
        case eElement_Binary:
            if (elements % 2 != 0) {
                (void)reader.read_binary();
            } else {
                (void)reader.read_binary_as_memory_list();
            }
            break;
        case eElement_List:
            (void)reader.begin_list();
            open += 'l';
            break;
        case eElement_Record:
            reader.begin_record();
            open += 'r';
            break;
        }
    }
}

namespace {

/// Every kind of element, one primitive to a list element so that `read_anything` can follow.
void write_sample(Writer & w) {
    w.begin_list(12);
    w.write_null(), w.next_list_item(), w << true, w.next_list_item(), w << 8080;
    w.next_list_item(), w << 300u, w.next_list_item(), w << 1.5, w.next_list_item();
    w << std::string(70, '%'), w.next_list_item(),
        w << vxcore::AbsoluteTime(17'955'315'805'000'000);
    w.next_list_item(), w << vxcore::RelativeTime(-5), w.next_list_item(), w << vxcore::Uuid();
    w.next_list_item(), w.write_binary("\0\1\2", 3), w.next_list_item();
    w.begin_list(2), w.begin_list(1), w << 1, w.end_list(), w.next_list_item(), w << 2,
        w.end_list();
    w.next_list_item(), w.begin_record(), w << "x", w.begin_record(), w.end_record(), w << "y";
    w.end_record(), w.end_list();
}

std::string read_binary_code(std::string const & bytes, unsigned int segmentSize = 0xFFFFFFFF) {
    return code_of([&] {
        MemoryReader reader(list_of(bytes, segmentSize));
        read_anything(reader);
        if (reader.bytes_left() != 0) {
            reader.read_null(); // where the walk stopped before the end there is no element
        }
    });
}

std::string read_text_code(std::string const & text, unsigned int bufferSize = 64) {
    return code_of([&] {
        read_text_form(
            text, [](Reader & r) { read_anything(r); }, bufferSize);
    });
}

void write_nested(Writer & w, unsigned int lists, unsigned int records) {
    for (unsigned int i = 0; i < lists; ++i) {
        w.begin_list(1);
    }
    for (unsigned int i = 0; i < records; ++i) {
        w.begin_record();
    }
    w.write_null();
    for (unsigned int i = 0; i < records; ++i) {
        w.end_record();
    }
    for (unsigned int i = 0; i < lists; ++i) {
        w.end_list();
    }
}

TEST(HostileStream, NestingHasOneLimitEverywhere) {
    for (unsigned int const records : {0u, 1u, 200u, 512u}) {
        auto const allowed = [&](Writer & w) { write_nested(w, 512 - records, records); };
        auto const tooMany = [&](Writer & w) { write_nested(w, 512 - records, records + 1); };
        EXPECT_EQ(read_binary_code(write_binary_form(allowed)), "");
        EXPECT_EQ(read_text_code(write_text_form(allowed)), "");
        EXPECT_EQ(code_of([&] { write_binary_form(tooMany); }), "error.vxserialize.depth");
        EXPECT_EQ(code_of([&] { write_text_form(tooMany); }), "error.vxserialize.depth");
    }
    std::string const depth = "error.vxserialize.depth";
    EXPECT_EQ(read_binary_code(std::string(513, '\xA1') + '\xF0'), depth);
    EXPECT_EQ(read_binary_code(std::string(513, '\xF7') + std::string(513, '\xF8')), depth);
    EXPECT_EQ(read_binary_code(std::string(1'000'000, '\xA1')), depth);
    EXPECT_EQ(read_binary_code(std::string(1'000'000, '\xF7')), depth);
    EXPECT_EQ(read_text_code(std::string(1'000'000, '[')), depth);
    EXPECT_EQ(read_text_code(std::string(1'000'000, '(')), depth);
}

TEST(HostileStream, AFailedOpeningLeavesTheWriterAsItWas) {
    MemoryWriter writer;
    for (unsigned int i = 0; i < 512; ++i) {
        writer.begin_list(i == 511 ? 0 : 1);
    }
    EXPECT_EQ(code_of([&] { writer.begin_list(0); }), "error.vxserialize.depth");
    EXPECT_EQ(code_of([&] { writer.begin_record(); }), "error.vxserialize.depth");
    for (unsigned int i = 0; i < 512; ++i) {
        writer.end_list();
    }
    EXPECT_EQ(writer.size(), 512u);
}

TEST(HostileStream, NoCountIsBelievedBeyondTheDataThatIsLeftForIt) {
    std::string const count = "error.vxserialize.data.count";
    EXPECT_EQ(read_binary_code(from_hex("EFFFFFFFFF F0F0")), count);
    EXPECT_EQ(read_binary_code(from_hex("A3 F0F0")), count);
    // The outer list owes two more elements, so of the four bytes left two are for the inner one.
    EXPECT_EQ(read_binary_code(from_hex("A3 A2 F0F0 F0F0")), "");
    EXPECT_EQ(read_binary_code(from_hex("A3 A3 F0F0F0 F0")), count);
    EXPECT_EQ(read_binary_code(from_hex("A2 F7 A2 F0 F8 F0")), count); // and the record its end
    // A short list that the count alone does not give away.
    EXPECT_EQ(read_binary_code(from_hex("F7 A2 40 F8 40")), "error.vxserialize.data.type");
    for (bool const tellsSize : {true, false}) {
        auto const announced = [&](std::string const & text) {
            unsigned int believed = 0;
            std::string const code = code_of([&] {
                read_text_form(
                    text, [&](Reader & r) { believed = r.begin_list(); }, 16, tellsSize);
            });
            return code + ":" + std::to_string(believed);
        };
        EXPECT_EQ(announced("[4294967295: 1, 2]"), tellsSize ? count + ":0" : ":0");
        EXPECT_EQ(announced("[2: 1, 2]"), ":2");
    }
}

TEST(HostileStream, SizesAreCheckedBeforeMemoryIsTaken) {
    for (char const * const hex : {"DFFFFFFFFF61", "DBFFFFFFFF61", "3F61", "DE00", "E7FF", "F300",
                                   "F600", "DC", "EF", "F4"}) {
        EXPECT_EQ(read_binary_code(from_hex(hex)), "error.vxserialize.data.truncated") << hex;
        EXPECT_EQ(read_binary_code(from_hex(hex), 1), "error.vxserialize.data.truncated") << hex;
    }
}

TEST(HostileStream, EveryTruncationIsAnError) {
    std::string const bytes = write_binary_form(write_sample);
    std::string const text = write_text_form(write_sample);
    EXPECT_EQ(read_binary_code(bytes), "");
    EXPECT_EQ(read_text_code(text), "");
    for (std::size_t size = 1; size < bytes.size(); ++size) {
        EXPECT_NE(read_binary_code(bytes.substr(0, size)), "") << size;
        EXPECT_NE(read_binary_code(bytes.substr(0, size), 3), "") << size;
    }
    for (std::size_t size = 1; size < text.size(); ++size) {
        EXPECT_NE(read_text_code(text.substr(0, size)), "") << size;
    }
}

/// Changes a few bytes at random. Whether the result is good is not the question, only that reading
/// it ends, and that both ways to cut it give the same.
TEST(HostileStream, MutationsNeverDoMoreThanFail) {
    std::string const samples[] = {write_binary_form(write_sample), write_text_form(write_sample)};
    std::mt19937 random(20261124);
    std::string const marks = "[](){}<>#@,:%unp0-.e \xF7\xF8\xA5\xEF\xDF\xFF";
    unsigned int failures = 0;
    for (int round = 0; round < 60'000; ++round) {
        bool const binary = round % 2 == 0;
        std::string data = samples[binary ? 0 : 1];
        for (unsigned int changes = 1 + random() % 4; changes != 0; --changes) {
            std::size_t const at = random() % data.size();
            char const byte =
                random() % 2 == 0 ? marks[random() % marks.size()] : static_cast<char>(random());
            switch (random() % 3) {
            case 0:
                data[at] = byte;
                break;
            case 1:
                data.insert(at, 1, byte);
                break;
            default:
                data.erase(at, 1);
            }
        }
        unsigned int const piece = 1 + static_cast<unsigned int>(random() % 9);
        std::string const code = binary ? read_binary_code(data) : read_text_code(data);
        EXPECT_EQ(code, binary ? read_binary_code(data, piece) : read_text_code(data, piece))
            << to_hex(data);
        failures += code.empty() ? 0 : 1;
    }
    EXPECT_GT(failures, 30'000u);
}

} // namespace
} // namespace vxtest
