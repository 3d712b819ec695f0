#pragma once

#include "vxattribute/json_marshaler.h"
#include "vxcore/error_exception.h"
#include "vxjson/text_writer.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace vxtest {

/// A writer of JSON as a program may have its own: passes the calls to a TextWriter, and records
/// the sizes of the pieces of strings. It refuses numbers that values are not written as.
class PassingWriter final : public vxjson::Writer {
  public:
    explicit PassingWriter(vxjson::TextWriter & writer) : m_writer(writer) {}

    void write_name(char const * data, unsigned int size) override {
        m_writer.write_name(data, size);
    }

    void write_number(char const *, unsigned int) override { throw std::logic_error("a number"); }

    void write_string(char const * data, unsigned int size) override {
        m_writer.write_string(data, size);
    }

    void write_bool(bool value) override { m_writer.write_bool(value); }

    void write_integer(long long value) override { m_writer.write_integer(value); }

    void write_unsigned(unsigned long long) override { throw std::logic_error("unsigned"); }

    void write_double(double) override { throw std::logic_error("a double"); }

    void write_null() override { m_writer.write_null(); }

    void begin_object() override { m_writer.begin_object(); }

    void end_object() override { m_writer.end_object(); }

    void begin_array() override { m_writer.begin_array(); }

    void end_array() override { m_writer.end_array(); }

    void begin_string() override { m_writer.begin_string(); }

    void write_string_data(char const * data, unsigned int size) override {
        pieces.push_back(size);
        m_writer.write_string_data(data, size);
    }

    void end_string() override { m_writer.end_string(); }

    std::vector<unsigned int> pieces;

  private:
    vxjson::TextWriter & m_writer;
};

/// Writes a value with the options, to the TextWriter itself or through a PassingWriter. Returns
/// the text; for a failure, its message and what the writer would accept next.
inline std::string write_value(vxattribute::AttributeValue const & value,
                               vxjson::TextWriter::Options const & options, bool passing) {
    std::string text, failures;
    vxjson::TextWriter writer(text, options);
    PassingWriter own(writer);
    auto const attempt = [&failures](auto action) {
        try {
            action();
        } catch (vxcore::ErrorException const & failure) {
            failures += failure.what();
        }
    };
    attempt([&] {
        passing ? write_attribute_value(own, value) : write_attribute_value(writer, value);
    });
    attempt([&] { writer.finish(); });
    return failures.empty() ? text : failures;
}

} // namespace vxtest
