// This library, as a typed host uses it: under its holds, with one model.
#include <exception>
#include <stdexcept>
#include <thread>
#include <vector>

#include "peer.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/record_list.h"
#include "qvscriptwells/value_types_hold.h"
#include "qvscriptwells/xml_library_hold.h"
#include "recordlist/formater_record_list.h"
#include "sample_model.h"
#include "samples.h"
#include "table_samples.h"
#include "table_sum.h"

namespace qv::bench {
namespace {

void AddCell(const Variant& value, std::int32_t column, TableSum* sum) {
  const bool isSet = value.Tag() == VT_BOOL && value.Data().boolVal != VARIANT_FALSE;
  switch (column) {
    case 0:
      sum->characters += value.Text().size();
      return;
    case 2:
      sum->numbers += value.Data().intVal;
      return;
    case 3:
      sum->pieces += value.Data().intVal;
      return;
    case 4:
      sum->prices += value.Data().dblVal;
      return;
    case 5:
      sum->weights += value.Data().dblVal;
      return;
    case 6:
    case 7:
      sum->dates += value.Tag() == VT_DATE && value.Data().date > 0 ? 1 : 0;
      return;
    case 8:
      sum->paid += isSet ? 1 : 0;
      return;
    case 9:
      sum->express += isSet ? 1 : 0;
      return;
    default:
      return;
  }
}

TableSum SumOf(const Variant& answer) {
  const IRecordListPtr table = As<IRecordList>(answer.Object());
  if (table == nullptr) throw std::runtime_error("no table");
  IRecordListCursorPtr cursor;
  ThrowIfFailed(table->OpenCursor(VARIANT_TRUE, Put(cursor)));
  TableSum sum;
  VARIANT_BOOL more = VARIANT_FALSE;
  for (; Succeeded(cursor->HasMore(&more)) && more != VARIANT_FALSE; ++sum.rows) {
    IUnknown* raw = nullptr;
    ThrowIfFailed(cursor->Next(&raw));
    const IRecordListRecordPtr record = As<IRecordListRecord>(boost::intrusive_ptr<IUnknown>(raw, false));
    for (std::int32_t column = 0; column < 10; ++column) {
      Variant value;
      ThrowIfFailed(record->GetValue(column, &value));
      AddCell(value, column, &sum);
    }
  }
  return sum;
}

class Ours : public Peer {
 public:
  explicit Ours(const Task& task) : task_(task), model_(SampleModel(task.url)) {}

  std::size_t Call() override {
    answer_.Clear();
    ThrowIfFailed(model_->Execute(u"JavaScript", script_, parameters_.get(), &answer_));
    return 0;
  }

  void Check() override {
    if (task_.rows > 0) {
      CheckSum(SumOf(answer_), task_.rows);
    } else if (answer_.Text() != u"hello") {
      throw std::runtime_error("wrong answer");
    }
  }

 protected:
  const Task task_;
  Variant answer_;

 private:
  const XmlLibraryHold library_;
  const ValueTypesHold types_;
  const IConnectionModelPtr model_;
  const WideString script_ = Script(kSmallScript);
  const IParametersPtr parameters_ = ThreeParameters();
};

class OursWalk : public Ours {
 public:
  using Ours::Ours;
  std::size_t Call() override {
    Ours::Call();
    CheckSum(SumOf(answer_), task_.rows);
    return 0;
  }
  void Check() override {}
};

// The walk alone.
class OursWalkOnly : public Ours {
 public:
  explicit OursWalkOnly(const Task& task) : Ours(task) { Ours::Call(); }
  std::size_t Call() override {
    CheckSum(SumOf(answer_), task_.rows);
    return 0;
  }
};

// Many calls at once: each thread has a model.
constexpr int kThreads = 8;
constexpr int kCallsOfThread = 200;

class OnThreads : public Peer {
 public:
  // NOLINTNEXTLINE(bugprone-throw-keyword-missing): the vector of exceptions is a member
  OnThreads(const Task& task, int threads) : task_(task), failures_(static_cast<std::size_t>(threads)) {}

  std::size_t Call() override {
    std::vector<std::thread> threads;
    for (std::exception_ptr& failure : failures_)
      threads.emplace_back([this, &failure] {
        try {
          Run();
        } catch (...) {
          failure = std::current_exception();
        }
      });
    for (std::thread& thread : threads) thread.join();
    return 0;
  }

  void Check() override {
    for (const std::exception_ptr& failure : failures_)
      if (failure != nullptr) std::rethrow_exception(failure);
  }

 private:
  void Run() const {
    Ours peer(task_);
    for (int i = 0; i < kCallsOfThread * kThreads / static_cast<int>(failures_.size()); ++i) peer.Call();
    peer.Check();
  }

  const XmlLibraryHold library_;
  const ValueTypesHold types_;
  const Task task_;
  std::vector<std::exception_ptr> failures_;
};

// From a table to its text, without a call.
class Writer : public Peer {
 public:
  explicit Writer(const Task& task) : table_(ReadAnswer(FromUtf8(TableAnswer(task.rows)))) {}
  std::size_t Call() override { return FormaterRecordList().WriteValue(table_).size(); }

 private:
  const XmlLibraryHold library_;
  const ValueTypesHold types_;
  const Variant table_;
};

}  // namespace

std::unique_ptr<Peer> MakeOurs(const Task& task) {
  return std::make_unique<Ours>(task);
}
std::unique_ptr<Peer> MakeOursWalk(const Task& task) {
  return std::make_unique<OursWalk>(task);
}
std::unique_ptr<Peer> MakeOursWalkOnly(const Task& task) {
  return std::make_unique<OursWalkOnly>(task);
}
std::unique_ptr<Peer> MakeOneThread(const Task& task) {
  return std::make_unique<OnThreads>(task, 1);
}
std::unique_ptr<Peer> MakeEightThreads(const Task& task) {
  return std::make_unique<OnThreads>(task, kThreads);
}
std::unique_ptr<Peer> MakeWriter(const Task& task) {
  return std::make_unique<Writer>(task);
}

}  // namespace qv::bench
