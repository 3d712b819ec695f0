#pragma once

/// Peers that read JSON in another way than into a tree of their own: into memory that is freed as
/// a whole, or with a conversion afterwards. The table shows them for information.

#include "plain_map.h"

#ifdef VX_BENCH_BOOST_JSON
#include <boost/json.hpp>
#endif
#ifdef VX_BENCH_SIMDJSON
#include <simdjson.h>
#endif

#include <string>

namespace vxbench {

#ifdef VX_BENCH_BOOST_JSON
/// Reads into blocks that are freed together; no value of the tree frees anything.
struct BoostJsonArena {
    static bool read(std::string const & text) {
        boost::json::monotonic_resource memory;
        return !boost::json::parse(text, &memory).is_null();
    }
};
#endif

#ifdef VX_BENCH_SIMDJSON
/// Reads onto the tape of a parser that is kept, so that its memory is reused.
struct SimdjsonTape {
    static bool read(std::string const & text) {
        static simdjson::dom::parser parser;
        return parser.parse(text).error() == simdjson::SUCCESS;
    }
};

/// Reads onto a tape and converts that to a tree of standard containers.
struct SimdjsonTree {
    static bool read(std::string const & text) {
        static simdjson::dom::parser parser;
        PlainValue const value = to_plain(parser.parse(text).value());
        return value.data.index() != 0;
    }

  private:
    static PlainValue to_plain(simdjson::dom::element element) {
        using simdjson::dom::element_type;
        switch (element.type()) {
        case element_type::ARRAY: {
            simdjson::dom::array const array = element.get_array().value();
            PlainList list;
            for (simdjson::dom::element const item : array) {
                list.push_back(to_plain(item));
            }
            return {std::move(list)};
        }
        case element_type::OBJECT: {
            simdjson::dom::object const object = element.get_object().value();
            PlainMap map;
            for (auto const & [name, item] : object) {
                map.insert_or_assign(std::string(name), to_plain(item));
            }
            return {std::move(map)};
        }
        case element_type::INT64:
            return {static_cast<long long>(element.get_int64().value())};
        case element_type::UINT64:
            return {static_cast<long long>(element.get_uint64().value())};
        case element_type::DOUBLE:
            return {element.get_double().value()};
        case element_type::STRING:
            return {std::string(element.get_string().value())};
        case element_type::BOOL:
            return {element.get_bool().value()};
        default:
            return {};
        }
    }
};
#endif

} // namespace vxbench
