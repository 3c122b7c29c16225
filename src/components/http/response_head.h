// The head of an answer: status line and header fields (RFC 9112), read from hostile bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

class ResponseHead {
 public:
  // Takes a whole head with its closing empty line. Throws HttpFailure (HTTP_E_MALFORMED) for what is no
  // HTTP/1 head: another version, no status, a NUL or a lone CR, a continuation line behind the status line.
  // Tolerated, but marked odd: lines without a colon or with a name that is no token (left out), blanks
  // before the colon, continuation lines (joined with a blank).
  void Parse(std::string head);

  int Status() const noexcept { return status_; }
  int MinorVersion() const noexcept { return minorVersion_; }
  bool IsOdd() const noexcept { return odd_; }

  // First value of that name in any case, without blanks around it. False when there is none. The view lives
  // as long as this object is not changed.
  bool Find(std::string_view name, std::string_view* value) const noexcept;
  // All values of that name, in order.
  std::vector<std::string_view> FindAll(std::string_view name) const;

 private:
  // Places in text_, so that the object may be moved.
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
