#pragma once

#include "support/pages.h"
#include "support/streams.h"

#include "vxcore/error_exception.h"

#include <algorithm>

/// Sends data through both forms. Most tests write the data in one form and compare it with the
/// result in the other.
namespace vxtest {

/// Convert data between the forms. An element of a list in binary data is assumed to be one
/// primitive; a text shows its extent. Failures pass through. Data after the last element is a
/// failure.
std::string binary_to_text(std::string const & bytes, unsigned int segmentSize = 0xFFFFFFFF);
std::string text_to_binary(std::string const & text, unsigned int bufferSize = 4096);
std::string text_to_text(std::string const & text);

/// Returns the code that `action` raises, or "" when it raises nothing.
std::string code_of(std::function<void()> const & action);

} // namespace vxtest
