#pragma once

#include "documents.h"

#include "vxattribute/attribute_name_decoder.h"
#include "vxattribute/attribute_name_encoder.h"
#include "vxattribute/bytes.h"
#include "vxcore/string_source.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"
#include "vxserialize/string_target.h"
#include "vxserialize/text_reader.h"

#ifdef VX_BENCH_MSGPACK
#include <msgpack.hpp>
#endif
#ifdef VX_BENCH_FLEXBUFFERS
#include <flatbuffers/flexbuffers.h>
#endif
#ifdef VX_BENCH_NLOHMANN
#include <nlohmann/json.hpp>
#endif

/// Stream forms with one interface; see add_peer in stream_bench.cpp. All write to new memory and
/// read to new objects.
namespace vxbench {

struct VxBinary {
    using Stream = vxcore::RefCountPtr<vxserialize::MemoryList>;

    static vxattribute::AttributeMap const & source(Document const & document) {
        return document.map;
    }

    static vxattribute::AttributeMap const & target(Document const & document) {
        return document.map;
    }

    static std::size_t size(Stream const & stream) { return stream->size(); }

    static Stream write(vxattribute::AttributeMap const & map) {
        vxserialize::MemoryWriter writer;
        map.write(writer);
        return writer.close_and_detach_memory_list();
    }

    static vxattribute::AttributeMap read(Stream const & stream) {
        vxserialize::MemoryReader reader(stream);
        return vxattribute::AttributeMap(reader);
    }
};

/// The binary form as a string, in one call. VxBinary is the same by hand, without the string.
struct VxBytes : VxBinary {
    static std::size_t size(std::string const & stream) { return stream.size(); }

    static std::string write(vxattribute::AttributeMap const & map) {
        return vxattribute::to_bytes(map);
    }

    static vxattribute::AttributeMap read(std::string const & stream) {
        return vxattribute::map_from_bytes(stream);
    }
};

/// The binary form with the names of the document's package as numbers.
struct VxCoded : VxBinary {
    struct Stream {
        VxBinary::Stream list;
        Document const * document;
    };

    static Document const & source(Document const & document) { return document; }

    static std::size_t size(Stream const & stream) { return stream.list->size(); }

    static Stream write(Document const & document) {
        vxserialize::MemoryWriter writer;
        vxattribute::AttributeNameEncoder encoder(document.packages);
        document.map.write(writer, encoder);
        return {writer.close_and_detach_memory_list(), &document};
    }

    static vxattribute::AttributeMap read(Stream const & stream) {
        vxserialize::MemoryReader reader(stream.list);
        vxattribute::AttributeNameDecoder decoder(stream.document->packages, true);
        return vxattribute::AttributeMap(reader, decoder);
    }
};

struct VxText : VxBinary {
    static std::size_t size(std::string const & stream) { return stream.size(); }

    static std::string write(vxattribute::AttributeMap const & map) {
        std::string text;
        vxserialize::StringTarget target(text);
        vxserialize::TextWriter writer(target, {});
        map.write(writer);
        writer.close();
        return text;
    }

    static vxattribute::AttributeMap read(std::string const & text) {
        vxcore::StringSource stream(text);
        vxserialize::TextReader reader(stream, 4096);
        return vxattribute::AttributeMap(reader);
    }
};

#if defined(VX_BENCH_MSGPACK) || defined(VX_BENCH_FLEXBUFFERS)
/// The peers that stream the naive map.
struct PlainPeer {
    static PlainMap const & source(Document const & document) { return document.plain; }

    static PlainMap const & target(Document const & document) { return document.plain; }
};
#endif

#ifdef VX_BENCH_MSGPACK
struct MsgpackCxx : PlainPeer {
    static std::size_t size(msgpack::sbuffer const & stream) { return stream.size(); }

    static msgpack::sbuffer write(PlainMap const & map) {
        msgpack::sbuffer buffer;
        msgpack::packer<msgpack::sbuffer> packer(buffer);
        pack(packer, map);
        return buffer;
    }

    static PlainMap read(msgpack::sbuffer const & stream) {
        msgpack::object_handle const handle = msgpack::unpack(stream.data(), stream.size());
        return to_map(handle.get());
    }

  private:
    using Packer = msgpack::packer<msgpack::sbuffer>;

    static void pack(Packer & packer, std::monostate) { packer.pack_nil(); }

    static void pack(Packer & packer, bool value) {
        value ? packer.pack_true() : packer.pack_false();
    }

    static void pack(Packer & packer, long long value) { packer.pack_long_long(value); }

    static void pack(Packer & packer, double value) { packer.pack_double(value); }

    static void pack(Packer & packer, std::string const & value) {
        packer.pack_str(static_cast<std::uint32_t>(value.size()));
        packer.pack_str_body(value.data(), static_cast<std::uint32_t>(value.size()));
    }

    static void pack(Packer & packer, Bytes const & value) {
        packer.pack_bin(static_cast<std::uint32_t>(value.size()));
        packer.pack_bin_body(reinterpret_cast<char const *>(value.data()),
                             static_cast<std::uint32_t>(value.size()));
    }

    static void pack(Packer & packer, PlainList const & value) {
        packer.pack_array(static_cast<std::uint32_t>(value.size()));
        for (PlainValue const & element : value) {
            pack(packer, element);
        }
    }

    static void pack(Packer & packer, PlainMap const & value) {
        packer.pack_map(static_cast<std::uint32_t>(value.size()));
        for (auto const & [name, element] : value) {
            pack(packer, name);
            pack(packer, element);
        }
    }

    static void pack(Packer & packer, PlainValue const & value) {
        std::visit([&packer](auto const & data) { pack(packer, data); }, value.data);
    }

    static PlainMap to_map(msgpack::object const & object) {
        PlainMap map;
        msgpack::object_map const & source = object.via.map;
        for (msgpack::object_kv const * entry = source.ptr; entry != source.ptr + source.size;
             ++entry) {
            map.emplace_hint(map.end(),
                             std::string(entry->key.via.str.ptr, entry->key.via.str.size),
                             to_value(entry->val));
        }
        return map;
    }

    static PlainValue to_value(msgpack::object const & object) {
        switch (object.type) {
        case msgpack::type::BOOLEAN:
            return {object.via.boolean};
        case msgpack::type::POSITIVE_INTEGER:
        case msgpack::type::NEGATIVE_INTEGER:
            return {static_cast<long long>(object.via.i64)};
        case msgpack::type::FLOAT32:
        case msgpack::type::FLOAT64:
            return {object.via.f64};
        case msgpack::type::STR:
            return {std::string(object.via.str.ptr, object.via.str.size)};
        case msgpack::type::BIN:
            return {Bytes(object.via.bin.ptr, object.via.bin.ptr + object.via.bin.size)};
        case msgpack::type::ARRAY: {
            PlainList list;
            list.reserve(object.via.array.size);
            for (std::uint32_t i = 0; i < object.via.array.size; ++i) {
                list.push_back(to_value(object.via.array.ptr[i]));
            }
            return {std::move(list)};
        }
        case msgpack::type::MAP:
            return {to_map(object)};
        default:
            return {};
        }
    }
};
#endif

#ifdef VX_BENCH_FLEXBUFFERS
struct FlexBuffers : PlainPeer {
    using Stream = std::vector<std::uint8_t>;

    static std::size_t size(Stream const & stream) { return stream.size(); }

    static Stream write(PlainMap const & map) {
        flexbuffers::Builder builder;
        build(builder, map);
        builder.Finish();
        return builder.GetBuffer();
    }

    static PlainMap read(Stream const & stream) {
        return to_map(flexbuffers::GetRoot(stream).AsMap());
    }

  private:
    using Builder = flexbuffers::Builder;

    static void build(Builder & builder, std::monostate) { builder.Null(); }

    static void build(Builder & builder, bool value) { builder.Bool(value); }

    static void build(Builder & builder, long long value) { builder.Int(value); }

    static void build(Builder & builder, double value) { builder.Double(value); }

    static void build(Builder & builder, std::string const & value) { builder.String(value); }

    static void build(Builder & builder, Bytes const & value) { builder.Blob(value); }

    static void build(Builder & builder, PlainList const & value) {
        builder.Vector([&] {
            for (PlainValue const & element : value) {
                build(builder, element);
            }
        });
    }

    static void build(Builder & builder, PlainMap const & value) {
        builder.Map([&] {
            for (auto const & [name, element] : value) {
                builder.Key(name);
                build(builder, element);
            }
        });
    }

    static void build(Builder & builder, PlainValue const & value) {
        std::visit([&builder](auto const & data) { build(builder, data); }, value.data);
    }

    static PlainMap to_map(flexbuffers::Map const & source) {
        PlainMap map;
        flexbuffers::TypedVector const keys = source.Keys();
        flexbuffers::Vector const values = source.Values();
        for (std::size_t i = 0; i < keys.size(); ++i) {
            map.emplace_hint(map.end(), keys[i].AsKey(), to_value(values[i]));
        }
        return map;
    }

    static PlainValue to_value(flexbuffers::Reference source) {
        switch (source.GetType()) {
        case flexbuffers::FBT_BOOL:
            return {source.AsBool()};
        case flexbuffers::FBT_INT:
            return {static_cast<long long>(source.AsInt64())};
        case flexbuffers::FBT_FLOAT:
            return {source.AsDouble()};
        case flexbuffers::FBT_STRING:
            return {source.AsString().str()};
        case flexbuffers::FBT_BLOB: {
            flexbuffers::Blob const blob = source.AsBlob();
            return {Bytes(blob.data(), blob.data() + blob.size())};
        }
        case flexbuffers::FBT_VECTOR: {
            flexbuffers::Vector const elements = source.AsVector();
            PlainList list;
            list.reserve(elements.size());
            for (std::size_t i = 0; i < elements.size(); ++i) {
                list.push_back(to_value(elements[i]));
            }
            return {std::move(list)};
        }
        case flexbuffers::FBT_MAP:
            return {to_map(source.AsMap())};
        default:
            return {};
        }
    }
};
#endif

#ifdef VX_BENCH_NLOHMANN
struct NlohmannPeer {
    static nlohmann::json source(Document const & document) { return to_json(document.plain); }

    static nlohmann::json target(Document const & document) { return to_json(document.plain); }

    template <typename Stream>
    static std::size_t size(Stream const & stream) {
        return stream.size();
    }

  private:
    static nlohmann::json to_json(std::monostate) { return nullptr; }

    template <typename Scalar>
    static nlohmann::json to_json(Scalar const & value) {
        return value;
    }

    static nlohmann::json to_json(Bytes const & value) { return nlohmann::json::binary(value); }

    static nlohmann::json to_json(PlainList const & value) {
        nlohmann::json list = nlohmann::json::array();
        for (PlainValue const & element : value) {
            list.push_back(to_json(element));
        }
        return list;
    }

    static nlohmann::json to_json(PlainMap const & value) {
        nlohmann::json map = nlohmann::json::object();
        for (auto const & [name, element] : value) {
            map.emplace(name, to_json(element));
        }
        return map;
    }

    static nlohmann::json to_json(PlainValue const & value) {
        return std::visit([](auto const & data) { return to_json(data); }, value.data);
    }
};

struct NlohmannMsgpack : NlohmannPeer {
    static Bytes write(nlohmann::json const & json) { return nlohmann::json::to_msgpack(json); }

    static nlohmann::json read(Bytes const & stream) {
        return nlohmann::json::from_msgpack(stream);
    }
};

struct NlohmannCbor : NlohmannPeer {
    static Bytes write(nlohmann::json const & json) { return nlohmann::json::to_cbor(json); }

    static nlohmann::json read(Bytes const & stream) { return nlohmann::json::from_cbor(stream); }
};

struct NlohmannText : NlohmannPeer {
    static std::string write(nlohmann::json const & json) { return json.dump(); }

    static nlohmann::json read(std::string const & stream) { return nlohmann::json::parse(stream); }
};
#endif

} // namespace vxbench
