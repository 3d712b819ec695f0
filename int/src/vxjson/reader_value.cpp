#include "vxcore/error_exception.h"
#include "vxcore/text_conversion.h"
#include "vxcore/text_size.h"
#include "vxjson/error_codes_internal.h"
#include "vxjson/number_text_internal.h"
#include "vxjson/reader.h"
#include "vxjson/value_read_stream_internal.h"

#include <ostream>

namespace vxjson {

using Value = Reader::Value;

namespace {

constexpr char const * no_string = "Cannot return current value type <{@type}> as a string";

} // namespace

Value::Value(Reader & reader, ValuePtr parent, EType type, std::string && name)
    : m_reader(&reader), m_parent(std::move(parent)), m_depth(m_parent ? m_parent->m_depth + 1 : 0),
      m_type(type), m_name(std::move(name)) {}

Value::~Value() {
    if (m_stream) {
        static_cast<ValueReadStreamImpl *>(m_stream.get())->drop_value();
    }
    // Releases a long chain of parents in a loop, since the destructor of the member would recurse.
    ValuePtr next = std::move(m_parent);
    while (next && next->has_unique_ref()) {
        next = std::move(next->m_parent);
    }
}

/// Creates a value inside the current one, from the spare object if there is one.
Reader::ValuePtr Value::make(Reader & reader, EType type, std::string && name) {
    if (!reader.m_spare) {
        return ValuePtr(new Value(reader, reader.m_current, type, std::move(name)));
    }
    reader.m_spare->reuse(reader.m_current, type, std::move(name));
    return std::move(reader.m_spare);
}

/// True when only the caller holds this value and no stream of it exists.
bool Value::is_reusable() const noexcept {
    constexpr std::size_t maxKept = 65536; // bytes; longer texts are freed
    return has_unique_ref() && !m_stream && m_data.capacity() <= maxKept;
}

/// Turns this object into the next value and keeps its memory.
void Value::reuse(ValuePtr const & parent, EType type, std::string && name) noexcept {
    if (m_parent != parent) { // rare: most neighbours have the same parent
        m_parent = parent;
        m_depth = parent->m_depth + 1;
    }
    m_type = type;
    m_name.swap(name);
    m_state = eState_Unread;
    m_wasLoaded = false;
    m_streamPos = 0;
    m_data.clear();
}

/// The last step of construction: copies the text of a literal or number from the tokenizer.
void Value::read_token_value() {
    if (m_type == eType_Null || m_type == eType_Boolean || m_type == eType_Number) {
        m_data = m_reader->token_text();
        m_state = eState_Loaded;
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
    return m_data;
}

std::string Value::take_string() {
    as_string();
    return std::exchange(m_data, {});
}

/// Reads the whole text of a string, if the tokenizer still has it.
void Value::load_string() {
    EToken const token = m_reader->m_token;
    if (token != eToken_StringBegin && token != eToken_CharData && token != eToken_StringEnd) {
        m_reader->fail(error::vxjson_reader_value, "The current value is no longer available", {},
                       VXCORE_LOCATION("vxjson::Reader:Value::as_string()"));
    }
    m_data = m_reader->read_char_data();
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
        value = impl::read_number(m_data, nullptr);
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
        unsigned int const size = vxcore::text_size(m_data.size());
        if (size == 0) {
            vxcore::impl::string_to_failure(m_data.data(), size, "bool", nullptr);
        } else {
            value = vxcore::impl::string_to_bool(m_data.data(), size, nullptr);
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
