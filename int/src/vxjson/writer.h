#pragma once

#include "vxjson/export.h"

namespace vxjson {

/// Takes a document as a sequence of calls. TextWriter makes text of it.
///
///     writer.begin_object();
///     writer.write_name("port", 4);       // then its value
///     writer.write_integer(8080);
///     writer.end_object();
///
/// Sizes are in bytes. The text of names and strings is plain; escaping is the writer's.
///
/// An interface: it is not destroyed through.
class VXJSON_API Writer {
  public:
    /// The name of the value that follows.
    virtual void write_name(char const * data, unsigned int size) = 0;

    /// A number that is a text already, by the grammar of JSON.
    virtual void write_number(char const * data, unsigned int size) = 0;
    virtual void write_string(char const * data, unsigned int size) = 0;
    virtual void write_bool(bool value) = 0;
    virtual void write_integer(long long value) = 0;
    virtual void write_unsigned(unsigned long long value) = 0;
    virtual void write_double(double value) = 0;
    virtual void write_null() = 0;

    virtual void begin_object() = 0;
    virtual void end_object() = 0;
    virtual void begin_array() = 0;
    virtual void end_array() = 0;

    /// A string in pieces, which may be cut anywhere. Only `write_string_data` may stand between.
    virtual void begin_string() = 0;
    virtual void write_string_data(char const * data, unsigned int size) = 0;
    virtual void end_string() = 0;

  protected:
    Writer() = default;
    Writer(Writer const &) = default;
    Writer & operator=(Writer const &) = default;
    ~Writer() = default;
};

} // namespace vxjson
