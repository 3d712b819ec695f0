#include "vxattribute/attribute_map.h"

namespace vxattribute {

// Makes the holder unshared and returns the one that it replaced, or null. Callers keep the result
// until they return: their arguments may lie in the old holder, and the other maps that share it
// may be destroyed in the meantime.
AttributeMapBase::HolderPtr MutableAttributeMap::prepare_modify() {
    HolderPtr shared;
    if (!m_pImpl->has_unique_ref()) {
        shared = m_pImpl->clone();
        shared.swap(m_pImpl);
    }
    return shared;
}

/// For operations whose arguments cannot be in the holder that is replaced.
AttributeMapBase::Map & MutableAttributeMap::modifiable() {
    prepare_modify();
    return m_pImpl->m_map;
}

MutableAttributeMap & MutableAttributeMap::add(AttributeName const & name,
                                               AttributeValue const & value) {
    return add(name, AttributeValue(value));
}

MutableAttributeMap & MutableAttributeMap::add(AttributeName const & name,
                                               AttributeValue && value) {
    HolderPtr const kept = prepare_modify();
    auto const [place, isNew] = m_pImpl->m_map.try_emplace(name, std::move(value));
    if (!isNew) {
        place->second = std::move(value);
    }
    return *this;
}

MutableAttributeMap & MutableAttributeMap::add(Attribute const & attribute) {
    return add(attribute.name(), attribute.value());
}

MutableAttributeMap & MutableAttributeMap::add(AttributeMapBase const & other) {
    if (other.empty() || m_pImpl == other.m_pImpl) {
        return *this;
    }
    if (empty()) {
        AttributeMapBase::operator=(other);
        return *this;
    }
    Map const & source = other.m_pImpl->m_map;
    if (!m_pImpl->has_unique_ref()) {
        HolderPtr merged = merged_aux(source, m_pImpl->m_map);
        m_pImpl.swap(merged);
        return *this;
    }
    Map::Additions additions(m_pImpl->m_map);
    for (value_type const & element : source) {
        additions.add(element);
    }
    additions.commit(true);
    return *this;
}

AttributeValue & MutableAttributeMap::operator[](AttributeName const & name) {
    HolderPtr const kept = prepare_modify();
    return m_pImpl->m_map[name];
}

std::pair<MutableAttributeMap::iterator, bool>
MutableAttributeMap::insert(value_type const & element) {
    HolderPtr const kept = prepare_modify();
    return m_pImpl->m_map.insert(element);
}

MutableAttributeMap::iterator MutableAttributeMap::insert(iterator hint,
                                                          value_type const & element) {
    HolderPtr const kept = prepare_modify();
    // A hint into the old holder is useless in the clone.
    return kept ? m_pImpl->m_map.insert(element).first : m_pImpl->m_map.insert(hint, element);
}

void MutableAttributeMap::insert(const_iterator first, const_iterator last) {
    HolderPtr const kept = prepare_modify();
    Map const & map = m_pImpl->m_map;
    Map::Additions additions(m_pImpl->m_map);
    for (; first != last; ++first) {
        if (map.find(first->first) == map.end()) {
            additions.add(*first);
        }
    }
    additions.commit(false);
}

void MutableAttributeMap::insert(iterator first, iterator last) {
    insert(const_iterator(first), const_iterator(last));
}

unsigned int MutableAttributeMap::erase(AttributeName const & name) {
    HolderPtr const kept = prepare_modify();
    return static_cast<unsigned int>(m_pImpl->m_map.erase(name));
}

MutableAttributeMap::iterator MutableAttributeMap::erase(iterator position) {
    return modifiable().erase(position);
}

MutableAttributeMap::iterator MutableAttributeMap::erase(iterator first, iterator last) {
    return modifiable().erase(first, last);
}

void MutableAttributeMap::clear() {
    if (m_pImpl->has_unique_ref()) {
        m_pImpl->m_map.clear();
    } else {
        HolderPtr fresh = vxcore::make_ref_counted<MapHolder>();
        m_pImpl.swap(fresh);
    }
}

// The first of these calls makes the holder unshared, so the iterators of later ones belong to the
// same tree.
MutableAttributeMap::iterator MutableAttributeMap::begin() {
    return modifiable().begin();
}

MutableAttributeMap::iterator MutableAttributeMap::end() {
    return modifiable().end();
}

MutableAttributeMap::iterator MutableAttributeMap::find(AttributeName const & name) {
    HolderPtr const kept = prepare_modify();
    return m_pImpl->m_map.find(name);
}

MutableAttributeMap::iterator MutableAttributeMap::lower_bound(AttributeName const & name) {
    HolderPtr const kept = prepare_modify();
    return m_pImpl->m_map.lower_bound(name);
}

MutableAttributeMap::iterator MutableAttributeMap::upper_bound(AttributeName const & name) {
    HolderPtr const kept = prepare_modify();
    return m_pImpl->m_map.upper_bound(name);
}

void MutableAttributeMap::read(vxserialize::Reader & reader) {
    // Read aside, so that a failure leaves this map as it was.
    MutableAttributeMap(reader).swap(*this);
}

void MutableAttributeMap::read(vxserialize::Reader & reader, IAttributeNameDecoder & decoder) {
    MutableAttributeMap(reader, decoder).swap(*this);
}

} // namespace vxattribute
