// Messages of the library, its HTTP component and the TLS library that this program explains. They have no
// codes, so their texts are compared.
#pragma once

namespace qv::cli {

// Fixed messages of the library.
inline constexpr char kNoHttpAnswer[] = "Unknown Http problem.";
inline constexpr char kInvalidAnswer[] = "The respone that arrived is not valid";
inline constexpr char kUnreadableFault[] = "Cannot deserializer the soap fault.";
inline constexpr char kUnreadableXml[] = "Error at file ";  // the start; the name of the text follows
inline constexpr char kUnreadableAnswer[] = "Error at file application/xml";
inline constexpr char kNoDocument[] = "Cannot create the xml document.";
inline constexpr char kNoUrl[] = "Cannot parse url, expecting 'http://' after protocol name.";
inline constexpr char kNoDate[] = "Unable to convert a value with the given accuracy";
inline constexpr char kNoRecordList[] = "Cannot create the recordlist";

// Messages of the HTTP component, which are libcurl's.
inline constexpr char kBodyTooLong[] = "Maximum file size exceeded";
inline constexpr char kTotalTimeOver[] = " milliseconds in total";  // the end

// Parts of the TLS library's messages.
inline constexpr char kNoLocalIssuer[] = "unable to get local issuer certificate";
inline constexpr char kNoIssuer[] = "unable to get issuer certificate";
inline constexpr char kSelfSigned[] = "self-signed certificate";
inline constexpr char kCertificateRequired[] = "alert certificate required";

}  // namespace qv::cli
