#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/json/direct_reader_internal.h"
#include "vxattribute/json/element_values_internal.h"
#include "vxattribute/json/keys_internal.h"
#include "vxattribute/json_marshaler.h"
#include "vxattribute/make_value.h"
#include "vxattribute/map/map_builder_internal.h"
#include "vxattribute/multi_value_writer.h"
#include "vxcore/error_info.h"
#include "vxjson/direct_read_impl.h"
#include "vxserialize/name_cache_impl.h"
#include "vxserialize/text_reader.h"

#include <algorithm>
#include <vector>

namespace vxattribute {

namespace {

using vxjson::Reader;
using JsonValue = Reader::Value;
using JsonValuePtr = Reader::ValuePtr;

constexpr char const * in_read_json_array = "vxattribute::impl::read_json_array()";
constexpr char const * in_read_serialized = "vxattribute::impl::read_serialized_attribute_value()";

[[noreturn]] void fail_no_value(Reader & reader) {
    reader.fail("Expecting JSON value", {}, VXCORE_LOCATION("read_attribute_value()"));
}

/// Reads one value. Open containers are in a list and not on the stack, so only the tokenizer
/// limits the depth of a document.
///
/// Drop each value of the reader before asking for the next, so that the reader can reuse its
/// object.
class JsonValueReader {
  public:
    explicit JsonValueReader(Reader & reader) noexcept : m_reader(reader) {}

    /// `begin` opens a container and returns its first child, or completes a value and returns
    /// null. `add` then passes the value outwards until a container has another child.
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
    /// An object, or an array of objects, whose last child is being read.
    struct Open {
        JsonValuePtr container;
        bool isArray;
        std::size_t start;              // of an object's elements
        std::vector<AttributeMap> maps; // of an array
    };

    /// Reads a scalar, an array of scalars or an empty container into `result` and returns null.
    /// Opens any other container and returns its first child.
    JsonValuePtr begin(JsonValuePtr value, AttributeValue & result) {
        switch (value->type()) {
        case JsonValue::eType_Null:
            result.set_null();
            return nullptr;
        case JsonValue::eType_Boolean:
            result.set(value->as_bool());
            return nullptr;
        case JsonValue::eType_Number:
            set_number(result, value->as_double());
            return nullptr;
        case JsonValue::eType_String:
            if (m_open.empty()) {
                result.set(value->as_string()); // the caller may hold this one, with its text
            } else {
                set_string(result, value->take_string());
            }
            return nullptr;
        case JsonValue::eType_Array:
            return begin_array(std::move(value), result);
        case JsonValue::eType_Object:
            return begin_object(std::move(value), result);
        default:
            fail_no_value(m_reader);
        }
    }

    JsonValuePtr begin_object(JsonValuePtr object, AttributeValue & result) {
        // Every object in an array is read as a map. "vxserialize" as the first name marks a
        // serialized value only elsewhere.
        bool const isElement = !m_open.empty() && m_open.back().isArray;
        JsonValuePtr child = m_reader.next_child(object);
        if (!child) {
            result = AttributeValue(AttributeMap());
            return nullptr;
        }
        if (!isElement && child->name() == impl::jsonSerializedKey->value()) {
            // Further properties are skipped up to the end of the object.
            read_serialized(*child, result);
            do {
                child.reset();
                child = m_reader.next_child(object);
            } while (child);
            return nullptr;
        }
        m_open.push_back({std::move(object), false, m_elements.size(), {}});
        m_elements.add(m_names.find(child->name()));
        return child;
    }

    JsonValuePtr begin_array(JsonValuePtr array, AttributeValue & result) {
        JsonValuePtr child = m_reader.next_child(array);
        if (!child) {
            result = AttributeValue(ValueTypeId::typeString);
            return nullptr;
        }
        switch (child->type()) {
        case JsonValue::eType_Object:
            m_open.push_back({std::move(array), true, 0, {}});
            return child;
        case JsonValue::eType_Boolean:
            read_booleans(array, std::move(child), result);
            return nullptr;
        case JsonValue::eType_Number:
            read_numbers(array, std::move(child), result);
            return nullptr;
        case JsonValue::eType_String:
            read_strings(array, std::move(child), result);
            return nullptr;
        case JsonValue::eType_Null:
            m_reader.fail("Array of null elements not supported.", {},
                          VXCORE_LOCATION(in_read_json_array));
        default:
            m_reader.fail("Array of Array elements not supported.", {},
                          VXCORE_LOCATION(in_read_json_array));
        }
    }

    /// Adds a complete value to the innermost container and returns the next child. At the end of
    /// the container it makes a value of the container, stores it in `value` and returns null.
    JsonValuePtr add(AttributeValue & value) {
        Open & open = m_open.back();
        JsonValuePtr child;
        if (open.isArray) {
            open.maps.push_back(value.get<AttributeMap>());
            child = next_element(open.container, JsonValue::eType_Object);
        } else {
            m_elements.last_value().swap(value);
            child = m_reader.next_child(open.container);
            if (child) {
                m_elements.add(m_names.find(child->name()));
            }
        }
        if (!child) {
            value = open.isArray ? make_list<AttributeMap>(open.maps)
                                 : AttributeValue(m_elements.take(open.start));
            m_open.pop_back();
        }
        return child;
    }

    /// The next element of an array whose first one was of type `expected`.
    JsonValuePtr next_element(JsonValuePtr const & array, JsonValue::EType expected) {
        JsonValuePtr child = m_reader.next_child(array);
        if (child && child->type() != expected) {
            vxcore::ErrorParams params;
            params.insert_ref(vxcore::SourceString("expected", true)) = to_string(expected);
            params.insert_ref(vxcore::SourceString("actual", true)) = to_string(child->type());
            m_reader.fail("All array elements must be of same type.  Expecting '{@expected}' found "
                          "'{@actual}'.",
                          std::move(params), VXCORE_LOCATION(in_read_json_array));
        }
        return child;
    }

    /// Calls `take` with each element of an array of scalars.
    template <typename Take>
    void for_each_element(JsonValuePtr const & array, JsonValuePtr child, Take take) {
        JsonValue::EType const type = child->type();
        do {
            take(*child);
            child.reset();
            child = next_element(array, type);
        } while (child);
    }

    void read_booleans(JsonValuePtr const & array, JsonValuePtr child, AttributeValue & result) {
        result.set_null();
        auto list = result.multivalue_writer<bool>();
        for_each_element(array, std::move(child),
                         [&list](JsonValue & element) { list.push_back(element.as_bool()); });
    }

    /// The array is Integer only if all its numbers are whole, which is known at its end, so the
    /// numbers are collected first. After each element, `next_number` takes the numbers that follow
    /// without making a value object for each.
    void read_numbers(JsonValuePtr const & array, JsonValuePtr child, AttributeValue & result) {
        m_doubles.clear();
        for_each_element(array, std::move(child), [this, &array](JsonValue & element) {
            double number = element.as_double();
            do {
                m_doubles.push_back(number);
            } while (m_reader.next_number(array, number));
        });
        if (std::all_of(m_doubles.begin(), m_doubles.end(), impl::is_integer)) {
            m_integers.resize(m_doubles.size());
            std::transform(m_doubles.begin(), m_doubles.end(), m_integers.begin(),
                           [](double number) { return static_cast<long long>(number); });
            result = make_list<long long>(m_integers);
        } else {
            result = make_list<double>(m_doubles);
        }
    }

    void read_strings(JsonValuePtr const & array, JsonValuePtr child, AttributeValue & result) {
        auto * const list = new impl::RefCountedValueImpl<std::string>;
        impl::set_value(result, list);
        for_each_element(array, std::move(child), [list](JsonValue & element) {
            list->push_back_default() = element.take_string();
        });
        if (list->size() == 1 && list->front().empty()) {
            result = AttributeValue(std::string_view()); // a shared static
        }
    }

    static void set_number(AttributeValue & result, double number) {
        if (impl::is_integer(number)) {
            result = AttributeValue(static_cast<long long>(number));
        } else {
            result = AttributeValue(number);
        }
    }

    /// Moves the text into a value, so that it is copied only once, from the tokenizer.
    static void set_string(AttributeValue & result, std::string && text) {
        if (text.empty()) {
            result = AttributeValue(std::string_view());
            return;
        }
        auto * const single = new impl::RefCountedValueImpl<std::string>;
        impl::set_value(result, single);
        single->push_back_default() = std::move(text);
    }

    /// Reads the value in a "vxserialize" property. Any text after the value is ignored.
    void read_serialized(JsonValue & value, AttributeValue & result) {
        if (value.type() != JsonValue::eType_String) {
            m_reader.fail("Value of \"vxserialize\" property must be of type 'String'.", {},
                          VXCORE_LOCATION(in_read_serialized));
        }
        try {
            JsonValue::StreamPtr const stream = value.as_stream();
            vxserialize::TextReader reader(*stream, 4096);
            read_attribute_value(reader, result);
        } catch (std::exception const & e) {
            m_reader.fail(
                "String value is not a valid vxserialize Text serialized AttributeValue.", {},
                VXCORE_LOCATION(in_read_serialized),
                vxcore::ErrorInfo::from_exception(e, VXCORE_LOCATION(in_read_serialized)));
        }
    }

    Reader & m_reader;
    std::vector<Open> m_open;
    impl::MapBuilder m_elements;
    std::vector<double> m_doubles;
    std::vector<long long> m_integers;
    vxserialize::impl::NameCache m_names;
};

/// The value that is to be read: the current one, or the next at the start of a document.
JsonValuePtr value_to_read(Reader & reader) {
    JsonValuePtr value = reader.current();
    if (value && value->type() == JsonValue::eType_Root) {
        value = reader.next_value();
    }
    if (!value) {
        fail_no_value(reader);
    }
    return value;
}

/// Reads a container from its text, if that is in memory and plain.
bool read_directly(Reader & reader, JsonValuePtr const & value, AttributeValue & result) {
    vxjson::impl::PlainText text;
    if (!vxjson::impl::DirectRead::begin(reader, text)) {
        return false;
    }
    impl::DirectReader direct(text);
    if (!direct.read_rest(value->type() == JsonValue::eType_Array ? '[' : '{', result)) {
        return false;
    }
    vxjson::impl::DirectRead::end(reader, direct.closing());
    return true;
}

} // namespace

AttributeValue impl::read_through_values(Reader & reader) {
    return JsonValueReader(reader).read(value_to_read(reader));
}

AttributeValue read_attribute_value(vxjson::Reader & reader) {
    JsonValuePtr value = value_to_read(reader);
    AttributeValue result;
    if (read_directly(reader, value, result)) {
        reader.next_child(std::move(value)); // takes the bracket, and looks what follows
        return result;
    }
    return JsonValueReader(reader).read(std::move(value));
}

void read_attribute_value(vxjson::Reader & reader, AttributeValue & value) {
    AttributeValue result = read_attribute_value(reader);
    value.swap(result);
}

} // namespace vxattribute
