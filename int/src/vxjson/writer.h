#pragma once

#include "vxjson/export.h"

namespace vxjson {

/// Receives a document as a sequence of calls. TextWriter turns them into text.
///
///     writer.begin_object();
///     writer.write_name("port", 4);       // then its value
///     writer.write_integer(8080);
///     writer.end_object();
///
/// All sizes are in bytes. Names and strings are passed as plain UTF-8; the writer escapes them.
/// `data` may be null when `size` is 0, and is not used after the call.
///
/// Errors. An implementation may raise from every call, also for calls in the wrong order.
///
/// The destructor is protected: never delete through this interface.
class VXJSON_API Writer {
  public:
    /// Writes the name of the value that follows; inside objects only.
    virtual void write_name(char const * data, unsigned int size) = 0;

    /// Writes a number that already is text in the grammar of JSON.
    virtual void write_number(char const * data, unsigned int size) = 0;

    /// Each of these writes one value. `write_double` decides what happens to NaN and infinity,
    /// which JSON cannot represent.
    virtual void write_string(char const * data, unsigned int size) = 0;
    virtual void write_bool(bool value) = 0;
    virtual void write_integer(long long value) = 0;
    virtual void write_unsigned(unsigned long long value) = 0;
    virtual void write_double(double value) = 0;
    virtual void write_null() = 0;

    /// Begin and end the containers. The values between the two calls are the members or elements.
    virtual void begin_object() = 0;
    virtual void end_object() = 0;
    virtual void begin_array() = 0;
    virtual void end_array() = 0;

    /// Write a string in pieces, which may be cut at any byte. Between `begin_string` and
    /// `end_string` only `write_string_data` is allowed.
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
