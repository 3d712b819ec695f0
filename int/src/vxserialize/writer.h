#pragma once

#include "vxcore/absolute_time.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/relative_time.h"
#include "vxcore/string_key.h"
#include "vxcore/text_size.h"
#include "vxcore/uuid.h"
#include "vxserialize/export.h"
#include "vxserialize/fwd.h"

#include <concepts>
#include <cstddef>
#include <string_view>

namespace vxserialize {

/// Takes a sequence of elements and puts it into some form that a Reader gives back in the same
/// order.
///
/// Elements stand one behind the other, or inside lists and records:
///
///     writer.begin_list(2);              // exactly two elements follow
///     writer << "port" << 8080;          // one element of the list may be several primitives
///     writer.next_list_item();           // between two elements only
///     writer << "host" << "x";
///     writer.end_list();
///
/// The functions below are what a form implements; callers mostly use `<<`. Byte counts are 32 bits
/// wide.
///
/// Threads. One writer belongs to one thread at a time.
///
/// Errors. The forms of this library raise `error.vxserialize.usage` for calls that make no stream
/// (a list closed with another count than announced, a record closed as a list, an element after
/// the end) and `error.vxserialize.depth` beyond `max_open_containers`. The writer is as before the
/// call then.
class VXSERIALIZE_API Writer {
  public:
    virtual ~Writer();

    virtual void write_null() = 0;
    virtual void write_bool(bool value) = 0;
    virtual void write_integer(long long value) = 0;

    /// Another kind of element than `write_integer`: a type tag or token.
    virtual void write_uint(unsigned int value) = 0;

    /// Every bit pattern survives, -0.0 and the payload of a NaN included.
    virtual void write_double(double value) = 0;

    /// Any bytes; they are not checked.
    virtual void write_string(char const * data, unsigned int size) = 0;

    /// A name: the same kind of element as a string, read back by `read_string_key`.
    virtual void write_string_key(vxcore::StringKey const & key) = 0;

    virtual void write_absolute_time(vxcore::AbsoluteTime value) = 0;
    virtual void write_relative_time(vxcore::RelativeTime value) = 0;
    virtual void write_uuid(vxcore::Uuid const & value) = 0;

    /// One block of bytes. `data` may be null when `size` is 0.
    virtual void write_binary(void const * data, unsigned int size) = 0;

    /// The bytes of a list as one block, as `write_binary` of them in one piece. This version does
    /// just that; the forms of this library go segment by segment.
    virtual void write_memory_list(MemoryListBase const & list);

    /// Opens a list of exactly `count` elements.
    virtual void begin_list(unsigned int count) = 0;

    /// Stands between two elements of the open list: not before the first, not behind the last.
    virtual void next_list_item() = 0;

    virtual void end_list() = 0;

    /// Opens a record: a fixed sequence of elements that counts as one.
    virtual void begin_record() = 0;
    virtual void end_record() = 0;

  protected:
    Writer() = default;
    Writer(Writer const &) = default;
    Writer & operator=(Writer const &) = default;
};

/// Signed integers up to 64 bits. Nothing is converted on the way to `<<`: a pointer must not
/// become a boolean, nor a character a number.
template <typename T>
concept WritableInteger =
    std::same_as<T, int> || std::same_as<T, long> || std::same_as<T, long long>;

template <std::same_as<bool> T>
Writer & operator<<(Writer & writer, T value) {
    writer.write_bool(value);
    return writer;
}

template <WritableInteger T>
Writer & operator<<(Writer & writer, T value) {
    writer.write_integer(value);
    return writer;
}

/// As `write_uint`.
template <std::same_as<unsigned int> T>
Writer & operator<<(Writer & writer, T value) {
    writer.write_uint(value);
    return writer;
}

template <std::same_as<double> T>
Writer & operator<<(Writer & writer, T value) {
    writer.write_double(value);
    return writer;
}

/// Strings of every sort: `std::string`, views, terminated text.
///
/// @raises std::length_error: more than 2^32 - 1 bytes.
inline Writer & operator<<(Writer & writer, std::string_view value) {
    writer.write_string(value.data(), vxcore::text_size(value.size()));
    return writer;
}

Writer & operator<<(Writer & writer, std::nullptr_t) = delete;

inline Writer & operator<<(Writer & writer, vxcore::Uuid const & value) {
    writer.write_uuid(value);
    return writer;
}

inline Writer & operator<<(Writer & writer, vxcore::AbsoluteTime value) {
    writer.write_absolute_time(value);
    return writer;
}

inline Writer & operator<<(Writer & writer, vxcore::RelativeTime value) {
    writer.write_relative_time(value);
    return writer;
}

/// Writes the bytes of `list` as one binary block; a null list gives an empty block.
VXSERIALIZE_API void
write_memory_list_as_binary(Writer & writer, vxcore::RefCountPtr<MemoryList const> const & list);

} // namespace vxserialize
