#pragma once

// Included by memory_writer.cpp and by the writer of values in vxattribute; not for direct use.

#include "vxserialize/binary_form_impl.h"
#include "vxserialize/memory_writer.h"

#include <bit>
#include <cstring>

namespace vxserialize::impl {

/// The writes of a MemoryWriter in line, for code that writes many elements.
///
/// A view has no state of its own: calls of a view and of its writer may be mixed. MemoryWriter
/// consists of these functions, so both act alike and raise the same errors. Each function does
/// what the one of the same name in Writer does.
///
///     MemoryWriterView view(writer);
///     view.begin_list(0);
///     view.end_list();
class MemoryWriterView {
  public:
    /// @param writer  Must outlive the view.
    explicit MemoryWriterView(MemoryWriter & writer) noexcept
        : m_writer(writer), m_containers(writer.m_containers) {}

    void write_null() { write_tag(binary::null_value); }

    void write_bool(bool value) { write_tag(value ? binary::true_value : binary::false_value); }

    void write_integer(long long value) {
        unsigned char * const out = m_writer.room(binary::number_room);
        if (value >= binary::integer_small_min && value <= binary::integer_small_max) {
            *out = static_cast<unsigned char>(static_cast<int>(binary::integer_small) +
                                              static_cast<int>(value) - binary::integer_small_min);
            m_writer.m_cursor = out + 1;
        } else {
            unsigned int const width = binary::signed_width_of(value);
            *out = static_cast<unsigned char>(binary::integer_wide + width - 1);
            binary::store(out + 1, static_cast<unsigned long long>(value));
            m_writer.m_cursor = out + 1 + width;
        }
        m_containers.mark_element();
    }

    void write_uint(unsigned int value) {
        put_number(value, binary::unsigned_tags);
        m_containers.mark_element();
    }

    void write_double(double value) {
        write_tag_and_bits(binary::double_value, std::bit_cast<unsigned long long>(value));
    }

    void write_absolute_time(vxcore::AbsoluteTime value) {
        write_tag_and_bits(binary::absolute_time, static_cast<unsigned long long>(value.ticks()));
    }

    void write_relative_time(vxcore::RelativeTime value) {
        write_tag_and_bits(binary::relative_time, static_cast<unsigned long long>(value.ticks()));
    }

    void write_string(char const * data, unsigned int size) {
        // The common case, a short string with room for it: one check and a copy without a call.
        if (size <= binary::string_tags.small_max &&
            static_cast<unsigned int>(m_writer.m_limit - m_writer.m_cursor) > size) [[likely]] {
            unsigned char * const out = m_writer.m_cursor;
            *out = static_cast<unsigned char>(binary::string_tags.small + size);
            copy_small(out + 1, data, size);
            m_writer.m_cursor = out + 1 + size;
        } else {
            m_writer.put_block(data, size, binary::string_tags);
        }
        m_containers.mark_element();
    }

    void write_string_key(vxcore::StringKey const & key) {
        std::string const & text = key.value();
        write_string(text.data(), static_cast<unsigned int>(text.size()));
    }

    void begin_list(unsigned int count) {
        m_writer.room(binary::number_room); // first, so that a failure leaves no list open
        m_containers.begin_list(count);
        put_number(count, binary::list_tags);
    }

    void next_list_item() {
        m_containers.next_list_item("vxserialize::MemoryWriter::next_list_item()");
    }

    void end_list() { m_containers.end_list("vxserialize::MemoryWriter::end_list()"); }

    // Parts of elements, for MemoryWriter. They make the room that they need.

    void put_tag(unsigned int tag) {
        *m_writer.room(1) = static_cast<unsigned char>(tag);
        ++m_writer.m_cursor;
    }

    void put_number(unsigned int value, binary::NumberTags const & tags) {
        unsigned char * const out = m_writer.room(binary::number_room);
        if (value <= tags.small_max) {
            *out = static_cast<unsigned char>(tags.small + value);
            m_writer.m_cursor = out + 1;
            return;
        }
        unsigned int const width = binary::width_of(value);
        *out = static_cast<unsigned char>(tags.wide + width - 1);
        binary::store(out + 1, value);
        m_writer.m_cursor = out + 1 + width;
    }

  private:
    void write_tag(unsigned int tag) {
        put_tag(tag);
        m_containers.mark_element();
    }

    void write_tag_and_bits(unsigned int tag, unsigned long long bits) {
        unsigned char * const out = m_writer.room(binary::number_room);
        *out = static_cast<unsigned char>(tag);
        binary::store(out + 1, bits);
        m_writer.m_cursor = out + binary::number_room;
        m_containers.mark_element();
    }

    /// Copies up to 63 bytes in a few moves that may overlap. A call of memcpy would cost more.
    static void copy_small(unsigned char * out, char const * in, unsigned int size) noexcept {
        if (size >= 16) {
            std::memcpy(out, in, 16);
            if (size > 32) {
                std::memcpy(out + 16, in + 16, 16);
                if (size > 48) {
                    std::memcpy(out + 32, in + 32, 16);
                }
            }
            std::memcpy(out + size - 16, in + size - 16, 16);
        } else if (size >= 8) {
            std::memcpy(out, in, 8);
            std::memcpy(out + size - 8, in + size - 8, 8);
        } else if (size >= 4) {
            std::memcpy(out, in, 4);
            std::memcpy(out + size - 4, in + size - 4, 4);
        } else if (size != 0) {
            out[0] = static_cast<unsigned char>(in[0]);
            out[size / 2] = static_cast<unsigned char>(in[size / 2]);
            out[size - 1] = static_cast<unsigned char>(in[size - 1]);
        }
    }

    MemoryWriter & m_writer;
    WriteContainers & m_containers;
};

} // namespace vxserialize::impl
