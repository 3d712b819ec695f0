#pragma once

#include "vxserialize/writer.h"

#include <stdexcept>
#include <string>

namespace vxtest {

/// Records operations in the script language of ScriptedReader, such as "uint 12; list 3". The
/// constructor can make the n-th operation raise.
class RecordingWriter final : public vxserialize::Writer {
  public:
    explicit RecordingWriter(std::size_t failAt = 0) : m_untilFailure(failAt) {}

    std::string script;

    void write_null() override { note("null"); }

    void write_bool(bool value) override { note(value ? "true" : "false"); }

    void write_integer(long long value) override { note("int " + std::to_string(value)); }

    void write_uint(unsigned int value) override { note("uint " + std::to_string(value)); }

    void write_double(double value) override { note("double " + std::to_string(value)); }

    void write_string(char const * data, unsigned int size) override {
        note("string " + std::string(data, size));
    }

    void write_string_key(vxcore::StringKey const & key) override { note("key " + key.value()); }

    void write_absolute_time(vxcore::AbsoluteTime) override { note("time"); }

    void write_relative_time(vxcore::RelativeTime) override { note("span"); }

    void write_uuid(vxcore::Uuid const & value) override { note("uuid " + value.as_string(1)); }

    void write_binary(void const *, unsigned int) override { note("binary"); }

    void begin_list(unsigned int count) override { note("list " + std::to_string(count)); }

    void next_list_item() override { note("next"); }

    void end_list() override { note("end"); }

    void begin_record() override { note("record"); }

    void end_record() override { note("close"); }

  private:
    void note(std::string const & operation) {
        if (--m_untilFailure == 0) {
            throw std::runtime_error("told to fail");
        }
        script += (script.empty() ? "" : "; ") + operation;
    }

    std::size_t m_untilFailure;
};

} // namespace vxtest
