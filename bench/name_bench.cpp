// Interns a known name, in one thread and in two.

#include "documents.h"
#include "measure.h"

#include "vxattribute/attribute_name.h"

#include <mutex>
#include <unordered_set>

namespace vxbench {

namespace {

constexpr unsigned int nameCount = 1000;

struct Interned {
    vxattribute::AttributeName intern(std::string const & text) { return text; }
};

/// The table of names that one writes without a library. It never frees a name, so a name is just a
/// pointer.
class GuardedSet {
  public:
    std::string const * intern(std::string const & text) {
        std::lock_guard const lock(m_mutex);
        return &*m_names.insert(text).first;
    }

  private:
    std::mutex m_mutex;
    std::unordered_set<std::string> m_names;
};

template <typename Table>
void add_intern(char const * peer) {
    add("intern_known_name", peer,
        [](benchmark::State & state) {
            static Table table;
            std::vector<std::string> const texts = attribute_names(nameCount);
            std::vector<decltype(table.intern(texts[0]))> names; // keeps the names alive
            for (std::string const & text : texts) {
                names.push_back(table.intern(text));
            }
            measure(state, nameCount, [&texts] {
                for (std::string const & text : texts) {
                    auto const name = table.intern(text);
                    benchmark::DoNotOptimize(name);
                }
            });
        })
        ->ThreadRange(1, 2)
        ->UseRealTime();
}

} // namespace

void add_name_benchmarks() {
    add_intern<Interned>("vxattribute");
    add_intern<GuardedSet>("unordered_set");
}

} // namespace vxbench
