// The rule under test: whatever bytes come, reading a value ends, at worst in an error, and then
// the target is as it was.

#include "support/allocation.h"

#include "vxattribute/samples.h"
#include "vxcore/error_exception.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"
#include "vxserialize/text_reader.h"
#include "vxserialize/text_writer.h"

#include <gtest/gtest.h>

#include <future>
#include <random>

namespace {

using namespace vxattribute;

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
constexpr unsigned int mutations = 500'000; // of each form
#endif

struct StringTarget final : vxserialize::TextWriter::ITextTarget {
    std::string text;

    void write_char(char c) override { text += c; }

    void write_data(char const * data, unsigned int size) override { text.append(data, size); }
};

struct ViewStream final : vxcore::IReadStream {
    explicit ViewStream(std::string_view bytes) : left(bytes) {}

    unsigned int read(void * buffer, unsigned int size) override {
        return skip(static_cast<unsigned int>(left.copy(static_cast<char *>(buffer), size)));
    }

    unsigned int skip(unsigned int size) override {
        left.remove_prefix(size);
        return size;
    }

    long long size() const override { return -1; }

    std::string_view left;
};

std::string write_binary(AttributeValue const & value) {
    vxserialize::MemoryWriter writer;
    write_attribute_value(writer, value);
    std::string bytes(writer.size(), '\0');
    writer.close_and_detach_memory_list()->read_at(0, bytes.data(), ~0u);
    return bytes;
}

std::string write_text(AttributeValue const & value) {
    StringTarget target;
    vxserialize::TextWriter writer(target, vxserialize::TextWriter::Options());
    write_attribute_value(writer, value);
    writer.close();
    return target.text;
}

void read_binary(std::string const & bytes, AttributeValue & target) {
    vxserialize::MemoryReader reader(
        vxserialize::MemoryList::create(bytes.data(), static_cast<unsigned int>(bytes.size())));
    read_attribute_value(reader, target);
}

void read_text(std::string const & text, AttributeValue & target) {
    ViewStream stream(text);
    vxserialize::TextReader reader(stream, 32);
    read_attribute_value(reader, target);
}

struct Form {
    std::string (*write)(AttributeValue const & value);
    void (*read)(std::string const & bytes, AttributeValue & target);
    std::string_view marks;  // bytes that mean much
    std::string_view number; // written over what is there, or a part of it
};

class Mutator {
  public:
    explicit Mutator(Form const & form) : m_form(form) {}

    unsigned int below(std::size_t n) { return static_cast<unsigned int>(m_random() % n); }

    void mutate(std::string & data) {
        std::size_t const at = below(data.size());
        switch (below(6)) {
        case 0:
            data[at] = static_cast<char>(data[at] ^ 1 << below(8));
            break;
        case 1:
            data[at] = m_form.marks[below(m_form.marks.size())];
            break;
        case 2:
            data.insert(at, 1, m_form.marks[below(m_form.marks.size())]);
            break;
        case 3:
            data.erase(at, data.size() > 3 ? 1 + below(3) : 0);
            break;
        case 4:
            data.resize(at + 1);
            break;
        default:
            data.replace(at, 1 + below(4), m_form.number, 0, 1 + below(m_form.number.size()));
        }
    }

  private:
    Form const & m_form;
    std::mt19937 m_random{20261124};
};

/// Gives the number of failures.
unsigned int read_mutated(Form const & form) {
    AttributeValue const kept = make_list<std::string>({"kept", "as it was"});
    std::vector<std::string> streams;
    for (vxtest::Sample const & sample : vxtest::samples()) {
        streams.push_back(form.write(sample.value));
    }
    Mutator mutator(form);
    unsigned int failures = 0;
    for (unsigned int round = 0; round < mutations; ++round) {
        std::string data = streams[round % streams.size()];
        mutator.mutate(data);
        AttributeValue target = kept;
        try {
            form.read(data, target);
            EXPECT_EQ(target.compare(target), 0) << testing::PrintToString(data);
        } catch (vxcore::ErrorException const &) {
            ++failures;
            EXPECT_EQ(target, kept) << testing::PrintToString(data);
        }
    }
    return failures;
}

TEST(Mutation, MutatedStreamsNeverDoMoreThanFail) {
    Form const binary = {write_binary, read_binary, "\x01\x40\x8C\x8E\xA2\xC3\xEC\xF0\xF7\xF8",
                         "\xFF\xFF\xFF\xFF"};
    Form const text = {write_text, read_text, "0<>[](){}#@,:%unT-. ", "4294967296"};
    auto inParallel = std::async(std::launch::async, read_mutated, binary);
    for (unsigned int const failures : {read_mutated(text), inParallel.get()}) {
        EXPECT_GT(failures, mutations / 4);
        EXPECT_LT(failures, mutations);
    }
}

// Each is one byte of the stream. With a holder of its own it would take more than 128 of memory.
TEST(Mutation, EmptyMapsOfAStreamHaveNoHolderOfTheirOwn) {
    std::string const bytes = "\x8C\xEC\xFF" + std::string(255, '\xA0');
    AttributeValue value;
    long const before = vxtest::live_blocks();
    read_binary(bytes, value);
    EXPECT_LT(vxtest::live_blocks() - before, 20);
    EXPECT_EQ(value.size(), 255u);
}

} // namespace
