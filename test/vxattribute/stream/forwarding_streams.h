#pragma once

#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

/// A reader and a writer that pass every call on. Code with a way of its own for the streams of the
/// library takes the general way for them.
namespace vxtest {

// clang-format off
#define VX_FORWARD(Type, name) Type name() override { return m_target.name(); }
#define VX_FORWARD_1(Type, name) void name(Type value) override { m_target.name(value); }
#define VX_FORWARD_2(Type, name) void name(Type data, unsigned int size) override { m_target.name(data, size); }

class ForwardingReader final : public vxserialize::Reader {
  public:
    explicit ForwardingReader(vxserialize::Reader & target) : m_target(target) {}
    VX_FORWARD(vxserialize::EElementKind, next_type)
    VX_FORWARD(void, read_null)
    VX_FORWARD(bool, read_if_null)
    VX_FORWARD(bool, read_bool)
    VX_FORWARD(long long, read_integer)
    VX_FORWARD(unsigned int, read_uint)
    VX_FORWARD(double, read_double)
    VX_FORWARD_1(std::string &, read_string)
    VX_FORWARD(vxcore::StringKey, read_string_key)
    VX_FORWARD(vxcore::AbsoluteTime, read_absolute_time)
    VX_FORWARD(vxcore::RelativeTime, read_relative_time)
    VX_FORWARD(vxcore::Uuid, read_uuid)
    VX_FORWARD(vxserialize::ReadStreamPtr, read_binary)
    VX_FORWARD(unsigned int, begin_list)
    VX_FORWARD(bool, has_next)
    VX_FORWARD(void, begin_record)
    VX_FORWARD(void, end_record)
  private:
    vxserialize::Reader & m_target;
};

class ForwardingWriter final : public vxserialize::Writer {
  public:
    explicit ForwardingWriter(vxserialize::Writer & target) : m_target(target) {}
    VX_FORWARD(void, write_null)
    VX_FORWARD_1(bool, write_bool)
    VX_FORWARD_1(long long, write_integer)
    VX_FORWARD_1(unsigned int, write_uint)
    VX_FORWARD_1(double, write_double)
    VX_FORWARD_2(char const *, write_string)
    VX_FORWARD_1(vxcore::StringKey const &, write_string_key)
    VX_FORWARD_1(vxcore::AbsoluteTime, write_absolute_time)
    VX_FORWARD_1(vxcore::RelativeTime, write_relative_time)
    VX_FORWARD_1(vxcore::Uuid const &, write_uuid)
    VX_FORWARD_2(void const *, write_binary)
    VX_FORWARD_1(unsigned int, begin_list)
    VX_FORWARD(void, next_list_item)
    VX_FORWARD(void, end_list)
    VX_FORWARD(void, begin_record)
    VX_FORWARD(void, end_record)
  private:
    vxserialize::Writer & m_target;
};
#undef VX_FORWARD
#undef VX_FORWARD_1
#undef VX_FORWARD_2
// clang-format on

} // namespace vxtest
