#pragma once

#include "vxattribute/attribute_name.h"
#include "vxattribute/attribute_value.h"

namespace vxattribute {

/// A name and a value: what maps hold and what a Query returns.
///
///     Attribute const port("port", 8080);
///     AttributeMap const map = make_map({port, {"host", "localhost"}});
///
/// Name and value are not changed separately: make a new attribute and assign it. To change one in
/// a map, use MutableAttributeMap.
///
/// Cost. Two pointers wide. A copy is one atomic count for the name and a copy of the value.
///
/// Order. By name, which is by address and good within one process only (see AttributeName), then
/// by value.
///
/// Threads. Separate objects may be used from separate threads even when they share content. One
/// object: many readers or one writer.
///
/// Errors. Copying raises what copying the value raises, such as std::bad_alloc.
class VXATTRIBUTE_API Attribute {
  public:
    /// The empty name and the null value.
    Attribute() noexcept = default;

    /// Takes both over. Pass rvalues to avoid copies: a text as name is interned here.
    Attribute(AttributeName name, AttributeValue value) noexcept
        : m_name(std::move(name)), m_value(std::move(value)) {}

    /// After a move the source has the empty name and the null value.
    Attribute(Attribute const &) = default;
    Attribute(Attribute &&) noexcept = default;

    /// Copies both, or neither when that raises. An rvalue is copied too, not moved from.
    Attribute & operator=(Attribute const & other) {
        Attribute(other).swap(*this);
        return *this;
    }

    ~Attribute() = default;

    /// The parts.
    ///
    /// @keeps  The references hold until the attribute is changed or destroyed.
    AttributeName const & name() const noexcept VXCORE_LIFETIMEBOUND { return m_name; }

    AttributeValue const & value() const noexcept VXCORE_LIFETIMEBOUND { return m_value; }

    /// Exchanges names and values. No allocation, no count touched.
    void swap(Attribute & other) noexcept {
        m_name.swap(other.m_name);
        m_value.swap(other.m_value);
    }

    /// Equal attributes have equal hashes, apart from values of +0.0 and -0.0. The hash of the name
    /// involves a secret of the process: do not store the result.
    ///
    /// @cost  Of the value's hash; that of the name is stored.
    unsigned int hash() const { return m_name.hash() ^ m_value.hash(); }

    /// Reads the name, then the value. A decoder reads the attribute's own name only, not the names
    /// inside the value.
    ///
    /// @raises What reader and decoder raise. When the value cannot be read, the attribute has the
    ///         new name and the old value; when the name cannot, it is as it was.
    void read(vxserialize::Reader & reader);
    void read(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);

    /// Writes what `read` reads: the name, then the value. An encoder writes the own name only, and
    /// names inside the value are written as they are.
    ///
    /// @raises What writer and encoder raise; part may have been written by then.
    void write(vxserialize::Writer & writer) const;
    void write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const;

    /// Both parts equal. A value with a NaN inside equals nothing, not even its copy.
    friend bool operator==(Attribute const & a, Attribute const & b) {
        return a.m_name == b.m_name && a.m_value == b.m_value;
    }

    /// By name, then by `compare` of the values: see docs/guide/comparison.md. One comparison of
    /// pointers when the names differ.
    friend bool operator<(Attribute const & a, Attribute const & b) { return a.compare(b) < 0; }

    friend bool operator<=(Attribute const & a, Attribute const & b) { return a.compare(b) <= 0; }

    friend bool operator>(Attribute const & a, Attribute const & b) { return a.compare(b) > 0; }

    friend bool operator>=(Attribute const & a, Attribute const & b) { return a.compare(b) >= 0; }

    /// `read` and `write` as operators.
    friend vxserialize::Reader & operator>>(vxserialize::Reader & reader, Attribute & attribute) {
        attribute.read(reader);
        return reader;
    }

    friend vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                            Attribute const & attribute) {
        attribute.write(writer);
        return writer;
    }

    /// Inserts the name in single quotes, " => " and the value as `defaultTraceFormatter` renders
    /// it.
    friend VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream,
                                                     Attribute const & attribute);

  private:
    /// Negative, 0 or positive.
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
