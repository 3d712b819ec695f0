#pragma once

#include "vxattribute/json/name_sequence_internal.h"
#include "vxattribute/map/map_builder_internal.h"
#include "vxjson/fwd.h"
#include "vxjson/text_cursor_impl.h"

#include <cstddef>
#include <memory_resource>
#include <vector>

namespace vxattribute::impl {

/// Reads one value through the values of the reader only, as `read_attribute_value` does where
/// there is no text to read from directly, or it is not plain.
AttributeValue read_through_values(vxjson::Reader & reader);

/// Reads one object or array of plain JSON from its text, in one pass and without objects for what
/// it passes. Its values are those of JsonValueReader.
///
/// It reads a container completely or returns false: the text is wrong, or has something that only
/// the reader of JSON handles, such as a missing comma, or is the rare case of a list where -0
/// comes before a fraction. JsonValueReader then reads it from the start, so that each error and
/// each tolerance is in one place. Open containers are in a list and not on the stack.
///
///     DirectReader reader(text);
///     if (reader.read(value)) { use(value, reader.closing()); }
///
/// Cost. A wrong text is read twice, up to its fault.
class DirectReader {
  public:
    /// @param text  Its bytes must outlive the reader.
    explicit DirectReader(vxjson::impl::PlainText const & text)
        : m_cursor(text), m_maxDepth(text.maxDepth),
          m_allowsReservedNames(text.allowsReservedNames) {}

    /// Reads the container at the start of the text. `value` is unchanged if this
    /// returns false or raises.
    ///
    /// @raises std::bad_alloc.
    bool read(AttributeValue & value);

    /// Reads the rest of a container whose opening bracket, given here, comes before the text.
    bool read_rest(char bracket, AttributeValue & value);

    /// The closing bracket of the container that was read.
    char const * closing() const noexcept { return m_cursor.at() - 1; }

  private:
    /// What comes next in the text.
    enum class EStep {
        eObject,      // an object, after its opening bracket
        eArray,       // an array, after its opening bracket
        eMembers,     // a name in the innermost container, which is an object
        eAfterMember, // the end of a member, whose value is m_value
        eAfterMap,    // the end of a map in the innermost container, an array of maps
        eDone,        // the end of the container that is read; its value is m_value
        eRefused,
    };

    /// An object, or an array of objects.
    struct Open {
        bool isArray;
        std::size_t start; // of its members in m_elements, or of its maps in m_maps
    };

    struct Number {
        bool isInteger; // whole, however it was written
        bool isNegative;
        long long integer; // if it is one
        double value;      // with the sign of -0
    };

    // Containers (direct_reader.cpp).
    EStep take(EStep step);
    EStep open_container(char bracket);
    EStep open_object();
    EStep open_array();
    EStep read_members();
    EStep after_member();
    EStep after_map();
    EStep close_object();

    /// The step after a container whose value is in m_value.
    EStep after_container() const noexcept {
        return m_open.empty() ? EStep::eDone : EStep::eAfterMember;
    }

    bool take_name();
    bool is_serialized() const;

    // Scalars, and arrays of them (direct_scalars.cpp).
    bool take_scalar(AttributeValue & value);
    bool take_number(Number & number);
    EStep take_serialized();
    bool take_scalars();
    bool take_strings();
    bool take_numbers();
    bool take_booleans();

    vxjson::impl::TextCursor m_cursor;
    std::size_t const m_maxDepth;
    bool const m_allowsReservedNames;
    // What small documents need besides their values is on the stack.
    alignas(std::max_align_t) std::byte m_room[512];
    std::pmr::monotonic_buffer_resource m_memory{m_room, sizeof(m_room)};
    std::pmr::vector<Open> m_open{&m_memory};
    MapBuilder m_elements;
    std::vector<AttributeMap> m_maps; // of all open arrays, those of the innermost last
    AttributeValue m_value;           // of the container that was closed last
    NameSequence m_names{m_memory};

    // Elements of the array that is read; kept for their memory.
    std::vector<std::string> m_strings;
    std::vector<long long> m_integers;
    std::vector<double> m_doubles;
};

} // namespace vxattribute::impl
