#include "vxcore/static_instance.h"

#include "vxcore/error_codes.h"
#include "vxcore/error_exception.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace vxcore::impl {

namespace {

struct Registration {
    StaticInstanceBase::Cleanup function;
    void * argument;

    bool operator==(Registration const &) const = default;
};

/// Created by the first registration. So its construction ends before that of any instance in it.
class CleanupList {
  public:
    ~CleanupList() {
        // Taken off before it is called, and without the lock: a clean-up may register others, or
        // remove its own.
        while (!m_registrations.empty()) {
            Registration const last = m_registrations.back();
            m_registrations.pop_back();
            last.function(last.argument);
        }
        sm_ended = true;
    }

    void add(Registration registration) {
        std::lock_guard const lock(m_mutex);
        m_registrations.push_back(registration);
    }

    void remove(Registration registration) noexcept {
        std::lock_guard const lock(m_mutex);
        // From the back: instances are mostly destroyed in the reverse order of their registration.
        auto const found =
            std::find(m_registrations.rbegin(), m_registrations.rend(), registration);
        if (found != m_registrations.rend()) {
            m_registrations.erase(std::next(found).base());
        }
    }

    /// Set when the list is destroyed, and never reset: instances of other libraries may outlive
    /// it.
    static inline bool sm_ended = false;

  private:
    std::mutex m_mutex;
    std::vector<Registration> m_registrations;
};

CleanupList & cleanup_list() {
    static CleanupList list;
    return list;
}

} // namespace

void StaticInstanceBase::register_cleanup_aux(Cleanup function, void * argument) {
    // After the end of the list, an instance is destroyed by its own destructor only.
    if (!CleanupList::sm_ended) {
        cleanup_list().add({function, argument});
    }
}

void StaticInstanceBase::unregister_cleanup_aux(Cleanup function, void * argument) noexcept {
    if (!CleanupList::sm_ended) {
        cleanup_list().remove({function, argument});
    }
}

void StaticInstanceBase::throw_destroyed_error() {
    throw_error(error::vxcore_destroyed,
                SourceString("A static object was used after its end", true),
                VXCORE_LOCATION("vxcore::impl::StaticInstanceBase::throw_destroyed_error()"));
}

} // namespace vxcore::impl
