// The memory of raw and wide strings: a header, the units, a null terminator. A string is a pointer to the
// first unit. A block counts its owners, so that copies of a text need no memory.
#pragma once

#include <cstddef>

#include "qvscriptwells/wide_string.h"

namespace qv {

// A block for `capacity` units and the terminator, with length 0 and one owner. Throws `_com_error`,
// E_OUTOFMEMORY.
BStr NewStringBlock(std::size_t capacity);
// Reallocates the block with another capacity, keeping units and length. Only for a block with one owner. The
// old pointer is then invalid; on failure (`_com_error`) it stays valid. Of a secret only the units within
// its length are copied.
BStr ResizeStringBlock(BStr text, std::size_t capacity);
// Frees the unused capacity if possible; the block may move. Only for a block with one owner that is not
// secret.
BStr TrimStringBlock(BStr text, std::size_t capacity) noexcept;
// Sets the length (at most the capacity) and the null terminator.
void SetStringLength(BStr text, std::size_t length) noexcept;
// Adds an owner, which must call FreeString. Null is allowed.
char16_t* ShareString(char16_t* text) noexcept;
bool IsShared(const char16_t* text) noexcept;
// Marks only the first units as secret (secret_text.h), so that a long text is not cleared as a whole.
void MarkSecretFront(const char16_t* text, std::size_t units) noexcept;
// Whether the block is marked by either function.
bool IsSecret(const char16_t* text) noexcept;

}  // namespace qv
