#include "check.h"
#include "operations_state.h"

#include <iterator>

namespace vxfuzz {

using namespace vxattribute;

void OperationsState::map_step(Map & map) {
    switch (m_input.below(8)) {
    case 0:
        whole_map_step(map);
        break;
    case 1:
        erase_step(map);
        break;
    case 2:
        lookup_step(map);
        break;
    default:
        insert_step(map);
    }
}

/// Does a step on whole maps. Most take another map, which may be the same one.
void OperationsState::whole_map_step(Map & map) {
    Map & other = any_map();
    PlainMap const otherPlain = other.plain;
    switch (m_input.below(9)) {
    case 0:
        map.real = other.real;
        map.plain = otherPlain;
        break;
    case 1:
        map.real.swap(other.real);
        map.plain.swap(other.plain);
        break;
    case 2:
        // A moved-from map may only be assigned to.
        if (&other != &map) {
            map.real = std::move(other.real);
            other.real = MutableAttributeMap();
            map.plain = std::exchange(other.plain, {});
        }
        break;
    case 3:
        map.real.clear();
        map.plain.clear();
        break;
    case 4: {
        AttributeMap const merged = map.real.merged_with(other.real);
        map.plain.insert(otherPlain.begin(), otherPlain.end());
        check(agrees(merged, map.plain), "merging keeps the values of this map");
        map.real = merged;
        break;
    }
    case 5:
        map.real.add(other.real);
        for (auto const & [key, value] : otherPlain) {
            map.plain[key] = value;
        }
        break;
    case 6:
        map.real.insert(std::as_const(other.real).begin(), std::as_const(other.real).end());
        map.plain.insert(otherPlain.begin(), otherPlain.end());
        break;
    case 7:
        map.real.insert(other.real.begin(), other.real.end());
        map.plain.insert(otherPlain.begin(), otherPlain.end());
        break;
    default:
        write_through_reference(map);
    }
}

void OperationsState::write_through_reference(Map & map) {
    AttributeMap lent = map.real;
    AttributeName const key = name();
    WritableAttributeMapRef(lent).add(key, true);
    map.plain[key] = {ValueTypeId::eId_Boolean, {PlainElement(true)}};
    map.real = std::move(lent);
}

/// Stores a value under a name: one of the values here, one of the map's own, or the map itself.
void OperationsState::insert_step(Map & map) {
    AttributeName const key = name();
    auto const own = std::as_const(map.real).find(name());
    bool const isOwn = own != std::as_const(map.real).end() && m_input.below(2) == 0;
    Value const & value = any_value();
    PlainValue plain = isOwn ? map.plain.find(own->first)->second : value.plain;
    AttributeValue const & real = isOwn ? own->second : value.real;
    bool const present = map.plain.count(key) != 0;
    switch (m_input.below(7)) {
    case 0:
        map.real.add(key, real);
        break;
    case 1:
        map.real.add(Attribute(key, real));
        break;
    case 2:
        // Copy the value first: the subscript may clone the map or insert an element.
        map.real[key] = AttributeValue(real);
        break;
    case 3:
        check(map.real.insert({key, real}).second == !present, "insert reports whether it added");
        map.plain.emplace(key, std::move(plain));
        return;
    case 4: {
        // With a copy made after the hint, insert clones the map and the hint points into the old
        // holder.
        MutableAttributeMap::iterator const hint = map.real.find(name());
        MutableAttributeMap const copy =
            m_input.below(2) == 0 ? MutableAttributeMap(map.real) : MutableAttributeMap();
        map.real.insert(hint, {key, real});
        map.plain.emplace(key, std::move(plain));
        return;
    }
    case 5: {
        PlainMapElement element = plain_element(map.plain);
        if (element.weight > sm_maxWeight) {
            return;
        }
        map.real.add(key, map.real);
        plain = {ValueTypeId::eId_AttributeMap, {std::move(element)}};
        break;
    }
    default: {
        AttributeValue moved = real;
        map.real.add(key, std::move(moved));
    }
    }
    map.plain[key] = std::move(plain);
}

void OperationsState::erase_step(Map & map) {
    auto const size = static_cast<unsigned int>(map.plain.size());
    unsigned int const first = m_input.below(size + 1);
    unsigned int const last = first + m_input.below(size - first + 1);
    switch (m_input.below(4)) {
    case 0: {
        AttributeName const key = name();
        check(map.real.erase(key) == map.plain.erase(key), "erase reports how many it removed");
        break;
    }
    case 1:
        if (first < size) {
            // The argument is the name of the very element that is erased.
            AttributeMapBase const & look = map.real;
            map.real.erase(std::next(look.begin(), first)->first);
            map.plain.erase(std::next(map.plain.begin(), first));
        }
        break;
    case 2:
        if (first < size) {
            map.real.erase(std::next(map.real.begin(), first));
            map.plain.erase(std::next(map.plain.begin(), first));
        }
        break;
    default: {
        auto const begin = map.real.begin();
        map.real.erase(std::next(begin, first), std::next(begin, last));
        map.plain.erase(std::next(map.plain.begin(), first), std::next(map.plain.begin(), last));
    }
    }
}

/// Checks that look-ups find what is there and change nothing, whether they clone the map or not.
/// Then replaces the value that was found.
void OperationsState::lookup_step(Map & map) {
    AttributeName const key = name();
    AttributeMapBase const & look = map.real;
    auto const found = map.plain.find(key);
    bool const present = found != map.plain.end();
    check(look.exists(key) == present && look.count(key) == map.plain.count(key) &&
              (look.query_ptr(key) != nullptr) == present &&
              agrees(look.query(key), present ? found->second : PlainValue()),
          "a look-up finds what is there");
    auto const lower = map.real.lower_bound(key);
    check(std::distance(map.real.begin(), lower) ==
              std::distance(map.plain.begin(), map.plain.lower_bound(key)),
          "lower_bound agrees with the model");
    check(std::distance(map.real.begin(), map.real.upper_bound(key)) ==
              std::distance(map.plain.begin(), map.plain.upper_bound(key)),
          "upper_bound agrees with the model");
    if (present) {
        Value const & value = any_value();
        map.real.find(key)->second = value.real;
        found->second = value.plain;
    }
}

} // namespace vxfuzz
