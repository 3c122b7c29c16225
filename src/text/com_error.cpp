#include "qvscriptwells/com_error.h"

namespace qv {
namespace {

constexpr char kWithoutMemory[] = "a component reported a failure";

}  // namespace

_com_error::_com_error(HRESULT code) noexcept
    : QvException(WideString(), code, kWithoutMemory), code_(code) {}

_com_error::_com_error(HRESULT code, const ErrorInfo& info) noexcept
    : QvException(info.description, code, kWithoutMemory), code_(code), info_(info), hasInfo_(true) {}

void _com_raise_error(HRESULT code) {
  throw _com_error(code);
}

void RaiseWithWords(HRESULT code, const std::string& words) {
  ErrorInfo info;
  info.description = FromUtf8(words);
  throw _com_error(code, info);
}

}  // namespace qv
