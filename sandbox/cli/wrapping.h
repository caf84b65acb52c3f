#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Text in lines of a given width. Counted are characters of UTF-8, not bytes.
namespace sandbox {

std::size_t textWidth(const std::string& text);

/// The text as lines of at most `width` characters, parted at blanks; a word that is longer
/// stands out. 0 is no limit. At least one line.
std::vector<std::string> wrapped(const std::string& text, std::size_t width);

/// The text with its middle left out, so that it is no longer than `width`.
std::string shortened(const std::string& text, std::size_t width, const std::string& gap);

} // namespace sandbox
