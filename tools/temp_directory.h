// Where the library puts what it downloads.
#pragma once

namespace qv::cli {

// The library knows TEMP and TMP only: when both are missing or empty, TEMP becomes what TMPDIR says, else
// "/tmp". To be called before there is a second thread.
void SetTempDirectory();

}  // namespace qv::cli
