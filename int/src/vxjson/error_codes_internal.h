#pragma once

#include "vxcore/error_code.h"

/// The error codes of vxjson. The names are internal; callers match codes by their text.
///
/// Some are never raised: `value_typeMismatch`, and inner codes, with which callers match a whole
/// family. They too exist in every process that has loaded the library.
namespace vxjson::error {

extern vxcore::ErrorCode const vxjson;
extern vxcore::ErrorCode const vxjson_reader;
extern vxcore::ErrorCode const vxjson_reader_tokenizer;
extern vxcore::ErrorCode const vxjson_reader_tokenizer_stream;
extern vxcore::ErrorCode const vxjson_reader_tokenizer_syntaxError;
extern vxcore::ErrorCode const vxjson_reader_unexpected;
extern vxcore::ErrorCode const vxjson_reader_unexpected_size;
extern vxcore::ErrorCode const vxjson_reader_unexpected_token;
extern vxcore::ErrorCode const vxjson_reader_value;
extern vxcore::ErrorCode const vxjson_value_typeMismatch;
extern vxcore::ErrorCode const vxjson_writer;
extern vxcore::ErrorCode const vxjson_writer_config;
extern vxcore::ErrorCode const vxjson_writer_config_invalidExponent;
extern vxcore::ErrorCode const vxjson_writer_unexpected;
extern vxcore::ErrorCode const vxjson_writer_unexpected_character;
extern vxcore::ErrorCode const vxjson_writer_unexpected_container;
extern vxcore::ErrorCode const vxjson_writer_unexpected_container_begin;
extern vxcore::ErrorCode const vxjson_writer_unexpected_container_end;
extern vxcore::ErrorCode const vxjson_writer_unexpected_literal;
extern vxcore::ErrorCode const vxjson_writer_unexpected_name;
extern vxcore::ErrorCode const vxjson_writer_unexpected_number;
extern vxcore::ErrorCode const vxjson_writer_unexpected_string;
extern vxcore::ErrorCode const vxjson_writer_unexpected_string_data;
extern vxcore::ErrorCode const vxjson_writer_unexpected_string_end;
extern vxcore::ErrorCode const vxjson_writer_unsupported;
extern vxcore::ErrorCode const vxjson_writer_unsupported_value;
extern vxcore::ErrorCode const vxjson_writer_unsupported_value_inf;
extern vxcore::ErrorCode const vxjson_writer_unsupported_value_nan;

} // namespace vxjson::error
