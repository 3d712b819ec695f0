#include "plain_model.h"

#include <algorithm>

namespace vxfuzz {

using namespace vxattribute;

namespace {

int sign(bool less, bool greater) noexcept {
    return less ? -1 : (greater ? 1 : 0);
}

template <typename T>
int order(T const & a, T const & b) {
    if constexpr (std::is_same_v<T, PlainMapElement>) {
        return compare(*a.map, *b.map);
    } else if constexpr (std::is_same_v<T, impl::ErrorInfoPtr>) {
        return a && b ? a->compare(*b) : sign(!a && b, a && !b);
    } else if constexpr (std::is_same_v<T, vxuri::UriReference>) {
        return a.compare(b);
    } else {
        return sign(a < b, b < a);
    }
}

/// Returns true when the elements are equal. Only for Serialized elements does this differ from
/// their order: without payloads, `==` still compares the type names.
template <typename T>
bool same(T const & a, T const & b) {
    if constexpr (std::is_same_v<T, PlainMapElement>) {
        return equal(*a.map, *b.map);
    } else if constexpr (std::is_same_v<T, SerializedValue>) {
        return a == b;
    } else {
        return order(a, b) == 0;
    }
}

/// Calls `action` with both elements. They must be of one type.
template <typename Action>
auto with_both(PlainElement const & a, PlainElement const & b, Action action) {
    return std::visit(
        [&]<typename T>(T const & element) { return action(element, std::get<T>(b)); }, a);
}

} // namespace

std::size_t weight(PlainMap const & map) {
    std::size_t sum = 1;
    for (auto const & [name, value] : map) {
        ++sum;
        for (PlainElement const & element : value.elements) {
            auto const * const nested = std::get_if<PlainMapElement>(&element);
            sum += nested != nullptr ? nested->weight : 1;
        }
    }
    return sum;
}

PlainMapElement plain_element(PlainMap const & map) {
    return {std::make_shared<PlainMap const>(map), weight(map)};
}

int compare(PlainValue const & a, PlainValue const & b) {
    if (a.type != b.type) {
        return a.type - b.type;
    }
    for (std::size_t i = 0; i < std::min(a.elements.size(), b.elements.size()); ++i) {
        int const result = with_both(a.elements[i], b.elements[i],
                                     [](auto const & x, auto const & y) { return order(x, y); });
        if (result != 0) {
            return result;
        }
    }
    return sign(a.elements.size() < b.elements.size(), a.elements.size() > b.elements.size());
}

int compare(PlainMap const & a, PlainMap const & b) {
    auto x = a.begin();
    auto y = b.begin();
    for (; x != a.end() && y != b.end(); ++x, ++y) {
        if (!(x->first == y->first)) {
            return x->first < y->first ? -1 : 1;
        }
        if (int const result = compare(x->second, y->second); result != 0) {
            return result;
        }
    }
    return sign(y != b.end(), x != a.end());
}

bool equal(PlainValue const & a, PlainValue const & b) {
    return a.type == b.type &&
           std::equal(a.elements.begin(), a.elements.end(), b.elements.begin(), b.elements.end(),
                      [](PlainElement const & x, PlainElement const & y) {
                          return with_both(
                              x, y, [](auto const & p, auto const & q) { return same(p, q); });
                      });
}

bool equal(PlainMap const & a, PlainMap const & b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](auto const & x, auto const & y) {
        return x.first == y.first && equal(x.second, y.second);
    });
}

bool agrees(AttributeValue const & value, PlainValue const & plain) {
    if (value.type().id() != plain.type || value.size() != plain.elements.size() ||
        value.empty() != plain.elements.empty()) {
        return false;
    }
    bool good = true;
    visit_elements(value, [&]<typename T>(std::span<T const> elements) {
        for (std::size_t i = 0; good && i < elements.size(); ++i) {
            if constexpr (std::is_same_v<T, AttributeMap>) {
                good = agrees(elements[i], *std::get<PlainMapElement>(plain.elements[i]).map);
            } else {
                good = same(elements[i], std::get<T>(plain.elements[i]));
            }
        }
    });
    return good;
}

bool agrees(AttributeMapBase const & map, PlainMap const & plain) {
    return map.size() == plain.size() && map.empty() == plain.empty() &&
           std::equal(map.begin(), map.end(), plain.begin(), plain.end(),
                      [](auto const & x, auto const & y) {
                          return x.first == y.first && agrees(x.second, y.second);
                      });
}

AttributeValue rebuild(PlainValue const & plain) {
    AttributeValue value;
    impl::for_element_type(plain.type, [&]<typename T>() {
        value = AttributeValue(impl::ValueTypeTraits<T>::type());
        for (PlainElement const & element : plain.elements) {
            if constexpr (std::is_same_v<T, AttributeMap>) {
                value.multivalue_writer<T>().push_back(
                    rebuild(*std::get<PlainMapElement>(element).map));
            } else {
                value.multivalue_writer<T>().push_back(std::get<T>(element));
            }
        }
    });
    return value;
}

AttributeMap rebuild(PlainMap const & plain) {
    MutableAttributeMap map;
    for (auto const & [name, value] : plain) {
        map.add(name, rebuild(value));
    }
    return map;
}

} // namespace vxfuzz
