#pragma once

#include "vxcore/error_exception.h"
#include "vxserialize/vxserialize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

/// Means to send data through both forms. Most tests write it down in one form and compare what it
/// becomes in the other.
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
    StringStream(std::string text, bool tellsSize)
        : m_text(std::move(text)), m_tellsSize(tellsSize) {}

    unsigned int read(void * buffer, unsigned int size) override {
        EXPECT_FALSE(m_ended) << "a read behind a short one";
        std::size_t const run = m_text.copy(static_cast<char *>(buffer), size, m_at);
        m_at += run;
        m_ended = run < size;
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
    bool m_ended = false;
};

std::string bytes_of(ListPtr const & list);

/// The bytes in segments of at most `segmentSize`.
ListPtr list_of(std::string_view bytes, unsigned int segmentSize = 0xFFFFFFFF);

/// Digits with anything between them; a semicolon starts a comment to the end of the line.
std::string from_hex(std::string_view hex);
std::string to_hex(std::string_view bytes);

std::string write_binary_form(std::function<void(Writer &)> const & write);
std::string write_text_form(std::function<void(Writer &)> const & write, unsigned int indent = 0);
void read_text_form(std::string const & text, std::function<void(Reader &)> const & read,
                    unsigned int bufferSize = 4096, bool tellsSize = true);

/// What one form becomes in another. Of binary data an element of a list is taken to be one
/// primitive; of a text it is known. Failures pass through; data behind the last element is one.
std::string binary_to_text(std::string const & bytes, unsigned int segmentSize = 0xFFFFFFFF);
std::string text_to_binary(std::string const & text, unsigned int bufferSize = 4096);
std::string text_to_text(std::string const & text);

/// The code that `action` raises; "" when it raises nothing.
std::string code_of(std::function<void()> const & action);

/// The block of a page on the forms that starts with ```<mark>.
std::string page_block(std::string const & page, std::string const & mark);

} // namespace vxtest
