// What a server answers to one thread of these tests, all on one connection.
#pragma once

#include <string>

#include "fixtures/raw_server.h"

namespace qv::test {

inline std::string Envelope(const std::string& answer) {
  return RawAnswerText("<soap:Envelope><soap:Body>" + answer + "</soap:Body></soap:Envelope>",
                       "Content-Type: text/xml; charset=utf-8\r\n");
}

// Sessions one after the other, with one script in each that answers "done".
inline RawScript Sessions(int count) {
  RawScript script;
  for (int i = 0; i < count; ++i)
    script.ReadRequest()
        .Write(Envelope("<CreateUserSessionResponse><CreateUserSessionResult>u1</CreateUserSessionResult>"
                        "</CreateUserSessionResponse>"))
        .ReadRequest()
        .Write(Envelope("<ExecuteResponse><r xsi:type=\"xsd:string\">done</r></ExecuteResponse>"))
        .ReadRequest()
        .Write(Envelope("<CloseUserSessionResponse/>"));
  return script;
}

}  // namespace qv::test
