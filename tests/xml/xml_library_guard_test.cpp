#include "xml/xml_library_guard.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/xml_library_hold.h"

namespace qv {
namespace {

// A library that only counts how often it was started and stopped, and fails on request.
enum class Fails { kNo, kOther, kXml };
std::atomic<int> starts{0};
std::atomic<int> stops{0};
std::atomic<bool> isUp{false};
std::atomic<int> misuses{0};  // a start while up, a stop while down
Fails startFails = Fails::kNo;
Fails stopFails = Fails::kNo;

void FailAs(Fails how) {
  if (how == Fails::kOther) throw std::runtime_error("no");
  if (how == Fails::kXml) {
    ThrowXML(XERCES_CPP_NAMESPACE::RuntimeException,
             XERCES_CPP_NAMESPACE::XMLExcepts::CM_MustBeMixedOrChildren);
  }
}

void StartFake() {
  FailAs(startFails);
  ++starts;
  if (isUp.exchange(true)) ++misuses;
}

void StopFake() {
  FailAs(stopFails);
  ++stops;
  if (!isUp.exchange(false)) ++misuses;
}

constexpr XmlLibraryControl kFake{StartFake, StopFake};

class XmlLibraryGuardTest : public ::testing::Test {
 protected:
  XmlLibraryGuardTest() {
    starts = stops = misuses = 0;
    isUp = false;
    startFails = stopFails = Fails::kNo;
  }

  static std::u16string WordsOfAcquire(XmlLibraryGuard& guard, HRESULT* code) {
    try {
      guard.Acquire();
    } catch (const EQvException& e) {
      *code = e.Code();
      return std::u16string(e.Description().view());
    }
    return u"nothing thrown";
  }

  static std::u16string WordsOfRelease(XmlLibraryGuard& guard, HRESULT* code) {
    try {
      guard.Release();
    } catch (const EQvException& e) {
      *code = e.Code();
      return std::u16string(e.Description().view());
    }
    return u"nothing thrown";
  }
};

TEST_F(XmlLibraryGuardTest, NewGuardHasNotStarted) {
  const XmlLibraryGuard guard(kFake);
  EXPECT_EQ(guard.Count(), 0);
  EXPECT_EQ(starts, 0);
}

TEST_F(XmlLibraryGuardTest, NestedScopesStartOnceAndStopAfterTheSecondRelease) {
  XmlLibraryGuard guard(kFake);
  {
    const XmlLibraryGuardScope outer(guard);
    EXPECT_EQ(starts, 1);
    {
      const XmlLibraryGuardScope inner(guard);
      EXPECT_EQ(starts, 1);
      EXPECT_EQ(guard.Count(), 2);
    }
    EXPECT_EQ(stops, 0);
    EXPECT_EQ(guard.Count(), 1);
  }
  EXPECT_EQ(stops, 1);
  EXPECT_EQ(guard.Count(), 0);
}

TEST_F(XmlLibraryGuardTest, EachTopLevelUseStartsAgain) {
  XmlLibraryGuard guard(kFake);
  for (int i = 0; i < 3; ++i) const XmlLibraryGuardScope scope(guard);
  EXPECT_EQ(starts, 3);
  EXPECT_EQ(stops, 3);
}

TEST_F(XmlLibraryGuardTest, ReleaseAtZeroDoesNothing) {
  XmlLibraryGuard guard(kFake);
  guard.Release();
  EXPECT_EQ(stops, 0);
  EXPECT_EQ(guard.Count(), 0);
}

TEST_F(XmlLibraryGuardTest, StartThatThrowsXmlExceptionGivesItsMessage) {
  XERCES_CPP_NAMESPACE::XMLPlatformUtils::Initialize();
  {
    XmlLibraryGuard guard(kFake);
    startFails = Fails::kXml;
    HRESULT code = 1;
    EXPECT_EQ(WordsOfAcquire(guard, &code), u"content type must be mixed or children");
    EXPECT_EQ(code, 0);
    EXPECT_EQ(guard.Count(), 0);
  }
  XERCES_CPP_NAMESPACE::XMLPlatformUtils::Terminate();
}

TEST_F(XmlLibraryGuardTest, StartThatThrowsAnythingElseHasFixedWords) {
  XmlLibraryGuard guard(kFake);
  startFails = Fails::kOther;
  HRESULT code = 1;
  EXPECT_EQ(WordsOfAcquire(guard, &code), u"Xerces initialization failed.");
  EXPECT_EQ(code, 0);
  EXPECT_EQ(guard.Count(), 0);
}

TEST_F(XmlLibraryGuardTest, FailedStartLeavesTheGuardUsable) {
  XmlLibraryGuard guard(kFake);
  startFails = Fails::kOther;
  HRESULT code = 0;
  WordsOfAcquire(guard, &code);
  startFails = Fails::kNo;
  guard.Acquire();
  EXPECT_EQ(guard.Count(), 1);
  EXPECT_EQ(starts, 1);
}

TEST_F(XmlLibraryGuardTest, StopThatThrowsXmlExceptionGivesItsMessageAndKeepsTheCount) {
  XERCES_CPP_NAMESPACE::XMLPlatformUtils::Initialize();
  {
    XmlLibraryGuard guard(kFake);
    guard.Acquire();
    stopFails = Fails::kXml;
    HRESULT code = 1;
    EXPECT_EQ(WordsOfRelease(guard, &code), u"content type must be mixed or children");
    EXPECT_EQ(code, 0);
    EXPECT_EQ(guard.Count(), 1);
  }
  XERCES_CPP_NAMESPACE::XMLPlatformUtils::Terminate();
}

TEST_F(XmlLibraryGuardTest, StopThatThrowsAnythingElseHasFixedWordsAndCanBeTriedAgain) {
  XmlLibraryGuard guard(kFake);
  guard.Acquire();
  stopFails = Fails::kOther;
  HRESULT code = 1;
  EXPECT_EQ(WordsOfRelease(guard, &code), u"Xerces termination failed.");
  EXPECT_EQ(code, 0);
  EXPECT_EQ(guard.Count(), 1);
  stopFails = Fails::kNo;
  guard.Release();
  EXPECT_EQ(guard.Count(), 0);
  EXPECT_EQ(stops, 1);
}

TEST_F(XmlLibraryGuardTest, ScopePassesAFailedStopOn) {
  XmlLibraryGuard guard(kFake);
  EXPECT_THROW(
      {
        const XmlLibraryGuardScope scope(guard);
        stopFails = Fails::kOther;
      },
      EQvException);
}

TEST_F(XmlLibraryGuardTest, ScopeKeepsAFailedStopToItselfWhileAnotherExceptionIsUnderWay) {
  XmlLibraryGuard guard(kFake);
  EXPECT_THROW(
      {
        const XmlLibraryGuardScope scope(guard);
        stopFails = Fails::kOther;
        throw std::out_of_range("first");
      },
      std::out_of_range);
}

TEST_F(XmlLibraryGuardTest, DestructorReleasesUntilZero) {
  {
    XmlLibraryGuard guard(kFake);
    guard.Acquire();
    guard.Acquire();
    guard.Acquire();
  }
  EXPECT_EQ(stops, 1);
}

TEST_F(XmlLibraryGuardTest, DestructorEndsWhenTheStopFails) {
  {
    XmlLibraryGuard guard(kFake);
    guard.Acquire();
    stopFails = Fails::kOther;
  }
  EXPECT_EQ(stops, 0);
}

TEST_F(XmlLibraryGuardTest, ManyThreadsNeverMeetALibraryThatIsDown) {
  XmlLibraryGuard guard(kFake);
  std::atomic<int> metDown{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 5000; ++i) {
        const XmlLibraryGuardScope scope(guard);
        if (!isUp) ++metDown;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(metDown, 0);
  EXPECT_EQ(misuses, 0);
  EXPECT_EQ(starts, stops);
  EXPECT_EQ(guard.Count(), 0);
}

TEST(XmlLibraryGuard, ProcessGuardHasTheRealLibraryUpWhileHeld) {
  const std::int32_t before = XmlLibraryGuard::Process().Count();
  {
    const XmlLibraryGuardScope scope;
    EXPECT_EQ(XmlLibraryGuard::Process().Count(), before + 1);
    EXPECT_NE(XERCES_CPP_NAMESPACE::XMLPlatformUtils::fgMemoryManager, nullptr);
  }
  EXPECT_EQ(XmlLibraryGuard::Process().Count(), before);
  EXPECT_EQ(XERCES_CPP_NAMESPACE::XMLPlatformUtils::fgMemoryManager, nullptr);
}

TEST(XmlLibraryHold, CountsInTheProcessGuardForItsLifetime) {
  const std::int32_t before = XmlLibraryGuard::Process().Count();
  {
    const XmlLibraryHold hold;
    EXPECT_EQ(XmlLibraryGuard::Process().Count(), before + 1);
  }
  EXPECT_EQ(XmlLibraryGuard::Process().Count(), before);
}

}  // namespace
}  // namespace qv
