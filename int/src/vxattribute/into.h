#pragma once

#include "vxattribute/number_access.h"
#include "vxattribute/query.h"

#include <optional>
#include <vector>

namespace vxattribute {

namespace impl {

/// The types of one element that `into` reads.
template <typename T>
concept ReadableElement = Number<T> || Convertible<T> || ElementType<T>;

/// Reads numbers and what ConvertableValue reads.
template <typename T>
VXATTRIBUTE_API T scalar_from(AttributeValue const & value);

/// @raises error.vxattribute.query.typeConversion: always. The message names the type in C++ words.
[[noreturn]] VXATTRIBUTE_API void throw_not_readable(AttributeValue const & value,
                                                     std::type_info const & type);

/// How a type of variables is read from a value; the general case is one element.
template <typename T>
struct ValueInto {
    static_assert(ReadableElement<T>,
                  "into() reads numbers, bool, std::string, element types, AttributeValue, "
                  "MutableAttributeMap, and std::optional and std::vector of them");

    static T read(AttributeValue const & value) {
        if constexpr (Number<T> || Convertible<T>) {
            return scalar_from<T>(value);
        } else {
            if (value.type() != ValueTypeTraits<T>::type()) {
                throw_not_readable(value, typeid(T));
            }
            return value.get<T>();
        }
    }
};

template <>
struct ValueInto<AttributeValue> {
    static AttributeValue read(AttributeValue const & value) { return value; }
};

template <>
struct ValueInto<MutableAttributeMap> {
    static AttributeMap read(AttributeValue const & value) {
        return ValueInto<AttributeMap>::read(value);
    }
};

template <typename T>
struct ValueInto<std::optional<T>> {
    static std::optional<T> read(AttributeValue const & value) {
        return value.empty() ? std::optional<T>() : ValueInto<T>::read(value);
    }
};

template <typename T>
struct ValueInto<std::vector<T>> {
    static std::vector<T> read(AttributeValue const & value) {
        std::vector<T> list;
        list.reserve(value.size());
        for (unsigned int i = 0; i < value.size(); ++i) {
            list.push_back(ValueInto<T>::read(value.subrange(i, 1)));
        }
        return list;
    }
};

} // namespace impl

/// Reads what a query found into a variable. `into` makes it.
template <typename T>
class Into {
  public:
    /// Refers to the variable.
    explicit Into(T & target VXCORE_LIFETIMEBOUND) noexcept : m_target(&target) {}

    /// Stores the value and returns true, or raises and leaves the variable as it was.
    bool operator()(Query::MatchContext const & found) const {
        T result = impl::ValueInto<T>::read(found.attribute_value()); // raises before the store
        *m_target = std::move(result);
        return true;
    }

  private:
    T * m_target;
};

/// The matcher of a query that reads the value into a variable. The variable keeps what it holds
/// when the setting is absent, so that is the default.
///
///     unsigned short port = 8080;
///     static Query const query = Query("port").scalar(true);
///     query.execute(config, into(port), nullptr);
///
/// | variable | is read from |
/// |---|---|
/// | integers, `float`, `double` | Integer and Double, as `get_number` does; a text, in decimal |
/// | bool, `char`, std::string, Uuid, UriReference, times | what ConvertableValue reads |
/// | other element types, MutableAttributeMap | a value of that type, of a map |
/// | AttributeValue | any value |
/// | std::vector | all elements, each as above; null and no elements are an empty one |
/// | std::optional | what its content is read from; null and no elements are none |
///
/// Where one element is wanted, a typed value without elements is the default of its type, as for
/// ConvertableValue.
///
/// @keeps  The result refers to the variable.
/// @raises Nothing. The query reports failures of the conversion as nested failures of
///         error.vxattribute.query.badValue, whose messages name the wanted type; the variable is
///         then as it was.
template <typename T>
Into<T> into(T & target VXCORE_LIFETIMEBOUND) noexcept {
    return Into<T>(target);
}

} // namespace vxattribute
