// A formater that fails both ways as a test wants, and what the library makes of each failure.
#pragma once

#include <stdexcept>

#include "format/formater_creator.h"
#include "format/formater_serializer.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"

namespace qv {

class FailingFormater : public FormaterSerializer {
 public:
  Variant ReadValue(const XmlNode&) override {
    fail();
    return Variant();
  }
  WideString WriteValue(const Variant&) override {
    fail();
    return u"";
  }
  void (*fail)() = [] {};
};

class FailingFormaterCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater; }
  FailingFormater formater;
};

inline constexpr char kCannotCreate[] = "EQvException 0x00000000 Cannot create the recordlist";

// The formater's own exceptions pass with their code; any other failure has one message.
inline constexpr struct {
  void (*fail)();
  const char* thrown;
} kFormaterFailures[] = {
    {[] { throw EQvException(u"my words", 7); }, "EQvException 0x80040007 my words"},
    {[] { throw EQvException(u"no number"); }, "EQvException 0x00000000 no number"},
    {[] { throw EQvException(WideString(), 7); }, "EQvException 0x80040007 <null>"},
    {[] { throw EQvException(WideString()); }, "EQvException 0x00000000 <null>"},
    {[] { _com_raise_error(E_POINTER); }, kCannotCreate},
    {[] { _com_raise_error(E_OUTOFMEMORY); }, kCannotCreate},
    {[] { throw std::runtime_error("words"); }, kCannotCreate},
    {[] { throw 5; }, kCannotCreate},
};

}  // namespace qv
