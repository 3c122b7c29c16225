// Start and stop of the real XML library when any of their allocations fails. A start that fails inside the
// library makes it unusable in the process, so each try has a separate process.
#include "xml/xml_library_start.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <new>
#include <string>

#include <xercesc/util/PlatformUtils.hpp>

#include "com/module.h"
#include "fixtures/refused_memory.h"
#include "needs_plain_scanner.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/wide_string.h"
#include "xml/answer_document.h"
#include "xml/qv_dom_parser.h"
#include "xml/xml_library_guard.h"
#include "xml/xml_walk.h"

namespace qv {
namespace {

// How a process with one failed allocation ended. The numbers are exit codes.
enum Outcome {
  kUnharmed = 10,   // nothing failed
  kRecovered = 11,  // a failure, and the next call works
  kRefused = 12,    // the start failed inside: every later one fails
  kWrong = 13,
};

XmlLibraryGuard& Guard() {
  return XmlLibraryGuard::Process();
}

bool Succeeds(void (XmlLibraryGuard::*operation)()) {
  try {
    (Guard().*operation)();
    return true;
  } catch (...) {
    return false;
  }
}
bool Acquires() {
  return Succeeds(&XmlLibraryGuard::Acquire);
}
bool Releases() {
  return Succeeds(&XmlLibraryGuard::Release);
}

bool Parses() {
  RequireXmlLibrary();
  QvDomParser parser;
  parser.ParseHostileText(u"<r>text</r>", "application/xml");
  return GetNodeText(DocumentElement(parser.Document())) == u"text";
}

bool WorksTwice() {
  for (int i = 0; i < 2; ++i)
    if (!Acquires() || !Parses() || !Releases()) return false;
  return Guard().Count() == 0;
}

std::u16string MessageOfAcquire() {
  try {
    Guard().Acquire();
  } catch (const EQvException& failure) {
    return failure.Code() == 0 ? std::u16string(failure.Description().view()) : u"(a code)";
  }
  return u"(acquired)";
}

Outcome RefuseWhileStarting(long number, Refusal refusal) {
  RefuseAllocation(number, refusal);
  const bool acquired = Acquires();
  StopRefusing();
  if (acquired) return Parses() && Releases() && WorksTwice() ? kUnharmed : kWrong;
  if (WorksTwice()) return kRecovered;
  const bool refused = Guard().Count() == 0 && MessageOfAcquire() == u"Xerces initialization failed.";
  return refused && ModuleLocks() == 1 ? kRefused : kWrong;
}

Outcome RefuseWhileStopping(long number, Refusal refusal) {
  if (!Acquires()) return kWrong;
  RefuseAllocation(number, refusal);
  const bool released = Releases();
  StopRefusing();
  if (!released && !Releases()) return kWrong;
  if (!WorksTwice()) return kWrong;
  return released ? kUnharmed : kRecovered;
}

// kWrong also when the process crashed.
Outcome InProcessOfItsOwn(Outcome (*function)(long, Refusal), long number, Refusal refusal) {
  const pid_t child = fork();
  if (child == 0) _exit(function(number, refusal));
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return kWrong;
  return static_cast<Outcome>(WEXITSTATUS(status));
}

bool IsStarted() {
  return XERCES_CPP_NAMESPACE::XMLPlatformUtils::fgMemoryManager != nullptr;
}

bool ReadsPlainText() {
  AnswerDocument document;
  document.ReadText(u"<r>text</r>", "application/xml");
  return GetNodeText(DocumentElement(document.Document())) == u"text";
}

// With the first parser, for as long as the guard counts.
Outcome StartPutOff(long times, Refusal) {
  PutOffXmlLibraryStart();
  for (long i = 0; i < times; ++i) {
    if (!Acquires() || IsStarted() || !ReadsPlainText() || IsStarted()) return kWrong;
    if (!Parses() || !IsStarted() || !Parses() || !Releases() || IsStarted()) return kWrong;
    if (!Acquires() || !Releases() || IsStarted()) return kWrong;
  }
  return Guard().Count() == 0 ? kUnharmed : kWrong;
}

Outcome RefuseStartPutOff(long number, Refusal refusal) {
  PutOffXmlLibraryStart();
  if (!Acquires()) return kWrong;
  RefuseAllocation(number, refusal);
  bool failed = false;
  try {
    RequireXmlLibrary();
  } catch (const std::bad_alloc&) {
    failed = true;
  }
  StopRefusing();
  return failed && !IsStarted() && Parses() && Releases() ? kRecovered : kWrong;
}

struct Tally {
  int recovered = 0;
  int refused = 0;
};

// Nearly all allocations of a first start are made by libraries below the XML library, which survive a
// failure: unless the environment has QV_EVERY_ALLOCATION, only every 16th of these fails.
long Next(long number, long allocations) {
  const bool isInTheMiddle = number > 16 && number + 32 < allocations;
  return number + (isInTheMiddle && std::getenv("QV_EVERY_ALLOCATION") == nullptr ? 16 : 1);
}

// Makes one allocation after the other fail.
Tally RefuseEach(Outcome (*function)(long, Refusal), long allocations, Refusal refusal) {
  Tally tally;
  for (long number = 1; number <= allocations; number = Next(number, allocations)) {
    const Outcome outcome = InProcessOfItsOwn(function, number, refusal);
    tally.recovered += outcome == kRecovered ? 1 : 0;
    tally.refused += outcome == kRefused ? 1 : 0;
    if (outcome < kUnharmed || outcome > kRefused) ADD_FAILURE() << "allocation " << number;
  }
  return tally;
}

// The number is too large for the child's exit code, so a pipe returns it.
long AllocationsOfFirstStart() {
  int ends[2];
  if (pipe(ends) != 0) return -1;
  const pid_t child = fork();
  if (child == 0) {
    RefuseAllocation(0, Refusal::kOne);
    Acquires();
    const long asked = StopRefusing();
    _exit(write(ends[1], &asked, sizeof asked) == sizeof asked ? 0 : 1);
  }
  long asked = -1;
  if (read(ends[0], &asked, sizeof asked) != sizeof asked) asked = -1;
  waitpid(child, nullptr, 0);
  close(ends[0]);
  close(ends[1]);
  return asked;
}

constexpr Refusal kRefusals[] = {Refusal::kOne, Refusal::kAllFromThen};

// Must be the first test, since nothing in this process may have started the library before. The first
// allocation is the reserved block. Of the others only three belong to the XML library itself; they use
// operator new or malloc with any memory manager.
TEST(XmlLibraryStart, FirstStartSurvivesTheRefusalOfAnyAllocation) {
  for (const Refusal refusal : kRefusals) {
    const long allocations = AllocationsOfFirstStart();
    ASSERT_GT(allocations, 0);
    const Tally tally = RefuseEach(RefuseWhileStarting, allocations, refusal);
    EXPECT_GE(tally.recovered, 1);
    if (refusal == Refusal::kOne) {
      EXPECT_LE(tally.refused, 3);
    }
  }
}

TEST(XmlLibraryStart, LaterStartSurvivesTheRefusalOfAnyAllocation) {
  for (const Refusal refusal : kRefusals) {
    ASSERT_TRUE(WorksTwice());
    RefuseAllocation(0, Refusal::kOne);
    ASSERT_TRUE(Acquires());
    const long allocations = StopRefusing();
    ASSERT_TRUE(Releases());
    const Tally tally = RefuseEach(RefuseWhileStarting, allocations, refusal);
    EXPECT_EQ(tally.recovered, 1);
    EXPECT_LE(tally.refused, 3);
  }
}

TEST(XmlLibraryStart, StopSurvivesTheRefusalOfAnyAllocation) {
  for (const Refusal refusal : kRefusals) {
    const Tally tally = RefuseEach(RefuseWhileStopping, 5, refusal);
    EXPECT_EQ(tally.recovered, 0);
    EXPECT_EQ(tally.refused, 0);
  }
}

TEST(XmlLibraryStart, BlockThatIsMissingIsReportedWithTheFixedMessage) {
  RefuseAllocation(1, Refusal::kOne);
  const std::u16string message = MessageOfAcquire();
  StopRefusing();
  EXPECT_EQ(message, u"Xerces initialization failed.");
  EXPECT_TRUE(WorksTwice());
  EXPECT_EQ(ModuleLocks(), 0);
}

TEST(XmlLibraryStart, StartThatIsPutOffComesWithTheFirstParser) {
  NEEDS_PLAIN_SCANNER();
  EXPECT_EQ(InProcessOfItsOwn(StartPutOff, 3, Refusal::kOne), kUnharmed);
}

TEST(XmlLibraryStart, StartThatIsPutOffAndFailsCanBeTriedAgain) {
  EXPECT_EQ(InProcessOfItsOwn(RefuseStartPutOff, 1, Refusal::kOne), kRecovered);
}

// If the program itself has started the XML library, the borrowed objects stay.
TEST(XmlLibraryStart, LibraryThatTheProgramKeepsStartedStaysUsableAndKeepsTheModule) {
  {
    const XmlLibraryGuardScope first;
    XERCES_CPP_NAMESPACE::XMLPlatformUtils::Initialize();
  }
  EXPECT_EQ(ModuleLocks(), 1);
  EXPECT_TRUE(Parses());
  EXPECT_TRUE(WorksTwice());
  EXPECT_EQ(ModuleLocks(), 1);
  XERCES_CPP_NAMESPACE::XMLPlatformUtils::Terminate();
  EXPECT_TRUE(WorksTwice());
  EXPECT_EQ(ModuleLocks(), 0);
}

TEST(XmlLibraryStart, LibraryThatTheProgramStartedFirstKeepsItsMemoryManager) {
  XERCES_CPP_NAMESPACE::XMLPlatformUtils::Initialize();
  const auto* const manager = XERCES_CPP_NAMESPACE::XMLPlatformUtils::fgMemoryManager;
  EXPECT_TRUE(WorksTwice());
  EXPECT_EQ(XERCES_CPP_NAMESPACE::XMLPlatformUtils::fgMemoryManager, manager);
  EXPECT_EQ(ModuleLocks(), 0);
  XERCES_CPP_NAMESPACE::XMLPlatformUtils::Terminate();
}

}  // namespace
}  // namespace qv
