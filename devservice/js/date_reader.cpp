#include "devservice/js/date_reader.h"

#include <limits>

namespace qv::devservice {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

}  // namespace

JSValueRef MakeDate(JSContextRef context, std::int64_t milliseconds) {
  const JSValueRef number = JSValueMakeNumber(context, static_cast<double>(milliseconds));
  return JSObjectMakeDate(context, 1, &number, nullptr);
}

DateReader::DateReader(JSContextGroupRef group) : clean_(JSGlobalContextCreateInGroup(group, nullptr)) {
  const JSValueRef function = JSEvaluateScript(clean_.get(), MakeJsString("Date.prototype.getTime").get(),
                                               nullptr, nullptr, 1, nullptr);
  getTime_ = JSValueToObject(clean_.get(), function, nullptr);
}

double DateReader::TimeOf(JSContextRef context, JSValueRef value) const {
  if (!JSValueIsDate(context, value)) return kNone;
  JSObjectRef date = JSValueToObject(context, value, nullptr);
  const JSValueRef time = JSObjectCallAsFunction(clean_.get(), getTime_, date, 0, nullptr, nullptr);
  return time ? JSValueToNumber(clean_.get(), time, nullptr) : kNone;
}

}  // namespace qv::devservice
