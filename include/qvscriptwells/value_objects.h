// SPDX-License-Identifier: Apache-2.0
// Objects that are values: they travel inside a Variant under VT_UNKNOWN. create_objects.h creates them.
// Failure, ownership, threads: as in objects.h.
#pragma once

#include <cstdint>

#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/unknown.h"
#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// A local file as a parameter's value. When a call is serialized, the file is uploaded and the request holds
// the ticket that the server returns for it. This object keeps the ticket; the next call with the same object
// uploads the file again under it. A host that reads TicketId clears the flag, and the next call asks for a
// new ticket.
class IAttachedFile : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("b8e59c13-2873-42d4-b3ac-4e53e5fc6693");
  // Stores the name, as put_Filename does.
  virtual HRESULT Init(const WideString& fileName) noexcept = 0;
  // A path on this machine, "\" and "/" alike. Nothing is checked before the transfer.
  virtual HRESULT get_Filename(WideString* value) noexcept = 0;
  virtual HRESULT put_Filename(const WideString& value) noexcept = 0;
  // These three are stored for the host; no transfer uses them. Both numbers start as 1.
  virtual HRESULT get_FileId(WideString* value) noexcept = 0;
  virtual HRESULT put_FileId(const WideString& value) noexcept = 0;
  virtual HRESULT get_SourceFileLifeTime(std::int32_t* value) noexcept = 0;
  virtual HRESULT put_SourceFileLifeTime(std::int32_t value) noexcept = 0;
  virtual HRESULT get_CleanUp(std::int32_t* value) noexcept = 0;
  virtual HRESULT put_CleanUp(std::int32_t value) noexcept = 0;
  // Clears the flag of IsTicketId.
  virtual HRESULT get_TicketId(WideString* value) noexcept = 0;
  // Sets it, whatever the value.
  virtual HRESULT put_TicketId(const WideString& value) noexcept = 0;
  // VARIANT_TRUE between a put_TicketId and the next get_TicketId.
  virtual HRESULT IsTicketId(VARIANT_BOOL* value) noexcept = 0;

 protected:
  ~IAttachedFile() = default;
};
constexpr Guid IID_IAttachedFile = IAttachedFile::kIid;

// A span of time in separate counts of its units. Nothing is normalised: 90 seconds stay 90 seconds. Read one
// that a script returns with
//   IDurationPtr span = As<IDuration>(result.Object());
// Every put_ but put_Negative rejects a negative argument with a message such as "Invalid duration format:
// day can't be negative." and leaves the count unchanged.
class IDuration : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("e279f37a-fbe2-4860-8e6f-ff7df69e5a23");
  virtual HRESULT get_Day(std::int16_t* value) noexcept = 0;
  virtual HRESULT put_Day(std::int16_t value) noexcept = 0;
  virtual HRESULT get_Month(std::int16_t* value) noexcept = 0;
  virtual HRESULT put_Month(std::int16_t value) noexcept = 0;
  virtual HRESULT get_Year(std::int16_t* value) noexcept = 0;
  virtual HRESULT put_Year(std::int16_t value) noexcept = 0;
  virtual HRESULT get_Hour(std::int16_t* value) noexcept = 0;
  virtual HRESULT put_Hour(std::int16_t value) noexcept = 0;
  virtual HRESULT get_Min(std::int16_t* value) noexcept = 0;
  virtual HRESULT put_Min(std::int16_t value) noexcept = 0;
  virtual HRESULT get_Sec(double* value) noexcept = 0;
  virtual HRESULT put_Sec(double value) noexcept = 0;
  // Any value other than 0 means a negative duration; VARIANT_TRUE is the usual one.
  virtual HRESULT get_Negative(VARIANT_BOOL* value) noexcept = 0;
  virtual HRESULT put_Negative(VARIANT_BOOL value) noexcept = 0;

 protected:
  ~IDuration() = default;
};
constexpr Guid IID_IDuration = IDuration::kIid;

// The text form of the same object, shaped as the durations of ISO 8601 and XML Schema: "P1Y2M3DT4H5M6.5S".
class IDurationRaw : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("b1ea6b4f-65b0-44e7-bb6d-aaa23561031a");
  // Reads designators in their fixed order; anything that is not a number reads as 0, a count beyond 16 bits
  // as its low 16 bits (possibly negative), and anything in the wrong place is skipped. Without "T" the
  // counts of hour, minute and second stay; without "-" the sign stays. Fails with a message for a lower-case
  // letter, a "-" that is not the first character, or a "P" that is not first (second in a negative
  // duration).
  virtual HRESULT SetText(const WideString& text) noexcept = 0;
  // Counts of 0 are omitted; all 0 is "P0". Seconds have 6 significant digits.
  virtual HRESULT GetText(WideString* text) noexcept = 0;

 protected:
  ~IDurationRaw() = default;
};

// A link with a caption. One that a script returns arrives without URL and caption, as in all deployed
// clients; scripts return a string to pass a link. A URL cannot be sent as a parameter.
class IUrl : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("88298ee0-4369-42b1-9ca3-79e59da15143");
  virtual HRESULT get_UrlCaption(WideString* value) noexcept = 0;
  virtual HRESULT put_UrlCaption(const WideString& value) noexcept = 0;
  virtual HRESULT get_Url(WideString* value) noexcept = 0;
  // Accepts "scheme://host/path" or "scheme://host:port/path". An empty text changes nothing; any other text
  // fails with "Cannot parse url, expecting 'http://' after protocol name."
  virtual HRESULT put_Url(const WideString& value) noexcept = 0;
  // The same text as get_Url.
  virtual HRESULT ToString(WideString* text) noexcept = 0;

 protected:
  ~IUrl() = default;
};

using IAttachedFilePtr = boost::intrusive_ptr<IAttachedFile>;
using IDurationPtr = boost::intrusive_ptr<IDuration>;
using IDurationRawPtr = boost::intrusive_ptr<IDurationRaw>;
using IUrlPtr = boost::intrusive_ptr<IUrl>;

}  // namespace qv
