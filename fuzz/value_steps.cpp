#include "check.h"
#include "operations_state.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_exception.h"

#include <cmath>
#include <stdexcept>

namespace vxfuzz {

using namespace vxattribute;

namespace {

template <typename T>
constexpr bool is_map = std::is_same_v<T, AttributeMap>;

template <typename T>
int type_id() {
    return impl::ValueTypeTraits<T>::type().id();
}

} // namespace

/// Makes an element: a copy of one of the maps here, or one built from the input. A NaN is
/// replaced, since it has no place in an order.
template <typename T>
OperationsState::Element<T> OperationsState::new_element() {
    Element<T> element;
    if constexpr (is_map<T>) {
        Map const & map = any_map();
        PlainMapElement plain = plain_element(map.plain);
        if (plain.weight <= sm_maxWeight) {
            element.real = map.real;
            element.plain = std::move(plain);
        } else {
            element.plain = plain_element(PlainMap());
        }
    } else {
        m_builder.build(element.real);
        if constexpr (std::is_same_v<T, double>) {
            element.real = std::isnan(element.real) ? 0.5 : element.real;
        }
        element.plain.template emplace<T>(element.real);
    }
    return element;
}

void OperationsState::value_step(Value & value) {
    unsigned int const kind = m_input.below(8);
    if (kind < 2) {
        whole_value_step(value);
        return;
    }
    if (kind == 2) {
        subrange_step(value);
        return;
    }
    // Mostly uses the value's own type, so that lists grow.
    bool const isOwnType = kind > 3 && value.plain.type != ValueTypeId::eId_Null;
    impl::for_element_type(isOwnType ? value.plain.type : m_builder.type(), [&]<typename T>() {
        if (m_input.below(3) == 0) {
            element_step<T>(value);
        } else {
            writer_step<T>(value);
        }
    });
}

void OperationsState::whole_value_step(Value & value) {
    Value & other = any_value(); // maybe the same
    switch (m_input.below(8)) {
    case 0:
        other.real = value.real;
        other.plain = PlainValue(value.plain);
        break;
    case 1:
        value.real.swap(other.real);
        std::swap(value.plain, other.plain);
        break;
    case 2:
        if (&other != &value) {
            other.real = std::move(value.real);
            other.plain = std::exchange(value.plain, {});
        }
        break;
    case 3:
        if (&other != &value) {
            other.real = value.real.transfer();
            other.plain = std::exchange(value.plain, {});
        }
        break;
    case 4:
        value.real.set_null();
        value.plain = {};
        break;
    case 5:
        value.real.clear();
        value.plain.elements.clear();
        break;
    case 6: {
        Map const & map = any_map();
        AttributeName const key = name();
        value.real = map.real.query(key);
        auto const found = map.plain.find(key);
        value.plain = found != map.plain.end() ? found->second : PlainValue();
        break;
    }
    default:
        value.plain = {m_builder.type(), {}};
        value.real =
            AttributeValue(ValueTypeId::from_id(static_cast<ValueTypeId::EId>(value.plain.type)));
    }
}

void OperationsState::subrange_step(Value & value) {
    Value & other = any_value();
    bool const toEnd = m_input.below(2) == 0;
    auto const size = static_cast<unsigned int>(value.plain.elements.size());
    unsigned int const position = m_input.below(size + 2);
    unsigned int const count = toEnd ? size - position : m_input.below(size + 2);
    bool const isGood = position <= size && count <= size - position;
    try {
        other.real = toEnd ? value.real.subrange(position) : value.real.subrange(position, count);
        check(isGood, "a range beyond the elements is refused");
    } catch (std::out_of_range const &) {
        check(!isGood, "a range within the elements is accepted");
        return;
    }
    auto const first = value.plain.elements.begin() + position;
    other.plain = {value.plain.type, std::vector<PlainElement>(first, first + count)};
}

/// Calls `set` with a new element or with one of the value's own.
template <typename T>
void OperationsState::element_step(Value & value) {
    if (value.plain.type == type_id<T>() && !value.plain.elements.empty() &&
        m_input.below(2) == 0) {
        auto const index = m_input.below(static_cast<unsigned int>(value.plain.elements.size()));
        PlainElement own = value.plain.elements[index];
        value.real.set(value.real.at<T>(index));
        value.plain.elements = {std::move(own)};
        return;
    }
    Element<T> element = new_element<T>();
    value.real.set(element.real);
    value.plain = {type_id<T>(), {std::move(element.plain)}};
}

template <typename T>
void OperationsState::assign_new(impl::MultiValueWriter<T> & writer,
                                 std::vector<PlainElement> & plain) {
    AttributeValue source(impl::ValueTypeTraits<T>::type());
    plain.clear();
    for (unsigned int left = m_input.below(5); left != 0; --left) {
        Element<T> element = new_element<T>();
        source.multivalue_writer<T>().push_back(element.real);
        plain.push_back(std::move(element.plain));
    }
    writer.assign(source.begin<T>(), source.end<T>());
}

/// Reserves, assigns or appends through a writer, with new elements or with the value's own.
template <typename T>
void OperationsState::writer_step(Value & value) {
    std::vector<PlainElement> & plain = value.plain.elements;
    bool const fits = value.plain.type == type_id<T>() || value.plain.type == ValueTypeId::eId_Null;
    try {
        impl::MultiValueWriter<T> writer = value.real.multivalue_writer<T>();
        check(fits, "a writer of another type is refused");
        value.plain.type = type_id<T>();
        bool const isOwn = m_input.below(2) == 0 && !plain.empty();
        auto const size = static_cast<unsigned int>(plain.size());
        switch (m_input.below(4)) {
        case 0:
            writer.reserve(m_input.below(40));
            break;
        case 1:
            if (isOwn) {
                unsigned int const first = m_input.below(size + 1);
                unsigned int const last = first + m_input.below(size - first + 1);
                T const * const elements = value.real.begin<T>();
                writer.assign(elements + first, elements + last);
                plain = std::vector<PlainElement>(plain.begin() + first, plain.begin() + last);
            } else {
                assign_new<T>(writer, plain);
            }
            break;
        default:
            for (unsigned int left = 1 + m_input.below(4); left != 0; --left) {
                if (plain.size() >= sm_maxElements) {
                    break;
                }
                if (isOwn) {
                    auto const index = m_input.below(static_cast<unsigned int>(plain.size()));
                    writer.push_back(value.real.at<T>(index));
                    plain.push_back(PlainElement(plain[index]));
                } else {
                    Element<T> element = new_element<T>();
                    writer.push_back(element.real);
                    plain.push_back(std::move(element.plain));
                }
            }
        }
    } catch (vxcore::ErrorException const & e) {
        check(!fits && e.info()->code() == error::vxattribute_value_type_mismatch,
              "a writer of the value's type is accepted");
    }
}

} // namespace vxfuzz
