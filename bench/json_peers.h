#pragma once

/// The same tasks for each JSON library: reads a text to a tree, writes a tree as text, and counts
/// the scalars of a text without a tree.

#include "vxattribute/json_text.h"

#ifdef VX_BENCH_NLOHMANN
#include <nlohmann/json.hpp>
#endif
#ifdef VX_BENCH_BOOST_JSON
#include <boost/json.hpp>
#include <boost/json/basic_parser_impl.hpp>
#endif
#ifdef VX_BENCH_RAPIDJSON
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#endif

#include <string>

namespace vxbench {

struct VxJson {
    static vxattribute::AttributeValue read(std::string const & text) {
        return vxattribute::value_from_json(text);
    }

    static std::string write(vxattribute::AttributeValue const & value) {
        return vxattribute::value_to_json(value);
    }
};

/// Counts scalars with the tokenizer alone.
struct VxTokens {
    static unsigned int count_scalars(std::string const & text) {
        using namespace vxjson;
        Tokenizer tokenizer(text.data(), text.size());
        unsigned int count = 0;
        bool isName = false;
        for (EToken token = tokenizer.next(); token != eToken_DocumentEnd;
             token = tokenizer.next()) {
            if (token == eToken_Punctuator) {
                StringSlice slice;
                isName = tokenizer.text(slice)[0] == ':';
                count -= isName ? 1 : 0; // the string before it was a name
            }
            count += token == eToken_StringBegin || (token >= eToken_True && token <= eToken_Null);
        }
        return count;
    }
};

/// Counts scalars with the reader, without their texts.
struct VxReader {
    static unsigned int count_scalars(std::string const & text) {
        vxjson::Document document(text.data(), text.size(), vxattribute::JsonReadOptions());
        unsigned int count = 0;
        while (auto const value = document.reader().next_value()) {
            count += value->type() >= vxjson::Reader::Value::eType_Null ? 1 : 0;
        }
        return count;
    }
};

#ifdef VX_BENCH_NLOHMANN
struct NlohmannJson {
    static nlohmann::json read(std::string const & text) { return nlohmann::json::parse(text); }

    static std::string write(nlohmann::json const & value) { return value.dump(); }

    /// Receives the events of the parser.
    struct Counter {
        unsigned int count = 0;

        bool scalar() {
            ++count;
            return true;
        }

        bool null() { return scalar(); }

        bool boolean(bool) { return scalar(); }

        bool number_integer(long long) { return scalar(); }

        bool number_unsigned(unsigned long long) { return scalar(); }

        bool number_float(double, std::string const &) { return scalar(); }

        bool string(std::string &) { return scalar(); }

        bool binary(nlohmann::json::binary_t &) { return false; }

        bool start_object(std::size_t) { return true; }

        bool key(std::string &) { return true; }

        bool end_object() { return true; }

        bool start_array(std::size_t) { return true; }

        bool end_array() { return true; }

        bool parse_error(std::size_t, std::string const &, nlohmann::json::exception const &) {
            return false;
        }
    };

    static unsigned int count_scalars(std::string const & text) {
        Counter counter;
        return nlohmann::json::sax_parse(text, &counter) ? counter.count : 0;
    }
};
#endif

#ifdef VX_BENCH_RAPIDJSON
struct RapidJson {
    static rapidjson::Document read(std::string const & text) {
        rapidjson::Document document;
        document.Parse(text.data(), text.size());
        return document;
    }

    static std::string write(rapidjson::Document const & value) {
        rapidjson::StringBuffer buffer;
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        value.Accept(writer);
        return std::string(buffer.GetString(), buffer.GetSize());
    }
};
#endif

#ifdef VX_BENCH_BOOST_JSON
struct BoostJson {
    static boost::json::value read(std::string const & text) { return boost::json::parse(text); }

    static std::string write(boost::json::value const & value) {
        return boost::json::serialize(value);
    }

    /// Receives the events of the parser.
    struct Counter {
        using error_code = boost::json::error_code;
        using string_view = boost::json::string_view;

        static constexpr std::size_t max_object_size = ~std::size_t{0};
        static constexpr std::size_t max_array_size = ~std::size_t{0};
        static constexpr std::size_t max_key_size = ~std::size_t{0};
        static constexpr std::size_t max_string_size = ~std::size_t{0};

        unsigned int count = 0;

        bool scalar() {
            ++count;
            return true;
        }

        bool on_document_begin(error_code &) { return true; }

        bool on_document_end(error_code &) { return true; }

        bool on_object_begin(error_code &) { return true; }

        bool on_object_end(std::size_t, error_code &) { return true; }

        bool on_array_begin(error_code &) { return true; }

        bool on_array_end(std::size_t, error_code &) { return true; }

        bool on_key_part(string_view, std::size_t, error_code &) { return true; }

        bool on_key(string_view, std::size_t, error_code &) { return true; }

        bool on_string_part(string_view, std::size_t, error_code &) { return true; }

        bool on_string(string_view, std::size_t, error_code &) { return scalar(); }

        bool on_number_part(string_view, error_code &) { return true; }

        bool on_int64(std::int64_t, string_view, error_code &) { return scalar(); }

        bool on_uint64(std::uint64_t, string_view, error_code &) { return scalar(); }

        bool on_double(double, string_view, error_code &) { return scalar(); }

        bool on_bool(bool, error_code &) { return scalar(); }

        bool on_null(error_code &) { return scalar(); }

        bool on_comment_part(string_view, error_code &) { return true; }

        bool on_comment(string_view, error_code &) { return true; }
    };

    static unsigned int count_scalars(std::string const & text) {
        boost::json::basic_parser<Counter> parser{boost::json::parse_options()};
        boost::json::error_code error;
        parser.write_some(false, text.data(), text.size(), error);
        return error ? 0 : parser.handler().count;
    }
};
#endif

} // namespace vxbench
