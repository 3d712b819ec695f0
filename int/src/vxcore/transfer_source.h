#pragma once

namespace vxcore {

/// Names an object whose contents the receiver may take over, leaving it empty.
///
/// It is what `transfer()` of a class gives and what its constructor and assignment accept. It owns
/// nothing and is used at once: it must not outlive the expression that made it.
template <typename T>
class TransferSource {
  public:
    explicit TransferSource(T & source) noexcept : m_source(&source) {}

    T & get() const noexcept { return *m_source; }

  private:
    T * m_source;
};

} // namespace vxcore
