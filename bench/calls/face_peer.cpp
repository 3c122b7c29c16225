// The C++ library over the interfaces: the same call, and the same walk by the names of columns.
#include <stdexcept>

#include "peer.h"
#include "qvscriptwells/wide_string.h"
#include "script_sample.h"
#include "scriptwells/scriptwells.h"
#include "table_sum.h"

namespace qv::bench {
namespace {

TableSum SumOf(const scriptwells::Table& table) {
  TableSum sum;
  for (const auto& row : table) {
    ++sum.rows;
    sum.characters += row["customer"].As<std::string>().size();
    static_cast<void>(row["city"].Get());
    sum.numbers += row["number"].As<int>();
    sum.pieces += row["pieces"].As<int>();
    sum.prices += row["price"].As<double>();
    sum.weights += row["weight"].As<double>();
    sum.dates += row["ordered"].IsEmpty() ? 0 : 1;
    sum.dates += row["delivered"].IsEmpty() ? 0 : 1;
    sum.paid += row["paid"].As<bool>() ? 1 : 0;
    sum.express += row["express"].As<bool>() ? 1 : 0;
  }
  return sum;
}

class Face : public Peer {
 public:
  explicit Face(const Task& task)
      : task_(task), session_(scriptwells::Session::Adopt(task.url, kSampleSession)) {}

  std::size_t Call() override {
    answer_ = scriptwells::Value();
    answer_ = session_.Run(script_, arguments_);
    return 0;
  }

  void Check() override {
    if (task_.rows > 0) {
      CheckSum(SumOf(answer_.AsTable()), task_.rows);
    } else if (answer_ != scriptwells::Value("hello")) {
      throw std::runtime_error("wrong answer");
    }
  }

 private:
  const Task task_;
  scriptwells::Session session_;
  const std::string script_ = ToUtf8(Script(kSmallScript));
  const scriptwells::Arguments arguments_ = {{"count", 42}, {"factor", 2.5}, {"name", "Quorvane"}};
  scriptwells::Value answer_;
};

// The walk alone.
class FaceWalk : public Peer {
 public:
  explicit FaceWalk(const Task& task)
      : task_(task), table_(scriptwells::Session::Adopt(task.url, kSampleSession).Run("1").AsTable()) {}

  std::size_t Call() override {
    CheckSum(SumOf(table_), task_.rows);
    return 0;
  }

 private:
  const Task task_;
  const scriptwells::Table table_;
};

}  // namespace

std::unique_ptr<Peer> MakeFace(const Task& task) {
  return std::make_unique<Face>(task);
}
std::unique_ptr<Peer> MakeFaceWalk(const Task& task) {
  return std::make_unique<FaceWalk>(task);
}

}  // namespace qv::bench
