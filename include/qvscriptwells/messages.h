// SPDX-License-Identifier: Apache-2.0
// Fixed error messages. Hosts compare them, so the texts, odd spelling included, must stay. They appear in
// EQvException::Description and in the description of error records.
#pragma once

namespace qv::messages {

// An envelope that could not be written, or an exchange that ended without an answer.
inline constexpr char16_t kSoapCall[] = u"Cannot create a soap call.";
// A script document that cannot be read, or a parameter that has no wire format.
inline constexpr char16_t kXmlDocument[] = u"Cannot create the xml document.";
inline constexpr char16_t kHttpProblem[] = u"Unknown Http problem.";
// An answer that is not a SOAP envelope, or whose value is null.
inline constexpr char16_t kInvalidResponse[] = u"The respone that arrived is not valid";
inline constexpr char16_t kUnreadableFault[] = u"Cannot deserializer the soap fault.";
// Start of the message for an answer that is not well-formed; file, line and column follow.
inline constexpr char16_t kErrorAtFile[] = u"Error at file ";
inline constexpr char16_t kUrl[] = u"Cannot parse url, expecting 'http://' after protocol name.";
inline constexpr char16_t kRecordList[] = u"Cannot create the recordlist";
// A text that is neither a date nor a time.
inline constexpr char16_t kAccuracy[] = u"Unable to convert a value with the given accuracy";
inline constexpr char16_t kTimeEncode[] = u"Invalid argument to time encode";

}  // namespace qv::messages
