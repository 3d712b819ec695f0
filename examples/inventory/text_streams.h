#pragma once

#include "vxcore/read_stream.h"
#include "vxserialize/text_writer.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace inventory {

/// Collects text in a string, which must outlive it.
class StringTarget final : public vxserialize::TextWriter::ITextTarget {
  public:
    explicit StringTarget(std::string & text) noexcept : m_text(text) {}

    void write_char(char c) override { m_text.push_back(c); }

    void write_data(char const * data, unsigned int size) override { m_text.append(data, size); }

  private:
    std::string & m_text;
};

/// Reads from text that must outlive it.
class StringStream final : public vxcore::IReadStream {
  public:
    explicit StringStream(std::string_view text) noexcept : m_rest(text) {}

    unsigned int read(void * buffer, unsigned int size) override {
        std::copy_n(m_rest.data(), std::min<std::size_t>(size, m_rest.size()),
                    static_cast<char *>(buffer));
        return skip(size);
    }

    unsigned int skip(unsigned int size) override {
        std::size_t const count = std::min<std::size_t>(size, m_rest.size());
        m_rest.remove_prefix(count);
        return static_cast<unsigned int>(count);
    }

    long long size() const override { return static_cast<long long>(m_rest.size()); }

  private:
    std::string_view m_rest;
};

} // namespace inventory
