#pragma once

#include "vxjson/text_writer.h"

#include <string>

namespace vxjson {

/// Appends the text of a TextWriter to a string, for functions that take a target.
///
///     std::string text = "data: ";
///     StringTarget target(text);
///     write_json(target, value);
///
/// A TextWriter of your own can take the string itself, which is faster.
class VXJSON_API StringTarget final : public TextWriter::ITextTarget {
  public:
    /// @param text  Must outlive the target. What it holds is kept.
    explicit StringTarget(std::string & text) noexcept : m_text(text) {}

    /// @raises std::bad_alloc, std::length_error: as `std::string::append`.
    void write_data(char const * data, unsigned int size) override;

  private:
    std::string & m_text;
};

} // namespace vxjson
