#pragma once

#include "support/streams.h"

#include "vxcore/error_exception.h"

#include <algorithm>
#include <fstream>
#include <sstream>

/// Means to send data through both forms. Most tests write it down in one form and compare what it
/// becomes in the other.
namespace vxtest {

/// Digits with anything between them; a semicolon starts a comment to the end of the line.
std::string from_hex(std::string_view hex);
std::string to_hex(std::string_view bytes);

/// What one form becomes in another. Of binary data an element of a list is taken to be one
/// primitive; of a text it is known. Failures pass through; data behind the last element is one.
std::string binary_to_text(std::string const & bytes, unsigned int segmentSize = 0xFFFFFFFF);
std::string text_to_binary(std::string const & text, unsigned int bufferSize = 4096);
std::string text_to_text(std::string const & text);

/// The code that `action` raises; "" when it raises nothing.
std::string code_of(std::function<void()> const & action);

/// The block of a page on the forms that starts with ```<mark>.
std::string page_block(std::string const & page, std::string const & mark);

} // namespace vxtest
