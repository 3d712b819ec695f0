#include "vxattribute/json/boxes_internal.h"
#include "vxattribute/json/element_values_internal.h"
#include "vxattribute/make_value.h"
#include "vxattribute/map/map_builder_internal.h"
#include "vxattribute/multi_value_writer.h"
#include "vxserialize/name_cache_impl.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace vxattribute::impl {

namespace {

using vxjson::Reader;
using JsonValue = Reader::Value;
using JsonValuePtr = Reader::ValuePtr;

/// The greatest integer up to which doubles represent all.
constexpr long long maxExactInteger = 1LL << 53;

AttributeValue number_of(std::string const & text, double nearest) {
    long long integer = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), integer);
    if (error == std::errc() && end == text.data() + text.size()) {
        return integer; // the double may have lost its last digits
    }
    return is_integer(nearest) ? AttributeValue(static_cast<long long>(nearest))
                               : AttributeValue(nearest);
}

/// Reads any JSON. Open containers are in a list and not on the stack.
class BoxedReader {
  public:
    explicit BoxedReader(Reader & reader) noexcept : m_reader(reader) {}

    /// As JsonValueReader::read.
    AttributeValue read(JsonValuePtr value) {
        AttributeValue result;
        do {
            value = begin(std::move(value), result);
            while (!value && !m_open.empty()) {
                value = add(result);
            }
        } while (value);
        return result;
    }

  private:
    struct Open {
        JsonValuePtr container;
        JsonValue::EType childType; // of the child that is being read
        std::size_t start;          // of the container's elements or items
    };

    /// An element of an array.
    struct Item {
        JsonValue::EType type;
        AttributeValue value;
    };

    using Items = std::vector<Item>;

    JsonValuePtr begin(JsonValuePtr value, AttributeValue & result) {
        switch (value->type()) {
        case JsonValue::eType_Null:
            result.set_null();
            return nullptr;
        case JsonValue::eType_Boolean:
            result = AttributeValue(value->as_bool());
            return nullptr;
        case JsonValue::eType_Number: {
            double const nearest = value->as_double();
            result = number_of(value->as_string(), nearest);
            return nullptr;
        }
        case JsonValue::eType_String:
            result = AttributeValue(value->as_string());
            return nullptr;
        default:
            return begin_container(std::move(value), result);
        }
    }

    JsonValuePtr begin_container(JsonValuePtr container, AttributeValue & result) {
        bool const isArray = container->type() == JsonValue::eType_Array;
        JsonValuePtr child = m_reader.next_child(container);
        if (!child) {
            result = isArray ? AttributeValue(ValueTypeId::typeString) : AttributeMap();
            return nullptr;
        }
        std::size_t const start = isArray ? m_items.size() : m_elements.size();
        m_open.push_back({std::move(container), child->type(), start});
        begin_child(*child);
        return child;
    }

    void begin_child(JsonValue const & child) {
        Open & open = m_open.back();
        open.childType = child.type();
        if (open.container->type() == JsonValue::eType_Object) {
            m_elements.add(m_names.find(child.name()));
        }
    }

    /// Adds a complete value to the innermost container and returns the next child, or makes a
    /// value of the container and returns null.
    JsonValuePtr add(AttributeValue & value) {
        Open & open = m_open.back();
        bool const isArray = open.container->type() == JsonValue::eType_Array;
        if (isArray) {
            m_items.push_back({open.childType, std::move(value)});
        } else {
            m_elements.last_value().swap(value);
        }
        JsonValuePtr child = m_reader.next_child(open.container);
        if (child) {
            begin_child(*child);
            return child;
        }
        value = isArray ? array_of({m_items.begin() + static_cast<std::ptrdiff_t>(open.start),
                                    m_items.end()})
                        : AttributeValue(object_of(open.start));
        if (isArray) {
            m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(open.start), m_items.end());
        }
        m_open.pop_back();
        return nullptr;
    }

    AttributeMap object_of(std::size_t start) {
        AttributeMap map = m_elements.take(start);
        return m_boxes.is_box(map) ? box(m_boxes.element, std::move(map)) : map;
    }

    static AttributeMap box(AttributeName const & name, AttributeValue value) {
        MutableAttributeMap map;
        map.add(name, std::move(value));
        return map;
    }

    AttributeValue array_of(std::span<Item const> items) const {
        if (items.size() == 1) {
            return box(m_boxes.array, items.front().value);
        }
        JsonValue::EType const type = items.front().type;
        bool const isUniform = std::all_of(items.begin(), items.end(),
                                           [type](Item const & item) { return item.type == type; });
        if (isUniform) {
            switch (type) {
            case JsonValue::eType_Boolean:
                return list_of<bool>(items);
            case JsonValue::eType_String:
                return list_of<std::string>(items);
            case JsonValue::eType_Number:
                return numbers_of(items);
            case JsonValue::eType_Object:
                return objects_of(items);
            default:
                break;
            }
        }
        return boxes_of(items);
    }

    template <typename T>
    static AttributeValue list_of(std::span<Item const> items) {
        AttributeValue list;
        auto writer = list.multivalue_writer<T>();
        for (Item const & item : items) {
            writer.push_back(item.value.template get<T>());
        }
        return list;
    }

    static bool is_integer_item(Item const & item) {
        return item.value.type() == ValueTypeId::typeInteger;
    }

    /// A list of integers, or of doubles if no integer loses digits as a double.
    AttributeValue numbers_of(std::span<Item const> items) const {
        if (std::all_of(items.begin(), items.end(), is_integer_item)) {
            return list_of<long long>(items);
        }
        AttributeValue list;
        auto writer = list.multivalue_writer<double>();
        for (Item const & item : items) {
            if (!is_integer_item(item)) {
                writer.push_back(item.value.get<double>());
                continue;
            }
            auto const integer = item.value.get<long long>();
            if (integer < -maxExactInteger || maxExactInteger < integer) {
                return boxes_of(items);
            }
            writer.push_back(static_cast<double>(integer));
        }
        return list;
    }

    /// A list of maps, if it cannot be taken for boxes.
    AttributeValue objects_of(std::span<Item const> items) const {
        bool const allLookLikeBoxes =
            std::all_of(items.begin(), items.end(), [this](Item const & item) {
                return m_boxes.is_box(item.value.get<AttributeMap>());
            });
        return allLookLikeBoxes ? boxes_of(items) : list_of<AttributeMap>(items);
    }

    AttributeValue boxes_of(std::span<Item const> items) const {
        AttributeValue list;
        auto writer = list.multivalue_writer<AttributeMap>();
        for (Item const & item : items) {
            writer.push_back(box(
                item.type == JsonValue::eType_Array ? m_boxes.array : m_boxes.element, item.value));
        }
        return list;
    }

    Reader & m_reader;
    BoxNames const m_boxes;
    std::vector<Open> m_open;
    MapBuilder m_elements;
    Items m_items;
    vxserialize::impl::NameCache m_names;
};

} // namespace

AttributeMap const * BoxNames::boxed_object(AttributeMap const & map) const noexcept {
    if (map.size() != 1 || map.begin()->first != element) {
        return nullptr;
    }
    AttributeValue const & value = map.begin()->second;
    return value.type() == ValueTypeId::typeAttributeMap && value.size() == 1
               ? value.begin<AttributeMap>()
               : nullptr;
}

AttributeValue read_boxed(Reader & reader) {
    JsonValuePtr value = reader.next_value();
    if (!value) {
        reader.fail("Expecting JSON value", {}, VXCORE_LOCATION("vxattribute::value_from_json()"));
    }
    return BoxedReader(reader).read(std::move(value));
}

} // namespace vxattribute::impl
