#pragma once

#include "vxcore/export.h"
#include "vxcore/read_stream.h"

#include <concepts>
#include <string>
#include <string_view>

namespace vxcore {

/// A text or bytes in memory as a stream, for what reads streams only.
///
///     StringSource source(text);
///     vxserialize::TextReader reader(source, 4096);
///
/// The stream knows its size. It does not copy the text, which must stay in place as long as the
/// stream is read.
class VXCORE_API StringSource final : public IReadStream {
  public:
    /// @param text  For other bytes than those of a string, `ByteView(bytes).as_text()`.
    explicit StringSource(std::string_view text) noexcept : m_rest(text) {}

    /// A temporary string would be gone before the first read: keep it in a variable.
    template <std::same_as<std::string> T>
    explicit StringSource(T && text) = delete;

    /// As in IReadStream. None raises.
    unsigned int read(void * buffer, unsigned int size) override;
    unsigned int skip(unsigned int size) override;
    long long size() const override;

    /// What is not read yet.
    std::string_view rest() const noexcept { return m_rest; }

  private:
    std::string_view m_rest;
};

} // namespace vxcore
