#include "vxattribute/attribute_value_impl.h"

#include <ostream>

namespace vxattribute::impl {

using Null = TypedValue<NullValueType>;

// All null values share one static object: nothing is counted, copied or destroyed.
void Null::release() const noexcept {}

ValueBase * Null::clone() const {
    return instance();
}

void Null::prepare_write(ValueHolder &) {}

void Null::promote_to_multivalue(ValueHolder &) {}

ValueBase * Null::subrange(unsigned int pos) const {
    return subrange(pos, 0);
}

ValueBase * Null::subrange(unsigned int pos, unsigned int count) const {
    if (pos != 0 || count != 0) {
        throw_subrange_range_error();
    }
    return instance();
}

void Null::clear(ValueHolder &) {}

bool Null::equal(ValueBase const & other) const {
    return type() == other.type();
}

int Null::compare(ValueBase const & other) const {
    return type().compare(other.type());
}

bool Null::empty() const noexcept {
    return true;
}

unsigned int Null::size() const noexcept {
    return 0;
}

unsigned int Null::hash() const {
    return 0;
}

void Null::write_trace(std::ostream & stream, TraceFormatter const &, unsigned int) const {
    stream.write("[Null]", 6);
}

} // namespace vxattribute::impl
