// Standard streams that whoever started the program has closed.
#pragma once

namespace qv::cli {

// Opens /dev/null on each of the descriptors 0, 1 and 2 that is closed, so that no file or connection gets
// its number: an answer would go there. It is opened the wrong way round: reading standard input and writing
// to the other two fail, as they do on a closed stream. To be called before anything else is opened. False
// when that is not possible.
bool OpenClosedStreams() noexcept;

}  // namespace qv::cli
