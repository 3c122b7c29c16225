// Keeps the value types of the process: what parameters are written with and typed answers are read with.
// They are one table for the process, which the first server that a model is given fills. Every model that is
// destroyed empties it, also one whose creation failed and one that never made a call: from then on calls
// with parameters fail with "Cannot create the xml document.", and typed answers read as empty, with S_OK.
// Servers and hosts in the field know it so, and nothing brings the types back but a hold.
//
// As long as a hold lives, nothing is lost: models may come and go, and their creation may fail. A program
// that makes more than one model in its life has one beside its XmlLibraryHold:
//
//   const qv::XmlLibraryHold library;
//   const qv::ValueTypesHold types;
//
// A new hold fills the table if it is empty, whatever emptied it. After the last hold the rule above applies
// again, from the next model that is destroyed. There may be several; each counts.
//
// Under a hold each of several threads may have models of its own (an object stays on the thread that made
// it).
//
// A program that calls late-bound through the shared library has no hold, since the table there is the
// library's: it keeps one client until its end, and makes no second one.
//
// Failure: the constructor throws `_com_error` with E_OUTOFMEMORY; nothing is lost then, and another attempt
// may succeed. Threads: any, also different ones for the two ends.
#pragma once

namespace qv {

class ValueTypesHold {
 public:
  ValueTypesHold();
  ~ValueTypesHold();
  ValueTypesHold(const ValueTypesHold&) = delete;
  ValueTypesHold& operator=(const ValueTypesHold&) = delete;
};

}  // namespace qv
