// Writes documents to streams and reads them back: the binary form beside the binary forms of other
// libraries, the text form beside JSON, and coded names beside plain ones.

#include "documents.h"
#include "measure.h"
#include "stream_peers.h"

#include "vxattribute/elements.h"

namespace vxbench {

namespace {

/// Adds "binary_write_<document>" and "binary_read_<document>", or those of text. The counter
/// `bytes` is the size of what is written.
///
/// A peer makes its `Source` of a document, writes it to its `Stream` and reads that to its
/// `Target`.
template <typename Peer>
void add_peer(std::string const & form, char const * name, std::size_t index) {
    Document const & document = documents()[index];
    add(form + "_write_" + document.name, name, [&document](benchmark::State & state) {
        auto const source = Peer::source(document);
        state.counters["bytes"] = static_cast<double>(Peer::size(Peer::write(source)));
        state.counters["values"] = document.attributes;
        measure(state, document.attributes, [&source] {
            auto stream = Peer::write(source);
            benchmark::DoNotOptimize(stream);
        });
    });
    add(form + "_read_" + document.name, name, [&document](benchmark::State & state) {
        auto const stream = Peer::write(Peer::source(document));
        if (!(Peer::read(stream) == Peer::target(document))) {
            state.SkipWithError("what was read back differs");
        }
        measure(state, document.attributes, [&stream] {
            auto target = Peer::read(stream);
            benchmark::DoNotOptimize(target);
        });
    });
}

#ifdef VX_BENCH_NLOHMANN
/// Returns the bytes of a CBOR head: a type with a number (RFC 8949).
std::size_t cbor_head(std::size_t number) noexcept {
    return number < 24 ? 1 : number < 256 ? 2 : number < 65536 ? 3 : 5;
}

/// Returns the bytes that integer keys would save, each the position of a name in its package.
std::size_t saved_by_integer_keys(vxattribute::AttributeMapBase const & map,
                                  vxattribute::AttributeNamePackageSet const & packages) {
    std::size_t saved = 0;
    for (auto const & [name, value] : map) {
        if (auto const package = packages.find(name); package != packages.end()) {
            auto const position = (*package)->find(name) - (*package)->begin();
            saved += cbor_head(name.size()) + name.size() -
                     cbor_head(static_cast<std::size_t>(position));
        }
        if (value.type() == vxattribute::ValueTypeId::typeAttributeMap) {
            for (auto const & inner : vxattribute::elements<vxattribute::AttributeMap>(value)) {
                saved += saved_by_integer_keys(inner, packages);
            }
        }
    }
    return saved;
}

/// Reports the size of CBOR with integer keys, to compare with the coded form. The library has text
/// keys only, so the size is computed, not written.
void add_cbor_with_integer_keys(std::size_t index) {
    Document const & document = documents()[index];
    add("coded_size_" + document.name, "cbor_integer_keys", [&document](benchmark::State & state) {
        std::size_t const size = NlohmannCbor::write(NlohmannCbor::source(document)).size();
        state.counters["bytes"] =
            static_cast<double>(size - saved_by_integer_keys(document.map, *document.packages));
        measure(state, document.attributes, [] {});
    });
}
#endif

} // namespace

void add_stream_benchmarks() {
    for (std::size_t i = 0; i < documents().size(); ++i) {
        add_peer<VxBinary>("binary", "vxattribute", i);
        add_peer<VxBytes>("binary", "to_bytes", i);
        add_peer<VxText>("text", "vxattribute", i);
        add_peer<VxCoded>("coded", "vxattribute", i);
        add_peer<VxBinary>("coded", "plain", i);
#ifdef VX_BENCH_MSGPACK
        add_peer<MsgpackCxx>("binary", "msgpack_cxx", i);
#endif
#ifdef VX_BENCH_FLEXBUFFERS
        add_peer<FlexBuffers>("binary", "flexbuffers", i);
#endif
#ifdef VX_BENCH_NLOHMANN
        add_peer<NlohmannMsgpack>("binary", "nlohmann_msgpack", i);
        add_peer<NlohmannCbor>("binary", "nlohmann_cbor", i);
        add_cbor_with_integer_keys(i);
        if (documents()[i].name == "settings" || documents()[i].name == "records") {
            add_peer<NlohmannText>("text", "nlohmann_json", i); // JSON has no binary blocks
        }
#endif
    }
}

} // namespace vxbench
