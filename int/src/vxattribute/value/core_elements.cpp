#include "vxattribute/core_elements.h"

#include "vxattribute/value/typed_value_internal.h"

namespace vxattribute::impl {

unsigned int ValueTypeTraits<vxcore::Uuid>::hash(vxcore::Uuid const & a) noexcept {
    return a.hash();
}

unsigned int ValueTypeTraits<vxcore::AbsoluteTime>::hash(vxcore::AbsoluteTime const & a) noexcept {
    return a.hash();
}

unsigned int ValueTypeTraits<vxcore::RelativeTime>::hash(vxcore::RelativeTime const & a) noexcept {
    return a.hash();
}

unsigned int
ValueTypeTraits<vxcore::SimpleDateTime>::hash(vxcore::SimpleDateTime const & a) noexcept {
    return a.hash();
}

int ValueTypeTraits<vxuri::UriReference>::compare(vxuri::UriReference const & a,
                                                  vxuri::UriReference const & b) noexcept {
    int const order = a.compare(b);
    return int{order > 0} - int{order < 0};
}

bool ValueTypeTraits<vxuri::UriReference>::equal(vxuri::UriReference const & a,
                                                 vxuri::UriReference const & b) noexcept {
    return a.equal(b);
}

unsigned int ValueTypeTraits<vxuri::UriReference>::hash(vxuri::UriReference const & a) noexcept {
    return a.hash();
}

int ValueTypeTraits<ErrorInfoPtr>::compare(ErrorInfoPtr const & a,
                                           ErrorInfoPtr const & b) noexcept {
    if (!a || !b) {
        return int{bool(a)} - int{bool(b)};
    }
    return a->compare(*b);
}

bool ValueTypeTraits<ErrorInfoPtr>::equal(ErrorInfoPtr const & a, ErrorInfoPtr const & b) noexcept {
    return !a || !b ? a == b : *a == *b;
}

unsigned int ValueTypeTraits<ErrorInfoPtr>::hash(ErrorInfoPtr const & a) noexcept {
    return a ? a->hash() : 0;
}

} // namespace vxattribute::impl

VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(vxcore::Uuid);
VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(vxuri::UriReference);
VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(vxcore::AbsoluteTime);
VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(vxcore::RelativeTime);
VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(vxcore::SimpleDateTime);
VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(vxattribute::impl::ErrorInfoPtr);
