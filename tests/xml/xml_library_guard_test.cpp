// The count of uses that keeps the XML library started, over a library that only counts and fails.
#include "xml/xml_library_guard.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "fixtures/thrown.h"
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

  // What the operation of the guard throws; "nothing" for success.
  static std::string Acquiring(XmlLibraryGuard& guard) {
    return Thrown([&] { guard.Acquire(); });
  }
  static std::string Releasing(XmlLibraryGuard& guard) {
    return Thrown([&] { guard.Release(); });
  }

  XmlLibraryGuard guard_{kFake};
};

constexpr char kXmlMessage[] = "EQvException 0x00000000 content type must be mixed or children";

TEST_F(XmlLibraryGuardTest, NestedScopesStartOnceAndStopAfterTheSecondRelease) {
  EXPECT_EQ(guard_.Count(), 0);
  EXPECT_EQ(starts, 0);
  {
    const XmlLibraryGuardScope outer(guard_);
    EXPECT_EQ(starts, 1);
    {
      const XmlLibraryGuardScope inner(guard_);
      EXPECT_EQ(starts, 1);
      EXPECT_EQ(guard_.Count(), 2);
    }
    EXPECT_EQ(stops, 0);
    EXPECT_EQ(guard_.Count(), 1);
  }
  EXPECT_EQ(stops, 1);
  EXPECT_EQ(guard_.Count(), 0);
}

TEST_F(XmlLibraryGuardTest, EachTopLevelUseStartsAgain) {
  for (int i = 0; i < 3; ++i) const XmlLibraryGuardScope scope(guard_);
  EXPECT_EQ(starts, 3);
  EXPECT_EQ(stops, 3);
}

TEST_F(XmlLibraryGuardTest, ReleaseAtZeroDoesNothing) {
  guard_.Release();
  EXPECT_EQ(stops, 0);
  EXPECT_EQ(guard_.Count(), 0);
}

TEST_F(XmlLibraryGuardTest, XmlExceptionOfStartOrStopGivesItsMessage) {
  XERCES_CPP_NAMESPACE::XMLPlatformUtils::Initialize();
  {
    XmlLibraryGuard guard(kFake);
    startFails = Fails::kXml;
    EXPECT_EQ(Acquiring(guard), kXmlMessage);
    EXPECT_EQ(guard.Count(), 0);
    startFails = Fails::kNo;
    guard.Acquire();
    stopFails = Fails::kXml;
    EXPECT_EQ(Releasing(guard), kXmlMessage);
    EXPECT_EQ(guard.Count(), 1);
  }
  XERCES_CPP_NAMESPACE::XMLPlatformUtils::Terminate();
}

TEST_F(XmlLibraryGuardTest, AnyOtherFailureHasAFixedMessageAndCanBeTriedAgain) {
  startFails = Fails::kOther;
  EXPECT_EQ(Acquiring(guard_), "EQvException 0x00000000 Xerces initialization failed.");
  EXPECT_EQ(guard_.Count(), 0);
  startFails = Fails::kNo;
  EXPECT_EQ(Acquiring(guard_), "nothing");
  EXPECT_EQ(guard_.Count(), 1);
  EXPECT_EQ(starts, 1);
  stopFails = Fails::kOther;
  EXPECT_EQ(Releasing(guard_), "EQvException 0x00000000 Xerces termination failed.");
  EXPECT_EQ(guard_.Count(), 1);
  stopFails = Fails::kNo;
  EXPECT_EQ(Releasing(guard_), "nothing");
  EXPECT_EQ(guard_.Count(), 0);
  EXPECT_EQ(stops, 1);
}

TEST_F(XmlLibraryGuardTest, ScopePassesAFailedStopOnUnlessAnotherExceptionIsUnderWay) {
  const auto failIn = [](XmlLibraryGuard& guard, bool withAnother) {
    const XmlLibraryGuardScope scope(guard);
    stopFails = Fails::kOther;
    if (withAnother) throw std::out_of_range("first");
  };
  EXPECT_THROW(failIn(guard_, false), EQvException);
  stopFails = Fails::kNo;
  XmlLibraryGuard other(kFake);
  EXPECT_THROW(failIn(other, true), std::out_of_range);
}

TEST_F(XmlLibraryGuardTest, DestructorReleasesUntilZeroAndEndsWhenTheStopFails) {
  {
    XmlLibraryGuard guard(kFake);
    for (int i = 0; i < 3; ++i) guard.Acquire();
  }
  EXPECT_EQ(stops, 1);
  {
    XmlLibraryGuard guard(kFake);
    guard.Acquire();
    stopFails = Fails::kOther;
  }
  EXPECT_EQ(stops, 1);
}

TEST_F(XmlLibraryGuardTest, ManyThreadsNeverMeetALibraryThatIsDown) {
  std::atomic<int> metDown{0};
  std::vector<std::thread> threads(8);
  for (std::thread& thread : threads) {
    thread = std::thread([&] {
      for (int i = 0; i < 5000; ++i) {
        const XmlLibraryGuardScope scope(guard_);
        if (!isUp) ++metDown;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(metDown, 0);
  EXPECT_EQ(misuses, 0);
  EXPECT_EQ(starts, stops);
  EXPECT_EQ(guard_.Count(), 0);
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
