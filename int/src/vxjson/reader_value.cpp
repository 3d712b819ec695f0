#include "vxcore/error_exception.h"
#include "vxcore/text_conversion.h"
#include "vxcore/text_size.h"
#include "vxjson/error_codes_internal.h"
#include "vxjson/number_text_internal.h"
#include "vxjson/reader_steps_internal.h"
#include "vxjson/value_read_stream_internal.h"

#include <ostream>

namespace vxjson {

using Value = Reader::Value;

namespace {

constexpr char const * no_string = "Cannot return current value type <{@type}> as a string";

} // namespace

Value::~Value() {
    if (m_stream) {
        static_cast<ValueReadStreamImpl *>(m_stream.get())->drop_value();
    }
    // Releases a long chain of values in a loop, since the destructor of the member would recurse.
    ValuePtr next = std::move(m_inner);
    while (next && next->has_unique_ref()) {
        next = std::move(next->m_inner);
    }
}

std::string const & Value::as_string(ErrorSlot error) {
    constexpr char const * function = "vxjson::Reader:Value::as_string()";
    try {
        if (m_state == eState_Failed) {
            m_reader->fail_after_error(error::vxjson_reader_value, VXCORE_LOCATION(function));
        }
        if (m_state != eState_Loaded) {
            check_scalar(eType_String, no_string, function);
            load_string();
        }
    } catch (std::exception const & e) {
        take_failure(e, error, function);
    }
    return m_data.string();
}

std::string Value::take_string() {
    as_string();
    return std::exchange(m_data.string(), {});
}

/// Reads the whole text of a string, if the tokenizer still has it.
void Value::load_string() {
    EToken const token = m_reader->m_token;
    if (token != eToken_StringBegin && token != eToken_CharData && token != eToken_StringEnd) {
        m_reader->fail(error::vxjson_reader_value, "The current value is no longer available", {},
                       VXCORE_LOCATION("vxjson::Reader:Value::as_string()"));
    }
    try {
        m_reader->read_char_data(m_data.string());
    } catch (...) {
        m_data.clear();
        throw;
    }
    m_state = eState_Loaded;
}

double Value::as_double(ErrorSlot error) {
    constexpr char const * function = "vxjson::Reader:Value::as_double()";
    double value = 0;
    try {
        if (m_state == eState_Failed) {
            m_reader->fail_after_error(error::vxjson_reader_value, VXCORE_LOCATION(function));
        }
        check_scalar(eType_Number, "Cannot return current value type <{@type}> as a double",
                     function);
        value = impl::read_number(m_data.view(), nullptr);
    } catch (std::exception const & e) {
        take_failure(e, error, function);
    }
    return value;
}

bool Value::as_bool(ErrorSlot error) {
    constexpr char const * function = "vxjson::Reader:Value::as_bool()";
    bool value = false;
    try {
        if (m_state == eState_Failed) {
            m_reader->fail_after_error(error::vxjson_reader_value, VXCORE_LOCATION(function));
        }
        check_scalar(eType_Boolean, "Cannot return current value type <{@type}> as a bool",
                     function);
        std::string_view const text = m_data.view();
        unsigned int const size = vxcore::text_size(text.size());
        if (size == 0) {
            vxcore::impl::string_to_failure(text.data(), size, "bool", nullptr);
        } else {
            value = vxcore::impl::string_to_bool(text.data(), size, nullptr);
        }
    } catch (std::exception const & e) {
        take_failure(e, error, function);
    }
    return value;
}

Value::StreamPtr Value::as_stream(ErrorSlot error) {
    constexpr char const * function = "vxjson::Reader::Value::as_stream()";
    try {
        check_scalar(eType_String, no_string, function);
        if (!m_stream) {
            auto owner = vxcore::make_ref_counted<ValueReadStreamImpl>(*this);
            ValueReadStreamImpl * const stream = owner.get();
            m_stream = StreamPtr(stream, std::move(owner));
        }
        return m_stream;
    } catch (std::exception const & e) {
        take_failure(e, error, function);
    }
    return {};
}

/// Fails the reader unless the value has the given type.
void Value::check_scalar(EType type, char const * message, char const * function) {
    if (m_type != type) {
        vxcore::ErrorParams params;
        params.insert_ref(vxcore::SourceString("type", true)) = to_string(m_type);
        m_reader->fail(error::vxjson_reader_value, message, std::move(params),
                       VXCORE_LOCATION(function));
    }
}

/// Marks the value as failed. Stores the failure in `*error`, or raises it if `error` is null.
void Value::take_failure(std::exception const & e, ErrorSlot error, char const * function) {
    m_state = eState_Failed;
    vxcore::ErrorInfo::Ptr info = vxcore::ErrorInfo::from_exception(e, VXCORE_LOCATION(function));
    if (error == nullptr) {
        vxcore::throw_error(std::move(info));
    }
    *error = std::move(info);
}

std::string to_string(Value::EType type) {
    static constexpr char const * names[] = {"Root",    "Object", "Array", "Null",
                                             "Boolean", "Number", "String"};
    if (type >= Value::eType_Root && type <= Value::eType_String) {
        return names[type];
    }
    return "##InvalidType(" + vxcore::to_string(static_cast<int>(type)) + ")##";
}

std::ostream & operator<<(std::ostream & stream, Value::EType type) {
    return stream << to_string(type);
}

} // namespace vxjson
