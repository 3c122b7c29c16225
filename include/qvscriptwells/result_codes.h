// SPDX-License-Identifier: Apache-2.0
// Result codes: every interface operation returns one. Negative is failure, zero or more is success.
// The values are the published COM ones, so that hosts of any language know them.
#pragma once

#include <cstdint>

namespace qv {

using HRESULT = std::int32_t;

constexpr HRESULT MakeResult(std::uint32_t bits) noexcept {
  return static_cast<HRESULT>(bits);
}
constexpr bool Failed(HRESULT code) noexcept {
  return code < 0;
}
constexpr bool Succeeded(HRESULT code) noexcept {
  return code >= 0;
}

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = MakeResult(0x80004001);
constexpr HRESULT E_NOINTERFACE = MakeResult(0x80004002);
constexpr HRESULT E_POINTER = MakeResult(0x80004003);
constexpr HRESULT E_FAIL = MakeResult(0x80004005);
constexpr HRESULT E_UNEXPECTED = MakeResult(0x8000FFFF);
constexpr HRESULT E_OUTOFMEMORY = MakeResult(0x8007000E);
constexpr HRESULT E_ACCESSDENIED = MakeResult(0x80070005);
constexpr HRESULT E_INVALIDARG = MakeResult(0x80070057);
constexpr HRESULT CO_E_CLASSSTRING = MakeResult(0x800401F3);
constexpr HRESULT CO_E_DLLNOTFOUND = MakeResult(0x800401F8);
constexpr HRESULT CO_E_ERRORINDLL = MakeResult(0x800401F9);
constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = MakeResult(0x80040111);
constexpr HRESULT REGDB_E_CLASSNOTREG = MakeResult(0x80040154);
constexpr HRESULT CLASS_E_NOAGGREGATION = MakeResult(0x80040110);
constexpr HRESULT DISP_E_MEMBERNOTFOUND = MakeResult(0x80020003);
constexpr HRESULT DISP_E_PARAMNOTFOUND = MakeResult(0x80020004);
constexpr HRESULT DISP_E_TYPEMISMATCH = MakeResult(0x80020005);
constexpr HRESULT DISP_E_UNKNOWNNAME = MakeResult(0x80020006);
constexpr HRESULT DISP_E_NONAMEDARGS = MakeResult(0x80020007);
constexpr HRESULT DISP_E_BADVARTYPE = MakeResult(0x80020008);
constexpr HRESULT DISP_E_EXCEPTION = MakeResult(0x80020009);
constexpr HRESULT DISP_E_OVERFLOW = MakeResult(0x8002000A);
constexpr HRESULT DISP_E_BADINDEX = MakeResult(0x8002000B);
constexpr HRESULT DISP_E_BADPARAMCOUNT = MakeResult(0x8002000E);
constexpr HRESULT TYPE_E_CANTLOADLIBRARY = MakeResult(0x80029C4A);

}  // namespace qv
