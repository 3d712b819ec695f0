#pragma once

#include "vxcore/absolute_time.h"
#include "vxcore/read_stream.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/relative_time.h"
#include "vxcore/string_key.h"
#include "vxcore/uuid.h"
#include "vxserialize/element_kind.h"
#include "vxserialize/export.h"
#include "vxserialize/fwd.h"

#include <concepts>
#include <string>

namespace vxserialize {

/// A stream over one binary block, together with the object that owns the stream.
using ReadStreamPtr =
    vxcore::InterfacePtr<vxcore::IReadStream,
                         vxcore::RefCountPtr<vxcore::RefCounted<vxcore::AtomicRefCount>>>;

/// Reads elements from some form, in the order in which a Writer of the same form wrote them.
///
/// `has_next()` drives the reading of a list, and also closes it:
///
///     reader.begin_list();
///     while (reader.has_next()) {
///         names.push_back(reader.read_string_key());
///     }
///
/// A form overrides the functions below; callers use them or `>>`. The results are independent of
/// the reader and may outlive it.
///
/// Cost. One virtual call per element. Strings, names and blocks may allocate.
///
/// Threads. One reader belongs to one thread at a time.
///
/// Errors. A read that does not find its element raises `error.vxserialize.data` or a code below
/// it, with the byte offset in the message: `.type` for another kind of element, `.truncated` at
/// the end of the data, `.count` for a list with the wrong number of elements. Lists and records
/// beyond `max_open_containers` raise `error.vxserialize.depth`. The position of the reader is
/// unspecified then, and so is a string that was being read; anything else is as it was. Calls in
/// an order that does not fit the open containers raise `error.vxserialize.usage`.
class VXSERIALIZE_API Reader {
  public:
    /// Elements that were not read are not checked.
    virtual ~Reader();

    /// Returns the kind of the next element without consuming it. Does not raise on bad data, for
    /// which it returns `eElement_None`.
    virtual EElementKind next_type() = 0;

    /// Consumes a null element.
    virtual void read_null() = 0;

    /// Consumes the next element if it is null. Returns whether it did. Like `next_type()`, it does
    /// not raise on another element or at the end.
    virtual bool read_if_null() = 0;

    /// Read what `write_bool` and `write_integer` wrote. An unsigned integer is another kind of
    /// element than an integer.
    virtual bool read_bool() = 0;
    virtual long long read_integer() = 0;

    /// Reads what `write_uint` wrote. An integer is another kind of element.
    virtual unsigned int read_uint() = 0;

    /// Reads all bit patterns unchanged, those of NaNs too.
    virtual double read_double() = 0;

    /// Reads a string, which may hold any bytes, over the content of `value`. Reading many into one
    /// object reuses its memory.
    virtual void read_string(std::string & value) = 0;

    /// Reads a string as a name, which is interned. A name takes memory only while a key of it, or
    /// a reader that remembers it, lives.
    virtual vxcore::StringKey read_string_key() = 0;

    /// Read what the writes of the same types wrote.
    virtual vxcore::AbsoluteTime read_absolute_time() = 0;
    virtual vxcore::RelativeTime read_relative_time() = 0;
    virtual vxcore::Uuid read_uuid() = 0;

    /// Consumes one binary block and returns a stream of known size over it. The stream may be
    /// dropped half read and may outlive the reader.
    virtual ReadStreamPtr read_binary() = 0;

    /// Reads one binary block as a list, never null. A form may share its memory with the list;
    /// this implementation copies from `read_binary()`.
    virtual vxcore::RefCountPtr<MemoryList> read_binary_as_memory_list();

    /// Enters a list and returns its count, or 0 if it is not known. The count is a hint: read with
    /// `has_next()`, and reserve only a modest amount.
    ///
    /// The forms of this library return 0 for counts below 2, so that callers leave all lists the
    /// same way.
    ///
    /// @raises error.vxserialize.depth: `max_open_containers` lists and records are open.
    virtual unsigned int begin_list() = 0;

    /// True while another element of the open list follows. Calls before any of that element is
    /// read return the same. False leaves the list, so it is called once more than there are
    /// elements.
    ///
    /// @raises error.vxserialize.usage: the innermost container is no list.
    virtual bool has_next() = 0;

    /// Enters a record, whose elements are then read one after the other without `has_next()`.
    ///
    /// @raises error.vxserialize.depth: as `begin_list`.
    virtual void begin_record() = 0;

    /// Leaves the open record, whose contents must have been read completely.
    ///
    /// @raises error.vxserialize.data: elements are left. error.vxserialize.usage: the innermost
    ///         container is no record.
    virtual void end_record() = 0;

  protected:
    Reader() = default;
    Reader(Reader const &) = default;
    Reader & operator=(Reader const &) = default;
};

// The operators return the reader, so that calls can be chained. Each raises what its function
// raises; `value` is then as it was, except that a string is unspecified.

/// As `read_bool`.
template <std::same_as<bool> T>
Reader & operator>>(Reader & reader, T & value) {
    value = reader.read_bool();
    return reader;
}

/// As `read_integer`, for 64-bit integers of either name.
template <typename T>

requires((std::same_as<T, long> || std::same_as<T, long long>)&&sizeof(T) == 8) Reader &
operator>>(Reader & reader, T & value) {
    value = reader.read_integer();
    return reader;
}

/// As `read_uint`.
inline Reader & operator>>(Reader & reader, unsigned int & value) {
    value = reader.read_uint();
    return reader;
}

/// The others, each as the read of the type.
inline Reader & operator>>(Reader & reader, double & value) {
    value = reader.read_double();
    return reader;
}

inline Reader & operator>>(Reader & reader, std::string & value) {
    reader.read_string(value);
    return reader;
}

inline Reader & operator>>(Reader & reader, vxcore::Uuid & value) {
    // A temporary first: g++ 12 assumes that the result is stored even if the call raises, and
    // drops what the caller's local variable held before.
    vxcore::Uuid const result = reader.read_uuid();
    value = result;
    return reader;
}

inline Reader & operator>>(Reader & reader, vxcore::AbsoluteTime & value) {
    // A temporary first, as for Uuid.
    vxcore::AbsoluteTime const result = reader.read_absolute_time();
    value = result;
    return reader;
}

inline Reader & operator>>(Reader & reader, vxcore::RelativeTime & value) {
    // A temporary first, as for Uuid.
    vxcore::RelativeTime const result = reader.read_relative_time();
    value = result;
    return reader;
}

/// Reads one binary block as a list, never null: an empty block becomes an empty list.
VXSERIALIZE_API vxcore::RefCountPtr<MemoryList> read_memory_list_as_binary(Reader & reader);

} // namespace vxserialize
