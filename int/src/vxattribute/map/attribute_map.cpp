#include "vxattribute/attribute_map.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/hash.h"
#include "vxcore/text_conversion.h"

#include <algorithm>

namespace vxattribute {

// Load-time code of other libraries may come here before statics.cpp has made the shared empty map.
// Such a map gets a holder of its own.
AttributeMapBase::AttributeMapBase()
    : m_pImpl(sm_pEmptyImpl ? sm_pEmptyImpl : vxcore::make_ref_counted<MapHolder>()) {}

AttributeMapBase::~AttributeMapBase() = default;

AttributeMapBase::const_iterator AttributeMapBase::begin() const noexcept {
    return m_pImpl->m_map.begin();
}

AttributeMapBase::const_iterator AttributeMapBase::end() const noexcept {
    return m_pImpl->m_map.end();
}

bool AttributeMapBase::empty() const noexcept {
    return m_pImpl->m_map.empty();
}

unsigned int AttributeMapBase::size() const noexcept {
    return static_cast<unsigned int>(m_pImpl->m_map.size());
}

bool AttributeMapBase::exists(AttributeName const & name) const noexcept {
    return query_ptr(name) != nullptr;
}

unsigned int AttributeMapBase::count(AttributeName const & name) const noexcept {
    return exists(name) ? 1 : 0;
}

AttributeMapBase::const_iterator AttributeMapBase::find(AttributeName const & name) const noexcept {
    return m_pImpl->m_map.find(name);
}

AttributeMapBase::const_iterator
AttributeMapBase::lower_bound(AttributeName const & name) const noexcept {
    return m_pImpl->m_map.lower_bound(name);
}

AttributeMapBase::const_iterator
AttributeMapBase::upper_bound(AttributeName const & name) const noexcept {
    return m_pImpl->m_map.upper_bound(name);
}

AttributeValue const & AttributeMapBase::query(AttributeName const & name) const noexcept {
    AttributeValue const * const value = query_ptr(name);
    return value != nullptr ? *value : AttributeValue::null;
}

AttributeValue const * AttributeMapBase::query_ptr(AttributeName const & name) const noexcept {
    const_iterator const found = find(name);
    return found != end() ? &found->second : nullptr;
}

AttributeMap AttributeMapBase::merged_with(AttributeMapBase const & other) const {
    if (empty()) {
        return other;
    }
    if (other.empty()) {
        return *this;
    }
    HolderPtr merged = merged_aux(m_pImpl->m_map, other.m_pImpl->m_map);
    return AttributeMap(merged);
}

// Both maps have the same order, so each element goes to the end of the new map. Of equal names the
// element of `first` is used.
AttributeMapBase::HolderPtr AttributeMapBase::merged_aux(Map const & first, Map const & second) {
    // The least that the result can have.
    HolderPtr merged = MapHolder::make(std::max(first.size(), second.size()));
    Map & map = merged->m_map;
    auto a = first.begin();
    auto b = second.begin();
    while (a != first.end() && b != second.end()) {
        if (b->first < a->first) {
            map.append(*b++);
            continue;
        }
        if (a->first == b->first) {
            ++b;
        }
        map.append(*a++);
    }
    for (; a != first.end(); ++a) {
        map.append(*a);
    }
    for (; b != second.end(); ++b) {
        map.append(*b);
    }
    return merged;
}

bool operator==(AttributeMapBase const & a, AttributeMapBase const & b) {
    // True even if the holder contains a NaN, which does not equal itself.
    if (a.m_pImpl == b.m_pImpl) {
        return true;
    }
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](auto const & x, auto const & y) {
               return x.first == y.first && x.second == y.second;
           });
}

int AttributeMapBase::compare(AttributeMapBase const & other) const {
    const_iterator a = begin();
    const_iterator b = other.begin();
    for (; a != end() && b != other.end(); ++a, ++b) {
        if (!(a->first == b->first)) {
            return a->first < b->first ? -1 : 1;
        }
        if (int const order = a->second.compare(b->second); order != 0) {
            return order < 0 ? -1 : 1;
        }
    }
    return int{a != end()} - int{b != other.end()};
}

unsigned int AttributeMapBase::hash() const {
    // Equal maps list their elements in the same order, so the hash may depend on the order.
    unsigned int seed = 0;
    for (auto const & [name, value] : m_pImpl->m_map) {
        seed = vxcore::hash_mix(seed, name.hash());
        seed = vxcore::hash_mix(seed, value.hash());
    }
    return seed;
}

// Checks for typed accessors

namespace {

[[noreturn]] void throw_type_mismatch(char const * message, AttributeName const & name,
                                      AttributeValue const & value, ValueTypeId const & expected,
                                      vxcore::SourceLocation location) {
    vxcore::ErrorComposer(message)
        .param("name", name.value())
        .param("expectedType", expected.name())
        .param("actualType", value.type().name())
        .throw_error(error::vxattribute_value_type_mismatch, std::move(location));
}

} // namespace

void AttributeMapBase::check_attribute_of_type(AttributeName const & name,
                                               AttributeValue const & value,
                                               ValueTypeId const & expected) {
    if (!(value.type() == expected)) {
        throw_type_mismatch(
            "Attribute '{@name}': Expecting value of type '{@expectedType}'; actual type "
            "'{@actualType}'",
            name, value, expected,
            VXCORE_LOCATION("vxattribute::AttributeMapBase::check_attribute_of_type()"));
    }
}

void AttributeMapBase::check_default_of_type(AttributeName const & name,
                                             AttributeValue const & value,
                                             ValueTypeId const & expected) {
    if (!(value.type() == expected)) {
        throw_type_mismatch(
            "Expecting default value of type '{@expectedType}' for attribute '{@name}'; actual "
            "default value type: '{@actualType}'",
            name, value, expected,
            VXCORE_LOCATION("vxattribute::AttributeMapBase::check_default_of_type()"));
    }
}

void AttributeMapBase::check_scalar_of_type(AttributeName const & name,
                                            AttributeValue const & value,
                                            ValueTypeId const & expected) {
    check_attribute_of_type(name, value, expected);
    if (value.size() != 1) {
        vxcore::ErrorComposer("Attribute '{@name}': Expecting scalar, found value with cardinality "
                              "{@cardinality}")
            .param("name", name.value())
            .param("cardinality", vxcore::to_string(value.size()))
            .throw_error(error::vxattribute_value_cardinality_expectSingle,
                         VXCORE_LOCATION("vxattribute::AttributeMapBase::check_scalar_of_type()"));
    }
}

void AttributeMapBase::throw_attribute_not_found(AttributeName const & name) {
    vxcore::ErrorComposer("Attribute '{@name}' not found in map")
        .param("name", name.value())
        .throw_error(error::vxattribute_map_attributeNotFound,
                     VXCORE_LOCATION("vxattribute::AttributeMapBase::throw_attribute_not_found()"));
}

} // namespace vxattribute
