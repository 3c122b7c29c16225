// Durations and links as objects of scripts.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/values/duration_text.h"
#include "devservice/values/url_text.h"

namespace qv::devservice {

// {negative, years, months, days, hours, minutes, seconds}. Its toString() returns the text of the current
// fields ("P1DT2H"), and throws when they are not a duration.
JSValueRef MakeDurationObject(JSContextRef context, const Duration& duration);
bool IsDurationObject(JSContextRef context, JSValueRef value);

// Reads the fields of any object; missing ones are 0. False when it has none of them, or when one is not a
// count of its unit. May run getters of the script.
bool ReadDurationFields(JSContextRef context, JSValueRef value, Duration& result);

// {url, caption}. Its toString() returns the link.
JSValueRef MakeUrlObject(JSContextRef context, const UrlValue& url);
bool IsUrlObject(JSContextRef context, JSValueRef value);

// Reads `url` and `caption` of any object; a missing caption is empty. False when one is not a text that an
// answer can carry. May run getters of the script.
bool ReadUrlFields(JSContextRef context, JSValueRef value, UrlValue& result);

// The same for a link and a caption on their own.
bool ReadUrlParts(JSContextRef context, JSValueRef link, JSValueRef caption, UrlValue& result);

}  // namespace qv::devservice
