// The content of the "Script" element that a script document makes, and what a bad one throws.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "fixtures/known_failures.h"
#include "fixtures/shown_text.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/xml_library_hold.h"
#include "script/execute_command.h"
#include "script/execute_envelope.h"

namespace qv {

class ScriptFileFixture : public testing::Test {
 protected:
  static std::string RequestFor(const NamedArguments& map) {
    WideTextStream stream;
    CExecuteCommand().Serialize(stream, u"", u"", u"", map);
    return Shown(WideString(stream.view()));
  }
  // The "Script" element's content for a file name as a host gives it.
  static std::string Named(const WideString& name) {
    const std::string start = "<Script xsi:type=\"xsd:string\">";
    const std::string text = RequestFor(
        {{u"ContextHandle", Variant::FromString(u"u1")}, {u"ScriptFile", Variant::FromString(name)}});
    const std::size_t from = text.find(start) + start.size();
    return text.substr(from, text.find("</Script>") - from);
  }
  static std::string Named(const std::string& name) { return Named(FromUtf8(name)); }
  // The same for a file with these bytes, without the two line ends that follow every document.
  std::string Script(const std::string& bytes) const {
    const std::string content = Named(files_.Write("script.xml", bytes));
    const std::string ends = "\\u000A\\u000A";
    if (content.size() < ends.size() || content.substr(content.size() - ends.size()) != ends)
      return "no line ends after " + content;
    return content.substr(0, content.size() - ends.size());
  }

  static std::string Refusal(const WideString& name) {
    return Thrown([&name] { Named(name); });
  }
  static std::string Refusal(const std::string& name) { return Refusal(FromUtf8(name)); }
  std::string RefusalOfText(const std::string& bytes) const {
    return Refusal(files_.Write("script.xml", bytes));
  }

  TemporaryDirectory files_;

 private:
  XmlLibraryHold library_;
};

}  // namespace qv
