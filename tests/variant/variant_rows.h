// Tables of type changes, and the checks of their rows.
#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

#include "fixtures/shown_value.h"
#include "fixtures/variant_makers.h"

namespace qv {

// The same tag and the same bytes, texts by their units.
bool IsSame(const Variant& a, const Variant& b);

std::vector<Variant> Texts(std::initializer_list<std::u16string_view> texts);

// Each source becomes its result, whose tag is the target. A row is tried four times: into another Variant,
// onto the source itself, and from pointers to the value and to the Variant.
using Changes = std::vector<std::pair<Variant, Variant>>;
using Reads = std::vector<std::pair<std::u16string_view, Variant>>;
using Writes = std::vector<std::pair<Variant, std::u16string_view>>;
void ExpectChanged(const Changes& rows);
void ExpectRead(const Reads& rows);
void ExpectWritten(const Writes& rows);
void ExpectAllBecome(const Variant& result, const std::vector<Variant>& sources);

// No source becomes one of `tag`. Tried in the same four ways and onto an object; the destination stays.
void ExpectRefused(HRESULT code, VARTYPE tag, const std::vector<Variant>& sources);

}  // namespace qv
