#pragma once

#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

/// A reader and a writer that pass every call on. Code with a way of its own for the streams of the
/// library takes the general way for them.
namespace vxtest {

class ForwardingReader final : public vxserialize::Reader {
  public:
    explicit ForwardingReader(vxserialize::Reader & target) : m_target(target) {}

    vxserialize::EElementKind next_type() override { return m_target.next_type(); }

    void read_null() override { return m_target.read_null(); }

    bool read_if_null() override { return m_target.read_if_null(); }

    bool read_bool() override { return m_target.read_bool(); }

    long long read_integer() override { return m_target.read_integer(); }

    unsigned int read_uint() override { return m_target.read_uint(); }

    double read_double() override { return m_target.read_double(); }

    vxcore::StringKey read_string_key() override { return m_target.read_string_key(); }

    vxcore::AbsoluteTime read_absolute_time() override { return m_target.read_absolute_time(); }

    vxcore::RelativeTime read_relative_time() override { return m_target.read_relative_time(); }

    vxcore::Uuid read_uuid() override { return m_target.read_uuid(); }

    vxserialize::ReadStreamPtr read_binary() override { return m_target.read_binary(); }

    vxcore::RefCountPtr<vxserialize::MemoryList> read_binary_as_memory_list() override {
        return m_target.read_binary_as_memory_list();
    }

    unsigned int begin_list() override { return m_target.begin_list(); }

    bool has_next() override { return m_target.has_next(); }

    void begin_record() override { return m_target.begin_record(); }

    void end_record() override { return m_target.end_record(); }

    void read_string(std::string & value) override { m_target.read_string(value); }

  private:
    vxserialize::Reader & m_target;
};

class ForwardingWriter final : public vxserialize::Writer {
  public:
    explicit ForwardingWriter(vxserialize::Writer & target) : m_target(target) {}

    void write_null() override { m_target.write_null(); }

    void write_bool(bool value) override { m_target.write_bool(value); }

    void write_integer(long long value) override { m_target.write_integer(value); }

    void write_uint(unsigned int value) override { m_target.write_uint(value); }

    void write_double(double value) override { m_target.write_double(value); }

    void write_string_key(vxcore::StringKey const & value) override {
        m_target.write_string_key(value);
    }

    void write_absolute_time(vxcore::AbsoluteTime value) override {
        m_target.write_absolute_time(value);
    }

    void write_relative_time(vxcore::RelativeTime value) override {
        m_target.write_relative_time(value);
    }

    void write_uuid(vxcore::Uuid const & value) override { m_target.write_uuid(value); }

    void write_memory_list(vxserialize::MemoryListBase const & value) override {
        m_target.write_memory_list(value);
    }

    void begin_list(unsigned int value) override { m_target.begin_list(value); }

    void next_list_item() override { m_target.next_list_item(); }

    void end_list() override { m_target.end_list(); }

    void begin_record() override { m_target.begin_record(); }

    void end_record() override { m_target.end_record(); }

    void write_string(char const * data, unsigned int size) override {
        m_target.write_string(data, size);
    }

    void write_binary(void const * data, unsigned int size) override {
        m_target.write_binary(data, size);
    }

  private:
    vxserialize::Writer & m_target;
};

} // namespace vxtest
