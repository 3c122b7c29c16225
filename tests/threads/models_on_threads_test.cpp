// Each of several threads makes, uses and ends its models under a hold on the value types. Meant for the
// thread sanitizer, but what arrives is looked at in every build.
#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "fixtures/raw_server.h"
#include "qvscriptwells/qvscriptwells.h"
#include "threads/session_script.h"

namespace qv {
namespace {

constexpr int kThreads = 8;
constexpr int kModels = 6;  // of each thread

// A whole session with a new client: the answer of its script.
std::string RunSession(const WideString& server) {
  const auto provider = CreateSimpleServiceProvider(CreateSimpleHost({u"joe"}).get());
  const auto client = CreateQvScriptwells(server, u"", provider.get());
  const auto model = ModelOf(client.get());
  ThrowIfFailed(model->CreateUserSession(u"Username=joe;"));
  const auto parameters = CreateParameters();
  ThrowIfFailed(parameters->Add(u"a", Variant::FromInt(2), nullptr));
  ThrowIfFailed(parameters->Add(u"b", Variant::FromDate(36526.5), nullptr));
  Variant answer;
  ThrowIfFailed(model->Execute(u"JavaScript", u"1", parameters.get(), &answer));
  ThrowIfFailed(model->CloseUserSession());
  return ToUtf8(answer.Text());
}

// A model that cannot be made ends like any other.
bool FailsToMakeAModel() {
  try {
    CreateConnectionModel(u"no address", u"", nullptr);
    return false;
  } catch (const _com_error&) {
    return true;
  }
}

// Lets nobody pass before all threads are there.
class Meeting {
 public:
  void Join() {
    std::unique_lock<std::mutex> lock(mutex_);
    if (++here_ == kThreads) all_.notify_all();
    all_.wait(lock, [this] { return here_ == kThreads; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable all_;
  int here_ = 0;
};

struct Result {
  std::vector<std::string> answers;
  bool failed = true;
};

// All threads make their first models at once, and none of these ends before the others are made: nothing
// else orders what they do in there.
Result RunModels(const std::string& address, Meeting* start, Meeting* made) {
  Result result;
  const WideString server = FromUtf8(address);
  start->Join();
  try {
    const IConnectionModelPtr first = CreateConnectionModel(server, u"", nullptr);
    made->Join();
    for (int i = 0; i < kModels; ++i) {
      result.failed = result.failed && FailsToMakeAModel();
      result.answers.push_back(RunSession(server));
    }
  } catch (const _com_error& error) {
    result.answers.push_back("_com_error " + ToUtf8(error.Description()));
  }
  return result;
}

class ModelsOnThreads : public testing::Test {
 protected:
  ModelsOnThreads() {
    for (int i = 0; i < kThreads; ++i) server_.Expect(test::Sessions(kModels));
  }
  void RunAll(const std::function<Result()>& run) {
    std::vector<Result> results(kThreads);
    std::vector<std::thread> threads;
    threads.reserve(results.size());
    for (Result& result : results) threads.emplace_back([&] { result = run(); });
    for (std::thread& thread : threads) thread.join();
    for (const Result& result : results) {
      EXPECT_EQ(result.answers, std::vector<std::string>(kModels, "done"));
      EXPECT_TRUE(result.failed);
    }
    EXPECT_EQ(server_.Connections(), static_cast<std::size_t>(kThreads)) << "kept connections";
  }

  test::RawServer server_;
  const std::string address_ = server_.Url();
  Meeting start_;
  Meeting made_;
};

TEST_F(ModelsOnThreads, WorkUnderOneHold) {
  const XmlLibraryHold library;
  const ValueTypesHold types;
  RunAll([this] { return RunModels(address_, &start_, &made_); });
}

TEST_F(ModelsOnThreads, WorkUnderAHoldOfEachThread) {
  RunAll([this] {
    const ValueTypesHold types;
    return RunModels(address_, &start_, &made_);
  });
}

// Without a hold types may be gone, but nothing worse.
TEST_F(ModelsOnThreads, EndWithoutHarmWhereThereIsNoHold) {
  std::vector<std::thread> threads(kThreads);
  for (std::thread& thread : threads)
    thread = std::thread([this] {
      const WideString server = FromUtf8(address_);
      start_.Join();
      for (int j = 0; j < 20; ++j) CreateConnectionModel(server, u"", nullptr);
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(server_.Connections(), 0U);
}

}  // namespace
}  // namespace qv
