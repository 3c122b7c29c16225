// The head of an answer: status line and header fields (RFC 9112), parsed from untrusted bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

class ResponseHead {
 public:
  // `head` is whole, with its closing empty line. Throws HttpFailure (HTTP_E_MALFORMED) for anything that is
  // not an HTTP/1 head: another version, no status, a NUL or a lone CR, a continuation line after the status
  // line. Tolerated, but marked odd: lines without a colon or with a name that is not a token (ignored),
  // blanks before the colon, continuation lines (joined with a blank).
  void Parse(std::string head);

  int Status() const noexcept { return status_; }
  int MinorVersion() const noexcept { return minorVersion_; }
  bool IsOdd() const noexcept { return odd_; }

  // First value of that name (case is ignored), trimmed. False if there is none. The view is valid until this
  // object changes.
  bool Find(std::string_view name, std::string_view* value) const noexcept;
  // All values of that name, in order.
  std::vector<std::string_view> FindAll(std::string_view name) const;

 private:
  // Offsets into text_, so that the object may be moved.
  struct Field {
    std::size_t name;
    std::size_t nameSize;
    std::size_t value;
    std::size_t valueSize;
  };

  void JoinContinuations(std::size_t from);
  void ParseStatusLine(std::string_view line);
  void ParseField(std::string_view line);
  std::string_view NameOf(const Field& field) const noexcept;
  std::string_view ValueOf(const Field& field) const noexcept;

  std::string text_;
  std::vector<Field> fields_;
  int status_ = 0;
  int minorVersion_ = 0;
  bool odd_ = false;
};

}  // namespace qv
