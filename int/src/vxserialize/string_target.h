#pragma once

#include "vxserialize/text_writer.h"

#include <string>

namespace vxserialize {

/// Appends the text of a TextWriter to a string.
///
///     std::string text;
///     StringTarget target(text);
///     TextWriter writer(target, {});
///     map.write(writer);
///     writer.close(); // the text is complete now
class VXSERIALIZE_API StringTarget final : public TextWriter::ITextTarget {
  public:
    /// @param text  Must outlive the target. What it holds is kept.
    explicit StringTarget(std::string & text) noexcept : m_text(text) {}

    /// @raises std::bad_alloc, std::length_error: as `std::string::append`, in both.
    void write_char(char c) override;
    void write_data(char const * data, unsigned int size) override;

  private:
    std::string & m_text;
};

} // namespace vxserialize
