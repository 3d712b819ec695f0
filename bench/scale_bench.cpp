// Cost per attribute of small and large documents, of few and many documents at a time, and of two
// threads that read documents of their own.

#include "json_documents.h"
#include "json_peers.h"
#include "measure.h"

#include <vector>

namespace vxbench {

namespace {

constexpr unsigned int recordAttributes = 11;

/// Reads and destroys a document of `records` records.
template <typename Peer>
void read_size(benchmark::State & state, unsigned int records) {
    std::string const text = json_records(records);
    measure(state, records * recordAttributes, [&text] {
        auto const value = Peer::read(text);
        benchmark::DoNotOptimize(&value);
    });
}

/// Replaces one of `count` documents of ten records at a time.
template <typename Peer>
void read_count(benchmark::State & state, std::size_t count) {
    constexpr unsigned int records = 10;
    std::string const text = json_records(records);
    std::vector<decltype(Peer::read(text))> documents(count);
    for (auto & document : documents) {
        document = Peer::read(text);
    }
    std::size_t next = 0;
    measure(state, records * recordAttributes, [&] {
        documents[next] = Peer::read(text);
        next = next + 1 == count ? 0 : next + 1;
    });
}

template <typename Peer>
void add_peer(char const * peer) {
    for (unsigned int const records : {1U, 10U, 100U, 1'000U, 10'000U, 100'000U}) {
        add("scale_size_" + std::to_string(records), peer,
            [records](benchmark::State & state) { read_size<Peer>(state, records); });
    }
    for (std::size_t const count : {1U, 10U, 100U, 1'000U}) {
        add("scale_documents_" + std::to_string(count), peer,
            [count](benchmark::State & state) { read_count<Peer>(state, count); });
    }
    add("scale_threads", peer, [](benchmark::State & state) { read_size<Peer>(state, 100); })
        ->ThreadRange(1, 2)
        ->UseRealTime();
}

} // namespace

void add_scale_benchmarks() {
    add_peer<VxJson>("vxattribute");
#ifdef VX_BENCH_BOOST_JSON
    add_peer<BoostJson>("boost_json");
#endif
}

} // namespace vxbench
