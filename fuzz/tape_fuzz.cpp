// Feeds tapes. What is read is written again and read again with the same content, and each request of it is
// played back to a session that asks for it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "components/http/http_error.h"
#include "face/tape/normal_form.h"
#include "face/tape/played_answer.h"
#include "face/tape/tape.h"
#include "face/tape/typed_values.h"

namespace {

using scriptwells::TapeEntry;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::vector<TapeEntry> Read(const std::string& text) {
  try {
    return scriptwells::ReadTape("tape", text);
  } catch (const scriptwells::Error&) {
    return {};
  }
}

std::string Written(const std::vector<TapeEntry>& tape) {
  std::string text = std::string(scriptwells::kTapeHeader) + "\n\n";
  for (const TapeEntry& entry : tape) text += EntryText(entry);
  return text;
}

void Play(const TapeEntry& entry) {
  scriptwells::TapeMask mask;
  scriptwells::PlayedAnswer answer(entry, mask);
  char bytes[1024];
  try {
    answer.Send();
    while (answer.Receive(bytes, sizeof bytes) != 0) {
    }
  } catch (const qv::HttpFailure&) {
    Require(entry.failure.has_value());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<TapeEntry> tape = Read({reinterpret_cast<const char*>(data), size});
  const std::string written = Written(tape);
  const std::vector<TapeEntry> again = Read(written);
  Require(again.size() == tape.size() && Written(again) == written);
  for (std::size_t i = 0; i < tape.size(); ++i) {
    Require(NormalEntry(again[i]) == NormalEntry(tape[i]));
    scriptwells::TypedArguments(tape[i].requestBody);
    scriptwells::TypedAnswer(tape[i].purpose, tape[i].answerHead, tape[i].answerBody);
    Play(tape[i]);
  }
  return 0;
}
