// Documents written to streams and read back: the binary form beside the binary forms of others,
// the text form beside JSON.

#include "documents.h"
#include "measure.h"
#include "stream_peers.h"

namespace vxbench {

namespace {

/// Adds "binary_write_<document>" and "binary_read_<document>", or those of text. The counter
/// `bytes` tells the size of what is written.
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

} // namespace

void add_stream_benchmarks() {
    for (std::size_t i = 0; i < documents().size(); ++i) {
        add_peer<VxBinary>("binary", "vxattribute", i);
        add_peer<VxText>("text", "vxattribute", i);
#ifdef VX_BENCH_MSGPACK
        add_peer<MsgpackCxx>("binary", "msgpack_cxx", i);
#endif
#ifdef VX_BENCH_FLEXBUFFERS
        add_peer<FlexBuffers>("binary", "flexbuffers", i);
#endif
#ifdef VX_BENCH_NLOHMANN
        add_peer<NlohmannMsgpack>("binary", "nlohmann_msgpack", i);
        add_peer<NlohmannCbor>("binary", "nlohmann_cbor", i);
        if (documents()[i].name == "settings" || documents()[i].name == "records") {
            add_peer<NlohmannText>("text", "nlohmann_json", i); // JSON has no binary blocks
        }
#endif
    }
}

} // namespace vxbench
