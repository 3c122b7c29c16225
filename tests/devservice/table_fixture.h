// A service, and what its tests look for in tables.
#pragma once

#include <string>

#include "service_fixture.h"

namespace qv::devservice::testing {

// The whole ExecuteResult element of an answer, "(none)" without one.
std::string ResultElementIn(const std::string& body);
// The 36 characters of the schema's id, which differ from answer to answer.
std::string SchemaIdIn(const std::string& body);
// "name type, name type" of the columns, from the bytes of the answer.
std::string ColumnsIn(const std::string& body);
// What stands in the records block, "(none)" without one.
std::string RecordsIn(const std::string& body);

class TableTest : public ServiceTest {
 protected:
  std::string Columns(const std::string& script) { return ColumnsIn(Execute(script)); }
  std::string Records(const std::string& script) { return RecordsIn(Execute(script)); }
};

}  // namespace qv::devservice::testing
