#pragma once

#include "vxcore/ref_count_ptr.h"
#include "vxcrypto/export.h"

namespace vxcrypto {

/// A source of random bytes, such as nonces are made of.
///
/// An interface: it is not destroyed through, see `RandomProviderPtr`.
class IRandomProvider {
  public:
    /// Fills `size` bytes at `buffer`. Failure is raised; the buffer's content must not be used
    /// then. Sealing takes a nonce of nothing but zeros for a failure too.
    virtual void generate_random(void * buffer, unsigned int size) = 0;

  protected:
    IRandomProvider() = default;
    IRandomProvider(IRandomProvider const &) = default;
    IRandomProvider & operator=(IRandomProvider const &) = default;
    ~IRandomProvider() = default;
};

/// A provider together with what keeps it alive; an empty owner says that nothing needs to.
using RandomProviderPtr =
    vxcore::InterfacePtr<IRandomProvider,
                         vxcore::RefCountPtr<vxcore::RefCounted<vxcore::AtomicRefCount> const>>;

/// OpenSSL's random generator, which seeds itself from the system. It lives as long as the library
/// and may be used from any thread.
///
/// Each call first mixes the processor's time stamp in, without credit for it, whatever the
/// arguments are: a process that was copied while it ran (a snapshot of a virtual machine) soon
/// differs from its copy. A null buffer is then left at that.
///
/// Raised by its `generate_random`: error.vxcrypto.randomProvider.arguments for a `size` beyond
/// 2^31 - 1, error.vxcrypto.randomProvider.failed where OpenSSL returns no bytes or is not running.
VXCRYPTO_API RandomProviderPtr default_random_provider() noexcept;

} // namespace vxcrypto
