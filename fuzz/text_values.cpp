/// Converts texts to times, UUIDs, numbers, references, trace levels and paths, and compares the
/// results with plain models. Also converts any value to any type.

#include "check.h"
#include "stream_checks.h"
#include "text_models.h"
#include "value_builder.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_codes.h"
#include "vxcore/error_exception.h"
#include "vxcore/text_conversion.h"
#include "vxuri/uri_reference.h"

#include <bit>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <utility>

using namespace vxattribute;
using vxfuzz::check;

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

namespace {

/// Converts a text. Returns false after the documented failure when it is no `T`.
template <typename T>
bool convert(AttributeValue const & text, T & result) {
    try {
        ConvertableValue(text).assign_to(result);
        return true;
    } catch (vxcore::ErrorException const & e) {
        check(e.info()->code() == vxcore::error::vxcore_conversion,
              "a text that does not convert has its own error");
        check(e.info()->text().size() < 400, "messages are of a modest size");
        return false;
    }
}

/// Parses the text directly and by a conversion, which must agree. Returns null when it is no `T`.
template <typename T>
std::optional<T> parse(std::string const & text) {
    T const kept = vxfuzz::sample<T>();
    T direct = kept;
    T converted = kept;
    bool const isGood = T::parse(text, direct);
    check(convert(text, converted) == isGood, "a conversion accepts what the parser accepts");
    check(converted == direct && (isGood || direct == kept),
          "a failure leaves the target as it was");
    return isGood ? std::optional(direct) : std::nullopt;
}

template <typename Time>
void check_time(Time time) {
    Time again(~time.ticks());
    std::string const text = time.as_string();
    check(Time::parse(text, again) && again == time, "a time is read back from its text");
}

template <typename Time>
void check_time_text(std::string const & text) {
    if (auto const time = parse<Time>(text)) {
        check_time(*time);
    }
}

void check_fields(vxfuzz::Input & input) {
    vxcore::SimpleDateTime::Fields fields;
    fields.year = static_cast<int>(input.number());
    for (auto const field : {&fields.month, &fields.day, &fields.hour, &fields.minute,
                             &fields.second, &fields.fraction}) {
        *field = static_cast<unsigned int>(input.number());
    }
    try {
        vxcore::SimpleDateTime const time(fields);
        check(time.fields() == fields, "a date and time has the fields that it was made of");
        check_time(time);
    } catch (std::out_of_range const &) {
        check(!vxfuzz::is_sure_date(fields), "a good date is accepted");
    }
}

void check_uuid(std::string const & text) {
    auto const uuid = parse<vxcore::Uuid>(text);
    check(uuid.has_value() == vxfuzz::is_uuid(text), "UUIDs and nothing else are accepted");
    if (uuid) {
        std::string const lower = vxfuzz::lower_case(text);
        check(lower == uuid->as_string(0) || lower == uuid->as_string(1),
              "a UUID is written in one of the forms that are read");
    }
}

void check_bool(std::string const & text) {
    bool result = false;
    std::string const lower = vxfuzz::lower_case(text);
    bool isTrue = false;
    bool isFalse = false;
    for (char const * const name : {"true", "yes", "on", "1"}) {
        isTrue = isTrue || lower == name;
    }
    for (char const * const name : {"false", "no", "off", "0"}) {
        isFalse = isFalse || lower == name;
    }
    check(convert(text, result) == (isTrue || isFalse) && result == isTrue,
          "the eight words and nothing else are accepted");
}

void check_double(std::string const & text) {
    double number = 0;
    auto const plain = vxfuzz::plain_double(text);
    check(convert(text, number) == plain.has_value(), "numbers and nothing else are accepted");
    if (plain) {
        check(std::bit_cast<long long>(number) == std::bit_cast<long long>(*plain) ||
                  (std::isnan(number) && std::isnan(*plain)),
              "a text becomes the nearest number");
        vxfuzz::check_round_trip(number);
    }
}

template <typename... Integers>
void check_integers(std::string const & text) {
    auto const check_one = [&text]<typename T>(T number) {
        auto const plain = vxfuzz::plain_integer<T>(text);
        T const kept = number;
        check(convert(text, number) == plain.has_value(),
              "integers in range and nothing else are accepted");
        check(number == plain.value_or(kept), "a text becomes the integer that it shows");
        if (plain && !std::is_same_v<T, char>) {
            std::string shown;
            if constexpr (std::is_signed_v<T>) {
                shown = vxcore::to_string(static_cast<long long>(number));
            } else {
                shown = vxcore::to_string(static_cast<unsigned long long>(number));
            }
            check(vxfuzz::plain_integer<T>(shown) == plain, "an integer is written as it is read");
        }
    };
    (check_one(static_cast<Integers>(77)), ...);
}

void check_reference(std::string const & text, std::string const & other) {
    using vxuri::UriReference;
    UriReference const reference = UriReference::parse(text);
    check(reference.text() == text && reference.empty() == text.empty(), "a text stays as it is");
    check(!reference.is_undefined(), "what was read is not undefined");
    vxfuzz::check_components(reference);
    check(!reference.is_strict() || vxfuzz::has_only_uri_characters(text),
          "a strict reference has no other characters");

    UriReference const flipped = UriReference::parse(vxfuzz::flip_escapes(text));
    check(reference == flipped && reference.hash() == flipped.hash() &&
              reference.is_strict() == flipped.is_strict(),
          "digits of escapes may be in either case");

    UriReference const second = UriReference::parse(other);
    int const order = vxfuzz::order_of_references(text, other);
    auto const sign = [](int number) { return (number > 0) - (number < 0); };
    check(sign(reference.compare(second)) == order && sign(second.compare(reference)) == -order,
          "references are in the order of their folded bytes");
    check((reference == second) == (order == 0), "references are equal when they compare as 0");
    vxfuzz::check_round_trip(reference);
}

void check_trace_level(AttributeValue const & value) {
    static Query const query = Query("trace_level").scalar(true);
    char level = 77;
    Query::ErrorPtr error;
    Attribute const found =
        query.execute(make_map({{"trace_level", value}}), TraceLevel(level), &error);
    auto const number = static_cast<signed char>(level);
    check(found.name().empty() == (error != nullptr), "a level is found or there is a failure");
    if (error) {
        check(error->matches(error::vxattribute_query) &&
                  Query::bad_attribute_name(error) == "trace_level",
              "a failure names the setting");
        check(number == 77 || number < -1 || number > 100, "a level in range does not fail");
        return;
    }
    check(number >= -1 && number <= 100, "a level is in its range");
    auto const plain = vxfuzz::plain_level(value);
    check(plain && *plain == number, "a level is the one that is written");
}

void check_paths(vxfuzz::Input & input) {
    MutableAttributeMap map = make_map({{"a", 1}, {"b", make_map({{"", 2}})}});
    map.add("c", make_list<AttributeMap>({make_map({{"a", 1}}), AttributeMap()}));
    while (!input.at_end()) {
        std::string const path = input.text(40);
        AttributeMap const before = map;
        try {
            set_path(map, path, 4);
            AttributeValue const * const value = find_path(map, path);
            check(value != nullptr && *value == AttributeValue(4),
                  "a value is found where it was put");
        } catch (vxcore::ErrorException const &) {
            check(map == before, "a path that leads nowhere changes nothing");
        }
        MutableAttributeMap single;
        single.add(path, 5);
        check(find_path(single, path_step(path)) != nullptr, "a name of any bytes is a step");
    }
}

/// Returns the element that equals the target: integers become `long long`, and a `char` is signed.
template <typename T>
auto element_of(T const & target) {
    if constexpr (std::is_same_v<T, char>) {
        return static_cast<long long>(static_cast<signed char>(target));
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return static_cast<long long>(target);
    } else {
        return target;
    }
}

template <typename T>
void check_conversion(AttributeValue const & value) {
    constexpr bool isInteger = std::is_integral_v<T> && !std::is_same_v<T, bool>;
    using Element = std::conditional_t<isInteger, long long, T>;
    bool const isOwn = value.type() == impl::ValueTypeTraits<Element>::type();
    bool const isText = value.type() == ValueTypeId::typeString;
    T const kept = vxfuzz::sample<T>();
    T target = kept;
    try {
        ConvertableValue(value).assign_to(target);
        check((isOwn || isText) && value.size() <= 1, "only a scalar of a fitting type converts");
        if (isOwn) {
            check(AttributeValue(element_of(target)).compare(value.get<Element>()) == 0,
                  "an element of the same type is not changed");
        }
    } catch (vxcore::ErrorException const & e) {
        check(target == kept, "a failure leaves the target as it was");
        vxcore::ErrorCode const code = e.info()->code();
        if (!isOwn && !isText) {
            check(code == (isInteger || std::is_same_v<T, std::string>
                               ? error::vxattribute_value_type_mismatch
                               : error::vxattribute_query_typeConversion),
                  "another type has its own error");
        } else if (value.size() > 1) {
            check(code == error::vxattribute_value_cardinality_expectSingle,
                  "several elements have their own error");
        } else if (isText) {
            check(code == vxcore::error::vxcore_conversion, "a bad text has its own error");
        } else {
            check(isInteger && code == vxcore::error::vxcore_conversion_truncated &&
                      !vxfuzz::fits<T>(value.get<long long>()),
                  "an integer that fits converts");
        }
    }
}

template <typename... Types>
void check_conversions(AttributeValue const & value) {
    (check_conversion<Types>(value), ...);
}

void check_any_value(vxfuzz::Input & input) {
    AttributeValue const value = vxfuzz::ValueBuilder(input).value();
    check_trace_level(value);
    check_conversions<bool, char, signed char, unsigned char, short, unsigned short, int,
                      unsigned int, long, unsigned long, long long, unsigned long long, double,
                      std::string, vxcore::Uuid, vxuri::UriReference, vxcore::AbsoluteTime,
                      vxcore::RelativeTime, vxcore::SimpleDateTime>(value);
}

void check_ticks(vxfuzz::Input & input) {
    while (!input.at_end()) {
        long long const ticks = input.number();
        check_time(vxcore::AbsoluteTime(ticks));
        check_time(vxcore::RelativeTime(ticks));
        vxcore::SimpleDateTime const time(ticks);
        check_time(time);
        check(vxcore::SimpleDateTime(time.fields()) == time, "a time is made of its fields");
    }
}

void check_references(vxfuzz::Input & input) {
    std::string const first = input.text(255);
    check_reference(first, input.text(255));
}

} // namespace

/// The first byte selects the check; the rest is its input.
extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    std::string const text(reinterpret_cast<char const *>(data) + 1, size - 1);
    vxfuzz::Input input(data + 1, size - 1);
    switch (data[0] % 13) {
    case 0:
        check_time_text<vxcore::AbsoluteTime>(text);
        break;
    case 1:
        check_time_text<vxcore::RelativeTime>(text);
        break;
    case 2:
        check_time_text<vxcore::SimpleDateTime>(text);
        break;
    case 3:
        check_uuid(text);
        break;
    case 4:
        check_bool(text);
        break;
    case 5:
        check_double(text);
        break;
    case 6:
        check_integers<char, signed char, unsigned char, short, unsigned short, int, unsigned int,
                       long, unsigned long, long long, unsigned long long>(text);
        break;
    case 7:
        check_references(input);
        break;
    case 8:
        check_trace_level(text);
        break;
    case 9:
        check_paths(input);
        break;
    case 10:
        check_any_value(input);
        break;
    case 11:
        check_ticks(input);
        break;
    default:
        check_fields(input);
    }
    return 0;
}
