// The secrets of one session, numbered by kind, and texts without them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "face/exchange/learned_secrets.h"
#include "face/exchange/masking.h"
#include "face/tape/tape_text.h"

namespace scriptwells {

enum class SecretKind { kSession, kPassword, kTicket };

// Secrets by their place.
struct PlacedKind {
  SecretKind kind;
  PlacedSecrets secrets;
};

class TapeMask {
 public:
  // Numbers the secret, unless it is known. Empty ones are left out.
  void Know(SecretKind kind, const std::string& secret);
  // The text without secrets: those at these places, which are known from now on, and wherever else one of 4
  // bytes or more is, in each form that Masking finds.
  TapeText Masked(std::string_view text, const std::vector<PlacedKind>& placed = {});
  // What a mask becomes when the tape is played: the same for each mask of this name and size. Masked()
  // masks it.
  std::string PlayedFor(const TapePiece& mask);

 private:
  struct Secret {
    std::string mask;  // "session:1"
    std::string value;
  };

  std::string MaskOf(SecretKind kind, const std::string& value);
  void Add(std::string mask, const std::string& value);

  std::vector<Secret> secrets_;
  Masking search_;
};

}  // namespace scriptwells
