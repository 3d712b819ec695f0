// Reads JSON texts to trees, writes trees as texts, and walks through texts without a tree.

#include "json_arena_peers.h"
#include "json_documents.h"
#include "json_peers.h"
#include "measure.h"
#include "peak_memory.h"

#include "vxcore/string_source.h"

namespace vxbench {

namespace {

/// Returns the size of the document in kibibytes, the unit of the table.
double kibibytes(JsonDocument const & document) {
    return static_cast<double>(document.text.size()) / 1024;
}

/// Adds "json_read_<document>", "json_write_<document>" and "json_peak_<document>".
template <typename Peer>
void add_tree(char const * name, JsonDocument const & document) {
    add("json_read_" + document.name, name, [&document](benchmark::State & state) {
        if (Peer::write(Peer::read(document.text)).size() < document.text.size() / 5) {
            state.SkipWithError("something was not read");
        }
        using Tree = decltype(Peer::read(document.text));
        Tree const known = document.names_are_known ? Peer::read(document.text) : Tree();
        measure(state, kibibytes(document), [&document] {
            auto const value = Peer::read(document.text);
            benchmark::DoNotOptimize(&value);
        });
    });
    if (document.names_are_known) {
        return;
    }
    add("json_write_" + document.name, name, [&document](benchmark::State & state) {
        auto const value = Peer::read(document.text);
        measure(state, kibibytes(document), [&value] {
            std::string const text = Peer::write(value);
            benchmark::DoNotOptimize(text.data());
        });
    });
    if (document.text.size() > 500'000) {
        add("json_peak_" + document.name, name, [&document](benchmark::State & state) {
            measure_peak_memory(state, kibibytes(document), [&document] {
                auto const value = Peer::read(document.text);
                benchmark::DoNotOptimize(&value);
            });
        })->Iterations(1);
    }
}

/// Adds "json_read_<document>" for a peer whose tree is gone when it returns.
template <typename Peer>
[[maybe_unused]] void add_read(char const * name, JsonDocument const & document) {
    add("json_read_" + document.name, name, [&document](benchmark::State & state) {
        if (!Peer::read(document.text)) {
            state.SkipWithError("nothing was read");
        }
        measure(state, kibibytes(document),
                [&document] { benchmark::DoNotOptimize(Peer::read(document.text)); });
    });
}

/// Adds "json_stream_<document>": from a stream, beside the same text in memory.
void add_stream(JsonDocument const & document) {
    add("json_stream_" + document.name, "vxattribute", [&document](benchmark::State & state) {
        measure(state, kibibytes(document), [&document] {
            vxcore::StringSource stream(document.text);
            auto const value = vxattribute::value_from_json(stream);
            benchmark::DoNotOptimize(&value);
        });
    });
    add("json_stream_" + document.name, "memory", [&document](benchmark::State & state) {
        measure(state, kibibytes(document), [&document] {
            auto const value = VxJson::read(document.text);
            benchmark::DoNotOptimize(&value);
        });
    });
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
        add_stream(document);
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
        add_read<BoostJsonArena>("boost_json_arena", document);
#endif
#ifdef VX_BENCH_SIMDJSON
        add_read<SimdjsonTape>("simdjson_tape", document);
        add_read<SimdjsonTree>("simdjson_tree", document);
#endif
    }
}

} // namespace vxbench
