#include "vxcore/error_exception.h"
#include "vxcore/text_conversion.h"
#include "vxjson/error_codes_internal.h"
#include "vxjson/position_message_internal.h"
#include "vxjson/reader.h"

#include <new>

namespace vxjson {

namespace {

constexpr char const * unexpected_token = "Unexpected tokenizer token: {@token}";

vxcore::ErrorParams one_param(char const * name, std::string value) {
    vxcore::ErrorParams params;
    params.insert_ref(vxcore::SourceString(name, true)) = std::move(value);
    return params;
}

} // namespace

/// Keeps the tokenizer's error as the last failure of the reader. Creates one if the tokenizer has
/// none; without an error the failure would look like the end of the document.
void Reader::keep_tokenizer_error() noexcept {
    m_failed = true;
    try {
        vxcore::ErrorInfo::Ptr info;
        m_tokenizer->error(info);
        if (!info) {
            SourcePosition position;
            m_tokenizer->position(position);
            info =
                impl::create_positioned(error::vxjson_reader_unexpected_token, unexpected_token,
                                        one_param("token", to_string(eToken_Error)),
                                        VXCORE_LOCATION("vxjson::Reader::next_token()"), position);
        }
        m_error = std::move(info);
    } catch (...) {
        // Out of memory. m_failed is set, and stop() raises std::bad_alloc.
    }
}

/// The last step of every failure: ends the reader and raises.
void Reader::stop(vxcore::ErrorInfo::Ptr info) {
    m_failed = true;
    drop_values();
    m_error = info;
    if (!info) {
        throw std::bad_alloc(); // keep_tokenizer_error() had no memory for an error
    }
    vxcore::ErrorException::throw_error(std::move(info));
}

void Reader::fail(std::string_view message, vxcore::ErrorParams params,
                  vxcore::SourceLocation location, vxcore::ErrorInfo::Ptr nested) {
    fail(error::vxjson_reader, message, std::move(params), std::move(location), std::move(nested));
}

void Reader::fail(vxcore::ErrorCode const & code, std::string_view message,
                  vxcore::ErrorParams params, vxcore::SourceLocation location,
                  vxcore::ErrorInfo::Ptr nested) {
    m_failed = true;
    SourcePosition position;
    m_tokenizer->position(position);
    stop(impl::create_positioned(code, message, std::move(params), std::move(location), position,
                                 std::move(nested)));
}

void Reader::fail_after_error(vxcore::ErrorCode const & code, vxcore::SourceLocation location) {
    fail(code, "Value cannot be read after a parse error", {}, std::move(location));
}

void Reader::fail_unexpected(vxcore::SourceLocation location) {
    fail(error::vxjson_reader_unexpected_token, unexpected_token,
         one_param("token", to_string(m_token)), std::move(location));
}

void Reader::fail_name(std::string && name, vxcore::SourceLocation location) {
    fail("A JSON field '{@name}' has a name that is a reserved keyword. In order to use this "
         "name the reader option 'allow_reserved_names' has to be set.",
         one_param("name", std::move(name)), std::move(location));
}

void Reader::throw_string_size_error() {
    fail(error::vxjson_reader_unexpected_size,
         "Node value exceeds {@maxSize}bytes of character data",
         one_param("maxSize", vxcore::to_string(sm_maxStringSize)),
         VXCORE_LOCATION("vxjson::Reader::throw_string_size_error()"));
}

} // namespace vxjson
