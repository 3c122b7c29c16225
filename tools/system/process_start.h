// What the program sets up before anything else. Both functions must be called before there is a second
// thread.
#pragma once

namespace qv::cli {

// Opens /dev/null on each of the descriptors 0, 1 and 2 that is closed, so that no file or connection takes
// its number: an answer would be written there. It is opened for the wrong direction: reading standard input
// and writing to the other two fail, as they do on a closed stream. False if that is not possible. To be
// called before anything else is opened.
bool OpenClosedStreams() noexcept;

// Sets where the library puts downloads. The library reads only TEMP and TMP: if both are missing or empty,
// TEMP becomes TMPDIR, or "/tmp" without that.
void SetTempDirectory();

}  // namespace qv::cli
