#pragma once

#include "support/pages.h"
#include "support/streams.h"

#include "vxcore/error_exception.h"

#include <algorithm>

/// Means to send data through both forms. Most tests write it down in one form and compare what it
/// becomes in the other.
namespace vxtest {

/// Convert one form to another. An element of a list in binary data is assumed to be one primitive;
/// in a text it is known. Failures pass through. Data after the last element is a failure.
std::string binary_to_text(std::string const & bytes, unsigned int segmentSize = 0xFFFFFFFF);
std::string text_to_binary(std::string const & text, unsigned int bufferSize = 4096);
std::string text_to_text(std::string const & text);

/// The code that `action` raises; "" when it raises nothing.
std::string code_of(std::function<void()> const & action);

} // namespace vxtest
