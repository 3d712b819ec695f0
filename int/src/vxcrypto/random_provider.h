#pragma once

#include "vxcore/ref_count_ptr.h"
#include "vxcrypto/export.h"

namespace vxcrypto {

/// A source of random bytes, for example for nonces.
///
/// The destructor is protected: never delete through this interface. `RandomProviderPtr` holds the
/// owner of an implementation.
class IRandomProvider {
  public:
    /// Fills `size` bytes at `buffer`.
    ///
    /// An implementation raises on failure; the contents of the buffer must not be used then.
    /// Sealing also treats a nonce of zeros only as a failure.
    virtual void generate_random(void * buffer, unsigned int size) = 0;

  protected:
    IRandomProvider() = default;
    IRandomProvider(IRandomProvider const &) = default;
    IRandomProvider & operator=(IRandomProvider const &) = default;
    ~IRandomProvider() = default;
};

/// A provider together with the object that keeps it alive. An empty owner means that nothing needs
/// to.
using RandomProviderPtr =
    vxcore::InterfacePtr<IRandomProvider,
                         vxcore::RefCountPtr<vxcore::RefCounted<vxcore::AtomicRefCount> const>>;

/// OpenSSL's random generator, which seeds itself from the system. It lives as long as the library
/// and may be used from any thread.
///
/// Each call of its `generate_random` first mixes in the processor's time stamp, which counts as no
/// entropy. A copy of a running process (a snapshot of a virtual machine) so soon differs from the
/// original. With a null buffer the call does only this.
///
/// Its `generate_random` raises error.vxcrypto.randomProvider.arguments when `size` exceeds
/// 2^31 - 1, and error.vxcrypto.randomProvider.failed when OpenSSL returns no bytes or is not
/// running.
VXCRYPTO_API RandomProviderPtr default_random_provider() noexcept;

} // namespace vxcrypto
