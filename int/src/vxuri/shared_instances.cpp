#include "vxuri/shared_instances_internal.h"

namespace vxuri::impl {

namespace {

/// One instance, held through a plain pointer. It has no constructor or destructor to run, so that
/// it can be used before the static initialisers of this file and after its destructors.
class SharedInstance {
  public:
    constexpr explicit SharedInstance(unsigned int firstWord) noexcept : m_firstWord(firstWord) {}

    vxcore::RefCountPtr<UriParseData const> get() {
        vxcore::RefCountPtr<UriParseData const> data(m_data);
        if (!data) {
            data = vxcore::make_ref_counted<UriParseData>(std::string(),
                                                          UriParseData::Parts{m_firstWord});
            if (!m_ended) {
                m_data = vxcore::RefCountPtr<UriParseData const>(data).detach();
            }
        }
        return data;
    }

    /// Releases the instance; later calls of `get` make a new one each.
    void end() noexcept {
        m_ended = true;
        if (m_data != nullptr) {
            std::exchange(m_data, nullptr)->release_ref();
        }
    }

  private:
    unsigned int m_firstWord;
    bool m_ended = false;
    UriParseData const * m_data = nullptr;
};

constinit SharedInstance g_undefined(~0u);
constinit SharedInstance g_empty(0);

struct LifeOfLibrary {
    LifeOfLibrary() {
        undefined_instance();
        empty_instance();
    }

    ~LifeOfLibrary() {
        g_undefined.end();
        g_empty.end();
    }
};

LifeOfLibrary const g_lifeOfLibrary;

} // namespace

vxcore::RefCountPtr<UriParseData const> undefined_instance() {
    return g_undefined.get();
}

vxcore::RefCountPtr<UriParseData const> empty_instance() {
    return g_empty.get();
}

} // namespace vxuri::impl
