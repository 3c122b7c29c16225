// What a server answers to one thread of these tests, all on one connection.
#pragma once

#include <string>

#include "fixtures/raw_server.h"

namespace qv::test {

// Sessions one after the other, with one script in each that answers "done".
inline RawScript Sessions(int count) {
  RawScript script;
  for (int i = 0; i < count; ++i)
    for (const char* answer :
         {"<CreateUserSessionResponse><CreateUserSessionResult>u1</CreateUserSessionResult>"
          "</CreateUserSessionResponse>",
          "<ExecuteResponse><r xsi:type=\"xsd:string\">done</r></ExecuteResponse>",
          "<CloseUserSessionResponse/>"})
      script.Answer(std::string("<soap:Envelope><soap:Body>") + answer + "</soap:Body></soap:Envelope>",
                    "Content-Type: text/xml; charset=utf-8\r\n");
  return script;
}

}  // namespace qv::test
