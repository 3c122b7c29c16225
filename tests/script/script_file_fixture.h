// The content of the "Script" element that a script document makes, and what a bad one raises.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/xml_library_hold.h"
#include "script/execute_command.h"
#include "script/script_files.h"

namespace qv {

constexpr char kScriptFileRefused[] = "EQvException 0x00000000 Cannot create the xml document.";

class ScriptFileFixture : public testing::Test {
 protected:
  static std::string RequestFor(const NamedArguments& map) {
    WideTextStream stream;
    CExecuteCommand().Serialize(stream, u"", u"", u"", map);
    return Shown(WideString(stream.view()));
  }
  static std::string RequestFor(const WideString& name) {
    return RequestFor(NamedArguments{{u"ContextHandle", Variant::FromString(u"u1")},
                                     {u"ScriptFile", Variant::FromString(name)}});
  }
  // The "Script" element's content for a file name as a host gives it.
  static std::string Named(const WideString& name) {
    const std::string start = "<Script xsi:type=\"xsd:string\">";
    const std::string text = RequestFor(name);
    const std::size_t from = text.find(start) + start.size();
    return text.substr(from, text.find("</Script>") - from);
  }
  static std::string Named(const std::string& name) { return Named(FromUtf8(name)); }
  // The same for a file with these bytes.
  std::string Script(const std::string& bytes) const { return Named(files_.Write("script.xml", bytes)); }

  static std::string Refusal(const WideString& name) {
    return Thrown([&name] { Named(name); });
  }
  static std::string Refusal(const std::string& name) { return Refusal(FromUtf8(name)); }
  std::string RefusalOfText(const std::string& bytes) const {
    return Refusal(files_.Write("script.xml", bytes));
  }

  ScriptFiles files_;

 private:
  XmlLibraryHold library_;
};

}  // namespace qv
