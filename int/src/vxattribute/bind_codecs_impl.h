#pragma once

#include "vxattribute/elements.h"
#include "vxattribute/setting_values_impl.h"

#include <algorithm>
#include <cmath>
#include <utility>

/// How the elements of members are kept in values. Include bind.h.
///
/// A codec reads and writes one element. `adopt` adds what the codec demands to the description of
/// its setting, and takes over the rules. `read` returns false for what `Settings::find_problems`
/// reports, and may leave anything in its target then. `write` returns an element or a reference to
/// one, and `Element` is its type.
namespace vxattribute {

template <typename Struct>
class Binding;
template <typename Enum>
class EnumNames;

namespace impl {

/// The failure of writing what no configuration could hold: `what` names it.
///
/// @raises error.vxattribute.query.badValue
[[noreturn]] VXATTRIBUTE_API void throw_not_writable(char const * what, std::string const & value);

/// An element type as it is.
template <typename T>
struct ElementCodec {
    using Element = T;

    void adopt(Setting & setting) { setting.type = element_type_row<T>.id; }

    bool read(AttributeValue const & value, unsigned int index, T & target) const {
        if (value.type() == ValueTypeTraits<T>::type()) {
            target = value.begin<T>()[index];
            return true;
        }
        if constexpr (TextFormType<T>) {
            return read_text_form(value, index, target);
        }
        return false;
    }

    T const & write(T const & element) const noexcept { return element; }
};

class StringCodec : public ElementCodec<std::string> {
  public:
    void adopt(Setting & setting) {
        ElementCodec::adopt(setting);
        m_choices = setting.choices;
    }

    bool read(AttributeValue const & value, unsigned int index, std::string & target) const {
        return ElementCodec::read(value, index, target) &&
               (m_choices.empty() || std::ranges::count(m_choices, target) != 0);
    }

  private:
    std::vector<std::string> m_choices;
};

/// Any integer type, from an Integer in its range. A `char` is a number from -128 to 127.
template <typename T>
class IntegerCodec {
  public:
    using Element = long long;

    void adopt(Setting & setting) {
        using Limits = std::numeric_limits<Plain>;
        setting.type = ValueTypeId::eId_Integer;
        m_limits = NumberLimits(setting);
        if (std::cmp_less(m_limits.lowest, Limits::min())) {
            m_limits.lowest = static_cast<long long>(Limits::min());
            setting.minimum = m_limits.lowest;
        }
        if (std::cmp_greater(m_limits.highest, Limits::max())) {
            m_limits.highest = static_cast<long long>(Limits::max());
            setting.maximum = m_limits.highest;
        }
    }

    bool read(AttributeValue const & value, unsigned int index, T & target) const {
        if (value.type() != ValueTypeId::typeInteger) {
            return false;
        }
        long long const number = value.begin<long long>()[index];
        target = static_cast<T>(number);
        return m_limits.contain(number);
    }

    long long write(T number) const {
        if (!std::in_range<long long>(static_cast<Plain>(number))) {
            throw_not_writable("does not fit into an Integer", std::to_string(number));
        }
        return static_cast<long long>(static_cast<Plain>(number));
    }

  private:
    using Plain = std::conditional_t<std::is_same_v<T, char>, signed char, T>;

    NumberLimits m_limits;
};

/// `double` or `float`, from a Double or an Integer, rounded to the nearest.
template <typename T>
class FloatCodec {
  public:
    using Element = double;

    void adopt(Setting & setting) {
        setting.type = ValueTypeId::eId_Double;
        setting.acceptsIntegers = true;
        m_limits = NumberLimits(setting);
    }

    bool read(AttributeValue const & value, unsigned int index, T & target) const {
        if (value.type() == ValueTypeId::typeDouble) {
            double const number = value.begin<double>()[index];
            target = rounded(number);
            return m_limits.contain(number);
        }
        if (value.type() == ValueTypeId::typeInteger) {
            long long const number = value.begin<long long>()[index];
            target = static_cast<T>(number);
            return m_limits.contain(number);
        }
        return false;
    }

    double write(T number) const noexcept { return number; }

  private:
    /// Numbers beyond the range of `float` are its infinities: the conversion itself would be
    /// undefined.
    static T rounded(double number) noexcept {
        constexpr T infinity = std::numeric_limits<T>::infinity();
        if (std::abs(number) <= std::numeric_limits<T>::max() || std::isnan(number)) {
            return static_cast<T>(number);
        }
        return number > 0 ? infinity : -infinity;
    }

    NumberLimits m_limits;
};

/// A String that is one of the names.
template <typename T>
class EnumCodec {
  public:
    using Element = std::string;

    explicit EnumCodec(EnumNames<T> names) noexcept : m_names(std::move(names)) {}

    void adopt(Setting & setting) {
        setting.type = ValueTypeId::eId_String;
        setting.choices.clear();
        for (auto const & [name, constant] : m_names.entries()) {
            setting.choices.push_back(name);
        }
    }

    bool read(AttributeValue const & value, unsigned int index, T & target) const {
        if (value.type() != ValueTypeId::typeString) {
            return false;
        }
        std::string const & text = value.begin<std::string>()[index];
        for (auto const & [name, constant] : m_names.entries()) {
            if (name == text) {
                target = constant;
                return true;
            }
        }
        return false;
    }

    std::string const & write(T constant) const {
        for (auto const & entry : m_names.entries()) {
            if (entry.second == constant) {
                return entry.first;
            }
        }
        throw_not_writable("is no named constant",
                           std::to_string(static_cast<long long>(constant)));
    }

  private:
    EnumNames<T> m_names;
};

/// A map that another binding reads.
template <typename T>
class StructCodec {
  public:
    using Element = AttributeMap;

    explicit StructCodec(Binding<T> binding) noexcept : m_binding(std::move(binding)) {}

    void adopt(Setting & setting) {
        setting.type = ValueTypeId::eId_AttributeMap;
        setting.nested = m_binding.settings();
    }

    bool read(AttributeValue const & value, unsigned int index, T & target) const {
        return value.type() == ValueTypeId::typeAttributeMap &&
               m_binding.fill(value.begin<AttributeMap>()[index], target);
    }

    /// An absent map is read like an empty one: it may lack what is required.
    bool read_absent(T & target) const { return m_binding.fill(AttributeMap(), target); }

    AttributeMap write(T const & object) const { return m_binding.write(object); }

  private:
    Binding<T> m_binding;
};

/// A whole value, whatever it holds: not an element.
struct AnyCodec {
    using Element = void;

    void adopt(Setting & setting) {
        setting.minCount = 0;
        setting.maxCount = Setting::unlimited;
    }
};

} // namespace impl
} // namespace vxattribute
