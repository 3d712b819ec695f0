#pragma once

#include "vxcore/string_source.h"
#include "vxserialize/vxserialize.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>

/// Streams in memory, and both forms as strings.
namespace vxtest {

using namespace vxserialize;

using ListPtr = vxcore::RefCountPtr<MemoryList const>;

/// A stream over a text. It reports its size, or a wrong size, or that the size is unknown.
class StringStream final : public vxcore::IReadStream {
  public:
    StringStream(std::string text, bool tellsSize, long long tooMuch = 0)
        : m_text(std::move(text)), m_tellsSize(tellsSize), m_tooMuch(tooMuch) {}

    unsigned int read(void * buffer, unsigned int size) override {
        EXPECT_FALSE(m_ended) << "a read after a short one";
        ++reads;
        unsigned int const run = m_source.read(buffer, size);
        m_ended = run < size;
        return run;
    }

    unsigned int skip(unsigned int) override { return 0; }

    long long size() const override { return m_tellsSize ? m_source.size() + m_tooMuch : -1; }

    int reads = 0;

  private:
    std::string m_text;
    vxcore::StringSource m_source{m_text};
    bool m_tellsSize;
    long long m_tooMuch;
    bool m_ended = false;
};

inline std::string bytes_of(ListPtr const & list) {
    std::string bytes(list->size(), '\0');
    list->read_at(0, bytes.data(), list->size());
    return bytes;
}

/// Returns the bytes in segments of at most `segmentSize` bytes.
inline ListPtr list_of(std::string_view bytes, unsigned int segmentSize = 0xFFFFFFFF) {
    auto list = MemoryList::create();
    while (!bytes.empty()) {
        std::string_view const piece = bytes.substr(0, segmentSize);
        list->append(*MemoryList::create(piece.data(), static_cast<unsigned int>(piece.size())));
        bytes.remove_prefix(piece.size());
    }
    return list;
}

inline std::string write_binary_form(std::function<void(Writer &)> const & write) {
    MemoryWriter writer;
    write(writer);
    return bytes_of(writer.close_and_detach_memory_list());
}

inline std::string write_text_form(std::function<void(Writer &)> const & write,
                                   unsigned int indent = 0) {
    std::string text;
    StringTarget target(text);
    TextWriter writer(target, {indent});
    write(writer);
    writer.close();
    return text;
}

inline void read_text_form(std::string const & text, std::function<void(Reader &)> const & read,
                           unsigned int bufferSize = 4096, bool tellsSize = true) {
    StringStream stream(text, tellsSize);
    TextReader reader(stream, bufferSize);
    read(reader);
}

/// Makes one to three random changes: replaces, inserts or removes a byte; overwrites bytes with a
/// part of `number`; or cuts off the rest. New bytes are often `marks`, which have a meaning in the
/// form.
inline void mutate(std::string & data, std::mt19937 & random, std::string const & marks,
                   std::string const & number) {
    for (auto changes = 1 + random() % 3; changes != 0 && !data.empty(); --changes) {
        std::size_t const at = random() % data.size();
        char const byte =
            random() % 2 == 0 ? marks[random() % marks.size()] : static_cast<char>(random());
        switch (random() % 8) {
        case 0:
            data.replace(at, 1 + random() % 4, number, 0, 1 + random() % number.size());
            break;
        case 1:
            data.resize(at + 1);
            break;
        default:
            data.replace(at, random() % 2, random() % 2, byte);
        }
    }
}

} // namespace vxtest
