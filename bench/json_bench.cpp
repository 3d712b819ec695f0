// Reads JSON texts to trees, writes trees as texts, and walks through texts without a tree.

#include "json_documents.h"
#include "json_peers.h"
#include "measure.h"

namespace vxbench {

namespace {

/// Returns the size of the document in kibibytes, the unit of the table.
double kibibytes(JsonDocument const & document) {
    return static_cast<double>(document.text.size()) / 1024;
}

/// Adds "json_read_<document>" and "json_write_<document>".
template <typename Peer>
void add_tree(char const * name, JsonDocument const & document) {
    add("json_read_" + document.name, name, [&document](benchmark::State & state) {
        if (Peer::write(Peer::read(document.text)).size() < document.text.size() / 3) {
            state.SkipWithError("something was not read");
        }
        measure(state, kibibytes(document), [&document] {
            auto const value = Peer::read(document.text);
            benchmark::DoNotOptimize(&value);
        });
    });
    if (document.plain) {
        add("json_write_" + document.name, name, [&document](benchmark::State & state) {
            auto const value = Peer::read(document.text);
            measure(state, kibibytes(document), [&value] {
                std::string const text = Peer::write(value);
                benchmark::DoNotOptimize(text.data());
            });
        });
    }
}

/// Adds "json_walk_<document>".
template <typename Peer>
void add_walk(char const * name, JsonDocument const & document) {
    add("json_walk_" + document.name, name, [&document](benchmark::State & state) {
        if (Peer::count_scalars(document.text) != VxReader::count_scalars(document.text)) {
            state.SkipWithError("the counts of scalars differ");
        }
        measure(state, kibibytes(document),
                [&document] { benchmark::DoNotOptimize(Peer::count_scalars(document.text)); });
    });
}

} // namespace

void add_json_benchmarks() {
    for (JsonDocument const & document : json_documents()) {
        add_tree<VxJson>("vxattribute", document);
        add_walk<VxReader>("vxattribute", document);
        add_walk<VxTokens>("vxjson_tokens", document);
#ifdef VX_BENCH_NLOHMANN
        add_tree<NlohmannJson>("nlohmann", document);
        add_walk<NlohmannJson>("nlohmann", document);
#endif
#ifdef VX_BENCH_RAPIDJSON
        add_tree<RapidJson>("rapidjson", document);
#endif
#ifdef VX_BENCH_BOOST_JSON
        add_tree<BoostJson>("boost_json", document);
        add_walk<BoostJson>("boost_json", document);
#endif
    }
}

} // namespace vxbench
