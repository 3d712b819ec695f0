#pragma once

namespace vxcore {

/// Names an object whose contents the receiver may take over, leaving it empty.
///
/// Returned by `transfer()` of a class and accepted by its constructor and assignment. It owns
/// nothing and must not outlive the expression that made it. Nothing is taken until a receiver
/// does.
///
///     SourceString taken(text.transfer()); // text is empty now
template <typename T>
class TransferSource {
  public:
    /// @param source  Must outlive this object.
    explicit TransferSource(T & source) noexcept : m_source(&source) {}

    /// The object itself, from which the receiver takes the contents, usually by `swap`.
    T & get() const noexcept { return *m_source; }

  private:
    T * m_source;
};

} // namespace vxcore
