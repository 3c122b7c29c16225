#include "face/tape/tape_mask.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

#include "face/tape/sha256.h"

namespace scriptwells {

namespace {

// A shorter one is found everywhere, and masked at its places only.
constexpr std::size_t kShortestSearched = 4;
constexpr const char* kKinds[] = {"session:", "password:", "ticket:"};

struct Span {
  std::size_t begin, end;
  std::string mask;
};

// Of spans that overlap the first one wins; at the same place that is the one of its kind's place. What
// another one covers beyond its end is masked, too.
TapeText Pieces(std::string_view text, std::vector<Span> spans) {
  std::stable_sort(spans.begin(), spans.end(),
                   [](const Span& a, const Span& b) { return a.begin < b.begin; });
  TapeText pieces;
  std::size_t done = 0;
  for (const Span& span : spans) {
    if (span.end <= done && span.end != span.begin) continue;
    if (span.begin < done) {
      pieces.back().size += span.end - done;
    } else {
      if (span.begin > done) pieces.push_back({std::string(text.substr(done, span.begin - done))});
      pieces.push_back({{}, span.mask, span.end - span.begin});
    }
    done = std::max(done, span.end);
  }
  if (done < text.size()) pieces.push_back({std::string(text.substr(done))});
  return pieces;
}

// In UTF-16 a secret is found in both byte orders, one byte apart. Units begin at even bytes.
void KeepAligned(std::vector<Masking::Found>* found) {
  const auto isShifted = [found](const Masking::Found& one) {
    return one.begin % 2 == 1 &&
           std::any_of(found->begin(), found->end(), [&one](const Masking::Found& other) {
             const std::size_t shift =
                 other.begin > one.begin ? other.begin - one.begin : one.begin - other.begin;
             return shift == 1 && other.secret == one.secret &&
                    other.end - other.begin == one.end - one.begin;
           });
  };
  std::vector<Masking::Found> kept;
  std::remove_copy_if(found->begin(), found->end(), std::back_inserter(kept), isShifted);
  *found = std::move(kept);
}

bool IsPlain(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
  });
}

// The same in each run, and in no other text.
std::string MadeUp(const std::string& mask, std::size_t size) {
  Sha256 digest;
  digest.Add(mask);
  const std::string digits = digest.Hex();
  std::string made;
  while (made.size() < size) made += digits;
  return made.substr(0, size);
}

}  // namespace

void TapeMask::Add(std::string mask, const std::string& value) {
  secrets_.push_back({std::move(mask), value});
  search_.Add(value.size() < kShortestSearched ? std::string() : value);
}

std::string TapeMask::MaskOf(SecretKind kind, const std::string& value) {
  const std::string start = kKinds[static_cast<std::size_t>(kind)];
  std::vector<std::string> masks;
  for (const Secret& secret : secrets_) {
    if (secret.mask.compare(0, start.size(), start) != 0) continue;
    if (secret.value == value) return secret.mask;
    if (std::find(masks.begin(), masks.end(), secret.mask) == masks.end()) masks.push_back(secret.mask);
  }
  Add(start + std::to_string(masks.size() + 1), value);
  return secrets_.back().mask;
}

void TapeMask::Know(SecretKind kind, const std::string& secret) {
  if (!secret.empty()) MaskOf(kind, secret);
}

TapeText TapeMask::Masked(std::string_view text, const std::vector<PlacedKind>& placed) {
  std::vector<Span> spans;
  for (const PlacedKind& kind : placed)
    for (const PlacedSecret& secret : kind.secrets)
      spans.push_back({secret.begin, secret.end, MaskOf(kind.kind, secret.value)});
  std::vector<Masking::Found> found = search_.FindIn(text);
  KeepAligned(&found);
  for (const Masking::Found& one : found) spans.push_back({one.begin, one.end, secrets_[one.secret].mask});
  return Pieces(text, std::move(spans));
}

std::string TapeMask::PlayedFor(const TapePiece& mask) {
  for (const Secret& secret : secrets_)
    if (secret.mask == mask.mask && secret.value.size() == mask.size && IsPlain(secret.value))
      return secret.value;
  Add(mask.mask, MadeUp(mask.mask, mask.size));
  return secrets_.back().value;
}

}  // namespace scriptwells
