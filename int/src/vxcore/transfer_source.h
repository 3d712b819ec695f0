#pragma once

namespace vxcore {

/// Names an object whose contents the receiver may take over, leaving it empty.
///
/// Returned by `transfer()` of a class and accepted by its constructor and assignment. It owns
/// nothing and must not outlive the expression that made it.
template <typename T>
class TransferSource {
  public:
    explicit TransferSource(T & source) noexcept : m_source(&source) {}

    T & get() const noexcept { return *m_source; }

  private:
    T * m_source;
};

} // namespace vxcore
