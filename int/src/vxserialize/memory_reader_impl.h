#pragma once

// Included by memory_reader.cpp and by the reader of values in vxattribute; not for direct use.

#include "vxserialize/binary_form_impl.h"
#include "vxserialize/memory_reader.h"

#include <bit>
#include <string>
#include <string_view>

namespace vxserialize::impl {

static_assert(binary::string_tags.small == 0, "the tag of a short string is its size");

/// The reads of a MemoryReader in line, for code that reads many elements.
///
/// A view has no state of its own: calls of a view and of its reader may be mixed. MemoryReader
/// consists of these functions, so both act alike and raise the same errors. Each function does
/// what the one of the same name in Reader does.
///
///     MemoryReaderView view(reader);
///     if (view.next_type() == eElement_Integer) {
///         sum += view.read_integer();
///     }
class MemoryReaderView {
  public:
    /// @param reader  Must outlive the view.
    explicit MemoryReaderView(MemoryReader & reader) noexcept
        : m_reader(reader), m_at(reader.m_at), m_containers(reader.m_containers) {}

    EElementKind next_type() {
        // Ends of lists are not in the bytes: what follows an empty list is an element outside of
        // it.
        if (m_containers.in_empty_list()) {
            return eElement_None;
        }
        if (m_at.m_data == m_at.m_end && !m_at.enter_next_segment()) {
            return eElement_None;
        }
        return static_cast<EElementKind>(binary::kinds[*m_at.m_data]);
    }

    void read_null() {
        take_tag(binary::null_value, eElement_Null);
        m_containers.element();
    }

    bool read_bool() {
        unsigned int const tag = peek_tag();
        if (tag != binary::true_value && tag != binary::false_value) [[unlikely]] {
            m_reader.fail_type(eElement_Boolean);
        }
        ++m_at.m_data;
        m_containers.element();
        return tag == binary::true_value;
    }

    long long read_integer() {
        unsigned int const tag = peek_tag();
        if (tag - binary::integer_small < binary::integer_small_count) {
            ++m_at.m_data;
            m_containers.element();
            return static_cast<int>(tag - binary::integer_small) + binary::integer_small_min;
        }
        if (tag - binary::integer_wide >= 8) [[unlikely]] {
            m_reader.fail_type(eElement_Integer);
        }
        unsigned int const width = tag - binary::integer_wide + 1;
        ++m_at.m_data;
        m_containers.element();
        // The shifts copy the sign from the top bit of the width to all bits above.
        unsigned int const shift = 64 - 8 * width;
        return static_cast<long long>(take_bits(width) << shift) >> shift;
    }

    unsigned int read_uint() {
        unsigned int const value = take_number(binary::unsigned_tags);
        m_containers.element();
        return value;
    }

    double read_double() {
        take_tag(binary::double_value, eElement_Double);
        m_containers.element();
        return std::bit_cast<double>(take_bits(8));
    }

    vxcore::AbsoluteTime read_absolute_time() {
        take_tag(binary::absolute_time, eElement_AbsoluteTime);
        m_containers.element();
        return vxcore::AbsoluteTime(static_cast<long long>(take_bits(8)));
    }

    vxcore::RelativeTime read_relative_time() {
        take_tag(binary::relative_time, eElement_RelativeTime);
        m_containers.element();
        return vxcore::RelativeTime(static_cast<long long>(take_bits(8)));
    }

    /// Reads a string where it lies. Joins one that is in several segments in `joined`.
    ///
    /// @keeps  The text holds until `joined` changes, and as long as the list of the reader.
    std::string_view read_text(std::string & joined) {
        // The common case, a short string in this segment: the tag is its size.
        if (m_at.m_data != m_at.m_end && *m_at.m_data <= binary::string_tags.small_max &&
            *m_at.m_data < m_at.m_end - m_at.m_data) [[likely]] {
            unsigned int const size = *m_at.m_data;
            ++m_at.m_data;
            m_containers.element();
            return take_text(size);
        }
        unsigned int const size = take_size(binary::string_tags);
        m_containers.element();
        if (size <= static_cast<unsigned int>(m_at.m_end - m_at.m_data)) {
            return take_text(size);
        }
        joined.resize(size); // bounded by the bytes that are left
        m_reader.take_bytes(joined.data(), size);
        return joined;
    }

    /// @param joined  As in `read_text`.
    vxcore::StringKey read_string_key(std::string & joined) {
        return m_reader.m_names.find(read_text(joined));
    }

    /// Reads a block where it lies, if it is in one segment and has at most `limit` bytes.
    /// Otherwise returns false and consumes nothing.
    ///
    /// @keeps  As `read_text`.
    bool read_block_in_place(unsigned int limit, std::string_view & block) {
        MemoryListCursor const start = m_at;
        unsigned int const size = take_size(binary::block_tags);
        if (size > limit || size > static_cast<unsigned int>(m_at.m_end - m_at.m_data)) {
            m_at = start;
            return false;
        }
        m_containers.element();
        block = take_text(size);
        return true;
    }

    unsigned int begin_list() {
        unsigned int const count = take_number(binary::list_tags);
        m_containers.element();
        // Each announced element needs a byte, and so does each that the enclosing containers still
        // expect. So a false count is refused before a caller reserves memory for it.
        if (count + m_containers.pending() > m_at.bytes_left()) [[unlikely]] {
            m_reader.fail_count();
        }
        m_containers.begin_list(count, true);
        // Below 2 the count is not reported, see docs/decisions/0004.
        return count < 2 ? 0 : count;
    }

    bool has_next() {
        return m_containers.has_next_counted("vxserialize::MemoryReader::has_next()");
    }

    // Parts of elements, for MemoryReader. All raise at the end of the data.

    /// The tag of the next element, without moving the cursor.
    unsigned int peek_tag() {
        if (m_at.m_data == m_at.m_end) [[unlikely]] {
            if (!m_at.enter_next_segment()) {
                m_reader.fail_truncated();
            }
        }
        return *m_at.m_data;
    }

    void take_tag(unsigned int tag, EElementKind kind) {
        if (peek_tag() != tag) [[unlikely]] {
            m_reader.fail_type(kind);
        }
        ++m_at.m_data;
    }

    /// The size of a string or block. Raises unless all its bytes are there, so callers may
    /// allocate as much.
    unsigned int take_size(binary::NumberTags const & tags) {
        unsigned int const size = take_number(tags);
        if (size > m_at.bytes_left()) [[unlikely]] {
            m_reader.fail_truncated();
        }
        return size;
    }

  private:
    /// The next bytes, which are in this segment.
    std::string_view take_text(unsigned int size) noexcept {
        std::string_view const text(reinterpret_cast<char const *>(m_at.m_data), size);
        m_at.m_data += size;
        return text;
    }

    /// A size, count or value that is part of the tag or follows it in 1 to 4 bytes.
    unsigned int take_number(binary::NumberTags const & tags) {
        unsigned int const tag = peek_tag();
        // Differences are unsigned, so one comparison checks both ends of a range of tags: below
        // the first tag, the difference wraps to a large number.
        if (tag - tags.small <= tags.small_max) {
            ++m_at.m_data;
            return tag - tags.small;
        }
        if (tag - tags.wide >= 4) [[unlikely]] {
            m_reader.fail_type(tags.kind);
        }
        ++m_at.m_data;
        return static_cast<unsigned int>(take_bits(tag - tags.wide + 1));
    }

    /// A little-endian number of `width` bytes, 1 to 8. Loads 8 bytes where the segment has them,
    /// and masks out those after the number.
    unsigned long long take_bits(unsigned int width) {
        if (m_at.m_end - m_at.m_data < 8) [[unlikely]] {
            return m_reader.take_bits_slowly(width);
        }
        unsigned long long const bits = binary::load(m_at.m_data) & (~0ull >> (64 - 8 * width));
        m_at.m_data += width;
        return bits;
    }

    MemoryReader & m_reader;
    MemoryListCursor & m_at;
    ReadContainers & m_containers;
};

} // namespace vxserialize::impl
