#include "forms.h"
#include "support/cases.h"

#include "vxcore/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxuri/uri_parse_data.h"

#include <vector>

namespace {

using namespace vxtest;
using vxcore::ErrorInfo;
using vxcore::StringKey;

template <typename T>
concept Writable = requires(Writer & writer, T value) {
    writer << value;
};

static_assert(Writable<bool> && Writable<int> && Writable<long> && Writable<long long>);
static_assert(Writable<unsigned int> && Writable<double> && Writable<std::string>);
static_assert(Writable<char const *> && Writable<char[3]> && Writable<std::string_view>);
static_assert(!Writable<void *> && !Writable<int *> && !Writable<std::nullptr_t>);
static_assert(!Writable<char> && !Writable<unsigned long> && !Writable<ErrorInfo::Ptr>);

TEST(BothForms, PutEachElementAsInTheTable) {
    auto const check = [](std::string const & hex, std::string const & text, auto const &) {
        for (unsigned int const piece : {1u, 2u, 7u, 4096u}) {
            EXPECT_EQ(binary_to_text(from_hex(hex), piece), text);
            EXPECT_EQ(to_hex(text_to_binary(text, piece)), hex);
        }
    };
    EXPECT_EQ(for_each_case("vxserialize/forms.txt", check), 16);
}

TEST(BothForms, PutSizesAndCountsInAsFewBytesAsTheyNeed) {
    for (unsigned int const size : {0u, 23u, 24u, 63u, 64u, 255u, 256u, 65'535u, 65'536u}) {
        std::string const bytes(size, '>');
        std::string const text = write_text_form([&](Writer & w) {
            w << bytes;
            w.write_binary(bytes.data(), size);
        });
        std::string const binary = text_to_binary(text, 1000);
        unsigned int const stringHead = size < 64 ? 1 : size < 256 ? 2 : size < 65'536 ? 3 : 4;
        unsigned int const blockHead = size < 24 ? 1 : size < 256 ? 2 : size < 65'536 ? 3 : 4;
        EXPECT_EQ(binary.size(), 2 * size + stringHead + blockHead);
        EXPECT_EQ(binary_to_text(binary, 1000), text);
    }
}

/// Sends what `write` writes through both forms to `read`, in pieces of several sizes.
void expect_back(void (*write)(Writer &), void (*read)(Reader &)) {
    auto const read_all = [read](Reader & reader) {
        read(reader);
        EXPECT_EQ(reader.next_type(), eElement_None);
    };
    for (unsigned int const piece : {1u, 2u, 7u, 4096u}) {
        MemoryReader reader(list_of(write_binary_form(write), piece));
        read_all(reader);
        read_text_form(write_text_form(write), read_all, piece, true);
        read_text_form(write_text_form(write, 3), read_all, piece, false);
    }
}

/// Returns names that are alike at both ends and in size, as far as possible, and more of them than
/// a reader remembers.
std::vector<std::string> similar_names() {
    std::vector<std::string> names;
    for (unsigned int const size : {1u, 2u, 3u, 4u, 7u, 8u, 9u, 15u, 16u, 17u, 40u}) {
        for (unsigned int position = 0; position < size; ++position) {
            names.emplace_back(size, 'a')[position] = 'b';
        }
    }
    for (int i = 0; i < 3000; ++i) {
        names.push_back("name" + std::to_string(i));
    }
    return names;
}

TEST(BothForms, GiveBackNames) {
    auto const write = [](Writer & w) {
        for (std::string const & name : similar_names()) {
            w << name << "";
            w.write_string_key(StringKey(name));
        }
    };
    expect_back(write, [](Reader & r) {
        for (std::string const & name : similar_names()) {
            EXPECT_EQ(r.read_string_key().value(), name);
            EXPECT_EQ(r.read_string_key(), StringKey());
            EXPECT_EQ(r.read_string_key().value(), name); // remembered
        }
    });
}

TEST(BothForms, GiveBackBlocks) {
    auto const write = [](Writer & w) {
        write_memory_list_as_binary(w, nullptr);
        write_memory_list_as_binary(w, list_of(std::string(1000, '\x80'), 300));
        w.write_binary("abc", 3);
        w << 7;
    };
    expect_back(write, [](Reader & r) {
        auto const empty = read_memory_list_as_binary(r);
        ASSERT_TRUE(empty);
        EXPECT_TRUE(empty->empty());
        EXPECT_EQ(bytes_of(r.Reader::read_binary_as_memory_list()), std::string(1000, '\x80'));
        ReadStreamPtr const stream = r.read_binary();
        EXPECT_EQ(r.read_integer(), 7); // the reader has stepped over the block
        char bytes[4] = {};
        EXPECT_EQ(stream->skip(1), 1u);
        EXPECT_EQ(stream->read(bytes, 4), 2u);
        EXPECT_STREQ(bytes, "bc");
    });
}

TEST(BothForms, GiveBackListsAndRecords) {
    auto const write = [](Writer & w) {
        w.begin_list(0), w.end_list();
        w.begin_list(3);
        w << "a" << 1, w.begin_list(2), w << 2, w.next_list_item(), w << 3, w.end_list();
        w.next_list_item(), w.begin_record(), w << "b", w.end_record();
        w.next_list_item(), w.write_null(), w << 1;
        w.end_list();
    };
    expect_back(write, [](Reader & r) {
        EXPECT_EQ(r.begin_list(), 0u);
        EXPECT_EQ(r.next_type(), eElement_None);
        EXPECT_FALSE(r.has_next());
        (void)r.begin_list();                        // for the count see the next test
        EXPECT_EQ(r.read_string_key().value(), "a"); // without has_next()
        EXPECT_EQ(r.read_integer(), 1);
        (void)r.begin_list();
        for (int i = 2; i < 4; ++i) {
            EXPECT_TRUE(r.has_next());
            EXPECT_TRUE(r.has_next());
            EXPECT_EQ(r.read_integer(), i);
        }
        EXPECT_FALSE(r.has_next());
        EXPECT_TRUE(r.has_next()); // of the outer list, whose element was touched
        EXPECT_TRUE(r.has_next());
        r.begin_record();
        EXPECT_EQ(r.read_string_key().value(), "b");
        EXPECT_EQ(r.next_type(), eElement_None);
        r.end_record();
        EXPECT_TRUE(r.has_next());
        EXPECT_TRUE(r.read_if_null());
        EXPECT_FALSE(r.read_if_null());
        EXPECT_EQ(r.read_integer(), 1);
        EXPECT_FALSE(r.has_next());
    });
}

ErrorInfo::Ptr chain_of(unsigned int links) {
    ErrorInfo::Ptr info;
    for (unsigned int i = 0; i < links; ++i) {
        vxcore::ErrorComposer composer("at {@a} and {@b}");
        composer.param("a", std::string(i, 'x')).param("b", "\n");
        info = composer.create(vxcore::error::vxcore_conversion,
                               vxcore::SourceLocation("f()", "file.cpp", 70'000 + i), info);
    }
    return info;
}

TEST(BothForms, GiveBackErrorsTimesAndReferences) {
    auto const write = [](Writer & w) {
        write_error_info(w, nullptr);
        write_error_info(w, chain_of(1));
        write_error_info(w, chain_of(64).get());
        write_simple_date_time(w, vxcore::SimpleDateTime(-1));
        write_uri(w, vxuri::UriReference());
        write_uri(w, vxuri::UriReference::empty_reference());
        write_uri(w, vxuri::UriReference::parse("http://example.org/%C3%A4?q#<f>"));
        write_uri(w, vxuri::UriReference(vxcore::make_ref_counted<vxuri::impl::UriParseData>(
                         "s:p?q", vxuri::impl::UriParseData::Parts{~0u})));
    };
    expect_back(write, [](Reader & r) {
        EXPECT_EQ(r.next_type(), eElement_Null);
        EXPECT_FALSE(read_error_info(r));
        for (unsigned int const links : {1u, 64u}) {
            EXPECT_EQ(r.next_type(), eElement_Record);
            ErrorInfo::Ptr const info = read_error_info(r);
            EXPECT_EQ(*info, *chain_of(links));
            EXPECT_EQ(info->location().line(), 69'999 + links);
            EXPECT_EQ(info->location().file().view(), "file.cpp");
        }
        EXPECT_EQ(r.next_type(), eElement_AbsoluteTime);
        EXPECT_EQ(read_simple_date_time(r).ticks(), -1);
        EXPECT_EQ(r.next_type(), eElement_Null);
        EXPECT_TRUE(read_uri(r).is_undefined());
        vxuri::UriReference const empty = read_uri(r);
        EXPECT_TRUE(empty.empty());
        EXPECT_FALSE(empty.is_undefined());
        EXPECT_EQ(read_uri(r).text(), "http://example.org/%C3%A4?q#<f>");
        EXPECT_EQ(r.next_type(), eElement_Record);
        vxuri::UriReference const undefined = read_uri(r);
        EXPECT_TRUE(undefined.is_undefined());
        EXPECT_EQ(undefined.query(), "q");
        EXPECT_EQ(undefined.text(), "s:p?q");
    });
}

TEST(BothForms, TellTheCountOfAListFromTwoUp) {
    EXPECT_EQ(MemoryReader(list_of("\xA2\x41\x41")).begin_list(), 2u);
    EXPECT_EQ(MemoryReader(list_of("\xA1\x41")).begin_list(), 0u);

    struct {
        char const * text;
        unsigned int bufferSize;
        bool tellsSize;
        unsigned int count;
    } const lists[] = {{"[2: 1, 2]", 4, true, 2},
                       {"[2: 1, 2]", 4096, false, 2},
                       {"[2: 1, 2]", 4, false, 0}, // fewer bytes are known to follow
                       {"[1: 1]", 4096, true, 0}};

    for (auto const & row : lists) {
        auto const read = [&row](Reader & reader) { EXPECT_EQ(reader.begin_list(), row.count); };
        read_text_form(row.text, read, row.bufferSize, row.tellsSize);
    }
}

TEST(BothForms, LimitChainsOfErrors) {
    auto const write = [](Writer & w) { write_error_info(w, chain_of(65)); };
    EXPECT_EQ(code_of([&] { write_binary_form(write); }), "error.vxserialize.depth");
    std::string text = "([65: ";
    for (int i = 0; i < 65; ++i) {
        text += "<> <> [] <> <> 0u, ";
    }
    EXPECT_EQ(code_of([&] { read_text_form(text, [](Reader & r) { read_error_info(r); }); }),
              "error.vxserialize.depth");
}

/// Makes calls that produce no valid stream, each on a new writer.
TEST(BothForms, RefuseToWriteWhatMakesNoStream) {
    void (*const wrong[])(Writer &) = {
        [](Writer & w) { w.end_list(); },
        [](Writer & w) { w.end_record(); },
        [](Writer & w) { w.begin_list(2), w << 1, w.end_list(); },
        [](Writer & w) { w.begin_list(1), w << 1, w.next_list_item(), w << 2, w.end_list(); },
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

/// Returns what a failed read leaves in a local variable.
template <typename T>
T left_by_failed_read(Reader & reader, T const & before) {
    T value = before;
    try {
        reader >> value;
    } catch (vxcore::ErrorException const &) {
        return value;
    }
    return T(); // it did not fail
}

/// Reads that do not fit the data.
TEST(BothForms, RefuseToReadWhatIsNotThere) {
    std::string const text = "([2: 1, 2] 3)";
    void (*const wrong[])(Reader &) = {
        [](Reader & r) { (void)r.has_next(); },
        [](Reader & r) { r.begin_record(), r.end_record(); },
        [](Reader & r) { r.begin_record(), (void)r.has_next(); },
        [](Reader & r) { r.begin_record(), (void)r.begin_list(), r.end_record(); },
        [](Reader & r) { r.begin_record(), (void)r.begin_list(), (void)r.read_uint(); },
    };
    for (auto const & read : wrong) {
        MemoryReader reader(list_of(text_to_binary(text)));
        EXPECT_NE(code_of([&] { read(reader); }), "");
        EXPECT_NE(code_of([&] { read_text_form(text, read); }), "");
    }
    MemoryReader reader(list_of(text_to_binary(text)));
    EXPECT_EQ(left_by_failed_read(reader, vxcore::Uuid({1, 2})), vxcore::Uuid({1, 2}));
    EXPECT_EQ(left_by_failed_read(reader, vxcore::AbsoluteTime(77)), vxcore::AbsoluteTime(77));
    EXPECT_EQ(left_by_failed_read(reader, vxcore::RelativeTime(78)), vxcore::RelativeTime(78));
}

} // namespace
