// Expands a packed frame the way the installer does, after asking of it all that the store's format
// promises: one frame, its content size in the header, a content checksum, no dictionary.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The content of `frame`, which must be `content_size` bytes. Throws Refusal in words about `name`.
std::string ExpandFrame(const std::string& name, std::string_view frame,
                        std::uint64_t content_size);
