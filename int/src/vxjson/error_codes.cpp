#include "vxjson/error_codes_internal.h"

namespace vxjson::error {

constinit vxcore::ErrorCode const vxjson("error.vxjson", true);
constinit vxcore::ErrorCode const vxjson_reader("error.vxjson.reader", true);
constinit vxcore::ErrorCode const vxjson_reader_tokenizer("error.vxjson.reader.tokenizer", true);
constinit vxcore::ErrorCode const
    vxjson_reader_tokenizer_stream("error.vxjson.reader.tokenizer.stream", true);
constinit vxcore::ErrorCode const
    vxjson_reader_tokenizer_syntaxError("error.vxjson.reader.tokenizer.syntaxError", true);
constinit vxcore::ErrorCode const vxjson_reader_unexpected("error.vxjson.reader.unexpected", true);
constinit vxcore::ErrorCode const
    vxjson_reader_unexpected_size("error.vxjson.reader.unexpected.size", true);
constinit vxcore::ErrorCode const
    vxjson_reader_unexpected_token("error.vxjson.reader.unexpected.token", true);
constinit vxcore::ErrorCode const vxjson_reader_value("error.vxjson.reader.value", true);
constinit vxcore::ErrorCode const vxjson_value_typeMismatch("error.vxjson.value.typeMismatch",
                                                            true);
constinit vxcore::ErrorCode const vxjson_writer("error.vxjson.writer", true);
constinit vxcore::ErrorCode const vxjson_writer_config("error.vxjson.writer.config", true);
constinit vxcore::ErrorCode const
    vxjson_writer_config_invalidExponent("error.vxjson.writer.config.invalidExponent", true);
constinit vxcore::ErrorCode const vxjson_writer_unexpected("error.vxjson.writer.unexpected", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_character("error.vxjson.writer.unexpected.character", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_container("error.vxjson.writer.unexpected.container", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_container_begin("error.vxjson.writer.unexpected.container.begin",
                                             true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_container_end("error.vxjson.writer.unexpected.container.end", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_literal("error.vxjson.writer.unexpected.literal", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_name("error.vxjson.writer.unexpected.name", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_number("error.vxjson.writer.unexpected.number", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_string("error.vxjson.writer.unexpected.string", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_string_data("error.vxjson.writer.unexpected.string.data", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unexpected_string_end("error.vxjson.writer.unexpected.string.end", true);
constinit vxcore::ErrorCode const vxjson_writer_unsupported("error.vxjson.writer.unsupported",
                                                            true);
constinit vxcore::ErrorCode const
    vxjson_writer_unsupported_value("error.vxjson.writer.unsupported.value", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unsupported_value_inf("error.vxjson.writer.unsupported.value.inf", true);
constinit vxcore::ErrorCode const
    vxjson_writer_unsupported_value_nan("error.vxjson.writer.unsupported.value.nan", true);

} // namespace vxjson::error
