// SPDX-License-Identifier: Apache-2.0
// Keeps the value types registered, with which parameters are written and typed answers are read. The process
// has one table of them; the first SetServer on a model fills it. Destroying any model empties it, even one
// whose creation failed or that never made a call. From then on calls with parameters fail with "Cannot
// create the xml document.", and typed answers read as empty, with S_OK. Deployed servers and hosts expect
// this; only a hold fills the table again.
//
// While a hold exists, the table stays: models may be created and destroyed, and their creation may fail. A
// program that creates more than one model keeps one together with its XmlLibraryHold:
//
//   const qv::XmlLibraryHold library;
//   const qv::ValueTypesHold types;
//
// A new hold fills the table if it is empty. Several holds are allowed. After the last one the rule above
// applies again, from the next model that is destroyed.
//
// Under a hold each of several threads may have its own models (an object stays on the thread that created
// it).
//
// A program that calls late-bound through the shared library cannot have a hold, since the table belongs to
// that library. It must keep one client until its end and create no second one.
//
// Failure: the constructor throws `_com_error` with E_OUTOFMEMORY; the table stays as it was, and another
// attempt may succeed. Threads: any; a hold may be destroyed on another thread than the one that created it.
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
