#pragma once

#include "vxcore/error_exception.h"
#include "vxserialize/vxserialize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

/// Small means to run streams through both forms.
namespace vxtest {

using namespace vxserialize;

using ListPtr = vxcore::RefCountPtr<MemoryList const>;

class StringTarget final : public TextWriter::ITextTarget {
  public:
    void write_char(char c) override { text += c; }

    void write_data(char const * data, unsigned int size) override { text.append(data, size); }

    std::string text;
};

/// A stream over a text; it tells its size or not.
class StringStream final : public vxcore::IReadStream {
  public:
    explicit StringStream(std::string text, bool tellsSize = false)
        : m_text(std::move(text)), m_tellsSize(tellsSize) {}

    unsigned int read(void * buffer, unsigned int size) override {
        std::size_t const run = m_text.copy(static_cast<char *>(buffer), size, m_at);
        m_at += run;
        return static_cast<unsigned int>(run);
    }

    unsigned int skip(unsigned int) override { return 0; }

    long long size() const override {
        return m_tellsSize ? static_cast<long long>(m_text.size() - m_at) : -1;
    }

  private:
    std::string m_text;
    std::size_t m_at = 0;
    bool m_tellsSize;
};

inline std::string bytes_of(ListPtr const & list) {
    std::string bytes(list->size(), '\0');
    list->read_at(0, bytes.data(), list->size());
    return bytes;
}

/// The bytes in segments of at most `segmentSize`.
inline ListPtr list_of(std::string_view bytes, unsigned int segmentSize = 0xFFFFFFFF) {
    auto list = MemoryList::create();
    for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(segmentSize, bytes.size()))) {
        list->append(*MemoryList::create(
            bytes.data(),
            static_cast<unsigned int>(std::min<std::size_t>(segmentSize, bytes.size()))));
    }
    return list;
}

/// Digits with anything between them; a semicolon starts a comment to the end of the line.
inline std::string from_hex(std::string_view hex) {
    std::string bytes;
    std::string digits;
    bool comment = false;
    for (char const c : hex) {
        comment = c == ';' || (comment && c != '\n');
        if (!comment && std::isxdigit(static_cast<unsigned char>(c)) != 0) {
            digits += c;
        }
        if (digits.size() == 2) {
            bytes += static_cast<char>(std::stoi(digits, nullptr, 16));
            digits.clear();
        }
    }
    return bytes;
}

inline std::string to_hex(std::string_view bytes) {
    std::string hex;
    for (char const c : bytes) {
        hex += "0123456789ABCDEF"[static_cast<unsigned char>(c) >> 4];
        hex += "0123456789ABCDEF"[c & 15];
    }
    return hex;
}

inline std::string write_binary_form(std::function<void(Writer &)> const & write) {
    MemoryWriter writer;
    write(writer);
    return bytes_of(writer.close_and_detach_memory_list());
}

inline std::string write_text_form(std::function<void(Writer &)> const & write,
                                   TextWriter::Options const & options = {}) {
    StringTarget target;
    TextWriter writer(target, options);
    write(writer);
    writer.close();
    return target.text;
}

inline void read_text_form(std::string const & text, std::function<void(Reader &)> const & read,
                           unsigned int bufferSize = 4096, bool tellsSize = false) {
    StringStream stream(text, tellsSize);
    TextReader reader(stream, bufferSize);
    read(reader);
}

/// The code that `action` raises; "" when it raises nothing.
inline std::string code_of(std::function<void()> const & action) {
    try {
        action();
    } catch (vxcore::ErrorException const & e) {
        return e.info()->code().name();
    }
    return "";
}

/// The block of a documentation page that starts with ```<mark>.
inline std::string page_block(std::string const & page, std::string const & mark) {
    std::ifstream file(VX_SOURCE_DIR "/docs/formats/" + page);
    std::stringstream text;
    text << file.rdbuf();
    std::string const all = text.str();
    std::string const fence = "\n```" + mark + "\n";
    std::size_t const start = all.find(fence);
    EXPECT_NE(start, all.npos) << page;
    std::size_t const first = start + fence.size();
    return start == all.npos ? "" : all.substr(first, all.find("\n```", first) - first);
}

/// Reads whatever comes, until a failure or the end. Gives the number of elements.
unsigned int read_anything(Reader & reader);

} // namespace vxtest
