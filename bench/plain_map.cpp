#include "plain_map.h"

#include "vxattribute/binary_value.h"
#include "vxattribute/elements.h"

#include <stdexcept>

namespace vxbench {

namespace {

using namespace vxattribute;

PlainValue::Data plain_element(bool element) {
    return element;
}

PlainValue::Data plain_element(long long element) {
    return element;
}

PlainValue::Data plain_element(double element) {
    return element;
}

PlainValue::Data plain_element(std::string const & element) {
    return element;
}

PlainValue::Data plain_element(vxcore::Uuid const & element) {
    return Bytes(element.data().begin(), element.data().end());
}

PlainValue::Data plain_element(vxuri::UriReference const & element) {
    return element.text();
}

PlainValue::Data plain_element(vxcore::AbsoluteTime element) {
    return element.ticks();
}

PlainValue::Data plain_element(vxcore::RelativeTime element) {
    return element.ticks();
}

PlainValue::Data plain_element(vxcore::SimpleDateTime element) {
    return element.ticks();
}

PlainValue::Data plain_element(BinaryValue const & element) {
    return Bytes(element.data(), element.data() + element.size());
}

PlainValue::Data plain_element(AttributeMap const & element) {
    return to_plain(element);
}

template <typename T>
PlainValue::Data plain_element(T const &) {
    throw std::logic_error("no plain type for this element");
}

PlainValue to_plain(AttributeValue const & value) {
    PlainValue plain;
    visit_elements(value, [&plain](auto const & elements) {
        if (elements.size() == 1) {
            plain.data = plain_element(elements[0]);
            return;
        }
        PlainList list;
        for (auto const & element : elements) {
            list.push_back({plain_element(element)});
        }
        plain.data = std::move(list);
    });
    return plain;
}

} // namespace

PlainMap to_plain(AttributeMapBase const & map) {
    PlainMap plain;
    for (auto const & [name, value] : map) {
        plain.emplace(name.value(), to_plain(value));
    }
    return plain;
}

} // namespace vxbench
