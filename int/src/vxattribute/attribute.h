#pragma once

#include "vxattribute/attribute_name.h"
#include "vxattribute/attribute_value.h"

namespace vxattribute {

/// A name and a value. Default: the empty name and null.
///
/// The order is by name (see there), then by value.
class VXATTRIBUTE_API Attribute {
  public:
    Attribute() noexcept = default;

    Attribute(AttributeName name, AttributeValue value) noexcept
        : m_name(std::move(name)), m_value(std::move(value)) {}

    Attribute(Attribute const &) = default;
    Attribute(Attribute &&) noexcept = default;

    /// Copies both, or neither when that raises. An rvalue is copied as well.
    Attribute & operator=(Attribute const & other) {
        Attribute(other).swap(*this);
        return *this;
    }

    ~Attribute() = default;

    AttributeName const & name() const noexcept VXCORE_LIFETIMEBOUND { return m_name; }

    AttributeValue const & value() const noexcept VXCORE_LIFETIMEBOUND { return m_value; }

    void swap(Attribute & other) noexcept {
        m_name.swap(other.m_name);
        m_value.swap(other.m_value);
    }

    unsigned int hash() const { return m_name.hash() ^ m_value.hash(); }

    /// Reads the name, then the value. When the value raises, the new name stays with the old
    /// value. A decoder serves the attribute's own name only, not names in the value.
    void read(vxserialize::Reader & reader);
    void read(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);

    void write(vxserialize::Writer & writer) const;
    void write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const;

    friend bool operator==(Attribute const & a, Attribute const & b) {
        return a.m_name == b.m_name && a.m_value == b.m_value;
    }

    friend bool operator<(Attribute const & a, Attribute const & b) { return a.compare(b) < 0; }

    friend bool operator<=(Attribute const & a, Attribute const & b) { return a.compare(b) <= 0; }

    friend bool operator>(Attribute const & a, Attribute const & b) { return a.compare(b) > 0; }

    friend bool operator>=(Attribute const & a, Attribute const & b) { return a.compare(b) >= 0; }

    friend vxserialize::Reader & operator>>(vxserialize::Reader & reader, Attribute & attribute) {
        attribute.read(reader);
        return reader;
    }

    friend vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                            Attribute const & attribute) {
        attribute.write(writer);
        return writer;
    }

    /// Writes 'name' => and the value as `defaultTraceFormatter` renders it.
    friend VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream,
                                                     Attribute const & attribute);

  private:
    int compare(Attribute const & other) const {
        if (m_name == other.m_name) {
            return m_value.compare(other.m_value);
        }
        return m_name < other.m_name ? -1 : 1;
    }

    AttributeName m_name;
    AttributeValue m_value;
};

} // namespace vxattribute
