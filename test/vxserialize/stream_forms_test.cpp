#include "forms.h"

#include "vxcore/error_codes.h"
#include "vxcore/error_composer.h"

#include <bit>
#include <limits>

namespace {

using namespace vxtest;
using vxcore::AbsoluteTime;
using vxcore::ErrorInfo;
using vxcore::RelativeTime;
using vxcore::StringKey;
using vxcore::Uuid;

template <typename T>
concept Writable = requires(Writer & writer, T value) {
    writer << value;
};

static_assert(Writable<bool> && Writable<int> && Writable<long> && Writable<long long>);
static_assert(Writable<unsigned int> && Writable<double> && Writable<std::string>);
static_assert(Writable<char const *> && Writable<char[3]> && Writable<std::string_view>);
static_assert(!Writable<void *> && !Writable<int *> && !Writable<std::nullptr_t>);
static_assert(!Writable<char> && !Writable<unsigned long> && !Writable<unsigned long long>);
static_assert(!Writable<float> && !Writable<EElementKind> && !Writable<ErrorInfo::Ptr>);

/// What goes through both forms, and the checks on the way back.
struct Scenario {
    char const * name;
    void (*write)(Writer &);
    void (*read)(Reader &);
};

class BothForms : public testing::TestWithParam<Scenario> {};

TEST_P(BothForms, GiveBackWhatWasWritten) {
    std::string const bytes = write_binary_form(GetParam().write);
    for (unsigned int segmentSize : {0xFFFFFFFFu, 1u, 2u, 7u}) {
        MemoryReader reader(list_of(bytes, segmentSize));
        GetParam().read(reader);
        EXPECT_EQ(reader.next_type(), eElement_None);
        EXPECT_EQ(reader.bytes_left(), 0u);
    }
    for (unsigned int indent : {0u, 3u}) {
        std::string const text = write_text_form(GetParam().write, {indent});
        for (unsigned int bufferSize : {1u, 2u, 7u, 4096u}) {
            for (bool const tellsSize : {true, false}) {
                read_text_form(
                    text,
                    [](Reader & reader) {
                        GetParam().read(reader);
                        EXPECT_EQ(reader.next_type(), eElement_None);
                    },
                    bufferSize, tellsSize);
            }
        }
    }
}

constexpr long long lowest = std::numeric_limits<long long>::min();
constexpr long long highest = std::numeric_limits<long long>::max();
constexpr unsigned long long bitPatterns[] = {
    0x0000000000000000, 0x8000000000000000, 0x0000000000000001, 0x7FEFFFFFFFFFFFFF,
    0x7FF0000000000000, 0xFFF0000000000000, 0x7FF0000000000001, 0xFFF8000000C0FFEE,
    0x3FB999999999999A, 0x4340000000000001, 0x44B52D02C7E14AF6};

void write_numbers(Writer & w) {
    for (long long const n : {lowest, -129LL, -9LL, 0LL, 55LL, 56LL, 1LL << 31, highest}) {
        w << n << AbsoluteTime(n) << RelativeTime(n);
    }
    for (unsigned long long const bits : bitPatterns) {
        w << std::bit_cast<double>(bits);
    }
    w << 0u << 31u << 32u << 65536u << 0xFFFFFFFFu << true << false;
}

void read_numbers(Reader & r) {
    for (long long const n : {lowest, -129LL, -9LL, 0LL, 55LL, 56LL, 1LL << 31, highest}) {
        long number = 1;
        r >> number;
        EXPECT_EQ(number, n);
        EXPECT_EQ(r.read_absolute_time().ticks(), n);
        EXPECT_EQ(r.read_relative_time().ticks(), n);
    }
    for (unsigned long long const bits : bitPatterns) {
        EXPECT_EQ(std::bit_cast<unsigned long long>(r.read_double()), bits);
    }
    for (unsigned int const n : {0u, 31u, 32u, 65536u, 0xFFFFFFFFu}) {
        EXPECT_EQ(r.next_type(), eElement_Unsigned);
        EXPECT_EQ(r.read_uint(), n);
    }
    EXPECT_TRUE(r.read_bool());
    EXPECT_FALSE(r.read_bool());
}

constexpr std::size_t textSizes[] = {0, 1, 63, 64, 255, 256, 70'000};

void write_texts(Writer & w) {
    for (std::size_t const size : textSizes) {
        w << std::string(size, '>');
        w.write_string_key(StringKey(std::string(size, '\xE9')));
    }
    w << Uuid(Uuid::BinaryData{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 255});
}

void read_texts(Reader & r) {
    for (std::size_t const size : textSizes) {
        std::string text = "?";
        r >> text;
        EXPECT_EQ(text, std::string(size, '>'));
        EXPECT_EQ(r.read_string_key().value(), std::string(size, '\xE9'));
    }
    Uuid uuid;
    r >> uuid;
    EXPECT_EQ(uuid.as_string(0), "01020304-0506-0708-090a-0b0c0d0e0fff");
}

void write_blocks(Writer & w) {
    write_memory_list_as_binary(w, nullptr);
    write_memory_list_as_binary(w, list_of(std::string(1000, '\x80'), 300));
    w.write_binary("abc", 3);
    w << 7;
}

void read_blocks(Reader & r) {
    EXPECT_EQ(r.next_type(), eElement_Binary);
    auto const empty = read_memory_list_as_binary(r);
    ASSERT_TRUE(empty);
    EXPECT_TRUE(empty->empty());
    EXPECT_EQ(bytes_of(read_memory_list_as_binary(r)), std::string(1000, '\x80'));
    ReadStreamPtr const stream = r.read_binary();
    EXPECT_EQ(r.read_integer(), 7); // the reader has stepped over the block
    char bytes[4] = {};
    EXPECT_EQ(stream->size(), 3);
    EXPECT_EQ(stream->skip(1), 1u);
    EXPECT_EQ(stream->read(bytes, 4), 2u);
    EXPECT_STREQ(bytes, "bc");
    EXPECT_EQ(stream->size(), 0);
}

void write_lists(Writer & w) {
    w.begin_list(0), w.end_list();
    w.begin_list(1), w << 1, w.end_list();
    w.begin_list(3);
    w << "a" << 1, w.begin_list(2), w << 2, w.next_list_item(), w << 3, w.end_list();
    w.next_list_item(), w.begin_record(), w << "b", w.end_record();
    w.next_list_item(), w.write_null(), w << 1;
    w.end_list();
    w.begin_record(), w.end_record();
}

void read_lists(Reader & r) {
    EXPECT_EQ(r.begin_list(), 0u);
    EXPECT_EQ(r.next_type(), eElement_None);
    EXPECT_FALSE(r.has_next());
    EXPECT_EQ(r.begin_list(), 0u); // 1 is not told
    EXPECT_TRUE(r.has_next() && r.has_next());
    EXPECT_EQ(r.read_integer(), 1);
    EXPECT_FALSE(r.has_next());
    (void)r.begin_list();                        // the text form may not know, see LaterCounts
    EXPECT_EQ(r.read_string_key().value(), "a"); // without has_next()
    EXPECT_EQ(r.read_integer(), 1);
    (void)r.begin_list();
    for (int i = 2; i < 4; ++i) {
        EXPECT_TRUE(r.has_next() && r.has_next());
        EXPECT_EQ(r.read_integer(), i);
    }
    EXPECT_FALSE(r.has_next());
    EXPECT_TRUE(r.has_next() && r.has_next()); // of the outer list, whose element was touched
    EXPECT_EQ(r.next_type(), eElement_Record);
    r.begin_record();
    EXPECT_EQ(r.read_string_key().value(), "b");
    EXPECT_EQ(r.next_type(), eElement_None);
    r.end_record();
    EXPECT_TRUE(r.has_next());
    EXPECT_TRUE(r.read_if_null());
    EXPECT_FALSE(r.read_if_null());
    EXPECT_EQ(r.read_integer(), 1);
    EXPECT_FALSE(r.has_next());
    r.begin_record();
    r.end_record();
}

ErrorInfo::Ptr chain_of(unsigned int links) {
    ErrorInfo::Ptr info;
    for (unsigned int i = 0; i < links; ++i) {
        info = vxcore::ErrorComposer("at {@a} and {@b}")
                   .param("a", std::string(i, 'x'))
                   .param("b", "\n")
                   .create(vxcore::error::vxcore_conversion,
                           vxcore::SourceLocation("f()", "file.cpp", 70'000 + i), info);
    }
    return info;
}

void write_forms(Writer & w) {
    write_error_info(w, nullptr);
    write_error_info(w, chain_of(1));
    write_error_info(w, chain_of(64).get());
    write_simple_date_time(w, vxcore::SimpleDateTime(lowest));
    write_simple_date_time(w, vxcore::SimpleDateTime(17'955'315'805'000'000));
    write_uri(w, vxuri::UriReference());
    write_uri(w, vxuri::UriReference::empty_reference());
    write_uri(w, vxuri::UriReference::parse("http://example.org/%C3%A4?q#<f>"));
}

void read_forms(Reader & r) {
    auto const kind_is_clear = [&r] {
        EElementKind const kind = r.next_type();
        return kind != eElement_List && kind != eElement_None && kind != eElement_Unsigned;
    };
    EXPECT_TRUE(kind_is_clear());
    EXPECT_FALSE(read_error_info(r));
    for (unsigned int const links : {1u, 64u}) {
        EXPECT_EQ(r.next_type(), eElement_Record);
        ErrorInfo::Ptr const info = read_error_info(r);
        ASSERT_TRUE(info);
        EXPECT_EQ(*info, *chain_of(links));
        EXPECT_EQ(info->location().line(), 69'999 + links);
        EXPECT_EQ(info->location().function().view(), "f()");
        EXPECT_EQ(info->location().file().view(), "file.cpp");
    }
    EXPECT_TRUE(kind_is_clear());
    EXPECT_EQ(read_simple_date_time(r).ticks(), lowest);
    EXPECT_EQ(read_simple_date_time(r).ticks(), 17'955'315'805'000'000);
    EXPECT_TRUE(kind_is_clear());
    EXPECT_TRUE(read_uri(r).is_undefined());
    EXPECT_TRUE(kind_is_clear());
    vxuri::UriReference const empty = read_uri(r);
    EXPECT_TRUE(empty.empty() && !empty.is_undefined());
    EXPECT_EQ(read_uri(r).text(), "http://example.org/%C3%A4?q#<f>");
}

INSTANTIATE_TEST_SUITE_P(Streams, BothForms,
                         testing::Values(Scenario{"numbers", write_numbers, read_numbers},
                                         Scenario{"texts", write_texts, read_texts},
                                         Scenario{"blocks", write_blocks, read_blocks},
                                         Scenario{"lists", write_lists, read_lists},
                                         Scenario{"forms", write_forms, read_forms}),
                         [](auto const & scenario) { return scenario.param.name; });

TEST(Streams, ListsTellTheirCountFromTwoUp) {
    auto const write = [](Writer & w) {
        w.begin_list(2), w << 1, w.next_list_item(), w << 2, w.end_list();
    };
    EXPECT_EQ(MemoryReader(list_of(write_binary_form(write))).begin_list(), 2u);
    for (bool const tellsSize : {true, false}) {
        // Where fewer bytes are known to follow, the text form does not know.
        for (unsigned int const bufferSize : {4u, 4096u}) {
            read_text_form(
                write_text_form(write),
                [&](Reader & reader) {
                    EXPECT_EQ(reader.begin_list(), !tellsSize && bufferSize == 4 ? 0u : 2u);
                },
                bufferSize, tellsSize);
        }
    }
}

TEST(Streams, ErrorChainsHaveALimit) {
    EXPECT_EQ(
        code_of([] { write_binary_form([](Writer & w) { write_error_info(w, chain_of(65)); }); }),
        "error.vxserialize.depth");
    std::string many = from_hex("F7EC41");
    for (int i = 0; i < 65; ++i) {
        many += from_hex("0000A0000080");
    }
    EXPECT_EQ(code_of([&] {
                  MemoryReader r(list_of(many + "\xF8"));
                  read_error_info(r);
              }),
              "error.vxserialize.depth");
    EXPECT_EQ(code_of([] {
                  MemoryReader r(list_of("\xF7\xA0\xF8"));
                  read_error_info(r);
              }),
              "error.vxserialize.data");
}

/// Calls that make no stream, each on a fresh writer.
TEST(Streams, WritersRefuseWhatMakesNoStream) {
    void (*const wrong[])(Writer &) = {
        [](Writer & w) { w.next_list_item(); },
        [](Writer & w) { w.end_list(); },
        [](Writer & w) { w.end_record(); },
        [](Writer & w) { w.begin_list(2), w << 1, w.end_list(); },
        [](Writer & w) { w.begin_list(1), w << 1, w.next_list_item(), w << 2, w.end_list(); },
        [](Writer & w) { w.begin_list(1), w << 1, w.next_list_item(), w.end_list(); },
        [](Writer & w) { w.begin_list(0), w << 1, w.end_list(); },
        [](Writer & w) { w.begin_list(2), w.next_list_item(); },
        [](Writer & w) { w.begin_list(1), w << 1, w.end_record(); },
        [](Writer & w) { w.begin_record(), w.end_list(); },
        [](Writer & w) { w.begin_list(1), w.begin_record(), w << 1, w.next_list_item(); },
    };
    for (auto const & write : wrong) {
        EXPECT_EQ(code_of([&] { write_binary_form(write); }), "error.vxserialize.usage");
        EXPECT_EQ(code_of([&] { write_text_form(write); }), "error.vxserialize.usage");
    }
}

/// Reads that do not fit the data `[2: 1, 2] (1 2)`.
TEST(Streams, ReadersRefuseWhatDoesNotFit) {
    auto const write = [](Writer & w) {
        w.begin_list(2), w << 1, w.next_list_item(), w << 2, w.end_list();
        w.begin_record(), w << 1 << 2, w.end_record();
    };
    void (*const wrong[])(Reader &) = {
        [](Reader & r) { (void)r.has_next(); },
        [](Reader & r) { r.end_record(); },
        [](Reader & r) { (void)r.begin_list(), r.end_record(); },
        [](Reader & r) { (void)r.read_integer(); },
        [](Reader & r) { (void)r.begin_list(), (void)r.has_next(), (void)r.read_uint(); },
        [](Reader & r) { read_anything(r), r.read_null(); },
        [](Reader & r) {
            (void)r.begin_list();
            while (r.has_next()) {
                (void)r.read_integer();
            }
            r.begin_record(), (void)r.read_integer(), r.end_record();
        },
    };
    for (auto const & read : wrong) {
        EXPECT_NE(code_of([&] {
                      MemoryReader r(list_of(write_binary_form(write)));
                      read(r);
                  }),
                  "");
        EXPECT_NE(code_of([&] { read_text_form(write_text_form(write), read); }), "");
    }
}

} // namespace
