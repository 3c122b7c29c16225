// What calls cost this process: wall and CPU time of all its threads, instructions, allocations.
#pragma once

namespace qv::bench {

struct Reading {
  long long wall = 0;          // ns
  long long cpu = 0;           // ns, user and system
  long long instructions = 0;  // in user mode; -1 where the kernel does not count them
  long long allocations = 0;   // of the calling thread: malloc and its like, whoever calls them
};

Reading operator-(const Reading& end, const Reading& start);

class Meter {
 public:
  Meter();
  ~Meter();
  Meter(const Meter&) = delete;
  Meter& operator=(const Meter&) = delete;
  Reading Read() const;

 private:
  int counter_;  // of instructions; -1 without one
};

}  // namespace qv::bench
