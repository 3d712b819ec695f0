#include "vxcore/source_string.h"

#include "vxcore/text_size.h"

#include <string>

namespace vxcore {

namespace {

/// The shared copy of a SourceString that is not a literal.
class SourceStringBuffer final : public RefCounted<AtomicRefCount> {
  public:
    explicit SourceStringBuffer(std::string_view text) : m_text(text) {}

    std::string const & text() const noexcept { return m_text; }

  private:
    ~SourceStringBuffer() override = default;

    std::string const m_text;
};

} // namespace

SourceString::SourceString(char const * data, unsigned int size)
    : SourceString(std::string_view(data, size)) {}

SourceString::SourceString(std::string_view text) : m_size(text_size(text.size())) {
    if (!text.empty()) {
        auto buffer = make_ref_counted<SourceStringBuffer>(text);
        // The text of a buffer never changes, so the pointer is valid as long as the buffer.
        m_data = buffer->text().c_str();
        m_buffer = std::move(buffer);
    }
}

SourceString SourceString::static_text(char const * text) noexcept {
    SourceString result;
    result.m_data = text;
    result.m_size = static_cast<unsigned int>(std::char_traits<char>::length(text));
    return result;
}

SourceString::SourceString(SourceString const & other) noexcept = default;

// Not defaulted: `other` would keep the address of bytes whose buffer it no longer holds.
SourceString::SourceString(SourceString && other) noexcept {
    swap(other);
}

SourceString::SourceString(TransferSource<SourceString> source) noexcept {
    swap(source.get());
}

SourceString & SourceString::operator=(SourceString other) noexcept {
    swap(other);
    return *this;
}

SourceString::~SourceString() = default;

void SourceString::swap(SourceString & other) noexcept {
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    m_buffer.swap(other.m_buffer);
}

} // namespace vxcore
